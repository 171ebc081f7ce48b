#pragma once

#include <cstdint>

namespace Zar::Lt::Core {

// An unsigned 32-bit number kept as its four little-endian bytes, for structures that are laid into
// a file byte for byte: the bytes in memory are the file's bytes on every machine, big-endian ones
// included, while the code reads and writes it as a plain number.
class LittleEndianU32 {
public:
    constexpr LittleEndianU32() = default;
    constexpr LittleEndianU32(uint32_t value) { Store(value); }

    constexpr LittleEndianU32& operator=(uint32_t value)
    {
        Store(value);
        return *this;
    }

    constexpr operator uint32_t() const
    {
        return static_cast<uint32_t>(_bytes[0]) | static_cast<uint32_t>(_bytes[1]) << 8
            | static_cast<uint32_t>(_bytes[2]) << 16 | static_cast<uint32_t>(_bytes[3]) << 24;
    }

    constexpr LittleEndianU32& operator++()
    {
        Store(static_cast<uint32_t>(*this) + 1);
        return *this;
    }

private:
    constexpr void Store(uint32_t value)
    {
        for (int k = 0; k < 4; ++k)
            _bytes[k] = static_cast<uint8_t>(value >> (8 * k));
    }

    uint8_t _bytes[4] = {};
};

static_assert(sizeof(LittleEndianU32) == 4);

} // namespace Zar::Lt::Core
