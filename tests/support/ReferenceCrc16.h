#pragma once

// CRC-16/ARC (polynomial 0x8005 reflected as 0xA001, initial value 0, no final XOR) computed one
// bit at a time. It is kept apart from Zar/Lt/Core/Crc16 on purpose and shares no code with it:
// the tests check the product's table-driven CRC and the CRCs written into packs against this one,
// and a fault in the product's table must not be able to check itself.

#include <cstddef>
#include <cstdint>
#include <vector>

namespace TestSupport {

inline uint16_t ReferenceCrc16(uint8_t const* data, std::size_t size)
{
    uint16_t crc = 0;
    for (std::size_t i = 0; i < size; ++i) {
        crc ^= data[i];
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc & 1) ? static_cast<uint16_t>((crc >> 1) ^ 0xA001) : static_cast<uint16_t>(crc >> 1);
    }
    return crc;
}

inline uint16_t ReferenceCrc16(std::vector<uint8_t> const& bytes)
{
    return ReferenceCrc16(bytes.data(), bytes.size());
}

} // namespace TestSupport
