#pragma once

#include "PackComparison.h"
#include "PackFile.h"

#include <QImage>
#include <QRgb>

#include <string>

namespace Zar::ResourcesLibrary::Tools::Inspect {

// A picture of the images whose pixels changed between two packs, one row each: the old image, the
// new one and their difference, each at four times its size, labelled, in the style of the contact
// sheet. The difference shows unchanged pixels in dark grey and changed ones in red, the brighter the
// further the levels lie apart.
class DiffSheet {
public:
    static constexpr QRgb kUnchanged = 0xFF202020;

    // The colour of a pixel in the difference panel.
    static QRgb DifferenceColour(uint8_t oldLevel, uint8_t newLevel);

    // Draws the changed images; title goes on the first line. Throws ResourcesLibraryException when
    // the sheet would be too large.
    static QImage Render(PackComparison const& comparison, PackFile const& oldPack, PackFile const& newPack,
        std::string const& title);
};

} // namespace Zar::ResourcesLibrary::Tools::Inspect
