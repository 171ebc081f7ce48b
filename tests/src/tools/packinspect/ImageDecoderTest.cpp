#include "ImageDecoder.h"

#include "Zar/ResourcesLibrary/ResourcesLibraryException.h"

#include <QBuffer>
#include <QFile>
#include <QImage>

#include <gtest/gtest.h>

using Zar::ResourcesLibrary::ResourcesLibraryException;
using Zar::ResourcesLibrary::Tools::Inspect::ImageDecoder;
using Zar::ResourcesLibrary::Tools::Inspect::ImageFit;

namespace {

// A GIF whose frames each hold one pixel of colour 0 of a two-colour table, at the top left of a
// screen of width x height.
QByteArray Gif(int frames, uint16_t width = 1, uint16_t height = 1)
{
    QByteArray gif("GIF89a");
    for (uint16_t const side : { width, height }) { // the screen's size
        gif.append(static_cast<char>(side & 0xFF));
        gif.append(static_cast<char>(side >> 8));
    }
    gif.append("\x80\x00\x00", 3); // a global table of 2 colours, background 0, no aspect
    gif.append("\x00\x00\x00\xFF\xFF\xFF", 6); // black, white
    for (int frame = 0; frame < frames; ++frame) {
        gif.append("\x2C\x00\x00\x00\x00\x01\x00\x01\x00\x00", 10); // an image of 1 x 1 at the origin
        gif.append("\x02\x02\x44\x01\x00", 5); // LZW of code size 2: clear, 0, end
    }
    gif.append('\x3B');
    return gif;
}

QByteArray Png(QImage const& image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

uint32_t Crc32(QByteArray const& bytes)
{
    uint32_t crc = 0xFFFFFFFF;
    for (char const c : bytes) {
        crc ^= static_cast<uint8_t>(c);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ (0xEDB88320 & (0 - (crc & 1)));
    }
    return ~crc;
}

void PutBigEndian(QByteArray& bytes, int offset, uint32_t value)
{
    for (int i = 0; i < 4; ++i)
        bytes[offset + i] = static_cast<char>(value >> (24 - 8 * i));
}

// A small PNG whose header claims width x height, its header checksum made right again.
QByteArray PngClaiming(uint32_t width, uint32_t height)
{
    QImage image(4, 4, QImage::Format_RGB32);
    image.fill(Qt::gray);
    QByteArray png = Png(image);
    constexpr int kIhdrType = 12; // 8 bytes of signature, 4 of length
    PutBigEndian(png, kIhdrType + 4, width);
    PutBigEndian(png, kIhdrType + 8, height);
    PutBigEndian(png, kIhdrType + 17, Crc32(png.mid(kIhdrType, 17)));
    return png;
}

std::string ProblemOf(QByteArray const& bytes, bool svg = false, ImageDecoder::Request const& request = {})
{
    try {
        ImageDecoder::DecodeBytes(bytes, svg, request);
    } catch (ResourcesLibraryException const& error) {
        return error.what();
    }
    return "no problem";
}

QByteArray const kSvg("<svg xmlns='http://www.w3.org/2000/svg' width='10' height='5' viewBox='0 0 10 5'>"
                      "<rect x='0' y='0' width='10' height='5' fill='white'/></svg>");

} // namespace

TEST(ImageDecoderTest, DecodesEveryFrameOfAnAnimation)
{
    auto const frames = ImageDecoder::DecodeBytes(Gif(3), false, {});
    ASSERT_EQ(frames.size(), 3u);
    EXPECT_EQ(frames[2].size(), QSize(1, 1));
    EXPECT_EQ(frames[2].pixel(0, 0), qRgb(0, 0, 0));
    ImageDecoder::Request one;
    one._frame = 1;
    EXPECT_EQ(ImageDecoder::DecodeBytes(Gif(3), false, one).size(), 1u);
}

TEST(ImageDecoderTest, RefusesAFrameOutOfRange)
{
    ImageDecoder::Request request;
    request._frame = 3;
    EXPECT_EQ(ProblemOf(Gif(3), false, request), "frame 3 is out of range: it has 3 frames, frames 0 to 2");
    EXPECT_EQ(ProblemOf(Png(QImage(2, 2, QImage::Format_RGB32)), false, request),
        "frame 3 is out of range: it has 1 frame, only frame 0");
    EXPECT_EQ(ProblemOf(kSvg, true, request), "frame 3 is out of range: it has 1 frame, only frame 0");
}

TEST(ImageDecoderTest, RefusesAnAnimationOfMoreFramesThanItKeeps)
{
    EXPECT_EQ(ProblemOf(Gif(2, 4096, 4096)),
        "its 2 frames of 4096x4096 hold 33554432 pixels, more than the 16777216 import keeps of one file; "
        "take one "
        "frame with --frame=N");
    ImageDecoder::Request one;
    one._frame = 1;
    auto const frames = ImageDecoder::DecodeBytes(Gif(2, 300, 200), false, one);
    ASSERT_EQ(frames.size(), 1u);
    EXPECT_EQ(frames[0].size(), QSize(300, 200));
}

TEST(ImageDecoderTest, RefusesADeclaredSizeAboveTheLimitBeforeDecoding)
{
    EXPECT_EQ(ProblemOf(PngClaiming(60000, 60000)),
        "it declares 60000x60000 pixels, more than the 4096x4096 import decodes; scale it down first");
    EXPECT_EQ(ProblemOf(Gif(1, 20000, 20000)),
        "it declares 20000x20000 pixels, more than the 4096x4096 import decodes; scale it down first");
    EXPECT_EQ(ProblemOf(PngClaiming(4097, 1)),
        "it declares 4097x1 pixels, more than the 4096x4096 import decodes; scale it down first");
}

TEST(ImageDecoderTest, RefusesEmptyAndUnknownFiles)
{
    EXPECT_EQ(ProblemOf(QByteArray()), "it is empty (0 bytes); export the image again");
    EXPECT_EQ(ProblemOf(QByteArray("hello")),
        "it is not an image Qt can read (PNG, JPEG, GIF, BMP, PGM, PPM or SVG); export it in one of those "
        "formats");
    EXPECT_EQ(ProblemOf(QByteArray("<svg"), true), "it is not an SVG image Qt can draw; export it again");
}

TEST(ImageDecoderTest, RefusesAnImageOfNoPixels)
{
    QByteArray const svg("<svg xmlns='http://www.w3.org/2000/svg' width='0' height='5'></svg>");
    EXPECT_EQ(ProblemOf(svg, true), "it has 0 pixels (0x0); export the image again");
}

TEST(ImageDecoderTest, DrawsAnSvgAtTheSizeAsked)
{
    ImageDecoder::Request request;
    request._target = QSize(20, 20);
    request._fit = ImageFit::Mode::Contain;
    auto const frames = ImageDecoder::DecodeBytes(kSvg, true, request);
    ASSERT_EQ(frames.size(), 1u);
    EXPECT_EQ(frames[0].size(), QSize(20, 20));
    EXPECT_EQ(qAlpha(frames[0].pixel(10, 4)), 0);
    EXPECT_EQ(frames[0].pixel(10, 5), qRgb(255, 255, 255));
    EXPECT_EQ(frames[0].pixel(10, 14), qRgb(255, 255, 255));
    EXPECT_EQ(qAlpha(frames[0].pixel(10, 15)), 0);
    EXPECT_EQ(ImageDecoder::DecodeBytes(kSvg, true, {})[0].size(), QSize(10, 5));
}

TEST(ImageDecoderTest, TellsSvgByNameOrContent)
{
    EXPECT_TRUE(ImageDecoder::LooksLikeSvg("icon.SVG", QByteArray()));
    EXPECT_TRUE(ImageDecoder::LooksLikeSvg("icon", kSvg));
    EXPECT_FALSE(ImageDecoder::LooksLikeSvg("icon.png", Png(QImage(1, 1, QImage::Format_RGB32))));
}

TEST(ImageDecoderTest, RefusesFilesCutShortThatQtWouldDrawAnyway)
{
    auto designer = [](char const* name) {
        QFile file(QString(PACKAGER_SOURCE_DIR) + "/tests/data/designer/" + name);
        file.open(QIODevice::ReadOnly);
        return file.readAll();
    };
    EXPECT_EQ(ProblemOf(designer("photo.jpg").left(900)),
        "it is damaged (Corrupt JPEG data: premature end of data segment); the file is truncated or damaged, "
        "export it "
        "again");
    EXPECT_EQ(ProblemOf(designer("spinner.gif").left(300)),
        "it ends before the GIF's end mark; the file is truncated, export it again");
    EXPECT_EQ(ProblemOf(designer("rgb24.bmp").left(1000)),
        "it is 1000 bytes, and its header says 2358; the file is truncated, export it again");
    EXPECT_EQ(ProblemOf(Gif(2).chopped(1)),
        "it ends before the GIF's end mark; the file is truncated, export it again");
    for (char const* whole : { "photo.jpg", "spinner.gif", "rgb24.bmp", "pal8.bmp", "ramp16.png" })
        EXPECT_EQ(ProblemOf(designer(whole)), "no problem") << whole;
}
