#include "TreeChecker.h"

#include "BmpTree.h"
#include "FileContents.h"
#include "RecordingLogger.h"
#include "TestPacks.h"

#include "Zar/Lt/Core/ScratchFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

using namespace PackInspectTest;
using testing::AllOf;
using testing::Contains;
using testing::HasSubstr;
using TestSupport::WriteFile;
using zar::logging::test::RecordingLogger;
using Zar::Lt::Core::ScratchFolder;
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

Outcome Check(Tree const& tree, int32_t sector = 12, bool logStacks = false)
{
    RecordingLogger logger;
    TreeChecker checker(tree.Root(), sector, &logger, logStacks);
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
    EXPECT_EQ(checker.FailureCount(), outcome._failures.size());
    return outcome;
}

std::string Describe(char const* kind, int index, std::string const& name, std::string const& file)
{
    return std::string(kind) + " index " + std::to_string(index) + ", name " + name + ", file " + file;
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

TEST(TreeCheckerTest, AMissingIconListFails)
{
    Tree tree;
    tree.Screen("Splash");
    tree.ScreenList("Splash\n");
    auto const outcome = Check(tree);
    EXPECT_THAT(outcome._failures,
        Contains("icons: Cannot open " + tree.File("icons/list.txt") + " (packager would pack nothing)"));
    EXPECT_THAT(outcome._logged, Contains(HasSubstr("Cannot open " + tree.File("icons/list.txt"))));
}

TEST(TreeCheckerTest, AMissingScreenListIsFine)
{
    Tree tree;
    tree.Icon("Play");
    tree.IconList("Play\n");
    auto const outcome = Check(tree);
    EXPECT_TRUE(outcome._failures.empty()) << outcome._printed;
}

TEST(TreeCheckerTest, AMissingFileFailsWithItsIndexNameAndFile)
{
    Tree tree;
    tree.MakeSound();
    tree.IconList("Play\nGone\nStop_Selected\n");
    auto const outcome = Check(tree);
    ASSERT_EQ(outcome._failures.size(), 1u) << outcome._printed;
    EXPECT_THAT(outcome._failures[0],
        AllOf(testing::StartsWith(Describe("icon", 3, "Gone", tree.File("icons/Gone.bmp")) + ": "),
            HasSubstr("cannot open")));
    EXPECT_THAT(outcome._warnings,
        Contains("packager stops after the icons when one of them fails to load: it would pack no screen"));
    EXPECT_THAT(outcome._printed, HasSubstr("FAIL icon index 3, name Gone"));
    EXPECT_THAT(outcome._printed, HasSubstr("result: 1 failure, 1 warning\n"));
}

TEST(TreeCheckerTest, AForbiddenNameFails)
{
    Tree tree;
    tree.MakeSound();
    tree.Icon("Play-Pause");
    tree.IconList("Play\nPlay-Pause\n");
    auto const outcome = Check(tree);
    EXPECT_THAT(outcome._failures,
        testing::ElementsAre(Describe("icon", 3, "Play-Pause", tree.File("icons/Play-Pause.bmp"))
            + ": name cannot contain -\".,'"));
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
    EXPECT_THAT(outcome._failures,
        testing::ElementsAre(
            Describe("icon", 3, "Broken", tree.File("icons/Broken.bmp")) + ": Wrong Bmp file magic 0x4142"));
}

TEST(TreeCheckerTest, ABrokenScreenFailsThoughPackagerSkipsIt)
{
    Tree tree;
    tree.MakeSound();
    tree.Raw("screens/Bad.bmp", Bytes(10, 'B'));
    tree.ScreenList("Splash\nBad\n");
    auto const outcome = Check(tree);
    EXPECT_THAT(outcome._failures,
        testing::ElementsAre(Describe("screen", 3, "Bad", tree.File("screens/Bad.bmp"))
            + ": source too small 10 (packager skips this screen without a word)"));
    EXPECT_TRUE(outcome._warnings.empty());
}

TEST(TreeCheckerTest, AnIconAfterAScreenFails)
{
    Tree tree;
    tree.MakeSound();
    tree.Raw("icons/Big.bmp", Bmp4(256, 64, AscendingGreys(), Ramp(256, 64, 0)));
    tree.IconList("Big\nPlay\n");
    auto const outcome = Check(tree);
    EXPECT_THAT(outcome._failures,
        Contains(Describe("icon", 3, "Play", tree.File("icons/Play.bmp"))
            + ": PostCondition !_screensCount Cannot add icons after screens"));
}

TEST(TreeCheckerTest, AnEmptyImageFails)
{
    Tree tree;
    tree.MakeSound();
    tree.Raw("icons/blank.txt", Bytes { 'a', 'b', 'c' });
    tree.IconList("Play\nblank.txt\n");
    auto const outcome = Check(tree);
    EXPECT_THAT(outcome._failures,
        testing::ElementsAre(Describe("icon", 3, "blank", tree.File("icons/blank.txt"))
            + ": loads as an empty image, which packager skips without a word"));
}

TEST(TreeCheckerTest, WarnsOfAPaletteThatIsNotAGreyRamp)
{
    Tree tree;
    tree.MakeSound();
    auto shuffled = AscendingGreys();
    std::swap(shuffled[0], shuffled[9]);
    tree.Icon("Odd", shuffled);
    tree.Icon("Dark", DescendingGreys());
    tree.IconList("Play\nOdd\nDark\n");
    auto const outcome = Check(tree);
    EXPECT_TRUE(outcome._failures.empty()) << outcome._printed;
    EXPECT_THAT(outcome._warnings,
        testing::ElementsAre(Describe("icon", 3, "Odd", tree.File("icons/Odd.bmp"))
            + ": the 4-bit palette is neither the ascending nor the descending 16-level grey "
              "ramp; its pixels come out as palette indices, not greys"));
    EXPECT_THAT(outcome._printed, HasSubstr("WARN icon index 3, name Odd"));
}

TEST(TreeCheckerTest, WarnsOfTwoLinesNamingTheSameImage)
{
    Tree tree;
    tree.MakeSound();
    tree.IconList("Play\nStop_Selected\nPlay.bmp\n");
    auto const outcome = Check(tree);
    EXPECT_THAT(outcome._warnings, testing::ElementsAre("icons: indexes 2 and 4 both name the image Play"));
}

TEST(TreeCheckerTest, WarnsOfNamesOverflowingTheNamesArea)
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
    EXPECT_THAT(
        outcome._warnings, Contains("the names need 3622 bytes, more than the 3552 of the names area"));
    EXPECT_THAT(outcome._failures, Contains("closing the pack: PreCondition next <= capacity"));
}

TEST(TreeCheckerTest, WarnsOfIconsRunningIntoTheScreens)
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
    EXPECT_THAT(outcome._warnings,
        Contains("the icons need sectors 246 to 247, which runs into the screens' sectors from 247 on"));
    EXPECT_THAT(
        outcome._failures, Contains("the pack would not verify: two sectors map to the same CRC entry 247"));
}

TEST(TreeCheckerTest, WarnsOfScreensPastTheStore)
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
    EXPECT_THAT(
        outcome._warnings, Contains("the screens need sectors 247 to 256, past the 256-sector store"));
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
