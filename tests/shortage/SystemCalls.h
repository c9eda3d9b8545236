#pragma once

#include <functional>
#include <string>

/// What a program takes from the system, below the library and below the C library.
enum class SystemCall { MALLOC, MMAP, MADVISE, MUNMAP };

/// While it lives, the call after `spared` further ones of the calling thread fails; if `lasting`, so do all
/// calls after that one.
class FailingCalls {
public:
    FailingCalls(SystemCall call, long spared, bool lasting);
    FailingCalls(FailingCalls const&) = delete;
    FailingCalls& operator=(FailingCalls const&) = delete;
    ~FailingCalls();
    /// Whether a call has failed.
    bool hit() const;
};

/// Runs the function in a child process, in which nothing is left of what earlier ones did, and returns its
/// text; "died" if the process ends otherwise.
std::string inChild(std::function<std::string()> const& function);
