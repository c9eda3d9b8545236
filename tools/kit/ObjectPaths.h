#pragma once

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
/// name have a backslash before them. The root is "/"; what it doesn't own starts with a slash.
class ObjectPaths {
public:
    explicit ObjectPaths(Numbering const& numbering);

    /// The path of an object of the graph.
    std::string pathOf(QORObject const& object) const;
    /// The objects that a path stands for, none or one; or all of that name, where each step leads on from
    /// one object and the last step is a plain name.
    std::vector<QORObject*> find(std::string_view path) const;

private:
    void nameSiblings(std::vector<QORObject*> const& siblings);

    QORObject* root;
    std::unordered_map<QORObject const*, std::string> steps;
    std::unordered_map<QORObject const*, std::vector<QORObject*>> children; ///< null: what has no owner
};

} // namespace kit
