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

TEST(OptionParserTest, OperandsAndValuesKeepTheirBytes)
{
    // "pàck.bin" in UTF-8 and in Latin-1, whose 0xE0 alone is no UTF-8.
    std::string const utf8 = std::string("p\xC3\xA0") + "ck.bin";
    std::string const latin1 = std::string("p\xE0") + "ck.bin";
    auto parser = MakeParser();
    ASSERT_TRUE(parser.Parse({ utf8, latin1, "-o", latin1 + ".png", "--icon=" + utf8 }));
    EXPECT_EQ(parser.Operands(), (std::vector<std::string> { utf8, latin1 }));
    EXPECT_EQ(parser.Value("output"), latin1 + ".png");
    EXPECT_EQ(parser.Value("icon"), utf8);

    auto unknown = MakeParser();
    ASSERT_FALSE(unknown.Parse({ "--\xE9t\xE9" }));
    EXPECT_EQ(unknown.Error(), "unknown option '--\xE9t\xE9'");
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
