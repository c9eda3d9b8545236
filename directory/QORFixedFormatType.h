#pragma once

#include <qor/QORString.h>

/// Ends in throwing the integer 1, as a concrete metadata format does for a format type that isn't its own.
inline void qorRequireFormatType(QORString const& value, char const* fixed) {
    if (value != fixed)
        throw 1;
}
