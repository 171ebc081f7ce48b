#pragma once

#include <cstdint>

namespace Zar::ResourcesLibrary::Image {

// The compact description of an image kept in constant data, next to its pixel rows (padded to 4
// bytes each). The attribute byte is carried into ImageInfo unchanged; this program gives it no meaning.
struct ImmutableImageRecord {
    uint16_t _width = 0;
    uint16_t _height = 0;
    uint8_t _bitsPerPixel = 0;
    uint8_t _attribute = 0;
};

} // namespace Zar::ResourcesLibrary::Image
