#include "Zar/ResourcesLibrary/Image/codec/BmpInput.h"

#include "Zar/Lt/Exceptions/Check.h"
#include "Zar/ResourcesLibrary/Image/ImageFormatHelper.h"
#include "Zar/ResourcesLibrary/Image/InputFile.h"
#include "Zar/ResourcesLibrary/ResourcesLibraryException.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <memory>
#include <optional>
#include <string>

using Zar::ResourcesLibrary::ResourcesLibraryException;
using namespace Zar::ResourcesLibrary::Image;
using Zar::ResourcesLibrary::Image::BmpLayout::BITMAPFILEHEADER;
using Zar::ResourcesLibrary::Image::BmpLayout::BITMAPINFOHEADER;

namespace {

constexpr uint32_t kFileHeaderSize = BmpLayout::kFileHeaderSize;
constexpr uint32_t kInfoHeaderSize = BmpLayout::kInfoHeaderSize;

// The first palette entry of a file drawn black on white; any other start means white on black.
constexpr std::array<uint8_t, 3> white = { 0xFF, 0xFF, 0xFF };
// Two 1-bit pixels (the first in the higher bit of the index) to one byte of two 4-bit pixels.
constexpr std::array<uint8_t, 4> whiteTable = { 0xFF, 0xF0, 0x0F, 0x00 };
constexpr std::array<uint8_t, 4> blackTable = { 0x00, 0x0F, 0xF0, 0xFF };

// The 1-bit conversion counts its output lines in 16 bits, so lines past this many are never
// reached by it and stay zero.
constexpr uint32_t kMonoLineCounterRange = 1u << 16;

std::string HexWord(uint16_t value)
{
    char text[8];
    std::snprintf(text, sizeof(text), "%04x", value);
    return text;
}

uint64_t AbsoluteHeight(int32_t height)
{
    return height < 0 ? uint64_t { 0 } - static_cast<uint64_t>(static_cast<int64_t>(height))
                      : static_cast<uint64_t>(height);
}

std::string FormatName(ImageFormat format)
{
    auto const value = static_cast<unsigned>(format);
    return value > 11 ? "Undefined" : ImageFormatHelper::GetString(value);
}

// Palette entry 0 counts only when its three colour bytes lie inside the header block.
bool PaletteStartsWithWhite(std::vector<uint8_t> const& block, uint32_t paletteOffset)
{
    if (uint64_t { paletteOffset } + white.size() > block.size())
        return false;
    return std::equal(white.begin(), white.end(), block.begin() + paletteOffset);
}

// Four output bytes (eight 4-bit pixels) for each source byte, up to the output line's end, the
// image's width or the source line's end, whichever comes first.
void ExpandMonoLine(uint8_t const* source, uint8_t* output, ImageInfo const& info, uint64_t sourceStride,
    std::array<uint8_t, 4> const& table)
{
    auto const width = static_cast<uint64_t>(info.Width());
    uint64_t const outputStride = info.Stride();
    for (uint64_t i = 1; 4 * i <= outputStride; ++i) {
        uint8_t const b = source[i - 1];
        output[0] = table[b >> 6];
        output[1] = table[(b >> 4) & 3];
        output[2] = table[(b >> 2) & 3];
        output[3] = table[b & 3];
        output += 4;
        if (8 * i >= width || i == sourceStride)
            break;
    }
}

// The info header at the start of a header block. The in-memory structure has no padding, so its
// size is the info header's size in the file as well.
BITMAPINFOHEADER InfoHeaderOf(std::vector<uint8_t> const& block)
{
    static_assert(sizeof(BITMAPINFOHEADER) == BmpLayout::kInfoHeaderSize);
    ZAR_PRECONDITION(block.size() >= sizeof(BITMAPINFOHEADER));
    return BmpLayout::ReadInfoHeader(block.data());
}

} // namespace

size_t BmpInput::GetHeaderSize() const { return kFileHeaderSize + kInfoHeaderSize; }

ImageInfo BmpInput::ReadHeader(std::istream& stream) { return ToImageInfo(RawReadHeader(stream)); }

size_t BmpInput::Read(std::istream& stream, void* data, size_t size) { return RawRead(stream, data, size); }

MutableImage BmpInput::Load(char const* filePath)
{
    if (filePath == nullptr || filePath[0] == '\0')
        throw ResourcesLibraryException(ZAR_SOURCE_INFO(), "Input::Load nullptr in filePath");
    std::unique_ptr<std::istream> const stream = Zar::ResourcesLibrary::Image::InputFile::Open(filePath);
    if (!stream)
        throw ResourcesLibraryException(
            ZAR_SOURCE_INFO(), std::string("BmpInput::Load cannot open ") + filePath);
    std::vector<uint8_t> const block = RawReadHeader(*stream);
    return ReadData(*stream, block, _imageFormat);
}

std::vector<uint8_t> BmpInput::RawReadHeader(std::istream& stream)
{
    std::array<uint8_t, kFileHeaderSize> bytes {};
    size_t const count = RawRead(stream, bytes.data(), bytes.size());
    if (count < kFileHeaderSize)
        throw ResourcesLibraryException(ZAR_SOURCE_INFO(), "source too small " + std::to_string(count));
    BITMAPFILEHEADER const fileHeader = BmpLayout::ReadFileHeader(bytes.data());
    if (fileHeader.bfType != BmpLayout::kMagic)
        throw ResourcesLibraryException(
            ZAR_SOURCE_INFO(), "Wrong Bmp file magic 0x" + HexWord(fileHeader.bfType));
    // An offset below 14 wraps to a block of almost 4 GiB. The block is read as its bytes arrive,
    // so such a file ends in the short-read failure below instead of a huge allocation.
    uint32_t const blockSize = fileHeader.bfOffBits - kFileHeaderSize;
    if (blockSize < kInfoHeaderSize)
        throw ResourcesLibraryException(
            ZAR_SOURCE_INFO(), "Bmp file header too small " + std::to_string(blockSize));
    std::vector<uint8_t> block = ReadAvailable(stream, blockSize);
    if (block.size() < blockSize)
        throw ResourcesLibraryException(
            ZAR_SOURCE_INFO(), "Bmp header too small " + std::to_string(block.size()));
    BITMAPINFOHEADER const header = InfoHeaderOf(block);
    // The sum is taken in 32 bits as the format's own fields are; the palette is bounds-checked
    // again where it is read.
    if (header.biSize + 4u * header.biClrUsed > blockSize)
        throw ResourcesLibraryException(
            ZAR_SOURCE_INFO(), "Bmp invalid color count " + std::to_string(header.biClrUsed));
    if (header.biCompression != 0)
        throw ResourcesLibraryException(
            ZAR_SOURCE_INFO(), "Bmp invalid compression " + std::to_string(header.biCompression));
    return block;
}

ImageInfo BmpInput::ToImageInfo(std::vector<uint8_t> const& block)
{
    if (block.size() < kInfoHeaderSize)
        throw ResourcesLibraryException(ZAR_SOURCE_INFO(),
            "Bmp header " + std::to_string(block.size()) + "/" + std::to_string(kInfoHeaderSize));
    return ToImageInfo(InfoHeaderOf(block), ImageFormat::Unknown);
}

ImageInfo BmpInput::ToImageInfo(BITMAPINFOHEADER const& header, ImageFormat /*format*/)
{
    uint32_t const bits = uint32_t { header.biPlanes } * header.biBitCount;
    ImageFormat const pixelFormat = ImageFormatHelper::GetFormat(bits);
    if (pixelFormat != ImageFormat::Mono && pixelFormat != ImageFormat::Gray4)
        throw ResourcesLibraryException(ZAR_SOURCE_INFO(),
            FormatName(pixelFormat)
                + " format not supported (only bmp mono & grayscale 16 colors without compression)");

    ImageInfo info(pixelFormat);
    // A negative width has no line length: the byte count of the image model refuses it before
    // any size is derived from it.
    if (header.biWidth < 0)
        static_cast<void>(info.GetBytes(header.biWidth));
    if (header.biHeight == INT32_MIN)
        throw ResourcesLibraryException(
            ZAR_SOURCE_INFO(), "Bmp invalid height " + std::to_string(header.biHeight));

    uint32_t const bitsPerPixel = ImageFormatHelper::BitsPerPixel(pixelFormat);
    uint64_t const height = AbsoluteHeight(header.biHeight);
    // Source lines are read with the rounded-down stride (see ImageInfo::RoundedDownStrideOf).
    uint64_t const minimum = ImageInfo::RoundedDownStrideOf(header.biWidth, bitsPerPixel) * height;
    if (minimum > header.biSizeImage)
        throw ResourcesLibraryException(ZAR_SOURCE_INFO(),
            "Bmp invalid image size " + std::to_string(header.biSizeImage) + "/" + std::to_string(minimum));

    info._width = header.biWidth;
    info._height = static_cast<int32_t>(height);
    info._bottomUp = header.biHeight >= 0 ? 1 : 0;
    info._stride = ImageInfo::StrideOf(header.biWidth, pixelFormat);
    return info;
}

MutableImage BmpInput::ReadData(std::istream& stream, std::vector<uint8_t> const& block, ImageFormat format)
{
    BITMAPINFOHEADER const header = InfoHeaderOf(block);
    uint32_t const bits = uint32_t { header.biPlanes } * header.biBitCount;
    ImageInfo const sourceInfo = ToImageInfo(header, format);
    uint32_t const bitsPerPixel = ImageFormatHelper::BitsPerPixel(sourceInfo.Format());
    SourceLines const source { ImageInfo::RoundedDownStrideOf(sourceInfo.Width(), bitsPerPixel),
        static_cast<uint64_t>(sourceInfo.Height()) };
    ImageInfo info = sourceInfo;
    info._format = ImageFormat::Gray4;
    info._stride = ImageInfo::StrideOf(info.Width(), ImageFormat::Gray4);

    if (bits != 4 && bits != 1)
        throw ResourcesLibraryException(ZAR_SOURCE_INFO(),
            "Invalid bpp " + std::to_string(static_cast<int>(bits))
                + " (only bmp mono & grayscale 16 colors)");

    // The pixel data must be in the file before the image is made, so that only data the file
    // really holds leads to an allocation. 1-bit data grows four times when decoded, so where the
    // stream can tell what it still holds, it is checked there and decoded a line at a time rather
    // than held whole beside the image.
    std::optional<uint64_t> const remaining = bits == 1 ? InputFile::RemainingBytes(stream) : std::nullopt;
    std::vector<uint8_t> data;
    if (!remaining)
        data = ReadAvailable(stream, source.Size());
    CheckLimits(info, source, remaining ? std::min(*remaining, source.Size()) : data.size());

    MutableImage image(info, std::vector<uint8_t>(size_t { info.Stride() } * source.count, 0));
    bool const startsWithWhite = PaletteStartsWithWhite(block, header.biSize);
    if (bits == 4)
        Decode4Bit(image, data, startsWithWhite);
    else
        Decode1Bit(image, stream, remaining ? nullptr : &data, source, startsWithWhite);
    return image;
}

void BmpInput::CheckLimits(ImageInfo const& info, SourceLines const& source, uint64_t available)
{
    if (available < source.Size())
        throw ResourcesLibraryException(ZAR_SOURCE_INFO(),
            "Cannot read image data " + std::to_string(available) + "/" + std::to_string(source.Size()));
    uint64_t const imageSize = uint64_t { info.Stride() } * source.count;
    uint64_t const imageSizeLimit = 4 * source.Size() + kImageSizeAllowance;
    if (imageSize > imageSizeLimit)
        throw ResourcesLibraryException(ZAR_SOURCE_INFO(),
            "Bmp image too large " + std::to_string(imageSize) + "/" + std::to_string(imageSizeLimit));
}

std::vector<uint8_t> BmpInput::ReadAvailable(std::istream& stream, uint64_t size)
{
    return InputFile::ReadAvailable(
        size, [&](uint8_t* data, size_t count) { return Read(stream, data, count); });
}

void BmpInput::Decode4Bit(MutableImage& image, std::vector<uint8_t> const& data, bool startsWithWhite)
{
    // The palette indices are taken as grey levels as they are, and the source lines are laid one
    // after another: they match the image lines only where both strides agree. The source stride
    // never exceeds the image stride, so the data always fits the buffer.
    uint8_t* pixels = image.GetLine(0);
    if (!data.empty())
        std::memcpy(pixels, data.data(), std::min(data.size(), image.Buffer().size()));
    if (startsWithWhite)
        image.ImplaceNegative();
    if (image.Info().IsBottomUp())
        image.ImplaceFlipVertical();
}

void BmpInput::Decode1Bit(MutableImage& image, std::istream& stream, std::vector<uint8_t> const* data,
    SourceLines const& source, bool startsWithWhite)
{
    // Converted two pixels at a time through a table, flipping bottom-up files line by line on the
    // way; palette entry 1 is never consulted.
    auto const& table = startsWithWhite ? whiteTable : blackTable;
    ImageInfo const& info = image.Info();
    uint64_t const lines = std::min<uint64_t>(source.count, kMonoLineCounterRange);
    if (info.Width() == 0 || source.stride == 0)
        return;
    // Without the whole data at hand, one source line is read at a time; it is backed by the file
    // only when there is at least one line.
    std::vector<uint8_t> line(data == nullptr && source.count > 0 ? static_cast<size_t>(source.stride) : 0);
    // Source lines in file order; a bottom-up file stores the last output line first.
    for (uint64_t sourceLine = 0; sourceLine < source.count; ++sourceLine) {
        uint8_t const* bytes = line.data();
        if (data != nullptr)
            bytes = data->data() + sourceLine * source.stride;
        else if (size_t const got = Read(stream, line.data(), line.size()); got < line.size())
            throw ResourcesLibraryException(ZAR_SOURCE_INFO(),
                "Cannot read image data " + std::to_string(sourceLine * source.stride + got) + "/"
                    + std::to_string(source.Size()));
        uint64_t const y = info.IsBottomUp() ? source.count - 1 - sourceLine : sourceLine;
        if (y < lines)
            ExpandMonoLine(bytes, image.Buffer().data() + y * info.Stride(), info, source.stride, table);
    }
}
