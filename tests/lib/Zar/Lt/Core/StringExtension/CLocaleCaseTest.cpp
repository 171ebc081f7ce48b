#include "Zar/Lt/Core/StringExtension/CLocaleCase.h"

#include <gtest/gtest.h>

#include <cctype>
#include <cstdint>
#include <locale.h>

namespace Zar::Lt::Core {
namespace {

static_assert(CLocaleCase::ToUpper('a') == 'A' && CLocaleCase::ToUpper('z') == 'Z');
static_assert(CLocaleCase::ToLower('A') == 'a' && CLocaleCase::ToLower('Z') == 'z');
static_assert(CLocaleCase::IsSpace(' ') && !CLocaleCase::IsSpace('_'));

// The C library's own functions in the C locale, whatever locale this process has set.
class CLibraryInCLocale {
public:
    CLibraryInCLocale()
        : _locale(newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(nullptr)))
    {
    }
    ~CLibraryInCLocale() { freelocale(_locale); }
    CLibraryInCLocale(CLibraryInCLocale const&) = delete;
    CLibraryInCLocale& operator=(CLibraryInCLocale const&) = delete;

    bool Valid() const { return _locale != static_cast<locale_t>(nullptr); }
    uint32_t ToUpper(int c) const { return static_cast<uint32_t>(toupper_l(c, _locale)); }
    uint32_t ToLower(int c) const { return static_cast<uint32_t>(tolower_l(c, _locale)); }
    bool IsSpace(int c) const { return isspace_l(c, _locale) != 0; }

private:
    locale_t _locale;
};

TEST(CLocaleCaseTest, AgreesWithTheCLibraryBelow256)
{
    CLibraryInCLocale const library;
    ASSERT_TRUE(library.Valid());
    for (int c = 0; c < 256; ++c) {
        auto const codePoint = static_cast<uint32_t>(c);
        EXPECT_EQ(library.ToUpper(c), CLocaleCase::ToUpper(codePoint)) << "code point " << c;
        EXPECT_EQ(library.ToLower(c), CLocaleCase::ToLower(codePoint)) << "code point " << c;
        EXPECT_EQ(library.IsSpace(c), CLocaleCase::IsSpace(codePoint)) << "code point " << c;
    }
}

TEST(CLocaleCaseTest, LatinOneLettersKeepTheirCase)
{
    EXPECT_EQ(0xE9u, CLocaleCase::ToUpper(0xE9));
    EXPECT_EQ(0xC9u, CLocaleCase::ToLower(0xC9));
    EXPECT_EQ(0xFFu, CLocaleCase::ToUpper(0xFF));
}

TEST(CLocaleCaseTest, OnlyTheSixAsciiWhiteSpacesAreWhiteSpace)
{
    for (char c : { ' ', '\t', '\n', '\v', '\f', '\r' })
        EXPECT_TRUE(CLocaleCase::IsSpace(static_cast<uint32_t>(c))) << static_cast<int>(c);
    for (uint32_t c : { 0x00u, 0x08u, 0x0Eu, 0x1Fu, 0x85u, 0xA0u })
        EXPECT_FALSE(CLocaleCase::IsSpace(c)) << c;
}

TEST(CLocaleCaseTest, CodePointsFrom256PassUnchangedAndAreNotWhiteSpace)
{
    for (uint32_t c : { 0x100u, 0x101u, 0x130u, 0x131u, 0x3A9u, 0x3C9u, 0x1680u, 0x2003u, 0x3000u, 0xFF41u,
             0x1F600u, 0x10FFFFu }) {
        EXPECT_EQ(c, CLocaleCase::ToUpper(c)) << c;
        EXPECT_EQ(c, CLocaleCase::ToLower(c)) << c;
        EXPECT_FALSE(CLocaleCase::IsSpace(c)) << c;
    }
}

} // namespace
} // namespace Zar::Lt::Core
