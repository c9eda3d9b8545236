#pragma once

#undef NDEBUG // the report of the C library's assert is wanted in every build type
#include <cassert>

/// Ends the process with the report that the C library prints for a failed assertion.
[[noreturn]] inline void qorAssertionFailed(char const* expression, char const* file, unsigned line,
                                            char const* function) {
    __assert_fail(expression, file, line, function);
}
