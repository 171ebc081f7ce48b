#include "ImageFit.h"

#include "Zar/Lt/Exceptions/Check.h"

#include <QPainter>

#include <algorithm>

namespace Zar::ResourcesLibrary::Tools::Inspect {

namespace {

// The whole-pixel size of source scaled by target/source along the axis the mode picks, rounded to
// the nearest pixel and never 0.
QSize ScaledKeepingAspect(QSize source, QSize target, bool cover)
{
    int64_t const sw = source.width();
    int64_t const sh = source.height();
    int64_t const tw = target.width();
    int64_t const th = target.height();
    // tw / sw against th / sh, compared without division.
    bool const widthLimits = cover ? tw * sh >= th * sw : tw * sh <= th * sw;
    if (widthLimits)
        return QSize(static_cast<int>(tw), static_cast<int>(std::max<int64_t>(1, (sh * tw + sw / 2) / sw)));
    return QSize(static_cast<int>(std::max<int64_t>(1, (sw * th + sh / 2) / sh)), static_cast<int>(th));
}

} // namespace

std::optional<ImageFit::Mode> ImageFit::Parse(std::string_view text)
{
    for (Mode mode : { Mode::Contain, Mode::Cover, Mode::Stretch, Mode::None })
        if (text == NameOf(mode))
            return mode;
    return std::nullopt;
}

char const* ImageFit::NameOf(Mode mode)
{
    switch (mode) {
    case Mode::Contain:
        return "contain";
    case Mode::Cover:
        return "cover";
    case Mode::Stretch:
        return "stretch";
    case Mode::None:
        break;
    }
    return "none";
}

QRect ImageFit::Placement(QSize source, QSize target, Mode mode)
{
    ZAR_PRECONDITION(!source.isEmpty() && !target.isEmpty());
    switch (mode) {
    case Mode::Stretch:
        return QRect(QPoint(0, 0), target);
    case Mode::Contain:
    case Mode::Cover: {
        QSize const scaled = ScaledKeepingAspect(source, target, mode == Mode::Cover);
        // Centred; an odd remainder leaves the extra pixel on the right and at the bottom.
        return QRect(
            QPoint((target.width() - scaled.width()) / 2, (target.height() - scaled.height()) / 2), scaled);
    }
    case Mode::None:
        break;
    }
    return QRect(QPoint(0, 0), source);
}

QImage ImageFit::Composite(QImage const& source, uint8_t background)
{
    QImage const straight = source.convertToFormat(QImage::Format_ARGB32);
    QImage opaque(straight.size(), QImage::Format_RGB32);
    for (int y = 0; y < straight.height(); ++y) {
        auto const* in = reinterpret_cast<QRgb const*>(straight.constScanLine(y));
        auto* out = reinterpret_cast<QRgb*>(opaque.scanLine(y));
        for (int x = 0; x < straight.width(); ++x) {
            int const alpha = qAlpha(in[x]);
            auto blend
                = [&](int channel) { return (channel * alpha + background * (255 - alpha) + 127) / 255; };
            out[x] = qRgb(blend(qRed(in[x])), blend(qGreen(in[x])), blend(qBlue(in[x])));
        }
    }
    return opaque;
}

QImage ImageFit::Scale(QImage const& opaque, QSize target, Mode mode, uint8_t background)
{
    ZAR_PRECONDITION(mode != Mode::None);
    QRect const placement = Placement(opaque.size(), target, mode);
    QImage const scaled = opaque.scaled(placement.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                              .convertToFormat(QImage::Format_RGB32);
    QImage result(target, QImage::Format_RGB32);
    result.fill(qRgb(background, background, background));
    for (int y = 0; y < target.height(); ++y) {
        int const sourceY = y - placement.top();
        if (sourceY < 0 || sourceY >= scaled.height())
            continue;
        auto const* in = reinterpret_cast<QRgb const*>(scaled.constScanLine(sourceY));
        auto* out = reinterpret_cast<QRgb*>(result.scanLine(y));
        for (int x = 0; x < target.width(); ++x) {
            int const sourceX = x - placement.left();
            if (sourceX >= 0 && sourceX < scaled.width())
                out[x] = in[sourceX];
        }
    }
    return result;
}

} // namespace Zar::ResourcesLibrary::Tools::Inspect
