#include "BenchCheck.h"
#include "IconNames.h"

#include "CppEnumerationOutput.h"
#include "HelperEnumerationOutput.h"
#include "PythonCommandsOutput.h"
#include "PythonEnumerationOutput.h"

#include "Zar/Lt/Core/StringCollection/StringCollection.h"

#include <benchmark/benchmark.h>

#include <sstream>
#include <string>

using Zar::ResourcesLibrary::Tools::CppEnumerationOutput;
using Zar::ResourcesLibrary::Tools::EnumerationOption;
using Zar::ResourcesLibrary::Tools::HelperEnumerationOutput;
using Zar::ResourcesLibrary::Tools::PythonCommandsOutput;
using Zar::ResourcesLibrary::Tools::PythonEnumerationOutput;

namespace {

constexpr int kNamesCount = 400;

Zar::Lt::Core::StringCollection Names()
{
    Zar::Lt::Core::StringCollection names;
    for (auto const& name : Zar::Bench::IconNames(kNamesCount))
        names.Append(std::string_view(name));
    return names;
}

// One whole generated file, in the order the exporter drives a writer.
template <typename Output> std::string WriteFile(Zar::Lt::Core::StringCollection const& names)
{
    EnumerationOption const option { "Icon", 100, true };
    std::ostringstream stream;
    Output output(stream, option);
    output.WriteHeader();
    output.Write(names, 0);
    output.WriteFooter(output.Count());
    return stream.str();
}

template <typename Output> void WriteEnumeration(benchmark::State& state)
{
    auto const names = Names();
    auto const sample = WriteFile<Output>(names);
    if (!Zar::Bench::Check(state, sample.find("Icon0399") != std::string::npos, "the names are not written"))
        return;
    for (auto _ : state)
        benchmark::DoNotOptimize(WriteFile<Output>(names));
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * kNamesCount);
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(sample.size()));
}

BENCHMARK_TEMPLATE(WriteEnumeration, CppEnumerationOutput);
BENCHMARK_TEMPLATE(WriteEnumeration, PythonEnumerationOutput);
BENCHMARK_TEMPLATE(WriteEnumeration, HelperEnumerationOutput);
BENCHMARK_TEMPLATE(WriteEnumeration, PythonCommandsOutput);

} // namespace
