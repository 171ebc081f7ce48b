// The command line and the build driver, called in-process: packager.cpp is compiled into this test
// program with main renamed to PackagerMain.

#include "BmpTree.h"
#include "FileContents.h"
#include "PackReader.h"
#include "PackSummary.h"
#include "RecordingLogger.h"
#include "ScopedWorkingDirectory.h"
#include "TestImages.h"

#include "LoggingManager.h"
#include "Zar/Lt/Core/ScratchFolder.h"
#include "Zar/Lt/Core/Version32.h"
#include "Zar/ResourcesLibrary/Image/FileFormat.h"
#include "Zar/ResourcesLibrary/Image/codec/QtModule.h"
#include "Zar/ResourcesLibrary/ResourcesLibraryException.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

int PackagerMain(int argc, char** argv);
int ShowHelp();
int ShowSyntax();
void Build(Zar::Lt::Core::Version32 const& version, std::string const& root, std::string const& outputFolder,
    int sector, Zar::ResourcesLibrary::Image::FileFormat format);

namespace {

using namespace PackagerTests;
using namespace TestSupport;
using testing::HasSubstr;
using testing::StartsWith;
using Zar::Lt::Core::ScratchFolder;
using Zar::Lt::Core::Version32;
using Zar::ResourcesLibrary::ResourcesLibraryException;
using Zar::ResourcesLibrary::Image::FileFormat;

constexpr char kHelp[] = "packager version 0.5.0.5\n"
                         "    to include all bmp specified in list.txt in icons & screens folders\n"
                         "    version format is Major.minor.patch.build on byte (less than 256)\n"
                         "sector <integer>  to specify the first icon sector\n";

struct MainResult {
    int status;
    std::string output;
};

std::string CaptureStdout(std::function<void()> const& action)
{
    testing::internal::CaptureStdout();
    action();
    return testing::internal::GetCapturedStdout();
}

// Installs, once for the whole test program, a logger factory that records what is logged; the
// registry keeps the first factory that was used, so it cannot be swapped per test.
std::shared_ptr<zar::logging::test::RecordingLogger> InstalledLogger()
{
    static auto const logger = [] {
        auto recording = std::make_shared<zar::logging::test::RecordingLogger>();
        bool const installed = zar::logging::LoggingManager::SetFactory(
            std::make_unique<zar::logging::test::RecordingLoggerFactory>(recording));
        EXPECT_TRUE(installed);
        return recording;
    }();
    return logger;
}

// Writes a bmp/ tree with two icons (one framed, one selected) and one screen.
void WriteResources(std::filesystem::path const& folder)
{
    BmpTree const tree = BmpTree::In(folder);
    tree.Raw("icons/Play.bmp", Gray4Bmp(MakeGray4Image(32, 24, 1)));
    tree.Raw("icons/Stop_Selected.bmp", Gray4Bmp(MakeGray4Image(32, 24, 2)));
    tree.IconList("Play\nStop_Selected.bmp\n");
    tree.Raw("screens/Splash.bmp", Gray4Bmp(MakeGray4Image(256, 64, 3)));
    tree.ScreenList("Splash\n");
}

class PackagerTest : public testing::Test {
protected:
    PackagerTest()
        : _here(_folder.Path())
    {
    }

    MainResult Main(std::vector<std::string> arguments)
    {
        arguments.insert(arguments.begin(), "packager");
        std::vector<char*> argv;
        for (auto& argument : arguments)
            argv.push_back(argument.data());
        argv.push_back(nullptr);
        MainResult run {};
        run.output = CaptureStdout(
            [&] { run.status = PackagerMain(static_cast<int>(arguments.size()), argv.data()); });
        return run;
    }

    bool Exists(std::string const& name) const { return std::filesystem::exists(_folder / name); }
    PackHeader Header() const { return ReadHeader(ReadBytes(_folder / "oled.pack")); }

    ScratchFolder _folder;
    ScopedWorkingDirectory _here;
};

class PackagerWithResourcesTest : public PackagerTest {
protected:
    PackagerWithResourcesTest() { WriteResources(_folder.Path()); }

    // Runs the tool and checks it built, returning the summary line.
    std::string Summary(std::vector<std::string> const& arguments)
    {
        MainResult const run = Main(arguments);
        EXPECT_EQ(0, run.status);
        return run.output.substr(0, run.output.find('\n') + 1);
    }
};

TEST_F(PackagerTest, ShowHelpPrintsTheHelpAndReturnsZero)
{
    int status = -1;
    EXPECT_EQ(kHelp, CaptureStdout([&] { status = ShowHelp(); }));
    EXPECT_EQ(0, status);
}

TEST_F(PackagerTest, ShowSyntaxPrintsTheHelpAndReturnsOne)
{
    int status = -1;
    EXPECT_EQ(kHelp, CaptureStdout([&] { status = ShowSyntax(); }));
    EXPECT_EQ(1, status);
}

TEST_F(PackagerWithResourcesTest, WithoutArgumentsBuildsVersion060WithIconsAtSector12)
{
    MainResult const run = Main({});
    EXPECT_EQ(0, run.status);
    EXPECT_THAT(
        run.output, StartsWith("0.6.0.0, 2 icons at sector 12, 1 screens, 4 sectors, 16384 bytes\ncrc:"));
    PackHeader const header = Header();
    EXPECT_EQ(0x00060000u, header.version);
    EXPECT_EQ(12u, header.firstSector);
    EXPECT_EQ(2u, header.icons);
    EXPECT_EQ(1u, header.screens);
    EXPECT_EQ((std::vector<std::string> { "Play", "Stop_Selected", "Splash" }), header.names);
    for (char const* name :
        { "Icons.h", "Icons.py", "IconsHelper.cpp", "commands.py", "Screens.h", "Screens.py" })
        EXPECT_TRUE(Exists(name)) << name;
}

TEST_F(PackagerWithResourcesTest, VersionWithTwoFieldsLeavesPatchAndBuildZero)
{
    EXPECT_EQ(
        "1.2.0.0, 2 icons at sector 12, 1 screens, 4 sectors, 16384 bytes\n", Summary({ "version", "1.2" }));
    EXPECT_EQ(0x01020000u, Header().version);
}

TEST_F(PackagerWithResourcesTest, VersionWithFourFields)
{
    EXPECT_THAT(Summary({ "version", "1.2.3.4" }), StartsWith("1.2.3.4, "));
    EXPECT_EQ(0x01020304u, Header().version);
}

TEST_F(PackagerWithResourcesTest, ABuildFieldOf255IsAccepted)
{
    EXPECT_THAT(Summary({ "version", "1.2.3.255" }), StartsWith("1.2.3.255, "));
}

TEST_F(PackagerWithResourcesTest, MajorMinorAndPatchAreCutToEightBits)
{
    EXPECT_THAT(Summary({ "version", "256.2.3.4" }), StartsWith("0.2.3.4, "));
    EXPECT_EQ(0x00020304u, Header().version);
    EXPECT_THAT(Summary({ "version", "300.1" }), StartsWith("44.1.0.0, "));
    EXPECT_THAT(Summary({ "version", "1.258.300.7" }), StartsWith("1.2.44.7, "));
}

TEST_F(PackagerWithResourcesTest, ASecondVersionResetsPatchAndBuild)
{
    EXPECT_THAT(Summary({ "version", "1.2.3.4", "version", "5.6" }), StartsWith("5.6.0.0, "));
}

TEST_F(PackagerWithResourcesTest, OptionsIgnoreCaseAndOneLeadingDash)
{
    EXPECT_THAT(Summary({ "-Sector", "20" }), HasSubstr(" icons at sector 20, "));
    EXPECT_EQ(20u, Header().firstSector);
    EXPECT_THAT(Summary({ "SECTOR", "21" }), HasSubstr(" icons at sector 21, "));
    EXPECT_THAT(Summary({ "-VERSION", "3.4" }), StartsWith("3.4.0.0, "));
    EXPECT_THAT(Summary({ "vErSiOn", "5.6" }), StartsWith("5.6.0.0, "));
}

TEST_F(PackagerWithResourcesTest, TwoDashesMakeAnUnknownWord)
{
    EXPECT_EQ("0.6.0.0, 2 icons at sector 12, 1 screens, 4 sectors, 16384 bytes\n",
        Summary({ "--version", "1.2", "--sector", "20" }));
}

TEST_F(PackagerWithResourcesTest, ANonNumericSectorIsZero)
{
    EXPECT_THAT(Summary({ "sector", "abc" }), HasSubstr(" icons at sector 0, "));
    EXPECT_EQ(0u, Header().firstSector);
}

TEST_F(PackagerWithResourcesTest, ANegativeSectorIsStoredInSixteenBits)
{
    EXPECT_THAT(Summary({ "sector", "-5" }), HasSubstr(" icons at sector 65531, "));
    EXPECT_EQ(0xFFFBu, Header().firstSector);
}

// The number is read as 64 bits on every machine, as long is on x86-64, whose released packs hold:
// where long has 32 bits, 4294967308 would otherwise saturate and give another pack.
TEST_F(PackagerWithResourcesTest, ASectorBeyondIntKeepsItsLow32Bits)
{
    EXPECT_THAT(Summary({ "sector", "4294967308" }), HasSubstr(" icons at sector 12, "));
    EXPECT_THAT(Summary({ "sector", "99999999999999999999999" }), HasSubstr(" icons at sector 65535, "));
}

TEST_F(PackagerWithResourcesTest, TheLastOfRepeatedOptionsWins)
{
    EXPECT_THAT(Summary({ "sector", "20", "sector", "30" }), HasSubstr(" icons at sector 30, "));
}

TEST_F(PackagerWithResourcesTest, UnknownWordsAreIgnored)
{
    EXPECT_THAT(Summary({ "foo", "version", "1.0.0.1" }), StartsWith("1.0.0.1, "));
    EXPECT_THAT(Summary({ "", "-", "bar", "sector", "13", "baz" }), HasSubstr(" icons at sector 13, "));
}

class SyntaxErrorTest : public PackagerWithResourcesTest,
                        public testing::WithParamInterface<std::vector<std::string>> { };

TEST_P(SyntaxErrorTest, PrintsTheHelpExitsOneAndBuildsNothing)
{
    MainResult const run = Main(GetParam());
    EXPECT_EQ(1, run.status);
    EXPECT_EQ(kHelp, run.output);
    EXPECT_FALSE(Exists("oled.pack"));
    EXPECT_FALSE(Exists("Screens.h"));
}

INSTANTIATE_TEST_SUITE_P(Arguments, SyntaxErrorTest,
    testing::Values(std::vector<std::string> { "version", "1" },
        std::vector<std::string> { "version", "1.2.3.256" }, std::vector<std::string> { "version" },
        std::vector<std::string> { "sector", "20", "version" }, std::vector<std::string> { "sector" },
        std::vector<std::string> { "-version" }, std::vector<std::string> { "version", "" },
        std::vector<std::string> { "version", "x.1" }, std::vector<std::string> { "version", "1.x" },
        std::vector<std::string> { "version", "1.2", "version", "3" }));

TEST_F(PackagerTest, AFailedBuildExitsZeroAndIsLoggedOnTheMainLogger)
{
    auto const logger = InstalledLogger();
    logger->Clear();
    // No bmp/ folder: the icons' list cannot be opened.
    MainResult const run = Main({});
    EXPECT_EQ(0, run.status);
    // The exporter was opened before the failure and closes its pack on the way out.
    EXPECT_EQ("0.6.0.0, 0 icons at sector 12, 0 screens, 1 sectors, 4096 bytes\ncrc:\n", run.output);

    auto const records = logger->Records();
    ASSERT_GE(records.size(), 2u);
    EXPECT_EQ(20, records[0].level);
    EXPECT_THAT(records[0].message,
        StartsWith("'Cannot open bmp/icons/list.txt' in void "
                   "Zar::ResourcesLibrary::Image::InputSequence::AddList("));
    EXPECT_EQ(
        std::optional<std::string>("src/lib/Zar/ResourcesLibrary/Image/InputSequence"), records[0].file);
    EXPECT_EQ(55u, records[0].line);
    EXPECT_EQ(50, records[1].level);
    EXPECT_EQ("Stack trace:", records[1].message);
    EXPECT_EQ(std::optional<std::string>("src/tools/packager/packager"), records[1].file);
    EXPECT_EQ(121u, records[1].line);
}

TEST_F(PackagerTest, ASyntaxErrorLogsNothing)
{
    auto const logger = InstalledLogger();
    logger->Clear();
    EXPECT_EQ(1, Main({ "version" }).status);
    EXPECT_TRUE(logger->Records().empty());
}

// --- Build -----------------------------------------------------------------------------------

class BuildTest : public testing::Test {
protected:
    BuildTest() { std::filesystem::create_directories(_folder / "out"); }

    std::string Root() const { return _folder.Prefix() + "bmp/"; }
    std::string Out() const { return _folder.Prefix() + "out/"; }

    ScratchFolder _folder;
};

TEST_F(BuildTest, WritesThePackAndTheSourcesIntoTheOutputFolder)
{
    WriteResources(_folder.Path());
    std::string const printed
        = CaptureStdout([&] { Build(Version32(1, 2, 3, 4), Root(), Out(), 12, FileFormat::None); });

    std::vector<uint8_t> const pack = ReadBytes(_folder / "out/oled.pack");
    ASSERT_EQ(4 * kSector, pack.size());
    std::vector<uint8_t> icons = Framed(MakeGray4Image(32, 24, 1));
    auto const selected = MakeGray4Image(32, 24, 2).Buffer();
    icons.insert(icons.end(), selected.begin(), selected.end());
    icons.resize(kSector, 0xFF);
    EXPECT_EQ(icons, Sector(pack, 1));
    PackHeader const header = ReadHeader(pack);
    EXPECT_EQ(0x01020304u, header.version);
    EXPECT_EQ(SectorCrc(pack, 1), header.crc[12]);
    EXPECT_EQ(SectorCrc(pack, 2), header.crc[247]);
    EXPECT_EQ(SectorCrc(pack, 3), header.crc[248]);
    EXPECT_EQ("1.2.3.4, 2 icons at sector 12, 1 screens, 4 sectors, 16384 bytes\n"
            + CrcLine({ SectorCrc(pack, 1), SectorCrc(pack, 2), SectorCrc(pack, 3) }),
        printed);
    for (char const* name :
        { "Icons.h", "Icons.py", "IconsHelper.cpp", "commands.py", "Screens.h", "Screens.py" })
        EXPECT_TRUE(std::filesystem::exists(_folder / "out" / name)) << name;
}

TEST_F(BuildTest, AMissingIconListFailsAfterThePackWasStarted)
{
    testing::internal::CaptureStdout();
    EXPECT_THAT([&] { Build(Version32(1, 2, 3, 4), Root(), Out(), 12, FileFormat::None); },
        testing::ThrowsMessage<ResourcesLibraryException>(
            testing::StrEq("Cannot open " + Root() + "icons/list.txt")));
    testing::internal::GetCapturedStdout();
    EXPECT_EQ(kSector, ReadBytes(_folder / "out/oled.pack").size());
}

TEST_F(BuildTest, AQtImageFailsAloneWhenTheQtModuleCannotBeLoaded)
{
    std::filesystem::copy(
        std::filesystem::path(PACKAGER_SOURCE_DIR) / "tests/data/released-outputs/qt-tree/bmp",
        _folder / "bmp", std::filesystem::copy_options::recursive);
    std::string const missing = _folder.PathOf("no-module/zar_qt_input.so");
    Zar::ResourcesLibrary::Image::QtModule::SetSearchPaths({ missing });
    std::string message;
    testing::internal::CaptureStdout();
    try {
        Build(Version32(), Root(), Out(), 12, FileFormat::None);
    } catch (ResourcesLibraryException const& failure) {
        message = failure.what();
    }
    std::string const printed = testing::internal::GetCapturedStdout();
    Zar::ResourcesLibrary::Image::QtModule::SetSearchPaths({ PACKAGER_QT_MODULE });
    // The path tried, then the dynamic loader's reason, worded by the C library.
    std::string const tried = " Photo.png cannot load the Qt image module zar_qt_input.so: tried " + missing
        + " (" + missing + ": ";
    size_t const start = message.find(tried);
    EXPECT_NE(std::string::npos, start) << message;
    if (start != std::string::npos) {
        size_t const end = message.find(")\n", start + tried.size());
        EXPECT_NE(std::string::npos, end) << message;
        EXPECT_LT(start + tried.size(), end) << message;
    }
    // The other icon is built, and the build stops after the icons, as for any failed icon.
    EXPECT_THAT(printed, StartsWith("0.0.0.0, 1 icons at sector 12, 0 screens, 2 sectors, 8192 bytes\n"));
    EXPECT_EQ(std::vector<std::string>({ "Play" }), ReadHeader(ReadBytes(_folder / "out/oled.pack")).names);
}

TEST_F(BuildTest, TheScreensAreOptional)
{
    WriteGray4Bmp(_folder / "bmp/icons/Play.bmp", MakeGray4Image(32, 24, 1));
    WriteFile(_folder / "bmp/icons/list.txt", std::string("Play\n"));
    std::string const printed
        = CaptureStdout([&] { Build(Version32(), Root(), Out(), 12, FileFormat::None); });
    EXPECT_THAT(printed, StartsWith("0.0.0.0, 1 icons at sector 12, 0 screens, 2 sectors, 8192 bytes\n"));
}

TEST_F(BuildTest, AMissingScreenFileIsSkippedSilently)
{
    WriteResources(_folder.Path());
    WriteFile(_folder / "bmp/screens/list.txt", std::string("Missing\nSplash\n"));
    std::string const printed
        = CaptureStdout([&] { Build(Version32(), Root(), Out(), 12, FileFormat::None); });
    EXPECT_THAT(printed, StartsWith("0.0.0.0, 2 icons at sector 12, 1 screens, 4 sectors, 16384 bytes\n"));
}

TEST_F(BuildTest, AMissingIconFileStopsTheBuildBeforeTheScreens)
{
    WriteResources(_folder.Path());
    WriteFile(_folder / "bmp/icons/list.txt", std::string("Play\nMissing\n"));
    testing::internal::CaptureStdout();
    EXPECT_THAT([&] { Build(Version32(), Root(), Out(), 12, FileFormat::None); },
        testing::ThrowsMessage<ResourcesLibraryException>(
            testing::AllOf(StartsWith("3 Missing"), HasSubstr(Root() + "icons/Missing.bmp"))));
    std::string const printed = testing::internal::GetCapturedStdout();
    EXPECT_THAT(printed, StartsWith("0.0.0.0, 1 icons at sector 12, 0 screens, 2 sectors, 8192 bytes\n"));
    EXPECT_EQ(1u, ReadHeader(ReadBytes(_folder / "out/oled.pack")).icons);
}

TEST_F(BuildTest, AFailedImageFailsTheBuildOnceThePackIsComplete)
{
    WriteResources(_folder.Path());
    WriteGray4Bmp(_folder / "bmp/icons/Play-Pause.bmp", MakeGray4Image(32, 24, 4));
    WriteFile(_folder / "bmp/icons/list.txt", std::string("Play\nPlay-Pause\nStop_Selected\n"));
    testing::internal::CaptureStdout();
    EXPECT_THAT([&] { Build(Version32(), Root(), Out(), 12, FileFormat::None); },
        testing::ThrowsMessage<ResourcesLibraryException>(
            testing::StrEq("3 Play-Pause name cannot contain -\".,'\n")));
    testing::internal::GetCapturedStdout();
    PackHeader const header = ReadHeader(ReadBytes(_folder / "out/oled.pack"));
    EXPECT_EQ((std::vector<std::string> { "Play", "Stop_Selected", "Splash" }), header.names);
}

TEST_F(BuildTest, AFormatWithoutLoaderHasNoInputForTheIcons)
{
    WriteResources(_folder.Path());
    testing::internal::CaptureStdout();
    EXPECT_THAT([&] { Build(Version32(), Root(), Out(), 12, FileFormat::Pbm); },
        testing::ThrowsMessage<ResourcesLibraryException>(testing::StrEq("No input")));
    testing::internal::GetCapturedStdout();
}

} // namespace
