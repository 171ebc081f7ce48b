#include "Zar/ResourcesLibrary/Pack/PackHeader.h"

#include "Zar/Lt/Exceptions/Check.h"

#include <algorithm>

namespace Zar::ResourcesLibrary::Pack {

PackHeader PackHeader::Parse(std::span<uint8_t const> header)
{
    ZAR_PRECONDITION(header.size() >= PackFormat::kSectorSize);
    PackHeader result;
    std::copy_n(header.begin() + PackFormat::kMagicOffset, result._magic.size(), result._magic.begin());
    result._format = PackFormat::ReadU32(header, PackFormat::kFormatOffset);
    result._version = Zar::Lt::Core::Version32(PackFormat::ReadU32(header, PackFormat::kVersionOffset));
    result._firstSector = PackFormat::ReadU32(header, PackFormat::kFirstSectorOffset);
    result._iconCount = PackFormat::ReadU32(header, PackFormat::kIconCountOffset);
    result._screenCount = PackFormat::ReadU32(header, PackFormat::kScreenCountOffset);
    for (std::size_t s = 0; s < result._crcTable.size(); ++s)
        result._crcTable[s]
            = PackFormat::ReadU16(header, PackFormat::CrcEntryOffset(static_cast<uint32_t>(s)));
    result._namesUsed = PackFormat::ReadU32(header, PackFormat::kNamesUsedOffset);
    result._namesCount = PackFormat::ReadU32(header, PackFormat::kNamesCountOffset);
    result.ParseNames(header.subspan(PackFormat::kNamesOffset, PackFormat::kNamesCapacity));
    return result;
}

bool PackHeader::HasMagic() const
{
    return std::equal(_magic.begin(), _magic.end(), PackFormat::kMagic.begin());
}

bool PackHeader::HasKnownFormat() const { return _format == PackFormat::kFormatWord; }

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

} // namespace Zar::ResourcesLibrary::Pack
