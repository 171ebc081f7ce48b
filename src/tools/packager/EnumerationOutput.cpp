#include "EnumerationOutput.h"

#include "Zar/Lt/Core/StringExtension/Case.h"

#include <algorithm>

namespace Zar::ResourcesLibrary::Tools {

namespace {

// Names come from list.txt lines, so they may carry blanks and the carriage return of a DOS line end.
constexpr std::string_view kBlanks = " \t\r\n";

} // namespace

EnumerationOutput::EnumerationOutput(std::ostream& stream, EnumerationOption const& option)
    : _stream(stream)
    , _name(option.name)
    , _first(option.first)
    , _capitalize(option.capitalize)
    , _count(0)
{
}

EnumerationOutput::~EnumerationOutput() = default;

void EnumerationOutput::Write(Zar::Lt::Core::IStringReadOnlyCollection const& names, int offset)
{
    names.Enumerate(offset, [this](int index, std::string_view name) {
        Write(index, name);
        ++_count;
        return true;
    });
}

int EnumerationOutput::Count() const { return _count; }

std::string EnumerationOutput::CleanName(std::string_view name)
{
    auto const begin = name.find_first_not_of(kBlanks);
    if (begin == std::string_view::npos)
        return {};
    auto const end = name.find_last_not_of(kBlanks);
    std::string clean(name.substr(begin, end - begin + 1));
    std::replace(clean.begin(), clean.end(), '-', '_');
    return clean;
}

std::string EnumerationOutput::EnumeratorName(std::string_view cleanName) const
{
    if (!_capitalize)
        return std::string(cleanName);
    return Zar::Lt::Core::ToCapital(cleanName);
}

} // namespace Zar::ResourcesLibrary::Tools
