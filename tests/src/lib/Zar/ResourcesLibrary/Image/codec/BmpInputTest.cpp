#include "Zar/ResourcesLibrary/Image/codec/BmpInput.h"

#include "BmpWriter.h"

#include "Zar/Lt/Core/ScratchFolder.h"
#include "Zar/Lt/Exceptions/PreCondition.h"
#include "Zar/ResourcesLibrary/ResourcesLibraryException.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <filesystem>
#include <random>
#include <sstream>
#include <string>
#include <vector>

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::StartsWith;
using testing::StrEq;
using testing::ThrowsMessage;
using TestSupport::BmpWriter;
using Zar::Lt::Core::ScratchFolder;
using Zar::Lt::Exceptions::BaseException;
using Zar::Lt::Exceptions::PreCondition;
using Zar::ResourcesLibrary::ResourcesLibraryException;
using Zar::ResourcesLibrary::Image::FileFormat;
using Zar::ResourcesLibrary::Image::ImageFormat;
using Zar::ResourcesLibrary::Image::ImageInfo;
using Zar::ResourcesLibrary::Image::MutableImage;
using Zar::ResourcesLibrary::Image::BmpLayout::BITMAPINFOHEADER;

using Bytes = std::vector<uint8_t>;

namespace {

BmpInput MakeLoader() { return BmpInput(FileFormat::Bmp, ImageFormat::Unknown, "%04u.bmp", ""); }

MutableImage LoadBytes(Bytes const& bytes)
{
    ScratchFolder folder;
    std::string const path = folder.Write("image.bmp", bytes);
    return MakeLoader().Load(path);
}

// What Load does after opening the file, on bytes in memory: for the tests that try many files.
MutableImage LoadFromMemory(Bytes const& bytes)
{
    std::istringstream stream(std::string(bytes.begin(), bytes.end()));
    BmpInput input = MakeLoader();
    Bytes const block = input.RawReadHeader(stream);
    return input.ReadData(stream, block, ImageFormat::Unknown);
}

MutableImage LoadBmp(BmpWriter const& bmp) { return LoadBytes(bmp.Bytes()); }

Bytes Row(MutableImage const& image, int row)
{
    auto const stride = static_cast<int>(image.Info().Stride());
    auto const begin = image.Buffer().begin() + row * stride;
    return { begin, begin + stride };
}

// Loading must fail with a library exception of exactly this text.
void ExpectRefused(BmpWriter const& bmp, std::string const& message)
{
    Bytes const bytes = bmp.Bytes();
    EXPECT_THAT([&] { LoadBytes(bytes); }, ThrowsMessage<ResourcesLibraryException>(StrEq(message)));
}

std::vector<Bytes> const MonoRows = { { 0xFF, 0x00 }, { 0x00, 0xFF } };

// ---- 1 bit per pixel ---------------------------------------------------------------------------

TEST(BmpInputTest, MonoBottomUpWithWhiteFirstGivesBlackOnWhite)
{
    MutableImage const image = LoadBmp(BmpWriter::Mono(16, MonoRows, BmpWriter::WhiteFirst));
    EXPECT_EQ(16, image.Info().Width());
    EXPECT_EQ(2, image.Info().Height());
    EXPECT_EQ(8u, image.Info().Stride());
    EXPECT_EQ(ImageFormat::Gray4, image.Info().Format());
    EXPECT_TRUE(image.Info().IsBottomUp());
    EXPECT_THAT(Row(image, 0), ElementsAre(0x00, 0x00, 0x00, 0x00, 0xFF, 0xFF, 0xFF, 0xFF));
    EXPECT_THAT(Row(image, 1), ElementsAre(0xFF, 0xFF, 0xFF, 0xFF, 0x00, 0x00, 0x00, 0x00));
}

TEST(BmpInputTest, MonoWithBlackFirstGivesTheInvertedLevels)
{
    MutableImage const image = LoadBmp(BmpWriter::Mono(16, MonoRows, BmpWriter::BlackFirst));
    EXPECT_THAT(Row(image, 0), ElementsAre(0xFF, 0xFF, 0xFF, 0xFF, 0x00, 0x00, 0x00, 0x00));
    EXPECT_THAT(Row(image, 1), ElementsAre(0x00, 0x00, 0x00, 0x00, 0xFF, 0xFF, 0xFF, 0xFF));
}

TEST(BmpInputTest, MonoTopDownIsNotFlipped)
{
    MutableImage const image = LoadBmp(BmpWriter::Mono(16, MonoRows, BmpWriter::BlackFirst, true));
    EXPECT_FALSE(image.Info().IsBottomUp());
    EXPECT_EQ(2, image.Info().Height());
    EXPECT_THAT(Row(image, 0), ElementsAre(0xFF, 0xFF, 0xFF, 0xFF, 0x00, 0x00, 0x00, 0x00));
    EXPECT_THAT(Row(image, 1), ElementsAre(0x00, 0x00, 0x00, 0x00, 0xFF, 0xFF, 0xFF, 0xFF));
}

TEST(BmpInputTest, MonoConvertsPairsOfPixelsThroughTheTable)
{
    // 0x1B = 00 01 10 11: each pair of bits picks one output byte.
    EXPECT_THAT(Row(LoadBmp(BmpWriter::Mono(8, { { 0x1B } }, BmpWriter::BlackFirst)), 0),
        ElementsAre(0x00, 0x0F, 0xF0, 0xFF));
    EXPECT_THAT(Row(LoadBmp(BmpWriter::Mono(8, { { 0x1B } }, BmpWriter::WhiteFirst)), 0),
        ElementsAre(0xFF, 0xF0, 0x0F, 0x00));
}

TEST(BmpInputTest, MonoWidthTwelveFillsTheWiderImageLineFromThePaddingBits)
{
    // Source stride 4, image stride 8: two source bytes give 8 output bytes; pixels 12 to 15 come
    // from the low bits of the second byte, which lie beyond the width.
    MutableImage const image
        = LoadBmp(BmpWriter::Mono(12, { { 0xAB, 0xC5 }, { 0x00, 0x0F } }, BmpWriter::BlackFirst));
    EXPECT_EQ(12, image.Info().Width());
    EXPECT_EQ(8u, image.Info().Stride());
    EXPECT_THAT(Row(image, 0), ElementsAre(0xF0, 0xF0, 0xF0, 0xFF, 0xFF, 0x00, 0x0F, 0x0F));
    EXPECT_THAT(Row(image, 1), ElementsAre(0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xFF, 0xFF));
}

TEST(BmpInputTest, MonoStopsAtTheSourceStrideWhenTheWidthNeedsMore)
{
    // Width 33 has a source stride of 4 bytes (the bits are divided by 8 rounding down), so the
    // 33rd pixel is never read and its output byte stays zero.
    MutableImage const image
        = LoadBmp(BmpWriter::Mono(33, { { 0xFF, 0xFF, 0xFF, 0xFF, 0x80, 0, 0, 0 } }, BmpWriter::BlackFirst));
    EXPECT_EQ(20u, image.Info().Stride());
    Bytes expected(16, 0xFF);
    expected.resize(20, 0x00);
    EXPECT_THAT(Row(image, 0), ElementsAreArray(expected));
}

TEST(BmpInputTest, MonoNarrowerThanEightPixelsHasNoSourceBytesAndStaysZero)
{
    MutableImage const image = LoadBmp(BmpWriter::Mono(7, { { 0xFE }, { 0xFE } }, BmpWriter::BlackFirst));
    EXPECT_EQ(7, image.Info().Width());
    EXPECT_EQ(4u, image.Info().Stride());
    EXPECT_THAT(image.Buffer(), ElementsAre(0, 0, 0, 0, 0, 0, 0, 0));
}

TEST(BmpInputTest, MonoOfWidthZeroIsAnImageWithoutPixels)
{
    BmpWriter bmp = BmpWriter::Mono(0, { {}, {} }, BmpWriter::BlackFirst);
    MutableImage const image = LoadBmp(bmp);
    EXPECT_EQ(0, image.Info().Width());
    EXPECT_EQ(2, image.Info().Height());
    EXPECT_TRUE(image.IsEmpty());
}

TEST(BmpInputTest, MonoOfHeightZeroIsAnImageWithoutPixels)
{
    MutableImage const image = LoadBmp(BmpWriter::Mono(16, {}, BmpWriter::BlackFirst));
    EXPECT_EQ(0, image.Info().Height());
    EXPECT_TRUE(image.IsEmpty());
}

TEST(BmpInputTest, MonoLinesBeyondTheSixteenBitLineCounterStayZero)
{
    std::vector<Bytes> rows(65537, Bytes { 0xFF });
    MutableImage const image = LoadBmp(BmpWriter::Mono(8, rows, BmpWriter::BlackFirst, true));
    ASSERT_EQ(65537, image.Info().Height());
    EXPECT_THAT(Row(image, 0), ElementsAre(0xFF, 0xFF, 0xFF, 0xFF));
    EXPECT_THAT(Row(image, 65535), ElementsAre(0xFF, 0xFF, 0xFF, 0xFF));
    EXPECT_THAT(Row(image, 65536), ElementsAre(0x00, 0x00, 0x00, 0x00));
}

// ---- 4 bits per pixel --------------------------------------------------------------------------

std::vector<Bytes> const GrayRows = { { 0x01, 0x23, 0x45, 0x67 }, { 0x89, 0xAB, 0xCD, 0xEF } };

TEST(BmpInputTest, Gray4WithBlackFirstTakesTheIndicesAsLevels)
{
    MutableImage const image = LoadBmp(BmpWriter::Gray4(8, GrayRows, BmpWriter::BlackFirst));
    EXPECT_EQ(ImageFormat::Gray4, image.Info().Format());
    EXPECT_EQ(4u, image.Info().Stride());
    EXPECT_TRUE(image.Info().IsBottomUp());
    EXPECT_THAT(Row(image, 0), ElementsAre(0x01, 0x23, 0x45, 0x67));
    EXPECT_THAT(Row(image, 1), ElementsAre(0x89, 0xAB, 0xCD, 0xEF));
}

TEST(BmpInputTest, Gray4WithWhiteFirstComesOutNegated)
{
    MutableImage const image = LoadBmp(BmpWriter::Gray4(8, GrayRows, BmpWriter::WhiteFirst));
    EXPECT_THAT(Row(image, 0), ElementsAre(0xFE, 0xDC, 0xBA, 0x98));
    EXPECT_THAT(Row(image, 1), ElementsAre(0x76, 0x54, 0x32, 0x10));
}

TEST(BmpInputTest, Gray4TopDownIsNotFlipped)
{
    MutableImage const image = LoadBmp(BmpWriter::Gray4(8, GrayRows, BmpWriter::BlackFirst, true));
    EXPECT_FALSE(image.Info().IsBottomUp());
    EXPECT_THAT(Row(image, 0), ElementsAre(0x01, 0x23, 0x45, 0x67));
    EXPECT_THAT(Row(image, 1), ElementsAre(0x89, 0xAB, 0xCD, 0xEF));
}

TEST(BmpInputTest, Gray4WithAShorterSourceStrideLaysTheSourceLinesOneAfterAnother)
{
    // Width 9: the loader's source stride is 4 bytes, the image stride 8. A file with rows of 4
    // bytes puts both source lines into the first image line.
    BmpWriter bmp = BmpWriter::Gray4(
        9, { { 0x12, 0x34, 0x56, 0x78 }, { 0x9A, 0xBC, 0xDE, 0xF0 } }, BmpWriter::BlackFirst, true);
    bmp.stride = 4;
    MutableImage const image = LoadBmp(bmp);
    EXPECT_EQ(8u, image.Info().Stride());
    EXPECT_THAT(Row(image, 0), ElementsAre(0x12, 0x34, 0x56, 0x78, 0x9A, 0xBC, 0xDE, 0xF0));
    EXPECT_THAT(Row(image, 1), ElementsAre(0, 0, 0, 0, 0, 0, 0, 0));
}

TEST(BmpInputTest, Gray4WithTheUsualStrideOfAnOddWidthReadsOnlyTheFirstBytes)
{
    // A writer pads a row of 9 pixels (5 bytes) to 8; the loader reads 4 bytes per line, so the
    // 8 bytes it takes are the whole first row of the file.
    BmpWriter bmp = BmpWriter::Gray4(9,
        { { 0x12, 0x34, 0x56, 0x78, 0x90 }, { 0xAB, 0xCD, 0xEF, 0x12, 0x30 } }, BmpWriter::BlackFirst, true);
    MutableImage const image = LoadBmp(bmp);
    EXPECT_THAT(Row(image, 0), ElementsAre(0x12, 0x34, 0x56, 0x78, 0x90, 0, 0, 0));
    EXPECT_THAT(Row(image, 1), ElementsAre(0, 0, 0, 0, 0, 0, 0, 0));
}

TEST(BmpInputTest, Gray4OfWidthOneHasNoSourceBytes)
{
    MutableImage const image = LoadBmp(BmpWriter::Gray4(1, { { 0xF0 }, { 0xF0 } }, BmpWriter::BlackFirst));
    EXPECT_EQ(4u, image.Info().Stride());
    EXPECT_THAT(image.Buffer(), ElementsAre(0, 0, 0, 0, 0, 0, 0, 0));
}

TEST(BmpInputTest, Gray4OfHeightZeroFailsOnTheFirstLine)
{
    BmpWriter const bmp = BmpWriter::Gray4(8, {}, BmpWriter::BlackFirst);
    Bytes const bytes = bmp.Bytes();
    EXPECT_THAT([&] { LoadBytes(bytes); },
        ThrowsMessage<PreCondition>(StrEq("PreCondition y < static_cast<uint32_t>(_info.Height())")));
}

TEST(BmpInputTest, TheOtherFieldsOfTheResultAreZero)
{
    MutableImage const image = LoadBmp(BmpWriter::Gray4(8, GrayRows, BmpWriter::BlackFirst));
    EXPECT_EQ(0u, image.Info()._reserved1);
    EXPECT_EQ(0u, image.Info()._reserved2);
    EXPECT_EQ(0u, image.Info()._attribute);
}

// ---- palette entry 0 ---------------------------------------------------------------------------

TEST(BmpInputTest, OnlyTheFirstThreeBytesOfTheFirstEntryDecideWhite)
{
    BmpWriter bmp = BmpWriter::Mono(8, { { 0x1B } }, BmpWriter::BlackFirst);
    bmp.palette = { 0x00FFFFFF, 0x00FFFFFF };
    EXPECT_THAT(Row(LoadBmp(bmp), 0), ElementsAre(0xFF, 0xF0, 0x0F, 0x00));
    bmp.palette = { 0x00FFFFFE, 0x00FFFFFF };
    EXPECT_THAT(Row(LoadBmp(bmp), 0), ElementsAre(0x00, 0x0F, 0xF0, 0xFF));
}

TEST(BmpInputTest, ThePaletteStartsWhereTheInfoHeaderSizeSays)
{
    // With a 124-byte info header the palette lies at offset 124 of the block.
    BmpWriter bmp = BmpWriter::Mono(8, { { 0x1B } }, BmpWriter::WhiteFirst);
    bmp.infoSize = 124;
    EXPECT_THAT(Row(LoadBmp(bmp), 0), ElementsAre(0xFF, 0xF0, 0x0F, 0x00));
}

TEST(BmpInputTest, AFirstEntryReachingBeyondTheBlockIsNotWhite)
{
    // The palette would start two bytes before the end of the block: entry 0 does not fit.
    // Were the third byte read from behind the block, it would be the pixel byte 0xFF.
    BmpWriter bmp = BmpWriter::Mono(8, { { 0xFF } }, BmpWriter::BlackFirst);
    bmp.palette = {};
    bmp.gap = { 0xFF, 0xFF };
    EXPECT_THAT(Row(LoadBmp(bmp), 0), ElementsAre(0xFF, 0xFF, 0xFF, 0xFF));
}

TEST(BmpInputTest, AnInfoHeaderSizePastTheBlockHasNoWhitePalette)
{
    // biSize + 4 x biClrUsed wraps around in 32 bits and passes the colour count check; the
    // palette it points to lies far beyond the block and is not read.
    BmpWriter bmp = BmpWriter::Mono(8, { { 0x1B } }, BmpWriter::WhiteFirst);
    bmp.infoSize = 0xFFFFFFFF;
    bmp.clrUsed = 1;
    Bytes bytes = bmp.Bytes();
    EXPECT_THAT(Row(LoadBytes(bytes), 0), ElementsAre(0x00, 0x0F, 0xF0, 0xFF));
}

// ---- refused files -----------------------------------------------------------------------------

TEST(BmpInputTest, TwentyFourBitsAreNotSupported)
{
    BmpWriter bmp = BmpWriter::Mono(2, { { 0, 0, 0, 0, 0, 0 } }, BmpWriter::BlackFirst);
    bmp.bitCount = 24;
    bmp.palette = {};
    ExpectRefused(
        bmp, "Rgb24 format not supported (only bmp mono & grayscale 16 colors without compression)");
}

TEST(BmpInputTest, SixteenBitsAreNotSupportedUnderTheNameUnknown)
{
    BmpWriter bmp = BmpWriter::Mono(2, { { 0, 0, 0, 0 } }, BmpWriter::BlackFirst);
    bmp.bitCount = 16;
    ExpectRefused(
        bmp, "Unknown format not supported (only bmp mono & grayscale 16 colors without compression)");
}

TEST(BmpInputTest, EightAndThirtyTwoBitsAreNotSupported)
{
    BmpWriter bmp = BmpWriter::Mono(2, { { 0, 0, 0, 0 } }, BmpWriter::BlackFirst);
    bmp.bitCount = 8;
    ExpectRefused(
        bmp, "Gray8 format not supported (only bmp mono & grayscale 16 colors without compression)");
    bmp.bitCount = 32;
    ExpectRefused(bmp, "Rgba format not supported (only bmp mono & grayscale 16 colors without compression)");
    bmp.bitCount = 0;
    ExpectRefused(
        bmp, "Unknown format not supported (only bmp mono & grayscale 16 colors without compression)");
}

TEST(BmpInputTest, PlanesMultiplyTheBitCount)
{
    BmpWriter bmp = BmpWriter::Mono(8, { { 0x1B } }, BmpWriter::BlackFirst);
    bmp.planes = 4;
    bmp.sizeImage = 4;
    EXPECT_EQ(ImageFormat::Gray4, LoadBmp(bmp).Info().Format());
    bmp.planes = 0;
    ExpectRefused(
        bmp, "Unknown format not supported (only bmp mono & grayscale 16 colors without compression)");
    bmp.planes = 0xFFFF;
    bmp.bitCount = 0xFFFF;
    bmp.stride = 4;
    ExpectRefused(
        bmp, "Unknown format not supported (only bmp mono & grayscale 16 colors without compression)");
}

TEST(BmpInputTest, BitFieldsFailOnTheCompressionFirst)
{
    BmpWriter bmp = BmpWriter::Mono(2, { { 0, 0, 0, 0 } }, BmpWriter::BlackFirst);
    bmp.bitCount = 16;
    bmp.compression = 3;
    ExpectRefused(bmp, "Bmp invalid compression 3");
}

TEST(BmpInputTest, RunLengthCompressionIsRefused)
{
    BmpWriter bmp = BmpWriter::Gray4(8, GrayRows, BmpWriter::BlackFirst);
    bmp.compression = 2;
    ExpectRefused(bmp, "Bmp invalid compression 2");
    bmp.bitCount = 8;
    bmp.compression = 1;
    ExpectRefused(bmp, "Bmp invalid compression 1");
}

TEST(BmpInputTest, AZeroImageSizeIsRefusedForANonEmptyImage)
{
    BmpWriter bmp = BmpWriter::Mono(16, MonoRows, BmpWriter::WhiteFirst);
    bmp.sizeImage = 0;
    ExpectRefused(bmp, "Bmp invalid image size 0/8");
}

TEST(BmpInputTest, AnImageSizeBelowTheLoadersOwnMinimumIsRefused)
{
    BmpWriter bmp = BmpWriter::Gray4(8, GrayRows, BmpWriter::BlackFirst);
    bmp.sizeImage = 7;
    ExpectRefused(bmp, "Bmp invalid image size 7/8");
    bmp.sizeImage = 8;
    EXPECT_NO_THROW(LoadBmp(bmp));
}

TEST(BmpInputTest, AZeroImageSizeIsAcceptedForAnEmptyImage)
{
    BmpWriter bmp = BmpWriter::Mono(0, { {} }, BmpWriter::WhiteFirst);
    bmp.sizeImage = 0;
    EXPECT_TRUE(LoadBmp(bmp).IsEmpty());
}

TEST(BmpInputTest, AWrongMagicIsRefusedWithItsValue)
{
    BmpWriter bmp = BmpWriter::Mono(16, MonoRows, BmpWriter::WhiteFirst);
    bmp.type = 'B' | 'A' << 8;
    ExpectRefused(bmp, "Wrong Bmp file magic 0x4142");
    bmp.type = 0x0001;
    ExpectRefused(bmp, "Wrong Bmp file magic 0x0001");
}

TEST(BmpInputTest, AFileShorterThanTheFileHeaderIsTooSmall)
{
    for (size_t size : { 0, 1, 10, 13 }) {
        BmpWriter bmp = BmpWriter::Mono(16, MonoRows, BmpWriter::WhiteFirst);
        bmp.truncateTo = size;
        ExpectRefused(bmp, "source too small " + std::to_string(size));
    }
}

TEST(BmpInputTest, APixelOffsetLeavingLessThanFortyHeaderBytesIsRefused)
{
    BmpWriter bmp = BmpWriter::Mono(16, MonoRows, BmpWriter::WhiteFirst);
    bmp.offBits = 50;
    ExpectRefused(bmp, "Bmp file header too small 36");
    bmp.offBits = 14;
    ExpectRefused(bmp, "Bmp file header too small 0");
    bmp.offBits = 53;
    ExpectRefused(bmp, "Bmp file header too small 39");
}

TEST(BmpInputTest, APixelOffsetBelowFourteenWrapsAndFailsOnTheShortHeaderRead)
{
    // The block size wraps to almost 4 GiB; only the bytes the file holds are ever read.
    for (uint32_t offset : { 0u, 1u, 13u }) {
        BmpWriter bmp = BmpWriter::Mono(16, MonoRows, BmpWriter::WhiteFirst);
        bmp.offBits = offset;
        size_t const fileSize = bmp.Bytes().size();
        ExpectRefused(bmp, "Bmp header too small " + std::to_string(fileSize - 14));
    }
}

TEST(BmpInputTest, AHeaderBlockCutShortIsRefusedWithTheCountRead)
{
    BmpWriter bmp = BmpWriter::Mono(16, MonoRows, BmpWriter::WhiteFirst);
    bmp.truncateTo = 14 + 30;
    ExpectRefused(bmp, "Bmp header too small 30");
    bmp.truncateTo = 14;
    ExpectRefused(bmp, "Bmp header too small 0");
}

TEST(BmpInputTest, APaletteBeyondTheBlockIsAnInvalidColorCount)
{
    BmpWriter bmp = BmpWriter::Mono(16, MonoRows, BmpWriter::WhiteFirst);
    bmp.clrUsed = 3;
    ExpectRefused(bmp, "Bmp invalid color count 3");
    bmp.clrUsed = 2;
    EXPECT_NO_THROW(LoadBmp(bmp));
}

TEST(BmpInputTest, MissingPixelDataIsRefusedWithTheCounts)
{
    BmpWriter bmp = BmpWriter::Mono(16, MonoRows, BmpWriter::WhiteFirst);
    bmp.truncateTo = bmp.Bytes().size() - 3;
    ExpectRefused(bmp, "Cannot read image data 5/8");
    BmpWriter gray = BmpWriter::Gray4(8, GrayRows, BmpWriter::BlackFirst);
    gray.truncateTo = gray.Bytes().size() - 1;
    ExpectRefused(gray, "Cannot read image data 7/8");
}

TEST(BmpInputTest, ALyingImageSizeWithoutTheDataIsRefusedBeforeAllocating)
{
    BmpWriter bmp = BmpWriter::Mono(8, { { 0xFF } }, BmpWriter::BlackFirst);
    bmp.height = 100000000;
    bmp.sizeImage = 0xFFFFFFFF;
    ExpectRefused(bmp, "Cannot read image data 4/400000000");
}

TEST(BmpInputTest, HugeDimensionsDoNotOverflowTheMinimumSize)
{
    BmpWriter bmp = BmpWriter::Mono(8, { { 0xFF } }, BmpWriter::BlackFirst);
    bmp.width = INT32_MAX;
    bmp.height = INT32_MAX;
    bmp.sizeImage = 0xFFFFFFFF;
    bmp.stride = 4;
    // (2147483647 >> 3, padded to 4) x 2147483647 lines.
    ExpectRefused(bmp, "Bmp invalid image size 4294967295/576460752034988032");
    bmp.bitCount = 4;
    bmp.height = -INT32_MAX;
    ExpectRefused(bmp, "Bmp invalid image size 4294967295/2305843008139952128");
}

TEST(BmpInputTest, TheLowestHeightHasNoPositiveCounterpartAndIsRefused)
{
    BmpWriter bmp = BmpWriter::Mono(0, { {} }, BmpWriter::BlackFirst);
    bmp.height = INT32_MIN;
    ExpectRefused(bmp, "Bmp invalid height -2147483648");
}

TEST(BmpInputTest, AnImageTooLargeForItsPixelDataIsRefusedBeforeAllocating)
{
    // Lines of a 1-pixel image hold no source bytes, so the file is tiny, but the decoded image
    // would take 4 bytes per line: beyond the fixed allowance of 16 MiB.
    BmpWriter bmp = BmpWriter::Mono(1, {}, BmpWriter::BlackFirst);
    bmp.height = (1 << 22) + 1;
    bmp.sizeImage = 0;
    ExpectRefused(bmp, "Bmp image too large 16777220/16777216");
    bmp.height = 1 << 22;
    MutableImage const image = LoadBmp(bmp);
    EXPECT_EQ(16777216u, image.Buffer().size());
}

TEST(BmpInputTest, AnImageMayTakeFourBytesPerByteOfPixelDataBeyondTheAllowance)
{
    // Width 32 at 1 bit: 4 source bytes per line become 16 image bytes. The image is larger than
    // the fixed allowance, and the file backs it.
    int const lines = (1 << 20) + 16;
    BmpWriter bmp = BmpWriter::Mono(32, {}, BmpWriter::BlackFirst, true);
    bmp.height = -lines;
    bmp.sizeImage = 4 * lines;
    for (int line = 0; line < lines; ++line)
        bmp.trailer.insert(bmp.trailer.end(), { 0x80, 0, 0, 1 });
    MutableImage const image = LoadBmp(bmp);
    EXPECT_EQ(uint64_t { 16 } * lines, image.Buffer().size());
    EXPECT_THAT(Row(image, 0), ElementsAre(0xF0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x0F));
    EXPECT_THAT(Row(image, 65535), ElementsAre(0xF0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x0F));
}

TEST(BmpInputTest, ANarrowFourBitImageWithoutSourceBytesIsNegatedOnItsPixelBytesOnly)
{
    MutableImage const image = LoadBmp(BmpWriter::Gray4(1, { { 0x70 } }, BmpWriter::WhiteFirst));
    EXPECT_THAT(image.Buffer(), ElementsAre(0xFF, 0x00, 0x00, 0x00));
}

TEST(BmpInputTest, ANegativeWidthFailsOnTheByteCount)
{
    BmpWriter bmp = BmpWriter::Mono(8, { { 0xFF } }, BmpWriter::BlackFirst);
    bmp.width = -8;
    Bytes const bytes = bmp.Bytes();
    EXPECT_THAT([&] { LoadBytes(bytes); }, ThrowsMessage<PreCondition>(StrEq("PreCondition x >= 0")));
}

TEST(BmpInputTest, LoadWithoutPathIsALibraryFailure)
{
    BmpInput input = MakeLoader();
    EXPECT_THAT([&] { input.Load(static_cast<char const*>(nullptr)); },
        ThrowsMessage<ResourcesLibraryException>(StrEq("Input::Load nullptr in filePath")));
    EXPECT_THAT([&] { input.Load(""); },
        ThrowsMessage<ResourcesLibraryException>(StrEq("Input::Load nullptr in filePath")));
}

TEST(BmpInputTest, LoadOfAMissingFileCannotOpen)
{
    ScratchFolder folder;
    std::string const path = folder.PathOf("missing.bmp");
    BmpInput input = MakeLoader();
    try {
        input.Load(path);
        FAIL() << "no exception";
    } catch (ResourcesLibraryException const& e) {
        EXPECT_EQ("BmpInput::Load cannot open " + path, e.what());
        EXPECT_STREQ("src/lib/Zar/ResourcesLibrary/Image/codec/BmpInput", e.Source()._file);
        // The compiler spells the rest of the signature: only the loader's name is promised.
        EXPECT_THAT(e.Source()._function, testing::HasSubstr(" BmpInput::Load("));
    }
}

// ---- header reading ----------------------------------------------------------------------------

TEST(BmpInputTest, TheHeaderIsFiftyFourBytes) { EXPECT_EQ(54u, MakeLoader().GetHeaderSize()); }

TEST(BmpInputTest, ReadHeaderDescribesTheFileAsItIs)
{
    std::string const bytes = [] {
        Bytes data = BmpWriter::Mono(12, { { 0 }, { 0 }, { 0 } }, BmpWriter::BlackFirst, true).Bytes();
        return std::string(data.begin(), data.end());
    }();
    std::istringstream stream(bytes);
    ImageInfo const info = MakeLoader().ReadHeader(stream);
    EXPECT_EQ(12, info.Width());
    EXPECT_EQ(3, info.Height());
    EXPECT_EQ(ImageFormat::Mono, info.Format());
    EXPECT_EQ(4u, info.Stride());
    EXPECT_FALSE(info.IsBottomUp());
    // The stream stands at the pixel data.
    EXPECT_EQ(static_cast<std::streamoff>(14 + 40 + 8), static_cast<std::streamoff>(stream.tellg()));
}

TEST(BmpInputTest, LoadHeaderReadsTheHeaderOfAFile)
{
    ScratchFolder folder;
    std::string const path
        = folder.Write("a.bmp", BmpWriter::Gray4(9, { { 0 }, { 0 } }, BmpWriter::BlackFirst).Bytes());
    ImageInfo const info = MakeLoader().LoadHeader(path.c_str());
    EXPECT_EQ(9, info.Width());
    EXPECT_EQ(2, info.Height());
    EXPECT_EQ(ImageFormat::Gray4, info.Format());
    EXPECT_EQ(8u, info.Stride());
    EXPECT_TRUE(info.IsBottomUp());
}

TEST(BmpInputTest, RawReadHeaderReturnsTheWholeBlock)
{
    BmpWriter bmp = BmpWriter::Mono(8, { { 0 } }, BmpWriter::WhiteFirst);
    bmp.gap = { 1, 2, 3 };
    Bytes const data = bmp.Bytes();
    std::istringstream stream(std::string(data.begin(), data.end()));
    BmpInput input = MakeLoader();
    Bytes const block = input.RawReadHeader(stream);
    EXPECT_EQ(bmp.HeaderBlock(), block);
}

TEST(BmpInputTest, ToImageInfoOfAShortBlockNamesItsSize)
{
    EXPECT_THAT([] { BmpInput::ToImageInfo(Bytes(39, 0)); },
        ThrowsMessage<ResourcesLibraryException>(StrEq("Bmp header 39/40")));
    EXPECT_THAT([] { BmpInput::ToImageInfo(Bytes()); },
        ThrowsMessage<ResourcesLibraryException>(StrEq("Bmp header 0/40")));
}

TEST(BmpInputTest, ToImageInfoIgnoresTheAskedFormat)
{
    BITMAPINFOHEADER header {};
    header.biSize = 40;
    header.biWidth = 3;
    header.biHeight = -2;
    header.biPlanes = 1;
    header.biBitCount = 4;
    header.biSizeImage = 8;
    ImageInfo const info = BmpInput::ToImageInfo(header, ImageFormat::Rgb24);
    EXPECT_EQ(ImageFormat::Gray4, info.Format());
    EXPECT_EQ(3, info.Width());
    EXPECT_EQ(2, info.Height());
    EXPECT_EQ(4u, info.Stride());
    EXPECT_FALSE(info.IsBottomUp());
}

TEST(BmpInputTest, ReadDataReadsThePixelsBehindTheBlock)
{
    BmpWriter const bmp = BmpWriter::Mono(16, MonoRows, BmpWriter::WhiteFirst);
    Bytes const block = bmp.HeaderBlock();
    Bytes const pixels = bmp.PixelData();
    std::istringstream stream(std::string(pixels.begin(), pixels.end()));
    MutableImage const image = MakeLoader().ReadData(stream, block, ImageFormat::Unknown);
    EXPECT_THAT(Row(image, 0), ElementsAre(0x00, 0x00, 0x00, 0x00, 0xFF, 0xFF, 0xFF, 0xFF));
}

TEST(BmpInputTest, ReadDataNeedsAWholeInfoHeaderInTheBlock)
{
    std::istringstream stream("pixels");
    EXPECT_THAT([&] { MakeLoader().ReadData(stream, Bytes(39, 0), ImageFormat::Unknown); },
        ThrowsMessage<PreCondition>(StrEq("PreCondition block.size() >= sizeof(BITMAPINFOHEADER)")));
}

TEST(BmpInputTest, StreamReadIsThePlainLoop)
{
    std::istringstream stream("0123456789");
    char buffer[16] = {};
    EXPECT_EQ(10u, MakeLoader().Read(stream, buffer, sizeof(buffer)));
    EXPECT_STREQ("0123456789", buffer);
}

// ---- hostile files -----------------------------------------------------------------------------

TEST(BmpInputTest, EveryTruncationOfAFileIsRefusedCleanly)
{
    for (BmpWriter const& bmp : { BmpWriter::Mono(16, MonoRows, BmpWriter::WhiteFirst),
             BmpWriter::Gray4(8, GrayRows, BmpWriter::BlackFirst) }) {
        Bytes const full = bmp.Bytes();
        for (size_t size = 0; size < full.size(); ++size) {
            Bytes const cut(full.begin(), full.begin() + static_cast<long>(size));
            std::string const expected = size < 14     ? "source too small "
                : size < 14 + bmp.HeaderBlock().size() ? "Bmp header too small "
                                                       : "Cannot read image data ";
            EXPECT_THAT(
                [&] { LoadFromMemory(cut); }, ThrowsMessage<ResourcesLibraryException>(StartsWith(expected)))
                << size;
        }
    }
}

TEST(BmpInputTest, RandomlyDamagedFilesLoadOrFailCleanly)
{
    std::mt19937 random(20240611);
    Bytes const original = BmpWriter::Gray4(8, GrayRows, BmpWriter::WhiteFirst).Bytes();
    int loaded = 0;
    for (int round = 0; round < 300; ++round) {
        Bytes damaged = original;
        for (int hit = 0; hit < 3; ++hit)
            damaged[random() % damaged.size()] = static_cast<uint8_t>(random());
        try {
            MutableImage const image = LoadFromMemory(damaged);
            EXPECT_TRUE(image.IsEmpty() || image.Buffer().size() == image.Info().GetSize());
            ++loaded;
        } catch (BaseException const&) {
        }
    }
    EXPECT_GT(loaded, 0);
}

// ---- files written by real programs ------------------------------------------------------------

// tests/data/make-real-bmps draws two 16 x 8 pictures with ImageMagick, PIL and netpbm; these are
// the 4-bit levels they must load as, whatever the palette order.
enum class Picture {
    Mono,
    Grey,
};

std::vector<uint8_t> ExpectedPixels(Picture picture)
{
    std::vector<uint8_t> pixels;
    for (int y = 0; y < 8; ++y) {
        for (int x = 0; x < 16; x += 2) {
            auto level = [&](int column) {
                if (picture == Picture::Mono)
                    return (column * y + column + y) % 3 == 0 ? 0 : 15;
                return (column + 2 * y) % 16;
            };
            pixels.push_back(static_cast<uint8_t>(level(x) << 4 | level(x + 1)));
        }
    }
    return pixels;
}

struct RealFile {
    char const* name;
    Picture picture;
    char const* refusal; // nullptr when the file loads
};

std::string const NotSupportedSuffix
    = " format not supported (only bmp mono & grayscale 16 colors without compression)";

std::vector<RealFile> const RealFiles = {
    { "imagemagick-1bit.bmp", Picture::Mono, nullptr },
    { "imagemagick-1bit-v4header.bmp", Picture::Mono, nullptr },
    { "imagemagick-4bit-grey.bmp", Picture::Grey, nullptr },
    { "imagemagick-4bit-grey-v5header.bmp", Picture::Grey, nullptr },
    { "pil-1bit.bmp", Picture::Mono, nullptr },
    { "netpbm-1bit-black-first-sizeimage-filled.bmp", Picture::Mono, nullptr },
    { "netpbm-1bit-white-first-sizeimage-filled.bmp", Picture::Mono, nullptr },
    { "netpbm-4bit-grey-ascending-sizeimage-filled.bmp", Picture::Grey, nullptr },
    { "netpbm-4bit-grey-descending-sizeimage-filled.bmp", Picture::Grey, nullptr },
    // netpbm leaves the image size 0.
    { "netpbm-1bit.bmp", Picture::Mono, "Bmp invalid image size 0/32" },
    { "netpbm-1bit-black-first.bmp", Picture::Mono, "Bmp invalid image size 0/32" },
    { "netpbm-1bit-white-first.bmp", Picture::Mono, "Bmp invalid image size 0/32" },
    { "netpbm-4bit-grey-ascending.bmp", Picture::Grey, "Bmp invalid image size 0/64" },
    { "netpbm-4bit-grey-descending.bmp", Picture::Grey, "Bmp invalid image size 0/64" },
    { "netpbm-4bit-found-order.bmp", Picture::Grey, "Bmp invalid image size 0/64" },
    // Other depths.
    { "imagemagick-1bit-source-as-24bit.bmp", Picture::Mono, "Rgb24 format not supported" },
    { "imagemagick-24bit.bmp", Picture::Grey, "Rgb24 format not supported" },
    { "netpbm-24bit.bmp", Picture::Grey, "Rgb24 format not supported" },
    { "pil-24bit.bmp", Picture::Grey, "Rgb24 format not supported" },
    { "pil-32bit.bmp", Picture::Grey, "Rgba format not supported" },
    { "netpbm-8bit.bmp", Picture::Grey, "Gray8 format not supported" },
    { "pil-8bit-grey.bmp", Picture::Grey, "Gray8 format not supported" },
    { "pil-8bit-palette.bmp", Picture::Grey, "Gray8 format not supported" },
    // Run lengths and bit fields.
    { "imagemagick-1bit-rle8.bmp", Picture::Mono, "Bmp invalid compression 1" },
    { "imagemagick-4bit-grey-rle8.bmp", Picture::Grey, "Bmp invalid compression 1" },
    { "imagemagick-16bit-rgb555.bmp", Picture::Grey, "Bmp invalid compression 3" },
    { "imagemagick-16bit-rgb565.bmp", Picture::Grey, "Bmp invalid compression 3" },
    { "imagemagick-32bit-v5header.bmp", Picture::Grey, "Bmp invalid compression 3" },
    // OS/2 files have a 12-byte info header: a short block, or one read as the wrong fields
    // (here the palette lands in biClrUsed).
    { "imagemagick-os2-24bit.bmp", Picture::Grey, "Bmp file header too small 12" },
    { "netpbm-os2-1bit.bmp", Picture::Mono, "Bmp file header too small 18" },
    { "imagemagick-os2-4bit-grey.bmp", Picture::Grey, "Bmp invalid color count 2004318054" },
    { "netpbm-os2-4bit-grey.bmp", Picture::Grey, "Bmp invalid color count 2004318054" },
};

std::string RealFolder() { return std::string(PACKAGER_SOURCE_DIR) + "/tests/data/bmp/real/"; }

std::string FullRefusal(char const* refusal)
{
    std::string text = refusal;
    std::string const suffix = " format not supported";
    if (text.size() >= suffix.size() && text.compare(text.size() - suffix.size(), suffix.size(), suffix) == 0)
        return text.substr(0, text.size() - suffix.size()) + NotSupportedSuffix;
    return text;
}

TEST(BmpInputTest, FilesWrittenByRealProgramsLoadOrAreRefusedAsExpected)
{
    for (RealFile const& file : RealFiles) {
        SCOPED_TRACE(file.name);
        std::string const path = RealFolder() + file.name;
        ASSERT_TRUE(std::filesystem::exists(path));
        if (file.refusal != nullptr) {
            EXPECT_THAT([&] { MakeLoader().Load(path); },
                ThrowsMessage<ResourcesLibraryException>(StrEq(FullRefusal(file.refusal))));
            continue;
        }
        MutableImage const image = MakeLoader().Load(path);
        EXPECT_EQ(16, image.Info().Width());
        EXPECT_EQ(8, image.Info().Height());
        EXPECT_EQ(8u, image.Info().Stride());
        EXPECT_EQ(ImageFormat::Gray4, image.Info().Format());
        EXPECT_TRUE(image.Info().IsBottomUp());
        EXPECT_EQ(ExpectedPixels(file.picture), image.Buffer());
    }
}

TEST(BmpInputTest, EveryFileWrittenByRealProgramsHasAnExpectation)
{
    size_t count = 0;
    for (auto const& entry : std::filesystem::directory_iterator(RealFolder())) {
        std::string const name = entry.path().filename().string();
        if (entry.path().extension() != ".bmp")
            continue;
        ++count;
        bool const listed = std::any_of(
            RealFiles.begin(), RealFiles.end(), [&](RealFile const& file) { return name == file.name; });
        EXPECT_TRUE(listed) << name;
    }
    EXPECT_EQ(RealFiles.size(), count);
}

} // namespace
