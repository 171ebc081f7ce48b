// packinspect diff: the images, header fields and sectors in which two packs differ.

#include "Command.h"
#include "DiffSheet.h"
#include "PackArguments.h"
#include "PackComparison.h"
#include "PackFile.h"
#include "PackLayout.h"
#include "PngFile.h"

#include <ostream>

namespace Zar::ResourcesLibrary::Tools::Inspect {

namespace {

OptionParser::Option const kPngOption { "png", 0, true };

std::string Help()
{
    return Command::HelpText(
        "Usage: packinspect diff [OPTION]... OLD NEW\n"
        "Compare two packs by image name. Prints one line per image added, removed,\n"
        "changed (its pixels differ) or moved (the same pixels at another sector or\n"
        "offset), then the header fields that changed (version, first sector, counts),\n"
        "then the target sectors of NEW whose contents differ from OLD's at the same\n"
        "sector, which are the ones to flash again, and their total in bytes (the header\n"
        "sector counted when it differs). Prints \"the packs are equal\" when the files\n"
        "are the same. Both packs are laid out from --icon and --screen. An image that\n"
        "became a screen or an icon is another image: it is removed and added.\n"
        "\n"
        "      --png=FILE      also draw every changed image old | new | difference, four\n"
        "                      times its size and labelled, into a PNG\n"
        "{size options}"
        "  -h, --help          show this help and exit\n"
        "\n"
        "Exit status: 0 if the packs are equal, 1 if they differ, 2 on trouble (the\n"
        "command line is wrong, a file cannot be read or written, a file is not a pack or\n"
        "the sizes do not fit its sectors), as cmp and diff do.\n");
}

// The pack's layout; on trouble writes it and gives nothing.
std::optional<PackLayout> LayoutOf(Invocation& invocation, std::string const& path, PackFile const& pack,
    ImageGeometry const& icon, ImageGeometry const& screen)
{
    if (!pack.IsPack()) {
        invocation.Problem(path + " is not a pack");
        return std::nullopt;
    }
    auto layout = PackLayout::Compute(pack.Header(), icon, screen);
    if (auto const problem = layout.GeometryProblem(pack)) {
        invocation.Problem(path + ": " + *problem);
        return std::nullopt;
    }
    return layout;
}

int Run(Invocation& invocation)
{
    if (invocation.Operands().size() != 2)
        return invocation.UsageError("two pack files are needed, the old one and the new one");
    ImageGeometry icon(1, 1);
    ImageGeometry screen(1, 1);
    if (!PackArguments::ParseGeometries(invocation, icon, screen))
        return kUsage;
    auto const png = invocation.Options().Value(kPngOption._long);
    if (png && png->empty())
        return invocation.UsageError("the PNG file name is empty");

    std::string const& oldPath = invocation.Operands()[0];
    std::string const& newPath = invocation.Operands()[1];
    PackFile const oldPack = PackFile::Load(oldPath);
    PackFile const newPack = PackFile::Load(newPath);
    auto const oldLayout = LayoutOf(invocation, oldPath, oldPack, icon, screen);
    auto const newLayout = LayoutOf(invocation, newPath, newPack, icon, screen);
    if (!oldLayout || !newLayout)
        return kUsage;
    auto const comparison = PackComparison::Compare(oldPack, *oldLayout, newPack, *newLayout);
    invocation.Out() << "old " << oldPath << "\nnew " << newPath << '\n';
    comparison.Print(invocation.Out());
    if (png) {
        std::string const title = "old " + oldPath + "  |  new " + newPath + "  |  difference";
        if (!PngFile::Save(DiffSheet::Render(comparison, oldPack, newPack, title), *png))
            return invocation.Problem("cannot write " + *png, kUsage);
        invocation.Out() << "wrote " << *png << '\n';
    }
    return comparison.IsEqual() ? kFine : kProblemsFound;
}

} // namespace

Command const& DiffCommand()
{
    static Command const command { "diff", "diff OLD NEW",
        "show the images, header fields and sectors that differ",
        { PackArguments::kIconOption, PackArguments::kScreenOption, kPngOption }, &Help, &Run };
    return command;
}

} // namespace Zar::ResourcesLibrary::Tools::Inspect
