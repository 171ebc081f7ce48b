// Feeds any bytes to packinspect import's conversion as a file a designer might hand over: decoded
// through Qt (as SVG when the first byte is odd, as a raster image otherwise), composited, brought to
// an icon's size, mapped to grey levels and dithered. Only the project's refusals may come out;
// whatever decodes stays within the declared-size limit and comes out as levels 0 to 15.

#include "FuzzCheck.h"

#include "Ditherer.h"
#include "GreyMapping.h"
#include "ImageDecoder.h"
#include "ImageFit.h"

#include "Zar/Lt/Exceptions/BaseException.h"

#include <QByteArray>

#include <cstddef>
#include <cstdint>

using namespace Zar::ResourcesLibrary::Tools::Inspect;

namespace {

constexpr QSize kIcon(32, 24);

void Convert(QImage const& frame, Ditherer::Mode mode)
{
    ZAR_FUZZ_CHECK(frame.width() <= ImageDecoder::kMaxSide && frame.height() <= ImageDecoder::kMaxSide);
    QImage opaque = ImageFit::Composite(frame, 0);
    if (opaque.size() != kIcon)
        opaque = ImageFit::Scale(opaque, kIcon, ImageFit::Mode::Contain, 0);
    ZAR_FUZZ_CHECK(opaque.size() == kIcon);
    std::vector<uint8_t> greys;
    for (int y = 0; y < kIcon.height(); ++y)
        for (int x = 0; x < kIcon.width(); ++x) {
            QRgb const pixel = opaque.pixel(x, y);
            greys.push_back(GreyMapping::Luma(static_cast<uint8_t>(qRed(pixel)),
                static_cast<uint8_t>(qGreen(pixel)), static_cast<uint8_t>(qBlue(pixel))));
        }
    auto const mapping = GreyMapping::Nearest();
    for (uint8_t const level : Ditherer(mapping, mode).Levels(greys, 32, 24))
        ZAR_FUZZ_CHECK(level <= 15);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size)
{
    if (size == 0)
        return 0;
    bool const svg = data[0] % 2 == 1;
    QByteArray const bytes(reinterpret_cast<char const*>(data) + 1, static_cast<int>(size - 1));
    ImageDecoder::Request request;
    request._target = kIcon;
    request._fit = ImageFit::Mode::Contain;
    try {
        auto const frames = ImageDecoder::DecodeBytes(bytes, svg, request);
        ZAR_FUZZ_CHECK(
            !frames.empty() && frames.size() <= static_cast<std::size_t>(ImageDecoder::kMaxFrames));
        auto mode = static_cast<Ditherer::Mode>(data[0] / 2 % 4);
        for (auto const& frame : frames)
            Convert(frame, mode);
    } catch (Zar::Lt::Exceptions::BaseException const&) {
    }
    return 0;
}
