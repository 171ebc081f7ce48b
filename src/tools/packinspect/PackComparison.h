#pragma once

#include "PackFile.h"
#include "PackLayout.h"

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace Zar::ResourcesLibrary::Tools::Inspect {

// What changed from one pack to the next: the images by name (added, removed, changed pixels, or the
// same pixels moved to another sector or offset), the header's fields, and the target sectors whose
// contents differ, which are the ones to flash again.
class PackComparison {
public:
    enum class Kind {
        Added,
        Removed,
        Changed,
        Moved,
    };

    struct ImageChange {
        Kind _kind = Kind::Changed;
        // The image in the old pack (for Removed, Changed, Moved) and in the new one (Added, Changed,
        // Moved).
        std::optional<PackLayout::Image> _old;
        std::optional<PackLayout::Image> _new;

        // The new image, or the old one when it was removed.
        PackLayout::Image const& Latest() const { return _new ? *_new : *_old; }
    };

    // The layouts must be the packs' own, computed from their headers with the same geometry.
    static PackComparison Compare(PackFile const& oldPack, PackLayout const& oldLayout,
        PackFile const& newPack, PackLayout const& newLayout);

    // The files are byte for byte the same.
    bool IsEqual() const { return _equal; }
    std::vector<ImageChange> const& ImageChanges() const { return _images; }
    // "version 1.0.0.0 -> 1.0.0.1" and the like.
    std::vector<std::string> const& HeaderChanges() const { return _header; }
    // Target sectors of the new pack whose bytes are not the old pack's at that sector.
    std::vector<uint64_t> const& SectorsToFlash() const { return _flash; }
    bool HeaderSectorDiffers() const { return _headerSectorDiffers; }
    // Target sectors the old pack used and the new one does not.
    std::vector<uint64_t> const& SectorsFreed() const { return _freed; }
    uint64_t BytesToFlash() const;

    // One line per image change, per header change, the sectors to flash and their total.
    void Print(std::ostream& out) const;

private:
    void CompareImages(PackFile const& oldPack, PackLayout const& oldLayout, PackFile const& newPack,
        PackLayout const& newLayout);
    void CompareHeaders(Pack::PackHeader const& oldHeader, Pack::PackHeader const& newHeader);
    void CompareSectors(PackFile const& oldPack, PackLayout const& oldLayout, PackFile const& newPack,
        PackLayout const& newLayout);

    bool _equal = false;
    std::vector<ImageChange> _images;
    std::vector<std::string> _header;
    std::vector<uint64_t> _flash;
    bool _headerSectorDiffers = false;
    std::vector<uint64_t> _freed;
};

} // namespace Zar::ResourcesLibrary::Tools::Inspect
