#include "Command.h"

#include "CommandLine.h"
#include "PackArguments.h"
#include "TreeChecker.h"

#include "Zar/ResourcesLibrary/Pack/PackFormat.h"

#include <ostream>
#include <utility>

namespace Zar::ResourcesLibrary::Tools::Inspect {

using Zar::ResourcesLibrary::Pack::PackFormat;

OptionParser::Option const CommonOptions::kOutput { "output", 'o', true };
OptionParser::Option const CommonOptions::kForce { "force", 0, false };
OptionParser::Option const CommonOptions::kSector { "sector", 0, true };
OptionParser::Option const CommonOptions::kStrict { "strict", 0, false };
OptionParser::Option const CommonOptions::kGamma { "gamma", 0, true };
OptionParser::Option const CommonOptions::kGreyTable { "grey-table", 0, true };

std::optional<int32_t> CommonOptions::Sector(Invocation& invocation)
{
    std::string const text
        = invocation.Options().Value(kSector._long).value_or(std::to_string(PackFormat::kDefaultFirstSector));
    auto const sector = TreeChecker::ParseSector(text);
    if (!sector)
        invocation.UsageError("the sector '" + text + "' is not a number from 0 up");
    return sector;
}

std::string Command::HelpText(std::string text)
{
    std::pair<std::string_view, std::string> const fillIns[] = {
        { "{sector size}", std::to_string(PackFormat::kSectorSize) },
        { "{store sectors}", std::to_string(PackFormat::kStoreSectors) },
        { "{first screen sector}", std::to_string(PackFormat::kFirstScreenSector) },
        { "{names capacity}", std::to_string(PackFormat::kNamesCapacity) },
        { "{icons per sector}", std::to_string(PackFormat::kIconsPerMappedSector) },
        { "{default sector}", std::to_string(PackFormat::kDefaultFirstSector) },
        { "{size options}", PackArguments::SizeOptionsHelp() },
    };
    for (auto const& [placeholder, value] : fillIns) {
        for (auto at = text.find(placeholder); at != std::string::npos;
             at = text.find(placeholder, at + value.size()))
            text.replace(at, placeholder.size(), value);
    }
    return text;
}

Invocation::Invocation(
    Command const& command, OptionParser const& options, std::ostream& out, std::ostream& err)
    : _command(command)
    , _options(options)
    , _out(out)
    , _err(err)
{
}

int Invocation::UsageError(std::string const& message)
{
    return CommandLine::UsageError(_err, "packinspect " + std::string(_command._name), message);
}

std::optional<std::string> Invocation::RequiredValue(
    OptionParser::Option const& option, std::string const& missing)
{
    auto value = _options.Value(option._long);
    if (!value || value->empty()) {
        UsageError(missing);
        return std::nullopt;
    }
    return value;
}

int Invocation::Problem(std::string const& message, ExitStatus status)
{
    _err << "packinspect " << _command._name << ": " << message << '\n';
    return status;
}

} // namespace Zar::ResourcesLibrary::Tools::Inspect
