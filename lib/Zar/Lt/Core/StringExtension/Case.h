#pragma once

// Case conversion of UTF-8 text, one code point at a time, for the identifiers of generated sources.
// The three functions share one loop; each checks that its result fits the input's size, and reports
// a failed check with a fixed place: line 29 for ToLower, 57 for ToUpper and 86 for ToCapital.

#include "Zar/Lt/Core/StringExtension/CLocaleCase.h"
#include "Zar/Lt/Exceptions/Check.h"

#include <utf8.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace Zar::Lt::Core {

namespace Detail {

inline constexpr char kCaseSourceFile[] = "Zar/Lt/Core/StringExtension/Case";

// A code point that may be written back: no surrogate, nothing above the Unicode range and neither of
// the two noncharacters 0xFFFE and 0xFFFF.
constexpr bool IsWritableCodePoint(uint32_t codePoint)
{
    return codePoint <= 0x10FFFF && !(codePoint >= 0xD800 && codePoint <= 0xDFFF) && codePoint != 0xFFFE
        && codePoint != 0xFFFF;
}

// Decodes text, maps every code point and encodes it again into a buffer of exactly the input's size.
// A mapping that makes the text longer never writes past the buffer: the bytes that do not fit are
// only counted in actual, which the caller checks against the size.
template <class Traits, class Alloc, class Map>
std::basic_string<char, Traits, Alloc> MapCodePoints(
    std::basic_string_view<char, Traits> text, Map map, std::size_t& actual)
{
    std::basic_string<char, Traits, Alloc> buffer(text.size(), '\0');
    actual = 0;
    char const* next = text.data();
    char const* const end = text.data() + text.size();
    while (next != end) {
        uint32_t const codePoint = map(utf8::next(next, end));
        if (!IsWritableCodePoint(codePoint))
            throw utf8::invalid_code_point(codePoint);
        char encoded[4];
        char* const encodedEnd = utf8::append(codePoint, encoded);
        auto const length = static_cast<std::size_t>(encodedEnd - encoded);
        if (actual + length <= buffer.size())
            std::copy(encoded, encodedEnd, buffer.begin() + static_cast<std::ptrdiff_t>(actual));
        actual += length;
    }
    return buffer;
}

} // namespace Detail

// Every code point through toupper.
template <class Traits, class Alloc = std::allocator<char>, class CaseMapping = CLocaleCase>
std::basic_string<char, Traits, Alloc> ToUpper(std::basic_string_view<char, Traits> text)
{
    if (text.empty())
        return {};
    std::size_t const size = text.size();
    std::size_t actual = 0;
    auto result = Detail::MapCodePoints<Traits, Alloc>(
        text, [](uint32_t codePoint) { return CaseMapping::ToUpper(codePoint); }, actual);
    ZAR_CHECK(PostCondition, actual <= size, "", ZAR_SOURCE_INFO_AT(Detail::kCaseSourceFile, 57));
    result.resize(actual);
    return result;
}

// Every code point through tolower.
template <class Traits, class Alloc = std::allocator<char>, class CaseMapping = CLocaleCase>
std::basic_string<char, Traits, Alloc> ToLower(std::basic_string_view<char, Traits> text)
{
    if (text.empty())
        return {};
    std::size_t const size = text.size();
    std::size_t actual = 0;
    auto result = Detail::MapCodePoints<Traits, Alloc>(
        text, [](uint32_t codePoint) { return CaseMapping::ToLower(codePoint); }, actual);
    ZAR_CHECK(PostCondition, actual <= size, "", ZAR_SOURCE_INFO_AT(Detail::kCaseSourceFile, 29));
    result.resize(actual);
    return result;
}

// The first code point and every code point after white space through toupper; all others unchanged,
// so an identifier already in mixed case keeps its inner capitals. Only white space starts a word: an
// underscore does not.
template <class Traits, class Alloc = std::allocator<char>, class CaseMapping = CLocaleCase>
std::basic_string<char, Traits, Alloc> ToCapital(std::basic_string_view<char, Traits> text)
{
    if (text.empty())
        return {};
    std::size_t const size = text.size();
    std::size_t actual = 0;
    bool startOfWord = true;
    auto capitalize = [&startOfWord](uint32_t codePoint) {
        if (CaseMapping::IsSpace(codePoint)) {
            startOfWord = true;
            return codePoint;
        }
        if (!startOfWord)
            return codePoint;
        startOfWord = false;
        return CaseMapping::ToUpper(codePoint);
    };
    auto result = Detail::MapCodePoints<Traits, Alloc>(text, capitalize, actual);
    ZAR_CHECK(PostCondition, actual <= size, "", ZAR_SOURCE_INFO_AT(Detail::kCaseSourceFile, 86));
    result.resize(actual);
    return result;
}

} // namespace Zar::Lt::Core
