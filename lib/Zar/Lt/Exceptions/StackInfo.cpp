#include "Zar/Lt/Exceptions/StackInfo.h"

#include <execinfo.h>

#include <cstdlib>
#include <memory>

namespace Zar::Lt::Exceptions {

namespace {

struct FreeDeleter
{
    void operator()(char** lines) const noexcept { std::free(lines); }
};

} // namespace

std::vector<std::string> StackInfo::Current(int skip, void* address)
{
    void* frames[MaxFrames];
    int const count = backtrace(frames, MaxFrames);
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

} // namespace Zar::Lt::Exceptions
