#pragma once

#include "ILogger.h"

#include <string>

namespace Zar::Lt::Logging {

// The core library's door to the process-wide logger registry of the logging facade.
class LoggingManager {
public:
    LoggingManager() = delete;

    // The named logger, or null while no logging back end is installed.
    static zar::logging::ILogger* GetLoggerPtr(std::string const& name);
};

} // namespace Zar::Lt::Logging
