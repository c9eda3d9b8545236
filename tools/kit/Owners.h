#pragma once

#include <unordered_map>
#include <vector>

class QORObject;

namespace kit {

class Numbering;

/// Makes a forest of a graph, with each object at one place, below its first owner. What has no owner is a
/// top, and so is the root; of owners that form a ring, the first one of a Numbering.
class Owners {
public:
    explicit Owners(Numbering const& numbering);

    /// The owner of an object in the forest; null for a top.
    QORObject* of(QORObject const& object) const;
    /// The tops, the root first, the others as they are numbered.
    std::vector<QORObject*> const& tops() const { return topmost; }

private:
    std::unordered_map<QORObject const*, QORObject*> owners; ///< without the tops
    std::vector<QORObject*> topmost;
};

} // namespace kit
