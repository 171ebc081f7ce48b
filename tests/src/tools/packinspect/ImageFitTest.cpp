#include "ImageFit.h"

#include <gtest/gtest.h>

using Zar::ResourcesLibrary::Tools::Inspect::ImageFit;

TEST(ImageFitTest, ParsesItsModeNames)
{
    for (auto const mode :
        { ImageFit::Mode::Contain, ImageFit::Mode::Cover, ImageFit::Mode::Stretch, ImageFit::Mode::None })
        EXPECT_EQ(ImageFit::Parse(ImageFit::NameOf(mode)), mode);
    EXPECT_EQ(ImageFit::Parse("fill"), std::nullopt);
}

TEST(ImageFitTest, PlacesThePictureByMode)
{
    QSize const source(64, 64);
    QSize const target(32, 24);
    EXPECT_EQ(ImageFit::Placement(source, target, ImageFit::Mode::Contain), QRect(4, 0, 24, 24));
    EXPECT_EQ(ImageFit::Placement(source, target, ImageFit::Mode::Cover), QRect(0, -4, 32, 32));
    EXPECT_EQ(ImageFit::Placement(source, target, ImageFit::Mode::Stretch), QRect(0, 0, 32, 24));
    EXPECT_EQ(ImageFit::Placement(source, target, ImageFit::Mode::None), QRect(0, 0, 64, 64));
}

TEST(ImageFitTest, CompositesOverTheBackground)
{
    QImage image(3, 1, QImage::Format_ARGB32);
    image.setPixel(0, 0, qRgba(255, 0, 0, 255));
    image.setPixel(1, 0, qRgba(200, 100, 0, 0));
    image.setPixel(2, 0, qRgba(255, 255, 255, 51));
    QImage const result = ImageFit::Composite(image, 100);
    EXPECT_EQ(result.pixel(0, 0), qRgb(255, 0, 0));
    EXPECT_EQ(result.pixel(1, 0), qRgb(100, 100, 100));
    EXPECT_EQ(result.pixel(2, 0), qRgb(131, 131, 131)); // (255 x 51 + 100 x 204 + 127) / 255
}

TEST(ImageFitTest, ContainFillsTheRestWithTheBackground)
{
    QImage image(4, 2, QImage::Format_RGB32);
    image.fill(qRgb(255, 255, 255));
    QImage const result = ImageFit::Scale(image, QSize(4, 4), ImageFit::Mode::Contain, 0);
    EXPECT_EQ(result.pixel(0, 0), qRgb(0, 0, 0));
    EXPECT_EQ(result.pixel(0, 1), qRgb(255, 255, 255));
    EXPECT_EQ(result.pixel(3, 2), qRgb(255, 255, 255));
    EXPECT_EQ(result.pixel(3, 3), qRgb(0, 0, 0));
}

TEST(ImageFitTest, ShrinkingAveragesTheArea)
{
    QImage image(4, 4, QImage::Format_RGB32);
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 4; ++x)
            image.setPixel(x, y, (x + y) % 2 == 0 ? qRgb(255, 255, 255) : qRgb(0, 0, 0));
    QImage const result = ImageFit::Scale(image, QSize(2, 2), ImageFit::Mode::Stretch, 0);
    EXPECT_NEAR(qRed(result.pixel(0, 0)), 128, 2);
    EXPECT_NEAR(qRed(result.pixel(1, 1)), 128, 2);
}
