#include "PackLister.h"

#include "PackLayout.h"

#include "Zar/ResourcesLibrary/Pack/PackFormat.h"

#include <iomanip>
#include <ostream>

namespace Zar::ResourcesLibrary::Tools::Inspect {

using Zar::ResourcesLibrary::Pack::PackFormat;
using Zar::ResourcesLibrary::Pack::PackHeader;

std::size_t PackLister::List(
    PackFile const& pack, ImageGeometry const& icon, ImageGeometry const& screen, std::ostream& out)
{
    if (!pack.IsPack()) {
        out << "problem: " << NotAPackProblem() << '\n';
        return 1;
    }
    auto const layout = PackLayout::Compute(pack.Header(), icon, screen);
    PrintSummary(pack, layout, icon, screen, out);
    PrintImages(layout, out);

    std::size_t problems = 0;
    if (auto const problem = GeometryProblem(pack, layout, icon, screen)) {
        out << "problem: " << *problem << '\n';
        ++problems;
    }
    for (auto const& problem : pack.Header()._nameProblems) {
        out << "problem: " << problem << '\n';
        ++problems;
    }
    return problems;
}

std::optional<std::string> PackLister::GeometryProblem(
    PackFile const& pack, PackLayout const& layout, ImageGeometry const& icon, ImageGeometry const& screen)
{
    if (layout.FileSectors() != pack.SectorCount())
        return "the geometry --icon " + icon.ToString() + " --screen " + screen.ToString() + " lays "
            + std::to_string(layout.FileSectors()) + " sectors out, the file holds "
            + std::to_string(pack.SectorCount()) + ": the geometry is probably not the pack's";
    // The sectors are counted rounding up, so a file cut inside its last sector passes the count
    // while that sector's images lack their last bytes.
    for (auto const& image : layout.Images())
        if (image.FileOffset() + image._geometry.Size() > pack.Size())
            return "the file holds " + std::to_string(pack.Size()) + " bytes, not whole sectors: the image "
                + image._name + " lies past its end";
    return std::nullopt;
}

std::string PackLister::NotAPackProblem()
{
    return "not a pack: no header sector with the magic \"ZAR\" and the format word "
        + VersionText(Zar::Lt::Core::Version32(PackFormat::kFormatWord));
}

std::string PackLister::VersionText(Zar::Lt::Core::Version32 version)
{
    return std::to_string(version.Major()) + "." + std::to_string(version.Minor()) + "."
        + std::to_string(version.Patch()) + "." + std::to_string(version.Build());
}

void PackLister::PrintSummary(PackFile const& pack, PackLayout const& layout, ImageGeometry const& icon,
    ImageGeometry const& screen, std::ostream& out)
{
    PackHeader const& header = pack.Header();
    std::size_t const usedSectors = pack.SectorCount();
    std::size_t const freeSectors
        = usedSectors < PackFormat::kStoreSectors ? PackFormat::kStoreSectors - usedSectors : 0;

    out << "version       " << VersionText(header._version) << "\nformat        "
        << VersionText(Zar::Lt::Core::Version32(header._format)) << "\nfirst sector  " << header._firstSector
        << "\nicons         " << header._iconCount << " (" << icon.ToString() << ", " << icon.Size()
        << " bytes each, " << layout.IconSectors() << " sectors)"
        << "\nscreens       " << header._screenCount << " (" << screen.ToString() << ", " << screen.Size()
        << " bytes each, " << layout.ScreenSectors() << " sectors)"
        << "\nstore         " << usedSectors << " of " << PackFormat::kStoreSectors << " sectors used ("
        << pack.Size() << " bytes), " << freeSectors << " free (" << freeSectors * PackFormat::kSectorSize
        << " bytes)"
        << "\nnames area    " << header._namesUsed << " of " << PackFormat::kNamesCapacity << " bytes used, "
        << header._namesCount << " names\n";
}

void PackLister::PrintImages(PackLayout const& layout, std::ostream& out)
{
    if (layout.Images().empty())
        return;
    out << "\nkind     value  sector  offset  name\n";
    for (auto const& image : layout.Images())
        out << std::left << std::setw(6) << image.KindName() << std::right << std::setw(8) << image._value
            << std::setw(8) << image._targetSector << std::setw(8) << image._offset << "  " << image._name
            << '\n';
    if (!layout.IsComplete())
        out << "(the header counts more images than a pack can hold; the list stops here)\n";
}

} // namespace Zar::ResourcesLibrary::Tools::Inspect
