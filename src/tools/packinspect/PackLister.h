#pragma once

#include "ImageGeometry.h"
#include "PackFile.h"
#include "PackLayout.h"

#include "Zar/Lt/Core/Version32.h"

#include <iosfwd>
#include <optional>
#include <string>

namespace Zar::ResourcesLibrary::Tools::Inspect {

// Describes a pack: its header fields, the use of the 256-sector store and of the names area, and a
// table of every image with its enumerator value, name, target sector and offset.
class PackLister {
public:
    // Returns the number of problems written (an unreadable header, a layout that does not match the
    // file); 0 when the listing is sound.
    static std::size_t List(
        PackFile const& pack, ImageGeometry const& icon, ImageGeometry const& screen, std::ostream& out);

    // Why the layout that the geometry gives is not the file's, if it is not: the pack does not
    // record its image sizes, so a wrong --icon or --screen shows only here. A file cut short of an
    // image's last byte is not the layout's either.
    static std::optional<std::string> GeometryProblem(PackFile const& pack, PackLayout const& layout,
        ImageGeometry const& icon, ImageGeometry const& screen);
    // The problem of a file without a pack's header, as list reports it and extract refuses it.
    static std::string NotAPackProblem();
    // "1.2.3.4".
    static std::string VersionText(Zar::Lt::Core::Version32 version);

private:
    static void PrintSummary(PackFile const& pack, PackLayout const& layout, ImageGeometry const& icon,
        ImageGeometry const& screen, std::ostream& out);
    static void PrintImages(PackLayout const& layout, std::ostream& out);
};

} // namespace Zar::ResourcesLibrary::Tools::Inspect
