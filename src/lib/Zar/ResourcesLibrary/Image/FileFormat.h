#pragma once

#include <cstdint>

namespace Zar::ResourcesLibrary::Image {

// Image file kinds, chosen by file extension.
enum class FileFormat : int32_t {
    None = 0,
    Raw = 1,
    Yuv = 2,
    PlanarYuv = 3,
    Mono = 4,
    Bmp = 5,
    Jpeg = 6,
    Png = 7,
    Pbm = 8,
    Pgm = 9,
    Ppm = 10,
    Ascii = 11,
    Hpp = 12,
    C = 13,
    Qt = 14,
    Bars = 15,
    BarsWithText = 16,
};

} // namespace Zar::ResourcesLibrary::Image
