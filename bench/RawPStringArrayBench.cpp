#include "BenchCheck.h"
#include "IconNames.h"

#include "Zar/Lt/Core/StringCollection/RawPStringArray.h"
#include "Zar/ResourcesLibrary/Pack/PackFormat.h"

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

using Zar::Lt::Core::RawPStringArray;
using Zar::ResourcesLibrary::Pack::PackFormat;

namespace {

// As many names of the usual kind as the pack header's names area holds.
std::vector<std::string> NamesThatFit()
{
    std::vector<std::string> fitting;
    std::size_t used = 0;
    for (auto& name : Zar::Bench::IconNames(1000)) {
        if (used + 1 + name.size() > PackFormat::kNamesCapacity)
            break;
        used += 1 + name.size();
        fitting.push_back(std::move(name));
    }
    return fitting;
}

// Filling the names area of one header, as the exporter does when it closes a pack.
void RawPStringArrayAppend(benchmark::State& state)
{
    auto const names = NamesThatFit();
    RawPStringArray<PackFormat::kNamesCapacity> check;
    for (auto const& name : names)
        check.Append(name.c_str(), name.size());
    if (!Zar::Bench::Check(state, check.count == names.size() && check.used > PackFormat::kNamesCapacity - 19,
            "the names do not fill the area"))
        return;
    for (auto _ : state) {
        RawPStringArray<PackFormat::kNamesCapacity> block;
        for (auto const& name : names)
            block.Append(name.c_str(), name.size());
        benchmark::DoNotOptimize(block.data);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(names.size()));
}
BENCHMARK(RawPStringArrayAppend);

} // namespace
