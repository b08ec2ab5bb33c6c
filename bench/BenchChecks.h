#pragma once

// Store calls in benchmarks: a failure is never timed as if it were work. Inside a benchmark it
// stops that benchmark with the failure's message; while the input is being built there is no
// benchmark to stop, and it ends the program with the message.

#include "common/Result.h"

#include <benchmark/benchmark.h>

#include <QtGlobal>

namespace kestrum::bench {

// Whether `result` failed; when it did, the benchmark is stopped with its message and the caller
// leaves the benchmark loop (or returns).
template <class R> bool failed(benchmark::State& state, const R& result)
{
    if (result.ok()) {
        return false;
    }
    state.SkipWithError(qPrintable(result.error()));
    return true;
}

// For building a benchmark's input: a failure ends the program with its message.
template <class R> void require(const R& result)
{
    if (!result.ok()) {
        qFatal("The benchmark input cannot be built: %s", qPrintable(result.error()));
    }
}

} // namespace kestrum::bench
