#pragma once

#include "ImageGeometry.h"
#include "PackFile.h"
#include "PackLayout.h"

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

private:
    static void PrintSummary(PackFile const& pack, PackLayout const& layout, ImageGeometry const& icon,
        ImageGeometry const& screen, std::ostream& out);
    static void PrintImages(PackLayout const& layout, std::ostream& out);
};

} // namespace Zar::ResourcesLibrary::Tools::Inspect
