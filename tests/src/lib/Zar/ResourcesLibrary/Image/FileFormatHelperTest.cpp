#include "Zar/ResourcesLibrary/Image/FileFormatHelper.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace Zar::ResourcesLibrary::Image {
namespace {

TEST(FileFormatHelperTest, ExtensionsKeepTheirOddPairings)
{
    EXPECT_STREQ(".raw", FileFormatHelper::GetExtension(FileFormat::Raw));
    EXPECT_STREQ(".planar.yuv", FileFormatHelper::GetExtension(FileFormat::PlanarYuv));
    EXPECT_STREQ(".gray", FileFormatHelper::GetExtension(FileFormat::Mono));
    EXPECT_STREQ(".bmp", FileFormatHelper::GetExtension(FileFormat::Bmp));
    EXPECT_STREQ(".txt", FileFormatHelper::GetExtension(FileFormat::Ascii));
    EXPECT_STREQ(".auto", FileFormatHelper::GetExtension(FileFormat::Qt));
    EXPECT_STREQ(".rec", FileFormatHelper::GetExtension(FileFormat::BarsWithText));
}

TEST(FileFormatHelperTest, ExtensionOfNoneAndOutOfRangeIsEmpty)
{
    EXPECT_STREQ("", FileFormatHelper::GetExtension(FileFormat::None));
    EXPECT_STREQ("", FileFormatHelper::GetExtension(static_cast<FileFormat>(-1)));
    EXPECT_STREQ("", FileFormatHelper::GetExtension(static_cast<FileFormat>(17)));
}

TEST(FileFormatHelperTest, NamesInValueOrder)
{
    char const* const names[] = { "None", "Raw", "Yuv", "PlanarYuv", "Mono", "Bmp", "Jpeg", "Png", "Pbm",
        "Pgm", "Ppm", "Ascii", "Hpp", "C", "Qt", "Bars", "BarsWithText" };
    for (unsigned value = 0; value < 17; ++value)
        EXPECT_STREQ(names[value], FileFormatHelper::GetString(value)) << value;
}

TEST(FileFormatHelperTest, NameOutOfRangeIsNone)
{
    EXPECT_STREQ("None", FileFormatHelper::GetString(17));
    EXPECT_STREQ("None", FileFormatHelper::GetString(0xFFFFFFFFu));
}

TEST(FileFormatHelperTest, SuffixOnlyForRawAndYuv)
{
    EXPECT_STREQ(".%d.%d.%s.ub", FileFormatHelper::GetSuffix(FileFormat::Raw));
    EXPECT_STREQ(".%d.%d.%s", FileFormatHelper::GetSuffix(FileFormat::Yuv));
    EXPECT_STREQ(".%d.%d.%s", FileFormatHelper::GetSuffix(FileFormat::PlanarYuv));
    EXPECT_STREQ("", FileFormatHelper::GetSuffix(FileFormat::None));
    EXPECT_STREQ("", FileFormatHelper::GetSuffix(FileFormat::Bmp));
    EXPECT_STREQ("", FileFormatHelper::GetSuffix(static_cast<FileFormat>(99)));
}

TEST(FileFormatHelperTest, ExtensionIsMatchedWithoutCase)
{
    EXPECT_EQ(FileFormat::Bmp, FileFormatHelper::GetFromExtension("image.BMP"));
    EXPECT_EQ(FileFormat::Ascii, FileFormatHelper::GetFromExtension("list.TXT"));
    EXPECT_EQ(FileFormat::Qt, FileFormatHelper::GetFromExtension("pic.auto"));
    EXPECT_EQ(FileFormat::Jpeg, FileFormatHelper::GetFromExtension("photo.JpG"));
    EXPECT_EQ(FileFormat::Png, FileFormatHelper::GetFromExtension("bmp/icons/a.b/c.png"));
    EXPECT_EQ(FileFormat::Bmp, FileFormatHelper::GetFromExtension(".bmp"));
}

TEST(FileFormatHelperTest, EveryExtensionFindsItsOwnFormatExceptPlanarYuv)
{
    for (int value = 1; value <= 16; ++value) {
        auto const format = static_cast<FileFormat>(value);
        std::string const path = std::string("name") + FileFormatHelper::GetExtension(format);
        // Only the last extension counts, so ".planar.yuv" is read as ".yuv".
        auto const expected = format == FileFormat::PlanarYuv ? FileFormat::Yuv : format;
        EXPECT_EQ(expected, FileFormatHelper::GetFromExtension(path)) << path;
    }
}

TEST(FileFormatHelperTest, PathsWithoutAUsableExtensionAreNone)
{
    EXPECT_EQ(FileFormat::None, FileFormatHelper::GetFromExtension(""));
    EXPECT_EQ(FileFormat::None, FileFormatHelper::GetFromExtension("noextension"));
    EXPECT_EQ(FileFormat::None, FileFormatHelper::GetFromExtension("dir.d/file"));
    EXPECT_EQ(FileFormat::None, FileFormatHelper::GetFromExtension("file."));
    EXPECT_EQ(FileFormat::None, FileFormatHelper::GetFromExtension(".."));
    EXPECT_EQ(FileFormat::None, FileFormatHelper::GetFromExtension("."));
    EXPECT_EQ(FileFormat::None, FileFormatHelper::GetFromExtension("file.xyz"));
}

TEST(FileFormatHelperTest, OnlyTheLastDotCounts)
{
    EXPECT_EQ(FileFormat::Bmp, FileFormatHelper::GetFromExtension("file..bmp"));
    EXPECT_EQ(FileFormat::Yuv, FileFormatHelper::GetFromExtension("x.planar.yuv"));
    EXPECT_EQ(FileFormat::Ascii, FileFormatHelper::GetFromExtension("archive.bmp.txt"));
}

TEST(FileFormatHelperTest, ShortTailMatchesTheFirstExtensionItBegins)
{
    EXPECT_EQ(FileFormat::Bmp, FileFormatHelper::GetFromExtension("x.b"));
    EXPECT_EQ(FileFormat::PlanarYuv, FileFormatHelper::GetFromExtension("x.p"));
    EXPECT_EQ(FileFormat::C, FileFormatHelper::GetFromExtension("x.c"));
    EXPECT_EQ(FileFormat::Raw, FileFormatHelper::GetFromExtension("x.r"));
    EXPECT_EQ(FileFormat::Ppm, FileFormatHelper::GetFromExtension("x.PP"));
}

TEST(FileFormatHelperTest, TailLongerThanTheExtensionDoesNotMatch)
{
    EXPECT_EQ(FileFormat::None, FileFormatHelper::GetFromExtension("x.bmpx"));
    EXPECT_EQ(FileFormat::None, FileFormatHelper::GetFromExtension("x.cc"));
}

TEST(FileFormatHelperTest, EmbeddedNulOrHighBytesNeverMatch)
{
    using namespace std::string_view_literals;
    EXPECT_EQ(FileFormat::None, FileFormatHelper::GetFromExtension("x.c\0zz"sv));
    EXPECT_EQ(FileFormat::None, FileFormatHelper::GetFromExtension("x.\xC2\xA9"sv));
}

} // namespace
} // namespace Zar::ResourcesLibrary::Image
