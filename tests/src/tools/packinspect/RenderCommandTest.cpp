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
