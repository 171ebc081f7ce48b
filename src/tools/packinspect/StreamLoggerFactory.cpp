#include "StreamLoggerFactory.h"

#include "StreamLogger.h"

namespace Zar::ResourcesLibrary::Tools::Inspect {

StreamLoggerFactory::StreamLoggerFactory(std::ostream& out)
    : _out(out)
{
}

std::shared_ptr<zar::logging::ILogger> StreamLoggerFactory::GetLogger(std::string const& name)
{
    auto& logger = _loggers[name];
    if (!logger)
        logger = std::make_shared<StreamLogger>(name, _out);
    return logger;
}

zar::logging::INestedDiagnosticContext* StreamLoggerFactory::GetNDC() { return nullptr; }

} // namespace Zar::ResourcesLibrary::Tools::Inspect
