#include "BmpFile.h"

#include "BmpWriter.h"
#include "FileContents.h"
#include "TestPacks.h"

#include "Zar/Lt/Core/ScratchFolder.h"
#include "Zar/Lt/Exceptions/PreCondition.h"
#include "Zar/ResourcesLibrary/Image/FileFormat.h"
#include "Zar/ResourcesLibrary/Image/ImageFormat.h"
#include "Zar/ResourcesLibrary/Image/codec/BmpInput.h"
#include "Zar/ResourcesLibrary/ResourcesLibraryException.h"

#include <QImage>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>

using namespace PackInspectTest;
using TestSupport::BmpWriter;
using Zar::Lt::Core::ScratchFolder;
using Zar::ResourcesLibrary::ResourcesLibraryException;
using Zar::ResourcesLibrary::Image::FileFormat;
using Zar::ResourcesLibrary::Image::ImageFormat;
using Zar::ResourcesLibrary::Tools::Inspect::BmpFile;
using Zar::ResourcesLibrary::Tools::Inspect::ImageGeometry;

namespace {

// The pack's bytes of an image whose pixel (x, y) is level (x + 3y) mod 16, with every padding byte
// set to 0xA5, as a pack built from a 1-bit BMP may hold there.
Bytes PackPixels(ImageGeometry const& geometry)
{
    Bytes pixels(geometry.Size(), 0xA5);
    for (uint32_t y = 0; y < geometry.Height(); ++y)
        for (uint32_t x = 0; x < geometry.Width(); ++x) {
            uint8_t& byte = pixels[y * geometry.Stride() + x / 2];
            uint8_t const level = static_cast<uint8_t>((x + 3 * y) % 16);
            byte = x % 2 == 0 ? static_cast<uint8_t>((byte & 0x0F) | level << 4)
                              : static_cast<uint8_t>((byte & 0xF0) | level);
        }
    return pixels;
}

} // namespace

TEST(BmpFileTest, IsTheUsualFourBitGreyBmp)
{
    // The tests' own builder writes the same file from its own reading of the format.
    ImageGeometry const geometry(6, 3);
    Bytes const pixels = PackPixels(geometry);
    std::vector<Bytes> rows;
    for (uint32_t y = 0; y < geometry.Height(); ++y)
        rows.emplace_back(
            pixels.begin() + y * geometry.Stride(), pixels.begin() + (y + 1) * geometry.Stride());
    EXPECT_EQ(BmpFile::Gray4(geometry, pixels), BmpWriter::Gray4(6, rows, BmpWriter::BlackFirst).Bytes());
}

TEST(BmpFileTest, QtReadsBackTheDisplaysGreys)
{
    ImageGeometry const geometry(13, 5);
    ScratchFolder const folder;
    std::string const path = folder.PathOf("image.bmp");
    BmpFile::Save(path, BmpFile::Gray4(geometry, PackPixels(geometry)));
    QImage const image(QString::fromStdString(path));
    ASSERT_FALSE(image.isNull());
    ASSERT_EQ(image.size(), QSize(13, 5));
    for (int y = 0; y < 5; ++y)
        for (int x = 0; x < 13; ++x) {
            int const grey = 17 * ((x + 3 * y) % 16);
            EXPECT_EQ(image.pixel(x, y), qRgb(grey, grey, grey)) << x << "," << y;
        }
}

TEST(BmpFileTest, PackagersLoaderReadsBackEveryByteThePackHeld)
{
    for (ImageGeometry const geometry :
        { ImageGeometry(32, 24), ImageGeometry(12, 10), ImageGeometry(7, 3) }) {
        ScratchFolder const folder;
        std::string const path = folder.PathOf("image.bmp");
        Bytes const pixels = PackPixels(geometry);
        BmpFile::Save(path, BmpFile::Gray4(geometry, pixels));
        BmpInput loader(FileFormat::Bmp, ImageFormat::Unknown, "%04u.bmp", "");
        auto image = loader.Load(path.c_str());
        ASSERT_EQ(image.GetSize(), geometry.Size()) << geometry.ToString();
        Bytes const loaded(image.GetLine(0), image.GetLine(0) + image.GetSize());
        EXPECT_EQ(loaded, pixels) << geometry.ToString();
    }
}

TEST(BmpFileTest, WidthsOfEightKPlusOneAreNotReadBackWhole)
{
    EXPECT_TRUE(BmpFile::IsReadBackWhole(ImageGeometry(8, 1)));
    EXPECT_FALSE(BmpFile::IsReadBackWhole(ImageGeometry(9, 1)));
    EXPECT_TRUE(BmpFile::IsReadBackWhole(ImageGeometry(10, 1)));
    EXPECT_FALSE(BmpFile::IsReadBackWhole(ImageGeometry(1, 1)));
    EXPECT_FALSE(BmpFile::IsReadBackWhole(ImageGeometry(33, 1)));
    Bytes const pixels(ImageGeometry(9, 1).Size());
    EXPECT_THROW(BmpFile::Gray4(ImageGeometry(9, 1), pixels), Zar::Lt::Exceptions::PreCondition);
}

TEST(BmpFileTest, AFileThatCannotBeWrittenThrows)
{
    ScratchFolder const folder;
    std::string const path = folder.PathOf("missing/image.bmp");
    EXPECT_THAT([&] { BmpFile::Save(path, Bytes(4)); },
        testing::ThrowsMessage<ResourcesLibraryException>(testing::StrEq("Cannot write " + path)));
}

TEST(BmpFileTest, AMonoFileIsReadByPackagerAsLevelsZeroAndFifteen)
{
    ScratchFolder const folder;
    // Two rows of 12 pixels: 1010 0000 1111, then the opposite.
    std::vector<uint8_t> const bits { 0xA0, 0xF0, 0, 0, 0x5F, 0x00, 0, 0 };
    auto const file = BmpFile::Mono(12, 2, bits);
    EXPECT_EQ(file.size(), 14u + 40 + 2 * 4 + 2 * 4);
    EXPECT_EQ(file[10], 62); // the pixels start after the two palette entries
    EXPECT_EQ(file[28], 1); // bits per pixel
    EXPECT_EQ(file[34], 8); // biSizeImage
    std::string const path = folder.PathOf("mono.bmp");
    BmpFile::Save(path, file);
    BmpInput loader(FileFormat::Bmp, ImageFormat::Unknown, "%04u.bmp", "");
    auto image = loader.Load(path.c_str());
    ASSERT_EQ(image.GetSize(), 16u);
    Bytes const first(image.GetLine(0), image.GetLine(0) + 6);
    EXPECT_EQ(first, (Bytes { 0xF0, 0xF0, 0x00, 0x00, 0xFF, 0xFF }));
    Bytes const second(image.GetLine(1), image.GetLine(1) + 6);
    EXPECT_EQ(second, (Bytes { 0x0F, 0x0F, 0xFF, 0xFF, 0x00, 0x00 }));
}

TEST(BmpFileTest, MonoRowsOfSomeWidthsAreNotReadBackWhole)
{
    EXPECT_TRUE(BmpFile::IsReadBackWholeMono(32));
    EXPECT_TRUE(BmpFile::IsReadBackWholeMono(12));
    EXPECT_FALSE(BmpFile::IsReadBackWholeMono(33));
    EXPECT_FALSE(BmpFile::IsReadBackWholeMono(39));
    EXPECT_TRUE(BmpFile::IsReadBackWholeMono(40));
    EXPECT_EQ(BmpFile::MonoStride(33), 8u);
}
