#pragma once

#include <cstddef>

namespace kit {

/// The current phase of a program and its progress, for waiting users. Any code may report it; a
/// ProgressDisplay shows it.
class Progress {
public:
    /// Begins a phase. `what` is a literal such as "reading".
    static void phase(char const* what);
    /// How many objects are done.
    static void count(std::size_t objects);
};

/// Shows the progress on the standard error while it lives, in one line that appears after the first second
/// and is removed at the end. There is one display at a time.
class ProgressDisplay {
public:
    /// Shows nothing unless `wanted`.
    explicit ProgressDisplay(bool wanted);
    ProgressDisplay(ProgressDisplay const&) = delete;
    ProgressDisplay& operator=(ProgressDisplay const&) = delete;
    ~ProgressDisplay();

    /// Removes the line for good, so that something else can be written.
    static void end();
};

} // namespace kit
