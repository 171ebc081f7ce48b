#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace Zar::ResourcesLibrary::Tools::Inspect {

// What a BMP file's headers say about how packager will take its pixels, read without loading them:
// the bit depth, the compression and the palette. Packager's BMP loader reads 1-bit and 4-bit
// uncompressed files only, and of the palette it looks at the first entry alone: whether it is white
// decides between taking the indices as levels and taking them negated.
class BmpProbe {
public:
    struct Colour {
        uint8_t _red;
        uint8_t _green;
        uint8_t _blue;
    };

    // Nothing when the file cannot be read or does not start with the BMP headers.
    static std::optional<BmpProbe> Read(std::string const& path);

    unsigned Bits() const { return _bits; }
    uint32_t Compression() const { return _compression; }
    // The palette entries that lie inside the header block, at most as many as the depth indexes.
    std::vector<Colour> const& Palette() const { return _palette; }

    // The grey level each palette index gives on the display as packager loads the file (1-bit and
    // 4-bit files only).
    int LoadedLevel(std::size_t index) const;
    // The level closest to how bright an entry is drawn: its luma, as the display would show it.
    static int DrawnLevel(Colour colour);
    // The indices whose drawn level is not the loaded one.
    std::vector<std::size_t> MisreadIndices() const;

    // "RLE8", "RLE4", "bit fields", "JPEG", "PNG" and so on, for a compression value.
    static std::string CompressionName(uint32_t compression);

private:
    bool FirstEntryIsWhite() const;

    unsigned _bits = 0;
    uint32_t _compression = 0;
    std::vector<Colour> _palette;
};

} // namespace Zar::ResourcesLibrary::Tools::Inspect
