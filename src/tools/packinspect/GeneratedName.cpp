#include "GeneratedName.h"

#include "EnumerationOutput.h"
#include "PackExporter.h"

#include "Zar/ResourcesLibrary/Image/InputSequence.h"

#include "Zar/Lt/Core/StringExtension/Case.h"

#include <algorithm>
#include <array>
#include <exception>
#include <string>
#include <vector>

namespace Zar::ResourcesLibrary::Tools::Inspect {

namespace {

constexpr std::array<std::string_view, 92> kCppKeywords { "alignas", "alignof", "and", "and_eq", "asm",
    "auto", "bitand", "bitor", "bool", "break", "case", "catch", "char", "char8_t", "char16_t", "char32_t",
    "class", "compl", "concept", "const", "consteval", "constexpr", "constinit", "const_cast", "continue",
    "co_await", "co_return", "co_yield", "decltype", "default", "delete", "do", "double", "dynamic_cast",
    "else", "enum", "explicit", "export", "extern", "false", "float", "for", "friend", "goto", "if", "inline",
    "int", "long", "mutable", "namespace", "new", "noexcept", "not", "not_eq", "nullptr", "operator", "or",
    "or_eq", "private", "protected", "public", "register", "reinterpret_cast", "requires", "return", "short",
    "signed", "sizeof", "static", "static_assert", "static_cast", "struct", "switch", "template", "this",
    "thread_local", "throw", "true", "try", "typedef", "typeid", "typename", "union", "unsigned", "using",
    "virtual", "void", "volatile", "wchar_t", "while", "xor", "xor_eq" };

constexpr std::array<std::string_view, 35> kPythonKeywords { "False", "None", "True", "and", "as", "assert",
    "async", "await", "break", "class", "continue", "def", "del", "elif", "else", "except", "finally", "for",
    "from", "global", "if", "import", "in", "is", "lambda", "nonlocal", "not", "or", "pass", "raise",
    "return", "try", "while", "with", "yield" };

constexpr std::array<std::string_view, 21> kCommandsKeys { "MENU", "SHIFT", "S3", "S4", "S5", "S6", "S7",
    "S8", "CLEAR", "ENTER", "F1", "F2", "F3", "F4", "F5", "F6", "F7", "F8", "F9", "F10", "from_name" };

// The object-like macros of <stdint.h>, which the generated headers include: an enumerator spelled as
// one of them is replaced by a number before the compiler sees it.
std::vector<std::string> MakeStdintMacros()
{
    std::vector<std::string> macros;
    std::vector<std::string> kinds;
    for (char const* bits : { "8", "16", "32", "64" })
        for (char const* width : { "", "_LEAST", "_FAST" })
            kinds.push_back(std::string("INT") + width + bits);
    kinds.insert(kinds.end(), { "INTPTR", "INTMAX" });
    for (auto const& kind : kinds)
        for (char const* limit : { "_MIN", "_MAX", "_WIDTH" }) {
            macros.push_back(kind + limit);
            if (std::string_view(limit) != "_MIN")
                macros.push_back("U" + kind + limit);
        }
    for (char const* kind : { "PTRDIFF", "SIG_ATOMIC", "WCHAR", "WINT", "SIZE" })
        for (char const* limit : { "_MIN", "_MAX", "_WIDTH" })
            if (std::string_view(kind) != "SIZE" || std::string_view(limit) != "_MIN")
                macros.push_back(std::string(kind) + limit);
    return macros;
}

bool Holds(std::span<std::string_view const> words, std::string_view word)
{
    return std::find(words.begin(), words.end(), word) != words.end();
}

bool IsAsciiLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }
bool IsAsciiDigit(char c) { return c >= '0' && c <= '9'; }

std::string Shown(char c)
{
    if (c == ' ')
        return "a space";
    if (c == '\t')
        return "a tab";
    auto const byte = static_cast<unsigned char>(c);
    if (byte < 0x20 || byte >= 0x7F) {
        static constexpr char kHex[] = "0123456789ABCDEF";
        return std::string("the byte 0x") + kHex[byte >> 4] + kHex[byte & 0x0F];
    }
    return std::string("'") + c + "'";
}

// What FromStem replaces: what packager refuses in a name and the white space a list line loses.
bool IsReplacedInAStem(char c)
{
    std::string_view const forbidden = PackExporter::kForbiddenNameCharacters;
    std::string_view const white = Zar::ResourcesLibrary::Image::InputSequence::kWhiteSpace;
    return forbidden.find(c) != std::string_view::npos || white.find(c) != std::string_view::npos || c == '\v'
        || c == '\f';
}

} // namespace

std::string GeneratedName::FromStem(std::string_view stem)
{
    std::string name(stem);
    std::replace_if(name.begin(), name.end(), IsReplacedInAStem, '_');
    return name;
}

std::optional<std::string> GeneratedName::ListedNameProblem(std::string_view name)
{
    if (name.empty())
        return "the name is empty";
    if (name.size() > kMaxLength)
        return "the name is " + std::to_string(name.size()) + " characters long, more than the "
            + std::to_string(kMaxLength) + " packager reads of a list line";
    auto const spelling = Spelling(name);
    if (!spelling)
        return "the name " + std::string(name) + " is not valid UTF-8";
    auto const problem = Problem(*spelling);
    if (!problem)
        return std::nullopt;
    if (*spelling == name)
        return "the name " + std::string(name) + " " + *problem;
    return "the name " + std::string(name) + ", " + *spelling + " in the generated sources, " + *problem;
}

std::optional<std::string> GeneratedName::Spelling(std::string_view name)
{
    std::string const clean = EnumerationOutput::CleanName(name);
    try {
        return Zar::Lt::Core::ToCapital(std::string_view(clean));
    } catch (std::exception const&) {
        return std::nullopt;
    }
}

std::optional<std::string> GeneratedName::Problem(std::string_view spelling)
{
    if (spelling.empty())
        return "is empty";
    if (IsAsciiDigit(spelling.front()))
        return "starts with a digit";
    auto const bad = std::find_if(spelling.begin(), spelling.end(),
        [](char c) { return !IsAsciiLetter(c) && !IsAsciiDigit(c) && c != '_'; });
    if (bad != spelling.end())
        return "holds " + Shown(*bad) + ", which an identifier cannot";
    if (IsCppKeyword(spelling))
        return "is a C++ keyword";
    if (IsPythonKeyword(spelling))
        return "is a Python keyword";
    if (IsStdintMacro(spelling))
        return "is a macro of <stdint.h>, which the generated headers include, so it becomes a number";
    if (spelling.find("__") != std::string_view::npos
        || (spelling.size() > 1 && spelling[0] == '_' && spelling[1] >= 'A' && spelling[1] <= 'Z'))
        return "is reserved to the C++ implementation (a double '_', or '_' and a capital letter)";
    if (spelling.size() > 1 && spelling.front() == '_' && spelling.back() == '_')
        return "is a name Python's enumerations keep for themselves ('_' at both ends)";
    return std::nullopt;
}

bool GeneratedName::IsCommandsKey(std::string_view spelling) { return Holds(CommandsKeys(), spelling); }

bool GeneratedName::IsCppKeyword(std::string_view word) { return Holds(CppKeywords(), word); }

bool GeneratedName::IsPythonKeyword(std::string_view word) { return Holds(PythonKeywords(), word); }

bool GeneratedName::IsStdintMacro(std::string_view word)
{
    auto const& macros = StdintMacros();
    return std::find(macros.begin(), macros.end(), word) != macros.end();
}

std::span<std::string const> GeneratedName::StdintMacros()
{
    static std::vector<std::string> const macros = MakeStdintMacros();
    return macros;
}

std::span<std::string_view const> GeneratedName::CppKeywords() { return kCppKeywords; }

std::span<std::string_view const> GeneratedName::PythonKeywords() { return kPythonKeywords; }

std::span<std::string_view const> GeneratedName::CommandsKeys() { return kCommandsKeys; }

} // namespace Zar::ResourcesLibrary::Tools::Inspect
