#include "BmpPalette.h"

#include "BmpFile.h"

#include <array>
#include <cstdint>
#include <fstream>

namespace Zar::ResourcesLibrary::Tools::Inspect {

namespace {

namespace Layout = Zar::ResourcesLibrary::Image::BmpLayout;

constexpr std::size_t kEntries = BmpFile::kPaletteEntries;
using Palette = std::array<uint8_t, kEntries * Layout::kPaletteEntrySize>;

bool ReadAt(std::ifstream& stream, uint64_t offset, uint8_t* into, std::size_t size)
{
    stream.seekg(static_cast<std::streamoff>(offset));
    stream.read(reinterpret_cast<char*>(into), static_cast<std::streamsize>(size));
    return stream.gcount() == static_cast<std::streamsize>(size);
}

bool MatchesRamp(Palette const& palette, bool descending)
{
    for (std::size_t k = 0; k < kEntries; ++k) {
        uint8_t const* entry = &palette[k * Layout::kPaletteEntrySize];
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
    std::array<uint8_t, Layout::kFileHeaderSize + Layout::kInfoHeaderSize> headers {};
    if (!stream || !ReadAt(stream, 0, headers.data(), headers.size()))
        return Kind::NotFourBit;
    Layout::BITMAPFILEHEADER const file = Layout::ReadFileHeader(headers.data());
    Layout::BITMAPINFOHEADER const info = Layout::ReadInfoHeader(headers.data() + Layout::kFileHeaderSize);
    if (file.bfType != Layout::kMagic || static_cast<unsigned>(info.biPlanes) * info.biBitCount != 4)
        return Kind::NotFourBit;

    // All 16 entries must lie inside the header block, before the pixel data.
    uint64_t const paletteOffset = Layout::kFileHeaderSize + static_cast<uint64_t>(info.biSize);
    Palette palette {};
    if (paletteOffset + palette.size() > file.bfOffBits
        || !ReadAt(stream, paletteOffset, palette.data(), palette.size()))
        return Kind::Other;
    bool const startsWhite = palette[0] == 0xFF && palette[1] == 0xFF && palette[2] == 0xFF;
    if (startsWhite)
        return MatchesRamp(palette, true) ? Kind::Descending : Kind::Other;
    return MatchesRamp(palette, false) ? Kind::Ascending : Kind::Other;
}

} // namespace Zar::ResourcesLibrary::Tools::Inspect
