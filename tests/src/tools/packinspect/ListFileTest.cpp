#include "ListFile.h"

#include "Zar/Lt/Core/ScratchFolder.h"
#include "Zar/ResourcesLibrary/Image/InputSequence.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::ElementsAre;
using Zar::Lt::Core::ScratchFolder;
using Zar::ResourcesLibrary::Image::FileFormat;
using Zar::ResourcesLibrary::Image::InputSequence;
using Zar::ResourcesLibrary::Tools::Inspect::ListFile;

namespace {

// The items packager reads from the list, and the lines the list file finds them on.
std::vector<int> LinesOf(std::string const& text, std::vector<std::string>* items = nullptr)
{
    ScratchFolder folder;
    std::string const path = folder.Write("list.txt", std::vector<uint8_t>(text.begin(), text.end()));
    InputSequence sequence(FileFormat::None, folder.Prefix(), "%04", true);
    sequence.AddList(path);
    if (items)
        *items = sequence.Items();
    return ListFile::Read(path).LinesOf(sequence.Items());
}

} // namespace

TEST(ListFileTest, LinesAreCountedAsAnEditorDoesSkippingBlankOnes)
{
    std::vector<std::string> items;
    EXPECT_THAT(LinesOf("Play\n\n  \t\nStop.bmp  \r\nBack", &items), ElementsAre(1, 4, 5));
    EXPECT_THAT(items, ElementsAre("Play", "Stop.bmp", "Back"));
}

TEST(ListFileTest, CarriageReturnsAndTrailingBlanksDoNotCount)
{
    EXPECT_THAT(LinesOf("\r\nA \r\n\r\nB\t\r\n"), ElementsAre(2, 4));
}

TEST(ListFileTest, AByteOrderMarkIsFoundAndStaysInTheFirstItem)
{
    ScratchFolder folder;
    std::string const text = std::string(ListFile::kByteOrderMark) + "Play\n";
    auto const list
        = ListFile::Read(folder.Write("list.txt", std::vector<uint8_t>(text.begin(), text.end())));
    EXPECT_TRUE(list.Exists());
    EXPECT_TRUE(list.StartsWithByteOrderMark());
    ASSERT_EQ(1u, list.ItemLines().size());
    EXPECT_EQ("\xEF\xBB\xBFPlay", list.ItemLines()[0]._item);
    EXPECT_THAT(LinesOf(text), ElementsAre(1));
}

TEST(ListFileTest, AMissingListDoesNotExist)
{
    ScratchFolder folder;
    auto const list = ListFile::Read(folder.PathOf("list.txt"));
    EXPECT_FALSE(list.Exists());
    EXPECT_FALSE(list.StartsWithByteOrderMark());
    EXPECT_TRUE(list.ItemLines().empty());
}

TEST(ListFileTest, ItemsThatDoNotMatchGiveNoLines)
{
    ScratchFolder folder;
    auto const list = ListFile::Read(folder.Write("list.txt", std::vector<uint8_t> { 'A', '\n', 'B' }));
    EXPECT_THAT(list.LinesOf({ "A", "C" }), ElementsAre(0, 0));
    EXPECT_THAT(list.LinesOf({ "A" }), ElementsAre(0));
    EXPECT_THAT(list.LinesOf({ "A", "B" }), ElementsAre(1, 2));
}

TEST(ListFileTest, ALongLineIsCutAsPackagerCutsIt)
{
    std::string const longName(300, 'x');
    std::vector<std::string> items;
    EXPECT_THAT(LinesOf(longName + "\nNext\n", &items), ElementsAre(1, 2));
    EXPECT_EQ(std::string(255, 'x'), items[0]);
}
