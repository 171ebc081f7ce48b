#include "Zar/ResourcesLibrary/Image/Paint4Bpp.h"

#include "Zar/Lt/Exceptions/Check.h"
#include "Zar/ResourcesLibrary/Image/ImageFormatHelper.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string>

namespace Zar::ResourcesLibrary::Image {

namespace {

// The outermost pixels of a rounded highlight's first and last rows.
constexpr uint8_t kCornerHigh = 0x50;
constexpr uint8_t kCornerLow = 0x05;

// The failure's function text, fixed so that it does not depend on the compiler's spelling.
constexpr char kDrawFunction[] = "void Zar::ResourcesLibrary::Image::Paint4Bpp::Draw("
                                 "const Zar::ResourcesLibrary::Image::ImageInfo&, const void*)";

} // namespace

Paint4Bpp::Paint4Bpp(Size const& size, Color4Bpp color)
    : _pen(PenOf(color))
{
    ImageInfo info(ImageFormat::Gray4);
    info._width = size._width;
    info._height = size._height;
    info._stride = ImageInfo::StrideOf(size._width, ImageFormat::Gray4);
    info._bottomUp = 1;
    Set(std::make_shared<MutableImage>(info));
}

Paint4Bpp::Paint4Bpp(uint8_t pen) noexcept
    : _pen(pen)
{
}

uint8_t Paint4Bpp::PenOf(Color4Bpp color) noexcept
{
    auto const level = static_cast<unsigned>(color);
    return static_cast<uint8_t>(level | (level << 4));
}

void Paint4Bpp::Set(std::shared_ptr<MutableImage> const& image)
{
    _image = image;
    if (_image)
        _area = Rect { 0, 0, _image->Info().Width(), _image->Info().Height() };
}

std::shared_ptr<MutableImage> Paint4Bpp::Detach() { return std::move(_image); }

uint32_t Paint4Bpp::GetBytes() const { return _image ? _image->Info().GetBytes(_area._width) : 0; }

uint8_t* Paint4Bpp::GetPixelPointer(uint16_t x, uint16_t y) { return PixelPointer(x, y); }

uint8_t const* Paint4Bpp::GetPixelPointer(uint16_t x, uint16_t y) const { return PixelPointer(x, y); }

Paint4Bpp::RowRuns Paint4Bpp::RunsOf(Rect const& r) const
{
    int32_t const width = std::min(r._width, _area._width);
    int32_t const height = std::min(r._height, _area._height);
    if (width <= 0 || height <= 0)
        return RowRuns {};
    int64_t const start = PixelOffset(static_cast<uint16_t>(r._x), static_cast<uint16_t>(r._y));
    int64_t const count = BytesOfPixels(width);
    RequireRows(start, height, count);
    return RowRuns { start, count, height };
}

void Paint4Bpp::Fill(Rect const& r, uint8_t value)
{
    RowRuns const runs = RunsOf(r);
    for (int64_t row = 0; row < runs._rows; ++row)
        SetRun(runs._start + row * Stride(), runs._count, value);
}

void Paint4Bpp::Fill(uint8_t value) { Fill(_area, value); }

void Paint4Bpp::Negate(Rect const& r)
{
    RowRuns const runs = RunsOf(r);
    for (int64_t row = 0; row < runs._rows; ++row)
        InvertRun(runs._start + row * Stride(), runs._count);
}

void Paint4Bpp::Negate() { Negate(_area); }

void Paint4Bpp::FlipVertical() { Target().ImplaceFlipVertical(); }

void Paint4Bpp::DrawHorizontalLine(uint16_t y) { SetRun(PixelOffset(0, y), GetBytes(), _pen); }

void Paint4Bpp::DrawHorizontalLines(uint16_t y) { DrawHorizontalLine(y); }

void Paint4Bpp::DrawOddVerticalLine(uint16_t x, uint16_t inset) { DrawColumn(x, inset, 0x0F); }

void Paint4Bpp::DrawEvenVerticalLine(uint16_t x, uint16_t inset) { DrawColumn(x, inset, 0xF0); }

void Paint4Bpp::DrawVerticalLine(uint16_t x, uint16_t inset)
{
    if (x % 2 != 0)
        DrawOddVerticalLine(x, inset);
    else
        DrawEvenVerticalLine(x, inset);
}

void Paint4Bpp::DrawDoubleVerticalLine(uint16_t x, uint16_t inset) { DrawColumn(x, inset, 0xFF); }

void Paint4Bpp::DrawVerticalLines(uint16_t inset)
{
    DrawVerticalLine(0, inset);
    DrawVerticalLine(static_cast<uint16_t>(_area._width - 1), inset);
}

void Paint4Bpp::DrawVerticalFrames(
    uint16_t inset, uint8_t leftMask, uint8_t rightMask, uint8_t pen, uint16_t step)
{
    // A step of 0 would walk the same row for ever.
    ZAR_PRECONDITION(step > 0);
    int64_t const end = int64_t { _area._height } - inset;
    // A zero-width area has no byte to put a side in; the side indices would fall before the row.
    int64_t const rowBytes = GetBytes();
    if (inset >= end || rowBytes == 0)
        return;
    int64_t const rowStart = PixelOffset(0, inset);
    int64_t left = rowStart + inset / 2;
    int64_t right = rowStart + rowBytes - 1 - inset / 2;
    // The advance is a 16-bit product, so a stride times step past 32767 walks backwards.
    auto const advance = static_cast<int16_t>(static_cast<uint16_t>(Stride() * step));
    // The row counter is 16 bits wide. Where the end lies beyond 65535 a wrapping counter would never
    // reach it, so the walk stops where the counter would wrap.
    for (uint32_t row = inset; row < end && row <= UINT16_MAX; row += step) {
        SetNibbles(left, leftMask, pen);
        SetNibbles(right, rightMask, pen);
        left += advance;
        right += advance;
    }
}

void Paint4Bpp::DrawVerticalFrames(uint16_t inset, uint8_t leftMask, uint8_t rightMask, uint16_t step)
{
    DrawVerticalFrames(inset, leftMask, rightMask, _pen, step);
}

void Paint4Bpp::DrawOddVerticalFrames(uint16_t inset) { DrawVerticalFrames(inset, 0x0F, 0xF0, 1); }

void Paint4Bpp::DrawEvenVerticalFrames(uint16_t inset) { DrawVerticalFrames(inset, 0xF0, 0x0F, 1); }

void Paint4Bpp::DrawVerticalFrames(uint16_t inset)
{
    if (inset % 2 != 0)
        DrawOddVerticalFrames(inset);
    else
        DrawEvenVerticalFrames(inset);
}

void Paint4Bpp::DrawFrame(uint16_t inset)
{
    DrawVerticalFrames(inset);
    DrawFrameRuns(inset, _pen);
}

void Paint4Bpp::DrawDottedFrame(uint16_t inset)
{
    DrawVerticalFrames(inset, 0xF0, 0x0F, _pen, 2);
    DrawFrameRuns(inset, static_cast<uint8_t>(_pen & 0x0F));
}

void Paint4Bpp::DrawHorizontalLSeparator(uint16_t y) { SetRun(PixelOffset(11, y), 12, _pen); }

void Paint4Bpp::DrawTopSeparator() { DrawHorizontalLSeparator(0); }

void Paint4Bpp::DrawBottomSeparator() { DrawHorizontalLSeparator(static_cast<uint16_t>(_area._height - 1)); }

void Paint4Bpp::DrawSelected() { Negate(Rect { 3, 3, _area._width - 6, _area._height - 6 }); }

void Paint4Bpp::DrawRoundedSelected()
{
    int32_t const width = _area._width - 4;
    int32_t const height = _area._height - 4;
    if (_area._height <= 4 || width <= 0)
        return;
    int64_t const count = BytesOfPixels(width);
    int64_t const start = PixelOffset(2, 2);
    auto const first = static_cast<uint8_t>((_pen & 0x0F) | kCornerHigh);
    auto const final = static_cast<uint8_t>((_pen & 0xF0) | kCornerLow);
    RequireRows(start, std::max(height, 2), count);

    DrawRoundedRow(start, count, first, final);
    if (height - 1 < 2) {
        // Only the corners of the second row: for a single inner row this lies just below the
        // rectangle, which is how the highlight has always looked.
        SetRun(start + Stride(), 1, first);
        SetRun(start + Stride() + count - 1, 1, final);
        return;
    }
    for (int64_t row = 1; row < height - 1; ++row)
        InvertRun(start + row * Stride(), count);
    DrawRoundedRow(start + (height - 1) * Stride(), count, first, final);
}

void Paint4Bpp::DrawRow1()
{
    DrawVerticalLines(0);
    DrawBottomSeparator();
}

void Paint4Bpp::DrawRow2()
{
    DrawVerticalLines(0);
    DrawHorizontalLines(static_cast<uint16_t>(_area._height - 1));
}

void Paint4Bpp::DrawRow3()
{
    DrawVerticalLines(0);
    DrawHorizontalLines(0);
}

void Paint4Bpp::DrawRow4()
{
    DrawVerticalLines(0);
    DrawTopSeparator();
}

void Paint4Bpp::DrawTop2()
{
    DrawVerticalLines(0);
    DrawBottomSeparator();
}

void Paint4Bpp::DrawBottom2()
{
    DrawVerticalLines(0);
    DrawHorizontalLine(static_cast<uint16_t>(_area._height - 2));
    DrawHorizontalLine(static_cast<uint16_t>(_area._height - 1));
}

void Paint4Bpp::DrawFramedRoundedSelected()
{
    DrawRoundedSelected();
    DrawFrame(0);
}

void Paint4Bpp::DrawOuterFrame() { DrawFrame(0); }

void Paint4Bpp::DrawOuterDottedFrame() { DrawDottedFrame(0); }

void Paint4Bpp::Draw(IconOverlay overlay)
{
    // Indexed by the overlay's value. None, and any value past the table, draws nothing.
    static constexpr std::array<void (Paint4Bpp::*)(), 10> kOverlayDrawings { nullptr, &Paint4Bpp::DrawRow1,
        &Paint4Bpp::DrawRow2, &Paint4Bpp::DrawRow3, &Paint4Bpp::DrawRow4, &Paint4Bpp::DrawSelected,
        &Paint4Bpp::DrawRoundedSelected, &Paint4Bpp::DrawFramedRoundedSelected, &Paint4Bpp::DrawOuterFrame,
        &Paint4Bpp::DrawOuterDottedFrame };
    static_assert(kOverlayDrawings.size() == static_cast<std::size_t>(IconOverlay::DottedFrame) + 1,
        "one entry per overlay, up to the last one");
    auto const index = static_cast<std::size_t>(overlay);
    if (index < kOverlayDrawings.size() && kOverlayDrawings[index] != nullptr)
        (this->*kOverlayDrawings[index])();
}

void Paint4Bpp::Draw(ImageInfo const& info, void const* pixels)
{
    uint32_t const bpp = ImageFormatHelper::BitsPerPixel(info.Format());
    ZAR_CHECK(PreCondition, bpp == 4, "Draw with " + std::to_string(bpp) + " bits per pixel not implemented.",
        ZAR_SOURCE_INFO_OF(kDrawFunction, ZAR_SOURCE_FILE, 478));
    CopyRows(info, static_cast<uint8_t const*>(pixels));
}

void Paint4Bpp::Draw(MutableImage const& image)
{
    // The rows are read by the source's stride, so all of them must be there. An image that was only
    // described has no buffer yet and stands for level 0 everywhere.
    ZAR_PRECONDITION(image.IsEmpty() || image.Buffer().size() >= image.GetSize());
    Draw(image.Info(), image.IsEmpty() ? nullptr : image.Buffer().data());
}

void Paint4Bpp::Draw(ImmutableImage const& image) { Draw(image.GetInfo(), image.Pixels()); }

uint8_t* Paint4Bpp::PixelPointer(uint16_t x, uint16_t y) const
{
    auto const column = static_cast<uint16_t>(x + _area._x);
    auto const row = static_cast<uint16_t>(y + _area._y);
    return Target().GetLine(row) + BytesOfPixels(column);
}

MutableImage& Paint4Bpp::Target() const
{
    // Drawing without an image is a caller's mistake; it is reported rather than crashing.
    ZAR_PRECONDITION(_image != nullptr);
    return *_image;
}

uint32_t Paint4Bpp::BitsPerPixel() const { return ImageFormatHelper::BitsPerPixel(Target().Info().Format()); }

int64_t Paint4Bpp::Stride() const { return Target().Info().Stride(); }

int64_t Paint4Bpp::PixelOffset(uint16_t x, uint16_t y) const
{
    auto const column = static_cast<uint16_t>(x + _area._x);
    auto const row = static_cast<uint16_t>(y + _area._y);
    // GetLine may size the buffer, so its start is read only after the call.
    uint8_t const* const line = Target().GetLine(row);
    int64_t const rowStart = line - _image->Buffer().data();
    return rowStart + BytesOfPixels(column);
}

int64_t Paint4Bpp::BytesOfPixels(int64_t pixels) const
{
    return (int64_t { BitsPerPixel() } * pixels + 7) / 8;
}

uint8_t& Paint4Bpp::ByteAt(int64_t offset) const
{
    auto& buffer = _image->Buffer();
    ZAR_PRECONDITION(offset >= 0 && offset < static_cast<int64_t>(buffer.size()));
    return buffer[static_cast<std::size_t>(offset)];
}

void Paint4Bpp::SetNibbles(int64_t offset, uint8_t mask, uint8_t value) const
{
    uint8_t& byte = ByteAt(offset);
    byte = static_cast<uint8_t>((byte & ~mask) | (value & mask));
}

void Paint4Bpp::SetRun(int64_t offset, int64_t count, uint8_t value) const
{
    if (count <= 0)
        return;
    RequireRows(offset, 1, count);
    std::memset(_image->Buffer().data() + offset, value, static_cast<std::size_t>(count));
}

void Paint4Bpp::InvertRun(int64_t offset, int64_t count) const
{
    if (count <= 0)
        return;
    RequireRows(offset, 1, count);
    uint8_t* const bytes = _image->Buffer().data() + offset;
    for (int64_t i = 0; i < count; ++i)
        bytes[i] = static_cast<uint8_t>(~bytes[i]);
}

void Paint4Bpp::RequireRows(int64_t offset, int64_t rows, int64_t count) const
{
    // Runs may pass the end of a row into the next one; they may not leave the buffer.
    int64_t const end = offset + (rows - 1) * Stride() + count;
    ZAR_PRECONDITION(offset >= 0 && end <= static_cast<int64_t>(_image->Buffer().size()));
}

void Paint4Bpp::DrawColumn(uint16_t x, uint16_t inset, uint8_t mask)
{
    auto const height = static_cast<uint16_t>(_area._height);
    if (inset >= height - inset)
        return;
    int64_t const rowStart = PixelOffset(0, inset);
    // The byte index is 16 bits wide and wraps past 65535: on images whose rows are that far apart the
    // line folds back into earlier rows rather than running on.
    auto index = static_cast<uint16_t>(x / 2);
    auto const stride = static_cast<uint16_t>(Stride());
    for (uint16_t row = inset; row < height - inset; ++row) {
        SetNibbles(rowStart + index, mask, _pen);
        index = static_cast<uint16_t>(index + stride);
    }
}

void Paint4Bpp::DrawFrameRuns(uint16_t inset, uint8_t value)
{
    // Both roundings apply to an odd inset, so its runs begin one byte further in than its sides.
    int64_t const skip = BytesOfPixels(inset) + (inset % 2 != 0 ? 1 : 0);
    int64_t const count = int64_t { GetBytes() } - 2 * skip;
    auto const height = static_cast<uint16_t>(_area._height);
    int64_t const top = PixelOffset(0, inset) + skip;
    int64_t const bottom = PixelOffset(0, static_cast<uint16_t>(height - 1 - inset)) + skip;
    SetRun(top, count, value);
    SetRun(bottom, count, value);
}

void Paint4Bpp::DrawRoundedRow(int64_t offset, int64_t count, uint8_t first, uint8_t final) const
{
    SetRun(offset, 1, first);
    SetRun(offset + 1, count - 2, _pen);
    SetRun(offset + count - 1, 1, final);
}

void Paint4Bpp::CopyRows(ImageInfo const& info, uint8_t const* pixels)
{
    int32_t const columns = std::min(_area._width, info.Width());
    int32_t const rows = std::min(_area._height, info.Height());
    int64_t const count = ImageInfo(ImageFormat::Gray4).GetBytes(columns);
    if (rows <= 0 || count == 0)
        return;
    int64_t const start = PixelOffset(0, 0);
    RequireRows(start, rows, count);
    for (int64_t row = 0; row < rows; ++row) {
        uint8_t* const target = _image->Buffer().data() + start + row * Stride();
        if (pixels)
            std::memcpy(target, pixels + row * int64_t { info.Stride() }, static_cast<std::size_t>(count));
        else
            std::memset(target, 0, static_cast<std::size_t>(count));
    }
}

} // namespace Zar::ResourcesLibrary::Image
