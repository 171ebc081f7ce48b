#include "Zar/ResourcesLibrary/Pack/PackFormat.h"

namespace Zar::ResourcesLibrary::Pack {

uint16_t PackFormat::ReadU16(std::span<uint8_t const> bytes, std::size_t offset)
{
    return static_cast<uint16_t>(bytes[offset] | bytes[offset + 1] << 8);
}

uint32_t PackFormat::ReadU32(std::span<uint8_t const> bytes, std::size_t offset)
{
    return static_cast<uint32_t>(bytes[offset]) | static_cast<uint32_t>(bytes[offset + 1]) << 8
        | static_cast<uint32_t>(bytes[offset + 2]) << 16 | static_cast<uint32_t>(bytes[offset + 3]) << 24;
}

void PackFormat::WriteU16(std::span<uint8_t> bytes, std::size_t offset, uint16_t value)
{
    bytes[offset] = static_cast<uint8_t>(value);
    bytes[offset + 1] = static_cast<uint8_t>(value >> 8);
}

void PackFormat::WriteU32(std::span<uint8_t> bytes, std::size_t offset, uint32_t value)
{
    for (std::size_t i = 0; i < 4; ++i)
        bytes[offset + i] = static_cast<uint8_t>(value >> (8 * i));
}

} // namespace Zar::ResourcesLibrary::Pack
