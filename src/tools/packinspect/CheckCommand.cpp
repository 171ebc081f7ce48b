// packinspect check: a bmp tree packed as packager would pack it, and every image that would fail.

#include "Command.h"
#include "StreamLoggerFactory.h"
#include "TreeChecker.h"

#include "LoggingManager.h"

#include "Zar/ResourcesLibrary/Pack/PackFormat.h"

#include <charconv>
#include <iostream>
#include <optional>

namespace Zar::ResourcesLibrary::Tools::Inspect {

namespace {

OptionParser::Option const kSectorOption { "sector", 0, true };
OptionParser::Option const kVerboseOption { "verbose", 'v', false };

std::string Help()
{
    return Command::HelpText(
        "Usage: packinspect check [OPTION]... [ROOT]\n"
        "Pack the bmp tree ROOT (default bmp/: ROOT/icons/list.txt and\n"
        "ROOT/screens/list.txt) with packager's own loading and packing code into a\n"
        "scratch folder, and report every image that would fail, with its index (as\n"
        "packager numbers it: 2 for the first line of a list), name, file and reason.\n"
        "Also warns where a 4-bit BMP's palette is neither the ascending nor the\n"
        "descending 16-level grey ramp, where the names area or the sector space would\n"
        "overflow, and where two list lines name the same image. Caught exceptions are\n"
        "logged to standard error.\n"
        "\n"
        "      --sector=N  first icon sector, as given to packager (default {default sector})\n"
        "  -v, --verbose   log the call stack of every caught exception as well\n"
        "  -h, --help      show this help and exit\n"
        "\n"
        "Exit status: 0 if no image fails, 1 if any fails, 2 if the command line is wrong.\n");
}

// A whole decimal number from 0 up that fits the packager's int.
std::optional<int32_t> ParseSector(std::string const& text)
{
    int32_t sector = 0;
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), sector);
    if (text.empty() || error != std::errc() || end != text.data() + text.size() || sector < 0)
        return std::nullopt;
    return sector;
}

int Run(Invocation& invocation)
{
    if (invocation.Operands().size() > 1)
        return invocation.UsageError("one bmp folder at most");
    std::string const root = invocation.Operands().empty() ? "bmp/" : invocation.Operands()[0];
    std::string const sectorText = invocation.Options()
                                       .Value(kSectorOption._long)
                                       .value_or(std::to_string(Pack::PackFormat::kDefaultFirstSector));
    auto const sector = ParseSector(sectorText);
    if (!sector)
        return invocation.UsageError("the sector '" + sectorText + "' is not a number from 0 up");

    // The registry is process-wide, so its logger writes to the process's standard error.
    zar::logging::LoggingManager::SetFactory(std::make_unique<StreamLoggerFactory>(std::cerr));
    TreeChecker checker(root, *sector, zar::logging::LoggingManager::GetLoggerPtr("packinspect"),
        invocation.Options().Has(kVerboseOption._long));
    checker.Run();
    checker.Print(invocation.Out());
    return checker.FailureCount() == 0 ? kFine : kProblemsFound;
}

} // namespace

Command const& CheckCommand()
{
    static Command const command { "check", "check [ROOT]",
        "pack a bmp tree (default bmp/) as packager would and\nreport every image that would fail",
        { kSectorOption, kVerboseOption }, &Help, &Run };
    return command;
}

} // namespace Zar::ResourcesLibrary::Tools::Inspect
