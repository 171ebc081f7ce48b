#include "BmpFile.h"

#include "Zar/Lt/Exceptions/Check.h"
#include "Zar/ResourcesLibrary/Image/ImageInfo.h"
#include "Zar/ResourcesLibrary/ResourcesLibraryException.h"

#include <array>
#include <climits>
#include <fstream>

namespace Zar::ResourcesLibrary::Tools::Inspect {

namespace {

constexpr uint16_t kMagic = 0x4D42; // "BM"
constexpr uint16_t kBitsPerPixel = 4;

void Put16(std::vector<uint8_t>& out, uint16_t value)
{
    out.push_back(static_cast<uint8_t>(value));
    out.push_back(static_cast<uint8_t>(value >> 8));
}

void Put32(std::vector<uint8_t>& out, uint32_t value)
{
    for (int shift = 0; shift < 32; shift += 8)
        out.push_back(static_cast<uint8_t>(value >> shift));
}

} // namespace

bool BmpFile::IsReadBackWhole(ImageGeometry const& geometry)
{
    return Zar::ResourcesLibrary::Image::ImageInfo::RoundedDownStrideOf(
               static_cast<int32_t>(geometry.Width()), kBitsPerPixel)
        == geometry.Stride();
}

std::vector<uint8_t> BmpFile::Gray4(ImageGeometry const& geometry, std::span<uint8_t const> pixels)
{
    ZAR_PRECONDITION(IsReadBackWhole(geometry));
    ZAR_PRECONDITION(pixels.size() >= geometry.Size());
    auto const dataSize = static_cast<uint32_t>(geometry.Size());
    std::vector<uint8_t> bytes;
    std::array<uint8_t, kPaletteEntries> greys {};
    for (uint8_t level = 0; level < kPaletteEntries; ++level)
        greys[level] = GreyOf(level);
    PutHeaders(bytes, geometry.Width(), geometry.Height(), kBitsPerPixel, greys, dataSize);
    for (uint32_t row = geometry.Height(); row-- > 0;) {
        auto const line = pixels.subspan(row * geometry.Stride(), geometry.Stride());
        bytes.insert(bytes.end(), line.begin(), line.end());
    }
    return bytes;
}

void BmpFile::PutHeaders(std::vector<uint8_t>& bytes, uint32_t width, uint32_t height, uint16_t bitsPerPixel,
    std::span<uint8_t const> greys, uint32_t dataSize)
{
    auto const pixelDataOffset
        = static_cast<uint32_t>(kFileHeaderSize + kInfoHeaderSize + greys.size() * kPaletteEntrySize);
    bytes.reserve(pixelDataOffset + dataSize);
    Put16(bytes, kMagic);
    Put32(bytes, pixelDataOffset + dataSize);
    Put32(bytes, 0); // the two reserved words
    Put32(bytes, pixelDataOffset);

    Put32(bytes, static_cast<uint32_t>(kInfoHeaderSize));
    Put32(bytes, width);
    Put32(bytes, height); // positive: the bottom row comes first
    Put16(bytes, 1); // planes
    Put16(bytes, bitsPerPixel);
    Put32(bytes, 0); // no compression
    Put32(bytes, dataSize);
    Put32(bytes, kPixelsPerMeter);
    Put32(bytes, kPixelsPerMeter);
    Put32(bytes, static_cast<uint32_t>(greys.size()));
    Put32(bytes, 0); // every colour is important
    for (uint8_t const grey : greys)
        bytes.insert(bytes.end(), { grey, grey, grey, 0 }); // blue, green, red, reserved
}

std::size_t BmpFile::MonoStride(uint32_t width) { return (static_cast<std::size_t>(width) + 31) / 32 * 4; }

bool BmpFile::IsReadBackWholeMono(uint32_t width)
{
    return width <= static_cast<uint32_t>(INT32_MAX)
        && Zar::ResourcesLibrary::Image::ImageInfo::RoundedDownStrideOf(static_cast<int32_t>(width), 1)
        == MonoStride(width);
}

std::vector<uint8_t> BmpFile::Mono(uint32_t width, uint32_t height, std::span<uint8_t const> bits)
{
    ZAR_PRECONDITION(IsReadBackWholeMono(width));
    std::size_t const stride = MonoStride(width);
    ZAR_PRECONDITION(bits.size() >= stride * height);
    // Palette entry 0 black: packager then reads a 0 bit as level 0 and a 1 bit as level 15.
    std::array<uint8_t, 2> const greys { 0x00, 0xFF };
    std::vector<uint8_t> bytes;
    PutHeaders(bytes, width, height, 1, greys, static_cast<uint32_t>(stride * height));
    for (uint32_t row = height; row-- > 0;) {
        auto const line = bits.subspan(row * stride, stride);
        bytes.insert(bytes.end(), line.begin(), line.end());
    }
    return bytes;
}

void BmpFile::Save(std::string const& path, std::vector<uint8_t> const& bytes)
{
    std::ofstream stream(path, std::ios::binary | std::ios::trunc);
    stream.write(reinterpret_cast<char const*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    stream.close();
    if (!stream)
        throw ResourcesLibraryException(ZAR_SOURCE_INFO(), "Cannot write " + path);
}

} // namespace Zar::ResourcesLibrary::Tools::Inspect
