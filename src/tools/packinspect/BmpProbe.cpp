#include "BmpProbe.h"

#include "BmpPalette.h"

#include "Zar/ResourcesLibrary/Image/codec/BmpLayout.h"

#include <algorithm>
#include <fstream>

namespace Zar::ResourcesLibrary::Tools::Inspect {

namespace {

namespace Layout = Zar::ResourcesLibrary::Image::BmpLayout;

constexpr std::size_t kHeadersSize = Layout::kFileHeaderSize + Layout::kInfoHeaderSize;
// A palette never has more entries than an 8-bit index reaches.
constexpr std::size_t kMaxPaletteEntries = 256;

// How many palette entries the depth indexes: 2 for 1 bit, 16 for 4, none above 8 bits.
std::size_t IndexedEntries(unsigned bits) { return bits >= 1 && bits <= 8 ? std::size_t { 1 } << bits : 0; }

} // namespace

std::optional<BmpProbe> BmpProbe::Read(std::string const& path)
{
    std::ifstream stream(path, std::ios::binary);
    std::array<uint8_t, kHeadersSize> headers {};
    stream.read(reinterpret_cast<char*>(headers.data()), headers.size());
    if (!stream)
        return std::nullopt;
    Layout::BITMAPFILEHEADER const file = Layout::ReadFileHeader(headers.data());
    Layout::BITMAPINFOHEADER const info = Layout::ReadInfoHeader(headers.data() + Layout::kFileHeaderSize);
    if (file.bfType != Layout::kMagic)
        return std::nullopt;
    BmpProbe probe;
    probe._bits = static_cast<unsigned>(info.biPlanes) * info.biBitCount;
    probe._compression = info.biCompression;

    uint64_t const paletteOffset = Layout::kFileHeaderSize + uint64_t { info.biSize };
    uint64_t const dataOffset = file.bfOffBits;
    uint64_t const room
        = dataOffset > paletteOffset ? (dataOffset - paletteOffset) / Layout::kPaletteEntrySize : 0;
    std::size_t const declared = info.biClrUsed != 0 ? info.biClrUsed : IndexedEntries(probe._bits);
    auto const count = static_cast<std::size_t>(
        std::min<uint64_t>({ room, declared, IndexedEntries(probe._bits), kMaxPaletteEntries }));
    std::vector<uint8_t> entries(count * Layout::kPaletteEntrySize);
    stream.seekg(static_cast<std::streamoff>(paletteOffset));
    stream.read(reinterpret_cast<char*>(entries.data()), static_cast<std::streamsize>(entries.size()));
    auto const got = static_cast<std::size_t>(stream.gcount()) / Layout::kPaletteEntrySize;
    for (std::size_t k = 0; k < got; ++k) {
        uint8_t const* entry = &entries[k * Layout::kPaletteEntrySize];
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
