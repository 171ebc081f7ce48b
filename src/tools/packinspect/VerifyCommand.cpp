// packinspect verify: is a pack sound, sector by sector?

#include "Command.h"
#include "PackArguments.h"
#include "PackFile.h"
#include "PackVerifier.h"

#include <ostream>

namespace Zar::ResourcesLibrary::Tools::Inspect {

namespace {

std::string Help()
{
    return Command::HelpText(
        "Usage: packinspect verify PACK\n"
        "Check that PACK is a sound pack: the magic and the format word, whole {sector size}-byte\n"
        "sectors, the icon and screen counts against the names area, every CRC entry the\n"
        "format maps (icon sectors at the first sector and on, screen sectors at {first screen sector} and\n"
        "on) against a CRC-16 recomputed from the file, icon sectors below {first screen sector} and the\n"
        "names area within its {names capacity} bytes. Prints one line per sector (target sector,\n"
        "file sector, CRC stored, CRC computed, OK or BAD), the problems and a verdict.\n"
        "\n"
        "  -h, --help  show this help and exit\n"
        "\n"
        "Exit status: 0 if the pack is sound, 1 if problems were found, 2 if the command\n"
        "line is wrong or PACK cannot be read.\n");
}

int Run(Invocation& invocation)
{
    auto const path = PackArguments::SinglePack(invocation);
    if (!path)
        return kUsage;
    auto const report = PackVerifier::Check(PackFile::Load(*path));
    invocation.Out() << *path << '\n';
    PackVerifier::Print(report, invocation.Out());
    return report.ProblemCount() == 0 ? kFine : kProblemsFound;
}

} // namespace

Command const& VerifyCommand()
{
    static Command const command { "verify", "verify PACK",
        "check the header, the sectors and every CRC of a pack", {}, &Help, &Run };
    return command;
}

} // namespace Zar::ResourcesLibrary::Tools::Inspect
