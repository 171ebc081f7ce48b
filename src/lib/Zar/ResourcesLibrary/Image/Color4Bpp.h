#pragma once

#include <cstdint>

namespace Zar::ResourcesLibrary::Image {

// The sixteen grey levels of a 4-bit pixel, from black (0) to full brightness (15).
enum class Color4Bpp : uint8_t {
    Level0 = 0,
    Level1 = 1,
    Level2 = 2,
    Level3 = 3,
    Level4 = 4,
    Level5 = 5,
    Level6 = 6,
    Level7 = 7,
    Level8 = 8,
    Level9 = 9,
    Level10 = 10,
    Level11 = 11,
    Level12 = 12,
    Level13 = 13,
    Level14 = 14,
    Level15 = 15,
};

} // namespace Zar::ResourcesLibrary::Image
