#include "Zar/ResourcesLibrary/Image/ImmutableImage.h"

#include "Zar/Lt/Exceptions/PreCondition.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <numeric>
#include <vector>

namespace Zar::ResourcesLibrary::Image {
namespace {

using testing::ElementsAreArray;
using testing::StrEq;
using testing::ThrowsMessage;
using Zar::Lt::Exceptions::PreCondition;

constexpr char kSizeCheck[] = "PreCondition size == _info.GetSize()";

std::vector<uint8_t> Numbered(std::size_t count)
{
    std::vector<uint8_t> pixels(count);
    std::iota(pixels.begin(), pixels.end(), uint8_t { 1 });
    return pixels;
}

TEST(ImmutableImageTest, ViewKeepsItsPointers)
{
    ImmutableImageRecord const record { 8, 2, 4, 0 };
    uint8_t const pixels[8] {};
    ImmutableImage const image(&record, pixels);
    EXPECT_EQ(&record, image.Record());
    EXPECT_EQ(pixels, image.Pixels());
}

TEST(ImmutableImageTest, MakeMutableDescribesTheRecord)
{
    ImmutableImageRecord const record { 8, 2, 4, 0x5A };
    auto const pixels = Numbered(8);
    auto const image = ImmutableImage(&record, pixels.data()).MakeMutable();
    ASSERT_NE(nullptr, image);
    ImageInfo const& info = image->Info();
    EXPECT_EQ(8, info.Width());
    EXPECT_EQ(2, info.Height());
    EXPECT_EQ(ImageFormat::Gray4, info.Format());
    EXPECT_EQ(4u, info.Stride());
    EXPECT_EQ(1u, info._bottomUp);
    EXPECT_EQ(0x5Au, info._attribute);
    EXPECT_EQ(0u, info._reserved1);
    EXPECT_EQ(0u, info._reserved2);
    EXPECT_THAT(image->Buffer(), ElementsAreArray(pixels));
}

TEST(ImmutableImageTest, MakeMutableOfWidth3Passes)
{
    // 12 bits: one byte rounded down and four padded, two rounded up and four padded: the same.
    ImmutableImageRecord const record { 3, 2, 4, 0 };
    auto const pixels = Numbered(8);
    auto const image = ImmutableImage(&record, pixels.data()).MakeMutable();
    EXPECT_THAT(image->Buffer(), ElementsAreArray(pixels));
}

TEST(ImmutableImageTest, MakeMutableOfWidth9RefusesTheRoundedDownSize)
{
    ImmutableImageRecord const record { 9, 2, 4, 0 };
    auto const pixels = Numbered(16);
    ImmutableImage const image(&record, pixels.data());
    EXPECT_THAT([&] { image.MakeMutable(); }, ThrowsMessage<PreCondition>(StrEq(kSizeCheck)));
    try {
        image.MakeMutable();
        FAIL() << "no exception";
    } catch (PreCondition const& e) {
        EXPECT_STREQ("void Zar::ResourcesLibrary::Image::MutableImage::Copy(const void*, uint32_t)",
            e.Source()._function);
        EXPECT_STREQ("src/lib/Zar/ResourcesLibrary/Image/MutableImage", e.Source()._file);
        EXPECT_EQ(179u, e.Source()._line);
    }
}

TEST(ImmutableImageTest, MakeMutableOfOtherKnownDepths)
{
    ImmutableImageRecord const mono { 9, 3, 1, 0 };
    auto const monoPixels = Numbered(12);
    auto const monoImage = ImmutableImage(&mono, monoPixels.data()).MakeMutable();
    EXPECT_EQ(ImageFormat::Mono, monoImage->Info().Format());
    EXPECT_THAT(monoImage->Buffer(), ElementsAreArray(monoPixels));

    ImmutableImageRecord const rgb { 3, 1, 24, 0 };
    auto const rgbPixels = Numbered(12);
    auto const rgbImage = ImmutableImage(&rgb, rgbPixels.data()).MakeMutable();
    EXPECT_EQ(ImageFormat::Rgb24, rgbImage->Info().Format());
    EXPECT_EQ(12u, rgbImage->GetSize());

    ImmutableImageRecord const rgba { 2, 2, 32, 0 };
    auto const rgbaPixels = Numbered(16);
    EXPECT_EQ(ImageFormat::Rgba, ImmutableImage(&rgba, rgbaPixels.data()).MakeMutable()->Info().Format());
}

TEST(ImmutableImageTest, UnknownDepthCountsAs32BitsAndUsuallyFails)
{
    auto const pixels = Numbered(64);
    ImmutableImageRecord const twoBits { 16, 1, 2, 0 };
    EXPECT_THAT([&] { ImmutableImage(&twoBits, pixels.data()).MakeMutable(); },
        ThrowsMessage<PreCondition>(StrEq(kSizeCheck)));
    ImmutableImageRecord const sixteenBits { 2, 1, 16, 0 };
    EXPECT_THAT([&] { ImmutableImage(&sixteenBits, pixels.data()).MakeMutable(); },
        ThrowsMessage<PreCondition>(StrEq(kSizeCheck)));
}

TEST(ImmutableImageTest, UnknownDepthPassesWhenTheSizesHappenToAgree)
{
    // One 16-bit pixel: two bytes padded to four, and one 32-bit pixel is four bytes too.
    ImmutableImageRecord const record { 1, 2, 16, 0 };
    auto const pixels = Numbered(8);
    auto const image = ImmutableImage(&record, pixels.data()).MakeMutable();
    EXPECT_EQ(ImageFormat::Unknown, image->Info().Format());
    EXPECT_THAT(image->Buffer(), ElementsAreArray(pixels));
}

TEST(ImmutableImageTest, ZeroWidthOrHeightGivesAnImageWithoutPixels)
{
    ImmutableImageRecord const noColumns { 0, 5, 4, 0 };
    auto const flat = ImmutableImage(&noColumns, nullptr).MakeMutable();
    EXPECT_TRUE(flat->IsEmpty());
    EXPECT_EQ(5, flat->Info().Height());

    ImmutableImageRecord const noRows { 8, 0, 4, 0 };
    uint8_t const pixels[4] { 1, 2, 3, 4 };
    auto const thin = ImmutableImage(&noRows, pixels).MakeMutable();
    EXPECT_TRUE(thin->IsEmpty());
    EXPECT_EQ(8, thin->Info().Width());
}

TEST(ImmutableImageTest, SizeBeyond32BitsIsAMismatchNotAWrap)
{
    ImmutableImageRecord const record { 65535, 3000, 255, 0 };
    EXPECT_THAT([&] { ImmutableImage(&record, nullptr).MakeMutable(); },
        ThrowsMessage<PreCondition>(StrEq(kSizeCheck)));
}

TEST(ImmutableImageTest, MissingRecordOrPixelsThrow)
{
    EXPECT_THAT([] { ImmutableImage(nullptr, nullptr).MakeMutable(); },
        ThrowsMessage<PreCondition>(StrEq("PreCondition _record != nullptr")));
    ImmutableImageRecord const record { 8, 1, 4, 0 };
    EXPECT_THAT([&] { ImmutableImage(&record, nullptr).MakeMutable(); },
        ThrowsMessage<PreCondition>(StrEq("PreCondition source != nullptr")));
}

TEST(ImmutableImageTest, GetInfoMatchesWhatMakeMutableBuilds)
{
    ImmutableImageRecord const record { 9, 2, 4, 7 };
    ImageInfo const info = ImmutableImage(&record, nullptr).GetInfo();
    EXPECT_EQ(9, info.Width());
    EXPECT_EQ(2, info.Height());
    EXPECT_EQ(8u, info.Stride());
    EXPECT_EQ(ImageFormat::Gray4, info.Format());
    EXPECT_TRUE(info.IsBottomUp());
    EXPECT_EQ(7u, info._attribute);
}

} // namespace
} // namespace Zar::ResourcesLibrary::Image
