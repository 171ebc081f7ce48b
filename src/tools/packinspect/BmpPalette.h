#pragma once

#include <string>

namespace Zar::ResourcesLibrary::Tools::Inspect {

// How a 4-bit BMP's palette relates to the grey levels the packer gives its pixels. The BMP loader
// takes each 4-bit index as the grey level itself, negated when palette entry 0 is white; only a
// palette that is the ascending ramp (index k shows level k) or, starting with white, the
// descending ramp (index k shows level 15 - k) keeps the picture's greys.
class BmpPalette {
public:
    enum class Kind {
        // Not a 4-bit BMP, or not a BMP this check can read; the loader speaks for those.
        NotFourBit,
        Ascending,
        Descending,
        Other,
    };

    // Reads only the headers and the 16 palette entries, never past the header block.
    static Kind Classify(std::string const& path);

    // Level a palette grey is closest to, 0 to 15.
    static int NearestLevel(int grey);
};

} // namespace Zar::ResourcesLibrary::Tools::Inspect
