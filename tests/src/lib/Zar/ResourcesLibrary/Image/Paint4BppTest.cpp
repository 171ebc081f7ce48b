#include "Zar/ResourcesLibrary/Image/Paint4Bpp.h"

#include "ImageFixtures.h"

#include "Zar/Lt/Exceptions/PreCondition.h"
#include "Zar/ResourcesLibrary/Image/ClonePaint4Bpp.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <numeric>
#include <vector>

namespace Zar::ResourcesLibrary::Image {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::StrEq;
using testing::ThrowsMessage;
using TestSupport::MakeInfo;
using Zar::Lt::Exceptions::PreCondition;

constexpr char kRowCheck[] = "PreCondition y < static_cast<uint32_t>(_info.Height())";
constexpr char kRunCheck[]
    = "PreCondition offset >= 0 && end <= static_cast<int64_t>(_image->Buffer().size())";
constexpr char kByteCheck[] = "PreCondition offset >= 0 && offset < static_cast<int64_t>(buffer.size())";

// A zero canvas with a pen whose two nibbles differ, so that every nibble written can be told apart.
ClonePaint4Bpp Canvas(int32_t width, int32_t height, uint8_t pen = 0xAB)
{
    return ClonePaint4Bpp(MutableImage(MakeInfo(ImageFormat::Gray4, width, height)), pen);
}

std::vector<uint8_t> Row(Paint4Bpp& painter, uint16_t row)
{
    uint8_t const* first = painter.GetPixelPointer(0, row);
    return { first, first + painter.Image()->Info().Stride() };
}

std::vector<uint8_t> const& Pixels(Paint4Bpp const& painter) { return painter.Image()->Buffer(); }

TEST(Paint4BppTest, SizeConstructorMakesAnUnfilledGray4Canvas)
{
    Paint4Bpp painter(Size { 9, 3 }, Color4Bpp::Level15);
    EXPECT_EQ(0xFF, painter.Pen());
    ASSERT_NE(nullptr, painter.Image());
    ImageInfo const& info = painter.Image()->Info();
    EXPECT_EQ(ImageFormat::Gray4, info.Format());
    EXPECT_EQ(9, info.Width());
    EXPECT_EQ(3, info.Height());
    EXPECT_EQ(8u, info.Stride());
    EXPECT_TRUE(info.IsBottomUp());
    EXPECT_TRUE(painter.Image()->IsEmpty());
    EXPECT_EQ(0, painter.Area()._x);
    EXPECT_EQ(0, painter.Area()._y);
    EXPECT_EQ(9, painter.Area()._width);
    EXPECT_EQ(3, painter.Area()._height);
}

TEST(Paint4BppTest, ColourLightsBothNibblesOfThePen)
{
    EXPECT_EQ(0x00, Paint4Bpp(Size { 2, 2 }, Color4Bpp::Level0).Pen());
    EXPECT_EQ(0x33, Paint4Bpp(Size { 2, 2 }, Color4Bpp::Level3).Pen());
    EXPECT_EQ(0xAA, Paint4Bpp(Size { 2, 2 }, Color4Bpp::Level10).Pen());
}

TEST(Paint4BppTest, NewCanvasReadsAsLevelZero)
{
    Paint4Bpp painter(Size { 8, 2 }, Color4Bpp::Level15);
    EXPECT_THAT(Row(painter, 1), Each(0));
    EXPECT_EQ(8u, Pixels(painter).size());
}

TEST(Paint4BppTest, NegativeWidthThrowsTheByteCountCheck)
{
    EXPECT_THAT(
        [] {
            Paint4Bpp(Size { -1, 4 }, Color4Bpp::Level1);
        },
        ThrowsMessage<PreCondition>(StrEq("PreCondition x >= 0")));
}

TEST(Paint4BppTest, SetTakesTheImageAndItsWholeArea)
{
    Paint4Bpp painter(Size { 8, 4 }, Color4Bpp::Level1);
    auto other = std::make_shared<MutableImage>(MakeInfo(ImageFormat::Gray4, 20, 7));
    painter.Set(other);
    EXPECT_EQ(other, painter.Image());
    EXPECT_EQ(20, painter.Area()._width);
    EXPECT_EQ(7, painter.Area()._height);
    painter.DrawHorizontalLine(6);
    EXPECT_EQ(0x11, other->Buffer()[6 * 12]);
}

TEST(Paint4BppTest, SetOfNullKeepsTheArea)
{
    Paint4Bpp painter(Size { 8, 4 }, Color4Bpp::Level1);
    painter.Set(nullptr);
    EXPECT_EQ(nullptr, painter.Image());
    EXPECT_EQ(8, painter.Area()._width);
    EXPECT_EQ(4, painter.Area()._height);
    EXPECT_EQ(0u, painter.GetBytes());
}

TEST(Paint4BppTest, DetachHandsTheImageBackAndKeepsTheArea)
{
    Paint4Bpp painter(Size { 6, 4 }, Color4Bpp::Level1);
    auto const image = painter.Image();
    EXPECT_EQ(image, painter.Detach());
    EXPECT_EQ(nullptr, painter.Image());
    EXPECT_EQ(6, painter.Area()._width);
    EXPECT_EQ(0u, painter.GetBytes());
}

TEST(Paint4BppTest, WithoutAnImageDrawingThrowsInsteadOfCrashing)
{
    Paint4Bpp painter(Size { 6, 4 }, Color4Bpp::Level1);
    painter.Detach();
    EXPECT_THAT(
        [&] { painter.DrawFrame(0); }, ThrowsMessage<PreCondition>(StrEq("PreCondition _image != nullptr")));
    EXPECT_THAT([&] { painter.GetPixelPointer(0, 0); },
        ThrowsMessage<PreCondition>(StrEq("PreCondition _image != nullptr")));
    EXPECT_THAT([&] { painter.FlipVertical(); },
        ThrowsMessage<PreCondition>(StrEq("PreCondition _image != nullptr")));
}

TEST(Paint4BppTest, GetBytesIsOneFullRowOfTheArea)
{
    EXPECT_EQ(5u, Paint4Bpp(Size { 9, 1 }, Color4Bpp::Level1).GetBytes());
    EXPECT_EQ(0u, Paint4Bpp(Size { 0, 1 }, Color4Bpp::Level1).GetBytes());
    EXPECT_EQ(6u, ClonePaint4Bpp(MutableImage(MakeInfo(ImageFormat::Rgb24, 2, 1)), uint8_t { 0 }).GetBytes());
}

TEST(Paint4BppTest, PixelPointerRoundsOddColumnsUp)
{
    Paint4Bpp painter(Size { 8, 3 }, Color4Bpp::Level1);
    uint8_t* const origin = painter.GetPixelPointer(0, 0);
    EXPECT_EQ(origin + 1, painter.GetPixelPointer(1, 0));
    EXPECT_EQ(origin + 1, painter.GetPixelPointer(2, 0));
    EXPECT_EQ(origin + 2, painter.GetPixelPointer(3, 0));
    EXPECT_EQ(origin + 4 + 2, painter.GetPixelPointer(4, 1));
    Paint4Bpp const& constPainter = painter;
    EXPECT_EQ(origin + 2, constPainter.GetPixelPointer(3, 0));
}

TEST(Paint4BppTest, PixelPointerFillsAnEmptyBufferAndChecksTheRow)
{
    Paint4Bpp const painter(Size { 8, 3 }, Color4Bpp::Level1);
    EXPECT_NE(nullptr, painter.GetPixelPointer(0, 2));
    EXPECT_EQ(12u, Pixels(painter).size());
    EXPECT_THAT([&] { painter.GetPixelPointer(0, 3); }, ThrowsMessage<PreCondition>(StrEq(kRowCheck)));
}

TEST(Paint4BppTest, FillClipsTheExtentToTheArea)
{
    Paint4Bpp painter(Size { 10, 10 }, Color4Bpp::Level0);
    painter.Fill(Rect { 0, 0, 100, 100 }, 0x5A);
    for (uint16_t row = 0; row < 10; ++row)
        EXPECT_THAT(Row(painter, row), ElementsAre(0x5A, 0x5A, 0x5A, 0x5A, 0x5A, 0, 0, 0)) << row;
}

TEST(Paint4BppTest, FillOfAnEmptyRectangleDoesNothing)
{
    Paint4Bpp painter(Size { 10, 10 }, Color4Bpp::Level0);
    painter.Fill(Rect { 0, 0, 0, 5 }, 0x5A);
    painter.Fill(Rect { 0, 0, 5, -1 }, 0x5A);
    painter.Fill(Rect { 0, 0, -3, -3 }, 0x5A);
    EXPECT_TRUE(painter.Image()->IsEmpty());
}

TEST(Paint4BppTest, FillStartsAtTheRoundedUpByte)
{
    Paint4Bpp painter(Size { 16, 3 }, Color4Bpp::Level0);
    painter.Fill(Rect { 3, 1, 4, 2 }, 0x77);
    EXPECT_THAT(Row(painter, 0), Each(0));
    EXPECT_THAT(Row(painter, 1), ElementsAre(0, 0, 0x77, 0x77, 0, 0, 0, 0));
    EXPECT_THAT(Row(painter, 2), ElementsAre(0, 0, 0x77, 0x77, 0, 0, 0, 0));
}

TEST(Paint4BppTest, FillOfTheAreaCoversEveryPixelByte)
{
    Paint4Bpp painter(Size { 3, 2 }, Color4Bpp::Level0);
    painter.Fill(0x12);
    EXPECT_THAT(Pixels(painter), ElementsAre(0x12, 0x12, 0, 0, 0x12, 0x12, 0, 0));
}

TEST(Paint4BppTest, RunsPassingTheRowEndGoOnInTheNextRow)
{
    Paint4Bpp painter(Size { 8, 3 }, Color4Bpp::Level0);
    painter.Fill(Rect { 6, 0, 8, 1 }, 0x99);
    EXPECT_THAT(Row(painter, 0), ElementsAre(0, 0, 0, 0x99));
    EXPECT_THAT(Row(painter, 1), ElementsAre(0x99, 0x99, 0x99, 0));
}

TEST(Paint4BppTest, RunsThatWouldLeaveTheBufferThrowAndWriteNothing)
{
    Paint4Bpp painter(Size { 10, 10 }, Color4Bpp::Level0);
    EXPECT_THAT(
        [&] {
            painter.Fill(Rect { 0, 5, 10, 10 }, 0x5A);
        },
        ThrowsMessage<PreCondition>(StrEq(kRunCheck)));
    EXPECT_THAT(Pixels(painter), Each(0));
    Paint4Bpp oneRow(Size { 8, 1 }, Color4Bpp::Level1);
    EXPECT_THAT([&] { oneRow.DrawTopSeparator(); }, ThrowsMessage<PreCondition>(StrEq(kRunCheck)));
}

TEST(Paint4BppTest, NegateInvertsTheClippedRectangle)
{
    Paint4Bpp painter(Size { 8, 4 }, Color4Bpp::Level0);
    painter.Fill(0x0F);
    painter.Negate(Rect { 2, 1, 100, 2 });
    EXPECT_THAT(Row(painter, 0), ElementsAre(0x0F, 0x0F, 0x0F, 0x0F));
    // Eight columns from byte 1 run one byte into the next row.
    EXPECT_THAT(Row(painter, 1), ElementsAre(0x0F, 0xF0, 0xF0, 0xF0));
    EXPECT_THAT(Row(painter, 2), ElementsAre(0xF0, 0xF0, 0xF0, 0xF0));
    EXPECT_THAT(Row(painter, 3), ElementsAre(0xF0, 0x0F, 0x0F, 0x0F));
}

TEST(Paint4BppTest, NegateOfTheAreaAndOfNothing)
{
    Paint4Bpp painter(Size { 3, 2 }, Color4Bpp::Level0);
    painter.Negate();
    EXPECT_THAT(Pixels(painter), ElementsAre(0xFF, 0xFF, 0, 0, 0xFF, 0xFF, 0, 0));
    painter.Negate(Rect { 0, 0, 0, 2 });
    painter.Negate(Rect { 0, 0, 2, -2 });
    EXPECT_THAT(Pixels(painter), ElementsAre(0xFF, 0xFF, 0, 0, 0xFF, 0xFF, 0, 0));
}

TEST(Paint4BppTest, FlipVerticalReversesTheRows)
{
    Paint4Bpp painter(Size { 8, 3 }, Color4Bpp::Level4);
    painter.DrawHorizontalLine(0);
    painter.FlipVertical();
    EXPECT_THAT(Row(painter, 0), Each(0));
    EXPECT_THAT(Row(painter, 2), Each(0x44));
}

TEST(Paint4BppTest, HorizontalLineAndLinesDrawOneFullWidthLine)
{
    auto painter = Canvas(6, 3);
    painter.DrawHorizontalLine(1);
    EXPECT_THAT(Row(painter, 1), ElementsAre(0xAB, 0xAB, 0xAB, 0));
    auto other = Canvas(6, 3);
    other.DrawHorizontalLines(1);
    EXPECT_EQ(Pixels(painter), Pixels(other));
    EXPECT_THAT(Row(other, 0), Each(0));
    EXPECT_THAT(Row(other, 2), Each(0));
}

TEST(Paint4BppTest, OddVerticalLineSetsTheLowNibbleWithinTheInset)
{
    auto painter = Canvas(8, 5);
    painter.Fill(0x77);
    painter.DrawOddVerticalLine(3, 1);
    EXPECT_THAT(Row(painter, 0), ElementsAre(0x77, 0x77, 0x77, 0x77));
    for (uint16_t row = 1; row < 4; ++row)
        EXPECT_THAT(Row(painter, row), ElementsAre(0x77, 0x7B, 0x77, 0x77)) << row;
    EXPECT_THAT(Row(painter, 4), ElementsAre(0x77, 0x77, 0x77, 0x77));
}

TEST(Paint4BppTest, EvenVerticalLineSetsTheHighNibble)
{
    auto painter = Canvas(8, 2);
    painter.Fill(0x77);
    painter.DrawEvenVerticalLine(2, 0);
    EXPECT_THAT(Row(painter, 0), ElementsAre(0x77, 0xA7, 0x77, 0x77));
    EXPECT_THAT(Row(painter, 1), ElementsAre(0x77, 0xA7, 0x77, 0x77));
}

TEST(Paint4BppTest, VerticalLineChoosesTheNibbleByParity)
{
    auto painter = Canvas(8, 1);
    painter.DrawVerticalLine(5, 0);
    painter.DrawVerticalLine(6, 0);
    EXPECT_THAT(Row(painter, 0), ElementsAre(0, 0, 0x0B, 0xA0));
}

TEST(Paint4BppTest, DoubleVerticalLineSetsTheWholeByte)
{
    auto painter = Canvas(8, 4);
    painter.DrawDoubleVerticalLine(5, 1);
    EXPECT_THAT(Row(painter, 0), Each(0));
    EXPECT_THAT(Row(painter, 1), ElementsAre(0, 0, 0xAB, 0));
    EXPECT_THAT(Row(painter, 2), ElementsAre(0, 0, 0xAB, 0));
    EXPECT_THAT(Row(painter, 3), Each(0));
}

TEST(Paint4BppTest, VerticalLineWithTooLargeAnInsetDrawsNothing)
{
    auto painter = Canvas(8, 4);
    painter.DrawVerticalLine(0, 2);
    painter.DrawDoubleVerticalLine(0, 7);
    EXPECT_TRUE(painter.Image()->IsEmpty());
}

TEST(Paint4BppTest, VerticalLineByteIndexWrapsAt16Bits)
{
    // 40000 pixels make a stride of 20000 bytes: the fourth step takes the index to 80000, which
    // wraps to 14464, a byte of the first row.
    auto painter = Canvas(40000, 5);
    painter.DrawDoubleVerticalLine(0, 0);
    auto const& pixels = Pixels(painter);
    for (std::size_t row = 0; row < 4; ++row)
        EXPECT_EQ(0xAB, pixels[row * 20000]) << row;
    EXPECT_EQ(0, pixels[4 * 20000]);
    EXPECT_EQ(0xAB, pixels[80000 - 65536]);
}

TEST(Paint4BppTest, VerticalLinesAreTheLeftAndRightBorders)
{
    auto painter = Canvas(8, 3);
    painter.DrawVerticalLines(1);
    EXPECT_THAT(Row(painter, 0), Each(0));
    EXPECT_THAT(Row(painter, 1), ElementsAre(0xA0, 0, 0, 0x0B));
    EXPECT_THAT(Row(painter, 2), Each(0));
}

TEST(Paint4BppTest, SmallFrameOfFullPen)
{
    Paint4Bpp painter(Size { 8, 4 }, Color4Bpp::Level15);
    painter.DrawFrame(0);
    EXPECT_THAT(Row(painter, 0), ElementsAre(0xFF, 0xFF, 0xFF, 0xFF));
    EXPECT_THAT(Row(painter, 1), ElementsAre(0xF0, 0, 0, 0x0F));
    EXPECT_THAT(Row(painter, 2), ElementsAre(0xF0, 0, 0, 0x0F));
    EXPECT_THAT(Row(painter, 3), ElementsAre(0xFF, 0xFF, 0xFF, 0xFF));
}

TEST(Paint4BppTest, FrameKeepsTheOtherNibblesOfTheSides)
{
    auto painter = Canvas(8, 3);
    painter.Fill(0x66);
    painter.DrawFrame(0);
    EXPECT_THAT(Row(painter, 0), ElementsAre(0xAB, 0xAB, 0xAB, 0xAB));
    EXPECT_THAT(Row(painter, 1), ElementsAre(0xA6, 0x66, 0x66, 0x6B));
    EXPECT_THAT(Row(painter, 2), ElementsAre(0xAB, 0xAB, 0xAB, 0xAB));
}

TEST(Paint4BppTest, FrameWithOddInsetStartsItsRunsOneByteFurtherIn)
{
    auto painter = Canvas(16, 6);
    painter.DrawFrame(1);
    EXPECT_THAT(Row(painter, 0), Each(0));
    EXPECT_THAT(Row(painter, 1), ElementsAre(0x0B, 0, 0xAB, 0xAB, 0xAB, 0xAB, 0, 0xA0));
    EXPECT_THAT(Row(painter, 2), ElementsAre(0x0B, 0, 0, 0, 0, 0, 0, 0xA0));
    EXPECT_THAT(Row(painter, 3), ElementsAre(0x0B, 0, 0, 0, 0, 0, 0, 0xA0));
    EXPECT_THAT(Row(painter, 4), ElementsAre(0x0B, 0, 0xAB, 0xAB, 0xAB, 0xAB, 0, 0xA0));
    EXPECT_THAT(Row(painter, 5), Each(0));
}

TEST(Paint4BppTest, FrameWithEvenInset)
{
    auto painter = Canvas(16, 6);
    painter.DrawFrame(2);
    EXPECT_THAT(Row(painter, 1), Each(0));
    EXPECT_THAT(Row(painter, 2), ElementsAre(0, 0xAB, 0xAB, 0xAB, 0xAB, 0xAB, 0xAB, 0));
    EXPECT_THAT(Row(painter, 3), ElementsAre(0, 0xAB, 0xAB, 0xAB, 0xAB, 0xAB, 0xAB, 0));
    EXPECT_THAT(Row(painter, 4), Each(0));
}

TEST(Paint4BppTest, FrameOfOnePixelLightsIt)
{
    auto painter = Canvas(1, 1);
    painter.DrawFrame(0);
    EXPECT_THAT(Pixels(painter), ElementsAre(0xAB, 0, 0, 0));
}

TEST(Paint4BppTest, FrameOfZeroWidthDrawsNothing)
{
    auto painter = Canvas(0, 3);
    EXPECT_NO_THROW(painter.DrawFrame(0));
    EXPECT_TRUE(painter.Image()->IsEmpty());
}

TEST(Paint4BppTest, FrameOfZeroHeightThrowsTheRowCheck)
{
    auto painter = Canvas(8, 0);
    EXPECT_THAT([&] { painter.DrawFrame(0); }, ThrowsMessage<PreCondition>(StrEq(kRowCheck)));
}

TEST(Paint4BppTest, DottedFrameLightsEveryOtherSideRowAndOddRunPixels)
{
    Paint4Bpp painter(Size { 8, 6 }, Color4Bpp::Level15);
    painter.DrawDottedFrame(0);
    EXPECT_THAT(Row(painter, 0), ElementsAre(0x0F, 0x0F, 0x0F, 0x0F));
    EXPECT_THAT(Row(painter, 1), Each(0));
    EXPECT_THAT(Row(painter, 2), ElementsAre(0xF0, 0, 0, 0x0F));
    EXPECT_THAT(Row(painter, 3), Each(0));
    EXPECT_THAT(Row(painter, 4), ElementsAre(0xF0, 0, 0, 0x0F));
    EXPECT_THAT(Row(painter, 5), ElementsAre(0x0F, 0x0F, 0x0F, 0x0F));
}

TEST(Paint4BppTest, DottedFrameUsesEvenMasksForAnOddInset)
{
    auto painter = Canvas(16, 7);
    painter.DrawDottedFrame(1);
    EXPECT_THAT(Row(painter, 1), ElementsAre(0xA0, 0, 0x0B, 0x0B, 0x0B, 0x0B, 0, 0x0B));
    EXPECT_THAT(Row(painter, 2), Each(0));
    EXPECT_THAT(Row(painter, 3), ElementsAre(0xA0, 0, 0, 0, 0, 0, 0, 0x0B));
    EXPECT_THAT(Row(painter, 5), ElementsAre(0xA0, 0, 0x0B, 0x0B, 0x0B, 0x0B, 0, 0x0B));
}

TEST(Paint4BppTest, OddAndEvenVerticalFramesChooseTheirMasks)
{
    auto odd = Canvas(8, 3);
    odd.DrawOddVerticalFrames(0);
    EXPECT_THAT(Row(odd, 0), ElementsAre(0x0B, 0, 0, 0xA0));
    auto even = Canvas(8, 3);
    even.DrawEvenVerticalFrames(0);
    EXPECT_THAT(Row(even, 2), ElementsAre(0xA0, 0, 0, 0x0B));
    auto chosen = Canvas(8, 3);
    chosen.DrawVerticalFrames(uint16_t { 1 });
    EXPECT_THAT(Row(chosen, 1), ElementsAre(0x0B, 0, 0, 0xA0));
    EXPECT_THAT(Row(chosen, 0), Each(0));
}

TEST(Paint4BppTest, VerticalFramesWithOwnPenMasksAndStep)
{
    auto painter = Canvas(8, 7);
    painter.DrawVerticalFrames(1, 0xFF, 0x0F, 0x3C, 3);
    EXPECT_THAT(Row(painter, 1), ElementsAre(0x3C, 0, 0, 0x0C));
    EXPECT_THAT(Row(painter, 2), Each(0));
    EXPECT_THAT(Row(painter, 4), ElementsAre(0x3C, 0, 0, 0x0C));
    EXPECT_THAT(Row(painter, 6), Each(0));
    auto withPen = Canvas(8, 4);
    withPen.DrawVerticalFrames(0, 0xF0, 0xF0, 2);
    EXPECT_THAT(Row(withPen, 0), ElementsAre(0xA0, 0, 0, 0xA0));
    EXPECT_THAT(Row(withPen, 1), Each(0));
    EXPECT_THAT(Row(withPen, 2), ElementsAre(0xA0, 0, 0, 0xA0));
}

TEST(Paint4BppTest, VerticalFramesWithTooLargeAnInsetDrawNothing)
{
    auto painter = Canvas(8, 4);
    painter.DrawVerticalFrames(2, 0xF0, 0x0F, 1);
    painter.DrawVerticalFrames(40, 0xF0, 0x0F, 1);
    EXPECT_TRUE(painter.Image()->IsEmpty());
}

TEST(Paint4BppTest, VerticalFramesRefuseAStepOfZero)
{
    auto painter = Canvas(8, 4);
    EXPECT_THAT([&] { painter.DrawVerticalFrames(0, 0xF0, 0x0F, 0); },
        ThrowsMessage<PreCondition>(StrEq("PreCondition step > 0")));
}

TEST(Paint4BppTest, VerticalFramesAdvanceBySigned16BitProduct)
{
    // 20000 bytes a row times a step of 2 is 40000, which as a signed 16-bit value is -25536: the
    // second side pair lands 25536 bytes before the first instead of two rows after it.
    auto painter = Canvas(40000, 12);
    painter.DrawVerticalFrames(4, 0xFF, 0xFF, 2);
    auto const& pixels = Pixels(painter);
    std::size_t const left = 4 * 20000 + 2;
    std::size_t const right = 4 * 20000 + 20000 - 1 - 2;
    EXPECT_EQ(0xAB, pixels[left]);
    EXPECT_EQ(0xAB, pixels[right]);
    EXPECT_EQ(0xAB, pixels[left - 25536]);
    EXPECT_EQ(0xAB, pixels[right - 25536]);
    EXPECT_EQ(0, pixels[6 * 20000 + 2]);
    EXPECT_EQ(4u, static_cast<std::size_t>(std::count(pixels.begin(), pixels.end(), 0xAB)));
}

TEST(Paint4BppTest, SeparatorsCoverPixels12To35)
{
    auto painter = Canvas(48, 4);
    painter.DrawHorizontalLSeparator(1);
    std::vector<uint8_t> expected(24, 0);
    std::fill(expected.begin() + 6, expected.begin() + 18, 0xAB);
    EXPECT_EQ(expected, Row(painter, 1));
    EXPECT_THAT(Row(painter, 0), Each(0));

    auto top = Canvas(48, 4);
    top.DrawTopSeparator();
    EXPECT_EQ(expected, Row(top, 0));
    auto bottom = Canvas(48, 4);
    bottom.DrawBottomSeparator();
    EXPECT_EQ(expected, Row(bottom, 3));
    EXPECT_THAT(Row(bottom, 2), Each(0));
}

TEST(Paint4BppTest, SelectedInvertsInsideAThreePixelBorder)
{
    Paint4Bpp painter(Size { 10, 10 }, Color4Bpp::Level0);
    painter.DrawSelected();
    // Column 3 rounds up to byte 2, and four pixels are two bytes.
    for (uint16_t row = 0; row < 10; ++row) {
        if (row >= 3 && row < 7)
            EXPECT_THAT(Row(painter, row), ElementsAre(0, 0, 0xFF, 0xFF, 0, 0, 0, 0)) << row;
        else
            EXPECT_THAT(Row(painter, row), Each(0)) << row;
    }
}

TEST(Paint4BppTest, RoundedSelectedOnTwelveByTwelve)
{
    Paint4Bpp painter(Size { 12, 12 }, Color4Bpp::Level15);
    painter.DrawRoundedSelected();
    EXPECT_THAT(Row(painter, 1), Each(0));
    EXPECT_THAT(Row(painter, 2), ElementsAre(0, 0x5F, 0xFF, 0xFF, 0xF5, 0, 0, 0));
    for (uint16_t row = 3; row <= 8; ++row)
        EXPECT_THAT(Row(painter, row), ElementsAre(0, 0xFF, 0xFF, 0xFF, 0xFF, 0, 0, 0)) << row;
    EXPECT_THAT(Row(painter, 9), ElementsAre(0, 0x5F, 0xFF, 0xFF, 0xF5, 0, 0, 0));
    EXPECT_THAT(Row(painter, 10), Each(0));
}

TEST(Paint4BppTest, RoundedSelectedCornersTakeTheOuterNibblesOfThePen)
{
    auto painter = Canvas(12, 8);
    painter.Fill(0x0F);
    painter.DrawRoundedSelected();
    EXPECT_THAT(Row(painter, 2), ElementsAre(0x0F, 0x5B, 0xAB, 0xAB, 0xA5, 0x0F, 0, 0));
    EXPECT_THAT(Row(painter, 3), ElementsAre(0x0F, 0xF0, 0xF0, 0xF0, 0xF0, 0x0F, 0, 0));
    EXPECT_THAT(Row(painter, 5), ElementsAre(0x0F, 0x5B, 0xAB, 0xAB, 0xA5, 0x0F, 0, 0));
}

TEST(Paint4BppTest, RoundedSelectedOnTooSmallAnAreaDrawsNothing)
{
    Paint4Bpp narrow(Size { 4, 10 }, Color4Bpp::Level15);
    narrow.DrawRoundedSelected();
    EXPECT_TRUE(narrow.Image()->IsEmpty());
    Paint4Bpp flat(Size { 10, 4 }, Color4Bpp::Level15);
    flat.DrawRoundedSelected();
    EXPECT_TRUE(flat.Image()->IsEmpty());
}

TEST(Paint4BppTest, RoundedSelectedOfOneInnerRowMarksTheRowBelow)
{
    auto painter = Canvas(12, 5);
    painter.DrawRoundedSelected();
    EXPECT_THAT(Row(painter, 2), ElementsAre(0, 0x5B, 0xAB, 0xAB, 0xA5, 0, 0, 0));
    EXPECT_THAT(Row(painter, 3), ElementsAre(0, 0x5B, 0, 0, 0xA5, 0, 0, 0));
    EXPECT_THAT(Row(painter, 4), Each(0));
}

TEST(Paint4BppTest, RoundedSelectedOfTwoInnerRowsMarksOnlyTheCornersOfTheSecond)
{
    auto painter = Canvas(12, 6);
    painter.Fill(Rect { 0, 3, 12, 1 }, 0x11);
    painter.DrawRoundedSelected();
    EXPECT_THAT(Row(painter, 2), ElementsAre(0, 0x5B, 0xAB, 0xAB, 0xA5, 0, 0, 0));
    EXPECT_THAT(Row(painter, 3), ElementsAre(0x11, 0x5B, 0x11, 0x11, 0xA5, 0x11, 0, 0));
}

TEST(Paint4BppTest, RoundedSelectedOfOneByteKeepsTheFinalValue)
{
    auto painter = Canvas(6, 8);
    painter.DrawRoundedSelected();
    EXPECT_THAT(Row(painter, 2), ElementsAre(0, 0xA5, 0, 0));
    EXPECT_THAT(Row(painter, 3), ElementsAre(0, 0xFF, 0, 0));
    EXPECT_THAT(Row(painter, 5), ElementsAre(0, 0xA5, 0, 0));
}

TEST(Paint4BppTest, RowCompositesDrawBordersAndALine)
{
    auto expectedBorders = [](ClonePaint4Bpp& painter) { painter.DrawVerticalLines(0); };
    struct Case {
        void (Paint4Bpp::*composite)();
        void (*line)(ClonePaint4Bpp&);
    };
    Case const cases[] = {
        { &Paint4Bpp::DrawRow1, [](ClonePaint4Bpp& p) { p.DrawBottomSeparator(); } },
        { &Paint4Bpp::DrawRow2, [](ClonePaint4Bpp& p) { p.DrawHorizontalLine(5); } },
        { &Paint4Bpp::DrawRow3, [](ClonePaint4Bpp& p) { p.DrawHorizontalLine(0); } },
        { &Paint4Bpp::DrawRow4, [](ClonePaint4Bpp& p) { p.DrawTopSeparator(); } },
        { &Paint4Bpp::DrawTop2, [](ClonePaint4Bpp& p) { p.DrawBottomSeparator(); } },
        { &Paint4Bpp::DrawBottom2,
            [](ClonePaint4Bpp& p) {
                p.DrawHorizontalLine(4);
                p.DrawHorizontalLine(5);
            } },
    };
    for (auto const& c : cases) {
        auto drawn = Canvas(48, 6);
        (drawn.*c.composite)();
        auto expected = Canvas(48, 6);
        expectedBorders(expected);
        c.line(expected);
        EXPECT_EQ(Pixels(expected), Pixels(drawn));
        EXPECT_NE(std::count(Pixels(drawn).begin(), Pixels(drawn).end(), 0), 6 * 24);
    }
}

TEST(Paint4BppTest, Bottom2DrawsTheLastTwoRows)
{
    auto painter = Canvas(8, 4);
    painter.DrawBottom2();
    EXPECT_THAT(Row(painter, 1), ElementsAre(0xA0, 0, 0, 0x0B));
    EXPECT_THAT(Row(painter, 2), ElementsAre(0xAB, 0xAB, 0xAB, 0xAB));
    EXPECT_THAT(Row(painter, 3), ElementsAre(0xAB, 0xAB, 0xAB, 0xAB));
}

TEST(Paint4BppTest, OverlayNoneOrPastTheTableChangesNothing)
{
    for (auto overlay : { IconOverlay::None, static_cast<IconOverlay>(10), static_cast<IconOverlay>(255) }) {
        auto painter = Canvas(12, 12);
        painter.Fill(Rect { 0, 0, 12, 6 }, 0x3C);
        auto const before = Pixels(painter);
        painter.Draw(overlay);
        EXPECT_EQ(before, Pixels(painter));
    }
}

TEST(Paint4BppTest, OverlaysDrawTheirOperations)
{
    struct Case {
        IconOverlay overlay;
        void (*draw)(ClonePaint4Bpp&);
    };
    Case const cases[] = {
        { IconOverlay::Row1, [](ClonePaint4Bpp& p) { p.DrawRow1(); } },
        { IconOverlay::Row2, [](ClonePaint4Bpp& p) { p.DrawRow2(); } },
        { IconOverlay::Row3, [](ClonePaint4Bpp& p) { p.DrawRow3(); } },
        { IconOverlay::Row4, [](ClonePaint4Bpp& p) { p.DrawRow4(); } },
        { IconOverlay::Selected, [](ClonePaint4Bpp& p) { p.DrawSelected(); } },
        { IconOverlay::RoundedSelected, [](ClonePaint4Bpp& p) { p.DrawRoundedSelected(); } },
        { IconOverlay::FramedRoundedSelected,
            [](ClonePaint4Bpp& p) {
                p.DrawRoundedSelected();
                p.DrawFrame(0);
            } },
        { IconOverlay::Frame, [](ClonePaint4Bpp& p) { p.DrawFrame(0); } },
        { IconOverlay::DottedFrame, [](ClonePaint4Bpp& p) { p.DrawDottedFrame(0); } },
    };
    for (auto const& c : cases) {
        auto drawn = Canvas(48, 12);
        drawn.Draw(c.overlay);
        auto expected = Canvas(48, 12);
        c.draw(expected);
        EXPECT_EQ(Pixels(expected), Pixels(drawn)) << static_cast<int>(c.overlay);
        EXPECT_NE(std::count(Pixels(drawn).begin(), Pixels(drawn).end(), 0), 24 * 12);
    }
}

TEST(Paint4BppTest, DrawOfAnEightBitPictureThrowsAtItsFixedPlace)
{
    auto painter = Canvas(8, 2);
    auto const info = MakeInfo(ImageFormat::Gray8, 8, 2);
    std::vector<uint8_t> const pixels(info.GetSize(), 0x11);
    EXPECT_THAT([&] { painter.Draw(info, pixels.data()); },
        ThrowsMessage<PreCondition>(
            StrEq("PreCondition bpp == 4 Draw with 8 bits per pixel not implemented.")));
    try {
        painter.Draw(info, pixels.data());
        FAIL() << "no exception";
    } catch (PreCondition const& e) {
        EXPECT_STREQ("void Zar::ResourcesLibrary::Image::Paint4Bpp::Draw(const "
                     "Zar::ResourcesLibrary::Image::ImageInfo&, const void*)",
            e.Source()._function);
        EXPECT_STREQ("src/lib/Zar/ResourcesLibrary/Image/Paint4Bpp", e.Source()._file);
        EXPECT_EQ(478u, e.Source()._line);
    }
    EXPECT_TRUE(painter.Image()->IsEmpty());
}

TEST(Paint4BppTest, DrawOfOtherDepthsNamesThem)
{
    auto painter = Canvas(8, 2);
    MutableImage const mono(MakeInfo(ImageFormat::Mono, 8, 2));
    EXPECT_THAT([&] { painter.Draw(mono); },
        ThrowsMessage<PreCondition>(
            StrEq("PreCondition bpp == 4 Draw with 1 bits per pixel not implemented.")));
    MutableImage const unknown(MakeInfo(ImageFormat::Unknown, 8, 2));
    EXPECT_THAT([&] { painter.Draw(unknown); },
        ThrowsMessage<PreCondition>(
            StrEq("PreCondition bpp == 4 Draw with 32 bits per pixel not implemented.")));
}

TEST(Paint4BppTest, DrawOfAWiderPictureCopiesOnlyTheAreaColumns)
{
    auto painter = Canvas(6, 3);
    auto const info = MakeInfo(ImageFormat::Gray4, 20, 2);
    std::vector<uint8_t> pixels(info.GetSize());
    std::iota(pixels.begin(), pixels.end(), uint8_t { 1 });
    painter.Draw(info, pixels.data());
    EXPECT_THAT(Row(painter, 0), ElementsAre(1, 2, 3, 0));
    EXPECT_THAT(Row(painter, 1), ElementsAre(13, 14, 15, 0));
    EXPECT_THAT(Row(painter, 2), Each(0));
}

TEST(Paint4BppTest, DrawOfATallerNarrowerPictureCopiesItsColumnsAndTheAreaRows)
{
    auto painter = Canvas(8, 2);
    painter.Fill(0xEE);
    auto const info = MakeInfo(ImageFormat::Gray4, 3, 5);
    std::vector<uint8_t> pixels(info.GetSize());
    std::iota(pixels.begin(), pixels.end(), uint8_t { 1 });
    painter.Draw(info, pixels.data());
    EXPECT_THAT(Row(painter, 0), ElementsAre(1, 2, 0xEE, 0xEE));
    EXPECT_THAT(Row(painter, 1), ElementsAre(5, 6, 0xEE, 0xEE));
}

TEST(Paint4BppTest, DrawOfNegativeWidthThrowsTheByteCountCheck)
{
    auto painter = Canvas(8, 2);
    auto info = MakeInfo(ImageFormat::Gray4, 8, 2);
    info._width = -1;
    std::vector<uint8_t> const pixels(8);
    EXPECT_THAT([&] { painter.Draw(info, pixels.data()); },
        ThrowsMessage<PreCondition>(StrEq("PreCondition x >= 0")));
}

TEST(Paint4BppTest, DrawOfMutableAndImmutableImages)
{
    auto painter = Canvas(8, 2);
    MutableImage const source(MakeInfo(ImageFormat::Gray4, 8, 2), { 1, 2, 3, 4, 5, 6, 7, 8 });
    painter.Draw(source);
    EXPECT_THAT(Pixels(painter), ElementsAre(1, 2, 3, 4, 5, 6, 7, 8));

    ImmutableImageRecord const record { 4, 1, 4, 0 };
    uint8_t const constant[4] { 0x21, 0x43, 0x65, 0x87 };
    painter.Draw(ImmutableImage(&record, constant));
    EXPECT_THAT(Pixels(painter), ElementsAre(0x21, 0x43, 3, 4, 5, 6, 7, 8));
}

TEST(Paint4BppTest, DrawOfAnUnfilledImageDrawsLevelZero)
{
    auto painter = Canvas(8, 2);
    painter.Fill(0xEE);
    painter.Draw(MutableImage(MakeInfo(ImageFormat::Gray4, 4, 1)));
    EXPECT_THAT(Pixels(painter), ElementsAre(0, 0, 0xEE, 0xEE, 0xEE, 0xEE, 0xEE, 0xEE));
}

TEST(Paint4BppTest, DrawOfAnImageWithAShortBufferThrows)
{
    auto painter = Canvas(8, 2);
    MutableImage const shortImage(MakeInfo(ImageFormat::Gray4, 8, 2), std::vector<uint8_t>(3));
    EXPECT_THAT([&] { painter.Draw(shortImage); },
        ThrowsMessage<PreCondition>(
            StrEq("PreCondition image.IsEmpty() || image.Buffer().size() >= image.GetSize()")));
}

TEST(Paint4BppTest, SideOutsideTheBufferThrows)
{
    auto painter = Canvas(2, 2);
    EXPECT_THAT([&] { painter.DrawVerticalLine(40, 0); }, ThrowsMessage<PreCondition>(StrEq(kByteCheck)));
}

} // namespace
} // namespace Zar::ResourcesLibrary::Image
