#pragma once

// How the system raises its failures:
//
//   ZAR_PRECONDITION(bpp == 4);                    // throws PreCondition "PreCondition bpp == 4"
//   ZAR_POSTCONDITION(actual <= size);             // throws PostCondition "PostCondition actual <= size"
//   ZAR_CHECK(PostCondition, !_screensCount, "Cannot add icons after screens", ZAR_SOURCE_INFO());
//   ZAR_CHECK(PreCondition, x >= 0, "", ZAR_SOURCE_INFO_OF(kGetBytesFunction, ZAR_SOURCE_FILE, 97));
//   throw ResourcesLibraryException(ZAR_SOURCE_INFO(), "Cannot open " + path);
//
// The function text is the compiler's pretty signature; the file is the source path relative to the
// repository root without its extension (the build maps the root away with -fmacro-prefix-map), and
// the line is the real one unless a fixed place is given with ZAR_SOURCE_INFO_AT.
//
// Compilers spell signatures differently (GCC writes "const char*" and "{anonymous}", Clang
// "const char *" and "(anonymous namespace)", and Clang expands member typedefs). Where a failure's
// function text is part of what the tool promises, ZAR_SOURCE_INFO_OF gives it as a fixed text so
// that it reads the same whatever compiled the tool.

#include "Zar/Lt/Exceptions/PostCondition.h"
#include "Zar/Lt/Exceptions/PreCondition.h"
#include "Zar/Lt/Exceptions/SourceInfo.h"

#include <cstddef>
#include <string>

namespace Zar::Lt::Exceptions::Detail {

// A source path held in static storage with its extension removed, computed at compile time.
template <std::size_t N> struct SourcePath {
    char text[N] {};

    constexpr SourcePath(char const (&path)[N])
    {
        std::size_t end = N - 1;
        for (std::size_t i = N - 1; i > 0; --i) {
            if (path[i - 1] == '/')
                break;
            if (path[i - 1] == '.') {
                end = i - 1;
                break;
            }
        }
        for (std::size_t i = 0; i < end; ++i)
            text[i] = path[i];
    }
};

template <SourcePath Path> inline constexpr auto kSourcePath = Path;

// "PreCondition" + " " + condition text, and " " + detail when there is one.
inline std::string CheckMessage(char const* word, char const* condition, std::string const& detail)
{
    std::string message = std::string(word) + " " + condition;
    if (!detail.empty())
        message += " " + detail;
    return message;
}

} // namespace Zar::Lt::Exceptions::Detail

#define ZAR_SOURCE_FILE (::Zar::Lt::Exceptions::Detail::kSourcePath<__FILE__>.text)

#define ZAR_SOURCE_INFO()                                                                                    \
    (::Zar::Lt::Exceptions::SourceInfo { __PRETTY_FUNCTION__, ZAR_SOURCE_FILE, __LINE__ })

#define ZAR_SOURCE_INFO_AT(file, line) (::Zar::Lt::Exceptions::SourceInfo { __PRETTY_FUNCTION__, file, line })

// This file, at a fixed line.
#define ZAR_SOURCE_INFO_LINE(line) ZAR_SOURCE_INFO_AT(ZAR_SOURCE_FILE, line)

#define ZAR_SOURCE_INFO_OF(function, file, line) (::Zar::Lt::Exceptions::SourceInfo { function, file, line })

#define ZAR_CHECK(Kind, condition, detail, source)                                                           \
    do {                                                                                                     \
        if (!(condition))                                                                                    \
            throw ::Zar::Lt::Exceptions::Kind(                                                               \
                source, ::Zar::Lt::Exceptions::Detail::CheckMessage(#Kind, #condition, detail));             \
    } while (false)

#define ZAR_PRECONDITION(condition) ZAR_CHECK(PreCondition, condition, "", ZAR_SOURCE_INFO())
#define ZAR_POSTCONDITION(condition) ZAR_CHECK(PostCondition, condition, "", ZAR_SOURCE_INFO())
