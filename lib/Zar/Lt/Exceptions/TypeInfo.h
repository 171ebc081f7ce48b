#pragma once

#include <string>

namespace Zar::Lt::Exceptions {

// Readable forms of the names the compiler mangles (types in exception reports, stack symbols).
class TypeInfo {
public:
    static std::string Demangle(char const* name);
    static std::string DemangleName(char const* name);
};

} // namespace Zar::Lt::Exceptions
