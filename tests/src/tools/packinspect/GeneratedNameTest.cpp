#include "GeneratedName.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using Zar::ResourcesLibrary::Tools::Inspect::GeneratedName;

TEST(GeneratedNameTest, TheSpellingIsTrimmedWithUnderscoresAndCapitalWords)
{
    EXPECT_EQ("Play", GeneratedName::Spelling(" play\r"));
    EXPECT_EQ("Stop_play", GeneratedName::Spelling("stop-play"));
    EXPECT_EQ("Play Big", GeneratedName::Spelling("play big"));
    EXPECT_EQ("2nd", GeneratedName::Spelling("2nd"));
    EXPECT_EQ("None", GeneratedName::Spelling("none"));
    EXPECT_EQ("", GeneratedName::Spelling(" \t"));
}

TEST(GeneratedNameTest, InvalidUtf8HasNoSpelling)
{
    EXPECT_EQ(std::nullopt, GeneratedName::Spelling("Pl\xFF"));
}

TEST(GeneratedNameTest, IdentifiersHaveNoProblem)
{
    for (char const* name : { "Play", "Stop_Selected", "F11", "X", "_play", "Delete", "Menu" })
        EXPECT_EQ(std::nullopt, GeneratedName::Problem(name)) << name;
}

TEST(GeneratedNameTest, EachProblemIsNamed)
{
    EXPECT_EQ("is empty", GeneratedName::Problem(""));
    EXPECT_EQ("starts with a digit", GeneratedName::Problem("2nd"));
    EXPECT_EQ("holds a space, which an identifier cannot", GeneratedName::Problem("Play Big"));
    EXPECT_EQ("holds '(', which an identifier cannot", GeneratedName::Problem("Play(1)"));
    EXPECT_EQ("holds a tab, which an identifier cannot", GeneratedName::Problem("A\tB"));
    EXPECT_EQ("holds the byte 0xC3, which an identifier cannot", GeneratedName::Problem("Caf\xC3\xA9"));
    EXPECT_EQ("is a C++ keyword", GeneratedName::Problem("delete"));
    EXPECT_EQ("is a Python keyword", GeneratedName::Problem("None"));
    EXPECT_EQ("is a Python keyword", GeneratedName::Problem("True"));
    EXPECT_EQ("is reserved to the C++ implementation (a double '_', or '_' and a capital letter)",
        GeneratedName::Problem("A__b"));
    EXPECT_EQ("is reserved to the C++ implementation (a double '_', or '_' and a capital letter)",
        GeneratedName::Problem("_Play"));
    EXPECT_EQ("is a name Python's enumerations keep for themselves ('_' at both ends)",
        GeneratedName::Problem("_order_"));
}

TEST(GeneratedNameTest, KeywordListsAreTheLanguages)
{
    EXPECT_EQ(92u, GeneratedName::CppKeywords().size());
    EXPECT_EQ(35u, GeneratedName::PythonKeywords().size());
    EXPECT_TRUE(GeneratedName::IsCppKeyword("co_await"));
    EXPECT_FALSE(GeneratedName::IsCppKeyword("final"));
    EXPECT_TRUE(GeneratedName::IsPythonKeyword("nonlocal"));
    EXPECT_FALSE(GeneratedName::IsPythonKeyword("match"));
}

TEST(GeneratedNameTest, TheCommandsModuleKeysAreTaken)
{
    for (char const* key : { "MENU", "SHIFT", "S3", "S8", "CLEAR", "ENTER", "F1", "F10", "from_name" })
        EXPECT_TRUE(GeneratedName::IsCommandsKey(key)) << key;
    for (char const* name : { "Menu", "S2", "S9", "F11", "F0" })
        EXPECT_FALSE(GeneratedName::IsCommandsKey(name)) << name;
}
