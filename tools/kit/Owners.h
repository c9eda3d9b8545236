#pragma once

#include "kit/Numbering.h"

#include <cstddef>
#include <vector>

class QORObject;

namespace kit {

/// Makes a forest of a graph, with each object at one place, below its first owner. An object without an
/// owner is a top, and so is the root; of owners that form a ring, the first one of a Numbering is a top.
class Owners {
public:
    static constexpr std::size_t none = static_cast<std::size_t>(-1);

    explicit Owners(Numbering const& numbering);

    /// The owner of an object in the forest; null for a top.
    QORObject* of(QORObject const& object) const {
        std::size_t const owner = ownerOf[numbers.numberOf(object)];
        return owner == none ? nullptr : numbers.objects()[owner];
    }
    /// The tops, the root first, the others as they are numbered.
    std::vector<QORObject*> const& tops() const { return topmost; }

    Numbering const& numbering() const { return numbers; }
    /// The number of an object's owner in the forest; `none` for a top.
    std::size_t of(std::size_t number) const { return ownerOf[number]; }
    /// The numbers of what an object owns in the forest, in ascending order; of `none` those of the tops.
    std::vector<std::size_t> ownedBy(std::size_t number) const;
    /// The numbers of all objects, each after that of its owner.
    std::vector<std::size_t> downwards() const;

private:
    void findOwners();
    void groupByOwner();

    Numbering numbers;
    std::vector<std::size_t> ownerOf;
    std::vector<std::size_t> owned; ///< all numbers, grouped by owner, the tops last
    std::vector<std::size_t> begin; ///< of each group in `owned`, by the owner's number
    std::vector<QORObject*> topmost;
};

} // namespace kit
