#include "Zar/ResourcesLibrary/Image/ClonePaint4Bpp.h"

#include "ImageFixtures.h"

#include "Zar/Lt/Exceptions/PreCondition.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <vector>

namespace Zar::ResourcesLibrary::Image {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::StrEq;
using testing::ThrowsMessage;
using TestSupport::MakeInfo;
using TestSupport::Numbered;
using Zar::Lt::Exceptions::PreCondition;

TEST(ClonePaint4BppTest, FromMutableImageWithColourCopiesAndKeepsTheSource)
{
    auto const source = Numbered(MakeInfo(ImageFormat::Gray4, 8, 4));
    auto const before = source.Buffer();
    ClonePaint4Bpp painter(source, Color4Bpp::Level3);
    EXPECT_EQ(0x33, painter.Pen());
    EXPECT_THAT(painter.Image()->Buffer(), ElementsAreArray(before));
    painter.DrawFrame(0);
    EXPECT_EQ(before, source.Buffer());
    EXPECT_NE(before, painter.Image()->Buffer());
    EXPECT_EQ(8, painter.Area()._width);
    EXPECT_EQ(4, painter.Area()._height);
}

TEST(ClonePaint4BppTest, FromMutableImageWithPenByteStoresItAsGiven)
{
    auto const source = Numbered(MakeInfo(ImageFormat::Gray4, 8, 2));
    ClonePaint4Bpp painter(source, uint8_t { 0x5C });
    EXPECT_EQ(0x5C, painter.Pen());
    painter.DrawHorizontalLine(0);
    EXPECT_THAT(painter.Image()->Buffer(), ElementsAre(0x5C, 0x5C, 0x5C, 0x5C, 5, 6, 7, 8));
    EXPECT_THAT(source.Buffer(), ElementsAre(1, 2, 3, 4, 5, 6, 7, 8));
}

TEST(ClonePaint4BppTest, FromSharedImageTakesAPrivateCopy)
{
    auto const shared = std::make_shared<MutableImage>(Numbered(MakeInfo(ImageFormat::Gray4, 8, 2)));
    ClonePaint4Bpp painter(shared, uint8_t { 0x21 });
    EXPECT_NE(shared, painter.Image());
    EXPECT_EQ(0x21, painter.Pen());
    painter.Fill(0);
    EXPECT_THAT(painter.Image()->Buffer(), Each(0));
    EXPECT_THAT(shared->Buffer(), ElementsAre(1, 2, 3, 4, 5, 6, 7, 8));
}

TEST(ClonePaint4BppTest, FromNullSharedImageThrows)
{
    std::shared_ptr<MutableImage> const none;
    EXPECT_THAT([&] { ClonePaint4Bpp(none, uint8_t { 1 }); },
        ThrowsMessage<PreCondition>(StrEq("PreCondition image != nullptr")));
}

TEST(ClonePaint4BppTest, FromImmutableImageWithPenByteOrColour)
{
    ImmutableImageRecord const record { 8, 2, 4, 9 };
    uint8_t const pixels[8] { 1, 2, 3, 4, 5, 6, 7, 8 };
    ImmutableImage const image(&record, pixels);

    ClonePaint4Bpp const byPen(image, uint8_t { 0x4E });
    EXPECT_EQ(0x4E, byPen.Pen());
    EXPECT_THAT(byPen.Image()->Buffer(), ElementsAre(1, 2, 3, 4, 5, 6, 7, 8));
    EXPECT_EQ(9u, byPen.Image()->Info()._attribute);
    EXPECT_TRUE(byPen.Image()->Info().IsBottomUp());

    ClonePaint4Bpp byColour(image, Color4Bpp::Level12);
    EXPECT_EQ(0xCC, byColour.Pen());
    byColour.DrawHorizontalLine(1);
    EXPECT_THAT(byColour.Image()->Buffer(), ElementsAre(1, 2, 3, 4, 0xCC, 0xCC, 0xCC, 0xCC));
    EXPECT_EQ(5, pixels[4]);
}

TEST(ClonePaint4BppTest, FromImmutableImageOfMismatchedSizeThrows)
{
    ImmutableImageRecord const record { 9, 2, 4, 0 };
    uint8_t const pixels[16] {};
    EXPECT_THAT([&] { ClonePaint4Bpp(ImmutableImage(&record, pixels), Color4Bpp::Level1); },
        ThrowsMessage<PreCondition>(StrEq("PreCondition size == _info.GetSize()")));
}

TEST(ClonePaint4BppTest, ColourPenMatchesThePainterOfASize)
{
    for (unsigned level = 0; level < 16; ++level) {
        auto const color = static_cast<Color4Bpp>(level);
        ClonePaint4Bpp const clone(MutableImage(MakeInfo(ImageFormat::Gray4, 2, 1)), color);
        EXPECT_EQ(0x11 * level, clone.Pen()) << level;
        EXPECT_EQ(Paint4Bpp(Size { 2, 1 }, color).Pen(), clone.Pen()) << level;
    }
}

TEST(ClonePaint4BppTest, IconFrameOfAnUnfilledImageStartsFromZero)
{
    ClonePaint4Bpp painter(MutableImage(MakeInfo(ImageFormat::Gray4, 4, 3)), Color4Bpp::Level3);
    painter.DrawFrame(0);
    uint8_t const* pixels = painter.GetPixelPointer(0, 0);
    EXPECT_THAT(std::vector<uint8_t>(pixels, pixels + 12),
        ElementsAre(0x33, 0x33, 0, 0, 0x30, 0x03, 0, 0, 0x33, 0x33, 0, 0));
}

// Every geometry a loader may hand the icon path: the frame stays inside the clone's buffer, and an
// image without rows is refused by the row check instead of being drawn.
TEST(ClonePaint4BppTest, IconFrameOfAnyLoadedGeometryStaysInsideTheImage)
{
    ImageFormat const formats[] = { ImageFormat::Gray4, ImageFormat::Mono, ImageFormat::Gray8,
        ImageFormat::Rgb24, ImageFormat::Rgba };
    for (auto format : formats) {
        for (int32_t width = 0; width <= 9; ++width) {
            for (int32_t height = 0; height <= 4; ++height) {
                auto const source = Numbered(MakeInfo(format, width, height));
                ClonePaint4Bpp painter(source, Color4Bpp::Level3);
                if (height == 0) {
                    EXPECT_THAT([&] { painter.DrawFrame(0); },
                        ThrowsMessage<PreCondition>(
                            StrEq("PreCondition y < static_cast<uint32_t>(_info.Height())")));
                    continue;
                }
                EXPECT_NO_THROW(painter.DrawFrame(0)) << width << "x" << height;
                EXPECT_EQ(source.GetSize(), painter.Image()->Buffer().size());
                EXPECT_EQ(painter.Image()->Buffer().data(), painter.GetPixelPointer(0, 0));
            }
        }
    }
}

TEST(ClonePaint4BppTest, IconFrameOfOddWidthLightsThePaddingPixelOnTheRight)
{
    auto const source = MutableImage(MakeInfo(ImageFormat::Gray4, 3, 3), std::vector<uint8_t>(12, 0));
    ClonePaint4Bpp painter(source, Color4Bpp::Level3);
    painter.DrawFrame(0);
    EXPECT_THAT(painter.Image()->Buffer(), ElementsAre(0x33, 0x33, 0, 0, 0x30, 0x03, 0, 0, 0x33, 0x33, 0, 0));
}

} // namespace
} // namespace Zar::ResourcesLibrary::Image
