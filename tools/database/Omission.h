#pragma once

#include "database/Structure.h"

#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

namespace database {

/// Something of a structure that a writer of SQL leaves out, since the system doesn't have it or may not
/// understand it.
struct Omission {
    std::string object;   ///< such as "index by_name"
    std::string reason;   ///< such as "SQLite has no sequences"
    std::string original; ///< what stands in the structure, where that helps to write it by hand
};
using Omissions = std::vector<Omission>;

/// That a system hasn't got what an extra says of an object.
Omission omissionOf(Extra const& extra, std::string const& object, char const* system);

/// The line that announces an omission, without what is left out.
std::string textOf(Omission const& omission);

/// Writes a text as comments of SQL, whatever it holds.
void writeComment(std::string_view text, std::ostream& out);

/// Writes an omission as a comment, and keeps it in the list.
void leaveOut(Omission omission, std::ostream& out, Omissions& list);

} // namespace database
