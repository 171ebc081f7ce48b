#pragma once

// Builds BMP files byte by byte for tests: a file header, an info header of any declared size, a
// palette and pixel rows. Every field can be set to a lying value, and the sizes that a real writer
// computes are filled in only where the test leaves them unset.
//
//   BmpWriter bmp = BmpWriter::Mono(16, { { 0xFF, 0x00 }, { 0x00, 0xFF } }, BmpWriter::WhiteFirst);
//   bmp.sizeImage = 0;                       // lie about the pixel data size
//   std::vector<uint8_t> bytes = bmp.Bytes();
//
// The benchmarks and the fuzz targets build their files with it too (Zar::TestSupport).
// packinspect's BmpFile writes the valid 4-bit grey case for real; this builder stays apart on
// purpose, since it must write every lying field, and packinspect's tests check BmpFile against it.

#include <cstdint>
#include <optional>
#include <vector>

namespace TestSupport {

class BmpWriter {
public:
    // Palette entries as 0x00RRGGBB; written blue, green, red, reserved.
    static constexpr uint32_t kWhite = 0x00FFFFFF;
    static constexpr uint32_t kBlack = 0x00000000;

    enum PaletteOrder {
        WhiteFirst,
        BlackFirst,
    };

    // File header.
    uint16_t type = 0x4D42;
    std::optional<uint32_t> fileSize; // unset: the real size of the file
    uint16_t reserved1 = 0;
    uint16_t reserved2 = 0;
    std::optional<uint32_t> offBits; // unset: right behind the header block

    // Info header. infoSize is written as biSize and decides where the palette starts: bytes
    // between the 40 written fields and infoSize are zero. A value below 40 puts the palette right
    // behind the 40 fields, since the fields cannot be overwritten, and so does a lying value above
    // MaxFilledInfoSize, which is written but not filled up to.
    uint32_t infoSize = 40;
    static constexpr uint32_t kMaxFilledInfoSize = 4096;
    int32_t width = 0;
    int32_t height = 0; // positive: rows are stored bottom row first
    uint16_t planes = 1;
    uint16_t bitCount = 1;
    uint32_t compression = 0;
    std::optional<uint32_t> sizeImage; // unset: stride times the number of rows
    int32_t xPelsPerMeter = 2835;
    int32_t yPelsPerMeter = 2835;
    std::optional<uint32_t> clrUsed; // unset: the number of palette entries
    uint32_t clrImportant = 0;

    std::vector<uint32_t> palette;
    // Extra bytes at the end of the header block (between the palette and the pixel data).
    std::vector<uint8_t> gap;

    // Pixel rows from the top of the picture down; stored reversed when height is positive.
    std::vector<std::vector<uint8_t>> rows;
    // Bytes per stored row; unset: the bits of a row rounded up to bytes, then to 4 bytes.
    std::optional<uint32_t> stride;
    // Bytes after the pixel data.
    std::vector<uint8_t> trailer;
    // When set, the file is cut to this many bytes.
    std::optional<size_t> truncateTo;

    // A 1-bit image, bottom-up unless topDown, with a black/white palette in the given order.
    static BmpWriter Mono(
        int32_t width, std::vector<std::vector<uint8_t>> rows, PaletteOrder order, bool topDown = false)
    {
        BmpWriter bmp;
        bmp.bitCount = 1;
        bmp.palette = order == WhiteFirst ? std::vector<uint32_t> { kWhite, kBlack }
                                          : std::vector<uint32_t> { kBlack, kWhite };
        bmp.SetRows(width, std::move(rows), topDown);
        return bmp;
    }

    // A 4-bit image with a 16-level grey ramp, ascending (black first) or descending (white first).
    static BmpWriter Gray4(
        int32_t width, std::vector<std::vector<uint8_t>> rows, PaletteOrder order, bool topDown = false)
    {
        BmpWriter bmp;
        bmp.bitCount = 4;
        for (uint32_t level = 0; level < 16; ++level) {
            uint32_t const grey = (order == BlackFirst ? level : 15 - level) * 0x11;
            bmp.palette.push_back(grey << 16 | grey << 8 | grey);
        }
        bmp.SetRows(width, std::move(rows), topDown);
        return bmp;
    }

    void SetRows(int32_t rowWidth, std::vector<std::vector<uint8_t>> topDownRows, bool topDown)
    {
        width = rowWidth;
        auto const count = static_cast<int32_t>(topDownRows.size());
        height = topDown ? -count : count;
        rows = std::move(topDownRows);
    }

    // Computed here rather than taken from ImageInfo::StrideOf on purpose: the files must not share
    // the rule of the loaders they test, and a test may declare any bit count.
    uint32_t RowStride() const
    {
        if (stride)
            return *stride;
        uint64_t const bits = static_cast<uint64_t>(width < 0 ? 0 : width) * uint64_t { planes } * bitCount;
        return static_cast<uint32_t>(((bits + 7) / 8 + 3) & ~uint64_t { 3 });
    }

    // Sets the height (negative: top-down) and as many rows of RowStride() bytes, filled in the
    // order the file stores them (bottom row first when the height is positive) with one call of
    // next() per byte, padding included: the benchmarks' and fuzz targets' files, whose whole pixel
    // data is one pattern.
    template <typename NextByte> void FillRows(int32_t rowsHeight, NextByte next)
    {
        height = rowsHeight;
        int64_t const signedCount = rowsHeight;
        auto const count = static_cast<size_t>(signedCount < 0 ? -signedCount : signedCount);
        rows.assign(count, std::vector<uint8_t>(RowStride()));
        for (size_t i = 0; i < count; ++i)
            for (uint8_t& byte : rows[rowsHeight > 0 ? count - 1 - i : i])
                byte = next();
    }

    // The header block: info header, zero fill up to infoSize, palette, gap.
    std::vector<uint8_t> HeaderBlock() const
    {
        std::vector<uint8_t> block;
        Put32(block, infoSize);
        Put32(block, static_cast<uint32_t>(width));
        Put32(block, static_cast<uint32_t>(height));
        Put16(block, planes);
        Put16(block, bitCount);
        Put32(block, compression);
        Put32(block, sizeImage ? *sizeImage : PixelData().size());
        Put32(block, static_cast<uint32_t>(xPelsPerMeter));
        Put32(block, static_cast<uint32_t>(yPelsPerMeter));
        Put32(block, clrUsed ? *clrUsed : static_cast<uint32_t>(palette.size()));
        Put32(block, clrImportant);
        if (infoSize > block.size() && infoSize <= kMaxFilledInfoSize)
            block.resize(infoSize, 0);
        for (uint32_t entry : palette) {
            block.push_back(static_cast<uint8_t>(entry));
            block.push_back(static_cast<uint8_t>(entry >> 8));
            block.push_back(static_cast<uint8_t>(entry >> 16));
            block.push_back(0);
        }
        block.insert(block.end(), gap.begin(), gap.end());
        return block;
    }

    // The rows in file order, each padded with zeros (or cut) to the stride.
    std::vector<uint8_t> PixelData() const
    {
        std::vector<uint8_t> data;
        uint32_t const rowStride = RowStride();
        bool const bottomUp = height > 0;
        for (size_t i = 0; i < rows.size(); ++i) {
            std::vector<uint8_t> row = rows[bottomUp ? rows.size() - 1 - i : i];
            row.resize(rowStride, 0);
            data.insert(data.end(), row.begin(), row.end());
        }
        return data;
    }

    std::vector<uint8_t> Bytes() const
    {
        std::vector<uint8_t> const block = HeaderBlock();
        std::vector<uint8_t> const pixels = PixelData();
        uint32_t const totalSize = static_cast<uint32_t>(14 + block.size() + pixels.size() + trailer.size());
        std::vector<uint8_t> bytes;
        Put16(bytes, type);
        Put32(bytes, fileSize ? *fileSize : totalSize);
        Put16(bytes, reserved1);
        Put16(bytes, reserved2);
        Put32(bytes, offBits ? *offBits : static_cast<uint32_t>(14 + block.size()));
        bytes.insert(bytes.end(), block.begin(), block.end());
        bytes.insert(bytes.end(), pixels.begin(), pixels.end());
        bytes.insert(bytes.end(), trailer.begin(), trailer.end());
        if (truncateTo && *truncateTo < bytes.size())
            bytes.resize(*truncateTo);
        return bytes;
    }

    static void Put16(std::vector<uint8_t>& out, uint32_t value)
    {
        out.push_back(static_cast<uint8_t>(value));
        out.push_back(static_cast<uint8_t>(value >> 8));
    }

    static void Put32(std::vector<uint8_t>& out, uint64_t value)
    {
        for (int shift = 0; shift < 32; shift += 8)
            out.push_back(static_cast<uint8_t>(value >> shift));
    }
};

} // namespace TestSupport
