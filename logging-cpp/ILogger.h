#pragma once

#include <string>

namespace zar::logging {

// What every logging back end offers to the code that logs. The back end itself is not part of
// this system; it is plugged in through an ILoggerFactory.
class ILogger {
public:
    virtual ~ILogger() = default;

    // Writes one record. `file` may be null and `line` 0 when the record has no place in the source.
    virtual void Log(int level, std::string const& message, char const* file, unsigned line) = 0;
};

} // namespace zar::logging
