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
    EXPECT_EQ("is a macro of <stdint.h>, which the generated headers include, so it becomes a number",
        GeneratedName::Problem("INT8_MAX"));
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

TEST(GeneratedNameTest, StdintMacrosAreTheObjectLikeOnesOfTheHeader)
{
    EXPECT_EQ(84u, GeneratedName::StdintMacros().size());
    for (char const* macro : { "INT8_MIN", "UINT64_MAX", "INT_LEAST16_WIDTH", "UINT_FAST32_MAX", "INTPTR_MIN",
             "UINTMAX_WIDTH", "PTRDIFF_MIN", "SIG_ATOMIC_MAX", "WCHAR_WIDTH", "WINT_MIN", "SIZE_MAX" })
        EXPECT_TRUE(GeneratedName::IsStdintMacro(macro)) << macro;
    // Function-like macros are replaced only before '(', which an enumerator never has; there is no
    // unsigned minimum.
    for (char const* word : { "INT8_C", "UINTMAX_C", "UINT8_MIN", "SIZE_MIN", "Int8_max", "INT128_MAX" })
        EXPECT_FALSE(GeneratedName::IsStdintMacro(word)) << word;
}

TEST(GeneratedNameTest, TheCommandsModuleKeysAreTaken)
{
    for (char const* key : { "MENU", "SHIFT", "S3", "S8", "CLEAR", "ENTER", "F1", "F10", "from_name" })
        EXPECT_TRUE(GeneratedName::IsCommandsKey(key)) << key;
    for (char const* name : { "Menu", "S2", "S9", "F11", "F0" })
        EXPECT_FALSE(GeneratedName::IsCommandsKey(name)) << name;
}

TEST(GeneratedNameTest, RefusedCharactersAndWhiteSpaceOfAStemBecomeUnderscores)
{
    EXPECT_EQ(GeneratedName::FromStem("Play-Pause"), "Play_Pause");
    EXPECT_EQ(GeneratedName::FromStem("wifi 2.4 \"low\",'x'"), "wifi_2_4__low___x_");
    EXPECT_EQ(GeneratedName::FromStem("a\tb\rc"), "a_b_c");
    EXPECT_EQ(GeneratedName::FromStem("Stop_Selected"), "Stop_Selected");
}

TEST(GeneratedNameTest, AListedNameIsRefusedWithTheReason)
{
    EXPECT_EQ(GeneratedName::ListedNameProblem("Play"), std::nullopt);
    EXPECT_EQ(GeneratedName::ListedNameProblem("wifi_2_4"), std::nullopt);
    EXPECT_EQ(GeneratedName::ListedNameProblem("class"), std::nullopt);
    EXPECT_EQ(GeneratedName::ListedNameProblem(""), "the name is empty");
    EXPECT_EQ(GeneratedName::ListedNameProblem("2fast"), "the name 2fast starts with a digit");
    EXPECT_EQ(GeneratedName::ListedNameProblem("a+b"),
        "the name a+b, A+b in the generated sources, holds '+', "
        "which an identifier cannot");
    EXPECT_EQ(GeneratedName::ListedNameProblem("none"),
        "the name none, None in the generated sources, is a Python keyword");
    EXPECT_EQ(GeneratedName::ListedNameProblem("caf\xC3"), "the name caf\xC3 is not valid UTF-8");
    EXPECT_EQ(GeneratedName::ListedNameProblem(std::string(256, 'a')),
        "the name is 256 characters long, more than the 255 packager reads of a list line");
}
