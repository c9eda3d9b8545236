#pragma once

#include "kit/OutputFile.h"

#include <functional>
#include <iosfwd>
#include <map>
#include <string>
#include <vector>

class QORObject;

namespace kit {

/// An option that only one format takes; it becomes one of the program.
struct FormatOption {
    std::string name; ///< without the two dashes
    std::string help;
    std::vector<std::string> values;
};

/// What is to be written in a format.
struct Exporting {
    QORObject& root;
    std::string source;                         ///< where the graph comes from, as messages name it
    std::map<std::string, std::string> options; ///< the format's own that the user has set
};

/// Writes a text once. Returns what the user must know of it, such as what is left out, a line each.
using Writing = std::function<std::vector<std::string>(std::ostream& out)>;

/// A format that graphs are written in.
struct Format {
    std::string name; ///< as users call it
    std::string help; ///< what it is for, with an article
    FileKind kind;
    /// Checks whether a graph can be written, and throws ToolError if not. Writes nothing yet.
    std::function<Writing(Exporting const& exporting)> prepare;
    std::vector<FormatOption> options = {};
};

/// The `prepare` of a format that takes every graph and no options.
std::function<Writing(Exporting const&)> everyGraph(void (*write)(QORObject& root, std::ostream& out));

} // namespace kit
