#pragma once

#include <cstdint>

// Width and height of a drawing, in pixels.
struct Size {
    int32_t _width = 0;
    int32_t _height = 0;
};
