#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace Zar::ResourcesLibrary::Tools::Inspect {

// The layout of a pack file as the packager writes it, in one place, so that every command reads the
// same offsets. Everything in the file is little-endian.
class PackFormat {
public:
    static constexpr std::size_t SectorSize = 4096;
    // The target store the CRC table describes, and the fixed sector where screens begin in it.
    static constexpr unsigned StoreSectors = 256;
    static constexpr unsigned FirstScreenSector = 247;
    // A pack is its header sector plus at most the whole store; anything longer is not a pack.
    static constexpr std::size_t MaxFileSize = (1 + StoreSectors) * SectorSize;

    static constexpr uint8_t Magic[4] = { 'Z', 'A', 'R', 0 };
    static constexpr uint32_t FormatWord = 0x00050100;

    static constexpr std::size_t MagicOffset = 0;
    static constexpr std::size_t FormatOffset = 4;
    static constexpr std::size_t VersionOffset = 8;
    static constexpr std::size_t FirstSectorOffset = 12;
    static constexpr std::size_t IconCountOffset = 16;
    static constexpr std::size_t ScreenCountOffset = 20;
    static constexpr std::size_t CrcTableOffset = 24;
    static constexpr std::size_t NamesUsedOffset = 536;
    static constexpr std::size_t NamesCountOffset = 540;
    static constexpr std::size_t NamesOffset = 544;
    static constexpr std::size_t NamesCapacity = 3552;

    // Images below this many bytes are icons; the others are screens.
    static constexpr std::size_t ScreenThreshold = 4096;
    // The packager's header maps (icons + 9) / 10 icon sectors and two sectors per screen.
    static constexpr unsigned IconsPerMappedSector = 10;
    static constexpr unsigned SectorsPerMappedScreen = 2;

    static uint16_t ReadU16(std::span<uint8_t const> bytes, std::size_t offset);
    static uint32_t ReadU32(std::span<uint8_t const> bytes, std::size_t offset);

    // The value the generated headers give to the first icon: (first sector - 2) x 10.
    static int64_t FirstIconValue(uint32_t firstSector);
    // Sectors needed for a number of bytes, a partial sector counting as one.
    static std::size_t SectorsFor(std::size_t bytes);
};

} // namespace Zar::ResourcesLibrary::Tools::Inspect
