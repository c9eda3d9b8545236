#pragma once

#include <iosfwd>

class QORObject;

namespace documents {

/// Writes a page with a chapter for each class, table and view, and in it a table of its columns and a list
/// of its keys and indexes.
void writeMarkdown(QORObject& root, std::ostream& out);

} // namespace documents
