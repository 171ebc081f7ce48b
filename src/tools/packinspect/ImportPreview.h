#pragma once

#include "ImageImporter.h"

#include <QImage>

#include <string>
#include <vector>

namespace Zar::ResourcesLibrary::Tools::Inspect {

// A sheet to judge a conversion by: for every image its source (after compositing) beside the levels
// it became, both at 4 x, under a label with its name and the options used.
class ImportPreview {
public:
    static constexpr int kScale = 4;
    static constexpr int kMargin = 8;
    static constexpr int kLabelHeight = 16;
    // A preview larger than this is refused rather than allocated.
    static constexpr int64_t kMaxPixels = 64 * 1024 * 1024;

    static QImage Render(std::vector<ImageImporter::Image> const& images, std::string const& options);

private:
    static std::string Label(ImageImporter::Image const& image, std::string const& options);
    static void DrawScaled(QImage& sheet, QImage const& picture, int left, int top);
    static void DrawLevels(QImage& sheet, ImageImporter::Image const& image, int left, int top);
};

} // namespace Zar::ResourcesLibrary::Tools::Inspect
