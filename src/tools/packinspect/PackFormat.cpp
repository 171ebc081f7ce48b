#include "PackFormat.h"

namespace Zar::ResourcesLibrary::Tools::Inspect {

uint16_t PackFormat::ReadU16(std::span<uint8_t const> bytes, std::size_t offset)
{
    return static_cast<uint16_t>(bytes[offset] | bytes[offset + 1] << 8);
}

uint32_t PackFormat::ReadU32(std::span<uint8_t const> bytes, std::size_t offset)
{
    return static_cast<uint32_t>(bytes[offset]) | static_cast<uint32_t>(bytes[offset + 1]) << 8
        | static_cast<uint32_t>(bytes[offset + 2]) << 16 | static_cast<uint32_t>(bytes[offset + 3]) << 24;
}

int64_t PackFormat::FirstIconValue(uint32_t firstSector)
{
    return (static_cast<int64_t>(firstSector) - 2) * 10;
}

std::size_t PackFormat::SectorsFor(std::size_t bytes) { return (bytes + SectorSize - 1) / SectorSize; }

} // namespace Zar::ResourcesLibrary::Tools::Inspect
