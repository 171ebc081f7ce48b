#include "ImportPreview.h"

#include "Zar/ResourcesLibrary/ResourcesLibraryException.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using Zar::ResourcesLibrary::ResourcesLibraryException;
using Zar::ResourcesLibrary::Tools::Inspect::ImageImporter;
using Zar::ResourcesLibrary::Tools::Inspect::ImportPreview;

namespace {

ImageImporter::Image TwoPixels()
{
    ImageImporter::Image image;
    image._name = "Pair";
    image._composited = QImage(2, 1, QImage::Format_RGB32);
    image._composited.setPixel(0, 0, qRgb(255, 0, 0));
    image._composited.setPixel(1, 0, qRgb(0, 0, 255));
    image._width = 2;
    image._height = 1;
    image._levels = { 4, 15 };
    return image;
}

} // namespace

TEST(ImportPreviewTest, DrawsTheSourceBesideTheLevelsAtFourTimes)
{
    QImage const sheet = ImportPreview::Render({ TwoPixels() }, "nearest");
    int const top = ImportPreview::kMargin + ImportPreview::kLabelHeight;
    int const left = ImportPreview::kMargin;
    EXPECT_EQ(sheet.pixel(left, top), qRgb(255, 0, 0));
    EXPECT_EQ(sheet.pixel(left + 7, top + 3), qRgb(0, 0, 255));
    int const result = left + 2 * 4 + ImportPreview::kMargin;
    EXPECT_EQ(sheet.pixel(result, top), qRgb(68, 68, 68));
    EXPECT_EQ(sheet.pixel(result + 7, top + 3), qRgb(255, 255, 255));
}

TEST(ImportPreviewTest, RefusesASheetTooLargeToAllocate)
{
    std::vector<ImageImporter::Image> images;
    auto image = TwoPixels();
    image._composited = QImage(4096, 1, QImage::Format_RGB32);
    image._width = 4096;
    image._height = 4096;
    images.push_back(image);
    EXPECT_THAT([&] { ImportPreview::Render(images, "nearest"); },
        testing::ThrowsMessage<ResourcesLibraryException>(
            "the preview would be 32792x16416 pixels, more than 67108864; preview fewer or smaller images"));
}
