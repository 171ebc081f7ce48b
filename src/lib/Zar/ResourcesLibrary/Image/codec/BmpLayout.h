#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <vector>

// The layout of a BMP file's two headers, named once for every reader and writer of BMP files.
// The structures hold the fields in the machine's own byte order; the file stores them little-endian
// and packed, so they are only ever read and written field by field through the functions below,
// never copied as memory, which leaves neither the byte order nor the structures' padding to chance.
namespace Zar::ResourcesLibrary::Image::BmpLayout {

// "BM", the first two bytes of every BMP file.
constexpr uint16_t kMagic = 0x4D42;

// The header at the start of every BMP file.
struct BITMAPFILEHEADER {
    uint16_t bfType;
    uint32_t bfSize;
    uint16_t bfReserved1;
    uint16_t bfReserved2;
    uint32_t bfOffBits; // where the pixel data starts, from the start of the file
};

// The info header right behind the file header; the palette follows it (at biSize from its start).
struct BITMAPINFOHEADER {
    uint32_t biSize;
    int32_t biWidth;
    int32_t biHeight; // negative for rows stored from the top down
    uint16_t biPlanes;
    uint16_t biBitCount;
    uint32_t biCompression;
    uint32_t biSizeImage;
    int32_t biXPelsPerMeter;
    int32_t biYPelsPerMeter;
    uint32_t biClrUsed;
    uint32_t biClrImportant;
};

// Calls visit(field) for each field of a header in file order.
template <typename Header, typename Visit> constexpr void ForEachField(Header& header, Visit&& visit)
{
    if constexpr (std::is_same_v<std::remove_const_t<Header>, BITMAPFILEHEADER>) {
        visit(header.bfType);
        visit(header.bfSize);
        visit(header.bfReserved1);
        visit(header.bfReserved2);
        visit(header.bfOffBits);
    } else {
        visit(header.biSize);
        visit(header.biWidth);
        visit(header.biHeight);
        visit(header.biPlanes);
        visit(header.biBitCount);
        visit(header.biCompression);
        visit(header.biSizeImage);
        visit(header.biXPelsPerMeter);
        visit(header.biYPelsPerMeter);
        visit(header.biClrUsed);
        visit(header.biClrImportant);
    }
}

// The bytes a header takes in a file: its fields without padding.
template <typename Header> constexpr size_t SizeInFile()
{
    Header header {};
    size_t size = 0;
    ForEachField(header, [&size](auto const& field) { size += sizeof(field); });
    return size;
}

constexpr size_t kFileHeaderSize = SizeInFile<BITMAPFILEHEADER>();
constexpr size_t kInfoHeaderSize = SizeInFile<BITMAPINFOHEADER>();
// Blue, green, red and a reserved byte.
constexpr size_t kPaletteEntrySize = 4;

static_assert(kFileHeaderSize == 14);
static_assert(kInfoHeaderSize == 40);

// The header stored at bytes, which must hold kFileHeaderSize or kInfoHeaderSize bytes.
BITMAPFILEHEADER ReadFileHeader(uint8_t const* bytes);
BITMAPINFOHEADER ReadInfoHeader(uint8_t const* bytes);

// Appends the header as a file stores it.
void Append(std::vector<uint8_t>& bytes, BITMAPFILEHEADER const& header);
void Append(std::vector<uint8_t>& bytes, BITMAPINFOHEADER const& header);

} // namespace Zar::ResourcesLibrary::Image::BmpLayout
