#pragma once

#include <iosfwd>
#include <string>
#include <vector>

class QORObject;

namespace diff {

/// An object of one graph that the other one hasn't.
struct Single {
    std::string className;
    std::string path;
};

/// An object that bears another name, or has another owner, in the other graph.
struct Pair {
    std::string className;
    std::string from;
    std::string to;
};

struct AttributeChange {
    std::string name;
    std::string from;
    std::string to;
};

/// What an end holds in one graph alone, by paths, and whether it has the rest in another order.
struct LinkChange {
    std::string role;
    std::vector<std::string> removed; ///< paths in the first graph
    std::vector<std::string> added;   ///< paths in the second graph
    bool reordered;
};

/// An object that both graphs have and that differs, by its path in the second one.
struct Change {
    std::string className;
    std::string path;
    std::vector<AttributeChange> attributes;
    std::vector<LinkChange> links;
};

/// What must be done to the first graph to get the second one.
struct Difference {
    std::vector<Single> added;
    std::vector<Single> removed;
    std::vector<Pair> renamed;
    std::vector<Pair> moved;
    std::vector<Change> changed;

    bool none() const;
};

/// A path in the first graph and that of the same object in the second one.
struct Rename {
    std::string from;
    std::string to;
};

/// Compares two graphs. The roots belong together; then objects of one class and name on one role of owners
/// that belong together, several of them in the order of a Numbering; before them those that `renames` names,
/// and after them those left over that have one class and one number of the caller's, if it isn't 0 and none
/// of the others left over has it. Nothing else is guessed. Throws kit::ToolError for a rename that no two
/// objects of one class answer to.
Difference compare(QORObject& before, QORObject& after, std::vector<Rename> const& renames);

/// Writes a line for each thing, and one below for each attribute and link; nothing for no difference.
void printText(Difference const& difference, std::ostream& out);
void printJson(Difference const& difference, std::ostream& out);

} // namespace diff
