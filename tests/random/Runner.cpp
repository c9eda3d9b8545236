#include "Runner.h"

#include "Chooser.h"
#include "Deaths.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstring>
#include <ctime>
#include <exception>
#include <new>
#include <sstream>
#include <stdexcept>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace model {

/// What a child process leaves behind, also when it crashes.
struct Runner::Shared {
    Coverage coverage;
    std::size_t stepCount;
    std::array<Step, 8192> steps;
    std::array<char, 4096> message;
};

namespace {

constexpr unsigned secondsForARun = 120;
constexpr int shrinkSeconds = 120;

void rememberMessage(std::array<char, 4096>& place, char const* text) {
    std::strncpy(place.data(), text, place.size() - 1);
}

/// What the library allocates must have come back when all objects have gone. An empty universe and the step
/// list need next to nothing of their own.
class LeakCheck {
public:
    void expectNone() const {
        long const left = deaths::liveBlocks() - before;
        if (left > allowance)
            throw Mismatch(std::to_string(left) + " blocks of memory are left");
    }

private:
    static constexpr long allowance = 8;
    long before = deaths::liveBlocks();
};

/// A message without the numbers and names of objects, by which two runs hardly ever agree.
std::string sortOf(std::string const& message) {
    std::string sort;
    bool quoted = false;
    for (char const each : message) {
        quoted ^= each == '"';
        if (!quoted && !(each >= '0' && each <= '9'))
            sort += each;
    }
    return sort;
}

std::string endOfProcess(int status) {
    if (WIFSIGNALED(status))
        return std::string("the process was ended by a signal: ") + strsignal(WTERMSIG(status));
    return "the process ended with the code " + std::to_string(WEXITSTATUS(status));
}

} // namespace

Runner::Runner(Plant plant, bool withoutMemory) : planted(plant), memoryEnds(withoutMemory) {
    void* const memory =
        mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED)
        throw std::bad_alloc();
    shared = new (memory) Shared();
    // Made before any child, so that all begin alike.
    metamodel::classes();
    metamodel::ends();
    for (Class const& each : metamodel::classes())
        if (each.name)
            shapeOf(each.id);
    Universe::prepare();
}

Runner::~Runner() {
    munmap(shared, sizeof(Shared));
}

Coverage const& Runner::coverage() const {
    return shared->coverage;
}

template <class Body>
Finding Runner::inChild(Body body) {
    shared->stepCount = 0;
    shared->message[0] = '\0';
    pid_t const child = fork();
    if (child < 0)
        throw std::runtime_error("no process can be made");
    if (child == 0) {
        alarm(secondsForARun);
        int code = 0;
        try {
            body();
        } catch (std::exception const& error) {
            rememberMessage(shared->message, error.what());
            code = 1;
        }
        _exit(code);
    }
    int status = 0;
    waitpid(child, &status, 0);
    Finding finding;
    finding.failed = status != 0;
    if (finding.failed)
        finding.message = shared->message[0] ? std::string(shared->message.data()) : endOfProcess(status);
    finding.steps.assign(shared->steps.begin(),
                         shared->steps.begin() + static_cast<std::ptrdiff_t>(shared->stepCount));
    return finding;
}

Finding Runner::explore(unsigned long seed, int steps) {
    Chooser chooser(seed, memoryEnds);
    Finding finding = inChild([&] {
        deaths::watchAll(chooser.bypassesPool() || memoryEnds);
        LeakCheck const leaks;
        Universe universe(shared->coverage, planted, memoryEnds);
        for (int i = 0; i < steps; ++i) {
            Step const step = chooser.next(universe.world);
            shared->steps[shared->stepCount++] = step;
            universe.perform(step);
        }
        universe.checkAll();
        universe.clear();
        leaks.expectNone();
    });
    finding.withoutPool = chooser.bypassesPool() || memoryEnds;
    return finding;
}

Finding Runner::replay(std::vector<Step> const& steps, bool withoutPool) {
    Finding finding = inChild([&] {
        deaths::watchAll(withoutPool);
        Coverage ignored{};
        LeakCheck const leaks;
        Universe universe(ignored, planted, memoryEnds);
        for (Step const& step : steps) {
            shared->steps[shared->stepCount++] = step;
            universe.perform(step);
        }
        universe.checkAll();
        universe.clear();
        leaks.expectNone();
    });
    finding.withoutPool = withoutPool;
    return finding;
}

Finding Runner::shrink(Finding finding) {
    std::string const sort = sortOf(finding.message); // or another fault might be run after
    std::time_t const end = std::time(nullptr) + shrinkSeconds;
    std::size_t size = std::max<std::size_t>(finding.steps.size() / 2, 1);
    bool shorter = false;
    for (std::size_t from = 0; std::time(nullptr) < end;) {
        if (from >= finding.steps.size()) {
            if (size == 1 && !shorter)
                break;
            shorter = false;
            size = std::max<std::size_t>(size / 2, 1);
            from = 0;
            continue;
        }
        std::vector<Step> fewer = finding.steps;
        auto const first = fewer.begin() + static_cast<std::ptrdiff_t>(from);
        auto const last = first + static_cast<std::ptrdiff_t>(std::min(size, fewer.size() - from));
        fewer.erase(first, last);
        Finding const again = replay(fewer, finding.withoutPool);
        if (again.failed && sortOf(again.message) == sort) {
            finding = again; // which ends with the step that fails
            shorter = true;
        } else {
            from += size;
        }
    }
    return finding;
}

std::string report(Finding const& finding) {
    std::ostringstream text;
    text << finding.message << "\nafter " << finding.steps.size() << " steps"
         << (finding.withoutPool ? "" : " with the pool") << ":\n";
    for (Step const& step : finding.steps)
        text << "  " << describe(step) << "\n";
    return text.str();
}

} // namespace model
