#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Zar::ResourcesLibrary::Tools::Inspect {

// The rules an image name follows so that packager accepts it and the C++ and Python it generates
// from the name compile: packager refuses a few characters and a list line loses white space at its
// ends, and the generated enumerators are the name with its first letter capitalised.
class GeneratedName {
public:
    // packager reads at most this many characters of a list line.
    static constexpr std::size_t kMaxLength = 255;

    // A file's stem made into a candidate name: the characters packager refuses and white space become
    // '_'. The candidate may still be refused by Problem.
    static std::string FromStem(std::string_view stem);

    // Why the name cannot be used, with what to do; empty when it can be used.
    static std::string Problem(std::string_view name);

    static bool IsCppKeyword(std::string_view word);
    static bool IsPythonKeyword(std::string_view word);

    // The enumerator the generated files write for the name: its first letter in capitals.
    static std::string Capitalised(std::string_view name);
};

} // namespace Zar::ResourcesLibrary::Tools::Inspect
