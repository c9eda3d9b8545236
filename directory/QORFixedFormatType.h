#pragma once

#include <qor/QORString.h>

#include <cstring>

/// Ends in throwing the integer 1, as a concrete metadata format does for a format type that isn't its own.
/// Allocates nothing, as it comes in the middle of an assignment.
inline void qorRequireFormatType(QORString const& value, char const* fixed) {
    if (std::strcmp(value.chars, fixed) != 0)
        throw 1;
}
