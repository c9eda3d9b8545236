#pragma once

#include "database/Structure.h"

#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

namespace database {

/// A part of a structure that a writer of SQL omits, since the system lacks it or may not accept
/// it.
struct Omission {
    std::string object;   ///< such as "index by_name"
    std::string reason;   ///< such as "SQLite has no sequences"
    std::string original; ///< the text in the structure, where that helps to write it by hand
};
using Omissions = std::vector<Omission>;

/// The omission of an extra of an object that a system lacks.
Omission omissionOf(Extra const& extra, std::string const& object, char const* system);

/// The line that reports an omission, without the original text.
std::string textOf(Omission const& omission);

/// Writes a text as comments of SQL, whatever it holds.
void writeComment(std::string_view text, std::ostream& out);

/// Writes an omission as a comment, and keeps it in the list.
void leaveOut(Omission omission, std::ostream& out, Omissions& list);

} // namespace database
