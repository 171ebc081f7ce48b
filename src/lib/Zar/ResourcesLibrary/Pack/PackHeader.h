#pragma once

#include "Zar/Lt/Core/Version32.h"
#include "Zar/ResourcesLibrary/Pack/PackFormat.h"

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace Zar::ResourcesLibrary::Pack {

// The fields of a pack's header sector. The exporter fills them and writes the sector; readers parse
// them as they stand: nothing here trusts them. Reading the names area never fails; what does not add
// up is collected in _nameProblems, for a verifier to report.
class PackHeader {
public:
    using Sector = std::array<uint8_t, PackFormat::kSectorSize>;

    // Reads the header sector at the start of the span, which must hold at least a whole sector.
    static PackHeader Parse(std::span<uint8_t const> header);
    // The header sector of these fields: the magic, the words, the CRC table and the names area's
    // bytes; every byte outside them 0. Parse reads back what this writes.
    Sector Write() const;
    // Sets the names area's counters and bytes from a block the exporter filled.
    void SetNames(PackFormat::NamesArea const& names);

    bool HasMagic() const;
    bool HasKnownFormat() const;
    // The CRC-table entry of a target sector; 0 for a number past the table.
    uint16_t CrcEntry(uint64_t sector) const;

    std::array<uint8_t, 4> _magic {};
    uint32_t _format = 0;
    Zar::Lt::Core::Version32 _version;
    uint32_t _firstSector = 0;
    uint32_t _iconCount = 0;
    uint32_t _screenCount = 0;
    std::array<uint16_t, PackFormat::kStoreSectors> _crcTable {};
    uint32_t _namesUsed = 0;
    uint32_t _namesCount = 0;
    // The names area's bytes as they stand.
    std::array<uint8_t, PackFormat::kNamesCapacity> _namesArea {};
    // The names that could be read, icons first, then screens.
    std::vector<std::string> _names;
    std::vector<std::string> _nameProblems;

private:
    // Calls field(offset, member) for each 32-bit field in file order: the one list of them that
    // both Parse and Write go through.
    template <typename Header, typename Field> static void ForEachWord(Header& header, Field const& field);
    void ParseNames();
};

} // namespace Zar::ResourcesLibrary::Pack
