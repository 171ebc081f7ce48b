#pragma once

#include "Zar/ResourcesLibrary/Image/Color4Bpp.h"
#include "Zar/ResourcesLibrary/Image/IconOverlay.h"
#include "Zar/ResourcesLibrary/Image/ImageInfo.h"
#include "Zar/ResourcesLibrary/Image/ImmutableImage.h"
#include "Zar/ResourcesLibrary/Image/MutableImage.h"
#include "Zar/ResourcesLibrary/Image/Rect.h"
#include "Zar/ResourcesLibrary/Image/Size.h"

#include <cstdint>
#include <memory>

namespace Zar::ResourcesLibrary::Image {

// Draws frames, separators and highlights straight into a 4-bit grey image, whole bytes at a time
// where it can and nibble by nibble for vertical lines. Two pixels share a byte: the even column is
// the high nibble. Coordinates are relative to the drawing area, whose origin is added to them.
//
// Columns are the caller's to keep inside the area: a byte run that passes the end of a row goes on
// into the next row. Rows outside the image, and any write that would leave the pixel buffer, throw
// PreCondition instead.
class Paint4Bpp {
public:
    // A new zero-filled canvas of that size in format Gray4, stored bottom row first.
    Paint4Bpp(Size const& size, Color4Bpp color);

    // Draws into the image from now on and makes the whole image the drawing area. A null pointer
    // leaves the area as it was.
    void Set(std::shared_ptr<MutableImage> const& image);
    // Hands the image back; the painter is left without one.
    std::shared_ptr<MutableImage> Detach();

    std::shared_ptr<MutableImage> const& Image() const noexcept { return _image; }
    Rect const& Area() const noexcept { return _area; }
    uint8_t Pen() const noexcept { return _pen; }

    // Bytes of one full-width row of the area; 0 without an image.
    uint32_t GetBytes() const;
    // The byte that holds pixel (x, y) of the area, rounding the byte offset UP: an odd column gives
    // the byte after the one that holds it. Every operation below with a start column relies on it.
    uint8_t* GetPixelPointer(uint16_t x, uint16_t y);
    uint8_t const* GetPixelPointer(uint16_t x, uint16_t y) const;

    // Sets the bytes of r, clipped to the area's extent (not its position), to value.
    void Fill(Rect const& r, uint8_t value);
    // Fills the area rectangle, whose origin is then added once more.
    void Fill(uint8_t value);
    void Negate(Rect const& r);
    void Negate();
    void FlipVertical();

    void DrawHorizontalLine(uint16_t y);
    // One line, like DrawHorizontalLine: both names are part of the interface.
    void DrawHorizontalLines(uint16_t y);
    // Vertical lines cover rows inset up to, not including, area height - inset.
    void DrawOddVerticalLine(uint16_t x, uint16_t inset);
    void DrawEvenVerticalLine(uint16_t x, uint16_t inset);
    void DrawVerticalLine(uint16_t x, uint16_t inset);
    // Both pixels of the byte that holds column x.
    void DrawDoubleVerticalLine(uint16_t x, uint16_t inset);
    // The left and right borders of the area.
    void DrawVerticalLines(uint16_t inset);

    // The nibbles selected by the masks in the byte at each side, every step rows.
    void DrawVerticalFrames(uint16_t inset, uint8_t leftMask, uint8_t rightMask, uint8_t pen, uint16_t step);
    void DrawVerticalFrames(uint16_t inset, uint8_t leftMask, uint8_t rightMask, uint16_t step);
    void DrawOddVerticalFrames(uint16_t inset);
    void DrawEvenVerticalFrames(uint16_t inset);
    void DrawVerticalFrames(uint16_t inset);
    void DrawFrame(uint16_t inset);
    void DrawDottedFrame(uint16_t inset);

    // Pixels 12 to 35 of row y.
    void DrawHorizontalLSeparator(uint16_t y);
    void DrawTopSeparator();
    void DrawBottomSeparator();

    // Inverts the area but a 3-pixel border.
    void DrawSelected();
    // Inverts the area but a 2-pixel border, with pen-coloured first and last rows whose outermost
    // pixels are level 5, so that the highlight looks rounded.
    void DrawRoundedSelected();

    void DrawRow1();
    void DrawRow2();
    void DrawRow3();
    void DrawRow4();
    void DrawTop2();
    void DrawBottom2();
    void Draw(IconOverlay overlay);

    // Copies a 4-bit picture into the top-left corner of the area, as many columns and rows as both
    // hold; no conversion and no blending. Other depths throw PreCondition. Null pixels stand for an
    // image that has no buffer yet, which is level 0 everywhere.
    void Draw(ImageInfo const& info, void const* pixels);
    void Draw(MutableImage const& image);
    void Draw(ImmutableImage const& image);

protected:
    // A painter without an image, for the constructors that bring their own.
    explicit Paint4Bpp(uint8_t pen) noexcept;

    static uint8_t PenOf(Color4Bpp color) noexcept;

private:
    // The byte runs of a rectangle clipped to the area's size: _rows runs of _count bytes, the first
    // at _start and each one stride after the one before. An empty rectangle has no rows.
    struct RowRuns {
        int64_t _start = 0;
        int64_t _count = 0;
        int64_t _rows = 0;
    };

    // The image shares no constness with the painter: a const painter still fills an empty buffer.
    MutableImage& Target() const;
    uint8_t* PixelPointer(uint16_t x, uint16_t y) const;
    uint32_t BitsPerPixel() const;
    // The bytes that a run of pixels starts into or covers, a part byte counted whole.
    int64_t BytesOfPixels(int64_t pixels) const;
    int64_t Stride() const;
    // Offset in the buffer of GetPixelPointer(x, y); checks the row and fills an empty buffer.
    int64_t PixelOffset(uint16_t x, uint16_t y) const;
    uint8_t& ByteAt(int64_t offset) const;
    void SetNibbles(int64_t offset, uint8_t mask, uint8_t value) const;
    void SetRun(int64_t offset, int64_t count, uint8_t value) const;
    void InvertRun(int64_t offset, int64_t count) const;
    void RequireRows(int64_t offset, int64_t rows, int64_t count) const;
    void DrawColumn(uint16_t x, uint16_t inset, uint8_t mask);
    void DrawFrameRuns(uint16_t inset, uint8_t value);
    void DrawRoundedRow(int64_t offset, int64_t count, uint8_t first, uint8_t final) const;
    // What Draw(IconOverlay) calls for the overlays that are more than one public call.
    void DrawFramedRoundedSelected();
    void DrawOuterFrame();
    void DrawOuterDottedFrame();
    void CopyRows(ImageInfo const& info, uint8_t const* pixels);
    RowRuns RunsOf(Rect const& r) const;

    std::shared_ptr<MutableImage> _image;
    Rect _area;
    uint8_t _pen;
};

} // namespace Zar::ResourcesLibrary::Image
