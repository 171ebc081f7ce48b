// The packager executable run as a process, the way build scripts run it: exit status, what it
// prints, and the files it leaves behind in its current folder.

#include "BmpTree.h"
#include "BmpWriter.h"
#include "FileContents.h"
#include "PackReader.h"
#include "PackSummary.h"
#include "ShellCommand.h"
#include "TestImages.h"

#include "Zar/Lt/Core/ScratchFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <vector>

namespace {

using namespace PackagerTests;
using namespace TestSupport;
using testing::StartsWith;
using Zar::Lt::Core::ScratchFolder;

constexpr char kHelp[] = "packager version 0.5.0.5\n"
                         "    to include all bmp specified in list.txt in icons & screens folders\n"
                         "    version format is Major.minor.patch.build on byte (less than 256)\n"
                         "sector <integer>  to specify the first icon sector\n";

struct Process {
    int status = -1;
    std::string output;
    std::string errors;
};

// Runs the executable in folder with the arguments; its standard output and error are kept in files
// beside the folder, so that they do not show up among the files it leaves behind.
// The environment, when given, is a list of assignments put before the command.
Process RunPackager(ScratchFolder const& scratch, std::filesystem::path const& folder,
    std::vector<std::string> const& arguments, std::string const& environment = {},
    std::string const& executable = PACKAGER_EXECUTABLE)
{
    std::string command = environment.empty() ? std::string() : environment + " ";
    command += ShellProgram(executable);
    for (auto const& argument : arguments) {
        command += ' ';
        command += ShellQuoted(argument);
    }
    command += " >";
    command += ShellQuoted((scratch / "stdout.txt").string());
    command += " 2>";
    command += ShellQuoted((scratch / "stderr.txt").string());
    Process process;
    process.status = RunShellCommand(command, folder).exitCode;
    process.output = ReadText(scratch / "stdout.txt");
    process.errors = ReadText(scratch / "stderr.txt");
    return process;
}

std::set<std::string> FilesIn(std::filesystem::path const& folder)
{
    std::set<std::string> names;
    for (auto const& entry : std::filesystem::directory_iterator(folder))
        names.insert(entry.path().filename().string());
    return names;
}

std::vector<std::string> ListedNames(std::filesystem::path const& list)
{
    std::vector<std::string> names;
    std::ifstream file(list);
    std::string line;
    while (std::getline(file, line)) {
        if (line.empty())
            continue;
        names.push_back(line.substr(0, line.rfind('.')));
    }
    return names;
}

std::set<std::string> const kBuildOutputs = { "bmp", "oled.pack", "Icons.h", "Icons.py", "IconsHelper.cpp",
    "commands.py", "Screens.h", "Screens.py" };

class PackagerProcessTest : public testing::Test {
protected:
    PackagerProcessTest() { std::filesystem::create_directories(Work()); }

    std::filesystem::path Work() const { return _scratch / "work"; }
    Process RunTool(std::vector<std::string> const& arguments) const
    {
        return RunPackager(_scratch, Work(), arguments);
    }

    // Runs the tool with the dynamic loader reporting on standard error every library it opens.
    // The environment, when given, adds its assignments.
    Process RunToolReportingLibraries(
        std::string const& executable = PACKAGER_EXECUTABLE, std::string const& environment = {}) const
    {
        return RunPackager(_scratch, Work(), {}, "LD_DEBUG=files " + environment, executable);
    }

    void CopyTree(std::filesystem::path const& tree) const
    {
        std::filesystem::copy(tree, Work() / "bmp", std::filesystem::copy_options::recursive);
    }

    // Every output is the same, byte for byte, as the one the previous release wrote from the same
    // tree (kept as <name>.released, so that no tool takes the generated sources for the project's
    // own, with what it printed in stdout.txt).
    void ExpectTheReleasedOutputs(std::filesystem::path const& expected, Process const& process) const
    {
        for (std::string const name : { "oled.pack", "Icons.h", "Icons.py", "IconsHelper.cpp", "commands.py",
                 "Screens.h", "Screens.py" })
            EXPECT_EQ(ReadBytes(expected / (name + ".released")), ReadBytes(Work() / name)) << name;
        EXPECT_EQ(ReadText(expected / "stdout.txt"), process.output);
    }

    void WriteResources() const
    {
        BmpTree const tree = BmpTree::In(Work());
        tree.Raw("icons/Play.bmp", Gray4Bmp(MakeGray4Image(32, 24, 1)));
        // A monochrome icon, loaded as 4-bit grey: the second row is lit, the others dark.
        std::vector<std::vector<uint8_t>> rows(24, std::vector<uint8_t>(4, 0x00));
        rows[1] = { 0xFF, 0xFF, 0xFF, 0xFF };
        tree.Raw("icons/Line.bmp", BmpWriter::Mono(32, rows, BmpWriter::BlackFirst).Bytes());
        tree.IconList("Play\r\n  Line.bmp\n");
        tree.Raw("screens/Splash.bmp", Gray4Bmp(MakeGray4Image(256, 64, 3)));
        tree.ScreenList("Splash\n");
    }

    ScratchFolder _scratch;
};

TEST_F(PackagerProcessTest, ABuildPrintsItsSummaryAndLeavesThePackAndTheSources)
{
    WriteResources();
    Process const process = RunTool({ "version", "1.2.3.4", "sector", "20" });
    EXPECT_EQ(0, process.status);
    EXPECT_EQ("", process.errors);
    EXPECT_EQ(kBuildOutputs, FilesIn(Work()));

    std::vector<uint8_t> const pack = ReadBytes(Work() / "oled.pack");
    ASSERT_EQ(4 * kSector, pack.size());
    std::vector<uint8_t> icons = Framed(MakeGray4Image(32, 24, 1));
    MutableImage line(Gray4Info(32, 24), std::vector<uint8_t>(384, 0x00));
    std::fill(line.Buffer().begin() + 16, line.Buffer().begin() + 32, 0xFF);
    std::vector<uint8_t> const framedLine = Framed(line);
    icons.insert(icons.end(), framedLine.begin(), framedLine.end());
    icons.resize(kSector, 0xFF);
    EXPECT_EQ(icons, Sector(pack, 1));

    PackHeader const header = ReadHeader(pack);
    EXPECT_EQ(0x01020304u, header.version);
    EXPECT_EQ(20u, header.firstSector);
    EXPECT_EQ((std::vector<std::string> { "Play", "Line", "Splash" }), header.names);
    EXPECT_EQ(SectorCrc(pack, 1), header.crc[20]);
    EXPECT_EQ(SectorCrc(pack, 2), header.crc[247]);
    EXPECT_EQ(SectorCrc(pack, 3), header.crc[248]);
    EXPECT_EQ("1.2.3.4, 2 icons at sector 20, 1 screens, 4 sectors, 16384 bytes\n"
            + CrcLine({ SectorCrc(pack, 1), SectorCrc(pack, 2), SectorCrc(pack, 3) }),
        process.output);
    EXPECT_THAT(ReadText(Work() / "Icons.h"), testing::HasSubstr("{\n    Play = 180,\n    Line,\n};\n"));
}

TEST_F(PackagerProcessTest, ASyntaxErrorPrintsTheHelpExitsOneAndLeavesNothing)
{
    WriteResources();
    Process const process = RunTool({ "version", "1" });
    EXPECT_EQ(1, process.status);
    EXPECT_EQ(kHelp, process.output);
    EXPECT_EQ("", process.errors);
    EXPECT_EQ(std::set<std::string> { "bmp" }, FilesIn(Work()));
}

TEST_F(PackagerProcessTest, AFailedBuildIsSilentAndExitsZero)
{
    // No bmp/ folder at all: without a logger the failure leaves no message.
    Process const process = RunTool({});
    EXPECT_EQ(0, process.status);
    EXPECT_EQ("", process.errors);
    EXPECT_EQ("0.6.0.0, 0 icons at sector 12, 0 screens, 1 sectors, 4096 bytes\ncrc:\n", process.output);
    EXPECT_EQ((std::set<std::string> { "oled.pack", "Screens.h", "Screens.py" }), FilesIn(Work()));
    EXPECT_EQ(kSector, ReadBytes(Work() / "oled.pack").size());
}

TEST_F(PackagerProcessTest, ABadImageNameIsSkippedSilently)
{
    WriteResources();
    WriteGray4Bmp(Work() / "bmp/icons/Play-Pause.bmp", MakeGray4Image(32, 24, 2));
    WriteFile(Work() / "bmp/icons/list.txt", std::string("Play\nPlay-Pause\nLine\n"));
    Process const process = RunTool({});
    EXPECT_EQ(0, process.status);
    EXPECT_EQ("", process.errors);
    EXPECT_THAT(
        process.output, StartsWith("0.6.0.0, 2 icons at sector 12, 1 screens, 4 sectors, 16384 bytes\n"));
    EXPECT_EQ((std::vector<std::string> { "Play", "Line", "Splash" }),
        ReadHeader(ReadBytes(Work() / "oled.pack")).names);
}

// The project's example resources, packed by the tool: the pack must be consistent in itself.
TEST_F(PackagerProcessTest, TheExampleResourcesPackConsistently)
{
    std::filesystem::path const examples = std::filesystem::path(PACKAGER_SOURCE_DIR) / "examples/bmp";
    std::filesystem::copy(examples, Work() / "bmp", std::filesystem::copy_options::recursive);
    std::vector<std::string> const icons = ListedNames(examples / "icons/list.txt");
    std::vector<std::string> const screens = ListedNames(examples / "screens/list.txt");
    ASSERT_EQ(12u, icons.size());
    ASSERT_EQ(3u, screens.size());

    Process const process = RunTool({ "version", "1.0.0.0", "sector", "12" });
    EXPECT_EQ(0, process.status);
    EXPECT_EQ("", process.errors);
    EXPECT_EQ(kBuildOutputs, FilesIn(Work()));

    std::vector<uint8_t> const pack = ReadBytes(Work() / "oled.pack");
    ASSERT_EQ(0u, pack.size() % kSector);
    std::size_t const sectors = pack.size() / kSector;
    std::size_t const iconSectors = (icons.size() + 9) / 10;
    ASSERT_EQ(1 + iconSectors + 2 * screens.size(), sectors);

    PackHeader const header = ReadHeader(pack);
    EXPECT_EQ(0x0052415Au, header.magic);
    EXPECT_EQ(0x00050100u, header.format);
    EXPECT_EQ(0x01000000u, header.version);
    EXPECT_EQ(12u, header.firstSector);
    EXPECT_EQ(icons.size(), header.icons);
    EXPECT_EQ(screens.size(), header.screens);
    std::vector<std::string> names = icons;
    names.insert(names.end(), screens.begin(), screens.end());
    EXPECT_EQ(names, header.names);
    EXPECT_EQ(names.size(), header.namesCount);

    std::vector<uint16_t> crcs;
    std::vector<bool> used(256, false);
    for (std::size_t i = 0; i < iconSectors; ++i) {
        EXPECT_EQ(SectorCrc(pack, 1 + i), header.crc[12 + i]) << "icon sector " << i;
        used[12 + i] = true;
    }
    for (std::size_t j = 0; j < 2 * screens.size(); ++j) {
        EXPECT_EQ(SectorCrc(pack, 1 + iconSectors + j), header.crc[247 + j]) << "screen sector " << j;
        used[247 + j] = true;
    }
    for (std::size_t s = 0; s < 256; ++s) {
        if (!used[s]) {
            EXPECT_EQ(0, header.crc[s]) << "entry " << s;
        }
    }
    for (std::size_t s = 1; s < sectors; ++s)
        crcs.push_back(SectorCrc(pack, s));
    EXPECT_EQ("1.0.0.0, 12 icons at sector 12, 3 screens, 9 sectors, 36864 bytes\n" + CrcLine(crcs),
        process.output);
}

} // namespace

// --- Outputs of the previous release, and Qt loaded on demand ----------------------------------

std::filesystem::path const kReleasedOutputs
    = std::filesystem::path(PACKAGER_SOURCE_DIR) / "tests/data/released-outputs";

TEST_F(PackagerProcessTest, TheExampleResourcesGiveTheOutputsOfThePreviousRelease)
{
    CopyTree(std::filesystem::path(PACKAGER_SOURCE_DIR) / "examples/bmp");
    Process const process = RunTool({ "version", "1.0.0.0", "sector", "12" });
    EXPECT_EQ(0, process.status);
    ExpectTheReleasedOutputs(kReleasedOutputs / "example", process);
}

TEST_F(PackagerProcessTest, ABuildWithoutQtImagesOpensNoQtLibrary)
{
    WriteResources();
    WriteFile(Work() / "bmp/icons/Text.txt", std::string("XX  \n  XX\n"));
    WriteFile(Work() / "bmp/icons/list.txt", std::string("Play\nLine.bmp\nText.txt\n"));
    Process const process = RunToolReportingLibraries();
    EXPECT_EQ(0, process.status);
    EXPECT_THAT(process.output, StartsWith("0.6.0.0, 3 icons at sector 12, 1 screens, "));
    // The report is there (the C library is always opened), and names neither Qt nor the module.
    EXPECT_THAT(process.errors, testing::HasSubstr("libc.so"));
    EXPECT_THAT(process.errors, testing::Not(testing::HasSubstr("libQt5")));
    EXPECT_THAT(process.errors, testing::Not(testing::HasSubstr("zar_qt_input")));
}

TEST_F(PackagerProcessTest, AQtImageIsLoadedThroughTheModuleAsByThePreviousRelease)
{
    CopyTree(kReleasedOutputs / "qt-tree/bmp");
    Process const process = RunToolReportingLibraries();
    EXPECT_EQ(0, process.status);
    ExpectTheReleasedOutputs(kReleasedOutputs / "qt-tree/expected", process);
    EXPECT_THAT(process.errors, testing::HasSubstr("zar_qt_input.so"));
    EXPECT_THAT(process.errors, testing::HasSubstr("libQt5Gui.so"));
}

TEST_F(PackagerProcessTest, WithoutItsQtModuleOnlyTheQtImageFails)
{
    // A copy of the tool in a folder of its own finds no module beside it, and the environment
    // keeps it to that folder, away from a module installed on the machine.
    std::filesystem::path const alone = _scratch / "alone/packager";
    std::filesystem::create_directories(alone.parent_path());
    std::filesystem::copy_file(PACKAGER_EXECUTABLE, alone);
    CopyTree(kReleasedOutputs / "qt-tree/bmp");
    Process const process = RunToolReportingLibraries(
        alone.string(), std::string("PACKAGER_QT_MODULE_DIR=") + ShellQuoted(alone.parent_path().string()));
    EXPECT_EQ(0, process.status);
    // The other icon is built, and the build stops after the icons, as for any failed icon.
    EXPECT_THAT(
        process.output, StartsWith("0.6.0.0, 1 icons at sector 12, 0 screens, 2 sectors, 8192 bytes\n"));
    EXPECT_EQ((std::vector<std::string> { "Play" }), ReadHeader(ReadBytes(Work() / "oled.pack")).names);
    EXPECT_THAT(process.errors, testing::HasSubstr("libc.so"));
    EXPECT_THAT(process.errors, testing::Not(testing::HasSubstr("libQt5")));
}

TEST_F(PackagerProcessTest, TheModuleIsTakenFromTheFolderTheEnvironmentNames)
{
    // The same copy of the tool, pointed at the module of this build.
    std::filesystem::path const alone = _scratch / "alone/packager";
    std::filesystem::create_directories(alone.parent_path());
    std::filesystem::copy_file(PACKAGER_EXECUTABLE, alone);
    CopyTree(kReleasedOutputs / "qt-tree/bmp");
    std::filesystem::path const module = PACKAGER_QT_MODULE;
    Process const process = RunToolReportingLibraries(
        alone.string(), std::string("PACKAGER_QT_MODULE_DIR=") + ShellQuoted(module.parent_path().string()));
    EXPECT_EQ(0, process.status);
    ExpectTheReleasedOutputs(kReleasedOutputs / "qt-tree/expected", process);
    EXPECT_THAT(process.errors, testing::HasSubstr(module.string()));
}
