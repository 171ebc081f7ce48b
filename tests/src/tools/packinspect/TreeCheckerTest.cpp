#include "TreeChecker.h"

#include "BmpTree.h"
#include "FileContents.h"
#include "RecordingLogger.h"
#include "TestPacks.h"

#include "Zar/ResourcesLibrary/Image/codec/QtModule.h"

#include "Zar/Lt/Core/ScratchFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QImage>

#include <sstream>

using namespace PackInspectTest;
using testing::AllOf;
using testing::Contains;
using testing::HasSubstr;
using TestSupport::WriteFile;
using zar::logging::test::RecordingLogger;
using Zar::Lt::Core::ScratchFolder;
using Zar::ResourcesLibrary::Tools::Inspect::ImageGeometry;
using Zar::ResourcesLibrary::Tools::Inspect::TreeChecker;

namespace {

// A bmp tree whose icons and screens are grey ramps of the display's sizes.
class Tree : public TestSupport::BmpTree {
public:
    void Icon(std::string const& name, std::array<uint8_t, 16> const& greys = AscendingGreys())
    {
        Raw("icons/" + name + ".bmp", Bmp4(32, 24, greys, Ramp(32, 24, 1)));
    }
    void Screen(std::string const& name)
    {
        Raw("screens/" + name + ".bmp", Bmp4(256, 64, AscendingGreys(), Ramp(256, 64, 2)));
    }
    void Text(std::string const& relative, std::string const& text) { Raw(relative, text); }
    void Remove(std::string const& relative) { std::filesystem::remove_all(Folder() / "bmp" / relative); }
    std::string Icons() const { return Root() + "icons/list.txt"; }
    std::string Screens() const { return Root() + "screens/list.txt"; }

    // A sound tree: two icons and one screen.
    void MakeSound()
    {
        Icon("Play");
        Icon("Stop_Selected");
        IconList("Play\nStop_Selected\n");
        Screen("Splash");
        ScreenList("Splash\n");
    }
};

struct Outcome {
    std::vector<std::string> _failures;
    std::vector<std::string> _warnings;
    std::string _printed;
    std::string _packagerOutput;
    std::vector<std::string> _logged;
};

Outcome Check(Tree const& tree, TreeChecker::Options const& options, bool logStacks = false)
{
    RecordingLogger logger;
    TreeChecker checker(tree.Root(), options, &logger, logStacks);
    checker.Run();
    Outcome outcome;
    for (auto const& finding : checker.Findings())
        (finding._failure ? outcome._failures : outcome._warnings).push_back(finding._text);
    std::ostringstream printed;
    checker.Print(printed);
    outcome._printed = printed.str();
    outcome._packagerOutput = checker.PackagerOutput();
    for (auto const& record : logger.Records())
        outcome._logged.push_back(std::to_string(record.level) + " " + record.message);
    EXPECT_EQ(
        checker.FailureCount(), outcome._failures.size() + (options._strict ? outcome._warnings.size() : 0));
    return outcome;
}

Outcome Check(Tree const& tree, int32_t sector = 12, bool logStacks = false)
{
    return Check(tree, TreeChecker::Options { sector, std::nullopt, false }, logStacks);
}

// The start of a finding about one list line: the list and line, packager's index, the kind, the
// name and the file.
std::string At(std::string const& list, int line, int index, char const* kind, std::string const& name,
    std::string const& file)
{
    return list + ":" + std::to_string(line) + " (index " + std::to_string(index) + "), " + kind + " " + name
        + " (" + file + "): ";
}

std::string Import(std::string const& file, std::string const& folder, std::string const& size = "")
{
    return "convert it to a 4-bit grey BMP with: packinspect import --force "
        + (size.empty() ? "" : "--size=" + size + " ") + file + " -o " + folder;
}

} // namespace

TEST(TreeCheckerTest, ASoundTreePasses)
{
    Tree tree;
    tree.MakeSound();
    auto const outcome = Check(tree);
    EXPECT_TRUE(outcome._failures.empty()) << outcome._printed;
    EXPECT_TRUE(outcome._warnings.empty()) << outcome._printed;
    EXPECT_THAT(outcome._packagerOutput,
        testing::StartsWith("0.6.0.0, 2 icons at sector 12, 1 screens, 4 sectors, 16384 bytes\ncrc:"));
    EXPECT_THAT(outcome._printed,
        HasSubstr("packing every image that loads prints:\n  0.6.0.0, 2 icons at sector 12"));
    EXPECT_THAT(outcome._printed, testing::EndsWith("result: 0 failures, 0 warnings\n"));
    EXPECT_TRUE(outcome._logged.empty());
}

TEST(TreeCheckerTest, GoodTreesPassEvenWhenStrict)
{
    using TestSupport::BmpWriter;
    Tree tree;
    tree.MakeSound();
    // An inverted 1-bit palette, a descending ramp, a top-down file and an upper-case extension, listed
    // with CRLF line ends, trailing blanks and blank lines.
    tree.Raw("icons/Inverted.bmp",
        BmpWriter::Mono(32, std::vector<Bytes>(24, Bytes { 0xF0, 0x0F, 0xAA, 0x55 }), BmpWriter::WhiteFirst)
            .Bytes());
    tree.Icon("Dark", DescendingGreys());
    tree.Raw("icons/TopDown.bmp",
        BmpWriter::Gray4(32, std::vector<Bytes>(24, Bytes(16, 0x5A)), BmpWriter::BlackFirst, true).Bytes());
    tree.Raw("icons/Upper.BMP", Bmp4(32, 24, AscendingGreys(), Ramp(32, 24, 3)));
    tree.IconList("Play\r\nInverted  \r\n\r\n\tDark\r\nTopDown.bmp \r\nUpper.BMP\r\nStop_Selected");
    tree.ScreenList("\r\nSplash \t\r\n");
    auto const outcome = Check(tree, TreeChecker::Options { 12, ImageGeometry(32, 24), true });
    EXPECT_TRUE(outcome._failures.empty()) << outcome._printed;
    EXPECT_TRUE(outcome._warnings.empty()) << outcome._printed;
    EXPECT_THAT(outcome._printed, HasSubstr("0.6.0.0, 6 icons at sector 12, 1 screens"));
    EXPECT_THAT(outcome._printed, testing::EndsWith("result: 0 failures, 0 warnings\n"));
}

TEST(TreeCheckerTest, AMissingIconListFails)
{
    Tree tree;
    tree.Screen("Splash");
    tree.ScreenList("Splash\n");
    auto const outcome = Check(tree);
    std::string const list = tree.Icons();
    EXPECT_THAT(outcome._failures,
        Contains(list + ": Cannot open " + list
            + ": packager packs nothing and writes no source; fix: create " + list
            + " with one icon file name a line"));
    EXPECT_THAT(outcome._logged, Contains(HasSubstr("Cannot open " + list)));
}

TEST(TreeCheckerTest, AMissingFileFailsWithItsLineIndexNameAndFile)
{
    Tree tree;
    tree.MakeSound();
    tree.IconList("Play\n\nGone\nStop_Selected\n");
    auto const outcome = Check(tree);
    std::string const file = tree.File("icons/Gone.bmp");
    EXPECT_THAT(outcome._failures,
        testing::ElementsAre(At(tree.Icons(), 3, 3, "icon", "Gone", file) + "there is no file " + file
                + " (packager says: BmpInput::Load cannot open " + file
                + "); fix: add the file, or remove the line",
            tree.Icons()
                + ": an icon fails to load, so packager stops after the icons: it packs no screen and writes "
                  "none"
                  " of Icons.h, Icons.py, IconsHelper.cpp and commands.py; fix: the icons' failures above"));
    EXPECT_THAT(outcome._printed, HasSubstr("FAIL " + tree.Icons() + ":3 (index 3), icon Gone"));
    EXPECT_THAT(outcome._printed, HasSubstr("result: 2 failures, 0 warnings\n"));
}

TEST(TreeCheckerTest, AForbiddenNameFails)
{
    Tree tree;
    tree.MakeSound();
    tree.Icon("Play-Pause");
    tree.IconList("Play\nPlay-Pause\n");
    auto const outcome = Check(tree);
    EXPECT_THAT(outcome._failures,
        testing::ElementsAre(At(tree.Icons(), 2, 3, "icon", "Play-Pause", tree.File("icons/Play-Pause.bmp"))
            + "name cannot contain -\".,'; fix: rename the file and its line without the characters -\".,'"));
}

TEST(TreeCheckerTest, ABrokenBitmapFailsWithTheLoadersReason)
{
    Tree tree;
    tree.MakeSound();
    auto broken = Bmp4(32, 24, AscendingGreys(), Ramp(32, 24, 0));
    broken[1] = 'A';
    tree.Raw("icons/Broken.bmp", broken);
    tree.IconList("Play\nBroken.bmp\n");
    auto const outcome = Check(tree);
    std::string const file = tree.File("icons/Broken.bmp");
    EXPECT_THAT(outcome._failures,
        Contains(At(tree.Icons(), 2, 3, "icon", "Broken", file)
            + "Wrong Bmp file magic 0x4142; fix: " + Import(file, tree.Root() + "icons", "32x24")));
}

TEST(TreeCheckerTest, ABrokenScreenFailsThoughPackagerSkipsIt)
{
    Tree tree;
    tree.MakeSound();
    tree.Raw("screens/Bad.bmp", Bytes(10, 'B'));
    tree.ScreenList("Splash\nBad\n");
    auto const outcome = Check(tree);
    std::string const file = tree.File("screens/Bad.bmp");
    EXPECT_THAT(outcome._failures,
        testing::ElementsAre(At(tree.Screens(), 2, 3, "screen", "Bad", file)
            + "source too small 10 (packager skips this screen without a word); fix: "
            + Import(file, tree.Root() + "screens")));
    EXPECT_TRUE(outcome._warnings.empty());
}

TEST(TreeCheckerTest, AnIconOfAScreensSizeFailsAndSoDoTheIconsAfterIt)
{
    Tree tree;
    tree.MakeSound();
    tree.Raw("icons/Big.bmp", Bmp4(256, 64, AscendingGreys(), Ramp(256, 64, 0)));
    tree.IconList("Big\nPlay\n");
    auto const outcome = Check(tree);
    EXPECT_THAT(outcome._failures,
        testing::ElementsAre(At(tree.Icons(), 2, 3, "icon", "Play", tree.File("icons/Play.bmp"))
                + "PostCondition !_screensCount Cannot add icons after screens; fix: an image before it in "
                + tree.Root() + "icons/list.txt is a screen's size (see its line): move that one to "
                + tree.Root() + "screens/list.txt",
            At(tree.Icons(), 1, 2, "icon", "Big", tree.File("icons/Big.bmp"))
                + "it is 256 x 64 (8192 bytes), which packager takes for a screen: the icons after it fail "
                  "and "
                  "Icons.h, Icons.py, IconsHelper.cpp and commands.py are written with the icons before it "
                  "only;"
                  " fix: move it to "
                + tree.Root() + "screens/list.txt, or make it an icon's size"));
}

TEST(TreeCheckerTest, AScreenOfAnIconsSizeFails)
{
    Tree tree;
    tree.MakeSound();
    tree.Raw("screens/Small.bmp", Bmp4(128, 32, AscendingGreys(), Ramp(128, 32, 0)));
    tree.ScreenList("Small\nSplash\n");
    auto const outcome = Check(tree);
    EXPECT_THAT(outcome._failures,
        testing::ElementsAre(At(tree.Screens(), 1, 2, "screen", "Small", tree.File("screens/Small.bmp"))
            + "it is 128 x 32 (2048 bytes), below the 4096 bytes from which packager takes an image for a "
              "screen:"
              " it packs it as an icon (framed, in the Icon enumeration), or refuses it after the first "
              "screen;"
              " fix: make it a screen's size (256 x 64 is 8192 bytes), or move it to "
            + tree.Root() + "icons/list.txt"));
}

TEST(TreeCheckerTest, AScreenOfAnIconsSizeAfterTheFirstScreenFailsForItsSize)
{
    Tree tree;
    tree.MakeSound();
    tree.Raw("screens/Small.bmp", Bmp4(128, 32, AscendingGreys(), Ramp(128, 32, 0)));
    tree.ScreenList("Splash\nSmall\n");
    auto const outcome = Check(tree);
    EXPECT_THAT(outcome._failures,
        testing::ElementsAre(At(tree.Screens(), 2, 3, "screen", "Small", tree.File("screens/Small.bmp"))
            + "it is 128 x 32 (2048 bytes), below the 4096 bytes from which packager takes an image for a "
              "screen:"
              " it packs it as an icon (framed, in the Icon enumeration), or refuses it after the first "
              "screen"
              " (packager says: PostCondition !_screensCount Cannot add icons after screens); fix: make it a"
              " screen's size (256 x 64 is 8192 bytes), or move it to "
            + tree.Root() + "icons/list.txt"));
}

TEST(TreeCheckerTest, AnEmptyImageFails)
{
    Tree tree;
    tree.MakeSound();
    tree.Raw("icons/blank.txt", Bytes { 'a', 'b', 'c' });
    tree.IconList("Play\nblank.txt\n");
    auto const outcome = Check(tree);
    std::string const file = tree.File("icons/blank.txt");
    EXPECT_THAT(outcome._failures,
        testing::ElementsAre(At(tree.Icons(), 2, 3, "icon", "blank", file)
            + "it loads as an empty image, which packager skips without a word; fix: "
            + Import(file, tree.Root() + "icons", "32x24")
            + ", then write blank on the line in place of blank.txt"));
}

TEST(TreeCheckerTest, APaletteThatIsNotTheGreyRampFailsShowingWhatEachIndexBecomes)
{
    Tree tree;
    tree.MakeSound();
    auto shuffled = AscendingGreys();
    std::swap(shuffled[0], shuffled[9]);
    tree.Icon("Odd", shuffled);
    tree.Icon("Dark", DescendingGreys());
    tree.IconList("Play\nOdd\nDark\n");
    auto const outcome = Check(tree);
    std::string const file = tree.File("icons/Odd.bmp");
    EXPECT_THAT(outcome._failures,
        testing::ElementsAre(At(tree.Icons(), 2, 3, "icon", "Odd", file)
            + "packager takes the 4-bit indices as grey levels, but the palette is not the grey ramp it "
              "assumes:"
              " index 0 (#999999, level 9) becomes level 0, index 9 (#000000, level 0) becomes level 9; fix: "
            + Import(file, tree.Root() + "icons", "32x24")));
    EXPECT_TRUE(outcome._warnings.empty());
}

TEST(TreeCheckerTest, APaletteOfTheColoursUsedOnlyFails)
{
    // ImageMagick's 16-colour BMP keeps only the colours the picture uses: here black and white.
    Tree tree;
    tree.MakeSound();
    TestSupport::BmpWriter bmp = TestSupport::BmpWriter::Gray4(
        32, std::vector<Bytes>(24, Bytes(16, 0x01)), TestSupport::BmpWriter::BlackFirst);
    bmp.palette = { TestSupport::BmpWriter::kBlack, TestSupport::BmpWriter::kWhite };
    tree.Raw("icons/Magick.bmp", bmp.Bytes());
    tree.IconList("Play\nMagick\n");
    auto const outcome = Check(tree);
    std::string const file = tree.File("icons/Magick.bmp");
    EXPECT_THAT(outcome._failures,
        testing::ElementsAre(At(tree.Icons(), 2, 3, "icon", "Magick", file)
            + "packager takes the 4-bit indices as grey levels, but the palette is not the grey ramp it "
              "assumes:"
              " index 1 (#FFFFFF, level 15) becomes level 1; fix: "
            + Import(file, tree.Root() + "icons", "32x24")));
}

TEST(TreeCheckerTest, AColouredPaletteOfRampBrightnessIsAWarningAndFailsWhenStrict)
{
    Tree tree;
    tree.MakeSound();
    TestSupport::BmpWriter bmp = TestSupport::BmpWriter::Mono(
        32, std::vector<Bytes>(24, Bytes(4, 0x0F)), TestSupport::BmpWriter::BlackFirst);
    bmp.palette = { 0x000000, 0xFFFFF0 };
    tree.Raw("icons/Tinted.bmp", bmp.Bytes());
    tree.IconList("Play\nTinted\n");
    // A 1-bit icon of 32 x 24 loads as the 4-bit icons do.
    std::string const warning = At(tree.Icons(), 2, 3, "icon", "Tinted", tree.File("icons/Tinted.bmp"))
        + "the palette holds colours; the display shows only their brightness, which packager keeps";
    auto const outcome = Check(tree);
    EXPECT_TRUE(outcome._failures.empty()) << outcome._printed;
    EXPECT_THAT(outcome._warnings, testing::ElementsAre(warning));
    EXPECT_THAT(outcome._printed, testing::EndsWith("result: 0 failures, 1 warning\n"));

    auto const strict = Check(tree, TreeChecker::Options { 12, std::nullopt, true });
    EXPECT_THAT(strict._printed, HasSubstr("FAIL " + warning + "\n"));
    EXPECT_THAT(strict._printed, testing::EndsWith("result: 1 failure, 0 warnings\n"));
}

TEST(TreeCheckerTest, TwoLinesNamingTheSameImageFail)
{
    Tree tree;
    tree.MakeSound();
    tree.IconList("Play\nStop_Selected\nPlay.bmp\n");
    auto const outcome = Check(tree);
    EXPECT_THAT(outcome._failures,
        testing::ElementsAre(At(tree.Icons(), 3, 4, "icon", "Play", tree.File("icons/Play.bmp"))
            + "the image is listed already on line 1: Icons.h and Icons.py would declare Play twice and do "
              "not"
              " compile; fix: remove this line"));
}

TEST(TreeCheckerTest, TwoNamesSpeltAlikeFail)
{
    Tree tree;
    tree.MakeSound();
    tree.Icon("play");
    tree.IconList("Play\nplay\n");
    auto const outcome = Check(tree);
    EXPECT_THAT(outcome._failures,
        testing::ElementsAre(At(tree.Icons(), 2, 3, "icon", "play", tree.File("icons/play.bmp"))
            + "Icons.h and Icons.py spell it Play, as they spell Play on line 1: they would declare it twice "
              "and"
              " do not compile; fix: rename one of the two"));
}

TEST(TreeCheckerTest, NamesTheSourcesCannotCompileFail)
{
    Tree tree;
    tree.MakeSound();
    for (char const* name : { "Play Big", "2nd", "Play(1)", "none", "INT8_MAX" })
        tree.Icon(name);
    tree.IconList("Play Big\n2nd\nPlay(1)\nnone\nINT8_MAX\n");
    auto const outcome = Check(tree);
    std::string const fix
        = "; fix: rename the file and its line to ASCII letters, digits and '_', starting with a"
          " letter, and no keyword or <stdint.h> macro";
    EXPECT_THAT(outcome._failures,
        testing::ElementsAre(At(tree.Icons(), 1, 2, "icon", "Play Big", tree.File("icons/Play Big.bmp"))
                + "Icons.h and Icons.py spell the name Play Big, which holds a space, which an identifier "
                  "cannot:"
                  " they do not compile"
                + fix,
            At(tree.Icons(), 2, 3, "icon", "2nd", tree.File("icons/2nd.bmp"))
                + "Icons.h and Icons.py spell the name 2nd, which starts with a digit: they do not compile"
                + fix,
            At(tree.Icons(), 3, 4, "icon", "Play(1)", tree.File("icons/Play(1).bmp"))
                + "Icons.h and Icons.py spell the name Play(1), which holds '(', which an identifier cannot: "
                  "they"
                  " do not compile"
                + fix,
            At(tree.Icons(), 4, 5, "icon", "none", tree.File("icons/none.bmp"))
                + "Icons.h and Icons.py spell the name None, which is a Python keyword: they do not compile"
                + fix,
            At(tree.Icons(), 5, 6, "icon", "INT8_MAX", tree.File("icons/INT8_MAX.bmp"))
                + "Icons.h and Icons.py spell the name INT8_MAX, which is a macro of <stdint.h>, which the "
                  "generated headers include, so it becomes a number: they do not compile"
                + fix));
}

TEST(TreeCheckerTest, AKeywordThatTheCapitalLetterMakesAnIdentifierPasses)
{
    // The sources write delete as Delete, which both languages take.
    Tree tree;
    tree.MakeSound();
    tree.Icon("delete");
    tree.IconList("Play\ndelete\n");
    EXPECT_TRUE(Check(tree)._failures.empty());
}

TEST(TreeCheckerTest, ANameOfTheCommandsModulesKeysFails)
{
    Tree tree;
    tree.MakeSound();
    tree.Icon("F1");
    tree.Icon("MENU_Selected");
    tree.IconList("Play\nF1\nMENU_Selected\n");
    auto const outcome = Check(tree);
    EXPECT_THAT(outcome._failures,
        testing::ElementsAre(At(tree.Icons(), 2, 3, "icon", "F1", tree.File("icons/F1.bmp"))
            + "commands.py spells it F1, a member the commands module defines already for a fixed key: the "
              "module"
              " fails to load; fix: rename the file and its line"));
}

TEST(TreeCheckerTest, IconsOfAnotherSizeFail)
{
    Tree tree;
    tree.MakeSound();
    tree.Raw("icons/Wide.bmp", Bmp4(40, 30, AscendingGreys(), Ramp(40, 30, 0)));
    tree.IconList("Play\nWide\nStop_Selected\n");
    auto const outcome = Check(tree);
    std::string const file = tree.File("icons/Wide.bmp");
    EXPECT_THAT(outcome._failures,
        testing::ElementsAre(At(tree.Icons(), 2, 3, "icon", "Wide", file)
            + "it is 40x30, not 32x24 (the size of most icons of the list): packager lays icons into sectors "
              "at"
              " one size, so this icon and every icon after it in its sector are drawn wrong; fix: "
            + Import(file, tree.Root() + "icons", "32x24")));
}

TEST(TreeCheckerTest, IconsOfAnotherSizeThanTheOneGivenFail)
{
    Tree tree;
    tree.MakeSound();
    auto const outcome = Check(tree, TreeChecker::Options { 12, ImageGeometry(16, 16), false });
    ASSERT_EQ(2u, outcome._failures.size()) << outcome._printed;
    EXPECT_EQ(outcome._failures[0],
        At(tree.Icons(), 1, 2, "icon", "Play", tree.File("icons/Play.bmp"))
            + "it is 32x24, not 16x16 (the size given with --icon): packager lays icons into sectors at one "
              "size,"
              " so this icon and every icon after it in its sector are drawn wrong; fix: "
            + Import(tree.File("icons/Play.bmp"), tree.Root() + "icons", "16x16"));
}

TEST(TreeCheckerTest, NoScreenLosesTheIconsSources)
{
    std::string const consequence
        = ": packager writes Icons.h, Icons.py, IconsHelper.cpp and commands.py when the first screen "
          "arrives, so"
          " it writes none of them (only empty Screens.h and Screens.py); fix: list at least one screen in ";
    Tree tree;
    tree.MakeSound();
    tree.ScreenList("");
    EXPECT_THAT(Check(tree)._failures,
        testing::ElementsAre(
            tree.Screens() + ": " + tree.Screens() + " names no screen" + consequence + tree.Screens()));
    tree.Remove("screens/list.txt");
    EXPECT_THAT(Check(tree)._failures,
        testing::ElementsAre(
            tree.Screens() + ": there is no " + tree.Screens() + consequence + tree.Screens()));
    tree.Remove("screens");
    EXPECT_THAT(Check(tree)._failures,
        testing::ElementsAre(tree.Screens() + ": there is no folder " + tree.Root() + "screens/" + consequence
            + tree.Screens()));
}

TEST(TreeCheckerTest, AByteOrderMarkFails)
{
    Tree tree;
    tree.MakeSound();
    tree.IconList("\xEF\xBB\xBFPlay\nStop_Selected\n");
    auto const outcome = Check(tree);
    ASSERT_GE(outcome._failures.size(), 2u) << outcome._printed;
    EXPECT_EQ(outcome._failures[0],
        tree.Icons()
            + ":1: the list starts with a UTF-8 byte-order mark (EF BB BF), which packager takes as part"
              " of the first name; fix: save "
            + tree.Icons() + " as UTF-8 without a byte-order mark");
    EXPECT_EQ(outcome._failures[1],
        At(tree.Icons(), 1, 2, "icon", "\xEF\xBB\xBFPlay", tree.File("icons/\xEF\xBB\xBFPlay.bmp"))
            + "the byte-order mark at the start of the list is taken as part of the name; fix: save "
            + tree.Icons() + " as UTF-8 without a byte-order mark");
}

TEST(TreeCheckerTest, ANameInAnotherLetterCaseFails)
{
    Tree tree;
    tree.MakeSound();
    tree.IconList("play\nStop_Selected\n");
    auto const outcome = Check(tree);
    ASSERT_FALSE(outcome._failures.empty());
    EXPECT_EQ(outcome._failures[0],
        At(tree.Icons(), 1, 2, "icon", "play", tree.File("icons/play.bmp")) + "there is no file "
            + tree.File("icons/play.bmp")
            + ", only Play.bmp, whose name differs in letter case; fix: write the line as the file is named, "
              "or"
              " rename the file");
}

TEST(TreeCheckerTest, AListNamingItselfFails)
{
    Tree tree;
    tree.MakeSound();
    tree.ScreenList("Splash\nlist.txt\n");
    auto const outcome = Check(tree);
    EXPECT_THAT(outcome._failures,
        testing::ElementsAre(At(tree.Screens(), 2, 3, "screen", "list", tree.Screens())
            + "the line names the list file itself, which packager loads as a text image and packs as an "
              "image;"
              " fix: remove the line"));
}

TEST(TreeCheckerTest, RawFramesThatPackagerPassesOverFail)
{
    Tree tree;
    tree.MakeSound();
    tree.Raw("screens/Frame.raw", Bytes(8192, 0x11));
    tree.ScreenList("Splash\nFrame.raw\n");
    auto const outcome = Check(tree);
    std::string const file = tree.File("screens/Frame.raw");
    EXPECT_THAT(outcome._failures,
        testing::ElementsAre(At(tree.Screens(), 2, 3, "screen", "Frame", file)
            + "packager passes over .raw files without a word (its loaders never take them), so the image is "
              "left"
              " out of the pack and the sources; fix: "
            + Import(file, tree.Root() + "screens")
            + ", then write Frame on the line in place of Frame.raw"));
}

TEST(TreeCheckerTest, RunLengthCompressionIsNamed)
{
    Tree tree;
    tree.MakeSound();
    TestSupport::BmpWriter bmp = TestSupport::BmpWriter::Gray4(
        32, std::vector<Bytes>(24, Bytes(16, 0x01)), TestSupport::BmpWriter::BlackFirst);
    bmp.compression = 2;
    tree.Raw("icons/Packed.bmp", bmp.Bytes());
    tree.IconList("Play\nPacked\n");
    auto const outcome = Check(tree);
    std::string const file = tree.File("icons/Packed.bmp");
    EXPECT_THAT(outcome._failures,
        Contains(At(tree.Icons(), 2, 3, "icon", "Packed", file)
            + "the BMP is run-length compressed (RLE4), and packager reads only uncompressed BMPs (it says: "
              "Bmp"
              " invalid compression 2); fix: "
            + Import(file, tree.Root() + "icons", "32x24")));
}

TEST(TreeCheckerTest, AnEightBitBmpIsNamedSo)
{
    Tree tree;
    tree.MakeSound();
    TestSupport::BmpWriter bmp;
    bmp.bitCount = 8;
    for (uint32_t k = 0; k < 256; ++k)
        bmp.palette.push_back(k * 0x010101);
    bmp.SetRows(32, std::vector<Bytes>(24, Bytes(32, 7)), false);
    tree.Raw("icons/Pillow.bmp", bmp.Bytes());
    tree.IconList("Play\nPillow\n");
    auto const outcome = Check(tree);
    std::string const file = tree.File("icons/Pillow.bmp");
    EXPECT_THAT(outcome._failures,
        Contains(At(tree.Icons(), 2, 3, "icon", "Pillow", file)
            + "the BMP has 8 bits a pixel (a palette of 256 colours), and packager reads 1-bit and 4-bit "
              "BMPs only"
              " (it says: Gray8 format not supported (only bmp mono & grayscale 16 colors without "
              "compression));"
              " fix: "
            + Import(file, tree.Root() + "icons", "32x24")));
}

TEST(TreeCheckerTest, AnImageQtDecodesInColourFails)
{
    Zar::ResourcesLibrary::Image::QtModule::SetSearchPaths(
        { std::string(PACKAGER_BINARY_DIR) + "/src/tools/packinspect/zar_qt_input.so" });
    Tree tree;
    tree.MakeSound();
    // Qt hands an RGB PNG over as 32-bit pixels.
    QImage image(32, 24, QImage::Format_RGB888);
    image.fill(Qt::white);
    ASSERT_TRUE(image.save(QString::fromStdString(tree.File("icons/Photo.png")), "PNG"));
    tree.IconList("Play\nPhoto.png\n");
    auto const outcome = Check(tree);
    Zar::ResourcesLibrary::Image::QtModule::SetSearchPaths({});
    std::string const file = tree.File("icons/Photo.png");
    EXPECT_THAT(outcome._failures,
        testing::ElementsAre(At(tree.Icons(), 2, 3, "icon", "Photo", file)
            + "it loads as Rgbx (32 bits a pixel), whose bytes packager packs as if they were 4-bit grey "
              "pixels;"
              " fix: "
            + Import(file, tree.Root() + "icons", "32x24")
            + ", then write Photo on the line in place of Photo.png"));
}

TEST(TreeCheckerTest, SectorsWhoseValuesGoWrongFail)
{
    Tree tree;
    tree.MakeSound();
    EXPECT_THAT(Check(tree, 0)._failures,
        Contains("--sector=0: the icons' values start at -20, which enum class Icon : uint16_t cannot hold:"
                 " Icons.h does not compile; fix: a sector of 2 or more (packager's default is 12)"));
    EXPECT_THAT(Check(tree, 1)._failures, Contains(HasSubstr("--sector=1: the icons' values start at -10,")));
    EXPECT_THAT(Check(tree, 300)._failures,
        Contains(
            "--sector=300: the icons' CRCs go to entries 300 to 300 of a table of 256: they land outside it;"
            " fix: a sector of 246 or less"));
    EXPECT_THAT(Check(tree, 6556)._failures,
        Contains(
            "--sector=6556: the icons' values run to 65541, past the 65535 a uint16_t holds: Icons.h does not"
            " compile; fix: a sector of 6555 or less"));
    auto const high = Check(tree, 65547);
    EXPECT_THAT(high._failures,
        Contains(
            "--sector=65547: the header keeps only the low 16 bits of the sector, 11; fix: a sector below"
            " 65536"));
    EXPECT_THAT(Check(tree, 2)._failures, testing::IsEmpty());
}

TEST(TreeCheckerTest, NamesOverflowingTheNamesAreaFail)
{
    Tree tree;
    tree.MakeSound();
    std::string list;
    for (char letter = 'A'; letter < 'A' + 15; ++letter) {
        std::string const name = std::string(240, letter);
        tree.Icon(name);
        list += name + "\n";
    }
    tree.IconList(list);
    auto const outcome = Check(tree);
    EXPECT_THAT(outcome._failures,
        Contains("the names need 3622 bytes, more than the 3552 of the names area; fix: shorter names"));
    EXPECT_THAT(outcome._failures, Contains("closing the pack: PreCondition next <= capacity"));
}

TEST(TreeCheckerTest, IconsRunningIntoTheScreensFail)
{
    Tree tree;
    tree.MakeSound();
    std::string list;
    for (int k = 0; k < 12; ++k) {
        tree.Icon("Icon" + std::to_string(k));
        list += "Icon" + std::to_string(k) + "\n";
    }
    tree.IconList(list);
    auto const outcome = Check(tree, 246);
    EXPECT_THAT(outcome._failures,
        Contains("the icons need sectors 246 to 247, which runs into the screens' sectors from 247 on; fix: a"
                 " sector of 245 or less, or fewer icons"));
    EXPECT_THAT(
        outcome._failures, Contains("the pack would not verify: two sectors map to the same CRC entry 247"));
}

TEST(TreeCheckerTest, ScreensPastTheCrcTableFailSayingHowManyFit)
{
    Tree tree;
    tree.Icon("Play");
    tree.IconList("Play\n");
    std::string list;
    for (int k = 0; k < 5; ++k) {
        tree.Screen("Screen" + std::to_string(k));
        list += "Screen" + std::to_string(k) + "\n";
    }
    tree.ScreenList(list);
    auto const outcome = Check(tree);
    EXPECT_THAT(outcome._failures,
        Contains(
            "the screens need sectors 247 to 256, past the 256-sector store whose CRC table ends at 255: 9"
            " sectors fit, 4 screens of 8192 bytes; fix: fewer screens"));
    EXPECT_THAT(outcome._failures,
        Contains(HasSubstr("the pack would not verify: sector 256 does not match its CRC")));
}

TEST(TreeCheckerTest, SmallIconsBreakTheCrcTable)
{
    // Sixteen-pixel icons go 31 to a sector, fewer sectors than the header's ten-per-sector formula.
    Tree tree;
    tree.Screen("Splash");
    tree.ScreenList("Splash\n");
    std::string list;
    for (int k = 0; k < 11; ++k) {
        WriteFile(std::filesystem::path(tree.File("icons/Small" + std::to_string(k) + ".bmp")),
            Bmp4(16, 16, AscendingGreys(), Ramp(16, 16, k)));
        list += "Small" + std::to_string(k) + "\n";
    }
    tree.IconList(list);
    auto const outcome = Check(tree);
    EXPECT_THAT(outcome._failures,
        Contains("closing the pack: PostCondition static_cast<size_t>(sectorCount) <= _crcTable.size()"));
    EXPECT_THAT(outcome._failures, Contains(HasSubstr("the pack would not verify: wrong magic FFFFFFFF")));
}

TEST(TreeCheckerTest, LogsCallStacksWhenAsked)
{
    Tree tree;
    tree.MakeSound();
    tree.IconList("Play\nGone\n");
    auto const outcome = Check(tree, 12, true);
    EXPECT_THAT(outcome._logged, Contains("50 Stack trace:"));
    EXPECT_THAT(outcome._logged, Contains(testing::StartsWith("20 '")));
}

TEST(TreeCheckerTest, AddsTheSlashToTheRoot)
{
    Tree tree;
    tree.MakeSound();
    std::string root = tree.Root();
    root.pop_back();
    TreeChecker checker(root, 12, nullptr, false);
    checker.Run();
    EXPECT_EQ(checker.FailureCount(), 0u);
}
