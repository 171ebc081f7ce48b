#include "OptionParser.h"

#include <gtest/gtest.h>

using Zar::ResourcesLibrary::Tools::Inspect::OptionParser;

namespace {

OptionParser MakeParser()
{
    return OptionParser({ { "help", 'h', false }, { "icon", 0, true }, { "output", 'o', true } });
}

} // namespace

TEST(OptionParserTest, TakesLongOptionsWithSeparateOrJoinedValues)
{
    auto parser = MakeParser();
    ASSERT_TRUE(parser.Parse({ "--icon", "16x16", "pack", "--output=out.png" }));
    EXPECT_EQ(parser.Value("icon"), "16x16");
    EXPECT_EQ(parser.Value("output"), "out.png");
    EXPECT_EQ(parser.Operands(), std::vector<std::string> { "pack" });
}

TEST(OptionParserTest, TakesShortOptionsWithSeparateOrJoinedValues)
{
    auto parser = MakeParser();
    ASSERT_TRUE(parser.Parse({ "-o", "a.png", "-h" }));
    EXPECT_EQ(parser.Value("output"), "a.png");
    EXPECT_TRUE(parser.Has("help"));

    auto joined = MakeParser();
    ASSERT_TRUE(joined.Parse({ "-ob.png" }));
    EXPECT_EQ(joined.Value("output"), "b.png");
}

TEST(OptionParserTest, TheLastValueWins)
{
    auto parser = MakeParser();
    ASSERT_TRUE(parser.Parse({ "--icon=1x1", "--icon=2x2" }));
    EXPECT_EQ(parser.Value("icon"), "2x2");
}

TEST(OptionParserTest, DoubleDashEndsTheOptions)
{
    auto parser = MakeParser();
    ASSERT_TRUE(parser.Parse({ "--", "--help", "-o" }));
    EXPECT_FALSE(parser.Has("help"));
    EXPECT_EQ(parser.Operands(), (std::vector<std::string> { "--help", "-o" }));
}

TEST(OptionParserTest, OptionsMayFollowTheOperands)
{
    auto parser = MakeParser();
    ASSERT_TRUE(parser.Parse({ "pack", "-o", "out.png", "other" }));
    EXPECT_EQ(parser.Value("output"), "out.png");
    EXPECT_EQ(parser.Operands(), (std::vector<std::string> { "pack", "other" }));
}

TEST(OptionParserTest, ShortSwitchesRunTogether)
{
    OptionParser parser({ { "help", 'h', false }, { "verbose", 'v', false } });
    ASSERT_TRUE(parser.Parse({ "-vh" }));
    EXPECT_TRUE(parser.Has("help"));
    EXPECT_TRUE(parser.Has("verbose"));
}

TEST(OptionParserTest, ALoneDashIsAnOperand)
{
    auto parser = MakeParser();
    ASSERT_TRUE(parser.Parse({ "-" }));
    EXPECT_EQ(parser.Operands(), std::vector<std::string> { "-" });
}

TEST(OptionParserTest, AbsentOptionHasNoValue)
{
    auto parser = MakeParser();
    ASSERT_TRUE(parser.Parse({}));
    EXPECT_FALSE(parser.Has("icon"));
    EXPECT_EQ(parser.Value("icon"), std::nullopt);
}

TEST(OptionParserTest, RefusesUnknownOptions)
{
    auto parser = MakeParser();
    EXPECT_FALSE(parser.Parse({ "--colour=red" }));
    EXPECT_EQ(parser.Error(), "unknown option '--colour'");
    auto shortParser = MakeParser();
    EXPECT_FALSE(shortParser.Parse({ "-x" }));
    EXPECT_EQ(shortParser.Error(), "unknown option '-x'");
}

TEST(OptionParserTest, RefusesAMissingValue)
{
    auto parser = MakeParser();
    EXPECT_FALSE(parser.Parse({ "--icon" }));
    EXPECT_EQ(parser.Error(), "option '--icon' needs a value");
    auto shortParser = MakeParser();
    EXPECT_FALSE(shortParser.Parse({ "-o" }));
    EXPECT_EQ(shortParser.Error(), "option '-o' needs a value");
}

TEST(OptionParserTest, RefusesAValueForASwitch)
{
    auto parser = MakeParser();
    EXPECT_FALSE(parser.Parse({ "--help=yes" }));
    EXPECT_EQ(parser.Error(), "option '--help' takes no value");
    // A switch's short name runs on into the next one, as with getopt: here an unknown -x.
    auto shortParser = MakeParser();
    EXPECT_FALSE(shortParser.Parse({ "-hx" }));
    EXPECT_EQ(shortParser.Error(), "unknown option '-x'");
}
