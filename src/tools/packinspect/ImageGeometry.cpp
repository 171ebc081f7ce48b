#include "ImageGeometry.h"

#include "Zar/ResourcesLibrary/Image/ImageInfo.h"

#include <charconv>

namespace Zar::ResourcesLibrary::Tools::Inspect {

namespace {

std::optional<uint32_t> ParseDimension(std::string_view text)
{
    uint32_t value = 0;
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (text.empty() || error != std::errc() || end != text.data() + text.size() || value < 1
        || value > 65535)
        return std::nullopt;
    return value;
}

} // namespace

std::optional<ImageGeometry> ImageGeometry::Parse(std::string_view text)
{
    auto const separator = text.find('x');
    if (separator == std::string_view::npos)
        return std::nullopt;
    auto const width = ParseDimension(text.substr(0, separator));
    auto const height = ParseDimension(text.substr(separator + 1));
    if (!width || !height)
        return std::nullopt;
    return ImageGeometry(*width, *height);
}

ImageGeometry::ImageGeometry(uint32_t width, uint32_t height)
    : _width(width)
    , _height(height)
{
}

std::size_t ImageGeometry::Stride() const
{
    // The row length the packager gives the images it packs.
    return Zar::ResourcesLibrary::Image::ImageInfo::StrideOf(
        static_cast<int32_t>(_width), Zar::ResourcesLibrary::Image::ImageFormat::Gray4);
}

std::size_t ImageGeometry::Size() const { return Stride() * _height; }

uint8_t ImageGeometry::Level(uint8_t const* data, uint32_t x, uint32_t y) const
{
    uint8_t const byte = data[y * Stride() + x / 2];
    // The even (left) pixel of a pair is the high nibble.
    return x % 2 == 0 ? byte >> 4 : byte & 0x0F;
}

std::string ImageGeometry::ToString() const { return std::to_string(_width) + "x" + std::to_string(_height); }

} // namespace Zar::ResourcesLibrary::Tools::Inspect
