#include "ImportPreview.h"

#include "BmpFile.h"
#include "GuiSession.h"

#include "Zar/Lt/Exceptions/Check.h"
#include "Zar/ResourcesLibrary/ResourcesLibraryException.h"

#include <QFont>
#include <QFontMetrics>
#include <QPainter>

#include <algorithm>

namespace Zar::ResourcesLibrary::Tools::Inspect {

namespace {

constexpr QRgb kBackground = 0xFF3A3A5A;
constexpr QRgb kText = 0xFFFFFFFF;

} // namespace

std::string ImportPreview::Label(ImageImporter::Image const& image, std::string const& options)
{
    return image._name + "  (" + options + ")";
}

void ImportPreview::DrawScaled(QImage& sheet, QImage const& picture, int left, int top)
{
    for (int y = 0; y < picture.height() * kScale; ++y) {
        auto const* in = reinterpret_cast<QRgb const*>(picture.constScanLine(y / kScale));
        auto* out = reinterpret_cast<QRgb*>(sheet.scanLine(top + y));
        for (int x = 0; x < picture.width() * kScale; ++x)
            out[left + x] = in[x / kScale] | 0xFF000000;
    }
}

void ImportPreview::DrawLevels(QImage& sheet, ImageImporter::Image const& image, int left, int top)
{
    for (uint32_t y = 0; y < image._height * kScale; ++y) {
        auto* out = reinterpret_cast<QRgb*>(sheet.scanLine(top + static_cast<int>(y)));
        for (uint32_t x = 0; x < image._width * kScale; ++x) {
            uint8_t const grey = BmpFile::GreyOf(image._levels[(y / kScale) * image._width + x / kScale]);
            out[left + static_cast<int>(x)] = qRgb(grey, grey, grey);
        }
    }
}

QImage ImportPreview::Render(std::vector<ImageImporter::Image> const& images, std::string const& options)
{
    GuiSession::Ensure();
    QFont font("DejaVu Sans");
    font.setPixelSize(11);
    QFontMetrics const metrics(font);
    int64_t width = 0;
    int64_t height = kMargin;
    for (auto const& image : images) {
        width = std::max<int64_t>(
            width, metrics.horizontalAdvance(QString::fromStdString(Label(image, options))) + 2 * kMargin);
        int64_t const rowWidth
            = (static_cast<int64_t>(image._composited.width()) + image._width) * kScale + 3 * kMargin;
        width = std::max(width, rowWidth);
        height
            += kLabelHeight + std::max<int64_t>(image._composited.height(), image._height) * kScale + kMargin;
    }
    width = std::max<int64_t>(width, 320);
    if (width * height > kMaxPixels)
        throw ResourcesLibraryException(ZAR_SOURCE_INFO(),
            "the preview would be " + std::to_string(width) + "x" + std::to_string(height)
                + " pixels, more than " + std::to_string(kMaxPixels) + "; preview fewer or smaller images");
    QImage sheet(static_cast<int>(width), static_cast<int>(height), QImage::Format_RGB32);
    sheet.fill(kBackground);
    QPainter painter(&sheet);
    painter.setFont(font);
    painter.setPen(QColor(kText));
    int top = kMargin;
    for (auto const& image : images) {
        painter.drawText(QRect(kMargin, top, static_cast<int>(width) - 2 * kMargin, kLabelHeight),
            Qt::AlignLeft | Qt::AlignVCenter, QString::fromStdString(Label(image, options)));
        top += kLabelHeight;
        DrawScaled(sheet, image._composited, kMargin, top);
        DrawLevels(sheet, image, 2 * kMargin + image._composited.width() * kScale, top);
        top += std::max<int>(image._composited.height(), static_cast<int>(image._height)) * kScale + kMargin;
    }
    return sheet;
}

} // namespace Zar::ResourcesLibrary::Tools::Inspect
