#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace Zar::ResourcesLibrary::Tools::Inspect {

// The size of the 4-bit images of a pack. The pack does not record it, so the commands take it from
// the command line as WxH.
class ImageGeometry {
public:
    // Accepts "WxH" with both numbers from 1 to 65535; anything else gives no geometry.
    static std::optional<ImageGeometry> Parse(std::string_view text);

    ImageGeometry(uint32_t width, uint32_t height);

    uint32_t Width() const { return _width; }
    uint32_t Height() const { return _height; }
    // Bytes of one row: two pixels a byte, padded to 4 bytes.
    std::size_t Stride() const;
    std::size_t Size() const;
    // The level (0 to 15) of one pixel of an image stored at the start of data, which must hold Size() bytes.
    uint8_t Level(uint8_t const* data, uint32_t x, uint32_t y) const;
    std::string ToString() const;

private:
    uint32_t _width;
    uint32_t _height;
};

} // namespace Zar::ResourcesLibrary::Tools::Inspect
