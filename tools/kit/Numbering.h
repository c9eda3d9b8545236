#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

class QORMetaLink;
class QORObject;

namespace kit {

/// Numbers a graph: an object, all that it owns, depth first, and then whatever else can be reached over
/// links of any kind, each from its topmost owner on. The numbers follow from the graph alone and not from
/// where its objects lie in memory. Where objects are alike in all that they hold, the one numbered first
/// makes the difference for those linked with it, so that equal graphs get equal numbers but for rare
/// symmetric ones.
///
/// It remembers the graph, so a graph that has changed since needs a new one. Any depth of graph is fine.
/// Copies share what they remember.
class Numbering {
public:
    explicit Numbering(QORObject& root);

    /// The objects by their numbers, the first of which is 0.
    std::vector<QORObject*> const& objects() const { return numbers->objects; }
    /// The number of an object of the graph.
    std::size_t numberOf(QORObject const& object) const { return numbers->of.at(&object); }
    /// The objects of an end: in the order that it keeps, or by their numbers.
    std::vector<QORObject*> elements(QORObject& object, QORMetaLink const& link) const;

private:
    class Graph;
    struct Numbers {
        std::vector<QORObject*> objects;
        std::unordered_map<QORObject const*, std::size_t> of;
    };

    std::shared_ptr<Numbers const> numbers;
};

} // namespace kit
