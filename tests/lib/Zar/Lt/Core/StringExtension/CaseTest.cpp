#include "Zar/Lt/Core/StringExtension/Case.h"

#include "Zar/Lt/Exceptions/PostCondition.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace Zar::Lt::Core {
namespace {

using testing::StrEq;
using testing::ThrowsMessage;
using Zar::Lt::Exceptions::PostCondition;

std::string Upper(std::string_view text) { return ToUpper(text); }

std::string Lower(std::string_view text) { return ToLower(text); }

std::string Capital(std::string_view text) { return ToCapital(text); }

// A mapping as some other locale might have it: i and I take the dotted and dotless forms, which need
// two bytes in UTF-8 where the letters needed one; é loses its accent and so shrinks from two bytes to
// one; # maps to a surrogate, which cannot be written.
struct WideningCase {
    static uint32_t ToUpper(uint32_t codePoint)
    {
        if (codePoint == 'i')
            return 0x130;
        if (codePoint == 0xE9)
            return 'E';
        return codePoint == '#' ? 0xD800 : CLocaleCase::ToUpper(codePoint);
    }
    static uint32_t ToLower(uint32_t codePoint)
    {
        if (codePoint == 'I')
            return 0x131;
        if (codePoint == 0xC9)
            return 'e';
        return codePoint == '#' ? 0xD800 : CLocaleCase::ToLower(codePoint);
    }
    static bool IsSpace(uint32_t codePoint) { return CLocaleCase::IsSpace(codePoint); }
};

using Traits = std::char_traits<char>;
using Alloc = std::allocator<char>;

std::string WideUpper(std::string_view text) { return ToUpper<Traits, Alloc, WideningCase>(text); }

std::string WideLower(std::string_view text) { return ToLower<Traits, Alloc, WideningCase>(text); }

std::string WideCapital(std::string_view text) { return ToCapital<Traits, Alloc, WideningCase>(text); }

void ExpectLongerResultRefused(std::function<void()> const& action, uint32_t line, char const* function)
{
    try {
        action();
        ADD_FAILURE() << "no exception";
    } catch (PostCondition const& e) {
        EXPECT_STREQ("PostCondition actual <= size", e.what());
        EXPECT_STREQ("Zar/Lt/Core/StringExtension/Case", e.Source()._file);
        EXPECT_EQ(line, e.Source()._line);
        EXPECT_NE(nullptr, std::strstr(e.Source()._function, function)) << e.Source()._function;
    }
}

TEST(CaseTest, Examples)
{
    EXPECT_EQ("Play_selected", Capital("play_selected"));
    EXPECT_EQ("PLAY", Capital("PLAY"));
    EXPECT_EQ("Multi Word", Capital("multi word"));
    EXPECT_EQ(" Leading", Capital(" leading"));
    EXPECT_EQ("MENU", Upper("Menu"));
    EXPECT_EQ("icon", Lower("Icon"));
}

TEST(CaseTest, EmptyInputGivesAnEmptyString)
{
    EXPECT_EQ("", Upper(""));
    EXPECT_EQ("", Lower(""));
    EXPECT_EQ("", Capital(""));
    EXPECT_EQ("", Upper(std::string_view()));
}

TEST(CaseTest, TextAlreadyInTheTargetCaseIsReturnedByteForByte)
{
    std::string_view const upper = "ALREADY UPPER 123_-.\xC3\xA9\xCE\xA9";
    std::string_view const lower = "already lower 123_-.\xC3\xA9\xCF\x89";
    std::string_view const capital = "Already Capital_words 1 \xC3\xA9t\xC3\xA9";
    EXPECT_EQ(upper, Upper(upper));
    EXPECT_EQ(lower, Lower(lower));
    EXPECT_EQ(capital, Capital(capital));
}

TEST(CaseTest, CapitalDoesNotLowerTheRest) { EXPECT_EQ("MiXeD CaSe", Capital("miXeD caSe")); }

TEST(CaseTest, TabCarriageReturnAndLineFeedStartAWord)
{
    EXPECT_EQ("A\tB\rC\nD\vE\fF", Capital("a\tb\rc\nd\ve\ff"));
}

TEST(CaseTest, RunsOfWhiteSpaceAndTrailingWhiteSpace)
{
    EXPECT_EQ("A  \t B ", Capital("a  \t b "));
    EXPECT_EQ("   ", Capital("   "));
}

TEST(CaseTest, OnlyWhiteSpaceStartsAWord)
{
    EXPECT_EQ("A-b.c_d1e", Capital("a-b.c_d1e"));
    // Any first code point counts as the first of the word, even one without a case.
    EXPECT_EQ("1abc", Capital("1abc"));
    EXPECT_EQ("\xC3\xA9t\xC3\xA9 Ok", Capital("\xC3\xA9t\xC3\xA9 ok"));
}

TEST(CaseTest, LatinOneLettersStayByteIdenticalInTheCLocale)
{
    // é and É are 0xE9 and 0xC9: the C locale has no case for them.
    EXPECT_EQ("\xC3\xA9", Upper("\xC3\xA9"));
    EXPECT_EQ("\xC3\x89", Lower("\xC3\x89"));
    EXPECT_EQ("\xC3\xA9", Capital("\xC3\xA9"));
    EXPECT_EQ("CAF\xC3\xA9", Upper("caf\xC3\xA9"));
}

TEST(CaseTest, CodePointsFrom256PassUnchanged)
{
    std::string_view const text = "\xCF\x89\xCE\xA9\xC4\xB1\xE2\x82\xAC\xF0\x9F\x98\x80"; // ω Ω ı € 😀
    EXPECT_EQ(text, Upper(text));
    EXPECT_EQ(text, Lower(text));
    EXPECT_EQ(text, Capital(text));
}

TEST(CaseTest, WhiteSpaceFrom128OnIsNotAWordBreak)
{
    EXPECT_EQ("A\xC2\xA0"
              "b",
        Capital("a\xC2\xA0"
                "b")); // no-break space 0xA0
    EXPECT_EQ("A\xC2\x85"
              "b",
        Capital("a\xC2\x85"
                "b")); // next line 0x85
    EXPECT_EQ("A\xE2\x80\x83"
              "b",
        Capital("a\xE2\x80\x83"
                "b")); // em space 0x2003
}

TEST(CaseTest, EmbeddedZeroIsKept)
{
    std::string_view const text("a\0b", 3);
    EXPECT_EQ(std::string("A\0B", 3), Upper(text));
}

TEST(CaseTest, LongInputIsConverted)
{
    std::string const text(1 << 20, 'q');
    std::string const result = Upper(text);
    EXPECT_EQ(std::string(1 << 20, 'Q'), result);
}

TEST(CaseTest, TruncatedSequenceIsNotEnoughSpace)
{
    EXPECT_THAT([] { Upper("ab\xC3"); }, ThrowsMessage<utf8::not_enough_room>(StrEq("Not enough space")));
    EXPECT_THAT([] { Lower("\xE2\x82"); }, ThrowsMessage<utf8::not_enough_room>(StrEq("Not enough space")));
    EXPECT_THAT(
        [] { Capital("\xF0\x9F\x98"); }, ThrowsMessage<utf8::not_enough_room>(StrEq("Not enough space")));
}

TEST(CaseTest, MalformedSequencesAreInvalidUtf8)
{
    EXPECT_THAT([] { Upper("\x80"); }, ThrowsMessage<utf8::invalid_utf8>(StrEq("Invalid UTF-8")));
    EXPECT_THAT([] { Lower("a\xC3(b"); }, ThrowsMessage<utf8::invalid_utf8>(StrEq("Invalid UTF-8")));
    EXPECT_THAT([] { Capital("\xC0\xAF"); }, ThrowsMessage<utf8::invalid_utf8>(StrEq("Invalid UTF-8")));
    EXPECT_THAT([] { Upper("\xFF"); }, ThrowsMessage<utf8::invalid_utf8>(StrEq("Invalid UTF-8")));
}

TEST(CaseTest, EncodedSurrogateAndOutOfRangeAreInvalidCodePoints)
{
    EXPECT_THAT(
        [] { Upper("\xED\xA0\x80"); }, ThrowsMessage<utf8::invalid_code_point>(StrEq("Invalid code point")));
    EXPECT_THAT([] { Lower("\xF4\x90\x80\x80"); },
        ThrowsMessage<utf8::invalid_code_point>(StrEq("Invalid code point")));
}

TEST(CaseTest, NoncharactersFFFEAndFFFFAreInvalidCodePoints)
{
    EXPECT_THAT(
        [] { Upper("a\xEF\xBF\xBE"); }, ThrowsMessage<utf8::invalid_code_point>(StrEq("Invalid code point")));
    EXPECT_THAT(
        [] { Lower("\xEF\xBF\xBF"); }, ThrowsMessage<utf8::invalid_code_point>(StrEq("Invalid code point")));
    EXPECT_THAT([] { Capital("\xEF\xBF\xBF"); },
        ThrowsMessage<utf8::invalid_code_point>(StrEq("Invalid code point")));
}

TEST(CaseTest, NeighboursOfTheNoncharactersAreWritten)
{
    std::string_view const text = "\xEF\xBF\xBD\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"; // U+FFFD U+10000 U+10FFFF
    EXPECT_EQ(text, Upper(text));
}

TEST(CaseTest, MappingToAnInvalidCodePointIsRefused)
{
    EXPECT_THAT(
        [] { WideUpper("a#"); }, ThrowsMessage<utf8::invalid_code_point>(StrEq("Invalid code point")));
    EXPECT_THAT([] { WideLower("#"); }, ThrowsMessage<utf8::invalid_code_point>(StrEq("Invalid code point")));
    EXPECT_THAT(
        [] { WideCapital("#"); }, ThrowsMessage<utf8::invalid_code_point>(StrEq("Invalid code point")));
}

TEST(CaseTest, LongerResultIsRefusedByLowerAtLine29)
{
    ExpectLongerResultRefused([] { WideLower("BIG"); }, 29, "ToLower");
}

TEST(CaseTest, LongerResultIsRefusedByUpperAtLine57)
{
    ExpectLongerResultRefused([] { WideUpper("big"); }, 57, "ToUpper");
}

TEST(CaseTest, LongerResultIsRefusedByCapitalAtLine86)
{
    ExpectLongerResultRefused([] { WideCapital("ok ice"); }, 86, "ToCapital");
}

TEST(CaseTest, LongerCodePointIsAcceptedWhenAnotherShrinks)
{
    // The check is on the whole result: é shrinking by one byte makes room for i growing by one.
    EXPECT_EQ("\xC4\xB0"
              "E",
        WideUpper("i\xC3\xA9"));
}

TEST(CaseTest, ShorterResultIsCutToTheBytesWritten)
{
    std::string const result = WideUpper("caf\xC3\xA9");
    EXPECT_EQ("CAFE", result);
    EXPECT_EQ(4u, result.size());
}

TEST(CaseTest, CapitalMapsOnlyTheFirstCodePointOfAWord)
{
    // With the wide mapping, an i inside a word stays one byte, so the result fits.
    EXPECT_EQ("Bi", WideCapital("bi"));
}

// A traits type of its own: the result keeps the traits of the argument.
struct OtherTraits : std::char_traits<char> { };

TEST(CaseTest, ResultKeepsTheTraitsOfTheInput)
{
    std::basic_string_view<char, OtherTraits> const text("menu item");
    std::basic_string<char, OtherTraits> const upper = ToUpper(text);
    std::basic_string<char, OtherTraits> const capital = ToCapital(text);
    using OtherView = std::basic_string_view<char, OtherTraits>;
    EXPECT_EQ(OtherView("MENU ITEM"), upper);
    EXPECT_EQ(OtherView("Menu Item"), capital);
}

} // namespace
} // namespace Zar::Lt::Core
