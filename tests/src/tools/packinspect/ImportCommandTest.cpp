#include "CommandRun.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace PackInspectTest;

namespace {

Result Import(std::vector<std::string> arguments)
{
    arguments.insert(arguments.begin(), "import");
    return Inspect(arguments);
}

std::string UsageError(std::string const& message) { return UsageText("packinspect import", message); }

} // namespace

TEST(ImportCommandTest, ImportsAndReportsEachImage)
{
    ScratchFolder const tree;
    QImage image(64, 64, QImage::Format_RGB32);
    image.fill(Qt::black);
    ASSERT_TRUE(image.save(QString::fromStdString((tree / "Dark.png").string())));
    std::string const file = (tree / "Dark.png").string();
    auto const result = Import({ file, "--size=32x24", "--fit", "contain", "-o", (tree / "icons").string() });
    EXPECT_EQ(result._status, 0) << result._err;
    EXPECT_EQ(result._out, "imported " + file + " as Dark (32x24)\n");
    EXPECT_EQ(TestSupport::ReadText(tree / "icons/list.txt"), "Dark\n");
}

TEST(ImportCommandTest, RefusesAFileNamingItAndWritesNothing)
{
    ScratchFolder const tree;
    std::string const file = (tree / "Missing.png").string();
    auto const result = Import({ file, "-o", (tree / "icons").string() });
    EXPECT_EQ(result._status, 1);
    EXPECT_EQ(result._err,
        "packinspect import: " + file
            + ": cannot open it: No such file or directory\npackinspect import: nothing was imported\n");
    EXPECT_FALSE(std::filesystem::exists(tree / "icons"));
}

TEST(ImportCommandTest, RefusesWrongOptionsAsUsageErrors)
{
    EXPECT_EQ(Import({ "a.png" })._err,
        UsageError("the folder is missing: give it with -o ROOT/icons or -o ROOT/screens"));
    EXPECT_EQ(Import({ "-o", "icons" })._err, UsageError("no image file given"));
    EXPECT_EQ(Import({ "a.png", "-o", "icons", "--size=0x3" })._err,
        UsageError("--size takes WxH, each from 1 to 4096, not '0x3'"));
    EXPECT_EQ(
        Import({ "a.png", "-o", "icons", "--fit=cover" })._err, UsageError("--fit=cover needs --size=WxH"));
    EXPECT_EQ(Import({ "a.png", "-o", "icons", "--fit=fill" })._err,
        UsageError("--fit takes contain, cover, stretch or none, not 'fill'"));
    EXPECT_EQ(Import({ "a.png", "-o", "icons", "--background=grey" })._err,
        UsageError("--background takes black, white or a grey from 0 to 255, not 'grey'"));
    EXPECT_EQ(Import({ "a.png", "-o", "icons", "--dither=random" })._err,
        UsageError("--dither takes none, ordered, floyd-steinberg or atkinson, not 'random'"));
    EXPECT_EQ(
        Import({ "a.png", "-o", "icons", "--bits=2" })._err, UsageError("--bits takes 1 or 4, not '2'"));
    EXPECT_EQ(Import({ "a.png", "-o", "icons", "--bits=1", "--gamma=2" })._err,
        UsageError("--gamma and --grey-table map to 16 levels; with --bits=1 use --threshold"));
    EXPECT_EQ(
        Import({ "a.png", "-o", "icons", "--threshold=9" })._err, UsageError("--threshold is for --bits=1"));
    EXPECT_EQ(Import({ "a.png", "-o", "icons", "--bits=1", "--threshold=300" })._err,
        UsageError("--threshold takes a grey from 0 to 256, not '300'"));
    EXPECT_EQ(Import({ "a.png", "-o", "icons", "--gamma=0" })._err,
        UsageError("--gamma takes a number from 0.1 to 10, not '0'"));
    EXPECT_EQ(Import({ "a.png", "-o", "icons", "--gamma=2", "--grey-table=t" })._err,
        UsageError("give --gamma or --grey-table, not both"));
    EXPECT_EQ(Import({ "a.png", "-o", "icons", "--grey-table=/nonexistent/t" })._err,
        UsageError("--grey-table: cannot read /nonexistent/t"));
    EXPECT_EQ(Import({ "a.png", "-o", "icons", "--frame=-1" })._err,
        UsageError("--frame takes a frame number from 0, not '-1'"));
    EXPECT_EQ(Import({ "a.png", "-o", "icons", "--frame=-1" })._status, 2);
}

TEST(ImportCommandTest, RefusesAGreyTableThatIsNotOne)
{
    ScratchFolder const tree;
    TestSupport::WriteFile(tree / "table.txt", std::string("1 2 3\n"));
    EXPECT_EQ(Import({ "a.png", "-o", "icons", "--grey-table=" + (tree / "table.txt").string() })._err,
        UsageError("--grey-table " + (tree / "table.txt").string()
            + ": it holds 3 numbers; it needs 16, the luminance of each level from 0 to 15"));
}
