#pragma once

#include "Zar/ResourcesLibrary/Image/ImageFormat.h"

#include <cstdint>

namespace Zar::ResourcesLibrary::Image {

// Geometry and pixel format of an image. Rows are padded to 4 bytes: see StrideOf.
class ImageInfo {
public:
    static ImageInfo const Empty;

    constexpr explicit ImageInfo(ImageFormat format = ImageFormat::Unknown) noexcept
        : _format(format)
    {
    }

    // Bytes of x pixels of this format, without row padding. Requires x >= 0 and a count that fits
    // 32 bits.
    uint32_t GetBytes(int x) const;
    // stride * height. Requires height >= 0 and a product that fits 32 bits.
    uint32_t GetSize() const;
    int32_t Width() const noexcept { return _width; }
    int32_t Height() const noexcept { return _height; }
    uint32_t Stride() const noexcept { return _stride; }
    ImageFormat Format() const noexcept { return _format; }
    bool IsBottomUp() const noexcept { return _bottomUp != 0; }

    // The row length every producer uses: the row's bits rounded up to bytes, then to 4 bytes.
    // Counted in 64 bits, so any int32_t width is safe: a negative width throws the GetBytes
    // precondition, and a row too long for a 32-bit stride throws PreCondition too.
    static uint32_t StrideOf(int32_t width, ImageFormat format);

    // The other row length, with which the BMP loader reads a file's source rows and
    // ImmutableImage::MakeMutable checks a compact image's pixel bytes: the row's bits divided by 8
    // rounding DOWN, then padded to 4 bytes. It agrees with StrideOf when a row's bits are whole
    // bytes, and when the partly filled last byte lies within the padding anyway (a 4-bit row of 3
    // pixels is 4 bytes either way); otherwise the row comes out 4 bytes shorter (a 4-bit row of 9
    // pixels is 4 bytes, not 8; one of 1 pixel has no bytes at all). Which bytes of such a file
    // land in the image, and so the bytes of every pack built from it, follow from this length,
    // which is why both readers keep it. Requires width >= 0; counted in 64 bits, so any int32_t
    // width and bit count are safe.
    static uint64_t RoundedDownStrideOf(int32_t width, uint32_t bitsPerPixel);

    int32_t _width = 0;
    int32_t _height = 0;
    uint32_t _reserved1 = 0;
    uint32_t _stride = 0;
    uint32_t _reserved2 = 0;
    uint16_t _bottomUp = 0;
    ImageFormat _format = ImageFormat::Unknown;
    uint8_t _attribute = 0;
};

} // namespace Zar::ResourcesLibrary::Image
