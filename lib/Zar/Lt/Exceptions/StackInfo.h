#pragma once

#include "Zar/Lt/Exceptions/Symbol.h"

#include <string>
#include <string_view>
#include <vector>

namespace Zar::Lt::Exceptions {

// Captures the call stack as the text lines of backtrace_symbols and turns them into symbols.
class StackInfo {
public:
    static constexpr int DefaultSkip = 0;
    static constexpr int kMaxFrames = 30;

    static std::vector<std::string> Current(int skip, void* address);
    static std::vector<std::string> Get(std::string const& text);
    static std::vector<Symbol> Symbols(std::vector<std::string> const& frames, int skip);
    static int Callee(std::string_view function, std::vector<std::string> const& frames);
    static Symbol Callee(char const* function);
    static Symbol Callee(std::string const& function);
};

} // namespace Zar::Lt::Exceptions
