#pragma once

#include "Zar/Lt/Core/StringCollection/RawPStringArray.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace Zar::ResourcesLibrary::Pack {

// The layout of the resource pack oled.pack, in one place for the exporter that writes it and for
// every tool that reads it. All integers in the file are little-endian.
//
// The file is the header sector, then the icon sectors (several icons each), then the screen sectors
// (every screen on fresh sectors). The header's CRC table describes the target's store of sectors:
// icon sectors go there from the first sector given to the packager on, screen sectors from a fixed
// sector on.
class PackFormat {
public:
    // Every sector of the file and of the target's store; each carries one CRC-16 over all its bytes.
    static constexpr std::size_t kSectorSize = 4096;
    // Sectors of the target's store, and so entries of the header's CRC table.
    static constexpr uint32_t kStoreSectors = 256;
    // Target sector of the first screen sector. Only the icons' first sector is given to the packager;
    // this one is part of the format.
    static constexpr uint32_t kFirstScreenSector = 247;
    // The first icon sector the packager takes when it is given none.
    static constexpr uint32_t kDefaultFirstSector = 12;
    // Target sector numbers are 16-bit: the first icon sector and the sectors after it wrap at 65536.
    static constexpr uint32_t kSectorNumberMask = 0xFFFF;
    // A pack is its header sector plus at most the whole store; anything longer is not a pack.
    static constexpr std::size_t kMaxFileSize = (1 + kStoreSectors) * kSectorSize;
    // Fills the free tail of a sector, and the header sector until the header is written last.
    static constexpr uint8_t kPadding = 0xFF;

    // "ZAR" and a zero byte.
    static constexpr std::array<uint8_t, 4> kMagic = { 'Z', 'A', 'R', 0 };
    // 0.5.1.0 when read as a version: the layout described here.
    static constexpr uint32_t kFormatWord = 0x00050100;

    // Header fields by their offset in the header sector, each right after the one before; every byte
    // outside them is 0.
    static constexpr std::size_t kMagicOffset = 0;
    static constexpr std::size_t kFormatOffset = kMagicOffset + kMagic.size();
    static constexpr std::size_t kVersionOffset = kFormatOffset + sizeof(uint32_t);
    static constexpr std::size_t kFirstSectorOffset = kVersionOffset + sizeof(uint32_t);
    static constexpr std::size_t kIconCountOffset = kFirstSectorOffset + sizeof(uint32_t);
    static constexpr std::size_t kScreenCountOffset = kIconCountOffset + sizeof(uint32_t);
    // kStoreSectors 16-bit CRCs indexed by target sector; an entry that no sector maps to stays 0.
    static constexpr std::size_t kCrcTableOffset = kScreenCountOffset + sizeof(uint32_t);
    static constexpr std::size_t kNamesUsedOffset = kCrcTableOffset + kStoreSectors * sizeof(uint16_t);
    static constexpr std::size_t kNamesCountOffset = kNamesUsedOffset + sizeof(uint32_t);
    // The image names, icons first, each a length byte and its bytes, packed end to end; the area is
    // what the fields before it leave of the header sector.
    static constexpr std::size_t kNamesOffset = kNamesCountOffset + sizeof(uint32_t);
    static constexpr std::size_t kNamesCapacity = kSectorSize - kNamesOffset;
    // A name's length is one byte.
    static constexpr std::size_t kMaxNameLength = 255;
    // The names area with its two counters in front, as the exporter fills it: the counters are the
    // header fields kNamesUsedOffset and kNamesCountOffset.
    using NamesArea = Zar::Lt::Core::RawPStringArray<kNamesCapacity>;

    // An image below this many bytes is an icon and shares sectors with other icons; one of this size
    // or larger is a screen and starts on a fresh sector. Icons must fit a sector, so it is at most
    // kSectorSize.
    static constexpr std::size_t kScreenThreshold = 4096;
    // The header maps (icons + 9) / 10 icon sectors and two sectors per screen, whatever the images'
    // sizes: the mapping is made for the usual images, 32 x 24 icons (ten to a sector with the
    // look-ahead close) and 256 x 64 screens (two sectors each). The summary line counts the same way.
    static constexpr uint32_t kIconsPerMappedSector = 10;
    static constexpr uint32_t kSectorsPerMappedScreen = 2;

    static uint16_t ReadU16(std::span<uint8_t const> bytes, std::size_t offset);
    static uint32_t ReadU32(std::span<uint8_t const> bytes, std::size_t offset);
    static void WriteU16(std::span<uint8_t> bytes, std::size_t offset, uint16_t value);
    static void WriteU32(std::span<uint8_t> bytes, std::size_t offset, uint32_t value);

    // Where the CRC entry of a target sector lies in the header; the sector must be in the store.
    static constexpr std::size_t CrcEntryOffset(uint32_t sector)
    {
        return kCrcTableOffset + 2 * std::size_t { sector };
    }
    // Target sector of the icon sector with this index (from 0, in file order).
    static constexpr uint32_t IconSector(uint32_t firstSector, uint64_t index)
    {
        return static_cast<uint32_t>((firstSector + index) & kSectorNumberMask);
    }
    // Target sector of the screen sector with this index (from 0, over all screens in file order).
    static constexpr uint64_t ScreenSector(uint64_t index) { return kFirstScreenSector + index; }
    // Icon and screen sectors that the header maps for so many icons and screens.
    static constexpr uint64_t MappedIconSectors(uint64_t icons)
    {
        return (icons + kIconsPerMappedSector - 1) / kIconsPerMappedSector;
    }
    static constexpr uint64_t MappedScreenSectors(uint64_t screens)
    {
        return screens * kSectorsPerMappedScreen;
    }

    // The value the generated sources give the first icon: icon values count on from sector 2, ten
    // to a sector, so that (first sector - 2) x 10 is the first icon's.
    static constexpr int64_t FirstIconValue(uint32_t firstSector)
    {
        return (static_cast<int64_t>(firstSector) - 2) * kIconsPerMappedSector;
    }
    // Sectors needed for a number of bytes, a partial sector counting as one.
    static constexpr std::size_t SectorsFor(std::size_t bytes)
    {
        return (bytes + kSectorSize - 1) / kSectorSize;
    }
};

// The names area's block ends exactly at the end of the header sector.
static_assert(PackFormat::kNamesUsedOffset + sizeof(PackFormat::NamesArea) == PackFormat::kSectorSize);
static_assert(sizeof(PackFormat::NamesArea) == 2 * sizeof(uint32_t) + PackFormat::kNamesCapacity);

} // namespace Zar::ResourcesLibrary::Pack
