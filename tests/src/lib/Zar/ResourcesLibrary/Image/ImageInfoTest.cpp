#include "Zar/ResourcesLibrary/Image/ImageInfo.h"

#include "ImageFixtures.h"

#include "Zar/Lt/Exceptions/PreCondition.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace Zar::ResourcesLibrary::Image {
namespace {

using testing::StrEq;
using testing::ThrowsMessage;
using TestSupport::MakeInfo;
using Zar::Lt::Exceptions::PreCondition;

constexpr int32_t kWidest = std::numeric_limits<int32_t>::max();

TEST(ImageInfoTest, ConstructorSetsOnlyTheFormat)
{
    ImageInfo const info(ImageFormat::Gray4);
    EXPECT_EQ(ImageFormat::Gray4, info.Format());
    EXPECT_EQ(0, info.Width());
    EXPECT_EQ(0, info.Height());
    EXPECT_EQ(0u, info.Stride());
    EXPECT_EQ(0u, info._reserved1);
    EXPECT_EQ(0u, info._reserved2);
    EXPECT_FALSE(info.IsBottomUp());
    EXPECT_EQ(0u, info._attribute);
}

TEST(ImageInfoTest, EmptyIsRgbxWithEverythingElseZero)
{
    EXPECT_EQ(ImageFormat::Rgbx, ImageInfo::Empty.Format());
    EXPECT_EQ(0, ImageInfo::Empty.Width());
    EXPECT_EQ(0, ImageInfo::Empty.Height());
    EXPECT_EQ(0u, ImageInfo::Empty.Stride());
    EXPECT_EQ(0u, ImageInfo::Empty._reserved1);
    EXPECT_EQ(0u, ImageInfo::Empty._reserved2);
    EXPECT_EQ(0u, ImageInfo::Empty._bottomUp);
    EXPECT_EQ(0u, ImageInfo::Empty._attribute);
    EXPECT_EQ(0u, ImageInfo::Empty.GetSize());
}

TEST(ImageInfoTest, GetBytesRoundsTheBitsUpToBytes)
{
    EXPECT_EQ(0u, ImageInfo(ImageFormat::Gray4).GetBytes(0));
    EXPECT_EQ(1u, ImageInfo(ImageFormat::Gray4).GetBytes(1));
    EXPECT_EQ(2u, ImageInfo(ImageFormat::Gray4).GetBytes(3));
    EXPECT_EQ(2u, ImageInfo(ImageFormat::Mono).GetBytes(9));
    EXPECT_EQ(9u, ImageInfo(ImageFormat::Rgb24).GetBytes(3));
    EXPECT_EQ(12u, ImageInfo(ImageFormat::Unknown).GetBytes(3));
    EXPECT_EQ(6u, ImageInfo(ImageFormat::YCrCb16).GetBytes(3));
}

TEST(ImageInfoTest, GetBytesOfNegativeWidthThrowsAtItsFixedPlace)
{
    ImageInfo const info(ImageFormat::Gray4);
    EXPECT_THAT([&] { info.GetBytes(-1); }, ThrowsMessage<PreCondition>(StrEq("PreCondition x >= 0")));
    try {
        info.GetBytes(std::numeric_limits<int>::min());
        FAIL() << "no exception";
    } catch (PreCondition const& e) {
        EXPECT_STREQ(
            "uint32_t Zar::ResourcesLibrary::Image::ImageInfo::GetBytes(int) const", e.Source()._function);
        EXPECT_STREQ("src/lib/Zar/ResourcesLibrary/Image/ImageInfo", e.Source()._file);
        EXPECT_EQ(97u, e.Source()._line);
    }
}

TEST(ImageInfoTest, GetBytesOfTheWidestRowCountsIn64Bits)
{
    EXPECT_EQ(1073741824u, ImageInfo(ImageFormat::Gray4).GetBytes(kWidest));
    EXPECT_EQ(268435456u, ImageInfo(ImageFormat::Mono).GetBytes(kWidest));
    EXPECT_EQ(4294967294u, ImageInfo(ImageFormat::YCrCb16).GetBytes(kWidest));
}

TEST(ImageInfoTest, GetBytesThatCannotBeCountedIn32BitsThrows)
{
    EXPECT_THAT([] { ImageInfo(ImageFormat::Rgba).GetBytes(kWidest); },
        ThrowsMessage<PreCondition>(
            StrEq("PreCondition bytes <= kMaxUint32 Row of 2147483647 pixels is too long")));
    EXPECT_THAT([] { ImageInfo(ImageFormat::Rgb24).GetBytes(1431655766); },
        ThrowsMessage<PreCondition>(
            StrEq("PreCondition bytes <= kMaxUint32 Row of 1431655766 pixels is too long")));
    EXPECT_EQ(4294967295u, ImageInfo(ImageFormat::Rgb24).GetBytes(1431655765));
}

TEST(ImageInfoTest, StridePadsTheRowBytesToFour)
{
    uint32_t const gray4Strides[] = { 0, 4, 4, 4, 4, 4, 4, 4, 4, 8 };
    for (int32_t width = 0; width < 10; ++width)
        EXPECT_EQ(gray4Strides[width], ImageInfo::StrideOf(width, ImageFormat::Gray4)) << width;
    EXPECT_EQ(4u, ImageInfo::StrideOf(32, ImageFormat::Mono));
    EXPECT_EQ(8u, ImageInfo::StrideOf(33, ImageFormat::Mono));
    EXPECT_EQ(12u, ImageInfo::StrideOf(3, ImageFormat::Rgb24));
    EXPECT_EQ(16u, ImageInfo::StrideOf(5, ImageFormat::Rgb24));
    EXPECT_EQ(20u, ImageInfo::StrideOf(5, ImageFormat::Rgba));
    EXPECT_EQ(12u, ImageInfo::StrideOf(3, ImageFormat::Unknown));
    EXPECT_EQ(20u, ImageInfo::StrideOf(5, ImageFormat::Unknown));
    EXPECT_EQ(4u, ImageInfo::StrideOf(5, ImageFormat::Mono));
    EXPECT_EQ(12u, ImageInfo::StrideOf(4, ImageFormat::Rgb24));
    EXPECT_EQ(0u, ImageInfo::StrideOf(0, ImageFormat::Rgbx));
}

TEST(ImageInfoTest, RoundedDownStrideDropsAPartlyFilledLastByte)
{
    // 4 bits: an odd width leaves half a byte, which is not counted.
    uint64_t const gray4Strides[] = { 0, 0, 4, 4, 4, 4, 4, 4, 4, 4, 8 };
    for (int32_t width = 0; width <= 10; ++width)
        EXPECT_EQ(gray4Strides[width], ImageInfo::RoundedDownStrideOf(width, 4)) << width;
    // 1 bit: up to seven pixels past the last whole byte are not counted.
    EXPECT_EQ(0u, ImageInfo::RoundedDownStrideOf(7, 1));
    EXPECT_EQ(4u, ImageInfo::RoundedDownStrideOf(8, 1));
    EXPECT_EQ(4u, ImageInfo::RoundedDownStrideOf(39, 1));
    EXPECT_EQ(8u, ImageInfo::RoundedDownStrideOf(40, 1));
    // Bit counts that no image format has, as a compact image record may hold.
    EXPECT_EQ(4u, ImageInfo::RoundedDownStrideOf(3, 7));
    EXPECT_EQ(0u, ImageInfo::RoundedDownStrideOf(100, 0));
}

TEST(ImageInfoTest, RoundedDownStrideAgreesWithStrideOnWholeBytes)
{
    for (int32_t width = 0; width <= 64; width += 2)
        EXPECT_EQ(ImageInfo::StrideOf(width, ImageFormat::Gray4), ImageInfo::RoundedDownStrideOf(width, 4))
            << width;
    for (int32_t width = 0; width <= 128; width += 8)
        EXPECT_EQ(ImageInfo::StrideOf(width, ImageFormat::Mono), ImageInfo::RoundedDownStrideOf(width, 1))
            << width;
    for (int32_t width = 0; width <= 16; ++width)
        EXPECT_EQ(ImageInfo::StrideOf(width, ImageFormat::Rgb24), ImageInfo::RoundedDownStrideOf(width, 24))
            << width;
    // Within the padding the dropped half byte changes nothing; past it the row is 4 bytes shorter.
    EXPECT_EQ(ImageInfo::StrideOf(3, ImageFormat::Gray4), ImageInfo::RoundedDownStrideOf(3, 4));
    EXPECT_EQ(ImageInfo::StrideOf(9, ImageFormat::Gray4) - 4, ImageInfo::RoundedDownStrideOf(9, 4));
}

TEST(ImageInfoTest, RoundedDownStrideOfTheWidestRowsIsCountedIn64Bits)
{
    EXPECT_EQ(1073741824u, ImageInfo::RoundedDownStrideOf(kWidest, 4));
    EXPECT_EQ(268435456u, ImageInfo::RoundedDownStrideOf(kWidest, 1));
    EXPECT_EQ(68719476704u, ImageInfo::RoundedDownStrideOf(kWidest, 256));
}

TEST(ImageInfoTest, RoundedDownStrideOfNegativeWidthThrows)
{
    EXPECT_THAT([] { ImageInfo::RoundedDownStrideOf(-1, 4); },
        ThrowsMessage<PreCondition>(StrEq("PreCondition width >= 0")));
}

TEST(ImageInfoTest, StrideOfTheWidestRowsThatFit)
{
    EXPECT_EQ(1073741824u, ImageInfo::StrideOf(kWidest, ImageFormat::Gray4));
    EXPECT_EQ(2147483648u, ImageInfo::StrideOf(kWidest, ImageFormat::Gray8));
    EXPECT_EQ(268435456u, ImageInfo::StrideOf(kWidest, ImageFormat::Mono));
}

TEST(ImageInfoTest, StrideThatCannotBeHeldIn32BitsThrows)
{
    // 16 bits per pixel: the row bytes still fit, but padding them to four does not.
    EXPECT_THAT([] { ImageInfo::StrideOf(kWidest, ImageFormat::YCrCb16); },
        ThrowsMessage<PreCondition>(
            StrEq("PreCondition stride <= kMaxUint32 Row of 2147483647 pixels is too long")));
    EXPECT_THAT([] { ImageInfo::StrideOf(kWidest, ImageFormat::Rgba); },
        ThrowsMessage<PreCondition>(
            StrEq("PreCondition bytes <= kMaxUint32 Row of 2147483647 pixels is too long")));
}

TEST(ImageInfoTest, StrideOfNegativeWidthIsTheGetBytesCheck)
{
    try {
        ImageInfo::StrideOf(-4, ImageFormat::Gray4);
        FAIL() << "no exception";
    } catch (PreCondition const& e) {
        EXPECT_STREQ("PreCondition x >= 0", e.what());
        EXPECT_STREQ("src/lib/Zar/ResourcesLibrary/Image/ImageInfo", e.Source()._file);
        EXPECT_EQ(97u, e.Source()._line);
    }
}

TEST(ImageInfoTest, GetSizeIsStrideTimesHeight)
{
    EXPECT_EQ(24u, MakeInfo(ImageFormat::Gray4, 9, 3).GetSize());
    EXPECT_EQ(0u, MakeInfo(ImageFormat::Gray4, 9, 0).GetSize());
    EXPECT_EQ(0u, MakeInfo(ImageFormat::Gray4, 0, 5).GetSize());
    EXPECT_EQ(8192u, MakeInfo(ImageFormat::Gray4, 256, 64).GetSize());
}

TEST(ImageInfoTest, GetSizeOfNegativeHeightThrows)
{
    EXPECT_THAT([] { MakeInfo(ImageFormat::Gray4, 8, -1).GetSize(); },
        ThrowsMessage<PreCondition>(StrEq("PreCondition _height >= 0")));
}

TEST(ImageInfoTest, GetSizeThatCannotBeHeldIn32BitsThrows)
{
    auto const info = MakeInfo(ImageFormat::Gray8, 65536, 65536);
    EXPECT_THAT(
        [&] { info.GetSize(); }, ThrowsMessage<PreCondition>(StrEq("PreCondition size <= kMaxUint32")));
    EXPECT_EQ(4294901760u, MakeInfo(ImageFormat::Gray8, 65536, 65535).GetSize());
}

TEST(ImageInfoTest, HeightAndAccessorsReadTheFields)
{
    ImageInfo info = MakeInfo(ImageFormat::Mono, 17, 5);
    info._bottomUp = 1;
    EXPECT_EQ(17, info.Width());
    EXPECT_EQ(5, info.Height());
    EXPECT_EQ(4u, info.Stride());
    EXPECT_EQ(ImageFormat::Mono, info.Format());
    EXPECT_TRUE(info.IsBottomUp());
}

} // namespace
} // namespace Zar::ResourcesLibrary::Image
