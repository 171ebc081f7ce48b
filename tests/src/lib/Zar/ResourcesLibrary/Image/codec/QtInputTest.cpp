#include "Zar/ResourcesLibrary/Image/codec/QtInput.h"

#include "Zar/ResourcesLibrary/Image/codec/QtModule.h"

#include "Zar/Lt/Core/ScratchFolder.h"
#include "Zar/Lt/Exceptions/NotSupported.h"
#include "Zar/ResourcesLibrary/ResourcesLibraryException.h"

#include <QColor>
#include <QFile>
#include <QImage>
#include <QString>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

using testing::StrEq;
using testing::ThrowsMessage;
using Zar::Lt::Core::ScratchFolder;
using Zar::Lt::Exceptions::NotSupported;
using Zar::ResourcesLibrary::ResourcesLibraryException;
using Zar::ResourcesLibrary::Image::FileFormat;
using Zar::ResourcesLibrary::Image::ImageFormat;
using Zar::ResourcesLibrary::Image::MutableImage;

namespace {

constexpr int kWidth = 5;
constexpr int kHeight = 3;

std::vector<uint8_t> Bytes(uint8_t const* begin, size_t size) { return { begin, begin + size }; }

class QtInputTest : public testing::Test {
protected:
    // The module of this build: the test executable does not lie beside it.
    void SetUp() override { Zar::ResourcesLibrary::Image::QtModule::SetSearchPaths({ PACKAGER_QT_MODULE }); }

    // Saves the image through Qt itself, so that the file is whatever Qt writes for that format.
    std::string Save(QImage const& image, std::string const& name) const
    {
        std::string const path = _folder.PathOf(name);
        EXPECT_TRUE(image.save(QString::fromStdString(path)));
        return path;
    }

    static QImage Colourful(QImage::Format format)
    {
        QImage image(kWidth, kHeight, format);
        for (int y = 0; y < kHeight; ++y)
            for (int x = 0; x < kWidth; ++x)
                image.setPixel(x, y, qRgba(10 * x + 1, 20 * y + 2, 3, 0x80 + x));
        return image;
    }

    static QImage Gray()
    {
        QImage image(kWidth, kHeight, QImage::Format_Grayscale8);
        for (int y = 0; y < kHeight; ++y)
            for (int x = 0; x < kWidth; ++x)
                image.scanLine(y)[x] = static_cast<uchar>(40 * y + 5 * x + 1);
        return image;
    }

    static QtInput Loader(ImageFormat wanted) { return QtInput(FileFormat::Png, wanted, "%04u.png", ""); }

    ScratchFolder _folder;
};

} // namespace

TEST_F(QtInputTest, ATwentyFourBitPngLoadsAsTheFormatQtDecodesItTo)
{
    // Qt 5 decodes a PNG without alpha into Format_RGB32, four bytes a pixel B, G, R, 0xFF.
    std::string const path = Save(Colourful(QImage::Format_RGB888), "rgb.png");

    MutableImage const image = Loader(ImageFormat::Unknown).Load(path.c_str());

    EXPECT_EQ(kWidth, image.Info().Width());
    EXPECT_EQ(kHeight, image.Info().Height());
    EXPECT_EQ(ImageFormat::Rgbx, image.Info().Format());
    EXPECT_EQ(20u, image.Info().Stride());
    ASSERT_EQ(60u, image.Buffer().size());
    // Pixel (1, 2): red 11, green 42, blue 3.
    EXPECT_EQ((std::vector<uint8_t> { 3, 42, 11, 0xFF }), Bytes(image.Buffer().data() + 2 * 20 + 4, 4));
}

TEST_F(QtInputTest, ImageInfoIsTopDownWithOtherFieldsZero)
{
    std::string const path = Save(Colourful(QImage::Format_RGB888), "rgb.png");

    MutableImage const image = Loader(ImageFormat::Unknown).Load(path.c_str());

    EXPECT_FALSE(image.Info().IsBottomUp());
    EXPECT_EQ(0u, image.Info()._reserved1);
    EXPECT_EQ(0u, image.Info()._reserved2);
    EXPECT_EQ(0, image.Info()._attribute);
}

TEST_F(QtInputTest, AThirtyTwoBitPngWithAlphaLoadsAsBgrx)
{
    std::string const path = Save(Colourful(QImage::Format_ARGB32), "argb.png");

    MutableImage const image = Loader(ImageFormat::Unknown).Load(path.c_str());

    EXPECT_EQ(ImageFormat::Bgrx, image.Info().Format());
    EXPECT_EQ(20u, image.Info().Stride());
    // Pixel (2, 1): red 21, green 22, blue 3, alpha 0x82, in memory B, G, R, A.
    EXPECT_EQ((std::vector<uint8_t> { 3, 22, 21, 0x82 }), Bytes(image.Buffer().data() + 20 + 8, 4));
}

TEST_F(QtInputTest, ALoaderAskingForGray8RefusesAnRgbFile)
{
    std::string const path = Save(Colourful(QImage::Format_RGB888), "rgb.png");
    QtInput loader = Loader(ImageFormat::Gray8);

    EXPECT_THAT([&] { loader.Load(path.c_str()); },
        ThrowsMessage<ResourcesLibraryException>(StrEq("Invalid format Rgbx")));
}

TEST_F(QtInputTest, RefusalNamesTheLoader)
{
    std::string const path = Save(Colourful(QImage::Format_RGB888), "rgb.png");
    QtInput loader = Loader(ImageFormat::Gray8);
    try {
        loader.Load(path.c_str());
        FAIL() << "no exception";
    } catch (ResourcesLibraryException const& e) {
        EXPECT_STREQ("src/lib/Zar/ResourcesLibrary/Image/codec/QtInput", e.Source()._file);
        // The compiler spells the rest of the signature: only the loader's name is promised.
        EXPECT_THAT(e.Source()._function, testing::HasSubstr(" QtInput::Load("));
    }
}

TEST_F(QtInputTest, ALoaderAskingForTheDecodedFormatAcceptsTheFile)
{
    std::string const path = Save(Colourful(QImage::Format_ARGB32), "argb.png");

    EXPECT_EQ(ImageFormat::Bgrx, Loader(ImageFormat::Bgrx).Load(path.c_str()).Info().Format());
}

TEST_F(QtInputTest, ALoaderAskingForNoFormatAcceptsAnyDecodableFile)
{
    QtInput loader = Loader(ImageFormat::Unknown);

    EXPECT_FALSE(loader.Load(Save(Colourful(QImage::Format_RGB888), "rgb.png")).IsEmpty());
    EXPECT_FALSE(loader.Load(Save(Colourful(QImage::Format_ARGB32), "argb.png")).IsEmpty());
    EXPECT_FALSE(loader.Load(Save(Gray(), "gray.pgm")).IsEmpty());
}

TEST_F(QtInputTest, AGrayPgmIsOutsideTheTableAndOnlyWhatQtDecodedIsCopied)
{
    // Qt decodes it into Format_Grayscale8: rows of 8 bytes, 24 in all. Counted as 32 bits a
    // pixel the image needs 60; the first 24 are Qt's rows as one block and the rest stay zero.
    QImage const gray = Gray();
    std::string const path = Save(gray, "gray.pgm");
    QImage const decoded(QString::fromStdString(path));
    ASSERT_EQ(24, decoded.sizeInBytes());

    MutableImage const image = Loader(ImageFormat::Unknown).Load(path.c_str());

    EXPECT_EQ(ImageFormat::Unknown, image.Info().Format());
    EXPECT_EQ(20u, image.Info().Stride());
    ASSERT_EQ(60u, image.Buffer().size());
    // Qt leaves its row padding undefined, so only the pixels of each row are compared.
    for (int row = 0; row < kHeight; ++row)
        EXPECT_EQ(Bytes(decoded.constScanLine(row), kWidth), Bytes(image.Buffer().data() + row * 8, kWidth))
            << row;
    EXPECT_EQ(static_cast<uint8_t>(40 * 2 + 5 * 4 + 1), image.Buffer()[2 * 8 + 4]);
    EXPECT_TRUE(
        std::all_of(image.Buffer().begin() + 24, image.Buffer().end(), [](uint8_t b) { return b == 0; }));
}

TEST_F(QtInputTest, ALoaderAskingForGray8RefusesAGrayPgmAsUnknown)
{
    std::string const path = Save(Gray(), "gray.pgm");
    QtInput loader = Loader(ImageFormat::Gray8);

    EXPECT_THAT([&] { loader.Load(path.c_str()); },
        ThrowsMessage<ResourcesLibraryException>(StrEq("Invalid format Unknown")));
}

TEST(QtInputWordPixelsTest, OnABigEndianMachineTheThirtyTwoBitFormatsAreTurnedWordByWord)
{
    // Qt's words 0xAARRGGBB as a big-endian machine holds them; the last two bytes are no whole word.
    for (int qtFormat :
        { QImage::Format_RGB32, QImage::Format_ARGB32, QImage::Format_ARGB32_Premultiplied }) {
        std::vector<uint8_t> pixels { 0x82, 21, 22, 3, 0xFF, 1, 2, 4, 9, 8 };
        QtInput::PutWordPixelsInLittleEndianOrder(pixels.data(), pixels.size(), qtFormat, std::endian::big);
        EXPECT_EQ((std::vector<uint8_t> { 3, 22, 21, 0x82, 4, 2, 1, 0xFF, 9, 8 }), pixels) << qtFormat;
    }
}

TEST(QtInputWordPixelsTest, OnlyTheGivenSizeIsTurned)
{
    std::vector<uint8_t> pixels { 1, 2, 3, 4, 5, 6, 7, 8 };
    QtInput::PutWordPixelsInLittleEndianOrder(pixels.data(), 4, QImage::Format_RGB32, std::endian::big);
    EXPECT_EQ((std::vector<uint8_t> { 4, 3, 2, 1, 5, 6, 7, 8 }), pixels);
}

TEST(QtInputWordPixelsTest, ByteOrderedFormatsAndLittleEndianMachinesAreLeftAsTheyAre)
{
    std::vector<uint8_t> const original { 1, 2, 3, 4, 5, 6, 7, 8 };
    for (int qtFormat : { QImage::Format_Mono, QImage::Format_RGB16, QImage::Format_RGB888,
             QImage::Format_RGBX8888, QImage::Format_RGBA8888, QImage::Format_RGBA64 }) {
        std::vector<uint8_t> pixels = original;
        QtInput::PutWordPixelsInLittleEndianOrder(pixels.data(), pixels.size(), qtFormat, std::endian::big);
        EXPECT_EQ(original, pixels) << qtFormat;
    }
    std::vector<uint8_t> pixels = original;
    QtInput::PutWordPixelsInLittleEndianOrder(
        pixels.data(), pixels.size(), QImage::Format_ARGB32, std::endian::little);
    EXPECT_EQ(original, pixels);
}

TEST_F(QtInputTest, AWideFormatOutsideTheTableCopiesOnlyTheImageSize)
{
    // 64-bit pixels decode into 40-byte rows; counted as 32 bits a pixel the image takes the
    // first 60 of Qt's 120 bytes.
    std::string const path = Save(Colourful(QImage::Format_RGBA64), "deep.png");
    QImage const decoded(QString::fromStdString(path));
    ASSERT_EQ(120, decoded.sizeInBytes());

    MutableImage const image = Loader(ImageFormat::Unknown).Load(path.c_str());

    EXPECT_EQ(ImageFormat::Unknown, image.Info().Format());
    EXPECT_EQ(Bytes(decoded.constBits(), 60), image.Buffer());
}

TEST_F(QtInputTest, AMonochromePngLoadsAsMono)
{
    QImage mono(kWidth, kHeight, QImage::Format_Mono);
    mono.setColorCount(2);
    mono.setColor(0, qRgb(0, 0, 0));
    mono.setColor(1, qRgb(255, 255, 255));
    mono.fill(0);
    mono.setPixel(0, 1, 1);
    std::string const path = Save(mono, "mono.png");

    MutableImage const image = Loader(ImageFormat::Unknown).Load(path.c_str());

    EXPECT_EQ(ImageFormat::Mono, image.Info().Format());
    EXPECT_EQ(4u, image.Info().Stride());
    ASSERT_EQ(12u, image.Buffer().size());
    // Five pixels fill the top five bits of each row's first byte; the rest is Qt's padding.
    EXPECT_EQ(0x00, image.Buffer()[0] & 0xF8);
    EXPECT_EQ(0x80, image.Buffer()[4] & 0xF8);
    EXPECT_EQ(0x00, image.Buffer()[8] & 0xF8);
}

TEST_F(QtInputTest, AJpegLoadsWithoutAnApplicationObject)
{
    std::string const path = Save(Colourful(QImage::Format_RGB888), "photo.jpg");

    MutableImage const image = Loader(ImageFormat::Unknown).Load(path.c_str());

    EXPECT_EQ(kWidth, image.Info().Width());
    EXPECT_EQ(ImageFormat::Rgbx, image.Info().Format());
}

TEST_F(QtInputTest, AMissingFileGivesTheEmptyImage)
{
    MutableImage const image = Loader(ImageFormat::Gray8).Load(_folder.PathOf("missing.png").c_str());

    EXPECT_TRUE(image.IsEmpty());
    EXPECT_EQ(0, image.Info().Width());
    EXPECT_EQ(ImageFormat::Rgbx, image.Info().Format());
}

TEST_F(QtInputTest, AFileQtCannotDecodeGivesTheEmptyImage)
{
    std::string const path = _folder.Write("text.png", "not an image\n");

    EXPECT_TRUE(Loader(ImageFormat::Unknown).Load(path.c_str()).IsEmpty());
}

TEST_F(QtInputTest, ATruncatedPngGivesTheEmptyImage)
{
    std::string const path = Save(Colourful(QImage::Format_RGB888), "cut.png");
    std::filesystem::resize_file(path, 40);

    EXPECT_TRUE(Loader(ImageFormat::Unknown).Load(path.c_str()).IsEmpty());
}

TEST_F(QtInputTest, ANullPathGivesTheEmptyImage)
{
    EXPECT_TRUE(Loader(ImageFormat::Unknown).Load(static_cast<char const*>(nullptr)).IsEmpty());
}

TEST_F(QtInputTest, APathOutsideAsciiIsReadAsLatin1AndMissesTheFile)
{
    std::string const path = _folder.PathOf("caf\xC3\xA9.png");
    ASSERT_TRUE(Colourful(QImage::Format_RGB888).save(QString::fromUtf8(path.c_str())));
    ASSERT_TRUE(std::filesystem::exists(path));
    // Under a Latin-1 locale the bytes would come back unchanged; every other locale changes them.
    bool const namesTheSameFile = QFile::encodeName(QString::fromLatin1(path.c_str())).toStdString() == path;

    EXPECT_EQ(!namesTheSameFile, Loader(ImageFormat::Unknown).Load(path.c_str()).IsEmpty());
}

TEST_F(QtInputTest, LoadOfAStringPathReadsTheFile)
{
    std::string const path = Save(Colourful(QImage::Format_RGB888), "rgb.png");

    EXPECT_EQ(kHeight, Loader(ImageFormat::Unknown).Load(path).Info().Height());
}

TEST_F(QtInputTest, LoadHeaderIsNotSupported)
{
    std::string const path = Save(Colourful(QImage::Format_RGB888), "rgb.png");
    QtInput loader = Loader(ImageFormat::Unknown);

    EXPECT_THAT([&] { loader.LoadHeader(path.c_str()); },
        ThrowsMessage<NotSupported>(StrEq("Input::Read not supported")));
}

TEST_F(QtInputTest, QtFormatsMapThroughTheTable)
{
    std::vector<ImageFormat> const expected {
        ImageFormat::Mono,
        ImageFormat::Unknown,
        ImageFormat::Unknown,
        ImageFormat::Rgbx,
        ImageFormat::Bgrx,
        ImageFormat::Unknown,
        ImageFormat::Unknown,
        ImageFormat::Unknown,
        ImageFormat::Unknown,
        ImageFormat::Unknown,
        ImageFormat::Unknown,
        ImageFormat::Unknown,
        ImageFormat::Rgb24,
        ImageFormat::Unknown,
        ImageFormat::Unknown,
        ImageFormat::Rgbx,
        ImageFormat::Rgba,
    };
    for (int qtFormat = 1; qtFormat <= 17; ++qtFormat)
        EXPECT_EQ(expected[static_cast<size_t>(qtFormat - 1)], QtInput::FromQtFormat(qtFormat)) << qtFormat;
}

TEST_F(QtInputTest, QtFormatsOutsideTheTableMapToUnknown)
{
    EXPECT_EQ(ImageFormat::Unknown, QtInput::FromQtFormat(QImage::Format_Invalid));
    EXPECT_EQ(ImageFormat::Unknown, QtInput::FromQtFormat(QImage::Format_RGBA8888_Premultiplied));
    EXPECT_EQ(ImageFormat::Unknown, QtInput::FromQtFormat(QImage::Format_Grayscale8));
    EXPECT_EQ(ImageFormat::Unknown, QtInput::FromQtFormat(-1));
    EXPECT_EQ(ImageFormat::Unknown, QtInput::FromQtFormat(1000));
}

TEST_F(QtInputTest, FormatNamesComeFromTheFormatTableAndUndefinedPastIt)
{
    EXPECT_EQ("Rgb24", QtInput::FormatName(ImageFormat::Rgb24));
    EXPECT_EQ("Unknown", QtInput::FormatName(ImageFormat::Unknown));
    EXPECT_EQ("PlanarYCrCb16", QtInput::FormatName(ImageFormat::PlanarYCrCb16));
    EXPECT_EQ("Undefined", QtInput::FormatName(static_cast<ImageFormat>(12)));
    EXPECT_EQ("Undefined", QtInput::FormatName(static_cast<ImageFormat>(255)));
}
