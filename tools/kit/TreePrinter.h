#pragma once

#include <iosfwd>
#include <string>
#include <string_view>

class QORObject;

namespace kit {

/// The text in quotation marks on one line: quotation marks, backslashes and control characters are escaped,
/// everything else, UTF-8 included, passes.
std::string quoted(std::string_view text);

/// An object on one line: its class, its name, the attributes that differ from their default text as
/// `attribute=value`, and the references to one object as `role->"name"`.
std::string lineOf(QORObject& object);

/// Writes an object and all that it owns, a line for each object, indented below its owner by two blanks;
/// below 100 owners the indentation stays and the number of owners is before the class, "(101) ".
/// It reads the objects only through reflection. Equal graphs produce equal texts. An object that has
/// a second owner is written in full below the first one met and marked "(above)" below the other.
void printTree(QORObject& root, std::ostream& out);

} // namespace kit
