#pragma once

#include "values.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>

/// Ends the program with status 3 when a result isn't the expected one: a wrong result has no speed.
#define WORKLOAD_REQUIRE(condition)                                                                          \
    do {                                                                                                     \
        if (!(condition))                                                                                    \
            failedSelfCheck(#condition, __FILE__, __LINE__);                                                 \
    } while (0)

[[noreturn]] void failedSelfCheck(char const* condition, char const* file, int line);

/// Times the phases and prints each as a line of JSON.
class Report {
public:
    /// With W_WARM_MB in the environment, that many MiB of heap and pool are touched and kept first, and
    /// "-warm" is added to the name: the build then sees the heap of a process that has been running for a
    /// while.
    Report(char const* program, WorkloadSize const& size);

    /// Runs `run`, which gives a number that proves its work; `count` is what the time is divided by.
    template <class Run>
    std::uint64_t phase(char const* name, std::size_t count, Run run) {
        auto const start = now();
        auto const spentAtStart = spent();
        std::uint64_t const check = run();
        auto const spentInPhase = spent() - spentAtStart;
        finish(name, count, spentInPhase, check);
        mark(name, start, now());
        return check;
    }

    /// Prints the peak of the resident memory.
    void peak() const;

private:
    using Nanoseconds = std::chrono::nanoseconds;
    static Nanoseconds now() { return std::chrono::steady_clock::now().time_since_epoch(); }
    Nanoseconds spent() const { return byProcessorTime ? processorTime() : now(); }
    static Nanoseconds processorTime();
    void finish(char const* name, std::size_t count, Nanoseconds time, std::uint64_t check);
    static void mark(char const* name, Nanoseconds start, Nanoseconds end);
    void line(char const* name, std::size_t count, double nanoseconds, double megabytes,
              std::uint64_t check) const;

    std::string program;
    WorkloadSize size;
    bool byProcessorTime;
    double megabytesAtStart;
    double bytesPerObject = 0;
    double netBytesPerObject = 0;
};
