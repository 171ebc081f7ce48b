#pragma once

// Images for the packager's tests: 4-bit grey images made in memory, the bytes an icon is expected
// to have once framed, and such an image saved as the BMP file that loads back to it.

#include "BmpWriter.h"
#include "FileContents.h"

#include "Zar/ResourcesLibrary/Image/ImageFormat.h"
#include "Zar/ResourcesLibrary/Image/MutableImage.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace PackagerTests {

using Zar::ResourcesLibrary::Image::ImageFormat;
using Zar::ResourcesLibrary::Image::ImageInfo;
using Zar::ResourcesLibrary::Image::MutableImage;

// Row length of a 4-bit image: whole bytes, padded to 4.
inline uint32_t Gray4Stride(int width) { return ((static_cast<uint32_t>(width) * 4 + 7) / 8 + 3) & ~3u; }

inline ImageInfo Gray4Info(int width, int height)
{
    ImageInfo info(ImageFormat::Gray4);
    info._width = width;
    info._height = height;
    info._stride = Gray4Stride(width);
    return info;
}

// A 4-bit image whose bytes all differ from their neighbours and from the frame colour, so that
// every byte the exporter writes can be told apart; seed makes images differ from each other.
inline MutableImage MakeGray4Image(int width, int height, uint8_t seed)
{
    ImageInfo const info = Gray4Info(width, height);
    std::vector<uint8_t> buffer(static_cast<std::size_t>(info._stride) * static_cast<uint32_t>(height));
    for (std::size_t i = 0; i < buffer.size(); ++i)
        buffer[i] = static_cast<uint8_t>(seed * 31 + i * 7 + 1);
    return MutableImage(info, buffer);
}

// The pixels of a 4-bit image of even width once a frame of grey level 3 is drawn on its border:
// the first and last rows become level 3, and so do the leftmost and rightmost pixels of every row.
inline std::vector<uint8_t> Framed(MutableImage const& image)
{
    std::vector<uint8_t> bytes = image.Buffer();
    int const width = image.Info()._width;
    int const height = image.Info()._height;
    std::size_t const stride = image.Info()._stride;
    std::size_t const rowBytes = (static_cast<std::size_t>(width) * 4 + 7) / 8;
    for (int y = 0; y < height; ++y) {
        uint8_t* row = bytes.data() + y * stride;
        row[0] = static_cast<uint8_t>((row[0] & 0x0F) | 0x30);
        row[rowBytes - 1] = static_cast<uint8_t>((row[rowBytes - 1] & 0xF0) | 0x03);
        if (y == 0 || y == height - 1) {
            for (std::size_t x = 0; x < rowBytes; ++x)
                row[x] = 0x33;
        }
    }
    return bytes;
}

// Writes a 4-bit BMP with an ascending grey palette (entry 0 black), so that the loaded image holds
// the same bytes as the given one. The width must be even.
// The image as a 4-bit BMP file, palette black first.
inline std::vector<uint8_t> Gray4Bmp(MutableImage const& image)
{
    int const width = image.Info()._width;
    int const height = image.Info()._height;
    std::size_t const stride = image.Info()._stride;
    std::vector<std::vector<uint8_t>> rows;
    for (int y = 0; y < height; ++y) {
        auto const begin = image.Buffer().begin() + static_cast<std::ptrdiff_t>(y * stride);
        rows.emplace_back(begin, begin + static_cast<std::ptrdiff_t>(stride));
    }
    return TestSupport::BmpWriter::Gray4(width, std::move(rows), TestSupport::BmpWriter::BlackFirst).Bytes();
}

inline void WriteGray4Bmp(std::filesystem::path const& path, MutableImage const& image)
{
    TestSupport::WriteFile(path, Gray4Bmp(image));
}

} // namespace PackagerTests
