#include "HelperEnumerationOutput.h"

namespace Zar::ResourcesLibrary::Tools {

void HelperEnumerationOutput::WriteHeader()
{
    // The firmware's header is named after the singular (IconHelper.h) while its class and this file
    // take the plural (IconsHelper); both names are the firmware's own.
    _stream << "#include \"" << _name << "Helper.h\"\n"
            << "using namespace Zar::RemoteController::Features;\n"
            << "\n"
            << "//same order as " << _name << " enumeration\n"
            << "const char* " << _name << "sHelper::GetString(uint32_t value)\n"
            << "{\n"
            << "    static const char* names[] = {\n";
}

void HelperEnumerationOutput::Write(int /*index*/, std::string_view const& name)
{
    std::string const cleanName = CleanName(name);
    _stream << "        \"";
    _stream << EnumeratorName(cleanName);
    _stream << "\",\n";
}

void HelperEnumerationOutput::WriteFooter(int /*count*/)
{
    // No range check: the firmware only passes values of the enumeration.
    _stream << "    };\n"
               "    return names[value];\n"
               "}\n";
}

} // namespace Zar::ResourcesLibrary::Tools
