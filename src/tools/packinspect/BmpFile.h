#pragma once

#include "ImageGeometry.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace Zar::ResourcesLibrary::Tools::Inspect {

// Writes a 4-bit image of a pack as an ordinary BMP: uncompressed, bottom-up, with the ascending
// 16-level grey ramp as palette (index k shows grey 17 k), so that every program shows the display's
// greys and packager's BMP loader reads back each index as its level. The rows are written as the
// pack stores them, padding included, since a pack built from a 1-bit BMP may hold pixels there.
class BmpFile {
public:
    static constexpr std::size_t kFileHeaderSize = 14;
    static constexpr std::size_t kInfoHeaderSize = 40;
    static constexpr std::size_t kPaletteEntries = 16;
    static constexpr std::size_t kPaletteEntrySize = 4;
    static constexpr std::size_t kPixelDataOffset
        = kFileHeaderSize + kInfoHeaderSize + kPaletteEntries * kPaletteEntrySize;
    // 72 dots per inch, what most programs write.
    static constexpr uint32_t kPixelsPerMeter = 2835;

    // The grey a level is shown in, in the palette and by every reader.
    static constexpr uint8_t GreyOf(uint8_t level) { return static_cast<uint8_t>((level & 0x0F) * 0x11); }

    // True when packager's BMP loader reads a file of this width back whole: it reads rows of the
    // row's bits rounded down to bytes, which is the pack's row length except for widths of 8 k + 1.
    static bool IsReadBackWhole(ImageGeometry const& geometry);

    // The file of an image stored at the start of pixels, which must hold geometry.Size() bytes, its
    // rows from the top down. Requires IsReadBackWhole(geometry).
    static std::vector<uint8_t> Gray4(ImageGeometry const& geometry, std::span<uint8_t const> pixels);

private:
    static void PutHeaders(std::vector<uint8_t>& bytes, uint32_t width, uint32_t height,
        uint16_t bitsPerPixel, std::span<uint8_t const> greys, uint32_t dataSize);

public:
    // The file of a black and white image with the palette black, white, which packager reads as levels 0
    // and 15. bits holds the rows from the top down, each MonoStride(width) bytes, the leftmost pixel in
    // the highest bit. Requires IsReadBackWholeMono(width).
    static std::vector<uint8_t> Mono(uint32_t width, uint32_t height, std::span<uint8_t const> bits);
    // Bytes of one 1-bit row: whole bytes, padded to 4.
    static std::size_t MonoStride(uint32_t width);
    // As IsReadBackWhole, for 1-bit rows: false for the widths whose last byte packager does not read.
    static bool IsReadBackWholeMono(uint32_t width);

    // Writes the bytes to path; throws ResourcesLibraryException "Cannot write " + path.
    static void Save(std::string const& path, std::vector<uint8_t> const& bytes);
};

} // namespace Zar::ResourcesLibrary::Tools::Inspect
