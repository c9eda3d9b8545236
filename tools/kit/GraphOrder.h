#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

class QORMetaLink;
class QORObject;

namespace kit {

/// The objects of a link end in the order of the end itself, by ascending positions; those of a unary end are
/// one or none. Positions that hold nothing are omitted.
std::vector<QORObject*> elementsOf(QORObject& object, QORMetaLink const& link);

/// An order of the objects of link ends that doesn't depend on where they lie in memory: by `position`, where
/// their class has that attribute, then by name, class, and what the objects and all that they own hold.
///
/// It caches facts about a graph, so a graph that has changed since needs a new one. The graph may have any
/// depth.
class GraphOrder {
public:
    /// The objects of an end in this order.
    std::vector<QORObject*> elements(QORObject& object, QORMetaLink const& link);
    /// The objects on all `child` ends, end after end as the class lists them.
    std::vector<QORObject*> children(QORObject& object);

private:
    class Signing;

    std::uint64_t signatureOf(QORObject& object);

    std::unordered_map<QORObject const*, std::uint64_t> signatures;
};

} // namespace kit
