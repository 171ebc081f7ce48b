#pragma once

// Reads an oled.pack back for the tests, independently of the code that writes and inspects packs:
// little-endian fields, the header with its CRC table and names, and the sectors with their CRCs.
// Its numbers (the sector size, the header offsets, the names area) are written out here on purpose
// and not taken from the product's PackFormat: a wrong constant there must fail the tests, not be
// read back the same wrong way.
// Reads are checked, so a pack that is shorter than a test expects fails that test with
// std::out_of_range instead of reading past the bytes.
//
//   std::vector<uint8_t> const pack = ReadBytes(folder / "oled.pack");
//   EXPECT_EQ(SectorCrc(pack, 1), ReadHeader(pack).crc[12]);

#include "ReferenceCrc16.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

namespace TestSupport {

constexpr std::size_t kSector = 4096;

inline uint16_t Le16(std::vector<uint8_t> const& bytes, std::size_t offset)
{
    return static_cast<uint16_t>(bytes.at(offset) | bytes.at(offset + 1) << 8);
}

inline uint32_t Le32(std::vector<uint8_t> const& bytes, std::size_t offset)
{
    return static_cast<uint32_t>(Le16(bytes, offset)) | static_cast<uint32_t>(Le16(bytes, offset + 2)) << 16;
}

// Sector number index of a pack file; 0 is the header.
inline std::vector<uint8_t> Sector(std::vector<uint8_t> const& pack, std::size_t index)
{
    if (pack.size() / kSector <= index)
        throw std::out_of_range("the pack has no sector " + std::to_string(index));
    auto const begin = pack.begin() + static_cast<std::ptrdiff_t>(index * kSector);
    return { begin, begin + static_cast<std::ptrdiff_t>(kSector) };
}

inline uint16_t SectorCrc(std::vector<uint8_t> const& pack, std::size_t index)
{
    return ReferenceCrc16(Sector(pack, index));
}

struct PackHeader {
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
        if (at + 1 + length > pack.size())
            throw std::out_of_range("a name runs past the end of the pack");
        header.names.emplace_back(pack.begin() + static_cast<std::ptrdiff_t>(at + 1),
            pack.begin() + static_cast<std::ptrdiff_t>(at + 1 + length));
        at += 1 + length;
    }
    return header;
}

} // namespace TestSupport
