#pragma once

// Pack files built byte by byte for the tests, laid out the way the packager writes them.
//
// The layout is written out here with its own numbers on purpose, as in PackReader.h: it does not use
// the product's definition of the pack format, so that a wrong constant there makes the tests fail
// instead of being copied into the packs the tests compare against.
//
//   auto pack = BuildPack(WorkedExample());   // 12 icons of 384 bytes and one 8192-byte screen
//   PutU32(pack, 536, 5000);                  // a names area that claims too much

#include "ReferenceCrc16.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

namespace TestSupport {

using Bytes = std::vector<uint8_t>;

inline void PutU16(Bytes& bytes, std::size_t offset, uint16_t value)
{
    bytes[offset] = static_cast<uint8_t>(value);
    bytes[offset + 1] = static_cast<uint8_t>(value >> 8);
}

inline void PutU32(Bytes& bytes, std::size_t offset, uint32_t value)
{
    for (int i = 0; i < 4; ++i)
        bytes[offset + i] = static_cast<uint8_t>(value >> (8 * i));
}

// An image of the given size whose byte k is seed + k, so every image and every byte differs.
inline Bytes Pattern(std::size_t size, uint8_t seed)
{
    Bytes bytes(size);
    for (std::size_t k = 0; k < size; ++k)
        bytes[k] = static_cast<uint8_t>(seed + k);
    return bytes;
}

struct PackContents {
    uint32_t _version = 0x01020304;
    uint32_t _firstSector = 12;
    std::vector<Bytes> _icons;
    std::vector<Bytes> _screens;
    // Names of the icons, then the screens; generated as Icon0.., Screen0.. when empty.
    std::vector<std::string> _names;
};

// Lays a pack out the way the packager writes one: icons packed with its look-ahead sector close,
// sectors padded with 0xFF, every screen on fresh sectors, the CRC table filled by its formula.
inline Bytes BuildPack(PackContents const& contents)
{
    constexpr std::size_t sector = 4096;
    Bytes file(sector, 0);
    std::vector<uint16_t> crcs;
    auto closeSector = [&](std::size_t offset) {
        file.insert(file.end(), sector - offset, 0xFF);
        crcs.push_back(TestSupport::ReferenceCrc16(file.data() + file.size() - sector, sector));
    };
    std::size_t offset = 0;
    for (auto const& icon : contents._icons) {
        file.insert(file.end(), icon.begin(), icon.end());
        offset += icon.size();
        if (offset + icon.size() >= sector) {
            closeSector(offset);
            offset = 0;
        }
    }
    if (offset != 0)
        closeSector(offset);
    for (auto const& screen : contents._screens) {
        for (std::size_t start = 0; start < screen.size(); start += sector) {
            std::size_t const piece = std::min(sector, screen.size() - start);
            file.insert(file.end(), screen.begin() + static_cast<std::ptrdiff_t>(start),
                screen.begin() + static_cast<std::ptrdiff_t>(start + piece));
            closeSector(piece);
        }
    }

    std::copy_n("ZAR", 4, file.begin());
    PutU32(file, 4, 0x00050100);
    PutU32(file, 8, contents._version);
    PutU32(file, 12, contents._firstSector & 0xFFFF);
    PutU32(file, 16, static_cast<uint32_t>(contents._icons.size()));
    PutU32(file, 20, static_cast<uint32_t>(contents._screens.size()));
    std::size_t const iconSectors = (contents._icons.size() + 9) / 10;
    if (iconSectors + 2 * contents._screens.size() > crcs.size())
        throw std::logic_error("the packager refuses a pack whose CRC table is short");
    for (std::size_t i = 0; i < iconSectors; ++i)
        PutU16(file, 24 + 2 * ((contents._firstSector + i) & 0xFFFF), crcs[i]);
    for (std::size_t j = 0; j < 2 * contents._screens.size(); ++j)
        if (247 + j < 256)
            PutU16(file, 24 + 2 * (247 + j), crcs[iconSectors + j]);

    std::vector<std::string> names = contents._names;
    if (names.empty()) {
        for (std::size_t k = 0; k < contents._icons.size(); ++k)
            names.push_back("Icon" + std::to_string(k));
        for (std::size_t k = 0; k < contents._screens.size(); ++k)
            names.push_back("Screen" + std::to_string(k));
    }
    std::size_t used = 0;
    for (auto const& name : names) {
        file[544 + used] = static_cast<uint8_t>(name.size());
        std::copy(name.begin(), name.end(), file.begin() + static_cast<std::ptrdiff_t>(544 + used + 1));
        used += 1 + name.size();
    }
    PutU32(file, 536, static_cast<uint32_t>(used));
    PutU32(file, 540, static_cast<uint32_t>(names.size()));
    return file;
}

// The usual pack of the examples: 12 icons of 32x24 (384 bytes), one screen of 256x64 (8192 bytes).
inline PackContents WorkedExample()
{
    PackContents contents;
    for (uint8_t k = 0; k < 12; ++k)
        contents._icons.push_back(Pattern(384, static_cast<uint8_t>(k * 7)));
    contents._screens.push_back(Pattern(8192, 3));
    return contents;
}

} // namespace TestSupport
