#include "PackBuild.h"

#include "FileContents.h"
#include "PackagerTree.h"
#include "TestPacks.h"

#include "Zar/Lt/Core/ScratchFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <sstream>

using namespace PackInspectTest;
using testing::HasSubstr;
using testing::StartsWith;
using TestSupport::ReadText;
using TestSupport::WriteFile;
using Zar::Lt::Core::ScratchFolder;
using Zar::ResourcesLibrary::Tools::Inspect::PackBuild;

namespace {

namespace fs = std::filesystem;

// Every file under a folder with its bytes, to show that a failed build left it as it was.
std::map<std::string, std::string> Snapshot(fs::path const& folder)
{
    std::map<std::string, std::string> files;
    if (!fs::exists(folder))
        return files;
    for (auto const& entry : fs::recursive_directory_iterator(folder))
        files[fs::relative(entry.path(), folder).string()]
            = entry.is_regular_file() ? ReadText(entry.path()) : std::string("<folder>");
    return files;
}

struct BuildRun {
    int _status = -1;
    std::string _out;
    std::string _err;
};

// A sound tree (two icons, one screen) packed by packager in its own folder, and a build of the same
// tree into out/ beside it.
class BuildTree {
public:
    BuildTree()
    {
        _tree.Icon("Play", Bmp4(32, 24, AscendingGreys(), Ramp(32, 24, 1)));
        _tree.Icon("Stop_Selected", Bmp4(32, 24, AscendingGreys(), Ramp(32, 24, 2)));
        _tree.Screen("Splash", Bmp4(256, 64, AscendingGreys(), Ramp(256, 64, 3)));
    }

    PackagerTree& Tree() { return _tree; }
    fs::path Output() const { return _output.empty() ? _tree.Folder() / "out" : _output; }
    // Where Build writes instead of the tree's out/, as the command line gives it.
    void OutputTo(fs::path output) { _output = std::move(output); }

    // A stand-in packager is a script of this machine, which runs the real one through the
    // emulator itself; packinspect must then start it as it is.
    BuildRun Build(std::string const& packager = PackagerPath(), std::string const& version = "1.2.3.4")
    {
        std::string const emulator
            = std::getenv("PACKINSPECT_EMULATOR") ? std::getenv("PACKINSPECT_EMULATOR") : "";
        if (packager != PackagerPath())
            unsetenv("PACKINSPECT_EMULATOR");
        PackBuild::Options options;
        options._root = (_tree.Folder() / "bmp").string();
        options._outputFolder = Output().string();
        options._version = version;
        std::ostringstream out;
        std::ostringstream err;
        BuildRun run;
        run._status = PackBuild(options, packager, out, err).Run();
        if (!emulator.empty())
            setenv("PACKINSPECT_EMULATOR", emulator.c_str(), 1);
        run._out = out.str();
        run._err = err.str();
        return run;
    }

    // A shell script that stands in for packager, with the real one as the shell function packager.
    std::string Wrapper(std::string const& body) const
    {
        std::string const path = (_tree.Folder() / "wrapper.sh").string();
        WriteFile(path,
            "#!/bin/sh\npackager() { " + TestSupport::ShellProgram(PackagerPath()) + " \"$@\"; }\n" + body
                + "\n");
        fs::permissions(path, fs::perms::owner_all);
        return path;
    }

private:
    PackagerTree _tree;
    fs::path _output;
};

} // namespace

TEST(PackBuildTest, ASuccessfulBuildGivesWhatAPlainPackagerRunGives)
{
    BuildTree tree;
    tree.Tree().Build("version 1.2.3.4");
    ASSERT_EQ(tree.Tree().Run().exitCode, 0);
    auto const run = tree.Build();
    EXPECT_EQ(0, run._status) << run._err;
    EXPECT_EQ("", run._err);
    EXPECT_EQ("built " + tree.Output().string()
            + ": oled.pack (2 icons, 1 screens) and its 6 source files, from " + PackagerPath() + "\n"
            + tree.Tree().Summary(),
        run._out);
    for (auto const& file : PackagerOutputs())
        EXPECT_EQ(ReadText(tree.Tree().Folder() / file), ReadText(tree.Output() / file)) << file;
    EXPECT_EQ("oled.pack\nIcons.h\nIcons.py\ncommands.py\nIconsHelper.cpp\nScreens.h\nScreens.py\n",
        ReadText(tree.Output() / PackBuild::kManifest));
    // Nothing is left beside the output folder.
    std::size_t entries = 0;
    for ([[maybe_unused]] auto const& entry : fs::directory_iterator(tree.Tree().Folder()))
        ++entries;
    EXPECT_EQ(entries, 1u + 1u + 1u + PackagerOutputs().size()) << "bmp, out, summary.txt and the outputs";
}

TEST(PackBuildTest, ACheckFailureLeavesTheOutputFolderAsItWas)
{
    BuildTree tree;
    ASSERT_EQ(0, tree.Build()._status);
    WriteFile(tree.Output() / "notes.txt", "mine\n");
    auto const before = Snapshot(tree.Output());
    WriteFile(tree.Tree().Folder() / "bmp/icons/list.txt", "Play.bmp\nGone\nStop_Selected.bmp\n");
    auto const run = tree.Build();
    EXPECT_EQ(1, run._status);
    EXPECT_EQ("", run._out);
    EXPECT_THAT(run._err, HasSubstr("FAIL " + (tree.Tree().Folder() / "bmp/icons/list.txt:2").string()));
    EXPECT_THAT(
        run._err, testing::EndsWith("the check failed; " + tree.Output().string() + " is unchanged\n"));
    EXPECT_EQ(before, Snapshot(tree.Output()));
}

TEST(PackBuildTest, AFailedBuildMakesNoOutputFolder)
{
    BuildTree tree;
    WriteFile(tree.Tree().Folder() / "bmp/screens/list.txt", "");
    auto const run = tree.Build();
    EXPECT_EQ(1, run._status);
    EXPECT_THAT(run._err, HasSubstr("names no screen"));
    EXPECT_FALSE(fs::exists(tree.Output()));
}

TEST(PackBuildTest, AShortPackFromAFullDiskFails)
{
    // A file size limit stands in for a full disk: writes past it fail, and packager goes on without a word.
    BuildTree tree;
    ASSERT_EQ(0, tree.Build()._status);
    auto const before = Snapshot(tree.Output());
    auto const run = tree.Build(tree.Wrapper("trap '' XFSZ\nulimit -f 16\npackager \"$@\""));
    EXPECT_EQ(1, run._status);
    EXPECT_THAT(run._err, HasSubstr("the pack packager wrote does not verify ("));
    // Appended piece by piece: GCC 12's -O3 restrict check misreads "\n" + a temporary string.
    std::string unchanged(1, '\n');
    unchanged += tree.Output().string();
    unchanged += " is unchanged\n";
    EXPECT_THAT(run._err, testing::EndsWith(unchanged));
    EXPECT_EQ(before, Snapshot(tree.Output()));
}

TEST(PackBuildTest, SourcesCutShortFail)
{
    BuildTree tree;
    auto const run = tree.Build(tree.Wrapper("packager \"$@\" && head -c 100 Icons.h > cut && mv cut Icons.h"
                                             " && rm Screens.py"));
    EXPECT_EQ(1, run._status);
    EXPECT_THAT(run._err,
        StartsWith("the sources packager wrote are incomplete: Icons.h is cut short (100 bytes)\n"
                   "the sources packager wrote are incomplete: Screens.py is missing\n"
                   "the sources packager wrote are incomplete: Icons.h does not count the pack's "
                   "2"
                   " icons\n"));
    EXPECT_FALSE(fs::exists(tree.Output()));
}

TEST(PackBuildTest, AProgramThatIsNotPackagerIsCaughtByItsCrcs)
{
    BuildTree tree;
    auto const run = tree.Build(tree.Wrapper("packager \"$@\" > /dev/null\necho crc:0000"));
    EXPECT_EQ(1, run._status);
    EXPECT_THAT(run._err,
        StartsWith("packager printed \"crc:0000\" where the check's trial pack"
                   " has \"crc:"));
}

TEST(PackBuildTest, APackagerThatFailsOrIsMissingFails)
{
    BuildTree tree;
    auto const failing = tree.Build(tree.Wrapper("echo no way\nexit 1"));
    EXPECT_EQ(1, failing._status);
    EXPECT_EQ((tree.Tree().Folder() / "wrapper.sh").string() + " exited with 1, printing:\nno way\n"
            + tree.Output().string() + " is unchanged\n",
        failing._err);
    auto const missing = tree.Build((tree.Tree().Folder() / "nothing").string());
    EXPECT_EQ(1, missing._status);
    EXPECT_EQ("cannot run " + (tree.Tree().Folder() / "nothing").string() + ": No such file or directory\n"
            + tree.Output().string() + " is unchanged\n",
        missing._err);
    EXPECT_FALSE(fs::exists(tree.Output()));
}

TEST(PackBuildTest, AnOutputTheSameAsBeforeKeepsItsFile)
{
    BuildTree tree;
    ASSERT_EQ(0, tree.Build()._status);
    auto const icons = tree.Output() / "Icons.h";
    auto const pack = tree.Output() / "oled.pack";
    auto const old = fs::file_time_type::clock::now() - std::chrono::hours(1);
    fs::last_write_time(icons, old);
    fs::last_write_time(pack, old);
    WriteFile(tree.Tree().Folder() / "bmp/icons/Play.bmp", Bmp4(32, 24, AscendingGreys(), Ramp(32, 24, 9)));
    ASSERT_EQ(0, tree.Build()._status);
    EXPECT_EQ(old, fs::last_write_time(icons));
    EXPECT_NE(old, fs::last_write_time(pack));
}

TEST(PackBuildTest, OutputsOfAPreviousBuildThatThisOneDoesNotMakeAreRemoved)
{
    BuildTree tree;
    WriteFile(tree.Output() / "Old.h", "stale\n");
    WriteFile(tree.Output() / "notes.txt", "mine\n");
    WriteFile(tree.Output() / PackBuild::kManifest, "Old.h\noled.pack\n../escape\n");
    WriteFile(tree.Tree().Folder() / "escape", "kept\n");
    auto const run = tree.Build();
    EXPECT_EQ(0, run._status) << run._err;
    EXPECT_FALSE(fs::exists(tree.Output() / "Old.h"));
    EXPECT_TRUE(fs::exists(tree.Output() / "notes.txt"));
    EXPECT_TRUE(fs::exists(tree.Tree().Folder() / "escape"));
}

TEST(PackBuildTest, TheEmulatorRunsPackager)
{
    BuildTree tree;
    std::string const emulator = tree.Wrapper(
        "echo \"$@\" > \"$(dirname \"$0\")/emulated.txt\"\nexec " + TestSupport::EmulatorPrefix() + "\"$@\"");
    char const* const testEmulator = std::getenv("PACKINSPECT_EMULATOR");
    std::string const saved = testEmulator ? testEmulator : "";
    setenv("PACKINSPECT_EMULATOR", (emulator + " ").c_str(), 1);
    auto const run = tree.Build();
    if (saved.empty())
        unsetenv("PACKINSPECT_EMULATOR");
    else
        setenv("PACKINSPECT_EMULATOR", saved.c_str(), 1);
    EXPECT_EQ(0, run._status) << run._err;
    EXPECT_EQ(
        PackagerPath() + " version 1.2.3.4 sector 12\n", ReadText(tree.Tree().Folder() / "emulated.txt"));
}

TEST(PackBuildTest, FoldersMissingAboveTheOutputFolderAreMade)
{
    BuildTree tree;
    tree.OutputTo(tree.Tree().Folder() / "build/generated/pack");
    auto const run = tree.Build();
    EXPECT_EQ(0, run._status) << run._err;
    EXPECT_TRUE(fs::is_regular_file(tree.Output() / "oled.pack"));
}

TEST(PackBuildTest, AFailedBuildRemovesTheFoldersItMadeAboveTheOutputFolder)
{
    BuildTree tree;
    tree.OutputTo(tree.Tree().Folder() / "build/generated/pack");
    auto const run = tree.Build("/bin/false");
    EXPECT_EQ(1, run._status);
    EXPECT_FALSE(fs::exists(tree.Tree().Folder() / "build"));
}

TEST(PackBuildTest, AnOutputFolderWithATrailingSlashBuildsAndLeavesNoStagingFolder)
{
    BuildTree tree;
    tree.OutputTo(tree.Tree().Folder() / "generated/");
    auto const run = tree.Build();
    EXPECT_EQ(0, run._status) << run._err;
    EXPECT_TRUE(fs::is_regular_file(tree.Tree().Folder() / "generated/oled.pack"));
    for (auto const& entry : fs::directory_iterator(tree.Tree().Folder() / "generated"))
        EXPECT_EQ(std::string::npos, entry.path().filename().string().find("staging")) << entry.path();
}

TEST(PackBuildTest, AStagingFolderThatCannotBeMadeFails)
{
    BuildTree tree;
    WriteFile(tree.Tree().Folder() / "a-file", "not a folder");
    PackBuild::Options options;
    options._root = (tree.Tree().Folder() / "bmp").string();
    options._outputFolder = (tree.Tree().Folder() / "a-file/out").string();
    std::ostringstream out;
    std::ostringstream err;
    EXPECT_EQ(1, PackBuild(options, PackagerPath(), out, err).Run());
    EXPECT_EQ(
        "cannot make a staging folder beside " + options._outputFolder + "; it is unchanged\n", err.str());
}
