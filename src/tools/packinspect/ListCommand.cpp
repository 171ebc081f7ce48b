// packinspect list: the header and one line per image of a pack.

#include "Command.h"
#include "PackArguments.h"
#include "PackFile.h"
#include "PackLister.h"

#include <ostream>

namespace Zar::ResourcesLibrary::Tools::Inspect {

namespace {

std::string Help()
{
    return Command::HelpText(
        "Usage: packinspect list [OPTION]... PACK\n"
        "Show the version, first sector and counts of PACK, the sectors and bytes used and\n"
        "free of the {store sectors}-sector store, the use of the names area, and one line per image:\n"
        "kind, enumerator value (icons from (first sector - 2) x {icons per sector}, screens from 0),\n"
        "target sector, offset in that sector and name.\n"
        "\n"
        "The pack does not record image sizes: icons are laid out from --icon, every icon\n"
        "the same size, and screens from --screen.\n"
        "\n"
        "{size options}"
        "  -h, --help          show this help and exit\n"
        "\n"
        "Exit status: 0 if the listing is sound, 1 if PACK is not a pack or the sizes do\n"
        "not fit its sectors, 2 if the command line is wrong or PACK cannot be read.\n");
}

int Run(Invocation& invocation)
{
    auto const pack = PackArguments::Of(invocation);
    if (!pack)
        return kUsage;
    invocation.Out() << pack->_path << '\n';
    return PackLister::List(PackFile::Load(pack->_path), pack->_icon, pack->_screen, invocation.Out()) == 0
        ? kFine
        : kProblemsFound;
}

} // namespace

Command const& ListCommand()
{
    static Command const command { "list", "list PACK",
        "show the header and a table of every image of a pack",
        { PackArguments::kIconOption, PackArguments::kScreenOption }, &Help, &Run };
    return command;
}

} // namespace Zar::ResourcesLibrary::Tools::Inspect
