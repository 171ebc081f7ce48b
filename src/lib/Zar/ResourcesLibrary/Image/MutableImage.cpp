#include "Zar/ResourcesLibrary/Image/MutableImage.h"

#include "Zar/Lt/Exceptions/Check.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <utility>

namespace Zar::ResourcesLibrary::Image {

namespace {

// The failures' function texts, fixed so that they do not depend on the compiler's spelling.
constexpr char kGetLineFunction[] = "uint8_t* Zar::ResourcesLibrary::Image::MutableImage::GetLine(uint32_t)";
constexpr char kCopyFunction[]
    = "void Zar::ResourcesLibrary::Image::MutableImage::Copy(const void*, uint32_t)";

} // namespace

MutableImage const MutableImage::Empty { ImageInfo::Empty };

MutableImage::MutableImage(ImageInfo const& info)
    : _info(info)
{
}

MutableImage::MutableImage(ImageInfo const& info, std::vector<uint8_t> buffer)
    : _info(info)
    , _buffer(std::move(buffer))
{
}

uint8_t* MutableImage::GetLine(uint32_t y)
{
    ZAR_CHECK(PreCondition, y < static_cast<uint32_t>(_info.Height()), "",
        ZAR_SOURCE_INFO_OF(kGetLineFunction, ZAR_SOURCE_FILE, 124));
    EnsurePixels();
    return _buffer.data() + static_cast<std::size_t>(y) * _info.Stride();
}

void MutableImage::Copy(void const* source, ImageInfo const& sourceInfo)
{
    EnsurePixels();
    int32_t const rows = std::min(_info.Height(), sourceInfo.Height());
    uint32_t const ownBytes = _info.GetBytes(_info.Width());
    uint32_t const sourceBytes = sourceInfo.GetBytes(sourceInfo.Width());
    std::size_t const rowBytes = std::min(ownBytes, sourceBytes);
    CheckRowFits(ownBytes);
    if (rows <= 0 || rowBytes == 0)
        return;
    ZAR_PRECONDITION(source != nullptr);
    auto const* from = static_cast<uint8_t const*>(source);
    for (int32_t row = 0; row < rows; ++row) {
        std::memcpy(_buffer.data() + static_cast<std::size_t>(row) * _info.Stride(),
            from + static_cast<std::size_t>(row) * sourceInfo.Stride(), rowBytes);
    }
}

void MutableImage::ImplaceNegative()
{
    uint32_t const rowBytes = _info.GetBytes(_info.Width());
    if (_info.Height() <= 0 || rowBytes == 0)
        return;
    EnsurePixels();
    CheckRowFits(rowBytes);
    for (int32_t row = 0; row < _info.Height(); ++row) {
        uint8_t* line = _buffer.data() + static_cast<std::size_t>(row) * _info.Stride();
        for (uint32_t i = 0; i < rowBytes; ++i)
            line[i] = static_cast<uint8_t>(~line[i]);
    }
}

void MutableImage::ImplaceFlipVertical()
{
    // An image that was only described has no rows yet: all of them are zero, and so is the flip.
    if (_buffer.empty())
        return;
    ImplaceFlipVertical(_buffer, static_cast<int32_t>(_info.Stride()), _info.Height());
}

void MutableImage::ImplaceFlipVertical(std::vector<uint8_t>& buffer, int32_t lineSize, int32_t height)
{
    if (height < 2 || lineSize <= 0)
        return;
    uint64_t const needed = static_cast<uint64_t>(lineSize) * static_cast<uint64_t>(height);
    ZAR_PRECONDITION(needed <= buffer.size());
    auto const line = static_cast<std::size_t>(lineSize);
    for (int32_t i = 0; i < height / 2; ++i) {
        auto const top = buffer.begin() + static_cast<std::ptrdiff_t>(line * static_cast<std::size_t>(i));
        auto const bottom
            = buffer.begin() + static_cast<std::ptrdiff_t>(line * static_cast<std::size_t>(height - 1 - i));
        std::swap_ranges(top, top + static_cast<std::ptrdiff_t>(line), bottom);
    }
}

std::shared_ptr<MutableImage> MutableImage::FlipVertical() const
{
    auto flipped = std::make_shared<MutableImage>(*this);
    flipped->ImplaceFlipVertical();
    return flipped;
}

void MutableImage::Copy(void const* source, uint32_t size)
{
    ZAR_CHECK(
        PreCondition, size == _info.GetSize(), "", ZAR_SOURCE_INFO_OF(kCopyFunction, ZAR_SOURCE_FILE, 179));
    if (size == 0)
        return;
    ZAR_PRECONDITION(source != nullptr);
    auto const* from = static_cast<uint8_t const*>(source);
    _buffer.assign(from, from + size);
}

void MutableImage::EnsurePixels()
{
    if (_buffer.empty())
        _buffer.assign(_info.GetSize(), 0);
    // The info is public and may have been changed after the buffer was made: rows are only
    // handed out while the buffer still holds all of them.
    ZAR_PRECONDITION(_buffer.size() >= _info.GetSize());
}

void MutableImage::CheckRowFits(uint32_t rowBytes) const { ZAR_PRECONDITION(rowBytes <= _info.Stride()); }

} // namespace Zar::ResourcesLibrary::Image
