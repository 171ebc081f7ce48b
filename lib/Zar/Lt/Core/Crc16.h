#pragma once

#include <array>
#include <cstdint>
#include <vector>

namespace Zar::Lt::Core {

// CRC-16/ARC (polynomial 0x8005 reflected, initial value 0, no final exclusive-or), fed one byte at
// a time so that a writer can keep it running beside the bytes it writes.
class Crc16 {
public:
    // Feeds one byte; returns the new value.
    uint16_t Next(uint8_t byte);
    // Feeds the same byte count times, as for padding; returns the value.
    uint16_t Value(uint8_t byte, unsigned count);
    // Feeds length bytes in order; returns the value.
    uint16_t Value(uint8_t const* data, unsigned length);

    // One CRC per chunk of data, each from 0, the last chunk completed with pad bytes: the CRC of
    // every chunk as it stands padded in a file. A length below 1 gives no value.
    static std::vector<uint16_t> GetValues(uint8_t const* data, int length, uint16_t chunk, uint8_t pad);

    uint16_t Get() const { return _value; }
    void Reset() { _value = 0; }

private:
    // Entry i is the CRC of the single byte i.
    static std::array<uint16_t, 256> const _table;

    uint16_t _value = 0;
};

} // namespace Zar::Lt::Core
