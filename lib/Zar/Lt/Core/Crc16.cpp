#include "Zar/Lt/Core/Crc16.h"

#include "Zar/Lt/Exceptions/Check.h"

#include <algorithm>

namespace Zar::Lt::Core {

namespace {

// The reflected form of the polynomial 0x8005: the table works on bytes fed low bit first.
constexpr uint16_t kReflectedPolynomial = 0xA001;

constexpr uint16_t SingleByteCrc(uint8_t byte)
{
    uint16_t crc = byte;
    for (int bit = 0; bit < 8; ++bit)
        crc = (crc & 1) ? static_cast<uint16_t>((crc >> 1) ^ kReflectedPolynomial)
                        : static_cast<uint16_t>(crc >> 1);
    return crc;
}

constexpr std::array<uint16_t, 256> MakeTable()
{
    std::array<uint16_t, 256> table {};
    for (std::size_t i = 0; i < table.size(); ++i)
        table[i] = SingleByteCrc(static_cast<uint8_t>(i));
    return table;
}

constexpr std::array<uint16_t, 256> kTable = MakeTable();
static_assert(kTable[0] == 0x0000 && kTable[1] == 0xC0C1 && kTable[2] == 0xC181 && kTable[255] == 0x4040);

// Runs of bytes are fed four at a time ("slicing"): slice k maps a byte to the CRC it leaves after k
// more zero bytes, so the four lookups of a step are independent of one another and the step costs
// about one lookup's latency instead of four in a chain. Slice 0 is the table itself.
constexpr int kSliceCount = 4;
using Slices = std::array<std::array<uint16_t, 256>, kSliceCount>;

constexpr Slices MakeSlices()
{
    Slices slices {};
    slices[0] = kTable;
    for (std::size_t k = 1; k < slices.size(); ++k)
        for (std::size_t i = 0; i < 256; ++i)
            slices[k][i] = static_cast<uint16_t>((slices[k - 1][i] >> 8) ^ kTable[slices[k - 1][i] & 0xFF]);
    return slices;
}

constexpr Slices kSlices = MakeSlices();

} // namespace

std::array<uint16_t, 256> const Crc16::_table = kTable;

uint16_t Crc16::Next(uint8_t byte)
{
    _value = static_cast<uint16_t>(_table[(byte ^ _value) & 0xFF] ^ (_value >> 8));
    return _value;
}

uint16_t Crc16::Value(uint8_t byte, unsigned count)
{
    // Fed as runs of the byte, through the same path as data.
    std::array<uint8_t, 64> run;
    run.fill(byte);
    while (count > 0) {
        unsigned const taken = std::min<unsigned>(count, run.size());
        Value(run.data(), taken);
        count -= taken;
    }
    return _value;
}

uint16_t Crc16::Value(uint8_t const* data, unsigned length)
{
    ZAR_PRECONDITION(data != nullptr || length == 0);
    uint16_t value = _value;
    unsigned i = 0;
    for (; i + kSliceCount <= length; i += kSliceCount) {
        unsigned const first = (value ^ data[i]) & 0xFF;
        unsigned const second = ((value >> 8) ^ data[i + 1]) & 0xFF;
        value = static_cast<uint16_t>(
            kSlices[3][first] ^ kSlices[2][second] ^ kSlices[1][data[i + 2]] ^ kSlices[0][data[i + 3]]);
    }
    _value = value;
    for (; i < length; ++i)
        Next(data[i]);
    return _value;
}

std::vector<uint16_t> Crc16::GetValues(uint8_t const* data, int length, uint16_t chunk, uint8_t pad)
{
    std::vector<uint16_t> values;
    if (length < 1)
        return values;
    ZAR_PRECONDITION(chunk > 0);
    ZAR_PRECONDITION(data != nullptr);
    // 64-bit offsets: a length near the top of int plus one more chunk must not overflow.
    auto const total = static_cast<int64_t>(length);
    values.reserve(static_cast<std::size_t>((total + chunk - 1) / chunk));
    for (int64_t offset = 0; offset < total; offset += chunk) {
        auto const taken = static_cast<unsigned>(std::min<int64_t>(chunk, total - offset));
        Crc16 crc;
        crc.Value(data + offset, taken);
        values.push_back(crc.Value(pad, chunk - taken));
    }
    return values;
}

} // namespace Zar::Lt::Core
