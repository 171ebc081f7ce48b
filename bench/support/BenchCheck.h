#pragma once

#include <benchmark/benchmark.h>

namespace Zar::Bench {

// Every benchmark checks its result once before it starts timing, so that a fast run of wrong code
// is never reported as a gain. A failed check skips that benchmark with its reason and makes the
// program exit with status 1 (see BenchMain.cpp), which is what the smoke test looks at.
inline bool& AnyCheckFailed()
{
    static bool failed = false;
    return failed;
}

inline bool Check(benchmark::State& state, bool condition, char const* what)
{
    if (condition)
        return true;
    AnyCheckFailed() = true;
    state.SkipWithError(what);
    return false;
}

} // namespace Zar::Bench
