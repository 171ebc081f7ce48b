#include "StreamLogger.h"

#include <ostream>

namespace Zar::ResourcesLibrary::Tools::Inspect {

StreamLogger::StreamLogger(std::string name, std::ostream& out)
    : _name(std::move(name))
    , _out(out)
{
}

void StreamLogger::Log(int level, std::string const& message, char const* file, unsigned line)
{
    _out << _name << " [" << level << "] " << message;
    if (file && *file)
        _out << " (" << file << ':' << line << ')';
    _out << std::endl;
}

} // namespace Zar::ResourcesLibrary::Tools::Inspect
