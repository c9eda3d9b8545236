#pragma once

#include "kit/Owners.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

class QORObject;

namespace kit {

class Numbering;

/// Names each object of a graph by a path from the root: the names of its owners and its own, separated by
/// slashes. Where siblings share a name, or there is none, the class goes before it, "Class:name", and where
/// that isn't enough, a number after it, "Class:name#2". Slashes, colons, number signs and backslashes in a
/// name have a backslash before them. The root is "/"; what it doesn't own starts with a slash. An object
/// with several owners has its place below the first one.
///
/// A long path has only its first and last steps, at most 16 of each or about 1,000 characters, and between
/// them how many steps are omitted, "a/b/#70/y/z": all paths of a graph together don't grow with its depth.
class ObjectPaths {
public:
    explicit ObjectPaths(Numbering const& numbering);

    /// The path of an object of the graph.
    std::string pathOf(QORObject const& object) const;
    /// The same from one of its owners, near or far, on; empty if the two are the same.
    std::string pathFrom(QORObject const& owner, QORObject const& object) const;
    /// The objects of a path, none or one; or all of that name, if each step starts from one object and
    /// the last step is a plain name.
    std::vector<QORObject*> find(std::string_view path) const;
    /// The one object of a path. A path that doesn't start at the root may be the end of one:
    /// "invoice/total" is enough if no other path ends like this. Throws kit::ToolError about `subject`, with
    /// the part of the path that isn't found, or with two of its objects.
    QORObject& only(std::string_view path, std::string const& subject) const;
    /// The links that paths follow.
    Owners const& owners() const { return forest; }

private:
    using Number = std::size_t;
    using Steps = std::vector<std::string>;

    struct Place {
        Number head = Owners::none; ///< the lowest of its owners and itself up to which its path is whole
        std::uint32_t depth = 0;    ///< how many steps lead there
        std::uint32_t rank = 0;     ///< 0 if the name is enough, or else among those of its class and name
        bool isOutside = false;     ///< whether the root doesn't own it
    };

    QORObject& object(Number number) const { return *forest.numbering().objects()[number]; }
    Number owner(Number number) const;
    std::vector<Number> owned(Number number) const;
    std::size_t depthOf(Number number) const;
    void nameSiblings(std::vector<Number> siblings);
    void measure();
    std::string stepOf(Number number) const;
    Number climb(Number number, Number end, Steps& steps) const;
    std::string gapBetween(Number above, Number below) const;
    bool answers(Number number, std::string const& step) const;
    bool isBelow(Number number, Number start, std::size_t steps) const;
    std::vector<Number> descend(Number start, Steps const& steps) const;
    std::vector<Number> named(std::string const& name) const;
    std::vector<Number> findNumbers(std::string_view path) const;
    std::vector<Number> findEnd(Steps const& wanted) const;
    std::string problem(std::string_view path) const;

    Owners forest;
    std::vector<Place> places;
    mutable std::vector<Number> byName; ///< without the root; filled on first use
};

} // namespace kit
