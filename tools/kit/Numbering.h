#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

class QORMetaLink;
class QORObject;

namespace kit {

/// Numbers a graph: an object, all that it owns, depth first, and then all else that links of any
/// kind reach, each from its topmost owner on. The numbers depend only on the graph and not on
/// the addresses of its objects. Where objects are alike in all that they hold, the one numbered first
/// makes the difference for those linked with it, so that equal graphs get equal numbers but for rare
/// symmetric ones.
///
/// It remembers the graph, so a graph that has changed since needs a new one. The graph may have any depth.
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
