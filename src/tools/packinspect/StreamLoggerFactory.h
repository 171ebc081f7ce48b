#pragma once

#include "ILoggerFactory.h"

#include <iosfwd>
#include <map>
#include <memory>
#include <string>

namespace Zar::ResourcesLibrary::Tools::Inspect {

// Hands out one StreamLogger per name, all writing to the same stream. The factory keeps them, since
// the registry also gives out raw pointers.
class StreamLoggerFactory : public zar::logging::ILoggerFactory {
public:
    explicit StreamLoggerFactory(std::ostream& out);

    std::shared_ptr<zar::logging::ILogger> GetLogger(std::string const& name) override;
    // This back end has no diagnostic context.
    zar::logging::INestedDiagnosticContext* GetNDC() override;

private:
    std::ostream& _out;
    std::map<std::string, std::shared_ptr<zar::logging::ILogger>> _loggers;
};

} // namespace Zar::ResourcesLibrary::Tools::Inspect
