#include "BenchCheck.h"

#include <benchmark/benchmark.h>

// The library's own main, plus an exit status that reports failed result checks.
int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return Zar::Bench::AnyCheckFailed() ? 1 : 0;
}
