#pragma once

#include <vector>

class QORObject;

namespace kit {

/// Owns the objects of a graph, however they are linked, and deletes them all.
class Graph {
public:
    Graph() = default;
    Graph(Graph&& other) noexcept : all(static_cast<std::vector<QORObject*>&&>(other.all)) {
        other.all.clear();
    }
    Graph& operator=(Graph&& other) noexcept {
        all.swap(other.all);
        return *this;
    }
    ~Graph();

    /// Takes over an object and all that it owns.
    void adoptTree(QORObject* root);
    /// Takes over one object.
    void adopt(QORObject* object);

    /// The object that was taken over first; there must be one.
    QORObject& root() const { return *all.front(); }
    /// All objects, in the order in which they were taken over.
    std::vector<QORObject*> const& objects() const { return all; }

private:
    std::vector<QORObject*> all;
};

} // namespace kit
