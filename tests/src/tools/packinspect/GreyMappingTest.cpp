#include "GreyMapping.h"

#include "Zar/ResourcesLibrary/ResourcesLibraryException.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using Zar::ResourcesLibrary::ResourcesLibraryException;
using Zar::ResourcesLibrary::Tools::Inspect::GreyMapping;

namespace {

std::array<double, 16> LinearRamp()
{
    std::array<double, 16> table {};
    for (int level = 0; level < 16; ++level)
        table[level] = level;
    return table;
}

std::string ParseProblem(std::string const& text)
{
    try {
        GreyMapping::ParseTable(text);
    } catch (ResourcesLibraryException const& error) {
        return error.what();
    }
    return "no problem";
}

} // namespace

TEST(GreyMappingTest, LumaWeighsTheChannels)
{
    EXPECT_EQ(GreyMapping::Luma(255, 0, 0), 76); // (76245 + 500) / 1000
    EXPECT_EQ(GreyMapping::Luma(0, 255, 0), 150); // (149685 + 500) / 1000
    EXPECT_EQ(GreyMapping::Luma(0, 0, 255), 29); // (29070 + 500) / 1000
    EXPECT_EQ(GreyMapping::Luma(255, 255, 255), 255);
    EXPECT_EQ(GreyMapping::Luma(10, 20, 30), 18); // (2990 + 11740 + 3420 + 500) / 1000
}

TEST(GreyMappingTest, NearestLevelRoundsToTheNearestOfSixteen)
{
    auto const mapping = GreyMapping::Nearest();
    EXPECT_EQ(mapping.LevelOf(0), 0);
    EXPECT_EQ(mapping.LevelOf(8), 0);
    EXPECT_EQ(mapping.LevelOf(9), 1);
    EXPECT_EQ(mapping.LevelOf(17), 1);
    EXPECT_EQ(mapping.LevelOf(128), 8);
    EXPECT_EQ(mapping.LevelOf(246), 14);
    EXPECT_EQ(mapping.LevelOf(247), 15);
    EXPECT_EQ(mapping.LevelOf(255), 15);
    for (int level = 0; level < 16; ++level)
        EXPECT_EQ(mapping.LevelOf(static_cast<uint8_t>(17 * level)), level);
    EXPECT_FALSE(mapping.IsMono());
}

TEST(GreyMappingTest, GammaMapsThroughThePowerFirst)
{
    auto const mapping = GreyMapping::Gamma(2.2);
    EXPECT_EQ(mapping.LevelOf(0), 0);
    EXPECT_EQ(mapping.LevelOf(64), 1); // 15 x 0.251^2.2 = 0.72
    EXPECT_EQ(mapping.LevelOf(40), 0); // 15 x 0.157^2.2 = 0.25
    EXPECT_EQ(mapping.LevelOf(128), 3); // 15 x 0.502^2.2 = 3.29
    EXPECT_EQ(mapping.LevelOf(200), 9); // 15 x 0.784^2.2 = 8.79
    EXPECT_EQ(mapping.LevelOf(255), 15);
    EXPECT_EQ(mapping.Description(), "gamma 2.2");
}

TEST(GreyMappingTest, GreyTablePicksTheLevelOfNearestLuminance)
{
    auto const mapping = GreyMapping::Table(LinearRamp());
    EXPECT_EQ(mapping.LevelOf(0), 0);
    EXPECT_EQ(mapping.LevelOf(64), 1); // linear 0.0513 x 15 = 0.77
    EXPECT_EQ(mapping.LevelOf(128), 3); // linear 0.2158 x 15 = 3.24
    EXPECT_EQ(mapping.LevelOf(255), 15);
}

TEST(GreyMappingTest, GreyTableIsRelativeToLevelFifteen)
{
    auto table = LinearRamp();
    for (double& luminance : table)
        luminance *= 20; // cd/m2, say
    EXPECT_EQ(GreyMapping::Table(table).LevelOf(128), 3);
}

TEST(GreyMappingTest, ThresholdGivesBlackAndWhite)
{
    auto const mapping = GreyMapping::Threshold(128);
    EXPECT_TRUE(mapping.IsMono());
    EXPECT_EQ(mapping.LevelOf(0), 0);
    EXPECT_EQ(mapping.LevelOf(127), 0);
    EXPECT_EQ(mapping.LevelOf(128), 15);
    EXPECT_EQ(mapping.LevelOf(255), 15);
    EXPECT_EQ(mapping.Levels(), (std::vector<uint8_t> { 0, 15 }));
}

TEST(GreyMappingTest, ParsesSixteenNumbersWithCommentsAndCommas)
{
    auto const table = GreyMapping::ParseTable(
        "# SSD1322 defaults\n0, 1, 2, 3\n4 5 6 7 # middle\n8\t9 10 11 12 13 14 15.5\n");
    EXPECT_EQ(table[0], 0);
    EXPECT_EQ(table[7], 7);
    EXPECT_EQ(table[15], 15.5);
}

TEST(GreyMappingTest, RefusesATableThatIsNotSixteenAscendingNumbers)
{
    EXPECT_EQ(
        ParseProblem("1 2 3"), "it holds 3 numbers; it needs 16, the luminance of each level from 0 to 15");
    EXPECT_EQ(
        ParseProblem("0 1 2 3 4 5 6 7 8 9 10 11 12 13 14 x"), "'x' is not a luminance (a number from 0 up)");
    EXPECT_EQ(ParseProblem("0 1 2 3 4 5 6 7 8 9 10 11 12 13 14 -1"),
        "'-1' is not a luminance (a number from 0 up)");
    EXPECT_EQ(ParseProblem("0 1 2 3 4 5 6 7 8 9 10 11 12 14 13 15"),
        "the luminance of level 14 is below that of level 13; the numbers must ascend");
    EXPECT_EQ(ParseProblem("0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0"), "the luminance of level 15 must be above 0");
}
