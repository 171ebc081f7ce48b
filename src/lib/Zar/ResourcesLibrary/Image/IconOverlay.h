#pragma once

#include <cstdint>

namespace Zar::ResourcesLibrary::Image {

// The decorations that Paint4Bpp::Draw(IconOverlay) puts on an icon. Values past DottedFrame draw
// nothing, like None.
enum class IconOverlay : uint8_t {
    None = 0,
    Row1 = 1,
    Row2 = 2,
    Row3 = 3,
    Row4 = 4,
    Selected = 5,
    RoundedSelected = 6,
    FramedRoundedSelected = 7,
    Frame = 8,
    DottedFrame = 9,
};

} // namespace Zar::ResourcesLibrary::Image
