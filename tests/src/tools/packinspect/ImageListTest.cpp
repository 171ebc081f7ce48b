#include "ImageList.h"

#include "FileContents.h"

#include "Zar/Lt/Core/ScratchFolder.h"

#include <gtest/gtest.h>

using Zar::Lt::Core::ScratchFolder;
using Zar::ResourcesLibrary::Tools::Inspect::ImageList;

TEST(ImageListTest, AMissingListIsEmpty)
{
    ScratchFolder const folder;
    EXPECT_EQ(ImageList::Read((folder / "list.txt").string()).Text(), "");
}

TEST(ImageListTest, FindsItemsByTheNamePackagerGivesThem)
{
    ImageList const list("Play\n  Stop.bmp\r\n\nsub/Pause.png\n");
    EXPECT_EQ(list.LineOf("Play"), 0u);
    EXPECT_EQ(list.LineOf("Stop"), 1u);
    EXPECT_EQ(list.LineOf("Pause"), 3u);
    EXPECT_EQ(list.LineOf("Record"), std::nullopt);
}

TEST(ImageListTest, AppendsInOrderAndKeepsTheRestByteForByte)
{
    ImageList list("Play\r\n  Stop.bmp");
    list.Put("Pause");
    list.Put("Record");
    EXPECT_EQ(list.Text(), "Play\r\n  Stop.bmp\nPause\nRecord\n");
}

TEST(ImageListTest, AListedNameKeepsItsPlaceAndNamesTheImportedFile)
{
    ImageList list("Play\nStop.png\nPause\n");
    list.Put("Stop");
    list.Put("Play");
    EXPECT_EQ(list.Text(), "Play\nStop\nPause\n");
}

TEST(ImageListTest, ReadsTheFileAsItIs)
{
    ScratchFolder const folder;
    TestSupport::WriteFile(folder / "list.txt", std::string("A\n\nB"));
    EXPECT_EQ(ImageList::Read((folder / "list.txt").string()).Text(), "A\n\nB");
}
