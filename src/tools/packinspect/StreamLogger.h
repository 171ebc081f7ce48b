#pragma once

#include "ILogger.h"

#include <iosfwd>
#include <string>

namespace Zar::ResourcesLibrary::Tools::Inspect {

// A logger that writes each record as one line to a stream (standard error for the tool): the
// logger's name, the level, the message and, when the record has one, its source place.
class StreamLogger : public zar::logging::ILogger {
public:
    StreamLogger(std::string name, std::ostream& out);

    void Log(int level, std::string const& message, char const* file, unsigned line) override;

private:
    std::string _name;
    std::ostream& _out;
};

} // namespace Zar::ResourcesLibrary::Tools::Inspect
