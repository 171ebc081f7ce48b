#pragma once

#include "Zar/ResourcesLibrary/Image/ImageInfo.h"
#include "Zar/ResourcesLibrary/Image/ImmutableImageRecord.h"
#include "Zar/ResourcesLibrary/Image/MutableImage.h"

#include <cstdint>
#include <memory>

namespace Zar::ResourcesLibrary::Image {

// A read-only view of an image held in constant data: a compact record and its pixel rows. The view
// owns neither; both must outlive it.
class ImmutableImage {
public:
    constexpr ImmutableImage(ImmutableImageRecord const* record, uint8_t const* pixels) noexcept
        : _record(record)
        , _pixels(pixels)
    {
    }

    ImmutableImageRecord const* Record() const noexcept { return _record; }
    uint8_t const* Pixels() const noexcept { return _pixels; }

    // The geometry of the record as an ImageInfo: format chosen by its bits per pixel, rows stored
    // bottom row first, stride by the common rule.
    ImageInfo GetInfo() const;
    // A new image with that info and a copy of the pixels. Throws PreCondition when the record's own
    // idea of the size disagrees with the stride rule.
    std::shared_ptr<MutableImage> MakeMutable() const;

private:
    // The size the record's pixels are expected to take: the row bits are rounded DOWN to bytes
    // before the padding, unlike the stride rule, so that a record whose rows do not end on a byte
    // boundary is refused.
    uint32_t ExpectedSize() const;

    ImmutableImageRecord const* _record;
    uint8_t const* _pixels;
};

} // namespace Zar::ResourcesLibrary::Image
