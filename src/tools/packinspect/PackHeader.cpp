#include "PackHeader.h"

#include "PackFormat.h"

#include "Zar/Lt/Exceptions/Check.h"

#include <algorithm>

namespace Zar::ResourcesLibrary::Tools::Inspect {

PackHeader PackHeader::Parse(std::span<uint8_t const> header)
{
    ZAR_PRECONDITION(header.size() >= PackFormat::SectorSize);
    PackHeader result;
    std::copy_n(header.begin(), 4, result._magic.begin());
    result._format = PackFormat::ReadU32(header, PackFormat::FormatOffset);
    result._version = Zar::Lt::Core::Version32(PackFormat::ReadU32(header, PackFormat::VersionOffset));
    result._firstSector = PackFormat::ReadU32(header, PackFormat::FirstSectorOffset);
    result._iconCount = PackFormat::ReadU32(header, PackFormat::IconCountOffset);
    result._screenCount = PackFormat::ReadU32(header, PackFormat::ScreenCountOffset);
    for (std::size_t s = 0; s < result._crcTable.size(); ++s)
        result._crcTable[s] = PackFormat::ReadU16(header, PackFormat::CrcTableOffset + 2 * s);
    result._namesUsed = PackFormat::ReadU32(header, PackFormat::NamesUsedOffset);
    result._namesCount = PackFormat::ReadU32(header, PackFormat::NamesCountOffset);
    result.ParseNames(header.subspan(PackFormat::NamesOffset, PackFormat::NamesCapacity));
    return result;
}

bool PackHeader::HasMagic() const
{
    return std::equal(_magic.begin(), _magic.end(), std::begin(PackFormat::Magic));
}

bool PackHeader::HasKnownFormat() const { return _format == PackFormat::FormatWord; }

uint16_t PackHeader::CrcEntry(uint64_t sector) const
{
    return sector < _crcTable.size() ? _crcTable[sector] : 0;
}

void PackHeader::ParseNames(std::span<uint8_t const> area)
{
    // A lying "used" field is clamped to the area, so the walk below never leaves the header.
    std::size_t const used = std::min<std::size_t>(_namesUsed, area.size());
    if (_namesUsed > area.size())
        _nameProblems.push_back("names area claims " + std::to_string(_namesUsed) + " bytes, more than its "
            + std::to_string(area.size()));
    std::size_t position = 0;
    for (uint32_t k = 0; k < _namesCount; ++k) {
        if (position >= used) {
            _nameProblems.push_back("names area ends after " + std::to_string(k) + " of "
                + std::to_string(_namesCount) + " names");
            break;
        }
        std::size_t const length = area[position];
        if (position + 1 + length > used) {
            _nameProblems.push_back("name " + std::to_string(k) + " of " + std::to_string(length)
                + " bytes runs past the " + std::to_string(used) + " used bytes");
            break;
        }
        auto const* text = reinterpret_cast<char const*>(area.data() + position + 1);
        _names.emplace_back(text, length);
        position += 1 + length;
    }
    if (_names.size() == _namesCount && position != used)
        _nameProblems.push_back(
            "names area holds " + std::to_string(used - position) + " bytes after its last name");
    if (std::any_of(
            area.begin() + static_cast<std::ptrdiff_t>(used), area.end(), [](uint8_t b) { return b != 0; }))
        _nameProblems.push_back(
            "names area holds non-zero bytes after its " + std::to_string(used) + " used bytes");
}

} // namespace Zar::ResourcesLibrary::Tools::Inspect
