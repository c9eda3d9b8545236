#include "kit/Progress.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>
#include <unistd.h>

namespace kit {
namespace {

std::atomic<char const*> currentPhase{"reading"};
std::atomic<std::size_t> currentCount{0};

constexpr auto patience = std::chrono::seconds(1);
constexpr auto interval = std::chrono::milliseconds(200);
constexpr char const* eraseLine = "\r\x1b[K";

void show(std::string const& text) {
    // A terminal that takes no text is no reason to stop.
    [[maybe_unused]] ssize_t const written = write(STDERR_FILENO, text.data(), text.size());
}

std::string lineNow() {
    std::string line = std::string(eraseLine) + currentPhase.load();
    std::size_t const objects = currentCount;
    if (objects > 0) {
        line += ", " + std::to_string(objects) + " objects";
    }
    return line + " ...";
}

class Clockwork {
public:
    void start() {
        stopped = false;
        thread = std::thread([this] { run(); });
    }

    void stop() {
        {
            std::lock_guard<std::mutex> const lock(mutex);
            stopped = true;
        }
        wake.notify_all();
        if (thread.joinable()) {
            thread.join();
        }
    }

private:
    void run() {
        std::unique_lock<std::mutex> lock(mutex);
        auto const isStopped = [this] { return stopped; };
        if (wake.wait_for(lock, patience, isStopped)) {
            return;
        }
        do {
            show(lineNow());
        } while (!wake.wait_for(lock, interval, isStopped));
        show(eraseLine);
    }

    std::mutex mutex;
    std::condition_variable wake;
    std::thread thread;
    bool stopped = true;
};

Clockwork& clockwork() {
    static Clockwork theOne;
    return theOne;
}

} // namespace

void Progress::phase(char const* what) {
    currentCount = 0;
    currentPhase = what;
}

void Progress::count(std::size_t objects) {
    currentCount.store(objects, std::memory_order_relaxed);
}

ProgressDisplay::ProgressDisplay(bool wanted) {
    if (wanted) {
        clockwork().start();
    }
}

ProgressDisplay::~ProgressDisplay() {
    end();
}

void ProgressDisplay::end() {
    clockwork().stop();
}

} // namespace kit
