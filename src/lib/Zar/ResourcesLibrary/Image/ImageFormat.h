#pragma once

#include <cstdint>

namespace Zar::ResourcesLibrary::Image {

// Pixel layouts; stored as one byte in ImageInfo.
enum class ImageFormat : uint8_t {
    Unknown = 0,
    Rgbx = 1,
    Rgba = 2,
    Bgrx = 3,
    Bgra = 4,
    Rgb24 = 5,
    Bgr24 = 6,
    Mono = 7,
    Gray4 = 8,
    Gray8 = 9,
    YCrCb16 = 10,
    PlanarYCrCb16 = 11,
};

} // namespace Zar::ResourcesLibrary::Image
