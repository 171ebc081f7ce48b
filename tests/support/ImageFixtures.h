#pragma once

// Images for the tests of the image library and its loaders: an info of a given size, an image
// whose bytes can be traced, one line of an image, and the check that an info is the empty one.
//
//   MutableImage const image = Numbered(MakeInfo(ImageFormat::Gray4, 6, 2));
//   EXPECT_EQ(RowOf(image, 1), (std::vector<uint8_t> { 5, 6, 7, 8 }));

#include "Zar/ResourcesLibrary/Image/ImageInfo.h"
#include "Zar/ResourcesLibrary/Image/MutableImage.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <numeric>
#include <vector>

namespace TestSupport {

// An info with the library's own stride for the format: lines padded to 4 bytes.
inline Zar::ResourcesLibrary::Image::ImageInfo MakeInfo(
    Zar::ResourcesLibrary::Image::ImageFormat format, int32_t width, int32_t height)
{
    Zar::ResourcesLibrary::Image::ImageInfo info(format);
    info._width = width;
    info._height = height;
    info._stride = Zar::ResourcesLibrary::Image::ImageInfo::StrideOf(width, format);
    return info;
}

// An image whose byte i holds first + i, so that every moved byte can be traced.
inline Zar::ResourcesLibrary::Image::MutableImage Numbered(
    Zar::ResourcesLibrary::Image::ImageInfo const& info, uint8_t first = 1)
{
    std::vector<uint8_t> pixels(info.GetSize());
    std::iota(pixels.begin(), pixels.end(), first);
    return Zar::ResourcesLibrary::Image::MutableImage(info, pixels);
}

// Line number row of the image, the padding at its end included.
inline std::vector<uint8_t> RowOf(Zar::ResourcesLibrary::Image::MutableImage const& image, int32_t row)
{
    auto const stride = static_cast<std::ptrdiff_t>(image.Info().Stride());
    auto const begin = image.Buffer().begin() + row * stride;
    return { begin, begin + stride };
}

// Expects every field of the info to be that of the empty info, which loaders give for no image.
inline void ExpectEmptyInfo(Zar::ResourcesLibrary::Image::ImageInfo const& info)
{
    EXPECT_EQ(0, info.Width());
    EXPECT_EQ(0, info.Height());
    EXPECT_EQ(0u, info.Stride());
    EXPECT_EQ(0u, info._reserved1);
    EXPECT_EQ(0u, info._reserved2);
    EXPECT_FALSE(info.IsBottomUp());
    EXPECT_EQ(Zar::ResourcesLibrary::Image::ImageFormat::Rgbx, info.Format());
    EXPECT_EQ(0, info._attribute);
}

} // namespace TestSupport
