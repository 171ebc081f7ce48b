// Inputs found by fuzzing the BMP loader, each reduced to the smallest file that shows the fault.

#include "Zar/ResourcesLibrary/Image/codec/BmpInput.h"

#include "BmpWriter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

using testing::Each;
using TestSupport::BmpWriter;
using Zar::ResourcesLibrary::Image::FileFormat;
using Zar::ResourcesLibrary::Image::ImageFormat;
using Zar::ResourcesLibrary::Image::MutableImage;

namespace {

// Loads the bytes of a file through a stream, the way Load reads the file.
MutableImage LoadBytes(std::vector<uint8_t> const& bytes)
{
    std::istringstream stream(std::string(bytes.begin(), bytes.end()), std::ios::in | std::ios::binary);
    BmpInput input(FileFormat::Bmp, ImageFormat::Unknown, "%04u.bmp", "");
    std::vector<uint8_t> const block = input.RawReadHeader(stream);
    return input.ReadData(stream, block, ImageFormat::Unknown);
}

} // namespace

// A 4-bit line of one pixel has no source bytes by the loader's rounding-down stride, so the file
// declares no pixel data at all. The loader must then copy nothing, and must not hand a null source
// to the copy (the undefined-behaviour sanitizer stops the sanitizer build there).
TEST(BmpInputHostileTest, FourBitImageOnePixelWideLoadsWithoutPixelData)
{
    BmpWriter bmp = BmpWriter::Gray4(1, { { 0x70 }, { 0x50 } }, BmpWriter::BlackFirst);

    MutableImage const image = LoadBytes(bmp.Bytes());

    EXPECT_EQ(image.Info().Width(), 1);
    EXPECT_EQ(image.Info().Height(), 2);
    EXPECT_EQ(image.Info().Stride(), 4u);
    ASSERT_EQ(image.Buffer().size(), 8u);
    EXPECT_THAT(image.Buffer(), Each(0));
}

// The same narrow image drawn black on white comes out negated: the one byte of each line that
// holds the pixel is inverted, the padding is not.
TEST(BmpInputHostileTest, FourBitImageOnePixelWideWhiteFirstIsNegated)
{
    BmpWriter bmp = BmpWriter::Gray4(1, { { 0x70 } }, BmpWriter::WhiteFirst);

    MutableImage const image = LoadBytes(bmp.Bytes());

    EXPECT_EQ(image.Buffer(), (std::vector<uint8_t> { 0xFF, 0x00, 0x00, 0x00 }));
}
