#include "CommandRun.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace PackInspectTest;
using testing::HasSubstr;
using TestSupport::ReadBytes;
using TestSupport::ReadText;
using TestSupport::RunShellCommand;
using TestSupport::ShellProgram;
using TestSupport::ShellQuoted;
using TestSupport::WriteFile;

TEST(ExtractCommandTest, ExtractNeedsOnePackAndAFolder)
{
    EXPECT_EQ(Inspect({ "extract", "-o", "out" })._err,
        UsageText("packinspect extract", "the pack file is missing"));
    EXPECT_EQ(Inspect({ "extract", "a", "b", "-o", "out" })._err,
        UsageText("packinspect extract", "one pack file at a time"));
    auto const noFolder = Inspect({ "extract", "oled.pack" });
    EXPECT_EQ(noFolder._status, 2);
    EXPECT_EQ(
        noFolder._err, UsageText("packinspect extract", "the output folder is missing: give it with -o DIR"));
    EXPECT_EQ(Inspect({ "extract", "oled.pack", "--output" })._err,
        UsageText("packinspect extract", "option '--output' needs a value"));
    EXPECT_EQ(Inspect({ "extract", "--icon=0x1", "oled.pack", "-o", "out" })._err,
        UsageText("packinspect extract", "a size is WxH, two numbers from 1 to 65535: '0x1' is not"));
}

TEST(ExtractCommandTest, ExtractWritesTheTreeAndPrintsTheRebuild)
{
    PackFolder const folder(BuildPack(WorkedExample()));
    std::string const out = folder.In("tree");
    auto const result = Inspect({ "extract", folder.Path(), "--output", out });
    EXPECT_EQ(result._status, 0) << result._err;
    EXPECT_EQ(result._out,
        "wrote 12 icons and 1 screens to " + out + "/bmp\nrebuild the pack in " + out
            + " with (also in rebuild.sh):\npackager version 1.2.3.4 sector 12\n");
    EXPECT_EQ(ReadText(folder.In("tree/bmp/screens/list.txt")), "Screen0.bmp\n");
    EXPECT_TRUE(std::filesystem::exists(folder.In("tree/bmp/icons/Icon11.bmp")));
}

TEST(ExtractCommandTest, ExtractRefusesAFolderThatIsNotEmptyUnlessForced)
{
    PackFolder const folder(BuildPack(WorkedExample()));
    std::string const out = folder.In("tree");
    WriteFile(folder.In("tree/notes.txt"), "mine\n");
    auto const refused = Inspect({ "extract", folder.Path(), "-o", out });
    EXPECT_EQ(refused._status, 1);
    EXPECT_EQ(refused._err, "packinspect extract: " + out + " is not empty; give --force to write into it\n");
    EXPECT_FALSE(std::filesystem::exists(folder.In("tree/bmp")));

    auto const forced = Inspect({ "extract", "--force", folder.Path(), "-o", out });
    EXPECT_EQ(forced._status, 0) << forced._err;
    EXPECT_TRUE(std::filesystem::exists(folder.In("tree/bmp/icons/list.txt")));
    EXPECT_EQ(ReadText(folder.In("tree/notes.txt")), "mine\n");
}

TEST(ExtractCommandTest, ExtractRefusesNamesBeforeWritingAnything)
{
    struct Case {
        std::vector<std::string> _names;
        std::string _message;
    };
    std::vector<std::string> twice { "Play", "Stop", "Play" };
    std::vector<std::string> slash { "Play", "icons/Stop", "Next" };
    std::vector<std::string> blank { "Play", "", "Next" };
    Case const cases[] = { { twice, "two images are named Play: their files would be one" },
        { slash, "the image name 'icons/Stop' cannot be a file name: it holds '/' or a NUL byte" },
        { blank, "an image has no name" } };
    for (auto const& [names, message] : cases) {
        TestSupport::PackContents contents;
        for (uint8_t k = 0; k < 3; ++k)
            contents._icons.push_back(Pattern(384, k));
        contents._names = names;
        PackFolder const folder(BuildPack(contents));
        auto const result = Inspect({ "extract", folder.Path(), "-o", folder.In("tree") });
        EXPECT_EQ(result._status, 1) << message;
        EXPECT_EQ(result._err, "packinspect extract: " + folder.Path() + ": " + message + "\n");
        EXPECT_FALSE(std::filesystem::exists(folder.In("tree"))) << message;
    }
}

TEST(ExtractCommandTest, ExtractRefusesWrongSizesWithTheMessageOfList)
{
    PackFolder const folder(BuildPack(WorkedExample()));
    auto const extract = Inspect({ "extract", "--icon=16x16", folder.Path(), "-o", folder.In("tree") });
    auto const list = Inspect({ "list", "--icon=16x16", folder.Path() });
    std::string const message
        = "the geometry --icon 16x16 --screen 256x64 lays 4 sectors out, the file holds 5: "
          "the geometry is probably not the pack's";
    EXPECT_EQ(extract._status, 1);
    EXPECT_EQ(extract._err, "packinspect extract: " + folder.Path() + ": " + message + "\n");
    EXPECT_THAT(list._out, HasSubstr("problem: " + message + "\n"));
    EXPECT_FALSE(std::filesystem::exists(folder.In("tree")));
}

TEST(ExtractCommandTest, ExtractRefusesWhatIsNotAPack)
{
    PackFolder const folder(Bytes(8192, 0));
    auto const result = Inspect({ "extract", folder.Path(), "-o", folder.In("tree") });
    EXPECT_EQ(result._status, 1);
    EXPECT_EQ(result._err,
        "packinspect extract: " + folder.Path()
            + ": not a pack: no header sector with the magic \"ZAR\" and the format word 0.5.1.0\n");
}

TEST(ExtractCommandTest, ExtractAndDiffRefuseTruncatedAndLyingPacks)
{
    auto const good = BuildPack(WorkedExample());
    auto truncated = good;
    truncated.resize(3 * 4096 + 100);
    auto lying = good;
    lying[16] = 0xFF; // an icon count of 255, far more than the file holds
    lying[17] = 0xFF;
    PackFolder const sound(good);
    for (auto const& bytes : { truncated, lying }) {
        PackFolder const folder(bytes);
        auto const extract = Inspect({ "extract", folder.Path(), "-o", folder.In("tree") });
        EXPECT_EQ(extract._status, 1);
        EXPECT_THAT(extract._err, HasSubstr(": the geometry is probably not the pack's\n"));
        EXPECT_FALSE(std::filesystem::exists(folder.In("tree")));
        auto const diff = Inspect({ "diff", sound.Path(), folder.Path() });
        EXPECT_EQ(diff._status, 2);
        EXPECT_THAT(diff._err, HasSubstr(": the geometry is probably not the pack's\n"));
    }
}

TEST(EndToEndTest, ExtractThenPackagerRebuildsTheExample)
{
    ExampleRun const run;
    ASSERT_EQ(run.Packager().exitCode, 0) << run.Packager().output;
    auto const extract = run.Inspect("extract oled.pack -o rebuilt");
    ASSERT_EQ(extract.exitCode, 0) << extract.output;
    std::smatch command;
    ASSERT_TRUE(std::regex_search(
        extract.output, command, std::regex("\npackager (version [0-9.]+ sector [0-9]+)\n")));
    auto const rebuild
        = RunShellCommand(ShellProgram(PackagerPath()) + " " + command[1].str(), run.Folder() / "rebuilt");
    EXPECT_EQ(rebuild.output, run.Packager().output);
    for (char const* file :
        { "oled.pack", "Icons.h", "Icons.py", "commands.py", "IconsHelper.cpp", "Screens.h", "Screens.py" })
        EXPECT_TRUE(ReadBytes(run.Folder() / "rebuilt" / file) == ReadBytes(run.Folder() / file)) << file;

    auto const same = run.Inspect("diff oled.pack rebuilt/oled.pack");
    EXPECT_EQ(same.exitCode, 0) << same.output;
    EXPECT_THAT(same.output, testing::EndsWith("the packs are equal\n"));
}
