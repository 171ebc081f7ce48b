#include "ImageGeometry.h"

#include <gtest/gtest.h>

#include <array>

using Zar::ResourcesLibrary::Tools::Inspect::ImageGeometry;

TEST(ImageGeometryTest, ParsesWidthTimesHeight)
{
    auto const geometry = ImageGeometry::Parse("32x24");
    ASSERT_TRUE(geometry);
    EXPECT_EQ(geometry->Width(), 32u);
    EXPECT_EQ(geometry->Height(), 24u);
    EXPECT_EQ(geometry->ToString(), "32x24");
    EXPECT_TRUE(ImageGeometry::Parse("65535x1"));
}

TEST(ImageGeometryTest, RefusesAnythingElse)
{
    for (char const* text : { "", "x", "32", "32x", "x24", "0x24", "32x0", "-1x24", "32x24x1", "32X24",
             "65536x1", " 32x24", "32x24 ", "3a2x24" })
        EXPECT_FALSE(ImageGeometry::Parse(text)) << text;
}

TEST(ImageGeometryTest, RowsAreTwoPixelsAByteRoundedUpToFourBytes)
{
    EXPECT_EQ(ImageGeometry(32, 24).Stride(), 16u);
    EXPECT_EQ(ImageGeometry(32, 24).Size(), 384u);
    EXPECT_EQ(ImageGeometry(256, 64).Size(), 8192u);
    EXPECT_EQ(ImageGeometry(1, 1).Stride(), 4u);
    EXPECT_EQ(ImageGeometry(9, 2).Stride(), 8u);
    EXPECT_EQ(ImageGeometry(10, 1).Stride(), 8u);
}

TEST(ImageGeometryTest, EvenPixelIsTheHighNibble)
{
    ImageGeometry const geometry(3, 2);
    // Row 0: 0x1A 0xB0 then padding; row 1: 0xC2 0x70.
    std::array<uint8_t, 8> const data { 0x1A, 0xB0, 0xEE, 0xEE, 0xC2, 0x70, 0xEE, 0xEE };
    EXPECT_EQ(geometry.Level(data.data(), 0, 0), 0x1);
    EXPECT_EQ(geometry.Level(data.data(), 1, 0), 0xA);
    EXPECT_EQ(geometry.Level(data.data(), 2, 0), 0xB);
    EXPECT_EQ(geometry.Level(data.data(), 0, 1), 0xC);
    EXPECT_EQ(geometry.Level(data.data(), 1, 1), 0x2);
    EXPECT_EQ(geometry.Level(data.data(), 2, 1), 0x7);
}
