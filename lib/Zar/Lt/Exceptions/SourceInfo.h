#pragma once

#include <cstdint>

namespace Zar::Lt::Exceptions {

// Where an exception was raised. The strings are static (string literals or __PRETTY_FUNCTION__),
// so the record is a plain value that never owns them.
struct SourceInfo {
    char const* _function = nullptr;
    char const* _file = nullptr;
    uint32_t _line = 0;
};

} // namespace Zar::Lt::Exceptions
