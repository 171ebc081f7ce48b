#pragma once

#include "Zar/ResourcesLibrary/Image/codec/BmpLayout.h"
#include "Zar/ResourcesLibrary/Image/codec/Input.h"

#include <cstddef>
#include <cstdint>
#include <istream>
#include <vector>

// Reads uncompressed 1-bit and 4-bit BMP files into 4-bit grey images, top line first.
class BmpInput : public Zar::ResourcesLibrary::Image::Input {
public:
    using Input::Input;

    // A decoded image may take four bytes for every byte of pixel data the file holds (what the
    // 1-bit conversion makes of it) plus this much. Narrow lines hold no source bytes at all (the
    // source stride rounds down), so without the bound a file of a hundred bytes could declare an
    // image of gigabytes; a display resource never comes near it.
    static constexpr uint64_t kImageSizeAllowance = uint64_t { 16 } << 20;

    size_t GetHeaderSize() const override;
    Zar::ResourcesLibrary::Image::ImageInfo ReadHeader(std::istream& stream) override;
    size_t Read(std::istream& stream, void* data, size_t size) override;
    Zar::ResourcesLibrary::Image::MutableImage Load(char const* filePath) override;

    using Input::Load;
    using Input::Read;

    // Reads and checks the file header and returns the header block (info header and palette).
    // The stream then stands at the first byte of the pixel data.
    std::vector<uint8_t> RawReadHeader(std::istream& stream);

    static Zar::ResourcesLibrary::Image::ImageInfo ToImageInfo(std::vector<uint8_t> const& block);
    static Zar::ResourcesLibrary::Image::ImageInfo ToImageInfo(
        Zar::ResourcesLibrary::Image::BmpLayout::BITMAPINFOHEADER const& header,
        Zar::ResourcesLibrary::Image::ImageFormat format);

    // Reads the pixel data that follows the header block. The block is passed whole, not only its
    // info header, because the palette that decides the grey order lies behind the info header.
    Zar::ResourcesLibrary::Image::MutableImage ReadData(std::istream& stream,
        std::vector<uint8_t> const& block, Zar::ResourcesLibrary::Image::ImageFormat format);

private:
    // The pixel data's lines as the file stores them.
    struct SourceLines {
        uint64_t stride; // bytes per line, rounded down (see ImageInfo::RoundedDownStrideOf)
        uint64_t count;
        uint64_t Size() const noexcept { return stride * count; }
    };

    // Refuses data shorter than its lines, and an image larger than the data can account for.
    static void CheckLimits(
        Zar::ResourcesLibrary::Image::ImageInfo const& info, SourceLines const& source, uint64_t available);
    // Reads up to size bytes, as they arrive.
    std::vector<uint8_t> ReadAvailable(std::istream& stream, uint64_t size);
    static void Decode4Bit(Zar::ResourcesLibrary::Image::MutableImage& image,
        std::vector<uint8_t> const& data, bool startsWithWhite);
    // Decodes from data when it holds the whole pixel data, else line by line from the stream.
    void Decode1Bit(Zar::ResourcesLibrary::Image::MutableImage& image, std::istream& stream,
        std::vector<uint8_t> const* data, SourceLines const& source, bool startsWithWhite);
};
