#pragma once

#include "ILogger.h"
#include "ILoggerFactory.h"
#include "INestedDiagnosticContext.h"
#include "LoggerManager.h"

#include <memory>
#include <string>

namespace zar::logging {

// The process-wide registry: static functions over one LoggerManager that lives from static
// initialisation to exit.
class LoggingManager {
public:
    LoggingManager() = delete;

    static bool SetFactory(std::unique_ptr<ILoggerFactory> factory);
    static std::shared_ptr<ILogger> GetLoggerSharedPtr(std::string const& name);
    static ILogger* GetLoggerPtr(std::string const& name);
    // Deprecated: prefer GetLoggerPtr, which returns null instead of throwing.
    static ILogger& GetLogger(std::string const& name);
    static INestedDiagnosticContext* GetNDC();

private:
    static LoggerManager loggerManager_;
};

// Same as LoggingManager::GetLogger (deprecated).
ILogger& GetLogger(std::string const& name);

} // namespace zar::logging
