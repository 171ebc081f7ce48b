#include "GeneratedName.h"

#include <gtest/gtest.h>

using Zar::ResourcesLibrary::Tools::Inspect::GeneratedName;

TEST(GeneratedNameTest, RefusedCharactersAndWhiteSpaceBecomeUnderscores)
{
    EXPECT_EQ(GeneratedName::FromStem("Play-Pause"), "Play_Pause");
    EXPECT_EQ(GeneratedName::FromStem("wifi 2.4 \"low\",'x'"), "wifi_2_4__low___x_");
    EXPECT_EQ(GeneratedName::FromStem("a\tb\rc"), "a_b_c");
    EXPECT_EQ(GeneratedName::FromStem("Stop_Selected"), "Stop_Selected");
}

TEST(GeneratedNameTest, AcceptsIdentifiers)
{
    EXPECT_EQ(GeneratedName::Problem("Play"), "");
    EXPECT_EQ(GeneratedName::Problem("wifi_2_4"), "");
    EXPECT_EQ(GeneratedName::Problem("_private"), "");
}

TEST(GeneratedNameTest, RefusesWithTheReasonAndTheFix)
{
    EXPECT_EQ(GeneratedName::Problem(""), "the name is empty; give another with --name or rename the file");
    EXPECT_EQ(GeneratedName::Problem("2fast"),
        "the name 2fast starts with a digit, which C++ and Python names cannot; give another with --name or "
        "rename the file");
    EXPECT_EQ(GeneratedName::Problem("a+b"),
        "the name a+b holds '+', which C++ and Python names cannot; give another with --name or rename the "
        "file");
    EXPECT_EQ(GeneratedName::Problem("caf\xC3\xA9"),
        "the name caf\xC3\xA9 holds the byte 0xC3, which C++ and Python names cannot; give another with "
        "--name or rename the "
        "file");
    EXPECT_EQ(GeneratedName::Problem(std::string(256, 'a')),
        "the name is 256 characters long, more than the 255 packager reads of a list line; give another with "
        "--name or "
        "rename the file");
}

TEST(GeneratedNameTest, RefusesKeywordsAsWrittenAndAsCapitalised)
{
    EXPECT_EQ(GeneratedName::Problem("class"),
        "the name class is the C++ keyword class; give another with --name or rename the file");
    EXPECT_EQ(GeneratedName::Problem("lambda"),
        "the name lambda is the Python keyword lambda; give another with --name or rename the file");
    // The generated enumerator of "none" is None.
    EXPECT_EQ(GeneratedName::Problem("none"),
        "the name none is the Python keyword None; give another with --name or rename the file");
    EXPECT_EQ(GeneratedName::Problem("Class"), "");
}

TEST(GeneratedNameTest, KnowsTheKeywordsOfBothLanguages)
{
    EXPECT_TRUE(GeneratedName::IsCppKeyword("constexpr"));
    EXPECT_TRUE(GeneratedName::IsCppKeyword("xor_eq"));
    EXPECT_FALSE(GeneratedName::IsCppKeyword("print"));
    EXPECT_TRUE(GeneratedName::IsPythonKeyword("nonlocal"));
    EXPECT_TRUE(GeneratedName::IsPythonKeyword("True"));
    EXPECT_FALSE(GeneratedName::IsPythonKeyword("true"));
    EXPECT_EQ(GeneratedName::Capitalised("play_selected"), "Play_selected");
}
