#pragma once

#include "ImportSettings.h"

#include <QImage>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace Zar::ResourcesLibrary::Tools::Inspect {

// Turns a designer's image files into the BMPs packager reads as drawn, and lists them in the tree
// folder's list.txt. Every file is converted before anything is written, so that an import either
// writes all its images and list lines or leaves the tree as it was.
class ImageImporter {
public:
    enum class Kind { Icon, Screen };

    // One converted picture.
    struct Image {
        std::string _name;
        std::string _source;
        // The source after compositing over the background, at its own size; kept for a preview only.
        QImage _composited;
        uint32_t _width = 0;
        uint32_t _height = 0;
        // One level per pixel, rows from the top.
        std::vector<uint8_t> _levels;
        std::vector<uint8_t> _file;
    };

    struct Plan {
        std::vector<Image> _images;
        std::vector<std::string> _warnings;
        std::string _listText;
    };

    // The kind a folder's images are: its last component is "icons" or "screens".
    static std::optional<Kind> KindOfFolder(std::string const& folder);

    // Converts every file. Throws ResourcesLibraryException whose text holds one line per problem,
    // each "FILE: reason" (or "-o FOLDER: reason").
    static Plan Prepare(ImportSettings const& settings);
    // Writes the plan's BMPs and list into the folder, each through a staging file renamed into place.
    // Throws ResourcesLibraryException when something cannot be written, having removed what it wrote.
    static void Commit(Plan const& plan, ImportSettings const& settings);

    // The levels packed as packager stores a 4-bit image (ImageGeometry's rows), or as 1-bit BMP rows.
    static std::vector<uint8_t> Pack4(std::vector<uint8_t> const& levels, uint32_t width, uint32_t height);
    static std::vector<uint8_t> Pack1(std::vector<uint8_t> const& levels, uint32_t width, uint32_t height);

private:
    static std::vector<Image> ConvertFile(std::string const& file, ImportSettings const& settings);
    static Image Convert(QImage const& frame, ImportSettings const& settings);
    static std::string CheckKind(Image const& image, Kind kind);
    static std::optional<std::string> BorderWarning(Image const& image);
    static std::vector<std::string> FrameNames(std::string const& base, std::size_t count);
};

} // namespace Zar::ResourcesLibrary::Tools::Inspect
