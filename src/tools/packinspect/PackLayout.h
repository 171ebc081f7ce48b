#pragma once

#include "ImageGeometry.h"
#include "PackFile.h"

#include "Zar/ResourcesLibrary/Pack/PackHeader.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace Zar::ResourcesLibrary::Tools::Inspect {

// Where each image of a pack lies, worked out from the header and the image geometry the way the
// packager lays images out: icons one after another, a sector closed as soon as one more icon of the
// same size would not fit (offset + size >= 4096 after adding), and every screen on fresh sectors.
class PackLayout {
public:
    enum class Kind {
        Icon,
        Screen,
    };

    struct Image {
        Kind _kind = Kind::Icon;
        // The value the generated headers give it: icons from (first sector - 2) x 10, screens from 0.
        int64_t _value = 0;
        std::string _name;
        uint64_t _targetSector = 0;
        std::size_t _fileSector = 0;
        std::size_t _offset = 0;
        ImageGeometry _geometry;

        uint64_t FileOffset() const;
        char const* KindName() const;
    };

    static PackLayout Compute(
        Pack::PackHeader const& header, ImageGeometry const& icon, ImageGeometry const& screen);

    std::vector<Image> const& Images() const { return _images; }
    ImageGeometry const& IconGeometry() const { return _icon; }
    ImageGeometry const& ScreenGeometry() const { return _screen; }
    std::size_t IconSectors() const { return _iconSectors; }
    std::size_t ScreenSectors() const { return _screenSectors; }
    // File sectors of the layout, the header sector included.
    std::size_t FileSectors() const { return 1 + _iconSectors + _screenSectors; }
    // False when the header counts more images than a pack can hold; the layout stops there.
    bool IsComplete() const { return _complete; }
    // Why this layout is not the file's, if it is not: the pack does not record its image sizes, so a
    // wrong --icon or --screen shows only here. A file cut short of an image's last byte is not the
    // layout's either.
    std::optional<std::string> GeometryProblem(PackFile const& pack) const;

private:
    void LayIcons(Pack::PackHeader const& header, ImageGeometry const& icon);
    void LayScreens(Pack::PackHeader const& header, ImageGeometry const& screen);
    std::string NameOf(std::size_t position, Pack::PackHeader const& header) const;

    std::vector<Image> _images;
    ImageGeometry _icon { 1, 1 };
    ImageGeometry _screen { 1, 1 };
    std::size_t _iconSectors = 0;
    std::size_t _screenSectors = 0;
    bool _complete = true;
};

} // namespace Zar::ResourcesLibrary::Tools::Inspect
