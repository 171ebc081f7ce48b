#include "PackExtractor.h"

#include "FileContents.h"
#include "PackFile.h"
#include "PackLayout.h"
#include "PackagerTree.h"

#include "PackExporter.h"

#include "Zar/Lt/Core/ScratchFolder.h"
#include "Zar/ResourcesLibrary/Image/InputSequence.h"
#include "Zar/ResourcesLibrary/ResourcesLibraryException.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

using namespace PackInspectTest;
using testing::HasSubstr;
using TestSupport::BmpWriter;
using TestSupport::ReadBytes;
using TestSupport::ReadText;
using TestSupport::RunShellCommand;
using TestSupport::ShellProgram;
using TestSupport::ShellQuoted;
using Zar::Lt::Core::ScratchFolder;
using Zar::ResourcesLibrary::ResourcesLibraryException;
using Zar::ResourcesLibrary::Image::InputSequence;
using Zar::ResourcesLibrary::Tools::PackExporter;
using Zar::ResourcesLibrary::Tools::Inspect::ImageGeometry;
using Zar::ResourcesLibrary::Tools::Inspect::PackExtractor;
using Zar::ResourcesLibrary::Tools::Inspect::PackFile;
using Zar::ResourcesLibrary::Tools::Inspect::PackLayout;

namespace {

// A one-word command for scripts that run "$PACKAGER": this build's packager, started as the tests
// start it (through the emulator of a build for another machine).
std::string PackagerForScripts(ScratchFolder const& folder)
{
    std::filesystem::path const wrapper = folder / "packager";
    TestSupport::WriteFile(wrapper, "#!/bin/sh\nexec " + ShellProgram(PackagerPath()) + " \"$@\"\n");
    std::filesystem::permissions(wrapper, std::filesystem::perms::owner_all);
    return wrapper.string();
}

// Extracts the tree's pack with the given geometry, rebuilds it with the command extract printed and
// expects the pack, the summary and every generated file to come out the same.
void ExpectRoundTrip(PackagerTree const& tree, std::string const& iconOption = "")
{
    ASSERT_EQ(tree.Run().exitCode, 0) << tree.Run().output;
    ASSERT_TRUE(std::filesystem::exists(tree.Pack())) << tree.Summary();
    ScratchFolder const rebuilt;
    auto const extract = RunShellCommand(ShellProgram(PackinspectPath()) + " extract " + iconOption + " "
        + ShellQuoted(tree.Pack()) + " --force -o " + ShellQuoted(rebuilt.Path().string()));
    ASSERT_EQ(extract.exitCode, 0) << extract.output;
    ScratchFolder const tools;
    auto const rebuild = RunShellCommand(
        "PACKAGER=" + ShellQuoted(PackagerForScripts(tools)) + " sh rebuild.sh > summary.txt",
        rebuilt.Path());
    ASSERT_EQ(rebuild.exitCode, 0) << rebuild.output;

    EXPECT_EQ(ReadText(rebuilt / "summary.txt"), tree.Summary());
    for (auto const& output : PackagerOutputs()) {
        bool const present = std::filesystem::exists(tree.Folder() / output);
        ASSERT_EQ(std::filesystem::exists(rebuilt / output), present) << output;
        if (present) {
            EXPECT_TRUE(ReadBytes(rebuilt / output) == ReadBytes(tree.Folder() / output)) << output;
        }
    }
}

Bytes Icon4(int seed)
{
    return Bmp4(32, 24, seed % 2 ? AscendingGreys() : DescendingGreys(), Ramp(32, 24, seed));
}

Bytes Icon1(int seed) { return Bmp1(32, 24, seed, seed % 2 ? BmpWriter::WhiteFirst : BmpWriter::BlackFirst); }

Bytes Screen4(int seed) { return Bmp4(256, 64, AscendingGreys(), Ramp(256, 64, seed)); }

std::optional<std::string> RefusalOf(PackagerTree const& tree, ImageGeometry const& icon)
{
    PackFile const pack = PackFile::Load(tree.Pack());
    return PackExtractor(pack, PackLayout::Compute(pack.Header(), icon, ImageGeometry(256, 64))).Refusal();
}

} // namespace

TEST(PackExtractorTest, RebuildsSixtyIconsOfEveryKindByteForByte)
{
    PackagerTree tree;
    // Names of every kind packager takes: lower case (capitalised in the sources), white space
    // inside, UTF-8, digits first, punctuation it allows, the name commands.py leaves out, and
    // selected variants, which packager does not frame, next to a near miss that it does frame.
    std::vector<std::string> const special { "Play", "Play_Selected", "play_lower", "Two Words", "Grüße",
        "42nd", "A+B", "x#1", "100%", "(paren)", "empty", "Stop_selected", "Selected", "Tab\tInside" };
    for (int k = 0; k < 60; ++k) {
        std::string const name = k < static_cast<int>(special.size()) ? special[static_cast<std::size_t>(k)]
                                                                      : "Icon" + std::to_string(k);
        tree.Icon(name, k % 3 == 0 ? Icon1(k) : Icon4(k));
    }
    for (int k = 0; k < 3; ++k)
        tree.Screen("Screen" + std::to_string(k), Screen4(k));
    tree.Build("version 2.7.1.9 sector 30");
    EXPECT_THAT(tree.Summary(), HasSubstr("2.7.1.9, 60 icons at sector 30, 3 screens"));
    ExpectRoundTrip(tree);
}

TEST(PackExtractorTest, RebuildsMonochromeIconsWithPixelsInTheirPadding)
{
    // A 1-bit row of 12 pixels fills a whole 4-bit row of 8 bytes, the padding pixels included: those
    // bytes are in the pack and must come back.
    PackagerTree tree;
    for (int k = 0; k < 5; ++k)
        tree.Icon("Mono" + std::to_string(k), Bmp1(12, 10, k, BmpWriter::WhiteFirst));
    tree.Screen("Only", Screen4(3));
    tree.Build("version 1.0 sector 3");
    ExpectRoundTrip(tree, "--icon=12x10");
}

TEST(PackExtractorTest, RebuildsAtTheLowestSectors)
{
    for (char const* sector : { "2", "0" }) {
        PackagerTree tree;
        tree.Icon("Alpha", Icon4(1));
        tree.Icon("Beta_Selected", Icon1(2));
        tree.Screen("Home", Screen4(1));
        tree.Screen("Away", Screen4(2));
        tree.Build(std::string("version 0.1.2.3 sector ") + sector);
        ExpectRoundTrip(tree);
    }
}

TEST(PackExtractorTest, RebuildsAPackWithoutScreensOrWithoutIcons)
{
    PackagerTree iconsOnly;
    iconsOnly.Icon("Lonely", Icon4(5));
    iconsOnly.Build("version 3.2.1.0 sector 12");
    ExpectRoundTrip(iconsOnly);

    PackagerTree screensOnly;
    screensOnly.Screen("Splash", Screen4(4));
    screensOnly.Build("version 3.2.1.0 sector 12");
    ExpectRoundTrip(screensOnly);
}

TEST(PackExtractorTest, WritesTheTreeAndTheScript)
{
    PackagerTree tree;
    tree.Icon("Play", Icon4(1));
    tree.Icon("Stop", Icon1(2));
    tree.Screen("Home", Screen4(1));
    tree.Build("version 1.2.3.4 sector 14");
    PackFile const pack = PackFile::Load(tree.Pack());
    PackExtractor const extractor(
        pack, PackLayout::Compute(pack.Header(), ImageGeometry(32, 24), ImageGeometry(256, 64)));
    ASSERT_EQ(extractor.Refusal(), std::nullopt);
    ScratchFolder const folder;
    extractor.Write(folder.Path() / "out");
    EXPECT_EQ(ReadText(folder / "out/bmp/icons/list.txt"), "Play.bmp\nStop.bmp\n");
    EXPECT_EQ(ReadText(folder / "out/bmp/screens/list.txt"), "Home.bmp\n");
    EXPECT_EQ(extractor.RebuildCommand(), "packager version 1.2.3.4 sector 14");
    EXPECT_THAT(ReadText(folder / "out/rebuild.sh"),
        testing::EndsWith("exec \"${PACKAGER:-packager}\" version 1.2.3.4 sector 14\n"));
    auto const permissions = std::filesystem::status(folder / "out/rebuild.sh").permissions();
    EXPECT_NE(permissions & std::filesystem::perms::owner_exec, std::filesystem::perms::none);
    // The icons come back framed, as packed: the pixels of Stop's BMP are the pack's.
    EXPECT_EQ(std::filesystem::file_size(folder / "out/bmp/icons/Stop.bmp"), 118u + 384u);
}

TEST(PackExtractorTest, AScriptThatCannotBeMadeExecutableIsAnError)
{
    ScratchFolder const folder;
    std::string const missing = (folder / "rebuild.sh").string();
    EXPECT_THAT([&] { PackExtractor::MakeExecutable(missing); },
        testing::ThrowsMessage<ResourcesLibraryException>(
            testing::StrEq("Cannot make " + missing + " executable: No such file or directory")));
}

TEST(PackExtractorTest, NamesThatCannotComeBackAreRefused)
{
    EXPECT_EQ(PackExtractor::NameProblem("Play"), std::nullopt);
    EXPECT_EQ(PackExtractor::NameProblem("Two Words"), std::nullopt);
    EXPECT_EQ(PackExtractor::NameProblem(""), "an image has no name");
    EXPECT_EQ(PackExtractor::NameProblem("a/b"),
        "the image name 'a/b' cannot be a file name: it holds '/' or a NUL byte");
    std::string const withNul("a\0b", 3);
    EXPECT_EQ(PackExtractor::NameProblem(withNul),
        "the image name '" + withNul + "' cannot be a file name: it holds '/' or a NUL byte");
    EXPECT_EQ(PackExtractor::NameProblem("a\nb"),
        "the image name 'a\nb' cannot be a line of list.txt: it holds a line feed");
    EXPECT_EQ(PackExtractor::NameProblem(" Play"),
        "the image name ' Play' starts or ends with white space, which a line of list.txt loses");
    EXPECT_EQ(PackExtractor::NameProblem("Play\r"),
        "the image name 'Play\r' starts or ends with white space, which a line of list.txt loses");
    EXPECT_EQ(PackExtractor::NameProblem("Play.Pause"),
        "the image name 'Play.Pause' holds one of -\".,', which packager refuses");
    EXPECT_EQ(PackExtractor::NameProblem(std::string(251, 'n')), std::nullopt);
    EXPECT_EQ(PackExtractor::NameProblem(std::string(252, 'n')),
        "the image name '" + std::string(252, 'n') + "' is too long for a line of list.txt");
}

TEST(PackExtractorTest, RefusesEveryCharacterThatPackagerRefusesAndNoOther)
{
    // The exporter's own list, so that extract never writes a name that packager then refuses.
    EXPECT_STREQ(PackExporter::kForbiddenNameCharacters, "-\".,'");
    for (char const refused : std::string_view(PackExporter::kForbiddenNameCharacters)) {
        std::string const name = std::string("Play") + refused + "Pause";
        EXPECT_EQ(PackExtractor::NameProblem(name),
            "the image name '" + name + "' holds one of -\".,', which packager refuses");
    }
    for (char const kept : std::string_view("_+:;!?()[]{}"))
        EXPECT_EQ(PackExtractor::NameProblem(std::string("Play") + kept + "Pause"), std::nullopt);
}

TEST(PackExtractorTest, RefusesTheWhiteSpaceThatAListLineLosesAndNoOther)
{
    // The list reader's own set, so that every name extract writes is read back as it was.
    EXPECT_STREQ(InputSequence::kWhiteSpace, " \t\r\n");
    for (char const lost : std::string_view(InputSequence::kWhiteSpace)) {
        if (lost == '\n')
            continue; // a line feed ends the line, which is a problem of its own
        for (std::string const& name : { lost + std::string("Play"), "Play" + std::string(1, lost) })
            EXPECT_EQ(PackExtractor::NameProblem(name),
                "the image name '" + name
                    + "' starts or ends with white space, which a line of list.txt loses");
    }
    for (char const kept : std::string_view("\v\f"))
        EXPECT_EQ(PackExtractor::NameProblem(kept + std::string("Play") + kept), std::nullopt);
}

TEST(PackExtractorTest, RefusesTwoImagesOfOneName)
{
    PackagerTree tree;
    tree.Icon("Play", Icon4(1));
    tree.Icon("Play", Icon4(1));
    tree.Build("version 1.0 sector 12");
    EXPECT_EQ(RefusalOf(tree, ImageGeometry(32, 24)), "two images are named Play: their files would be one");
}

TEST(PackExtractorTest, RefusesWidthsThatPackagerReadsShort)
{
    PackagerTree tree;
    tree.Icon("Narrow", Bmp1(9, 4, 0, BmpWriter::WhiteFirst));
    tree.Build("version 1.0 sector 12");
    EXPECT_EQ(RefusalOf(tree, ImageGeometry(9, 4)),
        "images 9x4 wide cannot be written as 4-bit BMPs that packager reads back whole: it reads their "
        "rows 4 bytes short");
}

TEST(PackExtractorTest, RefusesSizesThatDoNotFitWithTheMessageOfList)
{
    PackagerTree tree;
    for (int k = 0; k < 12; ++k)
        tree.Icon("Icon" + std::to_string(k), Icon4(k));
    tree.Build("version 1.0 sector 12");
    EXPECT_EQ(RefusalOf(tree, ImageGeometry(16, 16)),
        "the geometry --icon 16x16 --screen 256x64 lays 2 sectors out, the file holds 3: the geometry is "
        "probably not the pack's");
}

TEST(PackExtractorTest, RefusesWhatIsNotAPack)
{
    PackFile const pack(Bytes(8192, 0xFF));
    PackExtractor const extractor(pack, PackLayout());
    EXPECT_EQ(extractor.Refusal(),
        "not a pack: no header sector with the magic \"ZAR\" and the format word 0.5.1.0");
}
