#include "PythonCommandsOutput.h"

#include "SelectedVariantName.h"

#include "Zar/Lt/Core/StringExtension/Case.h"

#include <string>

namespace Zar::ResourcesLibrary::Tools {

namespace {

// The remote controller's ten fixed keys, in key order: Menu, Shift, S3 to S8, Clear, Enter.
std::string KeyText(int key)
{
    switch (key) {
    case 0:
        return "Menu";
    case 1:
        return "Shift";
    case 8:
        return "Clear";
    case 9:
        return "Enter";
    default: {
        // Appended rather than concatenated: GCC 12 at -O3 reports a false -Wrestrict on the latter.
        std::string text = "S";
        text += std::to_string(key + 1);
        return text;
    }
    }
}

} // namespace

void PythonCommandsOutput::WriteHeader()
{
    // Only the module enum is imported, yet the class is decorated with a bare @unique. The test
    // scripts are written against this exact text, so it is kept as it is rather than corrected.
    _stream << "import enum\nfrom software.remote.exception.command_not_found_exception import "
               "CommandNotFoundException\n@unique\nclass Commands(enum.Enum):\n";
    for (int key = 0; key < 10; ++key) {
        std::string const text = KeyText(key);
        _stream << "    ";
        _stream << Zar::Lt::Core::ToUpper(std::string_view(text));
        _stream << " = '" << text << "'\n";
    }
    for (int function = 1; function <= 10; ++function)
        _stream << "    F" << function << " = 'F" << function << "'\n";
}

void PythonCommandsOutput::Write(int /*index*/, std::string_view const& name)
{
    // Both tests look at the name as received, before trimming.
    if (name == "empty" || SelectedVariantName::Matches(name))
        return;
    std::string const cleanName = CleanName(name);
    _stream << "    ";
    _stream << EnumeratorName(cleanName);
    _stream << " = '" << cleanName << "'\n";
}

void PythonCommandsOutput::WriteFooter(int /*count*/)
{
    _stream << "\n    @classmethod\n    def from_name(cls, command):\n"
               "        for property_name, member in Commands.__members__.items():\n"
               "            if property_name == command.upper():\n"
               "                return member\n"
               "        raise CommandNotFoundException(command)\n";
}

} // namespace Zar::ResourcesLibrary::Tools
