#include "CommandRun.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace PackInspectTest;
using testing::HasSubstr;
using Zar::ResourcesLibrary::Tools::Inspect::ContactSheet;
using Zar::ResourcesLibrary::Tools::Inspect::DiffSheet;

TEST(DiffCommandTest, DiffNeedsTwoPacks)
{
    for (std::vector<std::string> const& arguments :
        { std::vector<std::string> { "diff", "a" }, std::vector<std::string> { "diff", "a", "b", "c" } }) {
        auto const result = Inspect(arguments);
        EXPECT_EQ(result._status, 2);
        EXPECT_EQ(result._err,
            UsageText("packinspect diff", "two pack files are needed, the old one and the new one"));
    }
    EXPECT_EQ(Inspect({ "diff", "a", "b", "--png=" })._err,
        UsageText("packinspect diff", "the PNG file name is empty"));
}

TEST(DiffCommandTest, DiffExitsLikeCmp)
{
    auto bytes = BuildPack(WorkedExample());
    PackFolder const oldFolder(bytes);
    PackFolder const same(bytes);
    auto const equal = Inspect({ "diff", oldFolder.Path(), same.Path() });
    EXPECT_EQ(equal._status, 0);
    EXPECT_EQ(equal._out, "old " + oldFolder.Path() + "\nnew " + same.Path() + "\nthe packs are equal\n");

    auto contents = WorkedExample();
    contents._version = 0x01020305;
    PackFolder const newer(BuildPack(contents));
    auto const differ = Inspect({ "diff", oldFolder.Path(), newer.Path() });
    EXPECT_EQ(differ._status, 1);
    EXPECT_THAT(differ._out, HasSubstr("header   version 1.2.3.4 -> 1.2.3.5\n"));

    PackFolder const notAPack(Bytes(4096, 0));
    auto const trouble = Inspect({ "diff", oldFolder.Path(), notAPack.Path() });
    EXPECT_EQ(trouble._status, 2);
    EXPECT_EQ(trouble._err, "packinspect diff: " + notAPack.Path() + " is not a pack\n");

    // Both packs are checked, so that the one command names every file that does not fit.
    auto const wrongSize = Inspect({ "diff", "--icon", "16x16", oldFolder.Path(), same.Path() });
    EXPECT_EQ(wrongSize._status, 2);
    std::string const message
        = ": the geometry --icon 16x16 --screen 256x64 lays 4 sectors out, the file holds 5: "
          "the geometry is probably not the pack's\n";
    EXPECT_EQ(wrongSize._err,
        "packinspect diff: " + oldFolder.Path() + message + "packinspect diff: " + same.Path() + message);
}

TEST(DiffCommandTest, DiffDrawsTheChangedImages)
{
    auto contents = WorkedExample();
    PackFolder const oldFolder(BuildPack(contents));
    contents._icons[2][0] ^= 0xF0; // the top left pixel of Icon2, from one level to its complement
    PackFolder const newFolder(BuildPack(contents));
    std::string const png = newFolder.In("diff.png");
    auto const result = Inspect({ "diff", oldFolder.Path(), newFolder.Path(), "--png", png });
    EXPECT_EQ(result._status, 1) << result._err;
    EXPECT_THAT(result._out, HasSubstr("changed  icon    Icon2  (sector 12 offset 768)\n"));
    EXPECT_THAT(result._out, testing::EndsWith("wrote " + png + "\n"));
    QImage const image(QString::fromStdString(png));
    ASSERT_FALSE(image.isNull());
    int const top = ContactSheet::kTitleHeight + ContactSheet::kMargin;
    int const panel = 32 * ContactSheet::kScale + ContactSheet::kMargin;
    uint8_t const oldLevel = static_cast<uint8_t>(BuildPack(WorkedExample())[4096 + 768] >> 4);
    auto const pixel = [&](int panelIndex, int x) {
        return image.pixel(
            ContactSheet::kMargin + panelIndex * panel + x * ContactSheet::kScale + 1, top + 1);
    };
    EXPECT_EQ(pixel(0, 0), ContactSheet::Grey(oldLevel));
    EXPECT_EQ(pixel(1, 0), ContactSheet::Grey(static_cast<uint8_t>(oldLevel ^ 0x0F)));
    EXPECT_EQ(pixel(2, 0), DiffSheet::DifferenceColour(oldLevel, static_cast<uint8_t>(oldLevel ^ 0x0F)));
    EXPECT_EQ(pixel(2, 1), DiffSheet::kUnchanged);
}

TEST(DiffCommandTest, DiffTakesAnIconThatBecameAScreenAsRemovedAndAdded)
{
    // packager makes an image an icon or a screen by its size: Big grew from one to the other, so its
    // old and new pixels have other dimensions and are not compared, nor drawn one over the other.
    PackContents before;
    before._icons = { Pattern(384, 5), Pattern(384, 1) };
    before._screens = { Pattern(8192, 3) };
    before._names = { "Big", "Other", "Home" };
    PackContents after;
    after._icons = { Pattern(384, 1) };
    after._screens = { Pattern(8192, 9), Pattern(8192, 3) };
    after._names = { "Other", "Big", "Home" };
    PackFolder const oldFolder(BuildPack(before));
    PackFolder const newFolder(BuildPack(after));
    std::string const png = newFolder.In("diff.png");
    auto const result = Inspect({ "diff", oldFolder.Path(), newFolder.Path(), "--png", png });
    EXPECT_EQ(result._err, "");
    EXPECT_EQ(result._status, 1);
    EXPECT_EQ(result._out,
        "old " + oldFolder.Path() + "\nnew " + newFolder.Path()
            + "\nremoved  icon    Big  (was at sector 12 offset 0, value 100)\n"
              "moved    icon    Other  (sector 12 offset 384 -> sector 12 offset 0)\n"
              "moved    screen  Home  (sector 247 offset 0 -> sector 249 offset 0)\n"
              "added    screen  Big  (sector 247 offset 0, value 0)\n"
              "header   icons 2 -> 1\n"
              "header   screens 1 -> 2\n"
              "flash    sectors 12 247 248 249 250 and the header sector: 6 sectors, 24576 bytes\n"
              "wrote "
            + png + "\n");
    // No image changed, so the sheet holds only its title.
    QImage const image(QString::fromStdString(png));
    ASSERT_FALSE(image.isNull());
    EXPECT_EQ(image.height(), ContactSheet::kTitleHeight + ContactSheet::kMargin);
}

TEST(DiffCommandTest, DiffReportsAPngItCannotWrite)
{
    PackFolder const folder(BuildPack(WorkedExample()));
    std::string const png = folder.In("missing-folder/diff.png");
    auto const result = Inspect({ "diff", folder.Path(), folder.Path(), "--png", png });
    EXPECT_EQ(result._status, 2);
    EXPECT_EQ(result._err, "packinspect diff: cannot write " + png + "\n");
}
