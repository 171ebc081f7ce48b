#include "PythonEnumerationOutput.h"

namespace Zar::ResourcesLibrary::Tools {

void PythonEnumerationOutput::WriteHeader()
{
    _stream << "from enum import IntEnum, auto, unique\n@unique\nclass " << _name << "(IntEnum):\n";
}

void PythonEnumerationOutput::Write(int index, std::string_view const& name)
{
    std::string const cleanName = CleanName(name);
    _stream << "    ";
    _stream << EnumeratorName(cleanName);
    if (index == 0 && _first != 0)
        _stream << " = " << _first;
    else
        _stream << " = auto()";
    _stream << "\n";
}

void PythonEnumerationOutput::WriteFooter(int count) { _stream << "\n#" << count << " " << _name << "(s)\n"; }

} // namespace Zar::ResourcesLibrary::Tools
