#include "PackVerifier.h"

#include "PackReader.h"
#include "TestPacks.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

using namespace PackInspectTest;
using testing::Contains;
using testing::ElementsAre;
using TestSupport::Le16;
using TestSupport::SectorCrc;
using Zar::ResourcesLibrary::Tools::Inspect::PackFile;
using Zar::ResourcesLibrary::Tools::Inspect::PackVerifier;

namespace {

PackVerifier::Report Verify(Bytes bytes, bool tooLarge = false)
{
    return PackVerifier::Check(PackFile(std::move(bytes), tooLarge));
}

std::string Printed(PackVerifier::Report const& report)
{
    std::ostringstream out;
    PackVerifier::Print(report, out);
    return out.str();
}

std::vector<uint64_t> BadTargets(PackVerifier::Report const& report)
{
    std::vector<uint64_t> targets;
    for (auto const& sector : report._sectors)
        if (!sector.IsGood())
            targets.push_back(sector._target);
    return targets;
}

} // namespace

TEST(PackVerifierTest, ASoundPackPassesWithOneLinePerSector)
{
    auto const bytes = BuildPack(WorkedExample());
    auto const report = Verify(bytes);
    EXPECT_EQ(report.ProblemCount(), 0u);
    ASSERT_EQ(report._sectors.size(), 4u);
    std::vector<uint64_t> targets;
    for (auto const& sector : report._sectors)
        targets.push_back(sector._target);
    EXPECT_THAT(targets, ElementsAre(12, 13, 247, 248));
    EXPECT_EQ(*report._sectors[2]._computed, SectorCrc(bytes, 3));
}

TEST(PackVerifierTest, PrintsSectorLinesAndTheVerdict)
{
    PackContents contents;
    contents._icons.push_back(Bytes(384, 0));
    auto const bytes = BuildPack(contents);
    uint16_t const crc = SectorCrc(bytes, 1);
    char expected[200];
    std::snprintf(expected, sizeof expected,
        "sector  file  stored  computed  result\n"
        "    12     1    %04X      %04X  OK\n"
        "verdict: OK, 1 sectors match their CRC\n",
        crc, crc);
    EXPECT_EQ(Printed(Verify(bytes)), expected);
}

TEST(PackVerifierTest, AnEmptyPackIsTheHeaderAlone)
{
    auto const report = Verify(BuildPack(PackContents {}));
    EXPECT_EQ(report.ProblemCount(), 0u);
    EXPECT_EQ(Printed(report), "verdict: OK, 0 sectors match their CRC\n");
}

TEST(PackVerifierTest, CatchesASingleFlippedBitAnywhereInEverySector)
{
    auto const good = BuildPack(WorkedExample());
    uint64_t const targets[] = { 12, 13, 247, 248 };
    for (std::size_t sector = 1; sector <= 4; ++sector) {
        for (std::size_t offset : { 0, 1, 383, 2048, 3839, 3840, 4095 }) {
            for (int bit : { 0, 7 }) {
                auto bytes = good;
                bytes[sector * 4096 + offset] ^= static_cast<uint8_t>(1 << bit);
                auto const report = Verify(bytes);
                EXPECT_THAT(BadTargets(report), ElementsAre(targets[sector - 1]))
                    << "sector " << sector << " offset " << offset << " bit " << bit;
                EXPECT_EQ(report.ProblemCount(), 1u);
            }
        }
    }
}

TEST(PackVerifierTest, CatchesAFlippedBitInAStoredCrc)
{
    auto bytes = BuildPack(WorkedExample());
    bytes[24 + 2 * 248 + 1] ^= 0x10;
    auto const report = Verify(bytes);
    EXPECT_THAT(BadTargets(report), ElementsAre(248));
    EXPECT_THAT(Printed(report), testing::HasSubstr("verdict: BAD, 1 problem\n"));
}

TEST(PackVerifierTest, CatchesACrcEntryThatNoSectorMapsTo)
{
    auto bytes = BuildPack(WorkedExample());
    bytes[24 + 2 * 5] ^= 0x01;
    auto const report = Verify(bytes);
    EXPECT_TRUE(BadTargets(report).empty());
    EXPECT_THAT(report._problems, ElementsAre("CRC entry 5 holds 0001 but no sector of the file maps to it"));
}

TEST(PackVerifierTest, CatchesAFlippedBitInTheNamesArea)
{
    auto lengthFlipped = BuildPack(WorkedExample());
    lengthFlipped[544] ^= 0x80;
    EXPECT_THAT(Verify(lengthFlipped)._problems, Contains("name 0 of 133 bytes runs past the 82 used bytes"));

    auto tailFlipped = BuildPack(WorkedExample());
    tailFlipped[4000] ^= 0x02;
    EXPECT_THAT(Verify(tailFlipped)._problems,
        ElementsAre("names area holds non-zero bytes after its 82 used bytes"));
}

TEST(PackVerifierTest, CatchesAFileCutInsideASector)
{
    auto bytes = BuildPack(WorkedExample());
    bytes.resize(bytes.size() - 1000);
    auto const report = Verify(bytes);
    EXPECT_THAT(BadTargets(report), ElementsAre(248));
    EXPECT_EQ(report._sectors.back()._note, "cut short: 3096 of 4096 bytes");
    EXPECT_THAT(
        report._problems, ElementsAre("the file size 19480 is not a whole number of 4096-byte sectors"));
    char line[100];
    std::snprintf(line, sizeof line, "   248     4    %04X      ----  BAD (cut short: 3096 of 4096 bytes)\n",
        Le16(bytes, 24 + 2 * 248));
    EXPECT_THAT(Printed(report), testing::HasSubstr(line));
}

TEST(PackVerifierTest, CatchesMissingSectors)
{
    auto bytes = BuildPack(WorkedExample());
    bytes.resize(3 * 4096);
    auto const report = Verify(bytes);
    EXPECT_THAT(BadTargets(report), ElementsAre(247, 248));
    EXPECT_EQ(report._sectors[2]._note, "missing from the file");
    EXPECT_EQ(report._sectors[2]._fileSector, 0u);
    EXPECT_THAT(
        report._problems, ElementsAre("the header maps 2 icon and 2 screen sectors, the file holds 2"));
    EXPECT_THAT(Printed(report), testing::HasSubstr("   247     -    "));
    EXPECT_THAT(Printed(report), testing::HasSubstr("      ----  BAD (missing from the file)\n"));
}

TEST(PackVerifierTest, CatchesAFileCutIntoItsIcons)
{
    auto bytes = BuildPack(WorkedExample());
    bytes.resize(2 * 4096);
    EXPECT_THAT(BadTargets(Verify(bytes)), ElementsAre(13, 247, 248));
}

TEST(PackVerifierTest, StopsAtAWrongMagic)
{
    auto bytes = BuildPack(WorkedExample());
    bytes[0] = 'z';
    auto const report = Verify(bytes);
    EXPECT_TRUE(report._sectors.empty());
    EXPECT_THAT(report._problems,
        ElementsAre(
            "wrong magic 0052417A: a pack starts with the bytes 5A 41 52 00 (\"ZAR\" and a zero byte)"));
    EXPECT_THAT(Printed(report), testing::EndsWith("verdict: BAD, 1 problem\n"));
}

TEST(PackVerifierTest, StopsAtAnUnknownFormatWord)
{
    auto bytes = BuildPack(WorkedExample());
    PutU32(bytes, 4, 0x00050101);
    EXPECT_THAT(Verify(bytes)._problems, ElementsAre("unknown format word 00050101, expected 00050100"));
}

TEST(PackVerifierTest, StopsAtAFileWithoutAHeader)
{
    EXPECT_THAT(Verify(Bytes(100, 0))._problems,
        ElementsAre("the file holds 100 bytes, less than the 4096-byte header sector"));
    EXPECT_THAT(Verify(Bytes())._problems,
        ElementsAre("the file holds 0 bytes, less than the 4096-byte header sector"));
}

TEST(PackVerifierTest, ReportsAFileLargerThanAPack)
{
    auto const report = Verify(BuildPack(WorkedExample()), true);
    EXPECT_THAT(report._problems,
        Contains("the file is larger than a pack can be (1052672 bytes: the header sector and the 256-sector "
                 "store)"));
}

TEST(PackVerifierTest, ReportsAFirstSectorBeyondSixteenBits)
{
    auto bytes = BuildPack(WorkedExample());
    PutU32(bytes, 12, 0x1000C);
    EXPECT_THAT(Verify(bytes)._problems, Contains("the first sector field 65548 does not fit in 16 bits"));
}

TEST(PackVerifierTest, ReportsCountsThatDisagreeWithTheNames)
{
    auto bytes = BuildPack(WorkedExample());
    PutU32(bytes, 16, 11);
    EXPECT_THAT(
        Verify(bytes)._problems, Contains("the names area holds 13 names for 11 icons and 1 screens"));
}

TEST(PackVerifierTest, ReportsIconSectorsThatReachTheScreens)
{
    auto contents = WorkedExample();
    contents._firstSector = 246;
    auto const report = Verify(BuildPack(contents));
    EXPECT_THAT(report._problems, Contains("two sectors map to the same CRC entry 247"));
    EXPECT_THAT(report._problems,
        Contains("the icon sectors 246 to 247 do not all stay below 247, where the screens begin"));
    // The screen's CRC overwrote the second icon sector's entry.
    EXPECT_THAT(BadTargets(report), ElementsAre(247));
}

TEST(PackVerifierTest, ReportsIconSectorsTheHeaderDoesNotMap)
{
    // Icons of 1000 bytes go four to a sector, fewer than the ten the header's formula assumes.
    PackContents contents;
    for (uint8_t k = 0; k < 20; ++k)
        contents._icons.push_back(Pattern(1000, k));
    contents._screens.push_back(Pattern(8192, 1));
    auto const report = Verify(BuildPack(contents));
    EXPECT_THAT(
        report._problems, Contains("the file holds 5 icon sectors, the header maps 2 ((icons + 9) / 10)"));
    EXPECT_FALSE(BadTargets(report).empty());
}

TEST(PackVerifierTest, ReportsScreensPastTheStore)
{
    PackContents contents;
    for (uint8_t k = 0; k < 5; ++k)
        contents._screens.push_back(Pattern(8192, k));
    auto const report = Verify(BuildPack(contents));
    EXPECT_THAT(BadTargets(report), ElementsAre(256));
    EXPECT_EQ(report._sectors.back()._note, "past the 256-sector store");
    EXPECT_FALSE(report._sectors.back()._stored);
}

TEST(PackVerifierTest, ALyingIconCountStaysBounded)
{
    auto bytes = BuildPack(WorkedExample());
    PutU32(bytes, 16, 0xFFFFFFFF);
    auto const report = Verify(bytes);
    EXPECT_LE(report._sectors.size(), 4u + 256u + 2u);
    EXPECT_THAT(
        report._problems, Contains("the header maps 429496730 icon and 2 screen sectors, the file holds 4"));
}

TEST(PackVerifierTest, HostileHeadersGiveProblemsNotCrashes)
{
    // Every header field set to values a damaged or forged file may hold, alone and in pairs.
    std::size_t const fields[] = { 12, 16, 20, 536, 540 };
    uint32_t const values[] = { 0, 1, 246, 247, 255, 256, 0xFFFF, 0x10000, 0x7FFFFFFF, 0xFFFFFFFF };
    auto const good = BuildPack(WorkedExample());
    for (std::size_t first : fields)
        for (std::size_t second : fields)
            for (uint32_t value : values) {
                auto bytes = good;
                PutU32(bytes, first, value);
                PutU32(bytes, second, value ^ 0x5A5A);
                auto const report = Verify(bytes);
                EXPECT_GT(report.ProblemCount(), 0u) << first << " " << second << " " << value;
                EXPECT_LE(report._sectors.size(), 4u + 2u * 256u);
            }
}
