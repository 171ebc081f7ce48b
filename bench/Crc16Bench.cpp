#include "BenchCheck.h"

#include "Zar/Lt/Core/Crc16.h"
#include "Zar/ResourcesLibrary/Pack/PackFormat.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <vector>

using Zar::Lt::Core::Crc16;

namespace {

// The sectors of a pack; the counts the CRC functions take are unsigned and int.
constexpr unsigned kSectorSize = Zar::ResourcesLibrary::Pack::PackFormat::kSectorSize;
constexpr int kScreenSize = 8192;

std::vector<uint8_t> VariedBytes(std::size_t size)
{
    std::vector<uint8_t> bytes(size);
    uint32_t state = 1;
    for (auto& byte : bytes) {
        state = state * 1664525u + 1013904223u;
        byte = static_cast<uint8_t>(state >> 24);
    }
    return bytes;
}

// Runs of bytes go through a faster path than single bytes; both must give the same value for any
// length, from any running value.
bool RunsEqualSingleBytes()
{
    auto const bytes = VariedBytes(80);
    for (unsigned start = 0; start < 8; ++start) {
        for (unsigned length = 0; length + start <= bytes.size(); ++length) {
            Crc16 run;
            Crc16 single;
            run.Next(static_cast<uint8_t>(start));
            single.Next(static_cast<uint8_t>(start));
            for (unsigned i = 0; i < length; ++i)
                single.Next(bytes[start + i]);
            Crc16 repeated = run;
            Crc16 repeatedSingly = run;
            for (unsigned i = 0; i < length; ++i)
                repeatedSingly.Next(0xFF);
            if (run.Value(bytes.data() + start, length) != single.Get()
                || repeated.Value(0xFF, length) != repeatedSingly.Get())
                return false;
        }
    }
    return true;
}

bool KnownValuesHold()
{
    uint8_t const check[] = { '1', '2', '3', '4', '5', '6', '7', '8', '9' };
    Crc16 text;
    Crc16 padding;
    return text.Value(check, sizeof(check)) == 0xBB3D && padding.Value(0xFF, kSectorSize) == 0x6000
        && RunsEqualSingleBytes();
}

// The running CRC of an icon sector: data fed as it is written.
void Crc16SectorData(benchmark::State& state)
{
    if (!Zar::Bench::Check(state, KnownValuesHold(), "CRC-16 check values differ"))
        return;
    auto const sector = VariedBytes(kSectorSize);
    for (auto _ : state) {
        Crc16 crc;
        benchmark::DoNotOptimize(crc.Value(sector.data(), kSectorSize));
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * kSectorSize);
}
BENCHMARK(Crc16SectorData);

// The tail of a sector: one byte value fed many times.
void Crc16SectorPadding(benchmark::State& state)
{
    if (!Zar::Bench::Check(state, KnownValuesHold(), "CRC-16 check values differ"))
        return;
    for (auto _ : state) {
        Crc16 crc;
        benchmark::DoNotOptimize(crc.Value(0xFF, kSectorSize));
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * kSectorSize);
}
BENCHMARK(Crc16SectorPadding);

// The CRCs of the two sectors of one 256 x 64 screen.
void Crc16GetValuesScreen(benchmark::State& state)
{
    auto const screen = VariedBytes(kScreenSize);
    auto const values = Crc16::GetValues(screen.data(), kScreenSize, kSectorSize, 0xFF);
    Crc16 first;
    if (!Zar::Bench::Check(state, values.size() == 2 && values[0] == first.Value(screen.data(), kSectorSize),
            "GetValues does not give one CRC per sector"))
        return;
    for (auto _ : state)
        benchmark::DoNotOptimize(Crc16::GetValues(screen.data(), kScreenSize, kSectorSize, 0xFF));
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * kScreenSize);
}
BENCHMARK(Crc16GetValuesScreen);

} // namespace
