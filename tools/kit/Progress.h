#pragma once

#include <cstddef>

namespace kit {

/// What a program is at and how far it has come, for people who wait. Anyone may tell; a ProgressDisplay
/// shows it.
class Progress {
public:
    /// Begins with something. `what` is a literal such as "reading".
    static void phase(char const* what);
    /// How many objects are done.
    static void count(std::size_t objects);
};

/// Shows the progress on the standard error while it lives, in one line that is there from the first second
/// on and goes at the end. There is one display at a time.
class ProgressDisplay {
public:
    /// Shows nothing unless `wanted`.
    explicit ProgressDisplay(bool wanted);
    ProgressDisplay(ProgressDisplay const&) = delete;
    ProgressDisplay& operator=(ProgressDisplay const&) = delete;
    ~ProgressDisplay();

    /// Takes the line away for good, so that something else can be written.
    static void end();
};

} // namespace kit
