#include "ContactSheet.h"

#include "TestPacks.h"

#include "Zar/ResourcesLibrary/Pack/PackHeader.h"
#include "Zar/ResourcesLibrary/ResourcesLibraryException.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace PackInspectTest;
using Zar::ResourcesLibrary::ResourcesLibraryException;
using Zar::ResourcesLibrary::Tools::Inspect::ContactSheet;
using Zar::ResourcesLibrary::Tools::Inspect::ImageGeometry;
using Zar::ResourcesLibrary::Tools::Inspect::PackFile;
using Zar::ResourcesLibrary::Tools::Inspect::PackLayout;

namespace {

ImageGeometry const Icon(32, 24);
ImageGeometry const Screen(256, 64);

// The level of pixel (x, y) of an image stored at data with the given stride: two pixels a byte, the
// left one in the high nibble.
int LevelAt(uint8_t const* data, std::size_t stride, int x, int y)
{
    uint8_t const byte = data[static_cast<std::size_t>(y) * stride + static_cast<std::size_t>(x / 2)];
    return x % 2 == 0 ? byte >> 4 : byte & 0x0F;
}

ContactSheet LaySheet(PackFile const& pack, ImageGeometry const& screen = Screen)
{
    return ContactSheet::Lay(pack, PackLayout::Compute(pack.Header(), Icon, screen));
}

// Every scaled pixel of the cell shows the level the pack holds for it, as grey 17 x level.
void ExpectCellShowsImage(QImage const& sheet, ContactSheet::Cell const& cell, Bytes const& file)
{
    auto const& geometry = cell._image._geometry;
    uint8_t const* data = file.data() + cell._image.FileOffset();
    int mismatches = 0;
    for (int y = 0; y < static_cast<int>(geometry.Height()) * 4; ++y)
        for (int x = 0; x < static_cast<int>(geometry.Width()) * 4; ++x) {
            int const grey = 17 * LevelAt(data, geometry.Stride(), x / 4, y / 4);
            if (sheet.pixel(cell._pixels.left() + x, cell._pixels.top() + y) != qRgb(grey, grey, grey))
                ++mismatches;
        }
    EXPECT_EQ(mismatches, 0) << cell._image._name;
}

} // namespace

TEST(ContactSheetTest, GreysRunFromBlackToWhite)
{
    EXPECT_EQ(ContactSheet::Grey(0), qRgb(0, 0, 0));
    EXPECT_EQ(ContactSheet::Grey(1), qRgb(17, 17, 17));
    EXPECT_EQ(ContactSheet::Grey(15), qRgb(255, 255, 255));
}

TEST(ContactSheetTest, LaysIconsInARowAndEachScreenOnItsOwnRow)
{
    auto contents = WorkedExample();
    contents._screens.push_back(Pattern(8192, 40));
    PackFile const pack(BuildPack(contents));
    auto const sheet = LaySheet(pack);
    auto const& cells = sheet.Cells();
    ASSERT_EQ(cells.size(), 14u);
    EXPECT_EQ(cells[0]._pixels, QRect(8, 28, 128, 96));
    EXPECT_EQ(cells[0]._label, QRect(8, 124, 128, 28));
    EXPECT_EQ(cells[1]._pixels.left(), 8 + 128 + 8);
    EXPECT_EQ(cells[1]._pixels.top(), 28);
    // Seven cells of 136 pixels fit the 1040-pixel sheet; the eighth starts the next row.
    EXPECT_EQ(cells[7]._pixels.topLeft(), QPoint(8, 28 + 96 + 28 + 8));
    EXPECT_EQ(cells[12]._pixels, QRect(8, 28 + 2 * (96 + 28 + 8), 1024, 256));
    EXPECT_EQ(cells[13]._pixels.top(), cells[12]._pixels.top() + 256 + 28 + 8);
    EXPECT_EQ(sheet.Size(), QSize(1040, cells[13]._label.bottom() + 1 + 8));
    for (auto const& cell : cells)
        EXPECT_TRUE(cell._inFile);
}

TEST(ContactSheetTest, DrawsEveryPixelAtItsGreyLevel)
{
    auto contents = WorkedExample();
    contents._icons[3] = Bytes(384, 0x0F);
    auto const bytes = BuildPack(contents);
    PackFile const pack(bytes);
    auto const sheet = LaySheet(pack);
    QImage const image = sheet.Render(pack, "title");
    ASSERT_EQ(image.size(), sheet.Size());
    for (auto const& cell : sheet.Cells())
        ExpectCellShowsImage(image, cell, bytes);
    // The gap between the first two icons shows the background.
    EXPECT_EQ(image.pixel(8 + 128 + 4, 50), ContactSheet::kBackground);
}

TEST(ContactSheetTest, WritesALabelUnderEveryImage)
{
    PackFile const pack(BuildPack(WorkedExample()));
    auto const sheet = LaySheet(pack);
    QImage const image = sheet.Render(pack, "oled.pack");
    for (auto const& cell : sheet.Cells()) {
        int textPixels = 0;
        for (int y = cell._label.top(); y <= cell._label.bottom(); ++y)
            for (int x = cell._label.left(); x <= cell._label.right(); ++x)
                textPixels += image.pixel(x, y) != ContactSheet::kBackground;
        EXPECT_GT(textPixels, 20) << cell._image._name;
    }
}

TEST(ContactSheetTest, CrossesOutImagesPastTheEndOfTheFile)
{
    auto bytes = BuildPack(WorkedExample());
    bytes.resize(4 * 4096);
    PackFile const pack(bytes);
    auto const sheet = LaySheet(pack);
    EXPECT_THAT(sheet.MissingImages(), testing::ElementsAre("Screen0"));
    QImage const image = sheet.Render(pack, "cut");
    auto const& screen = sheet.Cells().back();
    EXPECT_FALSE(screen._inFile);
    EXPECT_EQ(image.pixel(screen._pixels.center()), ContactSheet::kMissing);
    ExpectCellShowsImage(image, sheet.Cells()[11], bytes);
}

TEST(ContactSheetTest, RefusesASheetBeyondItsPixelLimit)
{
    // Screens of 2x4096 pixels take four sectors and stand 16384 pixels tall at four times their size.
    auto bytes = BuildPack(WorkedExample());
    PutU32(bytes, 20, 60);
    PackFile const pack(bytes);
    auto const sheet = LaySheet(pack, ImageGeometry(2, 4096));
    EXPECT_THAT([&] { sheet.Render(pack, "huge"); },
        testing::ThrowsMessage<ResourcesLibraryException>(
            testing::StartsWith("The contact sheet would be 1040x")));
}
