#pragma once

#include "kit/Hash.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

class QORMetaLink;
class QORObject;

/// # The order of a graph
///
/// Siblings are sorted by
///
/// 1. `position`, where their class has that attribute; 0 where it hasn't,
/// 2. their names, byte by byte,
/// 3. the names of their classes,
/// 4. a hash of their contents.
///
/// All of these come from the graph: none depends on the addresses of the objects, on the order in which they
/// were made or linked, on the process or on the word size. So equal graphs have equal orders, which files
/// and differences need. The one exception is an end that keeps the order of linking (`LinkEnd::keepsOrder`):
/// that order is a part of the graph, and `Numbering` keeps it.
///
/// `Numbering` and `OwnedOrder` differ in the hash alone. That of `Numbering` covers the whole graph around
/// an object, so it must read the whole graph, even to print a part of it. That of `OwnedOrder` covers only
/// what the object owns, and it is computed only for siblings that agree in all else.
namespace kit {

/// The attribute `position` of an object; nothing if its class has none.
std::optional<int> positionOf(QORObject& object);

/// Numbers a graph: an object, all that it owns, depth first and siblings in their order, and then all else
/// that links of any kind reach, each from its topmost owner on. Where objects are alike in all that they
/// hold, the one numbered first makes the difference for those linked with it, so that equal graphs have
/// equal numbers but for rare symmetric ones.
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

/// The order of siblings for those who read a part of a graph. It reads only what it is asked for.
///
/// It caches facts about a graph, so a graph that has changed since needs a new one. The graph may have any
/// depth.
class OwnedOrder {
public:
    /// The objects of an end in this order, whatever order the end keeps.
    std::vector<QORObject*> elements(QORObject& object, QORMetaLink const& link);
    /// The objects on all `child` ends, end after end as the class lists them.
    std::vector<QORObject*> children(QORObject& object);

private:
    class Signing;

    Hash signatureOf(QORObject& object);

    std::unordered_map<QORObject const*, Hash> signatures;
};

} // namespace kit
