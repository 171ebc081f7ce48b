#pragma once

#include <cstdint>

// A rectangle in pixels: its top-left corner and its extent.
struct Rect {
    int32_t _x = 0;
    int32_t _y = 0;
    int32_t _width = 0;
    int32_t _height = 0;
};
