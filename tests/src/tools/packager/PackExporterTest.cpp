#include "PackExporter.h"

#include "FileContents.h"
#include "PackReader.h"
#include "PackSummary.h"
#include "ScopedWorkingDirectory.h"
#include "TestImages.h"

#include "Zar/Lt/Core/ScratchFolder.h"
#include "Zar/Lt/Exceptions/PostCondition.h"
#include "Zar/Lt/Exceptions/PreCondition.h"
#include "Zar/ResourcesLibrary/Image/FileFormat.h"
#include "Zar/ResourcesLibrary/Image/InputSequence.h"
#include "Zar/ResourcesLibrary/ResourcesLibraryException.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <filesystem>
#include <functional>
#include <iomanip>
#include <iostream>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

namespace {

using namespace PackagerTests;
using namespace TestSupport;
using testing::HasSubstr;
using Zar::Lt::Core::ScratchFolder;
using Zar::Lt::Core::Version32;
using Zar::Lt::Exceptions::PostCondition;
using Zar::Lt::Exceptions::PreCondition;
using Zar::ResourcesLibrary::ResourcesLibraryException;
using Zar::ResourcesLibrary::Image::FileFormat;
using Zar::ResourcesLibrary::Image::InputSequence;
using Zar::ResourcesLibrary::Tools::EnumerationOption;
using Zar::ResourcesLibrary::Tools::PackExporter;

constexpr char kExporterFile[] = "src/tools/packager/PackExporter";
constexpr char kCloseFunction[] = "void Zar::ResourcesLibrary::Tools::PackExporter::Close()";
constexpr char kWriteHeaderFunction[] = "void Zar::ResourcesLibrary::Tools::PackExporter::WriteHeader()";
constexpr char kCloseSectorFunction[] = "void Zar::ResourcesLibrary::Tools::PackExporter::CloseSector()";
constexpr char kProcessIconFunction[]
    = "void Zar::ResourcesLibrary::Tools::PackExporter::ProcessIcon(int, const "
      "string_view&, Zar::ResourcesLibrary::Image::MutableImage&)";
constexpr char kNameMessage[] = "name cannot contain -\".,'";
constexpr char kIconsAfterScreens[] = "PostCondition !_screensCount Cannot add icons after screens";
constexpr char kNoRows[] = "PreCondition y < static_cast<uint32_t>(_info.Height())";

std::vector<uint8_t> Padding(std::size_t count) { return std::vector<uint8_t>(count, 0xFF); }

void Append(std::vector<uint8_t>& to, std::vector<uint8_t> const& bytes)
{
    to.insert(to.end(), bytes.begin(), bytes.end());
}

template <typename Exception> std::optional<Exception> Catch(std::function<void()> const& action)
{
    try {
        action();
    } catch (Exception const& e) {
        return e;
    }
    return std::nullopt;
}

std::string CaptureStdout(std::function<void()> const& action)
{
    testing::internal::CaptureStdout();
    try {
        action();
    } catch (...) {
        testing::internal::GetCapturedStdout();
        throw;
    }
    return testing::internal::GetCapturedStdout();
}

class PackExporterTest : public testing::Test {
protected:
    std::string PackPath() const { return _folder.Prefix() + "oled.pack"; }
    std::filesystem::path File(std::string const& name) const { return _folder / name; }
    std::vector<uint8_t> Pack() const { return ReadBytes(File("oled.pack")); }
    std::string Text(std::string const& name) const { return ReadText(File(name)); }
    bool Exists(std::string const& name) const { return std::filesystem::exists(File(name)); }

    // Closes the exporter and returns what it printed.
    static std::string CloseCapturing(PackExporter& exporter)
    {
        return CaptureStdout([&] { exporter.Close(); });
    }

    // Closes an exporter expected to throw; returns what it printed before the exception.
    template <typename Exception>
    static std::string CloseExpectingFailure(PackExporter& exporter, std::optional<Exception>& failure)
    {
        return CaptureStdout([&] { failure = Catch<Exception>([&] { exporter.Close(); }); });
    }

    ScratchFolder _folder;
};

// --- Construction and Open -------------------------------------------------------------------

TEST_F(PackExporterTest, StartsAtSectorOneWithNothingCounted)
{
    PackExporter exporter(Version32(0x01020304), 12);
    EXPECT_FALSE(exporter.IsOpen());
    EXPECT_EQ(1, exporter.SectorIndex());
    EXPECT_EQ(0, exporter.Offset());
    EXPECT_EQ(0, exporter.IconsCount());
    EXPECT_EQ(0, exporter.ScreensCount());
    EXPECT_TRUE(exporter.CrcTable().empty());
    EXPECT_EQ(0, exporter.ImageNames().Count());
    EXPECT_EQ("", exporter.Errors());
}

TEST_F(PackExporterTest, OpenTakesTheOutputFolderUpToTheLastSlash)
{
    std::filesystem::create_directories(File("a/b"));
    PackExporter exporter(Version32(), 12);
    exporter.Open(_folder.Prefix() + "a/b/oled.pack");
    EXPECT_TRUE(exporter.IsOpen());
    EXPECT_EQ(_folder.Prefix() + "a/b/", exporter.OutputFolder());
    CloseCapturing(exporter);
    EXPECT_TRUE(Exists("a/b/oled.pack"));
    EXPECT_TRUE(Exists("a/b/Screens.h"));
    EXPECT_TRUE(Exists("a/b/Screens.py"));
}

TEST_F(PackExporterTest, OpenWithoutSlashUsesTheCurrentFolder)
{
    ScopedWorkingDirectory here(_folder.Path());
    PackExporter exporter(Version32(), 12);
    exporter.Open("oled.pack");
    EXPECT_EQ("", exporter.OutputFolder());
    CloseCapturing(exporter);
    EXPECT_EQ(kSector, Pack().size());
    EXPECT_TRUE(Exists("Screens.h"));
}

TEST_F(PackExporterTest, OpenTruncatesAnExistingPack)
{
    WriteFile(File("oled.pack"), std::string(3 * kSector + 17, 'x'));
    PackExporter exporter(Version32(), 12);
    exporter.Open(PackPath());
    CloseCapturing(exporter);
    EXPECT_EQ(kSector, Pack().size());
}

TEST_F(PackExporterTest, APackThatCannotBeCreatedMakesCloseDoNothing)
{
    // A folder in place of the pack: the open fails quietly, and so does everything after it.
    std::filesystem::create_directories(File("oled.pack"));
    PackExporter exporter(Version32(), 12);
    exporter.Open(PackPath());
    EXPECT_FALSE(exporter.IsOpen());
    MutableImage icon = MakeGray4Image(32, 24, 1);
    exporter.ProcessImage(2, "Bad-Name", icon);
    EXPECT_NE("", exporter.Errors());

    std::string printed;
    EXPECT_NO_THROW(printed = CloseCapturing(exporter));
    EXPECT_EQ("", printed);
    EXPECT_FALSE(Exists("Screens.h"));
    EXPECT_FALSE(Exists("Screens.py"));
}

// --- Sectors ---------------------------------------------------------------------------------

TEST_F(PackExporterTest, CloseSectorWithAnEmptySectorDoesNothing)
{
    PackExporter exporter(Version32(), 12);
    exporter.Open(PackPath());
    exporter.CloseSector();
    EXPECT_EQ(1, exporter.SectorIndex());
    EXPECT_TRUE(exporter.CrcTable().empty());
    CloseCapturing(exporter);
    EXPECT_EQ(kSector, Pack().size());
}

TEST_F(PackExporterTest, IncrementOffsetClosesWhenOneMoreItemOfTheSameSizeWouldNotFit)
{
    PackExporter exporter(Version32(), 12);
    exporter.Open(PackPath());
    for (int i = 0; i < 3; ++i)
        exporter.IncrementOffset(1000);
    EXPECT_EQ(3000, exporter.Offset());
    EXPECT_EQ(1, exporter.SectorIndex());

    exporter.IncrementOffset(1000);
    EXPECT_EQ(0, exporter.Offset());
    EXPECT_EQ(2, exporter.SectorIndex());
    // Nothing was fed to the running CRC but the padding of the sector's last 96 bytes.
    ASSERT_EQ(1u, exporter.CrcTable().size());
    EXPECT_EQ(ReferenceCrc16(Padding(96)), exporter.CrcTable()[0]);
}

TEST_F(PackExporterTest, AHalfSectorItemClosesTheSectorAtOnce)
{
    PackExporter exporter(Version32(), 12);
    exporter.Open(PackPath());
    exporter.IncrementOffset(2048);
    EXPECT_EQ(0, exporter.Offset());
    EXPECT_EQ(2, exporter.SectorIndex());
    ASSERT_EQ(1u, exporter.CrcTable().size());
    EXPECT_EQ(ReferenceCrc16(Padding(2048)), exporter.CrcTable()[0]);
}

TEST_F(PackExporterTest, AnItemEndingExactlyAtTheSectorEndLeavesNoTailToPad)
{
    PackExporter exporter(Version32(), 12);
    exporter.Open(PackPath());
    exporter.IncrementOffset(1000);
    auto const failure = Catch<PreCondition>([&] { exporter.IncrementOffset(3096); });
    ASSERT_TRUE(failure);
    EXPECT_STREQ("PreCondition tail > 0", failure->what());
    EXPECT_STREQ(kCloseSectorFunction, failure->Source()._function);
    EXPECT_STREQ(kExporterFile, failure->Source()._file);
}

TEST_F(PackExporterTest, AnItemCrossingTheSectorEndFailsTheClose)
{
    PackExporter exporter(Version32(), 12);
    exporter.Open(PackPath());
    exporter.IncrementOffset(2000);
    EXPECT_EQ(2000, exporter.Offset());
    EXPECT_THAT([&] { exporter.IncrementOffset(3000); },
        testing::ThrowsMessage<PreCondition>(testing::StrEq("PreCondition tail > 0")));
}

TEST_F(PackExporterTest, TheDestructorDropsAFailureOfItsClose)
{
    auto exporter = std::make_unique<PackExporter>(Version32(), 12);
    exporter->Open(PackPath());
    exporter->IncrementOffset(1000);
    EXPECT_THROW(exporter->IncrementOffset(3096), PreCondition);
    // The offset is still past the sector, so the close that the destructor makes fails again.
    EXPECT_THROW(exporter->CloseSector(), PreCondition);
    EXPECT_NO_THROW(exporter.reset());
}

// --- The pack as a whole ---------------------------------------------------------------------

TEST_F(PackExporterTest, WorkedExampleOfTwelveIconsAndOneScreen)
{
    std::vector<std::string> iconNames;
    std::vector<MutableImage> icons;
    for (int i = 0; i < 12; ++i) {
        iconNames.push_back("Icon" + std::string(1, static_cast<char>('A' + i)));
        icons.push_back(MakeGray4Image(32, 24, static_cast<uint8_t>(i)));
    }
    MutableImage screen = MakeGray4Image(256, 64, 99);
    ASSERT_EQ(384u, icons[0].GetSize());
    ASSERT_EQ(8192u, screen.GetSize());

    PackExporter exporter(Version32(0x01020304), 12);
    exporter.Open(PackPath());
    for (int i = 0; i < 12; ++i)
        EXPECT_TRUE(exporter.ProcessImage(
            i + 2, iconNames[static_cast<std::size_t>(i)], icons[static_cast<std::size_t>(i)]));
    EXPECT_TRUE(exporter.ProcessImage(2, "Splash", screen));
    EXPECT_EQ("", exporter.Errors());
    EXPECT_EQ(5, exporter.SectorIndex());
    std::string const printed = CloseCapturing(exporter);

    std::vector<uint8_t> const pack = Pack();
    ASSERT_EQ(5 * kSector, pack.size());

    std::vector<uint8_t> firstIconSector;
    for (int i = 0; i < 10; ++i)
        Append(firstIconSector, Framed(MakeGray4Image(32, 24, static_cast<uint8_t>(i))));
    Append(firstIconSector, Padding(256));
    std::vector<uint8_t> secondIconSector;
    for (int i = 10; i < 12; ++i)
        Append(secondIconSector, Framed(MakeGray4Image(32, 24, static_cast<uint8_t>(i))));
    Append(secondIconSector, Padding(3328));
    std::vector<uint8_t> const screenBytes = MakeGray4Image(256, 64, 99).Buffer();
    EXPECT_EQ(firstIconSector, Sector(pack, 1));
    EXPECT_EQ(secondIconSector, Sector(pack, 2));
    EXPECT_EQ(std::vector<uint8_t>(screenBytes.begin(), screenBytes.begin() + kSector), Sector(pack, 3));
    EXPECT_EQ(std::vector<uint8_t>(screenBytes.begin() + kSector, screenBytes.end()), Sector(pack, 4));

    std::vector<uint8_t> const fixedFields = { 'Z', 'A', 'R', 0, 0x00, 0x01, 0x05, 0x00, 0x04, 0x03, 0x02,
        0x01, 0x0C, 0x00, 0x00, 0x00, 0x0C, 0x00, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00 };
    EXPECT_EQ(fixedFields, std::vector<uint8_t>(pack.begin(), pack.begin() + 24));

    std::vector<uint16_t> const crcs = { ReferenceCrc16(firstIconSector), ReferenceCrc16(secondIconSector),
        SectorCrc(pack, 3), SectorCrc(pack, 4) };
    EXPECT_EQ(crcs, exporter.CrcTable());
    PackHeader const header = ReadHeader(pack);
    for (std::size_t s = 0; s < 256; ++s) {
        uint16_t expected = 0;
        if (s == 12)
            expected = crcs[0];
        else if (s == 13)
            expected = crcs[1];
        else if (s == 247)
            expected = crcs[2];
        else if (s == 248)
            expected = crcs[3];
        EXPECT_EQ(expected, header.crc[s]) << "CRC table entry " << s;
    }

    std::vector<std::string> names = iconNames;
    names.push_back("Splash");
    EXPECT_EQ(names, header.names);
    EXPECT_EQ(13u, header.namesCount);
    EXPECT_EQ(12u * 6 + 7, header.namesUsed);
    for (std::size_t at = 544 + header.namesUsed; at < kSector; ++at)
        ASSERT_EQ(0, pack[at]) << "names area byte " << at;

    EXPECT_EQ("1.2.3.4, 12 icons at sector 12, 1 screens, 5 sectors, 20480 bytes\n" + CrcLine(crcs), printed);
}

TEST_F(PackExporterTest, NoIconsAndNoScreensGiveTheHeaderAlone)
{
    PackExporter exporter(Version32(0x00060000), 12);
    exporter.Open(PackPath());
    std::string const printed = CloseCapturing(exporter);

    std::vector<uint8_t> const pack = Pack();
    ASSERT_EQ(kSector, pack.size());
    std::vector<uint8_t> expected(kSector, 0);
    std::vector<uint8_t> const fields
        = { 'Z', 'A', 'R', 0, 0x00, 0x01, 0x05, 0x00, 0x00, 0x00, 0x06, 0x00, 0x0C };
    std::copy(fields.begin(), fields.end(), expected.begin());
    EXPECT_EQ(expected, pack);
    EXPECT_EQ("0.6.0.0, 0 icons at sector 12, 0 screens, 1 sectors, 4096 bytes\ncrc:\n", printed);
}

TEST_F(PackExporterTest, ElevenIconsTakeTwoSectors)
{
    PackExporter exporter(Version32(0x00060000), 12);
    exporter.Open(PackPath());
    for (int i = 0; i < 11; ++i) {
        MutableImage icon = MakeGray4Image(32, 24, static_cast<uint8_t>(i));
        exporter.ProcessImage(i + 2, "Icon" + std::to_string(i), icon);
    }
    std::string const printed = CloseCapturing(exporter);

    std::vector<uint8_t> const pack = Pack();
    ASSERT_EQ(3 * kSector, pack.size());
    std::vector<uint8_t> second = Framed(MakeGray4Image(32, 24, 10));
    Append(second, Padding(3712));
    EXPECT_EQ(second, Sector(pack, 2));
    PackHeader const header = ReadHeader(pack);
    EXPECT_EQ(11u, header.icons);
    EXPECT_EQ(SectorCrc(pack, 1), header.crc[12]);
    EXPECT_EQ(SectorCrc(pack, 2), header.crc[13]);
    EXPECT_EQ("0.6.0.0, 11 icons at sector 12, 0 screens, 3 sectors, 12288 bytes\n"
            + CrcLine({ SectorCrc(pack, 1), SectorCrc(pack, 2) }),
        printed);
}

TEST_F(PackExporterTest, SmallIconsMoreThanTenToASectorFailTheCrcTableCheck)
{
    {
        PackExporter exporter(Version32(0x00060000), 12);
        exporter.Open(PackPath());
        for (int i = 0; i < 11; ++i) {
            MutableImage icon = MakeGray4Image(16, 16, static_cast<uint8_t>(i));
            ASSERT_EQ(128u, icon.GetSize());
            exporter.ProcessImage(i + 2, "Small" + std::to_string(i), icon);
        }
        std::optional<PostCondition> failure;
        std::string const printed = CloseExpectingFailure(exporter, failure);
        ASSERT_TRUE(failure);
        EXPECT_STREQ("PostCondition static_cast<size_t>(sectorCount) <= _crcTable.size()", failure->what());
        EXPECT_STREQ(kWriteHeaderFunction, failure->Source()._function);
        EXPECT_STREQ(kExporterFile, failure->Source()._file);
        EXPECT_EQ(64u, failure->Source()._line);
        // The summary comes before the check; the CRC line after the header is never reached.
        EXPECT_EQ("0.6.0.0, 11 icons at sector 12, 0 screens, 3 sectors, 12288 bytes\n", printed);
        testing::internal::CaptureStdout();
    }
    testing::internal::GetCapturedStdout();
    // The header was never written: the sector reserved by Open is still all 0xFF.
    std::vector<uint8_t> const pack = Pack();
    ASSERT_EQ(2 * kSector, pack.size());
    EXPECT_EQ(Padding(kSector), Sector(pack, 0));
}

TEST_F(PackExporterTest, LargeIconsTakeMoreSectorsThanTheSummaryCountsAndPass)
{
    PackExporter exporter(Version32(0x00060000), 12);
    exporter.Open(PackPath());
    for (int i = 0; i < 3; ++i) {
        MutableImage icon = MakeGray4Image(64, 64, static_cast<uint8_t>(i));
        ASSERT_EQ(2048u, icon.GetSize());
        exporter.ProcessImage(i + 2, "Large" + std::to_string(i), icon);
    }
    std::string const printed = CloseCapturing(exporter);

    std::vector<uint8_t> const pack = Pack();
    ASSERT_EQ(4 * kSector, pack.size());
    PackHeader const header = ReadHeader(pack);
    // The table takes as many icon sectors as ten icons a sector need: one.
    EXPECT_EQ(SectorCrc(pack, 1), header.crc[12]);
    EXPECT_EQ(0, header.crc[13]);
    EXPECT_EQ(0, header.crc[14]);
    EXPECT_EQ("0.6.0.0, 3 icons at sector 12, 0 screens, 2 sectors, 8192 bytes\n"
            + CrcLine({ SectorCrc(pack, 1), SectorCrc(pack, 2), SectorCrc(pack, 3) }),
        printed);
}

TEST_F(PackExporterTest, CrcEntriesPastTheLastTargetSectorAreNotWritten)
{
    PackExporter exporter(Version32(0x00060000), 255);
    exporter.Open(PackPath());
    for (int i = 0; i < 11; ++i) {
        MutableImage icon = MakeGray4Image(32, 24, static_cast<uint8_t>(i));
        std::string const number = std::to_string(i);
        exporter.ProcessImage(i + 2, "I" + number, icon);
    }
    CloseCapturing(exporter);

    std::vector<uint8_t> const pack = Pack();
    PackHeader const header = ReadHeader(pack);
    EXPECT_EQ(255u, header.firstSector);
    EXPECT_EQ(SectorCrc(pack, 1), header.crc[255]);
    // Entry 256 would overwrite the names area's counters.
    EXPECT_EQ(11u, header.namesCount);
    EXPECT_EQ(10u * 3 + 4, header.namesUsed);
}

TEST_F(PackExporterTest, IconSectorNumbersWrapAt16Bits)
{
    PackExporter exporter(Version32(0x00060000), 0x1FFFF);
    exporter.Open(PackPath());
    for (int i = 0; i < 11; ++i) {
        MutableImage icon = MakeGray4Image(32, 24, static_cast<uint8_t>(i));
        std::string const number = std::to_string(i);
        exporter.ProcessImage(i + 2, "I" + number, icon);
    }
    std::string const printed = CloseCapturing(exporter);

    std::vector<uint8_t> const pack = Pack();
    PackHeader const header = ReadHeader(pack);
    EXPECT_EQ(0xFFFFu, header.firstSector);
    // Sector 0xFFFF has no entry; the next one wraps to entry 0.
    EXPECT_EQ(SectorCrc(pack, 2), header.crc[0]);
    EXPECT_THAT(printed, HasSubstr("11 icons at sector 65535, "));
}

TEST_F(PackExporterTest, ScreenSectorsPastTheLastTargetSectorAreNotWritten)
{
    PackExporter exporter(Version32(0x00060000), 12);
    exporter.Open(PackPath());
    for (int i = 0; i < 5; ++i) {
        MutableImage screen = MakeGray4Image(256, 64, static_cast<uint8_t>(i));
        exporter.ProcessImage(i + 2, "Screen" + std::to_string(i), screen);
    }
    std::string const printed = CloseCapturing(exporter);

    std::vector<uint8_t> const pack = Pack();
    ASSERT_EQ(11 * kSector, pack.size());
    PackHeader const header = ReadHeader(pack);
    EXPECT_EQ(5u, header.screens);
    for (std::size_t j = 0; j < 9; ++j)
        EXPECT_EQ(SectorCrc(pack, 1 + j), header.crc[247 + j]) << "screen sector " << j;
    EXPECT_EQ(5u, header.namesCount);
    EXPECT_EQ(5u * 8, header.namesUsed);
    EXPECT_THAT(printed, HasSubstr("0 icons at sector 12, 5 screens, 11 sectors, 45056 bytes\n"));
}

TEST_F(PackExporterTest, CloseRestoresTheFormattingOfStandardOutput)
{
    PackExporter exporter(Version32(0x00060000), 12);
    exporter.Open(PackPath());
    MutableImage icon = MakeGray4Image(32, 24, 1);
    exporter.ProcessImage(2, "Play", icon);
    std::ios_base::fmtflags const flags = std::cout.flags();
    char const fill = std::cout.fill('*');
    CloseCapturing(exporter);
    EXPECT_EQ(flags, std::cout.flags());
    EXPECT_EQ('*', std::cout.fill());
    std::cout.fill(fill);
}

TEST_F(PackExporterTest, CloseTwiceDoesNothingTheSecondTime)
{
    PackExporter exporter(Version32(0x00060000), 12);
    exporter.Open(PackPath());
    CloseCapturing(exporter);
    EXPECT_FALSE(exporter.IsOpen());
    EXPECT_EQ("", CloseCapturing(exporter));
}

// --- Where the summary goes ------------------------------------------------------------------

TEST_F(PackExporterTest, AGivenStreamGetsTheSummaryAndStandardOutputNothing)
{
    std::ostringstream out;
    PackExporter exporter(Version32(0x01020304), 12, out);
    exporter.Open(PackPath());
    MutableImage icon = MakeGray4Image(32, 24, 1);
    exporter.ProcessImage(2, "Play", icon);
    EXPECT_EQ("", CloseCapturing(exporter));
    ASSERT_EQ(1u, exporter.CrcTable().size());
    std::string const summary = "1.2.3.4, 1 icons at sector 12, 0 screens, 2 sectors, 8192 bytes\n";
    EXPECT_EQ(summary + CrcLine(exporter.CrcTable()), out.str());
}

TEST_F(PackExporterTest, TheCloseOfTheDestructorPrintsToTheGivenStream)
{
    std::ostringstream out;
    std::string const printed = CaptureStdout([&] {
        PackExporter exporter(Version32(0x00060000), 12, out);
        exporter.Open(PackPath());
    });
    EXPECT_EQ("", printed);
    EXPECT_EQ("0.6.0.0, 0 icons at sector 12, 0 screens, 1 sectors, 4096 bytes\ncrc:\n", out.str());
    EXPECT_EQ(kSector, Pack().size());
}

TEST_F(PackExporterTest, CloseRestoresTheFormattingOfTheGivenStream)
{
    std::ostringstream out;
    out << std::boolalpha << std::setfill('*');
    PackExporter exporter(Version32(0x00060000), 12, out);
    exporter.Open(PackPath());
    MutableImage icon = MakeGray4Image(32, 24, 1);
    exporter.ProcessImage(2, "Play", icon);
    std::ios_base::fmtflags const flags = out.flags();
    exporter.Close();
    EXPECT_EQ(flags, out.flags());
    EXPECT_EQ('*', out.fill());
    std::string const summary = "0.6.0.0, 1 icons at sector 12, 0 screens, 2 sectors, 8192 bytes\n";
    EXPECT_EQ(summary + CrcLine(exporter.CrcTable()), out.str());
}

// --- Names area ------------------------------------------------------------------------------

class NamesAreaTest : public PackExporterTest {
protected:
    // Fourteen icons (two sectors, as the table expects) named so that the area holds
    // 13 * (1 + 255) + 1 + lastLength bytes.
    std::vector<std::string> AddIcons(PackExporter& exporter, std::size_t lastLength)
    {
        std::vector<std::string> names;
        for (int i = 0; i < 14; ++i) {
            std::size_t const length = i < 13 ? 255 : lastLength;
            names.push_back(std::string(length, static_cast<char>('a' + i)));
            MutableImage icon = MakeGray4Image(32, 24, static_cast<uint8_t>(i));
            exporter.ProcessImage(i + 2, names.back(), icon);
        }
        EXPECT_EQ("", exporter.Errors());
        return names;
    }
};

TEST_F(NamesAreaTest, NamesMayFillTheAreaToTheLastByte)
{
    PackExporter exporter(Version32(0x00060000), 12);
    exporter.Open(PackPath());
    auto const names = AddIcons(exporter, 223);
    CloseCapturing(exporter);

    std::vector<uint8_t> const pack = Pack();
    PackHeader const header = ReadHeader(pack);
    EXPECT_EQ(3552u, header.namesUsed);
    EXPECT_EQ(14u, header.namesCount);
    EXPECT_EQ(names, header.names);
    EXPECT_EQ('n', pack[kSector - 1]);
    EXPECT_EQ(3 * kSector, pack.size());
}

TEST_F(NamesAreaTest, OneByteMoreThanTheAreaHoldsFailsAtClose)
{
    PackExporter exporter(Version32(0x00060000), 12);
    exporter.Open(PackPath());
    AddIcons(exporter, 224);
    std::optional<PreCondition> failure;
    CloseExpectingFailure(exporter, failure);
    ASSERT_TRUE(failure);
    EXPECT_STREQ("PreCondition next <= capacity", failure->what());
}

TEST_F(NamesAreaTest, ANameLongerThan255BytesFailsAtClose)
{
    PackExporter exporter(Version32(0x00060000), 12);
    exporter.Open(PackPath());
    MutableImage icon = MakeGray4Image(32, 24, 1);
    exporter.ProcessImage(2, std::string(256, 'x'), icon);
    std::optional<PreCondition> failure;
    CloseExpectingFailure(exporter, failure);
    ASSERT_TRUE(failure);
    EXPECT_STREQ("PreCondition length <= 255u", failure->what());
}

// --- Failed images ---------------------------------------------------------------------------

TEST_F(PackExporterTest, AFailedImageIsReportedAtCloseWhileThePackIsComplete)
{
    PackExporter exporter(Version32(0x00060000), 12);
    exporter.Open(PackPath());
    MutableImage play = MakeGray4Image(32, 24, 1);
    MutableImage playPause = MakeGray4Image(32, 24, 2);
    MutableImage stop = MakeGray4Image(32, 24, 3);
    EXPECT_TRUE(exporter.ProcessImage(2, "Play", play));
    EXPECT_TRUE(exporter.ProcessImage(3, "Play-Pause", playPause));
    EXPECT_TRUE(exporter.ProcessImage(4, "Stop", stop));
    EXPECT_EQ(std::string("3 Play-Pause ") + kNameMessage + "\n", exporter.Errors());

    std::optional<ResourcesLibraryException> failure;
    std::string const printed = CloseExpectingFailure(exporter, failure);
    ASSERT_TRUE(failure);
    EXPECT_EQ(std::string("3 Play-Pause ") + kNameMessage + "\n", failure->what());
    EXPECT_STREQ(kCloseFunction, failure->Source()._function);
    EXPECT_STREQ(kExporterFile, failure->Source()._file);
    EXPECT_EQ(193u, failure->Source()._line);

    std::vector<uint8_t> const pack = Pack();
    ASSERT_EQ(2 * kSector, pack.size());
    std::vector<uint8_t> sector = Framed(MakeGray4Image(32, 24, 1));
    Append(sector, Framed(MakeGray4Image(32, 24, 3)));
    Append(sector, Padding(kSector - 2 * 384));
    EXPECT_EQ(sector, Sector(pack, 1));
    PackHeader const header = ReadHeader(pack);
    EXPECT_EQ(2u, header.icons);
    EXPECT_EQ((std::vector<std::string> { "Play", "Stop" }), header.names);
    EXPECT_EQ(ReferenceCrc16(sector), header.crc[12]);
    EXPECT_EQ("0.6.0.0, 2 icons at sector 12, 0 screens, 2 sectors, 8192 bytes\n"
            + CrcLine({ ReferenceCrc16(sector) }),
        printed);
    EXPECT_TRUE(Exists("Screens.h"));
    EXPECT_FALSE(exporter.IsOpen());
}

TEST_F(PackExporterTest, EveryFailedImageGetsItsOwnLineInOrder)
{
    PackExporter exporter(Version32(0x00060000), 12);
    exporter.Open(PackPath());
    MutableImage icon = MakeGray4Image(32, 24, 1);
    exporter.ProcessImage(2, "a-b", icon);
    exporter.ProcessImage(3, "a\"b", icon);
    exporter.ProcessImage(4, "a.b", icon);
    exporter.ProcessImage(5, "a,b", icon);
    exporter.ProcessImage(6, "a'b", icon);
    exporter.ProcessImage(7, "a_b c", icon);
    std::string const message = kNameMessage;
    EXPECT_EQ("2 a-b " + message + "\n3 a\"b " + message + "\n4 a.b " + message + "\n5 a,b " + message
            + "\n6 a'b " + message + "\n",
        exporter.Errors());
    EXPECT_EQ(1, exporter.IconsCount());
    std::optional<ResourcesLibraryException> failure;
    CloseExpectingFailure(exporter, failure);
    ASSERT_TRUE(failure);
    EXPECT_EQ(exporter.Errors(), failure->what());
}

// --- Icons and screens -----------------------------------------------------------------------

TEST_F(PackExporterTest, IconsAreFramedWithoutChangingTheLoadedImage)
{
    PackExporter exporter(Version32(0x00060000), 12);
    exporter.Open(PackPath());
    MutableImage icon = MakeGray4Image(32, 24, 5);
    exporter.ProcessImage(2, "Play", icon);
    EXPECT_EQ(MakeGray4Image(32, 24, 5).Buffer(), icon.Buffer());
    EXPECT_EQ(384, exporter.Offset());
    EXPECT_EQ(1, exporter.IconsCount());
    CloseCapturing(exporter);
    std::vector<uint8_t> expected = Framed(MakeGray4Image(32, 24, 5));
    Append(expected, Padding(kSector - 384));
    EXPECT_EQ(expected, Sector(Pack(), 1));
}

TEST_F(PackExporterTest, OnlyNamesHoldingUnderscoreSelectedAreWrittenUnframed)
{
    struct Case {
        std::string name;
        bool framed;
    };
    std::vector<Case> const cases = { { "Stop_Selected", false }, { "Stop_selected", true },
        { "Selected", true }, { "_Selected", false }, { "x_Selected_y", false }, { "a__Selected", false },
        { "StopSelected", true }, { "_Selecte", true }, { "Stop_SELECTED", true } };

    PackExporter exporter(Version32(0x00060000), 12);
    exporter.Open(PackPath());
    std::vector<uint8_t> expected;
    for (std::size_t i = 0; i < cases.size(); ++i) {
        MutableImage icon = MakeGray4Image(32, 24, static_cast<uint8_t>(i));
        exporter.ProcessImage(static_cast<int>(i) + 2, cases[i].name, icon);
        Append(expected, cases[i].framed ? Framed(icon) : icon.Buffer());
    }
    EXPECT_EQ("", exporter.Errors());
    CloseCapturing(exporter);
    std::vector<uint8_t> const pack = Pack();
    for (std::size_t i = 0; i < cases.size(); ++i) {
        auto const at = pack.begin() + static_cast<std::ptrdiff_t>(kSector + i * 384);
        EXPECT_EQ(std::vector<uint8_t>(expected.begin() + static_cast<std::ptrdiff_t>(i * 384),
                      expected.begin() + static_cast<std::ptrdiff_t>((i + 1) * 384)),
            std::vector<uint8_t>(at, at + 384))
            << cases[i].name;
    }
}

TEST_F(PackExporterTest, AnIconWithoutPixelsGetsAZeroFilledBuffer)
{
    PackExporter exporter(Version32(0x00060000), 12);
    exporter.Open(PackPath());
    MutableImage icon(Gray4Info(32, 24));
    ASSERT_TRUE(icon.IsEmpty());
    exporter.ProcessImage(2, "Blank", icon);
    EXPECT_EQ("", exporter.Errors());
    CloseCapturing(exporter);
    MutableImage zero(Gray4Info(32, 24), std::vector<uint8_t>(384, 0));
    std::vector<uint8_t> expected = Framed(zero);
    Append(expected, Padding(kSector - 384));
    EXPECT_EQ(expected, Sector(Pack(), 1));
}

TEST_F(PackExporterTest, TinyIconsAreFramedWithinTheirOwnBytes)
{
    PackExporter exporter(Version32(0x00060000), 12);
    exporter.Open(PackPath());
    MutableImage twoByTwo = MakeGray4Image(2, 2, 1);
    MutableImage oneByOne = MakeGray4Image(1, 1, 2);
    MutableImage threeByOne = MakeGray4Image(3, 1, 3);
    MutableImage noColumns(Gray4Info(0, 3));
    exporter.ProcessImage(2, "TwoByTwo", twoByTwo);
    exporter.ProcessImage(3, "OneByOne", oneByOne);
    exporter.ProcessImage(4, "ThreeByOne", threeByOne);
    exporter.ProcessImage(5, "NoColumns", noColumns);
    EXPECT_EQ("", exporter.Errors());
    EXPECT_EQ(4, exporter.IconsCount());
    EXPECT_EQ(8 + 4 + 4, exporter.Offset());
    CloseCapturing(exporter);

    std::vector<uint8_t> const pack = Pack();
    ASSERT_EQ(2 * kSector, pack.size());
    std::vector<uint8_t> expected = Framed(MakeGray4Image(2, 2, 1));
    Append(expected, Framed(MakeGray4Image(1, 1, 2)));
    Append(expected, Framed(MakeGray4Image(3, 1, 3)));
    EXPECT_EQ(0x33, expected[0]);
    EXPECT_EQ(expected, std::vector<uint8_t>(pack.begin() + kSector, pack.begin() + kSector + 16));
}

TEST_F(PackExporterTest, AnImageWithoutRowsFailsAndLeavesNoTrace)
{
    PackExporter exporter(Version32(0x00060000), 12);
    exporter.Open(PackPath());
    MutableImage empty(Gray4Info(32, 0));
    exporter.ProcessImage(2, "Empty", empty);
    EXPECT_EQ(std::string("2 Empty ") + kNoRows + "\n", exporter.Errors());
    EXPECT_EQ(0, exporter.IconsCount());
    EXPECT_EQ(0, exporter.Offset());
    EXPECT_EQ(0, exporter.ImageNames().Count());
    EXPECT_THAT([&] { exporter.ProcessIcon(2, "Empty", empty); },
        testing::ThrowsMessage<PreCondition>(testing::StrEq(kNoRows)));
}

TEST_F(PackExporterTest, AnImageOfExactly4096BytesIsAScreen)
{
    MutableImage largestIcon = MakeGray4Image(8, 1023, 1);
    MutableImage smallestScreen = MakeGray4Image(64, 128, 2);
    ASSERT_EQ(4092u, largestIcon.GetSize());
    ASSERT_EQ(4096u, smallestScreen.GetSize());
    {
        PackExporter exporter(Version32(0x00060000), 12);
        exporter.Open(PackPath());
        exporter.ProcessImage(2, "Icon", largestIcon);
        EXPECT_EQ(1, exporter.IconsCount());
        exporter.ProcessImage(2, "Screen", smallestScreen);
        EXPECT_EQ(1, exporter.ScreensCount());
        EXPECT_EQ("", exporter.Errors());
        // A one-sector screen gives one CRC where the table counts two per screen.
        EXPECT_EQ(2u, exporter.CrcTable().size());
        std::optional<PostCondition> failure;
        CloseExpectingFailure(exporter, failure);
        EXPECT_TRUE(failure);
        testing::internal::CaptureStdout();
    }
    testing::internal::GetCapturedStdout();
    std::vector<uint8_t> const pack = Pack();
    ASSERT_EQ(3 * kSector, pack.size());
    EXPECT_EQ(MakeGray4Image(64, 128, 2).Buffer(), Sector(pack, 2));
}

TEST_F(PackExporterTest, AScreenStartsOnAFreshSectorAndTakesWholeSectors)
{
    PackExporter exporter(Version32(0x00060000), 12);
    exporter.Open(PackPath());
    MutableImage icon = MakeGray4Image(32, 24, 1);
    MutableImage screen = MakeGray4Image(256, 64, 2);
    exporter.ProcessImage(2, "Play", icon);
    exporter.ProcessImage(2, "Splash", screen);
    EXPECT_EQ(0, exporter.Offset());
    EXPECT_EQ(4, exporter.SectorIndex());
    ASSERT_EQ(3u, exporter.CrcTable().size());
    CloseCapturing(exporter);
    std::vector<uint8_t> const pack = Pack();
    ASSERT_EQ(4 * kSector, pack.size());
    EXPECT_EQ(std::vector<uint16_t>({ SectorCrc(pack, 1), SectorCrc(pack, 2), SectorCrc(pack, 3) }),
        exporter.CrcTable());
    EXPECT_EQ(Padding(kSector - 384),
        std::vector<uint8_t>(pack.begin() + kSector + 384, pack.begin() + 2 * kSector));
}

TEST_F(PackExporterTest, AScreenThatIsNotWholeSectorsGetsASecondCrcForItsLastSector)
{
    PackExporter exporter(Version32(0x00060000), 12);
    exporter.Open(PackPath());
    MutableImage screen = MakeGray4Image(8, 1252, 4);
    ASSERT_EQ(5008u, screen.GetSize());
    exporter.ProcessImage(2, "Odd", screen);
    EXPECT_EQ(912, exporter.Offset());
    EXPECT_EQ(2, exporter.SectorIndex());
    ASSERT_EQ(2u, exporter.CrcTable().size());
    std::string const printed = CloseCapturing(exporter);

    std::vector<uint8_t> const pack = Pack();
    ASSERT_EQ(3 * kSector, pack.size());
    std::vector<uint8_t> const& bytes = screen.Buffer();
    std::vector<uint8_t> last(bytes.begin() + kSector, bytes.end());
    Append(last, Padding(kSector - 912));
    EXPECT_EQ(last, Sector(pack, 2));
    // The running CRC was reset after the screen, so the close's CRC covers the padding alone.
    std::vector<uint16_t> const crcs
        = { SectorCrc(pack, 1), ReferenceCrc16(last), ReferenceCrc16(Padding(kSector - 912)) };
    EXPECT_EQ(crcs, exporter.CrcTable());
    PackHeader const header = ReadHeader(pack);
    EXPECT_EQ(crcs[0], header.crc[247]);
    EXPECT_EQ(crcs[1], header.crc[248]);
    EXPECT_EQ(0, header.crc[249]);
    EXPECT_EQ("0.6.0.0, 0 icons at sector 12, 1 screens, 3 sectors, 12288 bytes\n" + CrcLine(crcs), printed);
}

TEST_F(PackExporterTest, AnIconAfterTheFirstScreenIsRefused)
{
    PackExporter exporter(Version32(0x00060000), 12);
    exporter.Open(PackPath());
    MutableImage screen = MakeGray4Image(256, 64, 2);
    MutableImage icon = MakeGray4Image(32, 24, 1);
    exporter.ProcessImage(2, "Splash", screen);
    exporter.ProcessImage(3, "Late", icon);
    EXPECT_EQ(std::string("3 Late ") + kIconsAfterScreens + "\n", exporter.Errors());
    EXPECT_EQ(0, exporter.IconsCount());
    EXPECT_EQ(1, exporter.ImageNames().Count());

    auto const failure = Catch<PostCondition>([&] { exporter.ProcessIcon(3, "Late", icon); });
    ASSERT_TRUE(failure);
    EXPECT_STREQ(kIconsAfterScreens, failure->what());
    EXPECT_STREQ(kProcessIconFunction, failure->Source()._function);
    EXPECT_STREQ(kExporterFile, failure->Source()._file);

    std::optional<ResourcesLibraryException> closeFailure;
    CloseExpectingFailure(exporter, closeFailure);
    ASSERT_TRUE(closeFailure);
    EXPECT_EQ(3 * kSector, Pack().size());
}

TEST_F(PackExporterTest, AScreenWithoutPixelsIsWrittenAsZeros)
{
    PackExporter exporter(Version32(0x00060000), 12);
    exporter.Open(PackPath());
    MutableImage screen(Gray4Info(256, 64));
    exporter.ProcessScreen(2, "Blank", screen);
    CloseCapturing(exporter);
    std::vector<uint8_t> const pack = Pack();
    ASSERT_EQ(3 * kSector, pack.size());
    EXPECT_EQ(std::vector<uint8_t>(kSector, 0), Sector(pack, 1));
    EXPECT_EQ(std::vector<uint8_t>(kSector, 0), Sector(pack, 2));
}

TEST_F(PackExporterTest, ProcessNumbersTheSequenceFromTwoAndCarriesOnAfterABadName)
{
    std::filesystem::path const icons = File("bmp/icons");
    WriteGray4Bmp(icons / "Play.bmp", MakeGray4Image(32, 24, 1));
    WriteGray4Bmp(icons / "Play-Pause.bmp", MakeGray4Image(32, 24, 2));
    WriteGray4Bmp(icons / "Stop.bmp", MakeGray4Image(32, 24, 3));
    WriteFile(icons / "list.txt", std::string("Play\nPlay-Pause.bmp\n\nStop\n"));

    PackExporter exporter(Version32(0x00060000), 12);
    exporter.Open(PackPath());
    InputSequence sequence(FileFormat::None, icons.string() + "/", "%04", true);
    sequence.AddList((icons / "list.txt").string());
    exporter.Process(sequence);
    EXPECT_EQ(std::string("3 Play-Pause ") + kNameMessage + "\n", exporter.Errors());
    EXPECT_EQ(2, exporter.IconsCount());

    std::optional<ResourcesLibraryException> failure;
    CloseExpectingFailure(exporter, failure);
    ASSERT_TRUE(failure);
    std::vector<uint8_t> sector = Framed(MakeGray4Image(32, 24, 1));
    Append(sector, Framed(MakeGray4Image(32, 24, 3)));
    Append(sector, Padding(kSector - 768));
    EXPECT_EQ(sector, Sector(Pack(), 1));
    EXPECT_EQ((std::vector<std::string> { "Play", "Stop" }), ReadHeader(Pack()).names);
}

// --- Generated files -------------------------------------------------------------------------

TEST_F(PackExporterTest, IconsWithoutScreensWriteOnlyTheScreenFilesWithAnEmptyEnumeration)
{
    PackExporter exporter(Version32(0x00060000), 12);
    exporter.Open(PackPath());
    MutableImage icon = MakeGray4Image(32, 24, 1);
    exporter.ProcessImage(2, "Play", icon);
    CloseCapturing(exporter);

    for (char const* name : { "Icons.h", "Icons.py", "IconsHelper.cpp", "commands.py" })
        EXPECT_FALSE(Exists(name)) << name;
    std::string const screens = Text("Screens.h");
    EXPECT_THAT(screens, HasSubstr("enum class Screen : ScreenIndex\n{\n};\n"));
    EXPECT_THAT(screens, HasSubstr("    static constexpr ScreenIndex Count = 0;\n"));
    EXPECT_THAT(screens, testing::Not(HasSubstr("Last")));
    EXPECT_THAT(Text("Screens.py"), HasSubstr("\n#0 Screen(s)\n"));
}

TEST_F(PackExporterTest, ScreensWithoutIconsWriteEmptyIconFilesAtTheFirstScreen)
{
    PackExporter exporter(Version32(0x00060000), 12);
    exporter.Open(PackPath());
    MutableImage splash = MakeGray4Image(256, 64, 1);
    exporter.ProcessImage(2, "splash", splash);
    ASSERT_TRUE(Exists("Icons.h"));
    std::string const icons = Text("Icons.h");
    EXPECT_THAT(icons, HasSubstr("enum class Icon : IconIndex\n{\n};\n"));
    EXPECT_THAT(icons, HasSubstr("    static constexpr IconIndex First = static_cast<IconIndex>(100);\n"));
    EXPECT_THAT(icons, HasSubstr("    static constexpr IconIndex Count = 0;\n"));
    EXPECT_THAT(icons, testing::Not(HasSubstr("Last")));
    EXPECT_THAT(Text("Icons.py"), HasSubstr("\n#0 Icon(s)\n"));
    EXPECT_TRUE(Exists("IconsHelper.cpp"));
    EXPECT_TRUE(Exists("commands.py"));
    EXPECT_FALSE(Exists("Screens.h"));

    MutableImage menu = MakeGray4Image(256, 64, 2);
    exporter.ProcessImage(3, "Menu", menu);
    CloseCapturing(exporter);
    std::string const screens = Text("Screens.h");
    EXPECT_THAT(screens, HasSubstr("{\n    Splash,\n    Menu,\n};\n"));
    EXPECT_THAT(screens, HasSubstr("    static constexpr ScreenIndex Count = 2;\n"));
}

TEST_F(PackExporterTest, IconFilesHoldTheIconsAndScreenFilesTheScreens)
{
    PackExporter exporter(Version32(0x00060000), 12);
    exporter.Open(PackPath());
    MutableImage play = MakeGray4Image(32, 24, 1);
    MutableImage stopSelected = MakeGray4Image(32, 24, 2);
    MutableImage splash = MakeGray4Image(256, 64, 3);
    MutableImage menu = MakeGray4Image(256, 64, 4);
    exporter.ProcessImage(2, "Play", play);
    exporter.ProcessImage(3, "Stop_Selected", stopSelected);
    exporter.ProcessImage(2, "Splash", splash);
    // Written at the first screen, so the second screen changes nothing in them.
    std::string const iconsHeader = Text("Icons.h");
    exporter.ProcessImage(3, "Menu", menu);
    CloseCapturing(exporter);

    EXPECT_EQ(iconsHeader, Text("Icons.h"));
    EXPECT_THAT(iconsHeader, HasSubstr("{\n    Play = 100,\n    Stop_Selected,\n};\n"));
    EXPECT_THAT(Text("Icons.py"),
        HasSubstr("    Play = 100\n    Stop_Selected = auto()\n\n#2 Icon(s)\n"
                  "value_names = [(icon.value, icon.name) for icon in Icon]\nprint(value_names)\n"));
    EXPECT_THAT(
        Text("IconsHelper.cpp"), HasSubstr("        \"Play\",\n        \"Stop_Selected\",\n    };\n"));
    std::string const commands = Text("commands.py");
    EXPECT_THAT(commands, HasSubstr("    Play = 'Play'\n"));
    EXPECT_THAT(commands, testing::Not(HasSubstr("Splash")));
    EXPECT_THAT(commands, testing::Not(HasSubstr("Menu = ")));

    EXPECT_THAT(Text("Screens.h"), HasSubstr("{\n    Splash,\n    Menu,\n};\n"));
    EXPECT_THAT(Text("Screens.py"),
        HasSubstr("    Splash = auto()\n    Menu = auto()\n\n#2 Screen(s)\n"
                  "value_names = [(screen.value, screen.name) for screen in Screen]\nprint(value_names)\n"));
    EXPECT_FALSE(Exists("ScreensHelper.cpp"));
    std::size_t files = 0;
    for (auto const& entry : std::filesystem::directory_iterator(_folder.Path())) {
        (void)entry;
        ++files;
    }
    EXPECT_EQ(7u, files);
}

struct FirstValueCase {
    int32_t firstSector;
    std::string cppLine;
    std::string pythonLine;

    // Names the test case after its sector rather than its bytes.
    friend void PrintTo(FirstValueCase const& value, std::ostream* out)
    {
        *out << "sector " << value.firstSector;
    }
};

class IconValuesTest : public PackExporterTest, public testing::WithParamInterface<FirstValueCase> { };

TEST_P(IconValuesTest, IconValuesStartTenPerSectorAfterTheFirstTwoSectors)
{
    PackExporter exporter(Version32(0x00060000), GetParam().firstSector);
    exporter.Open(PackPath());
    MutableImage play = MakeGray4Image(32, 24, 1);
    MutableImage splash = MakeGray4Image(256, 64, 2);
    exporter.ProcessImage(2, "Play", play);
    exporter.ProcessImage(2, "Splash", splash);
    EXPECT_THAT(Text("Icons.h"), HasSubstr("{\n" + GetParam().cppLine + ",\n};\n"));
    EXPECT_THAT(Text("Icons.py"), HasSubstr("(IntEnum):\n" + GetParam().pythonLine + "\n"));
    testing::internal::CaptureStdout();
    EXPECT_NO_THROW(exporter.Close());
    testing::internal::GetCapturedStdout();
}

FirstValueCase ExplicitFirstValue(int32_t firstSector, int64_t first)
{
    std::string const line = "    Play = " + std::to_string(first);
    return { firstSector, line, line };
}

INSTANTIATE_TEST_SUITE_P(FirstSectors, IconValuesTest,
    testing::Values(ExplicitFirstValue(12, 100), FirstValueCase { 2, "    Play", "    Play = auto()" },
        ExplicitFirstValue(3, 10), ExplicitFirstValue(1, -10), ExplicitFirstValue(0, -20),
        // Far-off sectors wrap in 32 bits rather than overflow.
        ExplicitFirstValue(INT32_MAX, static_cast<int32_t>((0x7FFFFFFFu - 2u) * 10u)),
        ExplicitFirstValue(INT32_MIN, static_cast<int32_t>((0x80000000u - 2u) * 10u))));

struct WriterCase {
    std::string blockedFile;
    std::function<void(PackExporter&, EnumerationOption const&)> write;
    std::string function; // the writer's qualified name and its opening parenthesis
    uint32_t line;

    // Names the test case after the file it blocks rather than its bytes.
    friend void PrintTo(WriterCase const& value, std::ostream* out) { *out << value.blockedFile; }
};

class CannotSaveTest : public PackExporterTest, public testing::WithParamInterface<WriterCase> { };

TEST_P(CannotSaveTest, AFileThatCannotBeCreatedIsReportedWithItsPath)
{
    // A folder where the file should go makes it impossible to create.
    std::filesystem::create_directories(File(GetParam().blockedFile));
    PackExporter exporter(Version32(0x00060000), 12);
    exporter.Open(PackPath());
    auto const failure = Catch<ResourcesLibraryException>([&] {
        GetParam().write(exporter, { "Icon", 100, true });
    });
    ASSERT_TRUE(failure);
    EXPECT_EQ("Cannot save file '" + _folder.Prefix() + GetParam().blockedFile + "'", failure->what());
    // The writer's signature as the compiler spells it: its qualified name is what stays the same.
    EXPECT_THAT(failure->Source()._function, testing::HasSubstr(GetParam().function));
    EXPECT_STREQ(kExporterFile, failure->Source()._file);
    EXPECT_EQ(GetParam().line, failure->Source()._line);
    testing::internal::CaptureStdout();
    exporter.Close();
    testing::internal::GetCapturedStdout();
}

INSTANTIATE_TEST_SUITE_P(Writers, CannotSaveTest,
    testing::Values(WriterCase { "Icons.h",
                        [](PackExporter& exporter, EnumerationOption const& option) {
                            exporter.WriteCEnumerationFile(option, 0);
                        },
                        " Zar::ResourcesLibrary::Tools::PackExporter::WriteCEnumerationFile(", 111 },
        WriterCase { "Icons.py",
            [](PackExporter& exporter, EnumerationOption const& option) {
                exporter.WritePythonEnumerationFile(option, 0);
            },
            " Zar::ResourcesLibrary::Tools::PackExporter::WritePythonEnumerationFile(", 122 },
        WriterCase { "commands.py",
            [](PackExporter& exporter, EnumerationOption const& option) {
                exporter.WritePythonCommandFile(option, 0);
            },
            " Zar::ResourcesLibrary::Tools::PackExporter::WritePythonCommandFile(", 134 },
        WriterCase { "IconsHelper.cpp",
            [](PackExporter& exporter, EnumerationOption const& option) {
                exporter.WritHelperEnumerationFile(option, 0);
            },
            " Zar::ResourcesLibrary::Tools::PackExporter::WritHelperEnumerationFile(", 145 }));

TEST_F(PackExporterTest, TheCommandsFileNameDoesNotDependOnTheOption)
{
    PackExporter exporter(Version32(0x00060000), 12);
    exporter.Open(PackPath());
    exporter.WritePythonCommandFile({ "Widget", 0, true }, 0);
    exporter.WriteCEnumerationFile({ "Widget", 0, true }, 0);
    exporter.WritePythonEnumerationFile({ "Widget", 0, true }, 0);
    exporter.WritHelperEnumerationFile({ "Widget", 0, true }, 0);
    EXPECT_TRUE(Exists("commands.py"));
    EXPECT_TRUE(Exists("Widgets.h"));
    EXPECT_TRUE(Exists("Widgets.py"));
    EXPECT_TRUE(Exists("WidgetsHelper.cpp"));
    EXPECT_THAT(Text("Widgets.py"),
        HasSubstr("value_names = [(widget.value, widget.name) for widget in Widget]\nprint(value_names)\n"));
    testing::internal::CaptureStdout();
    exporter.Close();
    testing::internal::GetCapturedStdout();
}

TEST_F(PackExporterTest, TheIconFilesAreWrittenInOrderUpToTheOneThatFails)
{
    std::filesystem::create_directories(File("Icons.py"));
    PackExporter exporter(Version32(0x00060000), 12);
    exporter.Open(PackPath());
    MutableImage play = MakeGray4Image(32, 24, 1);
    MutableImage splash = MakeGray4Image(256, 64, 2);
    exporter.ProcessImage(2, "Play", play);
    exporter.ProcessImage(2, "Splash", splash);
    // The failure at the first screen is that screen's error; the screen is not packed.
    EXPECT_EQ("2 Splash Cannot save file '" + _folder.Prefix() + "Icons.py'\n", exporter.Errors());
    EXPECT_EQ(0, exporter.ScreensCount());
    EXPECT_TRUE(Exists("Icons.h"));
    EXPECT_FALSE(Exists("commands.py"));
    EXPECT_FALSE(Exists("IconsHelper.cpp"));

    std::optional<ResourcesLibraryException> failure;
    CloseExpectingFailure(exporter, failure);
    ASSERT_TRUE(failure);
    EXPECT_EQ(2 * kSector, Pack().size());
}

TEST_F(PackExporterTest, AScreenFileThatCannotBeSavedFailsCloseAfterThePackIsWritten)
{
    std::filesystem::create_directories(File("Screens.h"));
    PackExporter exporter(Version32(0x00060000), 12);
    exporter.Open(PackPath());
    MutableImage play = MakeGray4Image(32, 24, 1);
    exporter.ProcessImage(2, "Play", play);
    std::optional<ResourcesLibraryException> failure;
    std::string const printed = CloseExpectingFailure(exporter, failure);
    ASSERT_TRUE(failure);
    EXPECT_EQ("Cannot save file '" + _folder.Prefix() + "Screens.h'", failure->what());
    EXPECT_EQ(111u, failure->Source()._line);
    // The summary was printed with the header; the CRC line comes after the screen files.
    EXPECT_EQ("0.6.0.0, 1 icons at sector 12, 0 screens, 2 sectors, 8192 bytes\n", printed);
    EXPECT_FALSE(exporter.IsOpen());
    EXPECT_EQ((std::vector<std::string> { "Play" }), ReadHeader(Pack()).names);
}

TEST_F(PackExporterTest, InvalidUtf8InANameStopsTheFileAtThatName)
{
    PackExporter exporter(Version32(0x00060000), 12);
    exporter.Open(PackPath());
    MutableImage play = MakeGray4Image(32, 24, 1);
    MutableImage bad = MakeGray4Image(32, 24, 2);
    exporter.ProcessImage(2, "Play", play);
    exporter.ProcessImage(3, "\xFF", bad);
    EXPECT_EQ("", exporter.Errors());
    auto const failure = Catch<std::exception>([&] {
        exporter.WriteCEnumerationFile({ "Icon", 100, true }, 0);
    });
    ASSERT_TRUE(failure);
    std::string const text = Text("Icons.h");
    EXPECT_TRUE(text.ends_with("{\n    Play = 100,\n    ")) << text;
    testing::internal::CaptureStdout();
    EXPECT_NO_THROW(exporter.Close());
    testing::internal::GetCapturedStdout();
}

} // namespace
