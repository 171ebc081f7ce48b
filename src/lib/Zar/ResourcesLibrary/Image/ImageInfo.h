#pragma once

#include "Zar/ResourcesLibrary/Image/ImageFormat.h"

#include <cstdint>

namespace Zar::ResourcesLibrary::Image {

// Geometry and pixel format of an image. Rows are padded to 4 bytes: see StrideOf.
class ImageInfo
{
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
