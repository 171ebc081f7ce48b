// packinspect render: every image of a pack on one PNG contact sheet.

#include "Command.h"
#include "ContactSheet.h"
#include "GreyMapping.h"
#include "PackArguments.h"
#include "PackFile.h"
#include "PackLayout.h"
#include "PngFile.h"

#include "Zar/ResourcesLibrary/ResourcesLibraryException.h"

#include <charconv>
#include <fstream>
#include <optional>
#include <sstream>

#include <ostream>

namespace Zar::ResourcesLibrary::Tools::Inspect {

namespace {

OptionParser::Option const& kOutputOption = CommonOptions::kOutput;
OptionParser::Option const& kGreyTableOption = CommonOptions::kGreyTable;
OptionParser::Option const& kGammaOption = CommonOptions::kGamma;

std::string Help()
{
    return Command::HelpText(
        "Usage: packinspect render [OPTION]... PACK -o FILE.png\n"
        "Decode every icon and screen of PACK (4 bits per pixel, the left pixel in the\n"
        "high nibble, rows padded to 4 bytes) and draw them into one PNG contact sheet:\n"
        "each image four times its size in the display's grey levels (0 black to 15\n"
        "white), its name and value under it.\n"
        "\n"
        "  -o, --output=FILE   the PNG to write (required)\n"
        "      --grey-table=FILE  show each level in the light the panel gives it: 16\n"
        "                      measured luminances, level 0 to 15 ascending, as for\n"
        "                      import\n"
        "      --gamma=G       show level L in the grey 255 x (L / 15)^(1/G), the grey\n"
        "                      that import --gamma=G maps onto L\n"
        "{size options}"
        "  -h, --help          show this help and exit\n"
        "\n"
        "Text is drawn with Qt on its \"minimal\" platform with fonts enabled unless\n"
        "QT_QPA_PLATFORM says otherwise, so no display is needed.\n"
        "\n"
        "Exit status: 0 if every image was drawn, 1 if PACK is not a pack or images lie\n"
        "past its end, 2 if the command line is wrong or a file cannot be read or written.\n");
}

// The greys the levels are drawn in; on a usage error writes it and gives nothing.
std::optional<ContactSheet::LevelGreys> LevelGreysOf(Invocation& invocation)
{
    auto const table = invocation.Options().Value(kGreyTableOption._long);
    auto const gamma = invocation.Options().Value(kGammaOption._long);
    std::optional<GreyMapping> mapping;
    if (auto const problem = GreyMapping::FromOptions(gamma, table, mapping)) {
        invocation.UsageError(*problem);
        return std::nullopt;
    }
    if (!mapping)
        return ContactSheet::LinearGreys();
    ContactSheet::LevelGreys greys {};
    for (uint8_t level = 0; level < greys.size(); ++level)
        greys[level] = mapping->ShownGrey(level);
    return greys;
}

int Run(Invocation& invocation)
{
    auto const arguments = PackArguments::Of(invocation);
    if (!arguments)
        return kUsage;
    auto const output
        = invocation.RequiredValue(kOutputOption, "the output file is missing: give it with -o FILE.png");
    if (!output)
        return kUsage;

    auto const greys = LevelGreysOf(invocation);
    if (!greys)
        return kUsage;

    std::string const& path = arguments->_path;
    PackFile const pack = PackFile::Load(path);
    if (!pack.IsPack())
        return invocation.Problem(path + " is not a pack");
    auto const& header = pack.Header();
    auto const sheet
        = ContactSheet::Lay(pack, PackLayout::Compute(header, arguments->_icon, arguments->_screen));
    std::string const title = path + "  version " + header._version.Text() + ", "
        + std::to_string(header._iconCount) + " icons at sector " + std::to_string(header._firstSector) + ", "
        + std::to_string(header._screenCount) + " screens";
    if (!PngFile::Save(sheet.Render(pack, title, *greys), *output))
        return invocation.Problem("cannot write " + *output, kUsage);
    auto const missing = sheet.MissingImages();
    for (auto const& name : missing)
        invocation.Problem("the image " + name + " lies past the end of the file");
    invocation.Out() << "wrote " << *output << " (" << sheet.Cells().size() << " images, "
                     << sheet.Size().width() << "x" << sheet.Size().height() << " pixels)\n";
    return missing.empty() ? kFine : kProblemsFound;
}

} // namespace

Command const& RenderCommand()
{
    static Command const command { "render", "render PACK -o FILE",
        "draw every image of a pack into one PNG contact sheet",
        { PackArguments::kIconOption, PackArguments::kScreenOption, kOutputOption, kGreyTableOption,
            kGammaOption },
        &Help, &Run };
    return command;
}

} // namespace Zar::ResourcesLibrary::Tools::Inspect
