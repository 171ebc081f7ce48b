#include "BmpFile.h"

#include "Zar/Lt/Exceptions/Check.h"
#include "Zar/ResourcesLibrary/Image/ImageInfo.h"
#include "Zar/ResourcesLibrary/ResourcesLibraryException.h"

#include <fstream>

namespace Zar::ResourcesLibrary::Tools::Inspect {

namespace {

constexpr uint16_t kBitsPerPixel = 4;

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
    bytes.reserve(kPixelDataOffset + dataSize);
    Image::BmpLayout::Append(bytes,
        Image::BmpLayout::BITMAPFILEHEADER {
            .bfType = Image::BmpLayout::kMagic,
            .bfSize = static_cast<uint32_t>(kPixelDataOffset + dataSize),
            .bfReserved1 = 0,
            .bfReserved2 = 0,
            .bfOffBits = static_cast<uint32_t>(kPixelDataOffset),
        });
    Image::BmpLayout::Append(bytes,
        Image::BmpLayout::BITMAPINFOHEADER {
            .biSize = static_cast<uint32_t>(Image::BmpLayout::kInfoHeaderSize),
            .biWidth = static_cast<int32_t>(geometry.Width()),
            .biHeight = static_cast<int32_t>(geometry.Height()), // positive: the bottom row comes first
            .biPlanes = 1,
            .biBitCount = kBitsPerPixel,
            .biCompression = 0,
            .biSizeImage = dataSize,
            .biXPelsPerMeter = kPixelsPerMeter,
            .biYPelsPerMeter = kPixelsPerMeter,
            .biClrUsed = static_cast<uint32_t>(kPaletteEntries),
            .biClrImportant = 0, // every colour is important
        });

    for (uint8_t level = 0; level < kPaletteEntries; ++level) {
        uint8_t const grey = GreyOf(level);
        bytes.insert(bytes.end(), { grey, grey, grey, 0 }); // blue, green, red, reserved
    }
    for (uint32_t row = geometry.Height(); row-- > 0;) {
        auto const line = pixels.subspan(row * geometry.Stride(), geometry.Stride());
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
