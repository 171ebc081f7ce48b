#pragma once

#include "Zar/ResourcesLibrary/Image/ImageFormat.h"

#include <cstdint>

namespace Zar::ResourcesLibrary::Image {

// Names, bit depths and colour masks of the pixel formats. Every lookup is an index into a constant
// table; a value outside the table falls back to entry 0 ("Unknown") instead of failing.
class ImageFormatHelper {
public:
    // One entry per format. The first three masks are the colour components in the order of the
    // name's leading letters; the fourth is alpha, non-zero only where the format has alpha.
    struct Info {
        char const* _name;
        uint32_t _masks[4];
    };

    static Info const& GetInfo(ImageFormat format) noexcept;
    // Only the low 8 bits of the value are taken as the format, as ImageInfo stores it in one byte.
    static char const* GetString(unsigned int format) noexcept;
    static uint32_t BitsPerPixel(ImageFormat format) noexcept;
    // The format that loaders and the painter choose for a bit depth; Unknown when there is none.
    static ImageFormat GetFormat(unsigned int bitsPerPixel) noexcept;

private:
    static Info const _info[12];
    static uint8_t const _bitsPerPixel[12];
    static ImageFormat const _formatOfBits[32];
};

} // namespace Zar::ResourcesLibrary::Image
