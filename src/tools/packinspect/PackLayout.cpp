#include "PackLayout.h"

#include "Zar/ResourcesLibrary/Pack/PackFormat.h"

namespace Zar::ResourcesLibrary::Tools::Inspect {

using Zar::ResourcesLibrary::Pack::PackFormat;
using Zar::ResourcesLibrary::Pack::PackHeader;

uint64_t PackLayout::Image::FileOffset() const
{
    return static_cast<uint64_t>(_fileSector) * PackFormat::kSectorSize + _offset;
}

char const* PackLayout::Image::KindName() const { return _kind == Kind::Icon ? "icon" : "screen"; }

PackLayout PackLayout::Compute(
    PackHeader const& header, ImageGeometry const& icon, ImageGeometry const& screen)
{
    PackLayout layout;
    layout._icon = icon;
    layout._screen = screen;
    layout.LayIcons(header, icon);
    layout.LayScreens(header, screen);
    return layout;
}

void PackLayout::LayIcons(PackHeader const& header, ImageGeometry const& icon)
{
    std::size_t const size = icon.Size();
    std::size_t sector = 1;
    std::size_t offset = 0;
    for (uint32_t k = 0; k < header._iconCount; ++k) {
        // A lying count must not make the layout grow past what any pack can hold.
        if (sector > PackFormat::kStoreSectors) {
            _complete = false;
            break;
        }
        _images.push_back(
            { Kind::Icon, PackFormat::FirstIconValue(header._firstSector) + k, NameOf(k, header),
                PackFormat::IconSector(header._firstSector, sector - 1), sector, offset, icon });
        offset += size;
        if (offset + size >= PackFormat::kSectorSize) {
            ++sector;
            offset = 0;
        }
    }
    _iconSectors = sector - 1 + (offset != 0 ? 1 : 0);
}

void PackLayout::LayScreens(PackHeader const& header, ImageGeometry const& screen)
{
    std::size_t const sectorsPerScreen = PackFormat::SectorsFor(screen.Size());
    for (uint32_t k = 0; k < header._screenCount; ++k) {
        std::size_t const sector = 1 + _iconSectors + _screenSectors;
        if (sector > PackFormat::kStoreSectors) {
            _complete = false;
            break;
        }
        _images.push_back({ Kind::Screen, k, NameOf(header._iconCount + static_cast<std::size_t>(k), header),
            PackFormat::ScreenSector(_screenSectors), sector, 0, screen });
        _screenSectors += sectorsPerScreen;
    }
}

std::string PackLayout::NameOf(std::size_t position, PackHeader const& header) const
{
    return position < header._names.size() ? header._names[position] : std::string();
}

std::optional<std::string> PackLayout::GeometryProblem(PackFile const& pack) const
{
    if (FileSectors() != pack.SectorCount())
        return "the geometry --icon " + _icon.ToString() + " --screen " + _screen.ToString() + " lays "
            + std::to_string(FileSectors()) + " sectors out, the file holds "
            + std::to_string(pack.SectorCount()) + ": the geometry is probably not the pack's";
    // The sectors are counted rounding up, so a file cut inside its last sector passes the count
    // while that sector's images lack their last bytes.
    for (auto const& image : _images)
        if (image.FileOffset() + image._geometry.Size() > pack.Size())
            return "the file holds " + std::to_string(pack.Size()) + " bytes, not whole sectors: the image "
                + image._name + " lies past its end";
    return std::nullopt;
}

} // namespace Zar::ResourcesLibrary::Tools::Inspect
