#include "GeneratedName.h"

#include "PackExporter.h"
#include "Zar/ResourcesLibrary/Image/InputSequence.h"

#include <algorithm>
#include <cctype>
#include <iterator>

namespace Zar::ResourcesLibrary::Tools::Inspect {

namespace {

constexpr std::string_view kCppKeywords[] = { "alignas", "alignof", "and", "and_eq", "asm", "atomic_cancel",
    "atomic_commit", "atomic_noexcept", "auto", "bitand", "bitor", "bool", "break", "case", "catch", "char",
    "char8_t", "char16_t", "char32_t", "class", "compl", "concept", "const", "consteval", "constexpr",
    "constinit", "const_cast", "continue", "co_await", "co_return", "co_yield", "decltype", "default",
    "delete", "do", "double", "dynamic_cast", "else", "enum", "explicit", "export", "extern", "false",
    "float", "for", "friend", "goto", "if", "inline", "int", "long", "mutable", "namespace", "new",
    "noexcept", "not", "not_eq", "nullptr", "operator", "or", "or_eq", "private", "protected", "public",
    "reflexpr", "register", "reinterpret_cast", "requires", "return", "short", "signed", "sizeof", "static",
    "static_assert", "static_cast", "struct", "switch", "synchronized", "template", "this", "thread_local",
    "throw", "true", "try", "typedef", "typeid", "typename", "union", "unsigned", "using", "virtual", "void",
    "volatile", "wchar_t", "while", "xor", "xor_eq" };

constexpr std::string_view kPythonKeywords[]
    = { "False", "None", "True", "and", "as", "assert", "async", "await", "break", "class", "continue", "def",
          "del", "elif", "else", "except", "finally", "for", "from", "global", "if", "import", "in", "is",
          "lambda", "nonlocal", "not", "or", "pass", "raise", "return", "try", "while", "with", "yield" };

bool IsReplaced(char c)
{
    std::string_view const forbidden = Zar::ResourcesLibrary::Tools::PackExporter::kForbiddenNameCharacters;
    std::string_view const white = Zar::ResourcesLibrary::Image::InputSequence::kWhiteSpace;
    return forbidden.find(c) != std::string_view::npos || white.find(c) != std::string_view::npos || c == '\v'
        || c == '\f';
}

bool IsIdentifierCharacter(char c)
{
    auto const byte = static_cast<unsigned char>(c);
    return std::isalnum(byte) != 0 || c == '_';
}

std::string Printable(char c)
{
    auto const byte = static_cast<unsigned char>(c);
    if (std::isprint(byte))
        return std::string("'") + c + "'";
    static char const digits[] = "0123456789ABCDEF";
    return std::string("the byte 0x") + digits[byte >> 4] + digits[byte & 0x0F];
}

} // namespace

std::string GeneratedName::FromStem(std::string_view stem)
{
    std::string name(stem);
    std::replace_if(name.begin(), name.end(), IsReplaced, '_');
    return name;
}

std::string GeneratedName::Capitalised(std::string_view name)
{
    std::string result(name);
    if (!result.empty())
        result[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(result[0])));
    return result;
}

bool GeneratedName::IsCppKeyword(std::string_view word)
{
    return std::find(std::begin(kCppKeywords), std::end(kCppKeywords), word) != std::end(kCppKeywords);
}

bool GeneratedName::IsPythonKeyword(std::string_view word)
{
    return std::find(std::begin(kPythonKeywords), std::end(kPythonKeywords), word)
        != std::end(kPythonKeywords);
}

std::string GeneratedName::Problem(std::string_view name)
{
    static std::string const fix = "; give another with --name or rename the file";
    if (name.empty())
        return "the name is empty" + fix;
    if (name.size() > kMaxLength)
        return "the name is " + std::to_string(name.size()) + " characters long, more than the "
            + std::to_string(kMaxLength) + " packager reads of a list line" + fix;
    if (std::isdigit(static_cast<unsigned char>(name.front())))
        return "the name " + std::string(name) + " starts with a digit, which C++ and Python names cannot"
            + fix;
    for (char const c : name)
        if (!IsIdentifierCharacter(c))
            return "the name " + std::string(name) + " holds " + Printable(c)
                + ", which C++ and Python names cannot" + fix;
    // The generated files write the name capitalised, so both spellings must be free.
    std::string const capitalised = Capitalised(name);
    for (std::string_view const word : { name, std::string_view(capitalised) }) {
        if (IsCppKeyword(word))
            return "the name " + std::string(name) + " is the C++ keyword " + std::string(word) + fix;
        if (IsPythonKeyword(word))
            return "the name " + std::string(name) + " is the Python keyword " + std::string(word) + fix;
    }
    return {};
}

} // namespace Zar::ResourcesLibrary::Tools::Inspect
