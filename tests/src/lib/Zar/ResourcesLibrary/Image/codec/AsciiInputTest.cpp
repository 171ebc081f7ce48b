#include "Zar/ResourcesLibrary/Image/codec/AsciiInput.h"

#include "ImageFixtures.h"

#include "Zar/Lt/Core/ScratchFolder.h"
#include "Zar/Lt/Exceptions/NotSupported.h"
#include "Zar/ResourcesLibrary/ResourcesLibraryException.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

using testing::StrEq;
using testing::ThrowsMessage;
using TestSupport::ExpectEmptyInfo;
using TestSupport::RowOf;
using Zar::Lt::Core::ScratchFolder;
using Zar::Lt::Exceptions::NotSupported;
using Zar::ResourcesLibrary::ResourcesLibraryException;
using Zar::ResourcesLibrary::Image::FileFormat;
using Zar::ResourcesLibrary::Image::ImageFormat;
using Zar::ResourcesLibrary::Image::ImageInfo;
using Zar::ResourcesLibrary::Image::MutableImage;

namespace {

AsciiInput MakeLoader()
{
    return AsciiInput(FileFormat::Ascii, ImageFormat::Unknown, "%04u.txt", "", 'X', ' ');
}

ImageInfo HeaderOf(std::string const& text)
{
    AsciiInput loader = MakeLoader();
    return loader.ReadHeaderFromData(text.data(), text.size());
}

MutableImage ImageOf(std::string const& text)
{
    AsciiInput loader = MakeLoader();
    return loader.FromData(text.data(), text.size());
}

std::string const kTwoRows = "X X \n XX \n";

} // namespace

TEST(AsciiInputTest, TwoRowsGiveAGray4ImageWithPairsPackedHighNibbleFirst)
{
    MutableImage const image = ImageOf(kTwoRows);

    EXPECT_EQ(4, image.Info().Width());
    EXPECT_EQ(2, image.Info().Height());
    EXPECT_EQ(4u, image.Info().Stride());
    EXPECT_EQ(ImageFormat::Gray4, image.Info().Format());
    ASSERT_EQ(8u, image.Buffer().size());
    EXPECT_EQ((std::vector<uint8_t> { 0xF0, 0xF0, 0, 0 }), RowOf(image, 0));
    EXPECT_EQ((std::vector<uint8_t> { 0x0F, 0xF0, 0, 0 }), RowOf(image, 1));
}

TEST(AsciiInputTest, HeaderIsBottomUpGray4WithOtherFieldsZero)
{
    ImageInfo const info = HeaderOf(kTwoRows);

    EXPECT_EQ(4, info.Width());
    EXPECT_EQ(2, info.Height());
    EXPECT_EQ(4u, info.Stride());
    EXPECT_EQ(ImageFormat::Gray4, info.Format());
    EXPECT_EQ(1, info._bottomUp);
    EXPECT_EQ(0u, info._reserved1);
    EXPECT_EQ(0u, info._reserved2);
    EXPECT_EQ(0, info._attribute);
}

TEST(AsciiInputTest, HeaderFromVectorMatchesHeaderFromPointer)
{
    AsciiInput loader = MakeLoader();
    std::vector<uint8_t> const data(kTwoRows.begin(), kTwoRows.end());

    ImageInfo const info = loader.ReadHeaderFromData(data);

    EXPECT_EQ(4, info.Width());
    EXPECT_EQ(2, info.Height());
}

TEST(AsciiInputTest, StrideIsPaddedToFourBytes)
{
    // Nine pixels take five bytes, padded to eight.
    ImageInfo const info = HeaderOf("XXXXXXXXX\n");

    EXPECT_EQ(9, info.Width());
    EXPECT_EQ(8u, info.Stride());
}

TEST(AsciiInputTest, CarriageReturnCountsAsALitPixelThatIsDroppedAsTheOddLastOne)
{
    std::string const text = "X X \r\n XX \r\n";
    ImageInfo const info = HeaderOf(text);
    MutableImage const image = ImageOf(text);

    EXPECT_EQ(5, info.Width());
    EXPECT_EQ(2, info.Height());
    EXPECT_EQ(4u, image.Info().Stride());
    EXPECT_EQ((std::vector<uint8_t> { 0xF0, 0xF0, 0, 0 }), RowOf(image, 0));
    EXPECT_EQ((std::vector<uint8_t> { 0x0F, 0xF0, 0, 0 }), RowOf(image, 1));
}

TEST(AsciiInputTest, CarriageReturnRowsHaveAPitchOfSix)
{
    // Twelve bytes at a pitch of six are two rows; at a pitch of five they would be two as well,
    // so one byte more tells them apart: thirteen bytes make two rows only with a pitch of six.
    EXPECT_EQ(2, HeaderOf("X X \r\n XX \r\nX").Height());
    EXPECT_EQ(2, HeaderOf("X X \r\n XX \r\nXXXXX").Height());
    EXPECT_EQ(3, HeaderOf("X X \r\n XX \r\nXXXXXX").Height());
}

TEST(AsciiInputTest, BlankLinesAfterTheFirstRowWidenThePitchOfEveryRow)
{
    // Pitch 4 + 1 + 2 = 7: the second row starts seven bytes in.
    std::string const text = "X X \n\n\n XX \n\n\n";
    MutableImage const image = ImageOf(text);

    EXPECT_EQ(4, image.Info().Width());
    EXPECT_EQ(2, image.Info().Height());
    EXPECT_EQ((std::vector<uint8_t> { 0xF0, 0xF0, 0, 0 }), RowOf(image, 0));
    EXPECT_EQ((std::vector<uint8_t> { 0x0F, 0xF0, 0, 0 }), RowOf(image, 1));
}

TEST(AsciiInputTest, LaterRowsAreNotSearchedForTheirLineFeeds)
{
    // The first row sets the pitch to 7; the second row is read from byte 7 whatever it holds.
    std::string const text = "X X \n\n\n XX \nXX  \n";
    MutableImage const image = ImageOf(text);

    EXPECT_EQ(2, image.Info().Height());
    EXPECT_EQ((std::vector<uint8_t> { 0x0F, 0xF0, 0, 0 }), RowOf(image, 1));
}

TEST(AsciiInputTest, ControlCharacterCountStopsAtTheEndOfTheData)
{
    ImageInfo const info = HeaderOf("XX\n\n\n");

    EXPECT_EQ(2, info.Width());
    EXPECT_EQ(1, info.Height());
}

TEST(AsciiInputTest, OnlyControlCharactersWidenThePitch)
{
    // DEL and NUL are control characters; bytes from 128 up and the blank are not.
    EXPECT_EQ(1,
        HeaderOf("XX\n\x7F"
                 "XX\n")
            .Height());
    EXPECT_EQ(1, HeaderOf(std::string("XX\n\0XX\n", 7)).Height());
    EXPECT_EQ(2, HeaderOf("XX\n\xC3\xA9\n").Height());
    EXPECT_EQ(2, HeaderOf("XX\n X\n").Height());
}

TEST(AsciiInputTest, ARowOfOneCharacterGivesAnAllZeroImageOfWidthOne)
{
    MutableImage const image = ImageOf("X\nX\nX\n");

    EXPECT_EQ(1, image.Info().Width());
    EXPECT_EQ(3, image.Info().Height());
    EXPECT_EQ(4u, image.Info().Stride());
    EXPECT_EQ(std::vector<uint8_t>(12, 0), image.Buffer());
}

TEST(AsciiInputTest, OddWidthDropsTheLastColumn)
{
    MutableImage const image = ImageOf("XXX\n");

    EXPECT_EQ(3, image.Info().Width());
    EXPECT_EQ((std::vector<uint8_t> { 0xFF, 0, 0, 0 }), RowOf(image, 0));
}

TEST(AsciiInputTest, AnyCharacterOtherThanTheBlankIsLit)
{
    MutableImage const image = ImageOf(".5a\t  \n");

    EXPECT_EQ(6, image.Info().Width());
    EXPECT_EQ((std::vector<uint8_t> { 0xFF, 0xFF, 0x00, 0 }), RowOf(image, 0));
}

TEST(AsciiInputTest, NulCharactersInARowAreLitPixels)
{
    MutableImage const image = ImageOf(std::string("\0 \0\0\n", 5));

    EXPECT_EQ((std::vector<uint8_t> { 0xF0, 0xFF, 0, 0 }), RowOf(image, 0));
}

TEST(AsciiInputTest, OnlyTheClearCharacterIsConsulted)
{
    AsciiInput loader(FileFormat::Ascii, ImageFormat::Unknown, "", "", '#', '.');
    std::string const text = "X.#.\n";

    MutableImage const image = loader.FromData(text.data(), text.size());

    EXPECT_EQ('#', loader.SetChar());
    EXPECT_EQ('.', loader.ClearChar());
    EXPECT_EQ((std::vector<uint8_t> { 0xF0, 0xF0, 0, 0 }), RowOf(image, 0));
}

TEST(AsciiInputTest, InheritedConstructorUsesXAndBlank)
{
    AsciiInput const loader(FileFormat::Ascii, ImageFormat::Unknown, "%04u.txt", "");

    EXPECT_EQ('X', loader.SetChar());
    EXPECT_EQ(' ', loader.ClearChar());
}

TEST(AsciiInputTest, ALastRowWithoutLineFeedCountsOnlyWhenItFillsAPitch)
{
    EXPECT_EQ(1, HeaderOf("X X \n XX ").Height());
    EXPECT_EQ(2, HeaderOf("X X \n XX Y").Height());
}

TEST(AsciiInputTest, TextWithoutLineFeedHasTheEmptyHeaderAndImage)
{
    std::string const text = "X X X";

    ExpectEmptyInfo(HeaderOf(text));
    MutableImage const image = ImageOf(text);
    EXPECT_TRUE(image.IsEmpty());
    ExpectEmptyInfo(image.Info());
}

TEST(AsciiInputTest, LineFeedBeyondTheGivenSizeIsNotLookedFor)
{
    AsciiInput loader = MakeLoader();
    std::string const text = "XX\nXX\n";

    ExpectEmptyInfo(loader.ReadHeaderFromData(text.data(), 2));
    EXPECT_TRUE(loader.FromData(text.data(), 2).IsEmpty());
}

TEST(AsciiInputTest, NoDataHasTheEmptyHeaderAndImage)
{
    AsciiInput loader = MakeLoader();
    std::string const text = "XX\n";

    ExpectEmptyInfo(loader.ReadHeaderFromData(text.data(), 0));
    ExpectEmptyInfo(loader.ReadHeaderFromData(nullptr, 0));
    ExpectEmptyInfo(loader.ReadHeaderFromData(nullptr, 3));
    EXPECT_TRUE(loader.FromData(nullptr, 0).IsEmpty());
}

TEST(AsciiInputTest, ALeadingLineFeedGivesWidthZeroAndTheEmptyImage)
{
    ImageInfo const info = HeaderOf("\nXX\n");
    MutableImage const image = ImageOf("\nXX\n");

    EXPECT_EQ(0, info.Width());
    EXPECT_TRUE(image.IsEmpty());
    ExpectEmptyInfo(image.Info());
}

TEST(AsciiInputTest, WidthWrapsAt65536)
{
    std::string const text = std::string(65536 + 2, 'X') + "\n";

    ImageInfo const info = HeaderOf(text);
    MutableImage const image = ImageOf(text);

    EXPECT_EQ(2, info.Width());
    EXPECT_EQ(static_cast<int>(text.size() / 3), info.Height());
    EXPECT_EQ(info.Height(), image.Info().Height());
    EXPECT_EQ(size_t { info.Stride() } * static_cast<size_t>(info.Height()), image.Buffer().size());
}

TEST(AsciiInputTest, AWidthOfExactly65536WrapsToTheEmptyImage)
{
    std::string const text = std::string(65536, 'X') + "\n";

    EXPECT_EQ(0, HeaderOf(text).Width());
    EXPECT_TRUE(ImageOf(text).IsEmpty());
}

TEST(AsciiInputTest, HeightWrapsAt65536)
{
    std::string text;
    for (int row = 0; row < 65537; ++row)
        text += "X\n";

    EXPECT_EQ(1, HeaderOf(text).Height());
    EXPECT_EQ(1, ImageOf(text).Info().Height());
}

TEST(AsciiInputTest, RowsAreTakenOnlyAsFarAsTheDataHoldsWholePitches)
{
    // The first row claims a pitch of 1002; the 1012 bytes hold one such row and no more.
    std::string const text = std::string(1000, 'X') + "\n\n" + std::string(10, ' ');

    MutableImage const image = ImageOf(text);

    EXPECT_EQ(1000, image.Info().Width());
    EXPECT_EQ(1, image.Info().Height());
    EXPECT_EQ(std::vector<uint8_t>(500, 0xFF),
        std::vector<uint8_t>(image.Buffer().begin(), image.Buffer().begin() + 500));
}

TEST(AsciiInputTest, HeaderSizeIs16384) { EXPECT_EQ(16384u, MakeLoader().GetHeaderSize()); }

TEST(AsciiInputTest, LoadReadsTheFile)
{
    ScratchFolder const folder;
    std::string const path = folder.Write("two.txt", kTwoRows);
    AsciiInput loader = MakeLoader();

    MutableImage const image = loader.Load(path.c_str());

    EXPECT_EQ(4, image.Info().Width());
    EXPECT_EQ(2, image.Info().Height());
    EXPECT_EQ((std::vector<uint8_t> { 0xF0, 0xF0, 0, 0 }), RowOf(image, 0));
    EXPECT_EQ((std::vector<uint8_t> { 0x0F, 0xF0, 0, 0 }), RowOf(image, 1));
}

TEST(AsciiInputTest, LoadOfAStringPathReadsTheFile)
{
    ScratchFolder const folder;
    std::string const path = folder.Write("two.txt", kTwoRows);
    AsciiInput loader = MakeLoader();

    EXPECT_EQ(2, loader.Load(path).Info().Height());
}

TEST(AsciiInputTest, LoadOfAnEmptyFileFails)
{
    ScratchFolder const folder;
    std::string const path = folder.Write("empty.txt", "");
    AsciiInput loader = MakeLoader();

    EXPECT_THAT([&] { loader.Load(path.c_str()); },
        ThrowsMessage<ResourcesLibraryException>(StrEq("Ascii::Load cannot read " + path)));
}

TEST(AsciiInputTest, LoadOfAMissingFileFails)
{
    ScratchFolder const folder;
    std::string const path = folder.PathOf("missing.txt");
    AsciiInput loader = MakeLoader();

    EXPECT_THAT([&] { loader.Load(path.c_str()); },
        ThrowsMessage<ResourcesLibraryException>(StrEq("Ascii::Load cannot read " + path)));
}

TEST(AsciiInputTest, LoadOfAFolderFails)
{
    ScratchFolder const folder;
    std::string const path = folder.PathOf("");
    AsciiInput loader = MakeLoader();

    EXPECT_THAT([&] { loader.Load(path.c_str()); },
        ThrowsMessage<ResourcesLibraryException>(StrEq("Ascii::Load cannot read " + path)));
}

TEST(AsciiInputTest, LoadOfANullPathFailsAsAnEmptyPath)
{
    AsciiInput loader = MakeLoader();

    EXPECT_THAT([&] { loader.Load(static_cast<char const*>(nullptr)); },
        ThrowsMessage<ResourcesLibraryException>(StrEq("Ascii::Load cannot read ")));
}

TEST(AsciiInputTest, LoadFailureNamesTheLoader)
{
    AsciiInput loader = MakeLoader();
    try {
        loader.Load("");
        FAIL() << "no exception";
    } catch (ResourcesLibraryException const& e) {
        EXPECT_STREQ("src/lib/Zar/ResourcesLibrary/Image/codec/AsciiInput", e.Source()._file);
        // The compiler spells the rest of the signature: only the loader's name is promised.
        EXPECT_THAT(e.Source()._function, testing::HasSubstr(" AsciiInput::Load("));
    }
}

TEST(AsciiInputTest, LoadOfAFileWithoutLineFeedGivesTheEmptyImage)
{
    ScratchFolder const folder;
    std::string const path = folder.Write("flat.txt", "XXXX");
    AsciiInput loader = MakeLoader();

    EXPECT_TRUE(loader.Load(path.c_str()).IsEmpty());
}

TEST(AsciiInputTest, LoadHeaderIsNotSupported)
{
    ScratchFolder const folder;
    std::string const path = folder.Write("two.txt", kTwoRows);
    AsciiInput loader = MakeLoader();

    EXPECT_THAT([&] { loader.LoadHeader(path.c_str()); },
        ThrowsMessage<NotSupported>(StrEq("Input::Read not supported")));
}
