#include "Zar/Lt/Exceptions/TypeInfo.h"

#include <cxxabi.h>

#include <cstdlib>
#include <memory>

namespace Zar::Lt::Exceptions {

namespace {

struct FreeDeleter {
    void operator()(char* text) const noexcept { std::free(text); }
};

// The demangled text, or null when `name` is not a mangled name.
std::unique_ptr<char, FreeDeleter> DemangleOrNull(char const* name)
{
    int status = -1;
    std::unique_ptr<char, FreeDeleter> demangled(abi::__cxa_demangle(name, nullptr, nullptr, &status));
    if (status != 0)
        demangled.reset();
    return demangled;
}

} // namespace

std::string TypeInfo::Demangle(char const* name)
{
    auto demangled = DemangleOrNull(name);
    return demangled ? std::string(demangled.get()) : std::string(name);
}

std::string TypeInfo::DemangleName(char const* name)
{
    auto demangled = DemangleOrNull(name);
    if (!demangled)
        return std::string(name);
    std::string text(demangled.get());
    auto const colon = text.rfind(':');
    return colon == std::string::npos ? text : text.substr(colon + 1);
}

} // namespace Zar::Lt::Exceptions
