#include "LoggingManager.h"

#include <utility>

namespace zar::logging {

constinit LoggerManager LoggingManager::loggerManager_;

bool LoggingManager::SetFactory(std::unique_ptr<ILoggerFactory> factory)
{
    return loggerManager_.SetFactory(std::move(factory));
}

std::shared_ptr<ILogger> LoggingManager::GetLoggerSharedPtr(std::string const& name)
{
    return loggerManager_.GetLoggerSharedPtr(name);
}

ILogger* LoggingManager::GetLoggerPtr(std::string const& name) { return loggerManager_.GetLoggerPtr(name); }

ILogger& LoggingManager::GetLogger(std::string const& name) { return loggerManager_.GetLogger(name); }

INestedDiagnosticContext* LoggingManager::GetNDC() { return loggerManager_.GetNDC(); }

ILogger& GetLogger(std::string const& name) { return LoggingManager::GetLogger(name); }

} // namespace zar::logging
