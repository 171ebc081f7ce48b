#include "BmpPalette.h"

#include "FileContents.h"
#include "TestPacks.h"

#include "Zar/Lt/Core/ScratchFolder.h"

#include <gtest/gtest.h>

using namespace PackInspectTest;
using TestSupport::WriteFile;
using Zar::Lt::Core::ScratchFolder;
using Zar::ResourcesLibrary::Tools::Inspect::BmpPalette;

namespace {

BmpPalette::Kind ClassifyBytes(Bytes const& bytes)
{
    ScratchFolder folder;
    WriteFile(folder / "image.bmp", bytes);
    return BmpPalette::Classify((folder / "image.bmp").string());
}

Bytes Bmp4With(std::array<uint8_t, 16> const& greys) { return Bmp4(4, 2, greys, Ramp(4, 2, 0)); }

} // namespace

TEST(BmpPaletteTest, NearestLevelRoundsToTheClosestOfSixteen)
{
    EXPECT_EQ(BmpPalette::NearestLevel(0), 0);
    EXPECT_EQ(BmpPalette::NearestLevel(8), 0);
    EXPECT_EQ(BmpPalette::NearestLevel(9), 1);
    EXPECT_EQ(BmpPalette::NearestLevel(17), 1);
    EXPECT_EQ(BmpPalette::NearestLevel(240), 14);
    EXPECT_EQ(BmpPalette::NearestLevel(247), 15);
    EXPECT_EQ(BmpPalette::NearestLevel(255), 15);
}

TEST(BmpPaletteTest, TheAscendingRampKeepsItsGreys)
{
    EXPECT_EQ(ClassifyBytes(Bmp4With(AscendingGreys())), BmpPalette::Kind::Ascending);
}

TEST(BmpPaletteTest, TheDescendingRampFromWhiteKeepsItsGreys)
{
    EXPECT_EQ(ClassifyBytes(Bmp4With(DescendingGreys())), BmpPalette::Kind::Descending);
}

TEST(BmpPaletteTest, NearlyRampGreysStillCount)
{
    auto greys = AscendingGreys();
    greys[1] = 16;
    greys[14] = 0xF0;
    EXPECT_EQ(ClassifyBytes(Bmp4With(greys)), BmpPalette::Kind::Ascending);
}

TEST(BmpPaletteTest, OtherPalettesAreNeither)
{
    auto shuffled = AscendingGreys();
    std::swap(shuffled[3], shuffled[4]);
    EXPECT_EQ(ClassifyBytes(Bmp4With(shuffled)), BmpPalette::Kind::Other);

    // A descending ramp that does not start with pure white is not negated by the loader.
    auto offWhite = DescendingGreys();
    offWhite[0] = 0xFE;
    EXPECT_EQ(ClassifyBytes(Bmp4With(offWhite)), BmpPalette::Kind::Other);

    // Sixteen steps of 16 end at 240, which shows as level 14 rather than white.
    std::array<uint8_t, 16> steps {};
    for (int k = 0; k < 16; ++k)
        steps[static_cast<std::size_t>(k)] = static_cast<uint8_t>(16 * k);
    EXPECT_EQ(ClassifyBytes(Bmp4With(steps)), BmpPalette::Kind::Other);
}

TEST(BmpPaletteTest, AColouredEntryIsNotGrey)
{
    auto bytes = Bmp4With(AscendingGreys());
    bytes[54 + 4 * 5] = 0;
    EXPECT_EQ(ClassifyBytes(bytes), BmpPalette::Kind::Other);
}

TEST(BmpPaletteTest, APaletteCutByThePixelDataIsNeither)
{
    auto bytes = Bmp4With(AscendingGreys());
    // The pixel data is declared to start after only two palette entries.
    PutU32(bytes, 10, 14 + 40 + 8);
    EXPECT_EQ(ClassifyBytes(bytes), BmpPalette::Kind::Other);
}

TEST(BmpPaletteTest, OnlyFourBitBmpsAreJudged)
{
    auto oneBit = Bmp4With(AscendingGreys());
    PutU16(oneBit, 28, 1);
    EXPECT_EQ(ClassifyBytes(oneBit), BmpPalette::Kind::NotFourBit);

    auto notBmp = Bmp4With(AscendingGreys());
    notBmp[1] = 'A';
    EXPECT_EQ(ClassifyBytes(notBmp), BmpPalette::Kind::NotFourBit);

    EXPECT_EQ(ClassifyBytes(Bytes(20, 'B')), BmpPalette::Kind::NotFourBit);
    EXPECT_EQ(BmpPalette::Classify("/nonexistent/file.bmp"), BmpPalette::Kind::NotFourBit);
}

TEST(BmpPaletteTest, APaletteOffsetPastTheFileIsNeither)
{
    auto bytes = Bmp4With(AscendingGreys());
    PutU32(bytes, 14, 0xFFFFFFF0);
    PutU32(bytes, 10, 0xFFFFFFFF);
    EXPECT_EQ(ClassifyBytes(bytes), BmpPalette::Kind::Other);
}
