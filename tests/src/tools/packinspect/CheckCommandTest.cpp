#include "CommandRun.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace PackInspectTest;
using testing::HasSubstr;
using testing::StartsWith;
using TestSupport::ReadText;
using TestSupport::RunShellCommand;
using TestSupport::ShellProgram;
using TestSupport::ShellQuoted;
using TestSupport::WriteFile;
using Zar::Lt::Core::ScratchFolder;

TEST(CheckCommandTest, CheckRefusesABadSectorAndTwoFolders)
{
    for (std::string const sector : { "abc", "-1", "", "12x", "2147483648" }) {
        auto const result = Inspect({ "check", "--sector=" + sector });
        EXPECT_EQ(result._status, 2) << sector;
        EXPECT_EQ(result._err,
            UsageText("packinspect check", "the sector '" + sector + "' is not a number from 0 up"))
            << sector;
    }
    EXPECT_EQ(Inspect({ "check", "a", "b" })._err, UsageText("packinspect check", "one bmp folder at most"));
}

TEST(CheckCommandTest, CheckReportsFailuresInItsExitStatus)
{
    ScratchFolder folder;
    WriteFile(folder / "bmp/icons/Play.bmp", Bmp4(32, 24, AscendingGreys(), Ramp(32, 24, 0)));
    WriteFile(folder / "bmp/icons/list.txt", "Play\n");
    WriteFile(folder / "bmp/screens/Splash.bmp", Bmp4(256, 64, AscendingGreys(), Ramp(256, 64, 0)));
    WriteFile(folder / "bmp/screens/list.txt", "Splash\n");
    auto const sound = Inspect({ "check", (folder / "bmp").string() });
    EXPECT_EQ(sound._status, 0) << sound._out;
    EXPECT_THAT(sound._out, testing::EndsWith("result: 0 failures, 0 warnings\n"));

    WriteFile(folder / "bmp/icons/list.txt", "Play\nMissing\n");
    auto const failing = Inspect({ "check", "--sector", "20", (folder / "bmp").string() });
    EXPECT_EQ(failing._status, 1);
    EXPECT_THAT(failing._out, HasSubstr("/bmp/icons/list.txt:2 (index 3), icon Missing"));
    EXPECT_THAT(failing._out, HasSubstr("0.6.0.0, 1 icons at sector 20"));
}

// End to end: the tools as a user runs them, on the project's example resources.

TEST(EndToEndTest, CheckPassesTheExamples)
{
    ExampleRun const run;
    auto const result = run.Inspect("check");
    EXPECT_EQ(result.exitCode, 0) << result.output;
    EXPECT_THAT(result.output,
        HasSubstr("packing every image that loads prints:\n  0.6.0.0, 12 icons at sector 12, 3 screens"));
    EXPECT_THAT(result.output, testing::EndsWith("result: 0 failures, 0 warnings\n"));
}

TEST(EndToEndTest, CheckLoadsQtImagesInTheBuildTree)
{
    // The Qt image module is found from the build tree's packinspect as from its packager.
    ScratchFolder folder;
    std::filesystem::copy(std::string(PACKAGER_SOURCE_DIR) + "/tests/data/released-outputs/qt-tree/bmp",
        folder / "bmp", std::filesystem::copy_options::recursive);
    auto const result = RunShellCommand(
        "env -u PACKAGER_QT_MODULE_DIR " + ShellProgram(PackinspectPath()) + " check", folder.Path());
    // Qt decodes the RGB photo, which check then refuses for its 32-bit pixels.
    EXPECT_EQ(result.exitCode, 1) << result.output;
    EXPECT_THAT(result.output,
        HasSubstr("FAIL bmp/icons/list.txt:2 (index 3), icon Photo (bmp/icons/Photo.png): it loads as Rgbx"));
    EXPECT_THAT(result.output,
        HasSubstr("packing every image that loads prints:\n  0.6.0.0, 2 icons at sector 12, 1 screens"));
    EXPECT_THAT(result.output, HasSubstr("result: 1 failure, "));
}

TEST(EndToEndTest, CheckLogsFailuresToStandardError)
{
    ExampleRun const run;
    WriteFile(run.Folder() / "bmp/icons/list.txt", "Play\nNowhere\n");
    auto const result
        = RunShellCommand(ShellProgram(PackinspectPath()) + " check bmp 2>err.txt", run.Folder());
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.output,
        HasSubstr(
            "FAIL bmp/icons/list.txt:2 (index 3), icon Nowhere (bmp/icons/Nowhere.bmp): there is no file "));
    EXPECT_THAT(ReadText(run.Folder() / "err.txt"), StartsWith("packinspect [20] '"));
}
