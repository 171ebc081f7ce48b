#pragma once

#include "Zar/ResourcesLibrary/Image/ImageInfo.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace Zar::ResourcesLibrary::Image {

class ImmutableImage;

// An ImageInfo and its owned pixel buffer, which is either empty or exactly GetSize() bytes.
class MutableImage {
public:
    static MutableImage const Empty;

    MutableImage() = default;
    explicit MutableImage(ImageInfo const& info);
    MutableImage(ImageInfo const& info, std::vector<uint8_t> buffer);

    ImageInfo const& Info() const noexcept { return _info; }
    ImageInfo& Info() noexcept { return _info; }
    uint32_t GetSize() const { return _info.GetSize(); }
    bool IsEmpty() const noexcept { return _buffer.empty(); }
    std::vector<uint8_t> const& Buffer() const noexcept { return _buffer; }
    std::vector<uint8_t>& Buffer() noexcept { return _buffer; }

    // First byte of row y; sizes and zero-fills an empty buffer first. Requires y < height.
    uint8_t* GetLine(uint32_t y);
    // Copies rows from a foreign buffer laid out by sourceInfo, as many rows and row bytes as both
    // images hold. No pixel conversion: both are expected to share a format.
    void Copy(void const* source, ImageInfo const& sourceInfo);
    // Inverts every bit of the pixel bytes of every row; the row padding is left as it is.
    void ImplaceNegative();
    // Reverses the order of the rows; the bottom-up flag is not changed.
    void ImplaceFlipVertical();
    static void ImplaceFlipVertical(std::vector<uint8_t>& buffer, int32_t lineSize, int32_t height);
    // A flipped copy; this image is unchanged.
    std::shared_ptr<MutableImage> FlipVertical() const;

private:
    friend class ImmutableImage;
    // The size-checked copy of a compact image's pixels.
    void Copy(void const* source, uint32_t size);
    // Sizes an empty buffer to the whole image, zero-filled, and refuses a buffer too small for it.
    void EnsurePixels();
    // Refuses a row of pixel bytes that does not fit the stride, so that row walks stay in the buffer.
    void CheckRowFits(uint32_t rowBytes) const;

    ImageInfo _info;
    std::vector<uint8_t> _buffer;
};

} // namespace Zar::ResourcesLibrary::Image
