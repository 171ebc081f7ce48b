#include "Zar/ResourcesLibrary/Image/codec/Input.h"

#include "BmpWriter.h"
#include "ImageFixtures.h"

#include "Zar/Lt/Core/ScratchFolder.h"
#include "Zar/Lt/Exceptions/NotSupported.h"
#include "Zar/Lt/Exceptions/PreCondition.h"
#include "Zar/ResourcesLibrary/Image/codec/AsciiInput.h"
#include "Zar/ResourcesLibrary/Image/codec/BmpInput.h"
#include "Zar/ResourcesLibrary/Image/codec/DetectInput.h"
#include "Zar/ResourcesLibrary/Image/codec/QtInput.h"
#include "Zar/ResourcesLibrary/Image/codec/RawInput.h"
#include "Zar/ResourcesLibrary/ResourcesLibraryException.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <optional>
#include <sstream>
#include <streambuf>
#include <string>
#include <vector>

using testing::StrEq;
using testing::ThrowsMessage;
using TestSupport::BmpWriter;
using TestSupport::ExpectEmptyInfo;
using Zar::Lt::Core::ScratchFolder;
using Zar::Lt::Exceptions::NotSupported;
using Zar::Lt::Exceptions::PreCondition;
using Zar::ResourcesLibrary::ResourcesLibraryException;
using Zar::ResourcesLibrary::Image::DetectInput;
using Zar::ResourcesLibrary::Image::FileFormat;
using Zar::ResourcesLibrary::Image::ImageFormat;
using Zar::ResourcesLibrary::Image::ImageInfo;
using Zar::ResourcesLibrary::Image::Input;
using Zar::ResourcesLibrary::Image::MutableImage;

namespace {

// A loader of a made-up format for the base class algorithms: an 8-byte header holding the width
// and the height as 32-bit numbers, then rows of one byte per pixel. It records what it is given.
class TestInput : public Input {
public:
    TestInput()
        : Input(FileFormat::None, ImageFormat::Unknown, "", "")
    {
    }

    size_t GetHeaderSize() const override { return 8; }

    ImageInfo ReadHeaderFromData(void const* data, size_t size) override
    {
        headerBytes = size;
        ImageInfo info(ImageFormat::Gray8);
        if (size >= 8) {
            std::memcpy(&info._width, data, 4);
            std::memcpy(&info._height, static_cast<uint8_t const*>(data) + 4, 4);
        }
        info._stride
            = strideOverride ? *strideOverride : static_cast<uint32_t>(info._width < 0 ? 0 : info._width);
        return info;
    }

    size_t Read(std::istream& stream, void* data, size_t size) override
    {
        return RawRead(stream, data, size);
    }

    MutableImage FromData(void const* data, size_t size) override
    {
        auto const* bytes = static_cast<uint8_t const*>(data);
        body.assign(bytes, bytes + size);
        return MutableImage();
    }

    using Input::Load;
    using Input::Read;

    std::optional<uint32_t> strideOverride;
    size_t headerBytes = 0;
    std::vector<uint8_t> body;
};

// Records the paths that reach the virtual Load instead of opening them.
class RecordingInput : public Input {
public:
    RecordingInput(FileFormat format, std::string pattern, std::string folder)
        : Input(format, ImageFormat::Unknown, std::move(pattern), std::move(folder))
    {
    }

    MutableImage Load(char const* filePath) override
    {
        paths.emplace_back(filePath);
        return MutableImage();
    }

    using Input::Load;

    std::vector<std::string> paths;
};

std::string TestFile(int32_t width, int32_t height, std::string const& body)
{
    std::string header(8, '\0');
    std::memcpy(header.data(), &width, 4);
    std::memcpy(header.data() + 4, &height, 4);
    return header + body;
}

// Hands out its bytes a few at a time and never reports bytes as available, so that readsome
// always returns 0 and every byte has to come through the blocking read.
class TrickleBuffer : public std::streambuf {
public:
    explicit TrickleBuffer(std::string data)
        : _data(std::move(data))
    {
    }

protected:
    int_type underflow() override
    {
        if (_position >= _data.size())
            return traits_type::eof();
        size_t const count = std::min<size_t>(3, _data.size() - _position);
        char* begin = _data.data() + _position;
        setg(begin, begin, begin + count);
        _position += count;
        return traits_type::to_int_type(*begin);
    }
    std::streamsize showmanyc() override { return 0; }

private:
    std::string _data;
    size_t _position = 0;
};

std::string const BmpIcons = "bmp/icons";

// ---- factory -----------------------------------------------------------------------------------

TEST(InputTest, CreateBmpWithoutNameNumbersTheFilesInTheFolder)
{
    auto input = Input::Create(FileFormat::Bmp, ImageFormat::Unknown, std::string(BmpIcons), "");
    ASSERT_NE(nullptr, dynamic_cast<BmpInput*>(input.get()));
    EXPECT_EQ("bmp/icons/%04u.bmp", input->GetPattern());
    EXPECT_EQ("", input->GetFolder());
    EXPECT_EQ(FileFormat::Bmp, input->GetFileFormat());
    EXPECT_EQ(ImageFormat::Unknown, input->GetImageFormat());
}

TEST(InputTest, CreateKeepsANameWithAnExtensionAndCompletesOneWithout)
{
    EXPECT_EQ("bmp/icons/logo.bmp",
        Input::Create(FileFormat::Bmp, ImageFormat::Unknown, std::string(BmpIcons), "logo.bmp")
            ->GetPattern());
    EXPECT_EQ("bmp/icons/logo.bmp",
        Input::Create(FileFormat::Bmp, ImageFormat::Unknown, std::string(BmpIcons), "logo")->GetPattern());
    EXPECT_EQ("bmp/icons/logo.png",
        Input::Create(FileFormat::Bmp, ImageFormat::Unknown, std::string(BmpIcons), "logo.png")
            ->GetPattern());
}

TEST(InputTest, CreateAddsNoSecondSlashAfterTheFolder)
{
    EXPECT_EQ("bmp/icons/%04u.bmp",
        Input::Create(FileFormat::Bmp, ImageFormat::Unknown, "bmp/icons/", "")->GetPattern());
}

TEST(InputTest, CreateWithAnEmptyFolderUsesTheNameAlone)
{
    EXPECT_EQ("%04u.bmp", Input::Create(FileFormat::Bmp, ImageFormat::Unknown, "", "")->GetPattern());
}

TEST(InputTest, CreateGivesNoLoaderForFormatsWithoutOne)
{
    for (FileFormat format : { FileFormat::PlanarYuv, FileFormat::Mono, FileFormat::Pbm, FileFormat::Hpp,
             FileFormat::C, FileFormat::Bars, FileFormat::BarsWithText, static_cast<FileFormat>(17),
             static_cast<FileFormat>(-1) }) {
        EXPECT_EQ(nullptr, Input::Create(format, ImageFormat::Unknown, std::string(BmpIcons), ""))
            << static_cast<int>(format);
    }
}

TEST(InputTest, CreateQtLoaderKeepsTheAskedFormats)
{
    auto input = Input::Create(FileFormat::Png, ImageFormat::Gray8, std::string(BmpIcons), "");
    ASSERT_NE(nullptr, dynamic_cast<QtInput*>(input.get()));
    EXPECT_EQ(ImageFormat::Gray8, input->GetImageFormat());
    EXPECT_EQ(FileFormat::Png, input->GetFileFormat());
    EXPECT_EQ("bmp/icons/%04u.png", input->GetPattern());
    for (FileFormat format : { FileFormat::Jpeg, FileFormat::Pgm, FileFormat::Ppm, FileFormat::Qt }) {
        auto qt = Input::Create(format, ImageFormat::Rgb24, "", "");
        ASSERT_NE(nullptr, dynamic_cast<QtInput*>(qt.get()));
        EXPECT_EQ(format, qt->GetFileFormat());
        EXPECT_EQ(ImageFormat::Rgb24, qt->GetImageFormat());
    }
}

TEST(InputTest, CreateRawLoaderRecordsNoFileFormat)
{
    for (FileFormat format : { FileFormat::Raw, FileFormat::Yuv }) {
        auto input = Input::Create(format, ImageFormat::Gray8, std::string(BmpIcons), "");
        ASSERT_NE(nullptr, dynamic_cast<RawInput*>(input.get()));
        EXPECT_EQ(FileFormat::None, input->GetFileFormat());
        EXPECT_EQ(ImageFormat::Unknown, input->GetImageFormat());
        EXPECT_EQ("bmp/icons/%04u" + std::string(Input::GetExtension(format)), input->GetPattern());
        EXPECT_EQ("", input->GetFolder());
    }
}

TEST(InputTest, CreateAsciiLoaderDrawsWithXOnBlank)
{
    auto input = Input::Create(FileFormat::Ascii, ImageFormat::Gray8, std::string(BmpIcons), "");
    auto* ascii = dynamic_cast<AsciiInput*>(input.get());
    ASSERT_NE(nullptr, ascii);
    EXPECT_EQ('X', ascii->SetChar());
    EXPECT_EQ(' ', ascii->ClearChar());
    EXPECT_EQ(FileFormat::Ascii, input->GetFileFormat());
    EXPECT_EQ(ImageFormat::Unknown, input->GetImageFormat());
    EXPECT_EQ("bmp/icons/%04u.txt", input->GetPattern());
}

TEST(InputTest, CreateNoneGivesAnEmptyDetectingLoaderHoldingThePatternAsFolder)
{
    auto input = Input::Create(FileFormat::None, ImageFormat::Gray8, std::string(BmpIcons), "");
    ASSERT_NE(nullptr, dynamic_cast<DetectInput*>(input.get()));
    EXPECT_TRUE(input->IsEmpty());
    EXPECT_EQ("", input->GetPattern());
    EXPECT_EQ("bmp/icons/%04u", input->GetFolder());
    EXPECT_EQ(FileFormat::None, input->GetFileFormat());
    EXPECT_EQ(ImageFormat::Unknown, input->GetImageFormat());
}

TEST(InputTest, CreateFromAPathChoosesByExtensionOnly)
{
    auto png = Input::Create("some/where/x.png");
    ASSERT_NE(nullptr, dynamic_cast<QtInput*>(png.get()));
    EXPECT_EQ("%04u.png", png->GetPattern());
    auto bmp = Input::Create("X.BMP");
    ASSERT_NE(nullptr, dynamic_cast<BmpInput*>(bmp.get()));
    EXPECT_EQ("%04u.bmp", bmp->GetPattern());
    EXPECT_NE(nullptr, dynamic_cast<DetectInput*>(Input::Create("x").get()));
    EXPECT_NE(nullptr, dynamic_cast<DetectInput*>(Input::Create("").get()));
    EXPECT_NE(nullptr, dynamic_cast<DetectInput*>(Input::Create(static_cast<char const*>(nullptr)).get()));
    EXPECT_EQ(nullptr, Input::Create("x.pbm"));
}

TEST(InputTest, GetExtensionIsTheFileFormatExtension)
{
    EXPECT_STREQ(".bmp", Input::GetExtension(FileFormat::Bmp));
    EXPECT_STREQ(".txt", Input::GetExtension(FileFormat::Ascii));
    EXPECT_STREQ("", Input::GetExtension(FileFormat::None));
}

// ---- base behaviour ----------------------------------------------------------------------------

TEST(InputTest, BaseOperationsThatAreNotOfferedSaySo)
{
    Input input(FileFormat::None, ImageFormat::Unknown, "", "");
    std::istringstream stream("abc");
    char buffer[4];
    uint8_t data[4] = {};
    EXPECT_THAT([&] { input.Read(stream, buffer, 3); },
        ThrowsMessage<NotSupported>(StrEq("Input::Read not supported")));
    EXPECT_THAT([&] { input.ReadHeaderFromData(data, 4); },
        ThrowsMessage<NotSupported>(StrEq("Input::ReadHeaderFromData not supported")));
    EXPECT_THAT([&] { input.ReadHeaderFromData(std::vector<uint8_t>(4)); },
        ThrowsMessage<NotSupported>(StrEq("Input::ReadHeaderFromData not supported")));
    EXPECT_THAT([&] { input.FromData(data, 4); },
        ThrowsMessage<NotSupported>(StrEq("Input::FromData not supported")));
    EXPECT_THAT(
        [&] { input.ReadHeader(stream); }, ThrowsMessage<NotSupported>(StrEq("Input::Read not supported")));
    EXPECT_FALSE(input.IsEmpty());
    EXPECT_EQ(32u, input.GetHeaderSize());
}

TEST(InputTest, LoadHeaderOfAMissingFileIsTheEmptyInfo)
{
    ScratchFolder folder;
    Input input(FileFormat::None, ImageFormat::Unknown, "", "");
    ExpectEmptyInfo(input.LoadHeader(folder.PathOf("missing.bmp").c_str()));
    ExpectEmptyInfo(input.LoadHeader(""));
    ExpectEmptyInfo(input.LoadHeader(nullptr));
    BmpInput bmp(FileFormat::Bmp, ImageFormat::Unknown, "", "");
    ExpectEmptyInfo(bmp.LoadHeader(folder.PathOf("missing.bmp").c_str()));
}

TEST(InputTest, LoadHeaderOfAnExistingFileOnALoaderWithoutStreamReadingIsNotSupported)
{
    ScratchFolder folder;
    std::string const path = folder.Write("a.raw", "0123456789");
    Input input(FileFormat::None, ImageFormat::Unknown, "", "");
    EXPECT_THAT([&] { input.LoadHeader(path.c_str()); },
        ThrowsMessage<NotSupported>(StrEq("Input::Read not supported")));
}

TEST(InputTest, ReadHeaderHandsOverOnlyTheBytesReallyRead)
{
    TestInput input;
    std::istringstream shortStream(std::string("\x04\x00\x00", 3));
    ImageInfo info = input.ReadHeader(shortStream);
    EXPECT_EQ(3u, input.headerBytes);
    EXPECT_EQ(0, info.Width());
    std::istringstream fullStream(TestFile(4, 2, "12345678"));
    info = input.ReadHeader(fullStream);
    EXPECT_EQ(8u, input.headerBytes);
    EXPECT_EQ(4, info.Width());
    EXPECT_EQ(2, info.Height());
}

TEST(InputTest, BaseLoadReadsTheBodyBehindTheHeader)
{
    ScratchFolder folder;
    std::string const path = folder.Write("image.test", TestFile(4, 2, "abcdefghXYZ"));
    TestInput input;
    input.Load(path);
    EXPECT_EQ("abcdefgh", std::string(input.body.begin(), input.body.end()));
}

TEST(InputTest, BaseLoadWithAZeroStrideReadsBytesPerLineTimesHeight)
{
    ScratchFolder folder;
    std::string const path = folder.Write("image.test", TestFile(3, 2, "abcdefghXYZ"));
    TestInput input;
    input.strideOverride = 0;
    input.Load(path);
    EXPECT_EQ("abcdef", std::string(input.body.begin(), input.body.end()));
}

TEST(InputTest, BaseLoadHandsOverAShortBodyWithItsRealLength)
{
    ScratchFolder folder;
    std::string const path = folder.Write("image.test", TestFile(4, 2, "abc"));
    TestInput input;
    input.Load(path);
    EXPECT_EQ("abc", std::string(input.body.begin(), input.body.end()));
}

TEST(InputTest, BaseLoadOfAHugeDeclaredBodyReadsOnlyWhatTheFileHolds)
{
    ScratchFolder folder;
    std::string const path = folder.Write("image.test", TestFile(0x7FFFFFFF, 0x7FFFFFFF, "abc"));
    TestInput input;
    input.strideOverride = 0xFFFFFFFFu;
    input.Load(path);
    EXPECT_EQ("abc", std::string(input.body.begin(), input.body.end()));
}

TEST(InputTest, BaseLoadWithoutPathIsAPreCondition)
{
    TestInput input;
    char const* expected = "PreCondition filePath && filePath[0] Input::Load nullptr in filePath";
    EXPECT_THAT(
        [&] { input.Load(static_cast<char const*>(nullptr)); }, ThrowsMessage<PreCondition>(StrEq(expected)));
    EXPECT_THAT([&] { input.Load(""); }, ThrowsMessage<PreCondition>(StrEq(expected)));
}

TEST(InputTest, BaseLoadOfAMissingFileCannotOpen)
{
    ScratchFolder folder;
    std::string const path = folder.PathOf("missing.test");
    TestInput input;
    EXPECT_THAT([&] { input.Load(path); },
        ThrowsMessage<ResourcesLibraryException>(StrEq("Input::Load cannot open " + path)));
}

TEST(InputTest, BaseLoadOfAHeaderWithoutPositiveSizeCannotReadHeader)
{
    ScratchFolder folder;
    TestInput input;
    for (auto [width, height] :
        { std::pair { 0, 2 }, std::pair { 2, 0 }, std::pair { -1, 2 }, std::pair { 2, -3 } }) {
        std::string const path = folder.Write("image.test", TestFile(width, height, "abcdefgh"));
        EXPECT_THAT([&] { input.Load(path); },
            ThrowsMessage<ResourcesLibraryException>(StrEq("Input::Load cannot read header " + path)));
    }
    std::string const truncated = folder.Write("short.test", "abc");
    EXPECT_THAT([&] { input.Load(truncated); },
        ThrowsMessage<ResourcesLibraryException>(StrEq("Input::Load cannot read header " + truncated)));
}

// ---- stream reading ----------------------------------------------------------------------------

TEST(InputTest, RawReadReadsEverythingAsked)
{
    std::istringstream stream("0123456789");
    char buffer[6] = {};
    EXPECT_EQ(5u, Input::RawRead(stream, buffer, 5));
    EXPECT_STREQ("01234", buffer);
    EXPECT_EQ(5u, Input::RawRead(stream, buffer, 5));
    EXPECT_STREQ("56789", buffer);
}

TEST(InputTest, RawReadReturnsAShortCountAtTheEnd)
{
    std::istringstream stream("0123");
    char buffer[8] = {};
    EXPECT_EQ(4u, Input::RawRead(stream, buffer, 8));
    EXPECT_EQ(0u, Input::RawRead(stream, buffer, 8));
}

TEST(InputTest, RawReadOfNothingReadsNothing)
{
    std::istringstream stream("0123");
    char buffer[1] = { 'x' };
    EXPECT_EQ(0u, Input::RawRead(stream, buffer, 0));
    EXPECT_EQ('x', buffer[0]);
    EXPECT_EQ('0', stream.peek());
}

TEST(InputTest, RawReadFallsBackToTheBlockingReadWhenNothingIsAvailable)
{
    TrickleBuffer source("abcdefghij");
    std::istream stream(&source);
    char buffer[11] = {};
    EXPECT_EQ(10u, Input::RawRead(stream, buffer, 10));
    EXPECT_STREQ("abcdefghij", buffer);
}

TEST(InputTest, RawReadOfAStructureReadsItsSize)
{
    struct Pair {
        uint16_t first;
        uint16_t second;
    } pair {};
    std::istringstream stream(std::string("\x01\x02\x03\x04\x05", 5));
    EXPECT_EQ(4u, Input::RawRead(stream, pair));
    // The bytes land as they are, in the machine's order: the fields are not converted.
    std::array<uint8_t, 4> bytes {};
    std::memcpy(bytes.data(), &pair, sizeof pair);
    EXPECT_EQ((std::array<uint8_t, 4> { 1, 2, 3, 4 }), bytes);
    EXPECT_EQ(1u, Input::RawRead(stream, pair));
}

// ---- file paths --------------------------------------------------------------------------------

TEST(InputTest, GetFilePathNumbersThePattern)
{
    RecordingInput input(FileFormat::Bmp, "bmp/%04u.bmp", "");
    EXPECT_EQ("bmp/0007.bmp", input.GetFilePath(7, ""));
    EXPECT_EQ("bmp/a.bmp", input.GetFilePath(7, "a.bmp"));
    EXPECT_EQ("bmp/logo.bmp", input.GetFilePath(7, "logo"));
}

TEST(InputTest, GetFilePathWithoutConversionNumbersWithFourDigits)
{
    EXPECT_EQ("0007.bmp", RecordingInput(FileFormat::Bmp, "img", "").GetFilePath(7, ""));
    EXPECT_EQ("0007.bmp", RecordingInput(FileFormat::Bmp, "", "").GetFilePath(7, ""));
    EXPECT_EQ("icons/0007.bmp", RecordingInput(FileFormat::Bmp, "a/b", "icons/").GetFilePath(7, ""));
}

TEST(InputTest, GetFilePathAppendsTheEmptyExtensionOfNoFormat)
{
    EXPECT_EQ("0007", RecordingInput(FileFormat::None, "img", "").GetFilePath(7, ""));
}

TEST(InputTest, GetFilePathPutsTheFolderInFrontOfAPatternWithoutSlash)
{
    RecordingInput input(FileFormat::Bmp, "%03d.bmp", "dir/");
    EXPECT_EQ("dir/007.bmp", input.GetFilePath(7, ""));
    EXPECT_EQ("dir/a.bmp", input.GetFilePath(7, "a.bmp"));
}

TEST(InputTest, GetFilePathIgnoresTheFolderWhenThePatternHasASlash)
{
    RecordingInput input(FileFormat::Bmp, "x/%d.bmp", "dir/");
    EXPECT_EQ("x/7.bmp", input.GetFilePath(7, ""));
}

TEST(InputTest, GetFilePathIgnoresTheNameWithoutSlash)
{
    RecordingInput input(FileFormat::Bmp, "%04u.bmp", "");
    EXPECT_EQ("0007.bmp", input.GetFilePath(7, "other.bmp"));
}

TEST(InputTest, GetFilePathAddsNoExtensionWhenThereIsADotAnywhere)
{
    RecordingInput input(FileFormat::Bmp, "dir.d/%04u", "");
    EXPECT_EQ("dir.d/0007", input.GetFilePath(7, ""));
}

TEST(InputTest, GetFilePathNeverRunsPastItsBuffer)
{
    std::string const longText(600, 'a');
    std::string const longName(600, 'n');
    std::vector<std::string> const patterns = { longText + "/%04u.bmp", "%04u.bmp" + longText, "d/%600d.bmp",
        "d/%999999999999d", "d/%.999999999u", longText };
    for (std::string const& pattern : patterns) {
        for (std::string const& folder : { std::string(), longText + "/", std::string(509, 'f') }) {
            for (std::string const& name : { std::string(), longName, std::string("x") }) {
                RecordingInput input(FileFormat::Bmp, pattern, folder);
                std::string const path = input.GetFilePath(7, name);
                EXPECT_LE(path.size(), 511u)
                    << pattern.substr(0, 20) << " " << folder.size() << " " << name.size();
            }
        }
    }
}

TEST(InputTest, GetFilePathCutsALongFolderAndNumber)
{
    RecordingInput input(FileFormat::Bmp, "%04u", std::string(509, 'f'));
    EXPECT_EQ(std::string(509, 'f') + "00", input.GetFilePath(7, ""));
    RecordingInput named(FileFormat::Bmp, "x/%04u", "");
    EXPECT_EQ("x/" + std::string(509, 'n'), named.GetFilePath(7, std::string(600, 'n')));
}

// ---- reading by index --------------------------------------------------------------------------

TEST(InputTest, ReadByIndexFormatsThePatternWithoutFolderOrExtension)
{
    RecordingInput input(FileFormat::Bmp, "%04u.bmp", "dir/");
    input.Read(3);
    input.Read(3, "");
    RecordingInput bare(FileFormat::Bmp, "img", "dir/");
    bare.Read(12);
    EXPECT_THAT(input.paths, testing::ElementsAre("0003.bmp", "0003.bmp"));
    EXPECT_THAT(bare.paths, testing::ElementsAre("0012"));
}

TEST(InputTest, ReadByIndexAndNameLoadsTheComposedPath)
{
    RecordingInput input(FileFormat::Bmp, "bmp/%04u.bmp", "");
    input.Read(3, "logo");
    EXPECT_THAT(input.paths, testing::ElementsAre("bmp/logo.bmp"));
}

TEST(InputTest, ReadOfThreeLoadsFileThree)
{
    ScratchFolder folder;
    folder.Write("0003.bmp", BmpWriter::Mono(8, { { 0x0F } }, BmpWriter::BlackFirst).Bytes());
    auto input = Input::Create(FileFormat::Bmp, ImageFormat::Unknown, folder.PathOf(""), "");
    for (MutableImage const& image : { input->Read(3), input->Read(3, "") }) {
        EXPECT_EQ(8, image.Info().Width());
        EXPECT_EQ(1, image.Info().Height());
        EXPECT_THAT(image.Buffer(), testing::ElementsAre(0x00, 0x00, 0xFF, 0xFF));
    }
    EXPECT_THAT([&] { input->Read(4); },
        ThrowsMessage<ResourcesLibraryException>(
            StrEq("BmpInput::Load cannot open " + folder.PathOf("0004.bmp"))));
}

// ---- helpers -----------------------------------------------------------------------------------

TEST(InputTest, UsableExtensionFollowsTheLastDot)
{
    EXPECT_EQ(".bmp", Input::UsableExtension("a/b.c/logo.bmp"));
    EXPECT_EQ(".gz", Input::UsableExtension("archive.tar.gz"));
    EXPECT_EQ("", Input::UsableExtension("logo"));
    EXPECT_EQ("", Input::UsableExtension("logo."));
    EXPECT_EQ("", Input::UsableExtension("logo.."));
    EXPECT_EQ(".b", Input::UsableExtension("a..b"));
    EXPECT_EQ("", Input::UsableExtension("dir.old/logo"));
    EXPECT_EQ("", Input::UsableExtension(""));
}

} // namespace
