#include "Zar/ResourcesLibrary/Image/MutableImage.h"

#include "ImageFixtures.h"

#include "Zar/Lt/Exceptions/PreCondition.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

namespace Zar::ResourcesLibrary::Image {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::StrEq;
using testing::ThrowsMessage;
using TestSupport::MakeInfo;
using TestSupport::Numbered;
using TestSupport::RowOf;
using Zar::Lt::Exceptions::PreCondition;

TEST(MutableImageTest, EmptyHasTheEmptyInfoAndNoPixels)
{
    EXPECT_EQ(ImageFormat::Rgbx, MutableImage::Empty.Info().Format());
    EXPECT_EQ(0, MutableImage::Empty.Info().Width());
    EXPECT_EQ(0, MutableImage::Empty.Info().Height());
    EXPECT_TRUE(MutableImage::Empty.IsEmpty());
    EXPECT_EQ(0u, MutableImage::Empty.GetSize());
}

TEST(MutableImageTest, ConstructorsKeepInfoAndBuffer)
{
    auto const info = MakeInfo(ImageFormat::Gray4, 3, 2);
    MutableImage const described(info);
    EXPECT_TRUE(described.IsEmpty());
    EXPECT_EQ(8u, described.GetSize());

    MutableImage const filled(info, std::vector<uint8_t>(8, 0xAB));
    EXPECT_FALSE(filled.IsEmpty());
    EXPECT_THAT(filled.Buffer(), Each(0xAB));
}

TEST(MutableImageTest, GetLineZeroFillsAnEmptyBufferFirst)
{
    MutableImage image(MakeInfo(ImageFormat::Gray4, 9, 3));
    uint8_t* const first = image.GetLine(0);
    EXPECT_EQ(24u, image.Buffer().size());
    EXPECT_THAT(image.Buffer(), Each(0));
    EXPECT_EQ(first, image.Buffer().data());
    EXPECT_EQ(first + 16, image.GetLine(2));
}

TEST(MutableImageTest, GetLineKeepsExistingPixels)
{
    auto image = Numbered(MakeInfo(ImageFormat::Gray4, 3, 2));
    EXPECT_EQ(5, *image.GetLine(1));
}

TEST(MutableImageTest, GetLineAtTheHeightThrowsAtItsFixedPlace)
{
    MutableImage image(MakeInfo(ImageFormat::Gray4, 3, 2));
    EXPECT_THAT([&] { image.GetLine(2); },
        ThrowsMessage<PreCondition>(StrEq("PreCondition y < static_cast<uint32_t>(_info.Height())")));
    try {
        image.GetLine(0xFFFFFFFFu);
        FAIL() << "no exception";
    } catch (PreCondition const& e) {
        EXPECT_STREQ(
            "uint8_t* Zar::ResourcesLibrary::Image::MutableImage::GetLine(uint32_t)", e.Source()._function);
        EXPECT_STREQ("src/lib/Zar/ResourcesLibrary/Image/MutableImage", e.Source()._file);
        EXPECT_EQ(124u, e.Source()._line);
    }
    EXPECT_TRUE(image.IsEmpty());
}

TEST(MutableImageTest, GetLineOfAnImageWithoutRowsThrows)
{
    MutableImage image(MakeInfo(ImageFormat::Gray4, 8, 0));
    EXPECT_THAT([&] { image.GetLine(0); },
        ThrowsMessage<PreCondition>(StrEq("PreCondition y < static_cast<uint32_t>(_info.Height())")));
    MutableImage empty = MutableImage::Empty;
    EXPECT_THAT([&] { empty.GetLine(0); },
        ThrowsMessage<PreCondition>(StrEq("PreCondition y < static_cast<uint32_t>(_info.Height())")));
}

TEST(MutableImageTest, GetLineOfANegativeHeightThrowsBeforeSizingTheBuffer)
{
    MutableImage image(MakeInfo(ImageFormat::Gray4, 8, -2));
    EXPECT_THAT([&] { image.GetLine(0); }, ThrowsMessage<PreCondition>(StrEq("PreCondition _height >= 0")));
    EXPECT_TRUE(image.IsEmpty());
}

TEST(MutableImageTest, GetLineRefusesABufferTooSmallForTheInfo)
{
    MutableImage image(MakeInfo(ImageFormat::Gray4, 8, 4), std::vector<uint8_t>(8));
    EXPECT_THAT([&] { image.GetLine(3); },
        ThrowsMessage<PreCondition>(StrEq("PreCondition _buffer.size() >= _info.GetSize()")));
}

TEST(MutableImageTest, CopyFromATallerSourceCopiesOnlyTheOwnHeight)
{
    auto const source = Numbered(MakeInfo(ImageFormat::Gray4, 8, 4));
    MutableImage image(MakeInfo(ImageFormat::Gray4, 8, 2));
    image.Copy(source.Buffer().data(), source.Info());
    EXPECT_THAT(image.Buffer(), ElementsAre(1, 2, 3, 4, 5, 6, 7, 8));
}

TEST(MutableImageTest, CopyFromAShorterSourceKeepsTheRemainingRows)
{
    auto const source = Numbered(MakeInfo(ImageFormat::Gray4, 8, 1));
    MutableImage image(MakeInfo(ImageFormat::Gray4, 8, 2), std::vector<uint8_t>(8, 0xEE));
    image.Copy(source.Buffer().data(), source.Info());
    EXPECT_THAT(image.Buffer(), ElementsAre(1, 2, 3, 4, 0xEE, 0xEE, 0xEE, 0xEE));
}

TEST(MutableImageTest, CopyFromAWiderSourceCopiesOnlyTheOwnRowBytes)
{
    // Source rows are 12 bytes (width 20 at 4 bits), own rows 2 pixel bytes and 2 padding bytes.
    auto const source = Numbered(MakeInfo(ImageFormat::Gray4, 20, 2));
    MutableImage image(MakeInfo(ImageFormat::Gray4, 3, 2), std::vector<uint8_t>(8, 0xEE));
    image.Copy(source.Buffer().data(), source.Info());
    EXPECT_THAT(image.Buffer(), ElementsAre(1, 2, 0xEE, 0xEE, 13, 14, 0xEE, 0xEE));
}

TEST(MutableImageTest, CopyFromANarrowerSourceCopiesOnlyItsRowBytes)
{
    auto const source = Numbered(MakeInfo(ImageFormat::Gray4, 1, 2));
    MutableImage image(MakeInfo(ImageFormat::Gray4, 8, 2));
    image.Copy(source.Buffer().data(), source.Info());
    EXPECT_THAT(image.Buffer(), ElementsAre(1, 0, 0, 0, 5, 0, 0, 0));
}

TEST(MutableImageTest, CopyDoesNotConvertBetweenFormats)
{
    // Four 8-bit pixels are four bytes, copied as they stand into a row of eight 4-bit pixels.
    auto const source = Numbered(MakeInfo(ImageFormat::Gray8, 4, 1), 0xA0);
    MutableImage image(MakeInfo(ImageFormat::Gray4, 8, 1));
    image.Copy(source.Buffer().data(), source.Info());
    EXPECT_THAT(image.Buffer(), ElementsAre(0xA0, 0xA1, 0xA2, 0xA3));
}

TEST(MutableImageTest, CopyWithNegativeWidthsThrows)
{
    auto const source = Numbered(MakeInfo(ImageFormat::Gray4, 8, 1));
    MutableImage negativeOwn(MakeInfo(ImageFormat::Gray4, 8, 1));
    negativeOwn.Info()._width = -1;
    EXPECT_THAT([&] { negativeOwn.Copy(source.Buffer().data(), source.Info()); },
        ThrowsMessage<PreCondition>(StrEq("PreCondition x >= 0")));

    ImageInfo negativeSource = source.Info();
    negativeSource._width = -1;
    MutableImage image(MakeInfo(ImageFormat::Gray4, 8, 1));
    EXPECT_THAT([&] { image.Copy(source.Buffer().data(), negativeSource); },
        ThrowsMessage<PreCondition>(StrEq("PreCondition x >= 0")));
}

TEST(MutableImageTest, CopyFromNoPixelsThrowsUnlessThereIsNothingToCopy)
{
    MutableImage image(MakeInfo(ImageFormat::Gray4, 8, 2));
    EXPECT_THAT([&] { image.Copy(nullptr, MakeInfo(ImageFormat::Gray4, 8, 2)); },
        ThrowsMessage<PreCondition>(StrEq("PreCondition source != nullptr")));
    EXPECT_NO_THROW(image.Copy(nullptr, MakeInfo(ImageFormat::Gray4, 8, 0)));
    EXPECT_NO_THROW(image.Copy(nullptr, MakeInfo(ImageFormat::Gray4, 0, 2)));
    EXPECT_THAT(image.Buffer(), Each(0));
}

TEST(MutableImageTest, CopyRefusesRowsLongerThanTheOwnStride)
{
    auto const source = Numbered(MakeInfo(ImageFormat::Gray4, 16, 1));
    MutableImage image(MakeInfo(ImageFormat::Gray4, 8, 2));
    image.Info()._width = 16;
    EXPECT_THAT([&] { image.Copy(source.Buffer().data(), source.Info()); },
        ThrowsMessage<PreCondition>(StrEq("PreCondition rowBytes <= _info.Stride()")));
}

TEST(MutableImageTest, FlipOfThreeRowsSwapsTheOuterRows)
{
    auto image = Numbered(MakeInfo(ImageFormat::Gray4, 8, 3));
    image.Info()._bottomUp = 1;
    image.ImplaceFlipVertical();
    EXPECT_THAT(RowOf(image, 0), ElementsAre(9, 10, 11, 12));
    EXPECT_THAT(RowOf(image, 1), ElementsAre(5, 6, 7, 8));
    EXPECT_THAT(RowOf(image, 2), ElementsAre(1, 2, 3, 4));
    EXPECT_TRUE(image.Info().IsBottomUp());
}

TEST(MutableImageTest, FlipOfFourRowsReversesThemAll)
{
    auto image = Numbered(MakeInfo(ImageFormat::Gray4, 8, 4));
    image.ImplaceFlipVertical();
    EXPECT_THAT(image.Buffer(), ElementsAre(13, 14, 15, 16, 9, 10, 11, 12, 5, 6, 7, 8, 1, 2, 3, 4));
}

TEST(MutableImageTest, FlipOfOneRowDoesNothing)
{
    auto image = Numbered(MakeInfo(ImageFormat::Gray4, 8, 1));
    image.ImplaceFlipVertical();
    EXPECT_THAT(image.Buffer(), ElementsAre(1, 2, 3, 4));
}

TEST(MutableImageTest, FlipOfAnUnfilledImageLeavesItUnfilled)
{
    MutableImage image(MakeInfo(ImageFormat::Gray4, 8, 4));
    image.ImplaceFlipVertical();
    EXPECT_TRUE(image.IsEmpty());
}

TEST(MutableImageTest, StaticFlipWorksOnAnyBuffer)
{
    std::vector<uint8_t> buffer { 1, 2, 3, 4, 5, 6, 7 };
    MutableImage::ImplaceFlipVertical(buffer, 3, 2);
    EXPECT_THAT(buffer, ElementsAre(4, 5, 6, 1, 2, 3, 7));

    MutableImage::ImplaceFlipVertical(buffer, 0, 5);
    MutableImage::ImplaceFlipVertical(buffer, -3, 2);
    MutableImage::ImplaceFlipVertical(buffer, 3, -2);
    EXPECT_THAT(buffer, ElementsAre(4, 5, 6, 1, 2, 3, 7));
}

TEST(MutableImageTest, StaticFlipRefusesABufferShorterThanItsRows)
{
    std::vector<uint8_t> buffer(11);
    EXPECT_THAT([&] { MutableImage::ImplaceFlipVertical(buffer, 4, 3); },
        ThrowsMessage<PreCondition>(StrEq("PreCondition needed <= buffer.size()")));
}

TEST(MutableImageTest, FlipVerticalReturnsAFlippedCopy)
{
    auto const image = Numbered(MakeInfo(ImageFormat::Gray4, 8, 2));
    auto const flipped = image.FlipVertical();
    ASSERT_NE(nullptr, flipped);
    EXPECT_THAT(flipped->Buffer(), ElementsAre(5, 6, 7, 8, 1, 2, 3, 4));
    EXPECT_THAT(image.Buffer(), ElementsAre(1, 2, 3, 4, 5, 6, 7, 8));
    EXPECT_EQ(image.Info().Stride(), flipped->Info().Stride());
    EXPECT_EQ(image.Info().Height(), flipped->Info().Height());
}

TEST(MutableImageTest, NegativeOfOddWidthInvertsThePixelBytesOnly)
{
    MutableImage image(
        MakeInfo(ImageFormat::Gray4, 3, 2), { 0x12, 0x3A, 0x55, 0x66, 0x00, 0xF0, 0x77, 0x88 });
    image.ImplaceNegative();
    EXPECT_THAT(image.Buffer(), ElementsAre(0xED, 0xC5, 0x55, 0x66, 0xFF, 0x0F, 0x77, 0x88));
}

TEST(MutableImageTest, NegativeOfAnUnfilledImageLightsEveryPixelByte)
{
    MutableImage image(MakeInfo(ImageFormat::Mono, 9, 2));
    image.ImplaceNegative();
    EXPECT_THAT(image.Buffer(), ElementsAre(0xFF, 0xFF, 0, 0, 0xFF, 0xFF, 0, 0));
}

TEST(MutableImageTest, NegativeOfNegativeWidthThrows)
{
    MutableImage image(MakeInfo(ImageFormat::Gray4, 3, 2));
    image.Info()._width = -3;
    EXPECT_THAT([&] { image.ImplaceNegative(); }, ThrowsMessage<PreCondition>(StrEq("PreCondition x >= 0")));
}

TEST(MutableImageTest, NegativeRefusesRowsLongerThanTheStride)
{
    MutableImage image(MakeInfo(ImageFormat::Gray4, 8, 2));
    image.Info()._width = 9;
    EXPECT_THAT([&] { image.ImplaceNegative(); },
        ThrowsMessage<PreCondition>(StrEq("PreCondition rowBytes <= _info.Stride()")));
}

TEST(MutableImageTest, NegativeOfNoRowsChangesNothing)
{
    MutableImage image(MakeInfo(ImageFormat::Gray4, 3, 0));
    image.ImplaceNegative();
    EXPECT_TRUE(image.IsEmpty());
}

} // namespace
} // namespace Zar::ResourcesLibrary::Image
