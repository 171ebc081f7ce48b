#include "BmpPalette.h"

#include "BmpFile.h"

#include <array>
#include <cstdint>
#include <fstream>

namespace Zar::ResourcesLibrary::Tools::Inspect {

namespace {

constexpr std::size_t kFileHeaderSize = BmpFile::kFileHeaderSize;
constexpr std::size_t kInfoHeaderSize = BmpFile::kInfoHeaderSize;
constexpr std::size_t kEntries = BmpFile::kPaletteEntries;

uint32_t U32(uint8_t const* p)
{
    return static_cast<uint32_t>(p[0]) | static_cast<uint32_t>(p[1]) << 8 | static_cast<uint32_t>(p[2]) << 16
        | static_cast<uint32_t>(p[3]) << 24;
}

uint16_t U16(uint8_t const* p) { return static_cast<uint16_t>(p[0] | p[1] << 8); }

bool ReadAt(std::ifstream& stream, uint64_t offset, uint8_t* into, std::size_t size)
{
    stream.seekg(static_cast<std::streamoff>(offset));
    stream.read(reinterpret_cast<char*>(into), static_cast<std::streamsize>(size));
    return stream.gcount() == static_cast<std::streamsize>(size);
}

bool MatchesRamp(std::array<uint8_t, kEntries * BmpFile::kPaletteEntrySize> const& palette, bool descending)
{
    for (std::size_t k = 0; k < kEntries; ++k) {
        uint8_t const* entry = &palette[k * BmpFile::kPaletteEntrySize];
        if (entry[0] != entry[1] || entry[1] != entry[2])
            return false;
        int const level = descending ? 15 - static_cast<int>(k) : static_cast<int>(k);
        if (BmpPalette::NearestLevel(entry[0]) != level)
            return false;
    }
    return true;
}

} // namespace

int BmpPalette::NearestLevel(int grey) { return (grey + 8) / 17; }

BmpPalette::Kind BmpPalette::Classify(std::string const& path)
{
    std::ifstream stream(path, std::ios::binary);
    std::array<uint8_t, kFileHeaderSize + kInfoHeaderSize> headers {};
    if (!stream || !ReadAt(stream, 0, headers.data(), headers.size()) || headers[0] != 'B'
        || headers[1] != 'M')
        return Kind::NotFourBit;
    uint8_t const* info = headers.data() + kFileHeaderSize;
    uint32_t const dataOffset = U32(headers.data() + 10);
    uint32_t const infoSize = U32(info);
    unsigned const bits = static_cast<unsigned>(U16(info + 12)) * U16(info + 14);
    if (bits != 4)
        return Kind::NotFourBit;

    // All 16 entries must lie inside the header block, before the pixel data.
    uint64_t const paletteOffset = kFileHeaderSize + static_cast<uint64_t>(infoSize);
    std::array<uint8_t, kEntries * BmpFile::kPaletteEntrySize> palette {};
    if (paletteOffset + palette.size() > dataOffset
        || !ReadAt(stream, paletteOffset, palette.data(), palette.size()))
        return Kind::Other;
    bool const startsWhite = palette[0] == 0xFF && palette[1] == 0xFF && palette[2] == 0xFF;
    if (startsWhite)
        return MatchesRamp(palette, true) ? Kind::Descending : Kind::Other;
    return MatchesRamp(palette, false) ? Kind::Ascending : Kind::Other;
}

} // namespace Zar::ResourcesLibrary::Tools::Inspect
