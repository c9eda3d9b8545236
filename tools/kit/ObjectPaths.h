#pragma once

#include "kit/Owners.h"

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

class QORObject;

namespace kit {

class Numbering;

/// Names each object of a graph by a path from the root: the names of its owners and its own with slashes
/// between. Where siblings share a name, or there is none, the class goes before it, "Class:name", and where
/// that isn't enough, a number behind it, "Class:name#2". Slashes, colons, number signs and backslashes in a
/// name have a backslash before them. The root is "/"; what it doesn't own starts with a slash. An object
/// with several owners has its place below the first one.
class ObjectPaths {
public:
    explicit ObjectPaths(Numbering const& numbering);

    /// The path of an object of the graph.
    std::string pathOf(QORObject const& object) const;
    /// The objects that a path stands for, none or one; or all of that name, where each step leads on from
    /// one object and the last step is a plain name.
    std::vector<QORObject*> find(std::string_view path) const;
    /// The one object that a path stands for. What doesn't lead on from the root may be the end of a path:
    /// "invoice/total" is enough if no other path ends like this. Throws kit::ToolError about `subject`, with
    /// the part of the path that isn't found, or with two of the objects that it stands for.
    QORObject& only(std::string_view path, std::string const& subject) const;
    /// What the paths lead along.
    Owners const& owners() const { return forest; }

private:
    void nameSiblings(std::vector<QORObject*> const& siblings);
    bool answers(QORObject const& object, std::string const& step) const;
    std::vector<QORObject*> findEnd(std::string_view path) const;
    std::string problem(std::string_view path) const;

    QORObject* root;
    Owners forest;
    std::unordered_map<QORObject const*, std::string> steps;
    mutable std::unordered_multimap<std::string_view, QORObject const*> byName; ///< filled at first need
    std::unordered_map<QORObject const*, std::vector<QORObject*>> children;     ///< null: what has no owner
};

} // namespace kit
