#include "ImageImporter.h"

#include "FileContents.h"
#include "PackFile.h"
#include "PackLayout.h"
#include "PackagerTree.h"
#include "TestPacks.h"

#include "Zar/Lt/Core/ScratchFolder.h"
#include "Zar/ResourcesLibrary/ResourcesLibraryException.h"

#include <QImage>
#include <QPainter>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <map>

using namespace PackInspectTest;
using Zar::Lt::Core::ScratchFolder;
using Zar::ResourcesLibrary::ResourcesLibraryException;
using Zar::ResourcesLibrary::Tools::Inspect::Ditherer;
using Zar::ResourcesLibrary::Tools::Inspect::GreyMapping;
using Zar::ResourcesLibrary::Tools::Inspect::ImageFit;
using Zar::ResourcesLibrary::Tools::Inspect::ImageGeometry;
using Zar::ResourcesLibrary::Tools::Inspect::ImageImporter;
using Zar::ResourcesLibrary::Tools::Inspect::ImportSettings;
using Zar::ResourcesLibrary::Tools::Inspect::PackFile;
using Zar::ResourcesLibrary::Tools::Inspect::PackLayout;

namespace {

namespace fs = std::filesystem;

// An anti-aliased RGBA drawing: a soft disc over transparency, with a coloured bar.
QImage Drawing(int width, int height)
{
    QImage image(width, height, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(230, 230, 230, 200));
    painter.drawEllipse(QRectF(width * 0.2, height * 0.2, width * 0.6, height * 0.6));
    painter.setBrush(QColor(200, 40, 90));
    painter.drawRect(QRectF(width * 0.1, height * 0.7, width * 0.8, height * 0.1));
    return image;
}

// Greys from black at the left to white at the right, in 16 bits a channel.
QImage Gradient16(int width, int height)
{
    QImage image(width, height, QImage::Format_Grayscale16);
    for (int y = 0; y < height; ++y) {
        auto* line = reinterpret_cast<uint16_t*>(image.scanLine(y));
        for (int x = 0; x < width; ++x)
            line[x] = static_cast<uint16_t>(x * 65535 / (width - 1));
    }
    return image;
}

std::string Save(QImage const& image, fs::path const& path, char const* format = "PNG")
{
    EXPECT_TRUE(image.save(QString::fromStdString(path.string()), format));
    return path.string();
}

ImportSettings Settings(std::vector<std::string> files, fs::path const& folder)
{
    ImportSettings settings;
    settings._files = std::move(files);
    settings._folder = folder.string();
    return settings;
}

std::string ProblemOf(ImportSettings const& settings)
{
    try {
        ImageImporter::Prepare(settings);
    } catch (ResourcesLibraryException const& error) {
        return error.what();
    }
    return "no problem";
}

ImageImporter::Plan Import(ImportSettings const& settings)
{
    auto plan = ImageImporter::Prepare(settings);
    ImageImporter::Commit(plan, settings);
    return plan;
}

// Every file of a folder tree with its bytes.
std::map<std::string, std::vector<uint8_t>> Snapshot(fs::path const& root)
{
    std::map<std::string, std::vector<uint8_t>> files;
    for (auto const& entry : fs::recursive_directory_iterator(root))
        if (entry.is_regular_file())
            files[entry.path().string()] = TestSupport::ReadBytes(entry.path());
    return files;
}

uint8_t LevelAt(ImageImporter::Image const& image, uint32_t x, uint32_t y)
{
    return image._levels[y * image._width + x];
}

} // namespace

TEST(ImageImporterTest, KnowsTheKindOfATreeFolder)
{
    EXPECT_EQ(ImageImporter::KindOfFolder("bmp/icons"), ImageImporter::Kind::Icon);
    EXPECT_EQ(ImageImporter::KindOfFolder("bmp/screens/"), ImageImporter::Kind::Screen);
    EXPECT_EQ(ImageImporter::KindOfFolder("bmp"), std::nullopt);
}

TEST(ImageImporterTest, PackagerPacksEveryPixelAsTheLevelChosen)
{
    PackagerTree tree;
    ScratchFolder const sources;
    fs::path const bmp = tree.Folder() / "bmp";
    auto icons = Settings(
        { Save(Drawing(64, 64), sources / "Disc.png"), Save(Gradient16(40, 20), sources / "Ramp 16.png"),
            Save(Drawing(32, 24).convertToFormat(QImage::Format_Indexed8), sources / "Palette.png"),
            Save(Drawing(32, 24), sources / "Stop_Selected.png") },
        bmp / "icons");
    icons._size = QSize(32, 24);
    icons._fit = ImageFit::Mode::Contain;
    icons._dither = Ditherer::Mode::FloydSteinberg;
    auto const iconPlan = Import(icons);
    auto screens = Settings({ Save(Drawing(512, 128), sources / "Splash.png") }, bmp / "screens");
    screens._size = QSize(256, 64);
    screens._fit = ImageFit::Mode::Cover;
    auto const screenPlan = Import(screens);

    EXPECT_EQ(TestSupport::ReadText(bmp / "icons/list.txt"), "Disc\nRamp_16\nPalette\nStop_Selected\n");
    EXPECT_EQ(TestSupport::ReadText(bmp / "screens/list.txt"), "Splash\n");
    tree.Build("version 1.2.3.4 sector 14");
    ASSERT_EQ(tree.Run().exitCode, 0);

    auto const pack = PackFile::Load(tree.Pack());
    auto const layout = PackLayout::Compute(pack.Header(), ImageGeometry(32, 24), ImageGeometry(256, 64));
    std::vector<ImageImporter::Image> imported = iconPlan._images;
    imported.insert(imported.end(), screenPlan._images.begin(), screenPlan._images.end());
    ASSERT_EQ(layout.Images().size(), imported.size());
    for (std::size_t index = 0; index < imported.size(); ++index) {
        auto const& packed = layout.Images()[index];
        auto const& image = imported[index];
        EXPECT_EQ(packed._name, image._name);
        uint8_t const* data = pack.Slice(packed.FileOffset(), packed._geometry.Size()).data();
        bool const framed = packed._kind == PackLayout::Kind::Icon && image._name != "Stop_Selected";
        for (uint32_t y = 0; y < image._height; ++y)
            for (uint32_t x = 0; x < image._width; ++x) {
                bool const border = x == 0 || y == 0 || x + 1 == image._width || y + 1 == image._height;
                // packager frames an icon with level 3.
                uint8_t const expected = framed && border ? 3 : LevelAt(image, x, y);
                ASSERT_EQ(packed._geometry.Level(data, x, y), expected)
                    << image._name << " " << x << "," << y;
            }
    }
    // The drawings are not empty: many levels were used.
    std::set<uint8_t> const used(imported[1]._levels.begin(), imported[1]._levels.end());
    EXPECT_EQ(used.size(), 16u);
}

TEST(ImageImporterTest, OneBitImagesPackAsBlackAndWhite)
{
    PackagerTree tree;
    ScratchFolder const sources;
    auto settings
        = Settings({ Save(Gradient16(40, 20).convertToFormat(QImage::Format_RGB32), sources / "Edge.png") },
            tree.Folder() / "bmp/icons");
    settings._mapping = GreyMapping::Threshold(128);
    auto const plan = Import(settings);
    tree.Build("version 1.2.3.4 sector 14");
    auto const pack = PackFile::Load(tree.Pack());
    auto const layout = PackLayout::Compute(pack.Header(), ImageGeometry(40, 20), ImageGeometry(256, 64));
    uint8_t const* data = pack.Slice(layout.Images()[0].FileOffset(), 40 * 20).data();
    for (uint32_t x = 1; x < 39; ++x) {
        uint8_t const expected = x * 65535 / 39 / 257 >= 128 ? 15 : 0;
        EXPECT_EQ(LevelAt(plan._images[0], x, 5), expected) << x;
        EXPECT_EQ(layout.Images()[0]._geometry.Level(data, x, 5), expected) << x;
    }
}

TEST(ImageImporterTest, InvertsBeforeMapping)
{
    ScratchFolder const tree;
    QImage image(4, 1, QImage::Format_RGB32);
    image.setPixel(0, 0, qRgb(0, 0, 0));
    image.setPixel(1, 0, qRgb(255, 255, 255));
    image.setPixel(2, 0, qRgb(119, 119, 119)); // level 7, inverted 136: level 8
    image.setPixel(3, 0, qRgb(255, 0, 0)); // luma 76, inverted 179: level 11
    auto settings = Settings({ Save(image, tree / "Row.png") }, tree / "icons");
    settings._invert = true;
    EXPECT_EQ(ImageImporter::Prepare(settings)._images[0]._levels, (std::vector<uint8_t> { 15, 0, 8, 11 }));
    settings._invert = false;
    EXPECT_EQ(ImageImporter::Prepare(settings)._images[0]._levels, (std::vector<uint8_t> { 0, 15, 7, 4 }));
}

TEST(ImageImporterTest, TransparencyShowsTheBackground)
{
    ScratchFolder const tree;
    QImage image(2, 1, QImage::Format_ARGB32);
    image.setPixel(0, 0, qRgba(255, 255, 255, 0));
    image.setPixel(1, 0, qRgba(255, 255, 255, 128)); // half over black: 128, level 8
    auto settings = Settings({ Save(image, tree / "Half.png") }, tree / "icons");
    EXPECT_EQ(ImageImporter::Prepare(settings)._images[0]._levels, (std::vector<uint8_t> { 0, 8 }));
    settings._background = 255;
    EXPECT_EQ(ImageImporter::Prepare(settings)._images[0]._levels, (std::vector<uint8_t> { 15, 15 }));
}

TEST(ImageImporterTest, TheSameInputGivesTheSameBytes)
{
    ScratchFolder const tree;
    auto settings = Settings({ Save(Drawing(50, 30), tree / "Disc.png") }, tree / "icons");
    settings._size = QSize(32, 24);
    settings._fit = ImageFit::Mode::Contain;
    for (auto const mode : { Ditherer::Mode::None, Ditherer::Mode::Ordered, Ditherer::Mode::FloydSteinberg,
             Ditherer::Mode::Atkinson }) {
        settings._dither = mode;
        EXPECT_EQ(ImageImporter::Prepare(settings)._images[0]._file,
            ImageImporter::Prepare(settings)._images[0]._file);
    }
}

TEST(ImageImporterTest, WarnsOfPixelsInTheFrameOfAnIcon)
{
    ScratchFolder const tree;
    QImage image(8, 8, QImage::Format_RGB32);
    image.fill(Qt::black);
    image.setPixel(7, 3, qRgb(255, 255, 255));
    std::string const file = Save(image, tree / "Dot.png");
    auto const plan = ImageImporter::Prepare(Settings({ file }, tree / "icons"));
    EXPECT_EQ(plan._warnings,
        std::vector<std::string> { file
            + ": Dot has drawn pixels in its outer one-pixel border, first at (7, 3), which packager paints "
              "over with the icon "
              "frame" });
    EXPECT_TRUE(ImageImporter::Prepare(Settings({ Save(image, tree / "Dot_Selected.png") }, tree / "icons"))
                    ._warnings.empty());
}

TEST(ImageImporterTest, ListsNamesInTheOrderGivenAfterThoseListed)
{
    ScratchFolder const tree;
    TestSupport::WriteFile(tree / "icons/list.txt", std::string("Old.bmp\n"));
    QImage image(8, 8, QImage::Format_RGB32);
    image.fill(Qt::black);
    Import(Settings({ Save(image, tree / "b.png"), Save(image, tree / "a.png") }, tree / "icons"));
    EXPECT_EQ(TestSupport::ReadText(tree / "icons/list.txt"), "Old.bmp\nb\na\n");
    EXPECT_TRUE(fs::exists(tree / "icons/a.bmp"));
    EXPECT_FALSE(fs::exists(tree / "icons/a.bmp.import"));
}

TEST(ImageImporterTest, ReplacesAListedImageOnlyWhenForced)
{
    ScratchFolder const tree;
    TestSupport::WriteFile(tree / "icons/list.txt", std::string("Play\nStop\n"));
    TestSupport::WriteFile(tree / "icons/Play.bmp", std::string("old"));
    QImage image(8, 8, QImage::Format_RGB32);
    image.fill(Qt::black);
    std::string const file = Save(image, tree / "Play.png");
    auto settings = Settings({ file }, tree / "icons");
    EXPECT_EQ(ProblemOf(settings),
        file + ": the name Play is listed already in " + (tree / "icons/list.txt").string()
            + "; give --force to replace its file, or another name with --name");
    settings._force = true;
    Import(settings);
    EXPECT_EQ(TestSupport::ReadText(tree / "icons/list.txt"), "Play\nStop\n");
    EXPECT_NE(TestSupport::ReadText(tree / "icons/Play.bmp"), "old");
}

TEST(ImageImporterTest, RefusesEachProblemNamingTheFile)
{
    ScratchFolder const tree;
    QImage small(8, 8, QImage::Format_RGB32);
    small.fill(Qt::black);
    std::string const missing = (tree / "Missing.png").string();
    EXPECT_EQ(ProblemOf(Settings({ missing }, tree / "icons")),
        missing + ": cannot open it: No such file or directory");

    std::string const text = (tree / "Notes.png").string();
    TestSupport::WriteFile(text, std::string("not an image at all"));
    EXPECT_EQ(ProblemOf(Settings({ text }, tree / "icons")),
        text
            + ": it is not an image Qt can read (PNG, JPEG, GIF, BMP, PGM, PPM or SVG); export it in one of "
              "those formats");

    // The generated sources spell the name None, Python's keyword.
    std::string const keyword = Save(small, tree / "none.png");
    std::string const keywordProblem
        = ": the name none, None in the generated sources, is a Python keyword; give another with --name or "
          "rename the file";
    EXPECT_EQ(ProblemOf(Settings({ keyword }, tree / "icons")), keyword + keywordProblem);

    std::string const big = Save(QImage(128, 64, QImage::Format_RGB32), tree / "Big.png");
    EXPECT_EQ(ProblemOf(Settings({ big }, tree / "icons")),
        big
            + ": 128x64 is 4096 bytes at 4 bits per pixel, which packager packs as a screen, not an icon; "
              "import it into "
              "screens or make it smaller");
    EXPECT_EQ(ProblemOf(Settings({ keyword }, tree / "screens")), keyword + keywordProblem);
    std::string const icon = Save(small, tree / "Small.png");
    EXPECT_EQ(ProblemOf(Settings({ icon }, tree / "screens")),
        icon
            + ": 8x8 is 32 bytes at 4 bits per pixel, which packager packs as an icon, not a screen; import "
              "it into icons "
              "or make it larger");

    auto sized = Settings({ icon }, tree / "icons");
    sized._size = QSize(32, 24);
    EXPECT_EQ(ProblemOf(sized),
        icon
            + ": it is 8x8 pixels, not the 32x24 of --size; give --fit=contain, cover or stretch to scale "
              "it");

    std::string const odd = Save(QImage(9, 4, QImage::Format_RGB32), tree / "Odd.png");
    EXPECT_EQ(ProblemOf(Settings({ odd }, tree / "icons")),
        odd
            + ": packager reads 4-bit rows of a width of 9 (8 k + 1) one byte short; choose a width one "
              "pixel wider or "
              "narrower");

    auto clash = Settings({ icon, Save(small, tree / "sub Small.png") }, tree / "icons");
    fs::create_directory(tree / "other");
    clash._files[1] = Save(small, tree / "other/Small.png");
    EXPECT_EQ(ProblemOf(clash),
        clash._files[1] + ": the name Small is also that of " + icon
            + "; give one of them another with --name or rename the file");

    auto named = Settings({ icon, odd }, tree / "icons");
    named._name = "Thing";
    EXPECT_EQ(ProblemOf(named),
        "--name names one file, and 2 are given; import them one at a time or rename the files");
    EXPECT_EQ(ProblemOf(Settings({ icon }, tree / "bmp")),
        "-o " + (tree / "bmp").string()
            + ": not a tree's icons or screens folder; give ROOT/icons or ROOT/screens");
    EXPECT_EQ(ProblemOf(Settings({ icon }, tree / "nowhere/icons")),
        "-o " + (tree / "nowhere/icons").string() + ": its tree folder " + (tree / "nowhere").string()
            + " does not exist");
}

TEST(ImageImporterTest, AFailureLeavesTheTreeAsItWas)
{
    PackagerTree tree;
    ScratchFolder const sources;
    TestSupport::WriteFile(tree.Folder() / "bmp/icons/list.txt", std::string("Kept\n"));
    auto const before = Snapshot(tree.Folder());
    QImage small(8, 8, QImage::Format_RGB32);
    small.fill(Qt::black);
    std::string const good = Save(small, sources / "Good.png");
    std::string const truncated = (sources / "Cut.png").string();
    auto bytes = TestSupport::ReadBytes(Save(Drawing(64, 64), sources / "Whole.png"));
    bytes.resize(bytes.size() / 2);
    TestSupport::WriteFile(truncated, bytes);
    auto const settings = Settings({ good, truncated }, tree.Folder() / "bmp/icons");
    EXPECT_THAT(ProblemOf(settings), testing::StartsWith(truncated + ": cannot decode it ("));
    EXPECT_THAT(
        ProblemOf(settings), testing::EndsWith("); the file is truncated or damaged, export it again"));
    EXPECT_EQ(Snapshot(tree.Folder()), before);
}

TEST(ImageImporterTest, PacksLevelsAsPackagerStoresThem)
{
    std::vector<uint8_t> const levels { 1, 2, 3, 15, 0, 4 };
    EXPECT_EQ(
        ImageImporter::Pack4(levels, 3, 2), (std::vector<uint8_t> { 0x12, 0x30, 0, 0, 0xF0, 0x40, 0, 0 }));
    EXPECT_EQ(ImageImporter::Pack1({ 15, 0, 15, 0, 0, 0, 0, 0, 15 }, 9, 1),
        (std::vector<uint8_t> { 0xA0, 0x80, 0, 0 }));
}

TEST(ImageImporterTest, ADesignersFilesPackAsConvertedAndTheTreeChecksClean)
{
    PackagerTree tree;
    fs::path const designer = fs::path(PACKAGER_SOURCE_DIR) / "tests/data/designer";
    fs::path const bmp = tree.Folder() / "bmp";
    std::vector<std::string> iconFiles;
    for (char const* file : { "disc.png", "ramp16.png", "palette.png", "photo.jpg", "spinner.gif", "logo.svg",
             "rgb24.bmp", "pal8.bmp" })
        iconFiles.push_back((designer / file).string());
    auto icons = Settings(iconFiles, bmp / "icons");
    icons._size = QSize(32, 24);
    icons._fit = ImageFit::Mode::Contain;
    auto const iconPlan = Import(icons);
    auto screens = Settings({ (designer / "splash.png").string() }, bmp / "screens");
    screens._size = QSize(256, 64);
    screens._fit = ImageFit::Mode::Contain;
    screens._dither = Ditherer::Mode::FloydSteinberg;
    auto const splashPlan = Import(screens);
    screens._files = { (designer / "logo.svg").string() };
    screens._name = "Banner";
    screens._fit = ImageFit::Mode::Cover;
    auto const bannerPlan = Import(screens);

    EXPECT_EQ(TestSupport::ReadText(bmp / "icons/list.txt"),
        "disc\nramp16\npalette\nphoto\nspinner_00\nspinner_01\nspinner_02\nlogo\nrgb24\npal8\n");
    EXPECT_EQ(TestSupport::ReadText(bmp / "screens/list.txt"), "splash\nBanner\n");
    tree.Build("version 1.2.3.4 sector 14");
    auto const check = TestSupport::RunShellCommand(
        TestSupport::ShellProgram(PackinspectPath()) + " check", tree.Folder());
    EXPECT_EQ(check.exitCode, 0) << check.output;
    EXPECT_THAT(check.output, testing::HasSubstr("result: 0 failures, 0 warnings"));
    auto const verify = TestSupport::RunShellCommand(
        TestSupport::ShellProgram(PackinspectPath()) + " verify " + TestSupport::ShellQuoted(tree.Pack()),
        tree.Folder());
    EXPECT_EQ(verify.exitCode, 0) << verify.output;

    auto const pack = PackFile::Load(tree.Pack());
    auto const layout = PackLayout::Compute(pack.Header(), ImageGeometry(32, 24), ImageGeometry(256, 64));
    std::vector<ImageImporter::Image> imported = iconPlan._images;
    imported.push_back(splashPlan._images[0]);
    imported.push_back(bannerPlan._images[0]);
    ASSERT_EQ(layout.Images().size(), imported.size());
    for (std::size_t index = 0; index < imported.size(); ++index) {
        auto const& packed = layout.Images()[index];
        auto const& image = imported[index];
        ASSERT_EQ(packed._name, image._name);
        uint8_t const* data = pack.Slice(packed.FileOffset(), packed._geometry.Size()).data();
        bool const framed = packed._kind == PackLayout::Kind::Icon;
        for (uint32_t y = 0; y < image._height; ++y)
            for (uint32_t x = 0; x < image._width; ++x) {
                bool const border = x == 0 || y == 0 || x + 1 == image._width || y + 1 == image._height;
                uint8_t const expected = framed && border ? 3 : LevelAt(image, x, y);
                ASSERT_EQ(packed._geometry.Level(data, x, y), expected)
                    << image._name << " " << x << "," << y;
            }
    }
}

TEST(ImageImporterTest, AFileThatCannotBeWrittenUndoesTheWholeImport)
{
    ScratchFolder const tree;
    TestSupport::WriteFile(tree / "icons/list.txt", std::string("Old\n"));
    // A folder where B's file would go: its new file is written beside it, and cannot replace it.
    fs::create_directory(tree / "icons/B.bmp");
    auto const before = Snapshot(tree.Path());
    QImage image(8, 8, QImage::Format_RGB32);
    image.fill(Qt::black);
    ScratchFolder const sources;
    auto const settings
        = Settings({ Save(image, sources / "A.png"), Save(image, sources / "B.png") }, tree / "icons");
    auto const plan = ImageImporter::Prepare(settings);
    std::string const target = (tree / "icons/B.bmp").string();
    EXPECT_THAT([&] { ImageImporter::Commit(plan, settings); },
        testing::ThrowsMessage<ResourcesLibraryException>(
            testing::StartsWith(target + ": cannot write it: ")));
    EXPECT_EQ(Snapshot(tree.Path()), before);
    EXPECT_FALSE(fs::exists(tree / "icons/A.bmp"));
    EXPECT_FALSE(fs::exists(tree / "icons/B.bmp.import"));
}
