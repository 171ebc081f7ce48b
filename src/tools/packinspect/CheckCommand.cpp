// packinspect check: a bmp tree packed as packager would pack it, and every way in which the pack or
// the generated sources would not be what the user meant.

#include "Command.h"
#include "ImageGeometry.h"
#include "PackArguments.h"
#include "StreamLoggerFactory.h"
#include "TreeChecker.h"

#include "LoggingManager.h"

#include <iostream>
#include <optional>

namespace Zar::ResourcesLibrary::Tools::Inspect {

namespace {

OptionParser::Option const& kSectorOption = CommonOptions::kSector;
OptionParser::Option const& kStrictOption = CommonOptions::kStrict;
OptionParser::Option const kVerboseOption { "verbose", 'v', false };

std::string Help()
{
    return Command::HelpText(
        "Usage: packinspect check [OPTION]... [ROOT]\n"
        "Pack the bmp tree ROOT (default bmp/: ROOT/icons/list.txt and\n"
        "ROOT/screens/list.txt) with packager's own loading and packing code into a\n"
        "scratch folder, and report, one line each, every case in which the pack or the\n"
        "generated sources would not be what was meant: images that fail to load or\n"
        "that packager would pack as anything but the 1-bit or 4-bit grey they were\n"
        "drawn in (other depths, PNGs and JPEGs, RLE, palettes off the grey ramp),\n"
        "icons of another size, screens of an icon's size, names the generated C++ or\n"
        "Python cannot compile or that clash, lists that lose items or sources (no\n"
        "screen, a byte-order mark, a name in another letter case, .raw and .yuv\n"
        "items) and sectors whose values go wrong. Each line names the list file and\n"
        "line (as an editor counts it; packager's index beside it), the image, the\n"
        "cause and the fix. Caught exceptions are logged to standard error.\n"
        "\n"
        "      --sector=N  first icon sector, as given to packager (default {default sector})\n"
        "      --icon=WxH  the size every icon must have (default: the size most icons have)\n"
        "      --strict    warnings fail too\n"
        "  -v, --verbose   log the call stack of every caught exception as well\n"
        "  -h, --help      show this help and exit\n"
        "\n"
        "Exit status: 0 if nothing fails, 1 if anything does, 2 if the command line is\n"
        "wrong.\n");
}

int Run(Invocation& invocation)
{
    if (invocation.Operands().size() > 1)
        return invocation.UsageError("one bmp folder at most");
    std::string const root = invocation.Operands().empty() ? "bmp/" : invocation.Operands()[0];
    auto const sector = CommonOptions::Sector(invocation);
    if (!sector)
        return kUsage;
    std::optional<ImageGeometry> icon;
    if (auto const text = invocation.Options().Value(PackArguments::kIconOption._long)) {
        icon = ImageGeometry::Parse(*text);
        if (!icon)
            return invocation.UsageError(
                "a size is WxH, two numbers from 1 to 65535: '" + *text + "' is not");
    }

    // The registry is process-wide, so its logger writes to the process's standard error.
    zar::logging::LoggingManager::SetFactory(std::make_unique<StreamLoggerFactory>(std::cerr));
    TreeChecker checker(root,
        TreeChecker::Options { *sector, icon, invocation.Options().Has(kStrictOption._long) },
        zar::logging::LoggingManager::GetLoggerPtr("packinspect"),
        invocation.Options().Has(kVerboseOption._long));
    checker.Run();
    checker.Print(invocation.Out());
    return checker.FailureCount() == 0 ? kFine : kProblemsFound;
}

} // namespace

Command const& CheckCommand()
{
    static Command const command { "check", "check [ROOT]",
        "pack a bmp tree (default bmp/) as packager would and\nreport every way the pack or its sources "
        "would go wrong",
        { kSectorOption, PackArguments::kIconOption, kStrictOption, kVerboseOption }, &Help, &Run };
    return command;
}

} // namespace Zar::ResourcesLibrary::Tools::Inspect
