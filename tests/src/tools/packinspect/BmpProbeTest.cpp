#include "BmpProbe.h"

#include "FileContents.h"
#include "TestPacks.h"

#include "Zar/Lt/Core/ScratchFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace PackInspectTest;
using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::BmpWriter;
using TestSupport::WriteFile;
using Zar::Lt::Core::ScratchFolder;
using Zar::ResourcesLibrary::Tools::Inspect::BmpProbe;

namespace {

std::optional<BmpProbe> Probe(Bytes const& bytes)
{
    ScratchFolder folder;
    WriteFile(folder / "image.bmp", bytes);
    return BmpProbe::Read((folder / "image.bmp").string());
}

Bytes Bmp4With(std::array<uint8_t, 16> const& greys) { return Bmp4(4, 2, greys, Ramp(4, 2, 0)); }

} // namespace

TEST(BmpProbeTest, ReadsTheDepthCompressionAndPalette)
{
    auto const probe = Probe(Bmp4With(AscendingGreys()));
    ASSERT_TRUE(probe);
    EXPECT_EQ(4u, probe->Bits());
    EXPECT_EQ(0u, probe->Compression());
    ASSERT_EQ(16u, probe->Palette().size());
    EXPECT_EQ(0x22, probe->Palette()[2]._red);
    EXPECT_THAT(probe->MisreadIndices(), IsEmpty());
}

TEST(BmpProbeTest, BothGreyRampsAreReadAsDrawn)
{
    auto const descending = Probe(Bmp4With(DescendingGreys()));
    ASSERT_TRUE(descending);
    EXPECT_EQ(15, descending->LoadedLevel(0));
    EXPECT_EQ(0, descending->LoadedLevel(15));
    EXPECT_THAT(descending->MisreadIndices(), IsEmpty());
}

TEST(BmpProbeTest, AShortPaletteOfTheColoursUsedIsMisread)
{
    // What ImageMagick writes for a black and white picture: two entries, white second.
    BmpWriter bmp = BmpWriter::Gray4(4, { { 0x01, 0x10 } }, BmpWriter::BlackFirst);
    bmp.palette = { BmpWriter::kBlack, BmpWriter::kWhite };
    auto const probe = Probe(bmp.Bytes());
    ASSERT_TRUE(probe);
    EXPECT_EQ(2u, probe->Palette().size());
    EXPECT_THAT(probe->MisreadIndices(), ElementsAre(1u));
    EXPECT_EQ(1, probe->LoadedLevel(1));
    EXPECT_EQ(15, BmpProbe::DrawnLevel(probe->Palette()[1]));
}

TEST(BmpProbeTest, AOneBitPaletteIsReadByItsFirstEntry)
{
    auto const blackFirst = Probe(BmpWriter::Mono(8, { { 0x0F } }, BmpWriter::BlackFirst).Bytes());
    ASSERT_TRUE(blackFirst);
    EXPECT_EQ(1u, blackFirst->Bits());
    EXPECT_THAT(blackFirst->MisreadIndices(), IsEmpty());
    auto const whiteFirst = Probe(BmpWriter::Mono(8, { { 0x0F } }, BmpWriter::WhiteFirst).Bytes());
    ASSERT_TRUE(whiteFirst);
    EXPECT_EQ(15, whiteFirst->LoadedLevel(0));
    EXPECT_THAT(whiteFirst->MisreadIndices(), IsEmpty());

    BmpWriter grey = BmpWriter::Mono(8, { { 0x0F } }, BmpWriter::BlackFirst);
    grey.palette = { 0x808080, BmpWriter::kWhite };
    EXPECT_THAT(Probe(grey.Bytes())->MisreadIndices(), ElementsAre(0u));
}

TEST(BmpProbeTest, APaletteReachingPastTheHeaderBlockIsCutThere)
{
    BmpWriter bmp = BmpWriter::Gray4(4, { { 0x01, 0x10 } }, BmpWriter::BlackFirst);
    bmp.clrUsed = 1000;
    bmp.offBits = 14 + 40 + 4 * 3;
    auto const probe = Probe(bmp.Bytes());
    ASSERT_TRUE(probe);
    EXPECT_EQ(3u, probe->Palette().size());
}

TEST(BmpProbeTest, RunLengthCompressionIsNamed)
{
    BmpWriter bmp = BmpWriter::Gray4(4, { { 0x01, 0x10 } }, BmpWriter::BlackFirst);
    bmp.compression = 2;
    auto const probe = Probe(bmp.Bytes());
    ASSERT_TRUE(probe);
    EXPECT_EQ(2u, probe->Compression());
    EXPECT_EQ("RLE4", BmpProbe::CompressionName(2));
    EXPECT_EQ("RLE8", BmpProbe::CompressionName(1));
    EXPECT_EQ("bit fields", BmpProbe::CompressionName(3));
    EXPECT_EQ("unknown compression 9", BmpProbe::CompressionName(9));
}

TEST(BmpProbeTest, AnythingButABmpHasNoProbe)
{
    EXPECT_FALSE(Probe(Bytes { 'P', 'N', 'G' }));
    EXPECT_FALSE(Probe(Bytes(60, 'A')));
    ScratchFolder folder;
    EXPECT_FALSE(BmpProbe::Read(folder.PathOf("missing.bmp")));
}

TEST(BmpProbeTest, ATruncatedPaletteKeepsTheWholeEntriesRead)
{
    BmpWriter bmp = BmpWriter::Gray4(4, { { 0x01, 0x10 } }, BmpWriter::BlackFirst);
    bmp.truncateTo = 14 + 40 + 4 * 5 + 2;
    auto const probe = Probe(bmp.Bytes());
    ASSERT_TRUE(probe);
    EXPECT_EQ(5u, probe->Palette().size());
}
