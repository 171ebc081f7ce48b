#pragma once

#include "ILogger.h"
#include "INestedDiagnosticContext.h"

#include <memory>
#include <string>

namespace zar::logging {

// The plug of a logging back end into the registry, installed once at start-up.
class ILoggerFactory {
public:
    virtual ~ILoggerFactory() = default;

    // The logger of that name. The factory keeps loggers alive itself, because the registry also
    // hands out raw pointers to them.
    virtual std::shared_ptr<ILogger> GetLogger(std::string const& name) = 0;

    // The back end's diagnostic context, owned by the factory; may be null.
    virtual INestedDiagnosticContext* GetNDC() = 0;
};

} // namespace zar::logging
