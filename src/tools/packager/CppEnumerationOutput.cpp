#include "CppEnumerationOutput.h"

#include <cstdint>

namespace Zar::ResourcesLibrary::Tools {

void CppEnumerationOutput::WriteHeader()
{
    _stream << "#pragma once\n"
            << "#include <stdint.h>\n"
            << "\n"
            << "namespace Zar { namespace RemoteController { namespace Features {\n"
            << "    using " << _name << "Index = uint16_t;\n"
            << "}}}\n"
            << "\n"
            << "namespace Zar { namespace RemoteButtonsConfiguration {\n"
            << "\n"
            << "    using Zar::RemoteController::Features::" << _name << "Index;\n"
            << "\n"
            << "enum class " << _name << " : " << _name << "Index\n"
            << "{\n";
}

void CppEnumerationOutput::Write(int index, std::string_view const& name)
{
    std::string const cleanName = CleanName(name);
    _stream << "    ";
    _stream << EnumeratorName(cleanName);
    // Only the first enumerator carries a value; the compiler numbers the others from it.
    if (index == 0 && _first != 0)
        _stream << " = " << _first;
    _stream << ",\n";
}

void CppEnumerationOutput::WriteFooter(int count)
{
    std::string const index = _name + "Index";
    _stream << "};\n\nstruct " << _name << "s\n{\n";
    if (count != 0) {
        // Last is printed unsigned, so a negative first value shows as its 32-bit two's complement;
        // the sum is done in unsigned arithmetic so that it wraps instead of overflowing.
        uint32_t const last = static_cast<uint32_t>(count) + static_cast<uint32_t>(_first) - 1u;
        _stream << "    static constexpr " << index << " Last = static_cast<" << index << ">(" << last
                << ");\n";
    }
    _stream << "    static constexpr " << index << " First = static_cast<" << index << ">(" << _first
            << ");\n"
            << "    static constexpr " << index << " Count = " << count << ";\n"
            << "};\n"
            << "\n"
            << "inline bool operator==(" << index << " left, " << _name << " right)\n"
            << "{\n"
            << "    return left == static_cast<" << index << ">(right);\n"
            << "}\n"
            << "\n"
            << "inline bool operator==(" << _name << " left, " << index << " right)\n"
            << "{\n"
            << "    return static_cast<" << index << ">(left) == right;\n"
            << "}\n"
            << "}}\n";
}

} // namespace Zar::ResourcesLibrary::Tools
