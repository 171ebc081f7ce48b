#include "Zar/ResourcesLibrary/Image/ImageFormatHelper.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace Zar::ResourcesLibrary::Image {
namespace {

ImageFormat FormatOf(unsigned value) { return static_cast<ImageFormat>(value); }

TEST(ImageFormatHelperTest, InfoNamesEveryFormatInValueOrder)
{
    char const* const names[] = { "Unknown", "Rgbx", "Rgba", "Bgrx", "Bgra", "Rgb24", "Bgr24", "Mono",
        "Gray4", "Gray8", "YCrCb16", "PlanarYCrCb16" };
    for (unsigned value = 0; value < 12; ++value)
        EXPECT_STREQ(names[value], ImageFormatHelper::GetInfo(FormatOf(value))._name) << value;
}

TEST(ImageFormatHelperTest, InfoCarriesTheColourMasks)
{
    auto const& rgba = ImageFormatHelper::GetInfo(ImageFormat::Rgba);
    EXPECT_EQ(0x00FF0000u, rgba._masks[0]);
    EXPECT_EQ(0x0000FF00u, rgba._masks[1]);
    EXPECT_EQ(0x000000FFu, rgba._masks[2]);
    EXPECT_EQ(0xFF000000u, rgba._masks[3]);

    auto const& bgr24 = ImageFormatHelper::GetInfo(ImageFormat::Bgr24);
    EXPECT_EQ(0x00FF0000u, bgr24._masks[0]);
    EXPECT_EQ(0u, bgr24._masks[3]);

    EXPECT_EQ(0x1u, ImageFormatHelper::GetInfo(ImageFormat::Mono)._masks[0]);
    EXPECT_EQ(0xFu, ImageFormatHelper::GetInfo(ImageFormat::Gray4)._masks[0]);
    EXPECT_EQ(0xFFu, ImageFormatHelper::GetInfo(ImageFormat::Gray8)._masks[0]);
    auto const& ycrcb = ImageFormatHelper::GetInfo(ImageFormat::YCrCb16);
    EXPECT_EQ(0xFFu, ycrcb._masks[0]);
    EXPECT_EQ(0x3Fu, ycrcb._masks[1]);
    EXPECT_EQ(0x3Fu, ycrcb._masks[2]);
    auto const& unknown = ImageFormatHelper::GetInfo(ImageFormat::Unknown);
    for (auto mask : unknown._masks)
        EXPECT_EQ(0u, mask);
}

TEST(ImageFormatHelperTest, InfoOutOfRangeFallsBackToUnknown)
{
    EXPECT_EQ(&ImageFormatHelper::GetInfo(ImageFormat::Unknown), &ImageFormatHelper::GetInfo(FormatOf(12)));
    EXPECT_EQ(&ImageFormatHelper::GetInfo(ImageFormat::Unknown), &ImageFormatHelper::GetInfo(FormatOf(255)));
}

TEST(ImageFormatHelperTest, GetStringTakesTheLowByte)
{
    EXPECT_STREQ("Gray4", ImageFormatHelper::GetString(8));
    EXPECT_STREQ("Unknown", ImageFormatHelper::GetString(12));
    EXPECT_STREQ("Unknown", ImageFormatHelper::GetString(256));
    EXPECT_STREQ("Rgbx", ImageFormatHelper::GetString(257));
    EXPECT_STREQ("PlanarYCrCb16", ImageFormatHelper::GetString(0x10B));
}

TEST(ImageFormatHelperTest, BitsPerPixelOfEveryFormat)
{
    uint32_t const expected[] = { 32, 32, 32, 32, 32, 24, 24, 1, 4, 8, 16, 16 };
    for (unsigned value = 0; value < 12; ++value)
        EXPECT_EQ(expected[value], ImageFormatHelper::BitsPerPixel(FormatOf(value))) << value;
}

TEST(ImageFormatHelperTest, BitsPerPixelOfUnknownIs32AndPastTheTableIs16)
{
    EXPECT_EQ(32u, ImageFormatHelper::BitsPerPixel(ImageFormat::Unknown));
    EXPECT_EQ(16u, ImageFormatHelper::BitsPerPixel(FormatOf(12)));
    EXPECT_EQ(16u, ImageFormatHelper::BitsPerPixel(FormatOf(200)));
    EXPECT_EQ(16u, ImageFormatHelper::BitsPerPixel(FormatOf(255)));
}

TEST(ImageFormatHelperTest, GetFormatChoosesTheFiveKnownDepths)
{
    EXPECT_EQ(ImageFormat::Mono, ImageFormatHelper::GetFormat(1));
    EXPECT_EQ(ImageFormat::Gray4, ImageFormatHelper::GetFormat(4));
    EXPECT_EQ(ImageFormat::Gray8, ImageFormatHelper::GetFormat(8));
    EXPECT_EQ(ImageFormat::Rgb24, ImageFormatHelper::GetFormat(24));
    EXPECT_EQ(ImageFormat::Rgba, ImageFormatHelper::GetFormat(32));
}

TEST(ImageFormatHelperTest, GetFormatOfAnyOtherDepthIsUnknown)
{
    for (unsigned bits : { 0u, 2u, 3u, 16u, 31u, 33u, 64u, 256u, 0xFFFFFFFFu })
        EXPECT_EQ(ImageFormat::Unknown, ImageFormatHelper::GetFormat(bits)) << bits;
}

} // namespace
} // namespace Zar::ResourcesLibrary::Image
