#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace Zar::ResourcesLibrary::Tools::Inspect {

// The rules an image name meets once packager writes it into the generated sources: Icons.h and
// Screens.h declare it as an enumerator of a C++ enum class, Icons.py and Screens.py as a member of
// a Python IntEnum, commands.py as a member of an Enum that already holds the remote's fixed keys.
// Packager refuses only five characters; everything else is written as it comes, so a name that is
// no identifier in both languages leaves sources that do not compile.
class GeneratedName {
public:
    // packager reads at most this many characters of a list line.
    static constexpr std::size_t kMaxLength = 255;

    // A file's stem made into a candidate name: the characters packager refuses and white space become
    // '_'. The candidate may still have a problem (ListedNameProblem).
    static std::string FromStem(std::string_view stem);

    // Why a name written into a list cannot be used, as a sentence about it ("the name 2fast starts
    // with a digit"); nothing when packager reads it whole and its spelling compiles.
    static std::optional<std::string> ListedNameProblem(std::string_view name);

    // How the generated enumerations spell a name: trimmed of blanks and line ends, '-' made '_', and
    // the first letter of every word upper-case. Nothing when the name is not valid UTF-8, which the
    // writers refuse.
    static std::optional<std::string> Spelling(std::string_view name);

    // Why a spelling cannot be an enumerator in C++ and in Python; nothing when it can. Only ASCII
    // letters, digits and '_' are taken, since firmware toolchains differ on other characters.
    static std::optional<std::string> Problem(std::string_view spelling);

    // The spelling of the commands module's own members when it is one of them, which a command of
    // that spelling would define a second time.
    static bool IsCommandsKey(std::string_view spelling);

    static bool IsCppKeyword(std::string_view word);
    static bool IsPythonKeyword(std::string_view word);
    static bool IsStdintMacro(std::string_view word);

    static std::span<std::string_view const> CppKeywords();
    static std::span<std::string_view const> PythonKeywords();
    // INT8_MAX, UINT_FAST16_WIDTH, SIZE_MAX, ...: the object-like macros <stdint.h> defines.
    static std::span<std::string const> StdintMacros();
    // MENU, SHIFT, S3 to S8, CLEAR, ENTER, F1 to F10 and the class method from_name.
    static std::span<std::string_view const> CommandsKeys();
};

} // namespace Zar::ResourcesLibrary::Tools::Inspect
