#pragma once

#include <cstdio>
#include <cstdlib>
#include <cstring>

/// Ends the process with what should have held.
inline void require(bool holds, char const* what) {
    if (!holds) {
        std::fprintf(stderr, "doesn't hold: %s\n", what);
        std::abort();
    }
}
