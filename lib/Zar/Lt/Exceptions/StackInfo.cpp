#include "Zar/Lt/Exceptions/StackInfo.h"

#include "Zar/Lt/Exceptions/Check.h"

#include <execinfo.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <utility>

namespace Zar::Lt::Exceptions {

namespace {

// AddressSanitizer intercepts backtrace, and the interceptor's own frame comes first in what it
// returns. That frame is captured on top and dropped, so that a sanitizer build sees the same stack
// as a normal one: this function's frame first, and at most MaxFrames frames.
#if defined(__SANITIZE_ADDRESS__)
constexpr int kInterceptorFrames = 1;
#else
constexpr int kInterceptorFrames = 0;
#endif

struct FreeDeleter {
    void operator()(char** lines) const noexcept { std::free(lines); }
};

} // namespace

std::vector<std::string> StackInfo::Current(int skip, void* address)
{
    void* captured[kMaxFrames + kInterceptorFrames];
    int const capturedCount = backtrace(captured, kMaxFrames + kInterceptorFrames);
    int const dropped = std::min(capturedCount, kInterceptorFrames);
    void** const frames = captured + dropped;
    int const count = capturedCount - dropped;
    if (skip < 0 || skip >= count)
        return {};
    if (address != nullptr)
        frames[skip] = address;
    std::unique_ptr<char*, FreeDeleter> lines(backtrace_symbols(frames + skip, count - skip));
    if (!lines)
        return {};
    return std::vector<std::string>(lines.get(), lines.get() + (count - skip));
}

std::vector<std::string> StackInfo::Get(std::string const& text)
{
    std::vector<std::string> lines;
    std::string::size_type start = 0;
    for (auto end = text.find('\n'); end != std::string::npos; end = text.find('\n', start)) {
        lines.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    if (start < text.size())
        lines.push_back(text.substr(start));
    return lines;
}

std::vector<Symbol> StackInfo::Symbols(std::vector<std::string> const& frames, int skip)
{
    ZAR_PRECONDITION(skip >= 0);
    std::vector<Symbol> symbols;
    // A skip beyond the end wraps to a count that reserve refuses with std::length_error.
    symbols.reserve(frames.size() - static_cast<std::size_t>(skip));
    for (auto frame = frames.begin() + skip; frame != frames.end(); ++frame)
        symbols.emplace_back(*frame);
    return symbols;
}

int StackInfo::Callee(std::string_view function, std::vector<std::string> const& frames)
{
    for (std::size_t position = 0; position < frames.size(); ++position) {
        Symbol const symbol(frames[position]);
        if (symbol.Name() == function || symbol.FullPath() == function)
            return static_cast<int>(position) + 1;
    }
    return -1;
}

Symbol StackInfo::Callee(char const* function)
{
    auto frames = Current(1, nullptr);
    int const position
        = Callee(function == nullptr ? std::string_view() : std::string_view(function), frames);
    Symbol caller;
    // No match, or a match in the outermost captured frame, leaves no calling frame to describe.
    if (position < 0 || static_cast<std::size_t>(position) >= frames.size())
        return caller;
    // The frame list dies with this call, so the symbol keeps its own copy of the line.
    caller.FillOwned(std::move(frames[static_cast<std::size_t>(position)]));
    return caller;
}

Symbol StackInfo::Callee(std::string const& function) { return Callee(function.c_str()); }

} // namespace Zar::Lt::Exceptions
