#pragma once

#include <iosfwd>

class QORObject;

namespace documents {

/// Writes a drawing in the DOT language: a box for each class, table and view with its columns, within the
/// frames of the packages that own them, and an arrow for each relation between two of them.
void writeDot(QORObject& root, std::ostream& out);

} // namespace documents
