#include "report.h"

#include <qor/QORPool.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <malloc.h>
#include <sys/resource.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr double bytesPerMegabyte = 1024.0 * 1024.0;

double residentMegabytes() {
    std::FILE* const file = std::fopen("/proc/self/statm", "r");
    if (!file)
        return 0;
    long pages = 0;
    int const fields = std::fscanf(file, "%*d %ld", &pages);
    std::fclose(file);
    return fields == 1
               ? static_cast<double>(pages) * static_cast<double>(sysconf(_SC_PAGESIZE)) / bytesPerMegabyte
               : 0;
}

bool warmHeap() {
    char const* const megabytes = std::getenv("W_WARM_MB");
    if (!megabytes)
        return false;
    constexpr int blockMegabytes = 16;
    constexpr std::size_t blockSize = std::size_t{blockMegabytes} << 20;
    mallopt(M_MMAP_THRESHOLD, 2 * static_cast<int>(blockSize));
    mallopt(M_TRIM_THRESHOLD, 0x7fffffff);
    std::vector<void*> blocks;
    int const all = std::atoi(megabytes);
    int const pooled = all / 4 * 3; // objects and nodes come from the pool, long texts from malloc
    QORPool::reserve(static_cast<std::size_t>(pooled) << 20);
    for (int left = all - pooled; left > 0; left -= blockMegabytes) {
        void* const block = std::malloc(blockSize);
        if (!block)
            break;
        std::memset(block, left | 1, blockSize);
        blocks.push_back(block);
    }
    for (void* const block : blocks)
        std::free(block);
    return true;
}

double inNanoseconds(std::chrono::nanoseconds time) {
    return static_cast<double>(time.count());
}

} // namespace

void failedSelfCheck(char const* condition, char const* file, int line) {
    std::fprintf(stderr, "self-check failed: %s (%s:%d)\n", condition, file, line);
    std::exit(3);
}

Report::Report(char const* ofProgram, WorkloadSize const& ofSize)
    : program(ofProgram), size(ofSize), byProcessorTime(std::getenv("W_CPU_TIME") != nullptr) {
    if (warmHeap())
        program += "-warm";
    megabytesAtStart = residentMegabytes();
}

Report::Nanoseconds Report::processorTime() {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return std::chrono::seconds(time.tv_sec) + Nanoseconds(time.tv_nsec);
}

// With W_MARKS, the bounds of each phase go to stderr, on the clock that a profiler stamps its samples with.
void Report::mark(char const* name, Nanoseconds start, Nanoseconds end) {
    if (std::getenv("W_MARKS"))
        std::fprintf(stderr, "%s %.9f %.9f\n", name, inNanoseconds(start) / 1e9, inNanoseconds(end) / 1e9);
}

void Report::finish(char const* name, std::size_t count, Nanoseconds time, std::uint64_t check) {
    double const megabytes = residentMegabytes();
    if (std::strcmp(name, "1-build") == 0) {
        double const objects = static_cast<double>(size.objectCount());
        bytesPerObject = megabytes * bytesPerMegabyte / objects;
        netBytesPerObject = (megabytes - megabytesAtStart) * bytesPerMegabyte / objects;
    }
    line(name, count, inNanoseconds(time), megabytes, check);
}

void Report::line(char const* name, std::size_t count, double nanoseconds, double megabytes,
                  std::uint64_t check) const {
    std::printf("{\"peer\":\"%s\",\"size\":\"%s\",\"phase\":\"%s\",\"ns_per_object\":%.2f,\"total_ms\":%.3f,"
                "\"rss_mb\":%.1f,\"bytes_per_object\":%.0f,\"net_bytes_per_object\":%.0f,\"count\":%zu,"
                "\"check\":%llu}\n",
                program.c_str(), size.name, name, count ? nanoseconds / static_cast<double>(count) : 0,
                nanoseconds / 1e6, megabytes, bytesPerObject, netBytesPerObject, count,
                static_cast<unsigned long long>(check));
    std::fflush(stdout);
}

void Report::peak() const {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    line("peak", 0, 0, static_cast<double>(usage.ru_maxrss) / 1024.0, 0);
}
