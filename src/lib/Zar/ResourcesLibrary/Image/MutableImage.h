#pragma once

#include "Zar/ResourcesLibrary/Image/ImageInfo.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace Zar::ResourcesLibrary::Image {

class ImmutableImage;

// An ImageInfo and its owned pixel buffer, which is either empty or exactly GetSize() bytes.
class MutableImage
{
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
    void Copy(void const* source, ImageInfo const& sourceInfo);
    void ImplaceNegative();
    void ImplaceFlipVertical();
    static void ImplaceFlipVertical(std::vector<uint8_t>& buffer, int32_t lineSize, int32_t height);
    std::shared_ptr<MutableImage> FlipVertical() const;

private:
    friend class ImmutableImage;
    // The size-checked copy of a compact image's pixels.
    void Copy(void const* source, uint32_t size);

    ImageInfo _info;
    std::vector<uint8_t> _buffer;
};

} // namespace Zar::ResourcesLibrary::Image
