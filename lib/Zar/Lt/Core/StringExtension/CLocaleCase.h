#pragma once

#include <cstdint>

namespace Zar::Lt::Core {

// The C library's single-character case functions as they behave in the C locale, whatever locale
// the process may have set: generated identifiers must not change with the environment of the build.
// Only the ASCII letters change case and only the six ASCII white-space characters are white space;
// every other code point, including 128 to 255 and everything from 256 on, passes unchanged and is
// not white space.
struct CLocaleCase {
    static constexpr uint32_t ToUpper(uint32_t codePoint)
    {
        return codePoint >= 'a' && codePoint <= 'z' ? codePoint - 'a' + 'A' : codePoint;
    }

    static constexpr uint32_t ToLower(uint32_t codePoint)
    {
        return codePoint >= 'A' && codePoint <= 'Z' ? codePoint - 'A' + 'a' : codePoint;
    }

    static constexpr bool IsSpace(uint32_t codePoint)
    {
        return codePoint == ' ' || (codePoint >= '\t' && codePoint <= '\r');
    }
};

} // namespace Zar::Lt::Core
