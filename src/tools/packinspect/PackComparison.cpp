#include "PackComparison.h"

#include "Zar/ResourcesLibrary/Pack/PackFormat.h"

#include <algorithm>
#include <iomanip>
#include <map>
#include <ostream>
#include <span>
#include <tuple>
#include <utility>

namespace Zar::ResourcesLibrary::Tools::Inspect {

using Zar::ResourcesLibrary::Pack::PackFormat;
using Zar::ResourcesLibrary::Pack::PackHeader;

namespace {

using Image = PackLayout::Image;

// An image's kind, its name and how many images of that kind and name come before it: a name may be
// used twice, and its second image is matched with the other pack's second image. The kind is part of
// the key because packager makes an image an icon or a screen by its size: an icon that grew into a
// screen is another image of other dimensions, so it is removed and added, never compared pixel by
// pixel with the old one.
using ImageKey = std::tuple<PackLayout::Kind, std::string, int>;
using ImagesByKey = std::map<ImageKey, Image>;

ImagesByKey ImagesByName(PackLayout const& layout)
{
    ImagesByKey images;
    std::map<std::pair<PackLayout::Kind, std::string>, int> seen;
    for (auto const& image : layout.Images())
        images.emplace(
            ImageKey(image._kind, image._name, seen[std::make_pair(image._kind, image._name)]++), image);
    return images;
}

// The entries in the packs' order, images before them first.
std::vector<std::pair<ImageKey, Image>> InOrder(ImagesByKey const& images)
{
    std::vector<std::pair<ImageKey, Image>> ordered(images.begin(), images.end());
    std::stable_sort(ordered.begin(), ordered.end(), [](auto const& left, auto const& right) {
        return left.second.FileOffset() < right.second.FileOffset();
    });
    return ordered;
}

bool SameBytes(std::span<uint8_t const> left, std::span<uint8_t const> right)
{
    return std::equal(left.begin(), left.end(), right.begin(), right.end());
}

std::span<uint8_t const> PixelsOf(PackFile const& pack, Image const& image)
{
    return pack.Slice(image.FileOffset(), image._geometry.Size());
}

// Target sector to file sector, icons' and screens' alike.
std::map<uint64_t, std::size_t> TargetSectors(PackFile const& pack, PackLayout const& layout)
{
    std::map<uint64_t, std::size_t> sectors;
    uint32_t const first = pack.Header()._firstSector;
    for (std::size_t k = 0; k < layout.IconSectors(); ++k)
        sectors[PackFormat::IconSector(first, k)] = 1 + k;
    for (std::size_t k = 0; k < layout.ScreenSectors(); ++k)
        sectors[PackFormat::ScreenSector(k)] = 1 + layout.IconSectors() + k;
    return sectors;
}

std::string Place(Image const& image)
{
    return "sector " + std::to_string(image._targetSector) + " offset " + std::to_string(image._offset);
}

char const* KindName(PackComparison::Kind kind)
{
    switch (kind) {
    case PackComparison::Kind::Added:
        return "added";
    case PackComparison::Kind::Removed:
        return "removed";
    case PackComparison::Kind::Changed:
        return "changed";
    case PackComparison::Kind::Moved:
        return "moved";
    }
    return "";
}

std::string Describe(PackComparison::ImageChange const& change)
{
    if (!change._old)
        return Place(*change._new) + ", value " + std::to_string(change._new->_value);
    if (!change._new)
        return "was at " + Place(*change._old) + ", value " + std::to_string(change._old->_value);
    std::string const before = Place(*change._old);
    std::string const after = Place(*change._new);
    return before == after ? after : before + " -> " + after;
}

std::string SectorList(std::vector<uint64_t> const& sectors)
{
    std::string text;
    for (uint64_t const sector : sectors) {
        if (!text.empty())
            text += ' ';
        text += std::to_string(sector);
    }
    return text;
}

} // namespace

PackComparison PackComparison::Compare(PackFile const& oldPack, PackLayout const& oldLayout,
    PackFile const& newPack, PackLayout const& newLayout)
{
    PackComparison comparison;
    comparison._equal = SameBytes(oldPack.Bytes(), newPack.Bytes());
    if (comparison._equal)
        return comparison;
    comparison.CompareImages(oldPack, oldLayout, newPack, newLayout);
    comparison.CompareHeaders(oldPack.Header(), newPack.Header());
    comparison.CompareSectors(oldPack, oldLayout, newPack, newLayout);
    return comparison;
}

void PackComparison::CompareImages(PackFile const& oldPack, PackLayout const& oldLayout,
    PackFile const& newPack, PackLayout const& newLayout)
{
    auto const oldImages = ImagesByName(oldLayout);
    auto const newImages = ImagesByName(newLayout);
    // Removed, changed and moved images in the old pack's order, then the added ones in the new's.
    for (auto const& [key, old] : InOrder(oldImages)) {
        auto const found = newImages.find(key);
        if (found == newImages.end())
            _images.push_back({ Kind::Removed, old, std::nullopt });
        else if (!SameBytes(PixelsOf(oldPack, old), PixelsOf(newPack, found->second)))
            _images.push_back({ Kind::Changed, old, found->second });
        else if (old._targetSector != found->second._targetSector || old._offset != found->second._offset)
            _images.push_back({ Kind::Moved, old, found->second });
    }
    for (auto const& [key, added] : InOrder(newImages))
        if (!oldImages.contains(key))
            _images.push_back({ Kind::Added, std::nullopt, added });
}

void PackComparison::CompareHeaders(PackHeader const& oldHeader, PackHeader const& newHeader)
{
    auto const note = [this](char const* field, std::string const& before, std::string const& after) {
        if (before != after)
            _header.push_back(std::string(field) + " " + before + " -> " + after);
    };
    note("version", oldHeader._version.Text(), newHeader._version.Text());
    note("first sector", std::to_string(oldHeader._firstSector), std::to_string(newHeader._firstSector));
    note("icons", std::to_string(oldHeader._iconCount), std::to_string(newHeader._iconCount));
    note("screens", std::to_string(oldHeader._screenCount), std::to_string(newHeader._screenCount));
}

void PackComparison::CompareSectors(PackFile const& oldPack, PackLayout const& oldLayout,
    PackFile const& newPack, PackLayout const& newLayout)
{
    _headerSectorDiffers = !SameBytes(oldPack.Sector(0), newPack.Sector(0));
    auto const oldSectors = TargetSectors(oldPack, oldLayout);
    auto const newSectors = TargetSectors(newPack, newLayout);
    for (auto const& [target, fileSector] : newSectors) {
        auto const old = oldSectors.find(target);
        if (old == oldSectors.end() || !SameBytes(oldPack.Sector(old->second), newPack.Sector(fileSector)))
            _flash.push_back(target);
    }
    for (auto const& [target, fileSector] : oldSectors)
        if (!newSectors.contains(target))
            _freed.push_back(target);
}

uint64_t PackComparison::BytesToFlash() const
{
    return (_flash.size() + (_headerSectorDiffers ? 1 : 0)) * uint64_t { PackFormat::kSectorSize };
}

void PackComparison::Print(std::ostream& out) const
{
    if (_equal) {
        out << "the packs are equal\n";
        return;
    }
    for (auto const& change : _images)
        out << std::left << std::setw(9) << KindName(change._kind) << std::setw(8)
            << change.Latest().KindName() << change.Latest()._name << "  (" << Describe(change) << ")\n";
    for (auto const& line : _header)
        out << "header   " << line << '\n';
    if (!_freed.empty())
        out << "unused   sectors " << SectorList(_freed) << " (the new pack no longer uses them)\n";
    out << "flash    ";
    if (!_flash.empty())
        out << "sectors " << SectorList(_flash) << (_headerSectorDiffers ? " and " : "");
    if (_headerSectorDiffers)
        out << "the header sector";
    if (_flash.empty() && !_headerSectorDiffers)
        out << "nothing";
    std::size_t const sectors = _flash.size() + (_headerSectorDiffers ? 1 : 0);
    out << ": " << sectors << (sectors == 1 ? " sector, " : " sectors, ") << BytesToFlash() << " bytes\n";
}

} // namespace Zar::ResourcesLibrary::Tools::Inspect
