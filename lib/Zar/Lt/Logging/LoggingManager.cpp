#include "Zar/Lt/Logging/LoggingManager.h"

// The facade's header has the same file name as this class's; the angle brackets skip this folder
// and look only in the include roots, where the facade's folder is one.
#include <LoggingManager.h>

namespace Zar::Lt::Logging {

zar::logging::ILogger* LoggingManager::GetLoggerPtr(std::string const& name)
{
    return zar::logging::LoggingManager::GetLoggerPtr(name);
}

} // namespace Zar::Lt::Logging
