#pragma once

#include <benchmark/benchmark.h>

#include <chrono>

/// Adds what one item of the benchmark cost; `items` is their number in each iteration.
inline void reportPerItem(benchmark::State& state, double items) {
    using benchmark::Counter;
    state.counters["per_item"] = Counter(items, Counter::kIsIterationInvariantRate | Counter::kInvert);
}

/// Times `run` alone, for a benchmark that prepares each iteration; to be registered with `UseManualTime`.
template <class Run>
void timeIteration(benchmark::State& state, Run run) {
    auto const start = std::chrono::steady_clock::now();
    run();
    std::chrono::duration<double> const spent = std::chrono::steady_clock::now() - start;
    state.SetIterationTime(spent.count());
}
