#include "Zar/ResourcesLibrary/Image/codec/IndexPattern.h"

#include <gtest/gtest.h>

#include <string>

using Zar::ResourcesLibrary::Image::IndexPattern;

namespace {

// The pattern formatted into a path buffer of the usual size.
std::string Formatted(std::string const& pattern, int index)
{
    char buffer[IndexPattern::kPathBufferSize];
    IndexPattern::Format(buffer, sizeof(buffer), pattern, index);
    return buffer;
}

TEST(IndexPatternTest, FormatsNegativeIndexesAsPrintfWould)
{
    EXPECT_EQ("d/-1.bmp", Formatted("d/%d.bmp", -1));
    EXPECT_EQ("d/4294967295.bmp", Formatted("d/%u.bmp", -1));
}

TEST(IndexPatternTest, FormatsFlagsWidthPrecisionAndBases)
{
    EXPECT_EQ("d/  007|.bmp", Formatted("d/%5.3d|.bmp", 7));
    // A '.' without digits is a precision of zero, which prints nothing at all for the index 0.
    EXPECT_EQ("d/|.bmp", Formatted("d/%.d|.bmp", 0));
    EXPECT_EQ("d/   |.bmp", Formatted("d/%3.d|.bmp", 0));
    EXPECT_EQ("d/7|.bmp", Formatted("d/%.u|.bmp", 7));
    EXPECT_EQ("d/7    |.bmp", Formatted("d/%-5d|.bmp", 7));
    EXPECT_EQ("d/+7.bmp", Formatted("d/%+d.bmp", 7));
    EXPECT_EQ("d/00ff.bmp", Formatted("d/%04x.bmp", 255));
    EXPECT_EQ("d/0XFF.bmp", Formatted("d/%#X.bmp", 255));
    EXPECT_EQ("d/17.bmp", Formatted("d/%o.bmp", 15));
    EXPECT_EQ("d/0007.bmp", Formatted("d/%04ld.bmp", 7));
    EXPECT_EQ("d/5%.bmp", Formatted("d/%i%%.bmp", 5));
}

TEST(IndexPatternTest, KeepsConversionsOtherThanOneNumberAsText)
{
    EXPECT_EQ("d/%s.bmp", Formatted("d/%s.bmp", 7));
    EXPECT_EQ("d/%n7.bmp", Formatted("d/%n%d.bmp", 7));
    EXPECT_EQ("d/7-%d.bmp", Formatted("d/%d-%d.bmp", 7));
    EXPECT_EQ("d/%*d.bmp", Formatted("d/%*d.bmp", 7));
    EXPECT_EQ("d/%p%f%c.bmp", Formatted("d/%p%f%c.bmp", 7));
    EXPECT_EQ("d/%04", Formatted("d/%04", 7));
}

TEST(IndexPatternTest, AHugeWidthGivesAFullBuffer)
{
    std::string const path = Formatted("d/%999999999d", 7);
    EXPECT_EQ(511u, path.size());
    EXPECT_EQ("d/" + std::string(509, ' '), path);
}

TEST(IndexPatternTest, OrDefaultReplacesAPatternWithoutConversion)
{
    EXPECT_EQ("%04d", IndexPattern::OrDefault(""));
    EXPECT_EQ("%04d", IndexPattern::OrDefault("img.bmp"));
    EXPECT_EQ("%u.bmp", IndexPattern::OrDefault("%u.bmp"));
}

TEST(IndexPatternTest, FormatIntoNoRoomWritesNothing)
{
    char buffer[1] = { 'x' };
    IndexPattern::Format(buffer, 0, "%d", 7);
    EXPECT_EQ('x', buffer[0]);
    IndexPattern::Format(buffer, 1, "%d", 7);
    EXPECT_EQ('\0', buffer[0]);
}

TEST(IndexPatternTest, FilePathPutsTheNumberBehindTheFolder)
{
    EXPECT_EQ("bmp/icons/0007", IndexPattern::FilePath("bmp/icons/", "", 7, ""));
    EXPECT_EQ("bmp/icons/7.bmp", IndexPattern::FilePath("bmp/icons/", "%u.bmp", 7, ""));
}

TEST(IndexPatternTest, FilePathOfAPatternWithAFolderIgnoresTheFolder)
{
    EXPECT_EQ("frames/0007.bmp", IndexPattern::FilePath("bmp/icons/", "frames/%04d.bmp", 7, ""));
}

TEST(IndexPatternTest, FilePathPutsTheNameInPlaceOfWhatFollowsTheLastSlash)
{
    EXPECT_EQ("bmp/icons/Play", IndexPattern::FilePath("bmp/icons/", "", 7, "Play"));
    EXPECT_EQ("frames/Play.png", IndexPattern::FilePath("", "frames/%04d.bmp", 7, "Play.png"));
}

TEST(IndexPatternTest, FilePathWithoutASlashKeepsTheNumberAndDropsTheName)
{
    EXPECT_EQ("0007", IndexPattern::FilePath("", "", 7, "Play"));
}

TEST(IndexPatternTest, FilePathOfALongFolderCutsTheNumber)
{
    std::string const folder(510, 'f');
    EXPECT_EQ(folder + "0", IndexPattern::FilePath(folder, "", 7, ""));
    std::string const longer(600, 'f');
    EXPECT_EQ(std::string(511, 'f'), IndexPattern::FilePath(longer, "", 7, ""));
}

TEST(IndexPatternTest, FilePathCutsALongNameAtTheBuffer)
{
    std::string const path = IndexPattern::FilePath("d/", "", 7, std::string(600, 'n'));
    EXPECT_EQ("d/" + std::string(509, 'n'), path);
}

TEST(IndexPatternTest, WithExtensionAppendsTheExtensionOrBmp)
{
    EXPECT_EQ("bmp/icons/Play.png", IndexPattern::WithExtension("bmp/icons/Play", ".png"));
    EXPECT_EQ("bmp/icons/Play.bmp", IndexPattern::WithExtension("bmp/icons/Play", nullptr));
}

TEST(IndexPatternTest, WithExtensionCutsAtTheBuffer)
{
    EXPECT_EQ(std::string(509, 'p') + ".b", IndexPattern::WithExtension(std::string(509, 'p'), nullptr));
}

} // namespace
