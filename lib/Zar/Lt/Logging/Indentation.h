#pragma once

#include <string_view>

namespace Zar::Lt::Logging {

// Leading blanks of log lines. Indentation is taken from one fixed string, so it is bounded: a
// deeply nested cause is written at the deepest indentation instead of ever wider.
class Indentation {
public:
    static constexpr std::string_view _spaces
        = "                                                                ";
    static_assert(_spaces.size() == 64);

    // The last `count` blanks of _spaces: none for a negative count, at most 64.
    static std::string_view Of(int count);
};

} // namespace Zar::Lt::Logging
