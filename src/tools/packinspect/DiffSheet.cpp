#include "DiffSheet.h"

#include "ContactSheet.h"
#include "GuiSession.h"

#include "Zar/Lt/Exceptions/Check.h"
#include "Zar/ResourcesLibrary/ResourcesLibraryException.h"

#include <QFont>
#include <QPainter>
#include <QString>

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace Zar::ResourcesLibrary::Tools::Inspect {

namespace {

constexpr int kScale = ContactSheet::kScale;
constexpr int kMargin = ContactSheet::kMargin;
constexpr int kPanels = 3;

using Image = PackLayout::Image;

// The two images of a row are matched by kind and so share their geometry, but each panel is still
// drawn with its own image's, and the difference over both, so that no pixel is read from an image
// that lacks it.
ImageGeometry Union(Image const& left, Image const& right)
{
    return ImageGeometry(std::max(left._geometry.Width(), right._geometry.Width()),
        std::max(left._geometry.Height(), right._geometry.Height()));
}

int PanelWidth(ImageGeometry const& geometry)
{
    return std::max(static_cast<int>(geometry.Width()) * kScale, ContactSheet::kMinCellWidth);
}

int RowHeight(ImageGeometry const& geometry)
{
    return static_cast<int>(geometry.Height()) * kScale + ContactSheet::kLabelHeight;
}

// Level of a pixel, or 0 where the image has no such pixel or the file ends before it.
uint8_t LevelAt(PackFile const& pack, Image const& image, uint32_t x, uint32_t y)
{
    if (x >= image._geometry.Width() || y >= image._geometry.Height())
        return 0;
    auto const pixels = pack.Slice(image.FileOffset(), image._geometry.Size());
    if (pixels.size() != image._geometry.Size())
        return 0;
    return image._geometry.Level(pixels.data(), x, y);
}

template <typename Colour>
void DrawPanel(QImage& sheet, int left, int top, ImageGeometry const& geometry, Colour colour)
{
    for (uint32_t y = 0; y < geometry.Height(); ++y)
        for (uint32_t x = 0; x < geometry.Width(); ++x) {
            QRgb const rgb = colour(x, y);
            for (int dy = 0; dy < kScale; ++dy) {
                auto* line = reinterpret_cast<QRgb*>(sheet.scanLine(top + static_cast<int>(y) * kScale + dy));
                std::fill_n(line + left + static_cast<int>(x) * kScale, kScale, rgb);
            }
        }
}

// One changed image and where its row starts.
struct Row {
    Image const& _old;
    Image const& _new;
    int _top;
    int _panel;
};

std::vector<Row> RowsOf(PackComparison const& comparison)
{
    std::vector<Row> rows;
    int top = ContactSheet::kTitleHeight + kMargin;
    for (auto const& change : comparison.ImageChanges()) {
        if (change._kind != PackComparison::Kind::Changed)
            continue;
        auto const both = Union(*change._old, *change._new);
        rows.push_back({ *change._old, *change._new, top, PanelWidth(both) + kMargin });
        top += RowHeight(both) + kMargin;
    }
    return rows;
}

void DrawLabels(QImage& sheet, std::vector<Row> const& rows, std::string const& title)
{
    QPainter painter(&sheet);
    QFont font("DejaVu Sans");
    font.setPixelSize(11);
    painter.setFont(font);
    painter.setPen(QColor(ContactSheet::kText));
    painter.drawText(QRect(kMargin, 0, sheet.width() - 2 * kMargin, ContactSheet::kTitleHeight),
        Qt::AlignLeft | Qt::AlignVCenter, QString::fromStdString(title));
    char const* const labels[kPanels] = { " (old)", " (new)", " (difference)" };
    for (auto const& row : rows) {
        int const labelTop = row._top + static_cast<int>(Union(row._old, row._new).Height()) * kScale;
        QString const name = QString::fromStdString(row._new._name);
        for (int k = 0; k < kPanels; ++k)
            painter.drawText(
                QRect(kMargin + k * row._panel, labelTop, row._panel - kMargin, ContactSheet::kLabelHeight),
                Qt::AlignLeft | Qt::AlignTop, name + labels[k]);
    }
}

} // namespace

QRgb DiffSheet::DifferenceColour(uint8_t oldLevel, uint8_t newLevel)
{
    int const distance = std::abs(static_cast<int>(oldLevel & 0x0F) - static_cast<int>(newLevel & 0x0F));
    if (distance == 0)
        return kUnchanged;
    return qRgb(95 + 10 * distance, 0, 0);
}

QImage DiffSheet::Render(PackComparison const& comparison, PackFile const& oldPack, PackFile const& newPack,
    std::string const& title)
{
    auto const rows = RowsOf(comparison);
    int width = ContactSheet::kMinSheetWidth;
    int height = ContactSheet::kTitleHeight + kMargin;
    for (auto const& row : rows) {
        width = std::max(width, kMargin + kPanels * row._panel);
        height = row._top + RowHeight(Union(row._old, row._new)) + kMargin;
    }
    if (static_cast<int64_t>(width) * height > ContactSheet::kMaxPixels)
        throw ResourcesLibraryException(ZAR_SOURCE_INFO(),
            "The difference sheet would be " + std::to_string(width) + "x" + std::to_string(height)
                + " pixels, more than " + std::to_string(ContactSheet::kMaxPixels));
    GuiSession::Ensure();
    QImage sheet(width, height, QImage::Format_RGB32);
    if (sheet.isNull())
        throw ResourcesLibraryException(ZAR_SOURCE_INFO(), "Cannot allocate the difference sheet");
    sheet.fill(ContactSheet::kBackground);

    // The pixels first, written straight into the image, then the text through a painter.
    for (auto const& row : rows) {
        DrawPanel(sheet, kMargin, row._top, row._old._geometry,
            [&](uint32_t x, uint32_t y) { return ContactSheet::Grey(LevelAt(oldPack, row._old, x, y)); });
        DrawPanel(sheet, kMargin + row._panel, row._top, row._new._geometry,
            [&](uint32_t x, uint32_t y) { return ContactSheet::Grey(LevelAt(newPack, row._new, x, y)); });
        DrawPanel(sheet, kMargin + 2 * row._panel, row._top, Union(row._old, row._new),
            [&](uint32_t x, uint32_t y) {
                return DifferenceColour(LevelAt(oldPack, row._old, x, y), LevelAt(newPack, row._new, x, y));
            });
    }
    DrawLabels(sheet, rows, title);
    return sheet;
}

} // namespace Zar::ResourcesLibrary::Tools::Inspect
