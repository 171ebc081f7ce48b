#include "Zar/ResourcesLibrary/Image/ImageInfo.h"

#include "Zar/Lt/Exceptions/Check.h"
#include "Zar/ResourcesLibrary/Image/ImageFormatHelper.h"

#include <cstdint>
#include <limits>
#include <string>

namespace Zar::ResourcesLibrary::Image {

namespace {

// Sizes are handed out as 32-bit counts; anything larger is refused rather than wrapped around.
constexpr uint64_t kMaxUint32 = std::numeric_limits<uint32_t>::max();

// The failure's function text, fixed so that it does not depend on the compiler's spelling.
constexpr char kGetBytesFunction[] = "uint32_t Zar::ResourcesLibrary::Image::ImageInfo::GetBytes(int) const";

} // namespace

// Constant-initialised, so that other static objects may copy it whatever their initialisation order.
constinit ImageInfo const ImageInfo::Empty { ImageFormat::Rgbx };

uint32_t ImageInfo::GetBytes(int x) const
{
    ZAR_CHECK(PreCondition, x >= 0, "", ZAR_SOURCE_INFO_OF(kGetBytesFunction, ZAR_SOURCE_FILE, 97));
    // 32 bits per pixel times the widest int does not fit 32 bits: count in 64 and refuse what a
    // 32-bit byte count cannot hold rather than wrapping around to a small row.
    uint64_t const bytes
        = (uint64_t { ImageFormatHelper::BitsPerPixel(_format) } * static_cast<uint64_t>(x) + 7) / 8;
    ZAR_CHECK(PreCondition, bytes <= kMaxUint32, "Row of " + std::to_string(x) + " pixels is too long",
        ZAR_SOURCE_INFO());
    return static_cast<uint32_t>(bytes);
}

uint32_t ImageInfo::GetSize() const
{
    // A negative height would turn into an enormous unsigned size, and so would a product that
    // wraps around: both are refused here, before any buffer is sized from them.
    ZAR_PRECONDITION(_height >= 0);
    uint64_t const size = uint64_t { _stride } * static_cast<uint64_t>(_height);
    ZAR_PRECONDITION(size <= kMaxUint32);
    return static_cast<uint32_t>(size);
}

uint32_t ImageInfo::StrideOf(int32_t width, ImageFormat format)
{
    uint64_t const stride = (uint64_t { ImageInfo(format).GetBytes(width) } + 3) & ~uint64_t { 3 };
    ZAR_CHECK(PreCondition, stride <= kMaxUint32, "Row of " + std::to_string(width) + " pixels is too long",
        ZAR_SOURCE_INFO());
    return static_cast<uint32_t>(stride);
}

uint64_t ImageInfo::RoundedDownStrideOf(int32_t width, uint32_t bitsPerPixel)
{
    ZAR_PRECONDITION(width >= 0);
    uint64_t const bits = static_cast<uint64_t>(width) * bitsPerPixel;
    return ((bits / 8) + 3) & ~uint64_t { 3 };
}

} // namespace Zar::ResourcesLibrary::Image
