#include "Zar/ResourcesLibrary/Pack/PackHeader.h"

#include "Zar/Lt/Exceptions/Check.h"

#include <algorithm>

namespace Zar::ResourcesLibrary::Pack {

namespace {

uint32_t WordOf(uint32_t value) { return value; }
uint32_t WordOf(Zar::Lt::Core::Version32 version) { return version.Value(); }

void SetFromWord(uint32_t& field, uint32_t word) { field = word; }
void SetFromWord(Zar::Lt::Core::Version32& field, uint32_t word) { field = Zar::Lt::Core::Version32(word); }

} // namespace

template <typename Header, typename Field> void PackHeader::ForEachWord(Header& header, Field const& field)
{
    field(PackFormat::kFormatOffset, header._format);
    field(PackFormat::kVersionOffset, header._version);
    field(PackFormat::kFirstSectorOffset, header._firstSector);
    field(PackFormat::kIconCountOffset, header._iconCount);
    field(PackFormat::kScreenCountOffset, header._screenCount);
    field(PackFormat::kNamesUsedOffset, header._namesUsed);
    field(PackFormat::kNamesCountOffset, header._namesCount);
}

PackHeader PackHeader::Parse(std::span<uint8_t const> header)
{
    ZAR_PRECONDITION(header.size() >= PackFormat::kSectorSize);
    PackHeader result;
    std::copy_n(header.begin() + PackFormat::kMagicOffset, result._magic.size(), result._magic.begin());
    ForEachWord(result, [header](std::size_t offset, auto& field) {
        SetFromWord(field, PackFormat::ReadU32(header, offset));
    });
    for (std::size_t s = 0; s < result._crcTable.size(); ++s)
        result._crcTable[s]
            = PackFormat::ReadU16(header, PackFormat::CrcEntryOffset(static_cast<uint32_t>(s)));
    std::copy_n(
        header.begin() + PackFormat::kNamesOffset, result._namesArea.size(), result._namesArea.begin());
    result.ParseNames();
    return result;
}

PackHeader::Sector PackHeader::Write() const
{
    Sector sector {};
    std::copy(_magic.begin(), _magic.end(), sector.begin() + PackFormat::kMagicOffset);
    ForEachWord(*this, [&sector](std::size_t offset, auto const& field) {
        PackFormat::WriteU32(sector, offset, WordOf(field));
    });
    for (std::size_t s = 0; s < _crcTable.size(); ++s)
        PackFormat::WriteU16(sector, PackFormat::CrcEntryOffset(static_cast<uint32_t>(s)), _crcTable[s]);
    std::copy(_namesArea.begin(), _namesArea.end(), sector.begin() + PackFormat::kNamesOffset);
    return sector;
}

void PackHeader::SetNames(PackFormat::NamesArea const& names)
{
    _namesUsed = names.used;
    _namesCount = names.count;
    std::copy(std::begin(names.data), std::end(names.data), _namesArea.begin());
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

void PackHeader::ParseNames()
{
    std::span<uint8_t const> const area = _namesArea;
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
