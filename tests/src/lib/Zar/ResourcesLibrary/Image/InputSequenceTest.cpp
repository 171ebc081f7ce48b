#include "Zar/ResourcesLibrary/Image/InputSequence.h"

#include "BmpWriter.h"

#include "Zar/Lt/Core/ScratchFolder.h"
#include "Zar/ResourcesLibrary/Image/codec/BmpInput.h"
#include "Zar/ResourcesLibrary/Image/codec/DetectInput.h"
#include "Zar/ResourcesLibrary/ResourcesLibraryException.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <tuple>
#include <vector>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StrEq;
using testing::ThrowsMessage;
using TestSupport::BmpWriter;
using Zar::Lt::Core::ScratchFolder;
using Zar::ResourcesLibrary::ResourcesLibraryException;
using Zar::ResourcesLibrary::Image::DetectInput;
using Zar::ResourcesLibrary::Image::FileFormat;
using Zar::ResourcesLibrary::Image::InputSequence;
using Zar::ResourcesLibrary::Image::MutableImage;

namespace {

char const* const kSourceFile = "src/lib/Zar/ResourcesLibrary/Image/InputSequence";

// A one-line 8-pixel BMP whose pixels are the bits of the given byte.
std::string WriteBmp(ScratchFolder const& folder, std::string const& name, uint8_t pixels)
{
    return folder.Write(name, BmpWriter::Mono(8, { { pixels } }, BmpWriter::BlackFirst).Bytes());
}

using Call = std::tuple<int, std::string>;

// Records every call of the callback, and answers false to show that the answer is not used.
struct Recorder {
    std::vector<Call> calls;
    std::vector<std::vector<uint8_t>> pixels;

    InputSequence::Callback Callback()
    {
        return [this](int index, std::string_view const& name, MutableImage& image) {
            calls.emplace_back(index, std::string(name));
            pixels.push_back(image.Buffer());
            return false;
        };
    }
};

// ---- list files --------------------------------------------------------------------------------

TEST(InputSequenceTest, BlankLinesOfAListAreSkipped)
{
    ScratchFolder folder;
    for (std::string middle : { "", "  \t \t" }) {
        std::string const list = folder.Write("list.txt", "first.bmp\n" + middle + "\nlast.bmp\n");
        InputSequence sequence(FileFormat::None, folder.Prefix(), "%04", true);
        sequence.AddList(list);
        EXPECT_THAT(sequence.Items(), ElementsAre("first.bmp", "last.bmp"));
    }
}

TEST(InputSequenceTest, WhiteSpaceAroundANameIsStrippedAndInsideKept)
{
    ScratchFolder folder;
    std::string const list = folder.Write("list.txt", "  icon.bmp\r\n\tmy icon.bmp \t\r\n");
    InputSequence sequence(FileFormat::None, folder.Prefix(), "%04", true);
    sequence.AddList(list);
    EXPECT_THAT(sequence.Items(), ElementsAre("icon.bmp", "my icon.bmp"));
}

TEST(InputSequenceTest, TheLastLineNeedsNoLineFeed)
{
    ScratchFolder folder;
    std::string const list = folder.Write("list.txt", "a\nb");
    InputSequence sequence(FileFormat::None, folder.Prefix(), "%04", true);
    sequence.AddList(list);
    EXPECT_THAT(sequence.Items(), ElementsAre("a", "b"));
}

TEST(InputSequenceTest, AListAddsToTheItemsAlreadyThereAndKeepsDuplicates)
{
    ScratchFolder folder;
    std::string const list = folder.Write("list.txt", "a\na\n");
    InputSequence sequence(FileFormat::None, folder.Prefix(), "%04", true);
    sequence.AddItem("first");
    sequence.AddList(list);
    sequence.AddItem("");
    EXPECT_THAT(sequence.Items(), ElementsAre("first", "a", "a", ""));
}

TEST(InputSequenceTest, ALineLongerThanTheLimitIsCutAndTheNextLineIsReadWhole)
{
    ScratchFolder folder;
    std::string const longLine(300, 'a');
    std::string const exact(255, 'e');
    std::string const list
        = folder.Write("list.txt", longLine + "\nnext.bmp\n" + exact + "\n" + std::string(100000, 'z'));
    InputSequence sequence(FileFormat::None, folder.Prefix(), "%04", true);
    sequence.AddList(list);
    EXPECT_THAT(
        sequence.Items(), ElementsAre(std::string(255, 'a'), "next.bmp", exact, std::string(255, 'z')));
}

TEST(InputSequenceTest, AlongLineIsCutBeforeItsWhiteSpaceIsStripped)
{
    ScratchFolder folder;
    std::string const list = folder.Write("list.txt", std::string(250, ' ') + "abcdefghij\nb\n");
    InputSequence sequence(FileFormat::None, folder.Prefix(), "%04", true);
    sequence.AddList(list);
    EXPECT_THAT(sequence.Items(), ElementsAre("abcde", "b"));
}

TEST(InputSequenceTest, ANulByteEndsTheName)
{
    ScratchFolder folder;
    std::string const list = folder.Write("list.txt", std::string("ab\0cd\n\0xy\nnext\n", 15));
    InputSequence sequence(FileFormat::None, folder.Prefix(), "%04", true);
    sequence.AddList(list);
    EXPECT_THAT(sequence.Items(), ElementsAre("ab", "next"));
}

TEST(InputSequenceTest, AMissingListFailsOnlyWhenRequired)
{
    ScratchFolder folder;
    std::string const path = folder.PathOf("list.txt");
    InputSequence required(FileFormat::None, folder.Prefix(), "%04", true);
    try {
        required.AddList(path);
        FAIL() << "no exception";
    } catch (ResourcesLibraryException const& e) {
        EXPECT_EQ("Cannot open " + path, e.what());
        EXPECT_STREQ(
            "void Zar::ResourcesLibrary::Image::InputSequence::AddList(const string&)", e.Source()._function);
        EXPECT_STREQ(kSourceFile, e.Source()._file);
        EXPECT_EQ(55u, e.Source()._line);
    }
    InputSequence optional(FileFormat::None, folder.Prefix(), "%04", false);
    optional.AddItem("kept");
    EXPECT_NO_THROW(optional.AddList(path));
    EXPECT_THAT(optional.Items(), ElementsAre("kept"));
}

// ---- the loader --------------------------------------------------------------------------------

TEST(InputSequenceTest, TheLoaderIsMadeForTheFormatWithTheFolderAndPattern)
{
    InputSequence sequence(FileFormat::Bmp, "bmp/icons", "logo", true);
    ASSERT_NE(nullptr, dynamic_cast<BmpInput const*>(sequence.GetInput()));
    EXPECT_EQ("bmp/icons/logo.bmp", sequence.GetInput()->GetPattern());
    InputSequence detecting(FileFormat::None, "bmp/icons/", "%04", true);
    ASSERT_NE(nullptr, dynamic_cast<DetectInput const*>(detecting.GetInput()));
    EXPECT_EQ("bmp/icons/%04", detecting.GetInput()->GetFolder());
}

TEST(InputSequenceTest, NoLoaderIsAnErrorOnlyWhenRequired)
{
    InputSequence required(FileFormat::Pbm, "bmp/icons/", "%04", true);
    try {
        required.CheckInput();
        FAIL() << "no exception";
    } catch (ResourcesLibraryException const& e) {
        EXPECT_STREQ("No input", e.what());
        EXPECT_STREQ(
            "bool Zar::ResourcesLibrary::Image::InputSequence::CheckInput() const", e.Source()._function);
        EXPECT_STREQ(kSourceFile, e.Source()._file);
        EXPECT_EQ(29u, e.Source()._line);
    }
    Recorder recorder;
    required.AddItem("a");
    EXPECT_THAT([&] { required.LoadAll(recorder.Callback(), 0); },
        ThrowsMessage<ResourcesLibraryException>(StrEq("No input")));
    EXPECT_THAT([&] { required.Read(1); }, ThrowsMessage<ResourcesLibraryException>(StrEq("No input")));
    EXPECT_THAT([&] { required.Read(1, "a"); }, ThrowsMessage<ResourcesLibraryException>(StrEq("No input")));

    InputSequence optional(FileFormat::Pbm, "bmp/icons/", "%04", false);
    optional.AddItem("a");
    EXPECT_FALSE(optional.CheckInput());
    optional.LoadAll(recorder.Callback(), 0);
    EXPECT_THAT(recorder.calls, IsEmpty());
    EXPECT_TRUE(optional.Read(1).IsEmpty());
    EXPECT_TRUE(optional.Read(1, "a").IsEmpty());
}

TEST(InputSequenceTest, ALoaderMakesTheInputUsable)
{
    InputSequence sequence(FileFormat::Bmp, "bmp/icons/", "%04", true);
    EXPECT_TRUE(sequence.CheckInput());
}

// ---- loading everything ------------------------------------------------------------------------

TEST(InputSequenceTest, LoadAllNumbersTheItemsFromStartPlusOne)
{
    ScratchFolder folder;
    WriteBmp(folder, "a.bmp", 0x0F);
    WriteBmp(folder, "b.bmp", 0xF0);
    folder.Write("dir/c.txt", "X X \n XX \n");
    InputSequence sequence(FileFormat::None, folder.Prefix(), "%04", true);
    for (char const* item : { "a.bmp", "b", "dir/c.txt" })
        sequence.AddItem(item);
    Recorder recorder;
    sequence.LoadAll(recorder.Callback(), 1);
    EXPECT_THAT(recorder.calls, ElementsAre(Call { 2, "a" }, Call { 3, "b" }, Call { 4, "c" }));
    EXPECT_THAT(recorder.pixels[0], ElementsAre(0x00, 0x00, 0xFF, 0xFF));
    EXPECT_THAT(recorder.pixels[1], ElementsAre(0xFF, 0xFF, 0x00, 0x00));
}

TEST(InputSequenceTest, AFailedItemUsesUpItsNumberAndIsReportedAtTheEnd)
{
    ScratchFolder folder;
    WriteBmp(folder, "a.bmp", 0x0F);
    folder.Write("b.bmp", "BA and more than fourteen bytes");
    folder.Write("dir/c.txt", "X X \n XX \n");
    InputSequence sequence(FileFormat::None, folder.Prefix(), "%04", true);
    for (char const* item : { "a.bmp", "b", "dir/c.txt" })
        sequence.AddItem(item);
    Recorder recorder;
    try {
        sequence.LoadAll(recorder.Callback(), 1);
        FAIL() << "no exception";
    } catch (ResourcesLibraryException const& e) {
        EXPECT_STREQ("3 b Wrong Bmp file magic 0x4142\n", e.what());
        EXPECT_STREQ("void Zar::ResourcesLibrary::Image::InputSequence::LoadAll(const Callback&, int)",
            e.Source()._function);
        EXPECT_STREQ(kSourceFile, e.Source()._file);
        EXPECT_EQ(85u, e.Source()._line);
    }
    EXPECT_THAT(recorder.calls, ElementsAre(Call { 2, "a" }, Call { 4, "c" }));
}

TEST(InputSequenceTest, EveryFailedItemGetsALineWithTheLoadersExtension)
{
    ScratchFolder folder;
    WriteBmp(folder, "good.bmp", 0);
    InputSequence sequence(FileFormat::Bmp, folder.Prefix(), "%04u.bmp", true);
    for (char const* item : { "missing", "good", "other" })
        sequence.AddItem(item);
    Recorder recorder;
    std::string const expected = "1 missing.bmp BmpInput::Load cannot open " + folder.PathOf("missing.bmp")
        + "\n" + "3 other.bmp BmpInput::Load cannot open " + folder.PathOf("other.bmp") + "\n";
    EXPECT_THAT([&] { sequence.LoadAll(recorder.Callback(), 0); },
        ThrowsMessage<ResourcesLibraryException>(StrEq(expected)));
    EXPECT_THAT(recorder.calls, ElementsAre(Call { 2, "good" }));
}

TEST(InputSequenceTest, TheErrorLinePrefixIsTheIndexTheItemAndTheLoadersExtension)
{
    InputSequence const bmp(FileFormat::Bmp, "icons/", "%04u.bmp", true);
    EXPECT_STREQ(".bmp", bmp.DefaultExtension());
    EXPECT_EQ("3 Play.bmp ", bmp.ErrorLinePrefix(3, "Play"));
    InputSequence const detecting(FileFormat::None, "icons/", "%04", true);
    EXPECT_STREQ("", detecting.DefaultExtension());
    EXPECT_EQ("12 dir/Play ", detecting.ErrorLinePrefix(12, "dir/Play"));
    InputSequence const none(FileFormat::Pbm, "icons/", "%d", true);
    EXPECT_STREQ("", none.DefaultExtension());
    EXPECT_EQ("-1 x ", none.ErrorLinePrefix(-1, "x"));
}

TEST(InputSequenceTest, ACallbackAnsweringFalseDoesNotStopTheWalk)
{
    ScratchFolder folder;
    WriteBmp(folder, "a.bmp", 0);
    WriteBmp(folder, "b.bmp", 0);
    InputSequence sequence(FileFormat::None, folder.Prefix(), "%04", true);
    sequence.AddItem("a");
    sequence.AddItem("b");
    Recorder recorder;
    sequence.LoadAll(recorder.Callback(), 0);
    EXPECT_THAT(recorder.calls, ElementsAre(Call { 1, "a" }, Call { 2, "b" }));
}

TEST(InputSequenceTest, AThrowingCallbackIsReportedLikeAFailedLoad)
{
    ScratchFolder folder;
    WriteBmp(folder, "a.bmp", 0);
    WriteBmp(folder, "b.bmp", 0);
    InputSequence sequence(FileFormat::None, folder.Prefix(), "%04", true);
    sequence.AddItem("a");
    sequence.AddItem("b");
    int calls = 0;
    auto callback = [&calls](int index, std::string_view const&, MutableImage&) -> bool {
        ++calls;
        if (index == 1)
            throw std::runtime_error("too big");
        throw 42;
    };
    EXPECT_THAT([&] { sequence.LoadAll(callback, 0); },
        ThrowsMessage<ResourcesLibraryException>(StrEq("1 a too big\n2 b unknown exception\n")));
    EXPECT_EQ(2, calls);
}

TEST(InputSequenceTest, FailuresLeaveNoTraceWhenNotRequired)
{
    ScratchFolder folder;
    WriteBmp(folder, "a.bmp", 0);
    folder.Write("b.bmp", "broken");
    InputSequence sequence(FileFormat::None, folder.Prefix(), "%04", false);
    for (char const* item : { "b", "a", "missing" })
        sequence.AddItem(item);
    Recorder recorder;
    EXPECT_NO_THROW(sequence.LoadAll(recorder.Callback(), 0));
    EXPECT_THAT(recorder.calls, ElementsAre(Call { 2, "a" }));
}

TEST(InputSequenceTest, AnEmptyImageIsSkippedWithoutError)
{
    ScratchFolder folder;
    folder.Write("frame.raw", "");
    folder.Write("empty.bmp", BmpWriter::Mono(0, { {} }, BmpWriter::BlackFirst).Bytes());
    WriteBmp(folder, "a.bmp", 0);
    InputSequence sequence(FileFormat::None, folder.Prefix(), "%04", true);
    for (char const* item : { "frame.raw", "empty", "a" })
        sequence.AddItem(item);
    Recorder recorder;
    EXPECT_NO_THROW(sequence.LoadAll(recorder.Callback(), 0));
    EXPECT_THAT(recorder.calls, ElementsAre(Call { 3, "a" }));
}

TEST(InputSequenceTest, LoadAllCanRunAgainOnTheSameList)
{
    ScratchFolder folder;
    WriteBmp(folder, "a.bmp", 0);
    InputSequence sequence(FileFormat::None, folder.Prefix(), "%04", true);
    sequence.AddItem("a");
    Recorder recorder;
    sequence.LoadAll(recorder.Callback(), 0);
    sequence.LoadAll(recorder.Callback(), 10);
    EXPECT_THAT(recorder.calls, ElementsAre(Call { 1, "a" }, Call { 11, "a" }));
    EXPECT_THAT(sequence.Items(), ElementsAre("a"));
}

TEST(InputSequenceTest, AnEmptyListCallsNothing)
{
    InputSequence sequence(FileFormat::None, "bmp/icons/", "%04", true);
    Recorder recorder;
    EXPECT_NO_THROW(sequence.LoadAll(recorder.Callback(), 0));
    EXPECT_THAT(recorder.calls, IsEmpty());
}

TEST(InputSequenceTest, TheListFromAFileLoadsInOrder)
{
    ScratchFolder folder;
    WriteBmp(folder, "one.bmp", 0);
    WriteBmp(folder, "two.bmp", 0xFF);
    std::string const list = folder.Write("list.txt", "two.bmp\r\n\r\n  one\r\n");
    InputSequence sequence(FileFormat::None, folder.Prefix(), "%04", true);
    sequence.AddList(list);
    Recorder recorder;
    sequence.LoadAll(recorder.Callback(), 0);
    EXPECT_THAT(recorder.calls, ElementsAre(Call { 1, "two" }, Call { 2, "one" }));
}

// ---- names and paths ---------------------------------------------------------------------------

TEST(InputSequenceTest, TheBareNameHasNoFolderAndNoExtension)
{
    EXPECT_EQ("z", InputSequence::BareName("x.y/z"));
    EXPECT_EQ("archive.tar", InputSequence::BareName("archive.tar.gz"));
    EXPECT_EQ("c", InputSequence::BareName("dir/c.txt"));
    EXPECT_EQ("b", InputSequence::BareName("b"));
    EXPECT_EQ("name.", InputSequence::BareName("name."));
    EXPECT_EQ("", InputSequence::BareName(""));
    EXPECT_EQ("", InputSequence::BareName("dir/"));
}

TEST(InputSequenceTest, GetFilePathWithoutPatternNumbersWithFourDigitsInTheFolder)
{
    EXPECT_EQ("icons/0007.bmp", InputSequence(FileFormat::Bmp, "icons/", "", true).GetFilePath(7, ""));
    EXPECT_EQ("icons/0007", InputSequence(FileFormat::None, "icons/", "", true).GetFilePath(7, ""));
    EXPECT_EQ("icons/0007.txt", InputSequence(FileFormat::Ascii, "icons/", "img", true).GetFilePath(7, ""));
}

TEST(InputSequenceTest, GetFilePathReplacesTheLastPartByTheName)
{
    InputSequence sequence(FileFormat::Bmp, "icons/", "%03d", true);
    EXPECT_EQ("icons/007.bmp", sequence.GetFilePath(7, ""));
    EXPECT_EQ("icons/logo.bmp", sequence.GetFilePath(7, "logo"));
    EXPECT_EQ("icons/logo.png", sequence.GetFilePath(7, "logo.png"));
    EXPECT_EQ("icons/sub/logo.bmp", sequence.GetFilePath(7, "sub/logo"));
}

TEST(InputSequenceTest, GetFilePathWithASlashInThePatternIgnoresTheFolder)
{
    InputSequence sequence(FileFormat::Bmp, "icons/", "other/%d.bmp", true);
    EXPECT_EQ("other/7.bmp", sequence.GetFilePath(7, ""));
}

TEST(InputSequenceTest, GetFilePathWithoutSlashIgnoresTheName)
{
    InputSequence sequence(FileFormat::Bmp, "", "%d", true);
    EXPECT_EQ("7.bmp", sequence.GetFilePath(7, "logo"));
}

TEST(InputSequenceTest, GetFilePathAddsTheExtensionWhenTheDotBelongsToAFolder)
{
    InputSequence sequence(FileFormat::Bmp, "icons.d/", "%d", true);
    EXPECT_EQ("icons.d/7.bmp", sequence.GetFilePath(7, ""));
    EXPECT_EQ("icons.d/name..bmp", sequence.GetFilePath(7, "name."));
}

TEST(InputSequenceTest, GetFilePathWithoutLoaderFallsBackToBmp)
{
    InputSequence sequence(FileFormat::Pbm, "icons/", "%d", false);
    EXPECT_EQ("icons/7.bmp", sequence.GetFilePath(7, ""));
}

TEST(InputSequenceTest, GetFilePathKeepsUnsafeConversionsAsText)
{
    InputSequence sequence(FileFormat::Bmp, "icons/", "%s%n%d", true);
    EXPECT_EQ("icons/%s%n7.bmp", sequence.GetFilePath(7, ""));
    InputSequence trailing(FileFormat::Bmp, "icons/", "%04", true);
    EXPECT_EQ("icons/%04.bmp", trailing.GetFilePath(7, ""));
}

TEST(InputSequenceTest, GetFilePathNeverRunsPastItsBuffer)
{
    std::string const longText(600, 'a');
    std::vector<std::string> const texts = { "", "x", longText, longText + "/", "%600d", "d/%600d" };
    for (std::string const& directory : texts) {
        for (std::string const& pattern : texts) {
            InputSequence sequence(FileFormat::Bmp, directory, pattern, true);
            for (std::string const& name : texts)
                EXPECT_LE(sequence.GetFilePath(7, name).size(), 511u);
        }
    }
    InputSequence sequence(FileFormat::Bmp, "d/", "%d", true);
    EXPECT_EQ("d/" + std::string(509, 'n'), sequence.GetFilePath(7, std::string(600, 'n')));
}

// ---- reading one item --------------------------------------------------------------------------

TEST(InputSequenceTest, ReadByIndexFormatsThePatternWithoutTheFolder)
{
    ScratchFolder folder;
    WriteBmp(folder, "0003.bmp", 0x0F);
    InputSequence sequence(FileFormat::Bmp, "elsewhere/", folder.Prefix() + "%04u.bmp", true);
    EXPECT_THAT(sequence.Read(3).Buffer(), ElementsAre(0x00, 0x00, 0xFF, 0xFF));
    EXPECT_THAT(sequence.Read(3, "").Buffer(), ElementsAre(0x00, 0x00, 0xFF, 0xFF));
    EXPECT_THAT([&] { sequence.Read(4); },
        ThrowsMessage<ResourcesLibraryException>(
            StrEq("BmpInput::Load cannot open " + folder.PathOf("0004.bmp"))));
}

TEST(InputSequenceTest, ReadByIndexAndNameLoadsTheComposedPath)
{
    ScratchFolder folder;
    WriteBmp(folder, "logo.bmp", 0xF0);
    InputSequence sequence(FileFormat::Bmp, folder.Prefix(), "%04u", true);
    EXPECT_THAT(sequence.Read(3, "logo").Buffer(), ElementsAre(0xFF, 0xFF, 0x00, 0x00));
}

} // namespace
