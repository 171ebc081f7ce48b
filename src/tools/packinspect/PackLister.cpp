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
        out << "problem: " << PackFile::NotAPackProblem() << '\n';
        return 1;
    }
    auto const layout = PackLayout::Compute(pack.Header(), icon, screen);
    PrintSummary(pack, layout, icon, screen, out);
    PrintImages(layout, out);

    std::size_t problems = 0;
    if (auto const problem = layout.GeometryProblem(pack)) {
        out << "problem: " << *problem << '\n';
        ++problems;
    }
    for (auto const& problem : pack.Header()._nameProblems) {
        out << "problem: " << problem << '\n';
        ++problems;
    }
    return problems;
}

void PackLister::PrintSummary(PackFile const& pack, PackLayout const& layout, ImageGeometry const& icon,
    ImageGeometry const& screen, std::ostream& out)
{
    PackHeader const& header = pack.Header();
    std::size_t const usedSectors = pack.SectorCount();
    std::size_t const freeSectors
        = usedSectors < PackFormat::kStoreSectors ? PackFormat::kStoreSectors - usedSectors : 0;

    out << "version       " << header._version.Text() << "\nformat        "
        << Zar::Lt::Core::Version32(header._format).Text() << "\nfirst sector  " << header._firstSector
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
