#pragma once

// Reads an oled.pack back for the tests, independently of the exporter's own code: the header
// fields, the CRC table, the names, and the sectors with their CRCs.

#include "ReferenceCrc16.h"

#include <array>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

namespace PackagerTests {

using TestSupport::ReferenceCrc16;

constexpr std::size_t kSector = 4096;

// The CRC of sector number index (0 is the header) of a pack file.
inline uint16_t SectorCrc(std::vector<uint8_t> const& pack, std::size_t index)
{
    return ReferenceCrc16(pack.data() + index * kSector, kSector);
}

inline std::vector<uint8_t> Sector(std::vector<uint8_t> const& pack, std::size_t index)
{
    auto const begin = pack.begin() + static_cast<std::ptrdiff_t>(index * kSector);
    return { begin, begin + static_cast<std::ptrdiff_t>(kSector) };
}

inline uint32_t Le32(std::vector<uint8_t> const& bytes, std::size_t offset)
{
    return static_cast<uint32_t>(bytes.at(offset)) | static_cast<uint32_t>(bytes.at(offset + 1)) << 8
        | static_cast<uint32_t>(bytes.at(offset + 2)) << 16 | static_cast<uint32_t>(bytes.at(offset + 3)) << 24;
}

inline uint16_t Le16(std::vector<uint8_t> const& bytes, std::size_t offset)
{
    return static_cast<uint16_t>(bytes.at(offset) | bytes.at(offset + 1) << 8);
}

struct PackHeader
{
    uint32_t magic = 0;
    uint32_t format = 0;
    uint32_t version = 0;
    uint32_t firstSector = 0;
    uint32_t icons = 0;
    uint32_t screens = 0;
    std::array<uint16_t, 256> crc {};
    uint32_t namesUsed = 0;
    uint32_t namesCount = 0;
    std::vector<std::string> names;
};

inline PackHeader ReadHeader(std::vector<uint8_t> const& pack)
{
    PackHeader header;
    header.magic = Le32(pack, 0);
    header.format = Le32(pack, 4);
    header.version = Le32(pack, 8);
    header.firstSector = Le32(pack, 12);
    header.icons = Le32(pack, 16);
    header.screens = Le32(pack, 20);
    for (std::size_t s = 0; s < header.crc.size(); ++s)
        header.crc[s] = Le16(pack, 24 + 2 * s);
    header.namesUsed = Le32(pack, 536);
    header.namesCount = Le32(pack, 540);
    std::size_t at = 544;
    for (uint32_t i = 0; i < header.namesCount && at < kSector; ++i) {
        std::size_t const length = pack.at(at);
        header.names.emplace_back(pack.begin() + static_cast<std::ptrdiff_t>(at + 1),
            pack.begin() + static_cast<std::ptrdiff_t>(at + 1 + length));
        at += 1 + length;
    }
    return header;
}

// The line the tool prints after the header: every CRC in upper-case hexadecimal, 4 digits.
inline std::string CrcLine(std::vector<uint16_t> const& crcs)
{
    std::string line = "crc:";
    for (std::size_t i = 0; i < crcs.size(); ++i) {
        char text[8];
        std::snprintf(text, sizeof text, "%04X", crcs[i]);
        line += (i == 0 ? "" : " ") + std::string(text);
    }
    return line + "\n";
}

} // namespace PackagerTests
