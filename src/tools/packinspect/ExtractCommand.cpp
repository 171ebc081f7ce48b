// packinspect extract: the bmp tree that packager rebuilds a pack from.

#include "Command.h"
#include "PackArguments.h"
#include "PackExtractor.h"
#include "PackFile.h"
#include "PackLayout.h"

#include <filesystem>
#include <ostream>

namespace Zar::ResourcesLibrary::Tools::Inspect {

namespace {

OptionParser::Option const& kOutputOption = CommonOptions::kOutput;
OptionParser::Option const& kForceOption = CommonOptions::kForce;

std::string Help()
{
    return Command::HelpText(
        "Usage: packinspect extract [OPTION]... PACK -o DIR\n"
        "Write the bmp tree that packager rebuilds PACK from: DIR/bmp/icons/ and\n"
        "DIR/bmp/screens/, each with a list.txt in pack order and one 4-bit BMP per image\n"
        "named after it (an ordinary uncompressed BMP with the 16-level grey ramp, black\n"
        "first, that image programs open), and DIR/rebuild.sh. Prints the command that\n"
        "rebuilds PACK byte for byte, and the same generated sources, when run in DIR:\n"
        "\n"
        "  packager version 1.2.3.4 sector 14\n"
        "\n"
        "Icons in a pack already carry their frame: packing them again draws the same\n"
        "frame over the same pixels, so the rebuilt pack is the same. Every image comes\n"
        "back as a 4-bit BMP, whatever it was drawn in; the pack and the sources do not\n"
        "depend on that. Not recoverable from a pack: a first sector given to packager\n"
        "above 65535 (the pack keeps its low 16 bits, the sources the whole number) and\n"
        "the image sizes, which come from --icon and --screen as for list.\n"
        "\n"
        "Refused before anything is written (exit 1): what is not a pack, sizes that do\n"
        "not fit its sectors, a file cut short of an image's last byte, a name that\n"
        "cannot be a file name and a list line that gives it back, two images of one\n"
        "name, images of a width of 8 k + 1 pixels (packager reads such 4-bit BMP rows\n"
        "4 bytes short), and a DIR that is not empty.\n"
        "\n"
        "  -o, --output=DIR    the folder to write (required)\n"
        "      --force         write into DIR even if it is not empty\n"
        "{size options}"
        "  -h, --help          show this help and exit\n"
        "\n"
        "Exit status: 0 if the tree was written, 1 if PACK was refused, 2 if the command\n"
        "line is wrong or a file cannot be read or written.\n");
}

bool IsEmptyOrMissing(std::filesystem::path const& folder)
{
    std::error_code error;
    return !std::filesystem::exists(folder, error) || std::filesystem::is_empty(folder, error);
}

int Run(Invocation& invocation)
{
    auto const arguments = PackArguments::Of(invocation);
    if (!arguments)
        return kUsage;
    auto const output
        = invocation.RequiredValue(kOutputOption, "the output folder is missing: give it with -o DIR");
    if (!output)
        return kUsage;

    PackFile const pack = PackFile::Load(arguments->_path);
    PackExtractor const extractor(pack,
        pack.IsPack() ? PackLayout::Compute(pack.Header(), arguments->_icon, arguments->_screen)
                      : PackLayout());
    if (auto const refusal = extractor.Refusal())
        return invocation.Problem(arguments->_path + ": " + *refusal);
    if (!invocation.Options().Has(kForceOption._long) && !IsEmptyOrMissing(*output))
        return invocation.Problem(*output + " is not empty; give --force to write into it");
    extractor.Write(*output);
    auto const& header = pack.Header();
    invocation.Out() << "wrote " << header._iconCount << " icons and " << header._screenCount
                     << " screens to " << (std::filesystem::path(*output) / "bmp").string()
                     << "\nrebuild the pack in " << *output << " with (also in " << PackExtractor::kScriptName
                     << "):\n"
                     << extractor.RebuildCommand() << '\n';
    return kFine;
}

} // namespace

Command const& ExtractCommand()
{
    static Command const command { "extract", "extract PACK -o DIR",
        "write the bmp tree that packager rebuilds PACK from",
        { PackArguments::kIconOption, PackArguments::kScreenOption, kOutputOption, kForceOption }, &Help,
        &Run };
    return command;
}

} // namespace Zar::ResourcesLibrary::Tools::Inspect
