#include "Zar/ResourcesLibrary/Image/ImmutableImage.h"

#include "Zar/Lt/Exceptions/Check.h"
#include "Zar/ResourcesLibrary/Image/ImageFormatHelper.h"

#include <limits>

namespace Zar::ResourcesLibrary::Image {

ImageInfo ImmutableImage::GetInfo() const
{
    ZAR_PRECONDITION(_record != nullptr);
    ImageInfo info(ImageFormatHelper::GetFormat(_record->_bitsPerPixel));
    info._width = _record->_width;
    info._height = _record->_height;
    info._stride = ImageInfo::StrideOf(info._width, info.Format());
    info._bottomUp = 1;
    info._attribute = _record->_attribute;
    return info;
}

std::shared_ptr<MutableImage> ImmutableImage::MakeMutable() const
{
    auto image = std::make_shared<MutableImage>(GetInfo());
    image->Copy(_pixels, ExpectedSize());
    return image;
}

uint32_t ImmutableImage::ExpectedSize() const
{
    uint64_t const row = ImageInfo::RoundedDownStrideOf(_record->_width, _record->_bitsPerPixel);
    uint64_t const size = row * _record->_height;
    // A size past 32 bits can never match a stride-rule size, which is a multiple of 4: the largest
    // 32-bit value keeps it a mismatch instead of letting it wrap into a possible match.
    constexpr uint64_t kLargest = std::numeric_limits<uint32_t>::max();
    return static_cast<uint32_t>(size > kLargest ? kLargest : size);
}

} // namespace Zar::ResourcesLibrary::Image
