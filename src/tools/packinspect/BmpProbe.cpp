#include "BmpProbe.h"

#include "BmpFile.h"
#include "BmpPalette.h"

#include <algorithm>
#include <fstream>

namespace Zar::ResourcesLibrary::Tools::Inspect {

namespace {

constexpr std::size_t kHeadersSize = BmpFile::kFileHeaderSize + BmpFile::kInfoHeaderSize;
// A palette never has more entries than an 8-bit index reaches.
constexpr std::size_t kMaxPaletteEntries = 256;

uint32_t U32(uint8_t const* p)
{
    return static_cast<uint32_t>(p[0]) | static_cast<uint32_t>(p[1]) << 8 | static_cast<uint32_t>(p[2]) << 16
        | static_cast<uint32_t>(p[3]) << 24;
}

uint16_t U16(uint8_t const* p) { return static_cast<uint16_t>(p[0] | p[1] << 8); }

// How many palette entries the depth indexes: 2 for 1 bit, 16 for 4, none above 8 bits.
std::size_t IndexedEntries(unsigned bits) { return bits >= 1 && bits <= 8 ? std::size_t { 1 } << bits : 0; }

} // namespace

std::optional<BmpProbe> BmpProbe::Read(std::string const& path)
{
    std::ifstream stream(path, std::ios::binary);
    std::array<uint8_t, kHeadersSize> headers {};
    stream.read(reinterpret_cast<char*>(headers.data()), headers.size());
    if (!stream || headers[0] != 'B' || headers[1] != 'M')
        return std::nullopt;
    uint8_t const* info = headers.data() + BmpFile::kFileHeaderSize;
    BmpProbe probe;
    probe._bits = static_cast<unsigned>(U16(info + 12)) * U16(info + 14);
    probe._compression = U32(info + 16);

    uint64_t const paletteOffset = BmpFile::kFileHeaderSize + uint64_t { U32(info) };
    uint64_t const dataOffset = U32(headers.data() + 10);
    uint64_t const room = dataOffset > paletteOffset ? (dataOffset - paletteOffset) / 4 : 0;
    uint32_t const used = U32(info + 32);
    std::size_t const declared = used != 0 ? used : IndexedEntries(probe._bits);
    auto const count = static_cast<std::size_t>(
        std::min<uint64_t>({ room, declared, IndexedEntries(probe._bits), kMaxPaletteEntries }));
    std::vector<uint8_t> entries(count * BmpFile::kPaletteEntrySize);
    stream.seekg(static_cast<std::streamoff>(paletteOffset));
    stream.read(reinterpret_cast<char*>(entries.data()), static_cast<std::streamsize>(entries.size()));
    auto const got = static_cast<std::size_t>(stream.gcount()) / BmpFile::kPaletteEntrySize;
    for (std::size_t k = 0; k < got; ++k) {
        uint8_t const* entry = &entries[k * BmpFile::kPaletteEntrySize];
        probe._palette.push_back({ entry[2], entry[1], entry[0] });
    }
    return probe;
}

bool BmpProbe::FirstEntryIsWhite() const
{
    return !_palette.empty() && _palette[0]._red == 0xFF && _palette[0]._green == 0xFF
        && _palette[0]._blue == 0xFF;
}

int BmpProbe::LoadedLevel(std::size_t index) const
{
    int const level = _bits == 1 ? (index == 0 ? 0 : 15) : static_cast<int>(index & 0x0F);
    return FirstEntryIsWhite() ? 15 - level : level;
}

int BmpProbe::DrawnLevel(Colour colour)
{
    int const luma = (299 * colour._red + 587 * colour._green + 114 * colour._blue + 500) / 1000;
    return BmpPalette::NearestLevel(luma);
}

std::vector<std::size_t> BmpProbe::MisreadIndices() const
{
    std::vector<std::size_t> misread;
    if (_bits != 1 && _bits != 4)
        return misread;
    for (std::size_t k = 0; k < _palette.size(); ++k)
        if (DrawnLevel(_palette[k]) != LoadedLevel(k))
            misread.push_back(k);
    return misread;
}

std::string BmpProbe::CompressionName(uint32_t compression)
{
    switch (compression) {
    case 0:
        return "none";
    case 1:
        return "RLE8";
    case 2:
        return "RLE4";
    case 3:
        return "bit fields";
    case 4:
        return "JPEG";
    case 5:
        return "PNG";
    case 6:
        return "alpha bit fields";
    default:
        return "unknown compression " + std::to_string(compression);
    }
}

} // namespace Zar::ResourcesLibrary::Tools::Inspect
