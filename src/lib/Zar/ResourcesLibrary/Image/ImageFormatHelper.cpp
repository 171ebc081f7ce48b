#include "Zar/ResourcesLibrary/Image/ImageFormatHelper.h"

#include <iterator>

namespace Zar::ResourcesLibrary::Image {

// The Rgb and Bgr families share their numeric masks: the name tells which component comes first.
ImageFormatHelper::Info const ImageFormatHelper::_info[12] = {
    { "Unknown", { 0, 0, 0, 0 } },
    { "Rgbx", { 0x00FF0000, 0x0000FF00, 0x000000FF, 0 } },
    { "Rgba", { 0x00FF0000, 0x0000FF00, 0x000000FF, 0xFF000000 } },
    { "Bgrx", { 0x00FF0000, 0x0000FF00, 0x000000FF, 0 } },
    { "Bgra", { 0x00FF0000, 0x0000FF00, 0x000000FF, 0xFF000000 } },
    { "Rgb24", { 0x00FF0000, 0x0000FF00, 0x000000FF, 0 } },
    { "Bgr24", { 0x00FF0000, 0x0000FF00, 0x000000FF, 0 } },
    { "Mono", { 0x1, 0, 0, 0 } },
    { "Gray4", { 0xF, 0, 0, 0 } },
    { "Gray8", { 0xFF, 0, 0, 0 } },
    { "YCrCb16", { 0xFF, 0x3F, 0x3F, 0 } },
    { "PlanarYCrCb16", { 0xFF, 0x3F, 0x3F, 0 } },
};

uint8_t const ImageFormatHelper::_bitsPerPixel[12] = { 32, 32, 32, 32, 32, 24, 24, 1, 4, 8, 16, 16 };

namespace {

constexpr ImageFormat kUnknown = ImageFormat::Unknown;

} // namespace

// Indexed by bits per pixel minus 1.
ImageFormat const ImageFormatHelper::_formatOfBits[32] = {
    ImageFormat::Mono, kUnknown, kUnknown, ImageFormat::Gray4, //  1 to 4
    kUnknown, kUnknown, kUnknown, ImageFormat::Gray8, //  5 to 8
    kUnknown, kUnknown, kUnknown, kUnknown, //  9 to 12
    kUnknown, kUnknown, kUnknown, kUnknown, // 13 to 16
    kUnknown, kUnknown, kUnknown, kUnknown, // 17 to 20
    kUnknown, kUnknown, kUnknown, ImageFormat::Rgb24, // 21 to 24
    kUnknown, kUnknown, kUnknown, kUnknown, // 25 to 28
    kUnknown, kUnknown, kUnknown, ImageFormat::Rgba, // 29 to 32
};

ImageFormatHelper::Info const& ImageFormatHelper::GetInfo(ImageFormat format) noexcept
{
    auto const index = static_cast<std::size_t>(format);
    return index < std::size(_info) ? _info[index] : _info[0];
}

char const* ImageFormatHelper::GetString(unsigned int format) noexcept
{
    return GetInfo(static_cast<ImageFormat>(format & 0xFFu))._name;
}

uint32_t ImageFormatHelper::BitsPerPixel(ImageFormat format) noexcept
{
    // Formats past the table count as 16 bits, like the two YCrCb layouts that end it.
    auto const index = static_cast<std::size_t>(format);
    return index < std::size(_bitsPerPixel) ? _bitsPerPixel[index] : 16u;
}

ImageFormat ImageFormatHelper::GetFormat(unsigned int bitsPerPixel) noexcept
{
    if (bitsPerPixel == 0 || bitsPerPixel > std::size(_formatOfBits))
        return ImageFormat::Unknown;
    return _formatOfBits[bitsPerPixel - 1];
}

} // namespace Zar::ResourcesLibrary::Image
