#include "Zar/ResourcesLibrary/Pack/PackFormat.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>

using Zar::ResourcesLibrary::Pack::PackFormat;

TEST(PackFormatTest, ReadsLittleEndianWords)
{
    std::array<uint8_t, 6> const bytes { 0x00, 0x01, 0x05, 0x00, 0xFF, 0x80 };
    EXPECT_EQ(PackFormat::ReadU32(bytes, 0), 0x00050100u);
    EXPECT_EQ(PackFormat::ReadU16(bytes, 4), 0x80FFu);
    EXPECT_EQ(PackFormat::ReadU32(bytes, 2), 0x80FF0005u);
}

TEST(PackFormatTest, WritesLittleEndianWordsAndNothingAroundThem)
{
    std::array<uint8_t, 8> bytes {};
    bytes.fill(0xAA);
    PackFormat::WriteU32(bytes, 1, 0x00050100);
    PackFormat::WriteU16(bytes, 5, 0x80FF);
    std::array<uint8_t, 8> const expected { 0xAA, 0x00, 0x01, 0x05, 0x00, 0xFF, 0x80, 0xAA };
    EXPECT_EQ(bytes, expected);
    EXPECT_EQ(PackFormat::ReadU32(bytes, 1), 0x00050100u);
    EXPECT_EQ(PackFormat::ReadU16(bytes, 5), 0x80FFu);
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

// The offsets are computed from the fields' sizes; these are the numbers the firmware reads at.
TEST(PackFormatTest, HeaderFieldsStandAtTheirFixedOffsets)
{
    EXPECT_EQ(PackFormat::kMagicOffset, 0u);
    EXPECT_EQ(PackFormat::kFormatOffset, 4u);
    EXPECT_EQ(PackFormat::kVersionOffset, 8u);
    EXPECT_EQ(PackFormat::kFirstSectorOffset, 12u);
    EXPECT_EQ(PackFormat::kIconCountOffset, 16u);
    EXPECT_EQ(PackFormat::kScreenCountOffset, 20u);
    EXPECT_EQ(PackFormat::kCrcTableOffset, 24u);
    EXPECT_EQ(PackFormat::kNamesUsedOffset, 536u);
    EXPECT_EQ(PackFormat::kNamesCountOffset, 540u);
    EXPECT_EQ(PackFormat::kNamesOffset, 544u);
}

TEST(PackFormatTest, TheNamesAreaFillsTheRestOfTheHeaderSector)
{
    EXPECT_EQ(PackFormat::kNamesCapacity, 3552u);
}

TEST(PackFormatTest, APackHoldsAtMostTheHeaderAndTheWholeStore)
{
    EXPECT_EQ(PackFormat::kMaxFileSize, 257u * 4096u);
    EXPECT_EQ(PackFormat::SectorsFor(PackFormat::kMaxFileSize), 1u + PackFormat::kStoreSectors);
}

TEST(PackFormatTest, ANameLengthIsOneByte)
{
    EXPECT_EQ(PackFormat::kMaxNameLength, std::size_t { std::numeric_limits<uint8_t>::max() });
}

TEST(PackFormatTest, TheLargestIconFitsOneSector)
{
    // Icons share sectors and are never split: the largest must leave a tail to pad when it is the
    // first of its sector, which the exporter's sector close requires.
    EXPECT_LT(PackFormat::kScreenThreshold - 1, PackFormat::kSectorSize);
}

TEST(PackFormatTest, IconSectorsMapFromTheFirstSectorOnAndWrapAt16Bits)
{
    EXPECT_EQ(PackFormat::IconSector(12, 0), 12u);
    EXPECT_EQ(PackFormat::IconSector(12, 1), 13u);
    EXPECT_EQ(PackFormat::IconSector(0xFFFF, 0), 0xFFFFu);
    EXPECT_EQ(PackFormat::IconSector(0xFFFF, 1), 0u);
    // Only the low 16 bits of the first sector count, whatever its width.
    EXPECT_EQ(PackFormat::IconSector(0x1000C, 0), 12u);
    EXPECT_EQ(PackFormat::IconSector(0xFFFFFFFF, 13), 12u);
}

TEST(PackFormatTest, ScreenSectorsMapFrom247ToTheEndOfTheStore)
{
    EXPECT_EQ(PackFormat::ScreenSector(0), 247u);
    EXPECT_EQ(PackFormat::ScreenSector(1), 248u);
    // The last screen sector with an entry is the table's last one, just in front of the names fields.
    uint64_t const lastScreenSector = PackFormat::kStoreSectors - PackFormat::kFirstScreenSector - 1;
    EXPECT_EQ(PackFormat::ScreenSector(lastScreenSector), PackFormat::kStoreSectors - 1);
    EXPECT_EQ(PackFormat::CrcEntryOffset(PackFormat::kStoreSectors - 1) + 2, PackFormat::kNamesUsedOffset);
}

TEST(PackFormatTest, CrcEntriesAreTwoBytesEachFromTheTableOn)
{
    EXPECT_EQ(PackFormat::CrcEntryOffset(0), PackFormat::kCrcTableOffset);
    EXPECT_EQ(PackFormat::CrcEntryOffset(12), PackFormat::kCrcTableOffset + 24);
    EXPECT_EQ(PackFormat::CrcEntryOffset(247), PackFormat::kCrcTableOffset + 494);
}

TEST(PackFormatTest, TheHeaderMapsTenIconsToASectorAndTwoSectorsToAScreen)
{
    EXPECT_EQ(PackFormat::MappedIconSectors(0), 0u);
    EXPECT_EQ(PackFormat::MappedIconSectors(1), 1u);
    EXPECT_EQ(PackFormat::MappedIconSectors(10), 1u);
    EXPECT_EQ(PackFormat::MappedIconSectors(11), 2u);
    EXPECT_EQ(PackFormat::MappedIconSectors(348), 35u);
    EXPECT_EQ(PackFormat::MappedScreenSectors(0), 0u);
    EXPECT_EQ(PackFormat::MappedScreenSectors(3), 6u);
}

TEST(PackFormatTest, TheMappingFitsTheUsualImages)
{
    // A 32 x 24 icon and a 256 x 64 screen at 4 bits per pixel.
    std::size_t const icon = 32 * 24 / 2;
    std::size_t const screen = 256 * 64 / 2;
    // Icons are added while one more of the same size would still fit the sector.
    std::size_t iconsInASector = 0;
    for (std::size_t used = 0; used + icon < PackFormat::kSectorSize; used += icon)
        ++iconsInASector;
    EXPECT_EQ(iconsInASector, PackFormat::kIconsPerMappedSector);
    EXPECT_EQ(PackFormat::SectorsFor(screen), PackFormat::kSectorsPerMappedScreen);
}
