#pragma once

#include "PackFile.h"
#include "PackLayout.h"

#include <QImage>
#include <QRect>
#include <QRgb>

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace Zar::ResourcesLibrary::Tools::Inspect {

// One picture of every image of a pack: each drawn at four times its size in the display's grey
// levels (0 black to 15 white), its name and value written under it, icons flowing in rows and every
// screen on a row of its own.
class ContactSheet {
public:
    static constexpr int kScale = 4;
    static constexpr int kMargin = 8;
    static constexpr int kTitleHeight = 20;
    static constexpr int kLabelHeight = 28;
    static constexpr int kMinCellWidth = 112;
    static constexpr int kMinSheetWidth = 256 * kScale + 2 * kMargin;
    static constexpr QRgb kBackground = 0xFF283858;
    static constexpr QRgb kText = 0xFFE6E6E6;
    static constexpr QRgb kMissing = 0xFFC03030;
    static constexpr int64_t kMaxPixels = 64 * 1024 * 1024;

    struct Cell {
        PackLayout::Image _image;
        // Where the scaled pixels go, and the label below them.
        QRect _pixels;
        QRect _label;
        // False when the file ends before the image's last byte.
        bool _inFile = false;
    };

    static ContactSheet Lay(PackFile const& pack, PackLayout const& layout);

    // The grey a level is shown in.
    static QRgb Grey(uint8_t level);

    // The greys of the levels 0 to 15 on the sheet: 17 x level unless a panel's curve is asked for.
    using LevelGreys = std::array<uint8_t, 16>;
    static LevelGreys LinearGreys();

    // Draws the sheet; title goes on the first line. Throws ResourcesLibraryException when the sheet
    // would exceed MaxPixels.
    QImage Render(
        PackFile const& pack, std::string const& title, LevelGreys const& greys = LinearGreys()) const;

    std::vector<Cell> const& Cells() const { return _cells; }
    QSize Size() const { return _size; }
    // Names of the images that lie past the end of the file, drawn crossed out.
    std::vector<std::string> MissingImages() const;

private:
    static void DrawPixels(QImage& sheet, Cell const& cell, PackFile const& pack, LevelGreys const& greys);
    static void DrawMissing(QImage& sheet, Cell const& cell);

    std::vector<Cell> _cells;
    QSize _size;
};

} // namespace Zar::ResourcesLibrary::Tools::Inspect
