#pragma once

#include <cstdint>
#include <vector>

namespace Zar::Bench {

// An uncompressed BMP file of the kind the display resources are drawn in, built in memory: a
// 1-bit file with a white-first palette (black drawing on white) or a 4-bit file with a grey ramp
// from black, stored bottom-up with lines padded to 4 bytes. The pixels are a fixed pseudo-random
// pattern, so that table lookups and nibble work see varied bytes rather than one repeated value.
inline std::vector<uint8_t> MakeBmp(int32_t width, int32_t height, uint16_t bitsPerPixel)
{
    auto const paletteEntries = uint32_t { 1 } << bitsPerPixel;
    auto const stride = ((static_cast<uint32_t>(width) * bitsPerPixel + 31) / 32) * 4;
    auto const dataSize = stride * static_cast<uint32_t>(height);
    uint32_t const dataOffset = 14 + 40 + 4 * paletteEntries;

    std::vector<uint8_t> bytes;
    bytes.reserve(dataOffset + dataSize);
    auto put16 = [&bytes](uint32_t value) {
        bytes.push_back(static_cast<uint8_t>(value));
        bytes.push_back(static_cast<uint8_t>(value >> 8));
    };
    auto put32 = [&put16](uint32_t value) {
        put16(value & 0xFFFF);
        put16(value >> 16);
    };

    put16(0x4D42); // 'B', 'M'
    put32(dataOffset + dataSize); // bfSize
    put32(0); // bfReserved1, bfReserved2
    put32(dataOffset); // bfOffBits
    put32(40); // biSize
    put32(static_cast<uint32_t>(width));
    put32(static_cast<uint32_t>(height)); // positive: bottom-up
    put16(1); // biPlanes
    put16(bitsPerPixel);
    put32(0); // biCompression
    put32(dataSize); // biSizeImage
    put32(2835); // biXPelsPerMeter
    put32(2835); // biYPelsPerMeter
    put32(paletteEntries); // biClrUsed
    put32(0); // biClrImportant
    for (uint32_t entry = 0; entry < paletteEntries; ++entry) {
        auto level = static_cast<uint8_t>(entry * 255 / (paletteEntries - 1));
        if (bitsPerPixel == 1)
            level = static_cast<uint8_t>(255 - level);
        bytes.insert(bytes.end(), { level, level, level, 0 });
    }
    uint32_t state = 0x12345678u;
    for (uint32_t i = 0; i < dataSize; ++i) {
        state = state * 1664525u + 1013904223u;
        bytes.push_back(static_cast<uint8_t>(state >> 24));
    }
    return bytes;
}

} // namespace Zar::Bench
