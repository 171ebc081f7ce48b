#pragma once

// Test helpers of the packinspect tests: pack files and BMP files built byte by byte, and where the
// built tools are.

#include "BmpWriter.h"
#include "PackBuilder.h"
#include "ReferenceCrc16.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace PackInspectTest {

// Packs are built by the shared builder; these tests name its parts unqualified.
using TestSupport::BuildPack;
using TestSupport::Bytes;
using TestSupport::PackContents;
using TestSupport::Pattern;
using TestSupport::PutU16;
using TestSupport::PutU32;
using TestSupport::WorkedExample;

// A 4-bit BMP, bottom-up, with the given palette (16 grey values) and levels (one per pixel, row by
// row from the top). Its resolution fields are left at zero.
inline Bytes Bmp4(
    int width, int height, std::array<uint8_t, 16> const& greys, std::vector<uint8_t> const& levels)
{
    TestSupport::BmpWriter bmp;
    bmp.bitCount = 4;
    bmp.xPelsPerMeter = 0;
    bmp.yPelsPerMeter = 0;
    for (uint8_t const grey : greys)
        bmp.palette.push_back(uint32_t { grey } * 0x010101);
    std::vector<Bytes> rows;
    for (int y = 0; y < height; ++y) {
        Bytes row(static_cast<std::size_t>(width + 1) / 2, 0);
        for (int x = 0; x < width; ++x) {
            uint8_t const level = levels[static_cast<std::size_t>(y * width + x)] & 0x0F;
            row[static_cast<std::size_t>(x / 2)] |= x % 2 == 0 ? static_cast<uint8_t>(level << 4) : level;
        }
        rows.push_back(std::move(row));
    }
    bmp.SetRows(width, std::move(rows), false);
    return bmp.Bytes();
}

inline std::array<uint8_t, 16> AscendingGreys()
{
    std::array<uint8_t, 16> greys {};
    for (int k = 0; k < 16; ++k)
        greys[static_cast<std::size_t>(k)] = static_cast<uint8_t>(17 * k);
    return greys;
}

inline std::array<uint8_t, 16> DescendingGreys()
{
    std::array<uint8_t, 16> greys {};
    for (int k = 0; k < 16; ++k)
        greys[static_cast<std::size_t>(k)] = static_cast<uint8_t>(255 - 17 * k);
    return greys;
}

// Levels of a w x h image whose pixel (x, y) is (x + 3y + seed) mod 16.
inline std::vector<uint8_t> Ramp(int width, int height, int seed)
{
    std::vector<uint8_t> levels;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            levels.push_back(static_cast<uint8_t>((x + 3 * y + seed) % 16));
    return levels;
}

inline std::string PackagerPath()
{
    return std::string(PACKAGER_BINARY_DIR) + "/src/tools/packager/packager";
}

inline std::string PackinspectPath()
{
    return std::string(PACKAGER_BINARY_DIR) + "/src/tools/packinspect/packinspect";
}

} // namespace PackInspectTest
