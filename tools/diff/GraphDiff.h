#pragma once

#include <iosfwd>
#include <string>
#include <vector>

class QORObject;

namespace diff {

/// Where the text lists a change: under the class, table or view that it belongs to, or else the package.
struct Place {
    std::string className;
    std::string path;   ///< in the second graph, or in the first one if that has it alone
    bool gone = false;  ///< whether the first graph has it alone
    std::string within; ///< the path of the thing from there; empty if it is the place itself
};

/// An object of one graph that the other one lacks.
struct Single {
    std::string className;
    std::string path;
    std::string details; ///< its references and attributes for people to read
    Place place;
};

/// An object that has another name or owner in the other graph.
struct Pair {
    std::string className;
    std::string from;
    std::string to;
    Place place;
};

struct AttributeChange {
    std::string name;
    std::string from;
    std::string to;
    bool isText;
};

/// An object by its path. `alone` is one that the other graph lacks.
struct LinkedObject {
    std::string path;
    bool alone;
};

/// What an end holds in only one graph, and whether the rest has another order.
struct LinkChange {
    std::string role;
    std::vector<LinkedObject> removed; ///< of the first graph
    std::vector<LinkedObject> added;   ///< of the second graph
    bool reordered;
    bool isUnary;
};

/// An object that both graphs have and that differs, by its path in the second one.
struct Change {
    std::string className;
    std::string path;
    std::vector<AttributeChange> attributes;
    std::vector<LinkChange> links;
    Place place;
};

/// The changes that turn the first graph into the second one.
struct Difference {
    std::vector<Single> added;
    std::vector<Single> removed;
    std::vector<Pair> renamed;
    std::vector<Pair> moved;
    std::vector<Change> changed;
    std::string rootBefore; ///< the names of the roots; different names are no difference
    std::string rootAfter;

    bool none() const;
};

/// A path in the first graph and that of the same object in the second one; the end of a path is enough.
struct Rename {
    std::string from;
    std::string to;
};

struct Options {
    std::vector<Rename> renames{};
    bool origin = false; ///< also compare where the graphs come from
};

/// Compares two graphs. Only objects of the same class match. These match, one rule after the other:
/// - the roots, whatever they are called, and objects right below them that have their root's name;
/// - what a rename names;
/// - objects of the same name and role whose owners match;
/// - remaining objects that have the same number of the caller's, if it isn't 0 and no other remaining object
/// has it;
/// - of several with the same name, or without one: those with the same content; those linked with the same
///   objects; the only ones with the same attributes; and in the end, but for model objects without
///   names in a package, those at the same place in the order of a Numbering.
/// Nothing else is guessed: an object with another name is a new one.
///
/// Two things don't count as a difference: the name of the root, where it stands as an attribute of the root
/// or of an object right below it; and a position that is another one just because siblings before it came or
/// went. Unless requested, neither does where the graphs come from: metadata origins and the version of the
/// database system.
///
/// Throws kit::ToolError for a rename that names no two objects of the same class.
Difference compare(QORObject& before, QORObject& after, Options const& options = {});

/// Writes a line for each thing under a heading for each table, and how many objects there are of each kind;
/// nothing for no difference. A link to an object that the other graph lacks is omitted, since that object is
/// listed itself; JSON has all links.
void printText(Difference const& difference, bool inColor, std::ostream& out);
void printJson(Difference const& difference, std::ostream& out);

} // namespace diff
