#include "CommandRun.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace PackInspectTest;
using TestSupport::ReadBytes;
using Zar::ResourcesLibrary::Tools::Inspect::ContactSheet;
using Zar::ResourcesLibrary::Tools::Inspect::ImageGeometry;
using Zar::ResourcesLibrary::Tools::Inspect::PackFile;
using Zar::ResourcesLibrary::Tools::Inspect::PackLayout;

TEST(RenderCommandTest, RenderNeedsAnOutput)
{
    PackFolder const folder(BuildPack(WorkedExample()));
    EXPECT_EQ(Inspect({ "render", folder.Path() })._err,
        UsageText("packinspect render", "the output file is missing: give it with -o FILE.png"));
    EXPECT_EQ(Inspect({ "render", folder.Path(), "--output=" })._status, 2);
    EXPECT_EQ(Inspect({ "render", "-o", "x.png" })._err,
        UsageText("packinspect render", "the pack file is missing"));
}

TEST(RenderCommandTest, RenderWritesThePng)
{
    PackFolder const folder(BuildPack(WorkedExample()));
    std::string const png = folder.In("sheet.png");
    auto const result = Inspect({ "render", folder.Path(), "-o", png });
    EXPECT_EQ(result._status, 0) << result._err;
    EXPECT_EQ(result._out, "wrote " + png + " (13 images, 1040x584 pixels)\n");
    QImage const image(QString::fromStdString(png));
    EXPECT_EQ(image.size(), QSize(1040, 584));
}

TEST(RenderCommandTest, RenderReportsImagesPastTheEnd)
{
    auto bytes = BuildPack(WorkedExample());
    bytes.resize(3 * 4096);
    PackFolder const folder(bytes);
    auto const result = Inspect({ "render", folder.Path(), "-o", folder.In("sheet.png") });
    EXPECT_EQ(result._status, 1);
    EXPECT_EQ(result._err, "packinspect render: the image Screen0 lies past the end of the file\n");
}

TEST(RenderCommandTest, RenderRefusesWhatIsNotAPack)
{
    PackFolder const folder(Bytes(4096, 0));
    auto const result = Inspect({ "render", folder.Path(), "-o", folder.In("sheet.png") });
    EXPECT_EQ(result._status, 1);
    EXPECT_EQ(result._err, "packinspect render: " + folder.Path() + " is not a pack\n");
}

TEST(RenderCommandTest, RenderReportsAnOutputItCannotWrite)
{
    PackFolder const folder(BuildPack(WorkedExample()));
    std::string const png = folder.In("missing-folder/sheet.png");
    auto const result = Inspect({ "render", folder.Path(), "-o", png });
    EXPECT_EQ(result._status, 2);
    EXPECT_EQ(result._err, "packinspect render: cannot write " + png + "\n");
}

TEST(EndToEndTest, RenderDrawsTheDecodedLevels)
{
    ExampleRun const run;
    auto const result = run.Inspect("render oled.pack -o sheet.png");
    ASSERT_EQ(result.exitCode, 0) << result.output;
    QImage const image(QString::fromStdString((run.Folder() / "sheet.png").string()));
    ASSERT_FALSE(image.isNull());

    auto const bytes = ReadBytes(run.Pack());
    PackFile const pack(bytes);
    auto const sheet = ContactSheet::Lay(
        pack, PackLayout::Compute(pack.Header(), ImageGeometry(32, 24), ImageGeometry(256, 64)));
    ASSERT_EQ(sheet.Cells().size(), 15u);
    for (auto const& cell : sheet.Cells()) {
        auto const& geometry = cell._image._geometry;
        int mismatches = 0;
        for (uint32_t y = 0; y < geometry.Height(); ++y)
            for (uint32_t x = 0; x < geometry.Width(); ++x) {
                uint8_t const byte = bytes[cell._image.FileOffset() + y * geometry.Stride() + x / 2];
                int const grey = 17 * (x % 2 == 0 ? byte >> 4 : byte & 0x0F);
                // Check the middle of each 4 x 4 block.
                QRgb const shown = image.pixel(cell._pixels.left() + static_cast<int>(x) * 4 + 2,
                    cell._pixels.top() + static_cast<int>(y) * 4 + 1);
                mismatches += shown != qRgb(grey, grey, grey);
            }
        EXPECT_EQ(mismatches, 0) << cell._image._name;
    }
}

namespace {

// The greys of the levels drawn through a panel's curve: every shown pixel must be that of its level.
int MismatchesThrough(std::array<int, 16> const& greys, std::string const& option)
{
    PackFolder const folder(BuildPack(WorkedExample()));
    std::string const png = folder.In("sheet.png");
    auto const result = Inspect({ "render", folder.Path(), "-o", png, option });
    EXPECT_EQ(result._status, 0) << result._err;
    QImage const image(QString::fromStdString(png));
    auto const bytes = ReadBytes(folder.Path());
    PackFile const pack(bytes);
    auto const sheet = ContactSheet::Lay(
        pack, PackLayout::Compute(pack.Header(), ImageGeometry(32, 24), ImageGeometry(256, 64)));
    int mismatches = 0;
    std::set<int> levelsSeen;
    for (auto const& cell : sheet.Cells()) {
        auto const& geometry = cell._image._geometry;
        for (uint32_t y = 0; y < geometry.Height(); ++y)
            for (uint32_t x = 0; x < geometry.Width(); ++x) {
                uint8_t const byte = bytes[cell._image.FileOffset() + y * geometry.Stride() + x / 2];
                int const level = x % 2 == 0 ? byte >> 4 : byte & 0x0F;
                levelsSeen.insert(level);
                QRgb const shown = image.pixel(cell._pixels.left() + static_cast<int>(x) * 4 + 2,
                    cell._pixels.top() + static_cast<int>(y) * 4 + 1);
                mismatches += shown != qRgb(greys[level], greys[level], greys[level]);
            }
    }
    EXPECT_GE(levelsSeen.size(), 2u);
    return mismatches;
}

} // namespace

TEST(RenderCommandTest, RenderShowsLevelsThroughAPanelsGreyTable)
{
    ScratchFolder const folder;
    std::string const table = (folder / "panel.txt").string();
    WriteFile(table, std::string("0 1 4 9 16 25 36 49 64 81 100 121 144 169 196 225\n"));
    // Level L gives the light (L / 15)^2 of level 15's, coded as sRGB greys.
    std::array<int, 16> const greys { 0, 14, 36, 56, 75, 94, 111, 129, 145, 162, 178, 194, 209, 225, 240,
        255 };
    EXPECT_EQ(MismatchesThrough(greys, "--grey-table=" + table), 0);
}

TEST(RenderCommandTest, RenderShowsLevelsThroughAGamma)
{
    // Level L shows 255 x (L / 15)^(1 / 2.2), the grey that import --gamma=2.2 maps onto it.
    std::array<int, 16> const greys { 0, 74, 102, 123, 140, 155, 168, 180, 192, 202, 212, 221, 230, 239, 247,
        255 };
    EXPECT_EQ(MismatchesThrough(greys, "--gamma=2.2"), 0);
}

TEST(RenderCommandTest, RenderRefusesAWrongPanelCurve)
{
    PackFolder const folder(BuildPack(WorkedExample()));
    EXPECT_EQ(Inspect({ "render", folder.Path(), "-o", "x.png", "--gamma=0" })._err,
        UsageText("packinspect render", "--gamma takes a number from 0.1 to 10, not '0'"));
    EXPECT_EQ(Inspect({ "render", folder.Path(), "-o", "x.png", "--gamma=2", "--grey-table=t" })._err,
        UsageText("packinspect render", "give --gamma or --grey-table, not both"));
    EXPECT_EQ(Inspect({ "render", folder.Path(), "-o", "x.png", "--grey-table=/nonexistent/t" })._err,
        UsageText("packinspect render", "--grey-table: cannot read /nonexistent/t"));
    WriteFile(folder.In("t"), std::string("1 2\n"));
    EXPECT_EQ(Inspect({ "render", folder.Path(), "-o", "x.png", "--grey-table=" + folder.In("t") })._err,
        UsageText("packinspect render",
            "--grey-table " + folder.In("t")
                + ": it holds 2 numbers; it needs 16, the luminance of each level from 0 to 15"));
}
