#pragma once

#include "Zar/Lt/Core/Version32.h"
#include "Zar/ResourcesLibrary/Pack/PackFormat.h"

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace Zar::ResourcesLibrary::Pack {

// The fields of a pack's header sector, read as they stand: nothing here trusts them. Reading the
// names area never fails; what does not add up is collected in _nameProblems, for a verifier to report.
class PackHeader {
public:
    // Reads the header sector at the start of the span, which must hold at least a whole sector.
    static PackHeader Parse(std::span<uint8_t const> header);

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
    // The names that could be read, icons first, then screens.
    std::vector<std::string> _names;
    std::vector<std::string> _nameProblems;

private:
    void ParseNames(std::span<uint8_t const> area);
};

} // namespace Zar::ResourcesLibrary::Pack
