// Runs the three case conversions on arbitrary bytes. Only the failures the functions document may
// come out (utfcpp's invalid UTF-8, missing bytes and invalid code point, and the size
// postcondition); a result must be the input with only the ASCII letters changed, since the
// mapping is the C locale's.

#include "FuzzCheck.h"

#include "Zar/Lt/Core/StringExtension/Case.h"
#include "Zar/Lt/Exceptions/PostCondition.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace {

using Convert = std::string (*)(std::string_view);

bool IsAsciiLower(char c) { return c >= 'a' && c <= 'z'; }

bool IsAsciiUpper(char c) { return c >= 'A' && c <= 'Z'; }

bool IsCSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

// What each byte may become: the C locale changes ASCII letters only, and multi-byte sequences pass
// unchanged.
char Upper(char c) { return IsAsciiLower(c) ? static_cast<char>(c - 'a' + 'A') : c; }

char Lower(char c) { return IsAsciiUpper(c) ? static_cast<char>(c - 'A' + 'a') : c; }

std::string Expected(std::string_view text, char (*map)(char), bool capitalOnly)
{
    std::string result(text);
    bool atWordStart = true;
    for (char& c : result) {
        if (!capitalOnly)
            c = map(c);
        else if (IsCSpace(c))
            atWordStart = true;
        else if (atWordStart) {
            // The first byte of a word's first code point; a multi-byte one is left as it is.
            c = map(c);
            atWordStart = false;
        }
    }
    return result;
}

template <typename Function>
void CheckConversion(Function convert, std::string_view text, std::string const& expected)
{
    try {
        std::string const result = convert(text);
        ZAR_FUZZ_CHECK(result == expected);
    } catch (utf8::invalid_utf8 const&) {
    } catch (utf8::not_enough_room const&) {
    } catch (utf8::invalid_code_point const&) {
    } catch (Zar::Lt::Exceptions::PostCondition const& e) {
        ZAR_FUZZ_CHECK(std::strcmp(e.what(), "PostCondition actual <= size") == 0);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size)
{
    ZarFuzz::ExactCopy const input(data, size);
    std::string_view const text = input.View();
    using Zar::Lt::Core::ToCapital;
    using Zar::Lt::Core::ToLower;
    using Zar::Lt::Core::ToUpper;
    CheckConversion([](std::string_view t) { return ToUpper(t); }, text, Expected(text, Upper, false));
    CheckConversion([](std::string_view t) { return ToLower(t); }, text, Expected(text, Lower, false));
    CheckConversion([](std::string_view t) { return ToCapital(t); }, text, Expected(text, Upper, true));
    return 0;
}
