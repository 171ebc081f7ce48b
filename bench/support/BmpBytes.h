#pragma once

#include "BmpWriter.h"

#include <cstdint>
#include <vector>

namespace Zar::Bench {

// An uncompressed BMP file of the kind the display resources are drawn in, built in memory by the
// tests' BMP builder: a 1-bit file with a white-first palette (black drawing on white) or a 4-bit
// file with a grey ramp from black, stored bottom-up with lines padded to 4 bytes. The pixels are a
// fixed pseudo-random pattern, so that table lookups and nibble work see varied bytes rather than
// one repeated value.
inline std::vector<uint8_t> MakeBmp(int32_t width, int32_t height, uint16_t bitsPerPixel)
{
    using TestSupport::BmpWriter;
    BmpWriter bmp = bitsPerPixel == 1 ? BmpWriter::Mono(width, {}, BmpWriter::WhiteFirst)
                                      : BmpWriter::Gray4(width, {}, BmpWriter::BlackFirst);
    uint32_t state = 0x12345678u;
    bmp.FillRows(height, [&state] {
        state = state * 1664525u + 1013904223u;
        return static_cast<uint8_t>(state >> 24);
    });
    return bmp.Bytes();
}

} // namespace Zar::Bench
