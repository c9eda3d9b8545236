#pragma once

#include "database/Structure.h"

#include <string>
#include <string_view>
#include <vector>

/// Short ways to what records hold.
namespace database {

template <class Record>
Record const& at(std::vector<Record> const& records, int index) {
    return records[static_cast<std::size_t>(index)];
}

inline bool has(Named const& thing, char const* extra) {
    return findExtra(thing.extras, extra) != nullptr;
}

/// The value of an extra, empty without it.
inline std::string valueOf(Extras const& extras, char const* name) {
    std::string const* const value = findExtra(extras, name);
    return value ? *value : "";
}

/// An extra between other words, nothing without it.
inline std::string clause(Extras const& extras, char const* name, char const* before,
                          char const* behind = "") {
    std::string const value = valueOf(extras, name);
    return value.empty() ? "" : before + value + behind;
}

inline bool beginsWith(std::string const& text, std::string_view start) {
    return text.compare(0, start.size(), start) == 0;
}

} // namespace database
