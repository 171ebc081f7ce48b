#include "PackFormat.h"

#include <gtest/gtest.h>

#include <array>

using Zar::ResourcesLibrary::Tools::Inspect::PackFormat;

TEST(PackFormatTest, ReadsLittleEndianWords)
{
    std::array<uint8_t, 6> const bytes { 0x00, 0x01, 0x05, 0x00, 0xFF, 0x80 };
    EXPECT_EQ(PackFormat::ReadU32(bytes, 0), 0x00050100u);
    EXPECT_EQ(PackFormat::ReadU16(bytes, 4), 0x80FFu);
    EXPECT_EQ(PackFormat::ReadU32(bytes, 2), 0x80FF0005u);
}

TEST(PackFormatTest, FirstIconValueIsTenPerSectorFromSectorTwo)
{
    EXPECT_EQ(PackFormat::FirstIconValue(12), 100);
    EXPECT_EQ(PackFormat::FirstIconValue(2), 0);
    EXPECT_EQ(PackFormat::FirstIconValue(3), 10);
    EXPECT_EQ(PackFormat::FirstIconValue(1), -10);
    EXPECT_EQ(PackFormat::FirstIconValue(0), -20);
}

TEST(PackFormatTest, SectorsForCountsAPartialSectorAsOne)
{
    EXPECT_EQ(PackFormat::SectorsFor(0), 0u);
    EXPECT_EQ(PackFormat::SectorsFor(1), 1u);
    EXPECT_EQ(PackFormat::SectorsFor(4096), 1u);
    EXPECT_EQ(PackFormat::SectorsFor(4097), 2u);
    EXPECT_EQ(PackFormat::SectorsFor(8192), 2u);
}

TEST(PackFormatTest, HeaderFieldsFollowOneAnother)
{
    EXPECT_EQ(PackFormat::CrcTableOffset + 2 * PackFormat::StoreSectors, PackFormat::NamesUsedOffset);
    EXPECT_EQ(PackFormat::NamesOffset + PackFormat::NamesCapacity, PackFormat::SectorSize);
    EXPECT_EQ(PackFormat::MaxFileSize, 257u * 4096u);
}
