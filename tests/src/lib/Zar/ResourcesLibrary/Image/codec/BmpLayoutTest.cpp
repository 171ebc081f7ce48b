#include "Zar/ResourcesLibrary/Image/codec/BmpLayout.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

namespace Layout = Zar::ResourcesLibrary::Image::BmpLayout;

namespace {

TEST(BmpLayoutTest, TheHeadersTakeTheirSizesInTheFile)
{
    EXPECT_EQ(14u, Layout::kFileHeaderSize);
    EXPECT_EQ(40u, Layout::kInfoHeaderSize);
    EXPECT_EQ(4u, Layout::kPaletteEntrySize);
}

TEST(BmpLayoutTest, AFileHeaderIsWrittenPackedAndLittleEndian)
{
    std::vector<uint8_t> bytes;
    Layout::Append(
        bytes, Layout::BITMAPFILEHEADER { Layout::kMagic, 0x11223344, 0x5566, 0x7788, 0x99AABBCC });
    EXPECT_THAT(bytes,
        testing::ElementsAre(
            'B', 'M', 0x44, 0x33, 0x22, 0x11, 0x66, 0x55, 0x88, 0x77, 0xCC, 0xBB, 0xAA, 0x99));
}

TEST(BmpLayoutTest, AFileHeaderIsReadFieldByField)
{
    std::vector<uint8_t> const bytes { 'B', 'M', 0x44, 0x33, 0x22, 0x11, 0x66, 0x55, 0x88, 0x77, 0xCC, 0xBB,
        0xAA, 0x99 };
    Layout::BITMAPFILEHEADER const header = Layout::ReadFileHeader(bytes.data());
    EXPECT_EQ(Layout::kMagic, header.bfType);
    EXPECT_EQ(0x11223344u, header.bfSize);
    EXPECT_EQ(0x5566u, header.bfReserved1);
    EXPECT_EQ(0x7788u, header.bfReserved2);
    EXPECT_EQ(0x99AABBCCu, header.bfOffBits);
}

TEST(BmpLayoutTest, AnInfoHeaderPutsEachFieldAtItsOffset)
{
    Layout::BITMAPINFOHEADER const header { 40, -2, -3, 1, 4, 0, 0x0102, 2835, -1, 16, 7 };
    std::vector<uint8_t> bytes;
    Layout::Append(bytes, header);
    ASSERT_EQ(Layout::kInfoHeaderSize, bytes.size());
    EXPECT_THAT(std::vector<uint8_t>(bytes.begin(), bytes.begin() + 12),
        testing::ElementsAre(40, 0, 0, 0, 0xFE, 0xFF, 0xFF, 0xFF, 0xFD, 0xFF, 0xFF, 0xFF));
    EXPECT_EQ(1, bytes[12]);
    EXPECT_EQ(4, bytes[14]);
    EXPECT_EQ(0x02, bytes[20]);
    EXPECT_EQ(0x01, bytes[21]);
    EXPECT_EQ(0x13, bytes[24]); // 2835 = 0x0B13
    EXPECT_EQ(0x0B, bytes[25]);
    EXPECT_EQ(16, bytes[32]);
    EXPECT_EQ(7, bytes[36]);
}

TEST(BmpLayoutTest, AnInfoHeaderReadsBackAsWritten)
{
    Layout::BITMAPINFOHEADER const header { 40, -2, -3, 1, 4, 0, 0x0102, 2835, -1, 16, 7 };
    std::vector<uint8_t> bytes;
    Layout::Append(bytes, header);
    Layout::BITMAPINFOHEADER const read = Layout::ReadInfoHeader(bytes.data());
    EXPECT_EQ(40u, read.biSize);
    EXPECT_EQ(-2, read.biWidth);
    EXPECT_EQ(-3, read.biHeight);
    EXPECT_EQ(1u, read.biPlanes);
    EXPECT_EQ(4u, read.biBitCount);
    EXPECT_EQ(0u, read.biCompression);
    EXPECT_EQ(0x0102u, read.biSizeImage);
    EXPECT_EQ(2835, read.biXPelsPerMeter);
    EXPECT_EQ(-1, read.biYPelsPerMeter);
    EXPECT_EQ(16u, read.biClrUsed);
    EXPECT_EQ(7u, read.biClrImportant);
}

} // namespace
