#pragma once

#include "ILogger.h"
#include "ILoggerFactory.h"
#include "INestedDiagnosticContext.h"

#include <memory>
#include <mutex>
#include <string>

namespace zar::logging {

// The registry of named loggers. It starts without a factory, so every request yields no logger.
// A factory may be installed and replaced until the first logger has been obtained from it; from
// then on it is fixed, because handed-out raw pointers to its loggers must stay valid.
class LoggerManager {
public:
    // Constant initialisation lets a static registry be used by other static initialisers safely.
    constexpr LoggerManager() noexcept = default;
    virtual ~LoggerManager();

    LoggerManager(LoggerManager const&) = delete;
    LoggerManager& operator=(LoggerManager const&) = delete;

    // True when the factory was installed; false once a logger has been handed out.
    bool SetFactory(std::unique_ptr<ILoggerFactory> factory);
    std::shared_ptr<ILogger> GetLoggerSharedPtr(std::string const& name);
    // The logger stays owned by the factory; null without a factory.
    ILogger* GetLoggerPtr(std::string const& name);
    // Deprecated: throws std::runtime_error instead of returning no logger.
    ILogger& GetLogger(std::string const& name);
    INestedDiagnosticContext* GetNDC();
    // Makes requests without a factory warn on standard error from now on.
    void PrintWarning();

private:
    std::mutex _mutex;
    std::unique_ptr<ILoggerFactory> _factory;
    bool _factoryUsed = false;
    bool _printWarnings = false;
};

} // namespace zar::logging
