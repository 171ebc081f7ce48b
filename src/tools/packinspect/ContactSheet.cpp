#include "ContactSheet.h"

#include "GuiSession.h"

#include "Zar/Lt/Exceptions/Check.h"
#include "Zar/ResourcesLibrary/ResourcesLibraryException.h"

#include <QFont>
#include <QFontMetrics>
#include <QPainter>
#include <QString>

#include <algorithm>

namespace Zar::ResourcesLibrary::Tools::Inspect {

ContactSheet ContactSheet::Lay(PackFile const& pack, PackLayout const& layout)
{
    ContactSheet sheet;
    int width = kMinSheetWidth;
    for (auto const& image : layout.Images())
        width = std::max(width, static_cast<int>(image._geometry.Width()) * kScale + 2 * kMargin);

    int x = kMargin;
    int y = kTitleHeight + kMargin;
    int rowHeight = 0;
    PackLayout::Kind previousKind = PackLayout::Kind::Icon;
    for (auto const& image : layout.Images()) {
        int const pixelsWidth = static_cast<int>(image._geometry.Width()) * kScale;
        int const pixelsHeight = static_cast<int>(image._geometry.Height()) * kScale;
        int const cellWidth = std::max(pixelsWidth, kMinCellWidth);
        bool const rowFull = x + cellWidth > width - kMargin;
        bool const firstScreen = image._kind != previousKind;
        if (x > kMargin && (rowFull || firstScreen || image._kind == PackLayout::Kind::Screen)) {
            x = kMargin;
            y += rowHeight + kMargin;
            rowHeight = 0;
        }
        bool const inFile
            = pack.Slice(image.FileOffset(), image._geometry.Size()).size() == image._geometry.Size();
        sheet._cells.push_back({ image, QRect(x, y, pixelsWidth, pixelsHeight),
            QRect(x, y + pixelsHeight, cellWidth, kLabelHeight), inFile });
        x += cellWidth + kMargin;
        rowHeight = std::max(rowHeight, pixelsHeight + kLabelHeight);
        previousKind = image._kind;
    }
    sheet._size = QSize(width, y + rowHeight + kMargin);
    return sheet;
}

QRgb ContactSheet::Grey(uint8_t level)
{
    int const grey = (level & 0x0F) * 17;
    return qRgb(grey, grey, grey);
}

ContactSheet::LevelGreys ContactSheet::LinearGreys()
{
    LevelGreys greys {};
    for (uint8_t level = 0; level < greys.size(); ++level)
        greys[level] = static_cast<uint8_t>(qRed(Grey(level)));
    return greys;
}

QImage ContactSheet::Render(PackFile const& pack, std::string const& title, LevelGreys const& greys) const
{
    // A lying image count must not turn into a huge allocation.
    if (static_cast<int64_t>(_size.width()) * _size.height() > kMaxPixels)
        throw ResourcesLibraryException(ZAR_SOURCE_INFO(),
            "The contact sheet would be " + std::to_string(_size.width()) + "x"
                + std::to_string(_size.height()) + " pixels, more than " + std::to_string(kMaxPixels));
    GuiSession::Ensure();
    QImage image(_size, QImage::Format_RGB32);
    if (image.isNull())
        throw ResourcesLibraryException(ZAR_SOURCE_INFO(), "Cannot allocate the contact sheet");
    image.fill(kBackground);
    for (auto const& cell : _cells) {
        if (cell._inFile)
            DrawPixels(image, cell, pack, greys);
        else
            DrawMissing(image, cell);
    }

    QPainter painter(&image);
    QFont font("DejaVu Sans");
    font.setPixelSize(11);
    painter.setFont(font);
    painter.setPen(QColor(kText));
    QFontMetrics const metrics(font);
    painter.drawText(QRect(kMargin, 0, _size.width() - 2 * kMargin, kTitleHeight),
        Qt::AlignLeft | Qt::AlignVCenter, QString::fromStdString(title));
    for (auto const& cell : _cells) {
        QString const name = metrics.elidedText(
            QString::fromStdString(cell._image._name), Qt::ElideRight, cell._label.width());
        QString const value = QString("%1 %2").arg(cell._image.KindName()).arg(cell._image._value);
        painter.drawText(cell._label, Qt::AlignLeft | Qt::AlignTop, name + "\n" + value);
    }
    return image;
}

void ContactSheet::DrawPixels(QImage& sheet, Cell const& cell, PackFile const& pack, LevelGreys const& greys)
{
    ImageGeometry const& geometry = cell._image._geometry;
    uint8_t const* data = pack.Slice(cell._image.FileOffset(), geometry.Size()).data();
    for (int y = 0; y < cell._pixels.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(sheet.scanLine(cell._pixels.top() + y));
        for (int x = 0; x < cell._pixels.width(); ++x) {
            uint8_t const grey = greys[geometry.Level(
                data, static_cast<uint32_t>(x / kScale), static_cast<uint32_t>(y / kScale))];
            line[cell._pixels.left() + x] = qRgb(grey, grey, grey);
        }
    }
}

void ContactSheet::DrawMissing(QImage& sheet, Cell const& cell)
{
    QPainter painter(&sheet);
    painter.setPen(QPen(QColor(kMissing), 2));
    painter.drawRect(cell._pixels.adjusted(1, 1, -1, -1));
    painter.drawLine(cell._pixels.topLeft(), cell._pixels.bottomRight());
    painter.drawLine(cell._pixels.topRight(), cell._pixels.bottomLeft());
}

std::vector<std::string> ContactSheet::MissingImages() const
{
    std::vector<std::string> missing;
    for (auto const& cell : _cells)
        if (!cell._inFile)
            missing.push_back(cell._image._name);
    return missing;
}

} // namespace Zar::ResourcesLibrary::Tools::Inspect
