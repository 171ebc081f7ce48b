#include "CommandRun.h"
#include "PackagerTree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include <filesystem>

using namespace PackInspectTest;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

std::string UsageText(std::string const& message)
{
    return PackInspectTest::UsageText("packinspect build", message);
}

// A sound tree: two icons and one screen.
void MakeSound(PackagerTree& tree)
{
    tree.Icon("Play", Bmp4(32, 24, AscendingGreys(), Ramp(32, 24, 1)));
    tree.Icon("Stop_Selected", Bmp4(32, 24, AscendingGreys(), Ramp(32, 24, 2)));
    tree.Screen("Splash", Bmp4(256, 64, AscendingGreys(), Ramp(256, 64, 3)));
}

} // namespace

TEST(BuildCommandTest, RefusesAWrongCommandLine)
{
    EXPECT_EQ(UsageText("the output folder is missing: give it with -o OUTDIR"), Inspect({ "build" })._err);
    EXPECT_EQ(UsageText("one bmp folder at most"), Inspect({ "build", "a", "b", "-o", "out" })._err);
    EXPECT_EQ(UsageText("the sector 'x' is not a number from 0 up"),
        Inspect({ "build", "-o", "out", "--sector=x" })._err);
    for (char const* version : { "1", "1.2.3.4.5", "256.0", "1..2", "1.2.x", "-1.2" })
        EXPECT_EQ(UsageText(std::string("the version '") + version
                      + "' is not Major.minor[.patch[.build]] with parts from 0 to 255"),
            Inspect({ "build", "-o", "out", std::string("--version=") + version })._err)
            << version;
    EXPECT_EQ(UsageText("a size is WxH, two numbers from 1 to 65535: '32' is not"),
        Inspect({ "build", "-o", "out", "--icon=32" })._err);
    EXPECT_EQ(2, Inspect({ "build" })._status);
}

TEST(BuildCommandTest, BuildsWithThePackagerBesideItAndSaysSo)
{
    PackagerTree tree;
    MakeSound(tree);
    tree.Build("version 1.2.3.4");
    auto const result = RunShellCommand(
        ShellProgram(PackinspectPath()) + " build --version=1.2.3.4 bmp -o out 2>err.txt", tree.Folder());
    EXPECT_EQ(0, result.exitCode) << result.output << ReadText(tree.Folder() / "err.txt");
    std::string const packager
        = std::filesystem::path(PackinspectPath()).parent_path().string() + "/packager";
    EXPECT_EQ("built out: oled.pack (2 icons, 1 screens) and its 6 source files, from " + packager + "\n"
            + tree.Summary(),
        result.output);
    EXPECT_EQ("", ReadText(tree.Folder() / "err.txt"));
    for (auto const& file : PackagerOutputs())
        EXPECT_EQ(ReadText(tree.Folder() / file), ReadText(tree.Folder() / "out" / file)) << file;
}

TEST(BuildCommandTest, EveryReasonOfAFailureIsPrefixedOnStandardError)
{
    PackagerTree tree;
    MakeSound(tree);
    WriteFile(tree.Folder() / "bmp/icons/list.txt", "Play.bmp\nplay\n");
    auto const result = RunShellCommand(
        ShellProgram(PackinspectPath()) + " build bmp -o out --strict 2>err.txt >out.txt", tree.Folder());
    EXPECT_EQ(1, result.exitCode);
    EXPECT_EQ("", ReadText(tree.Folder() / "out.txt"));
    std::string const err = ReadText(tree.Folder() / "err.txt");
    EXPECT_THAT(err,
        StartsWith("packinspect build: FAIL bmp/icons/list.txt:2 (index 3), icon play (bmp/icons/play.bmp): "
                   "there is no file bmp/icons/play.bmp, only Play.bmp"));
    EXPECT_THAT(err, HasSubstr("\npackinspect build: result: 2 failures, 0 warnings\n"));
    EXPECT_THAT(err, testing::EndsWith("\npackinspect build: the check failed; out is unchanged\n"));
    EXPECT_FALSE(std::filesystem::exists(tree.Folder() / "out"));
}

TEST(BuildCommandTest, SaysWhichPackagerItLookedForWhenThereIsNone)
{
    // A copy of packinspect alone in a folder, with a PATH that holds no packager.
    PackagerTree tree;
    MakeSound(tree);
    std::filesystem::copy_file(PackinspectPath(), tree.Folder() / "packinspect");
    // The PATH holds a folder without packager; in a cross build's tests, the emulator alone.
    auto const bin = tree.Folder() / "bin";
    std::filesystem::create_directory(bin);
    std::string emulator;
    std::istringstream(PACKAGER_TEST_EMULATOR) >> emulator;
    if (!emulator.empty()) {
        ASSERT_EQ(0,
            RunShellCommand("ln -s \"$(command -v " + ShellQuoted(emulator) + ")\" bin/", tree.Folder())
                .exitCode);
    }
    auto const result = RunShellCommand("env PATH=" + ShellQuoted(bin.string()) + " "
            + TestSupport::EmulatorPrefix() + "./packinspect build bmp -o out 2>&1",
        tree.Folder());
    EXPECT_EQ(1, result.exitCode);
    EXPECT_EQ("packinspect build: packager is not beside packinspect ("
            + std::filesystem::canonical(tree.Folder()).string() + ") nor on PATH; out is unchanged\n",
        result.output);
}
