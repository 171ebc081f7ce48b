#include "LoggerManager.h"

#include <iostream>
#include <stdexcept>
#include <utility>

namespace zar::logging {

LoggerManager::~LoggerManager() = default;

bool LoggerManager::SetFactory(std::unique_ptr<ILoggerFactory> factory)
{
    std::lock_guard lock(_mutex);
    if (_factoryUsed)
        return false;
    // The previous factory, if any, leaves with the argument at the end of this call.
    std::swap(_factory, factory);
    return true;
}

std::shared_ptr<ILogger> LoggerManager::GetLoggerSharedPtr(std::string const& name)
{
    std::lock_guard lock(_mutex);
    if (_factory) {
        _factoryUsed = true;
        return _factory->GetLogger(name);
    }
    if (_printWarnings)
        std::cerr << "WARNING: returned logger for " << name << " is nullptr while SetFactory is not called"
                  << std::endl;
    return nullptr;
}

ILogger* LoggerManager::GetLoggerPtr(std::string const& name) { return GetLoggerSharedPtr(name).get(); }

ILogger& LoggerManager::GetLogger(std::string const& name)
{
    ILogger* logger = GetLoggerPtr(name);
    if (logger == nullptr)
        throw std::runtime_error("You have created the logger " + name
            + " before calling SetFactory. This method is deprecrated: you should call GetLoggerPtr "
              "instead.");
    return *logger;
}

INestedDiagnosticContext* LoggerManager::GetNDC()
{
    std::lock_guard lock(_mutex);
    if (_factory)
        return _factory->GetNDC();
    if (_printWarnings)
        std::cerr << "WARNING: returned NDC is nullptr while SetFactory is not called" << std::endl;
    return nullptr;
}

void LoggerManager::PrintWarning()
{
    std::lock_guard lock(_mutex);
    _printWarnings = true;
}

} // namespace zar::logging
