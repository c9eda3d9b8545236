#include "kit/Owners.h"

#include "kit/Numbering.h"

#include <qor/QORObject.h>

#include <unordered_set>

namespace kit {

namespace {

/// The object of a ring of owners that has the lowest number.
QORObject* firstOf(QORObject* ring, Numbering const& numbering) {
    QORObject* first = ring;
    for (QORObject* each = ring->getParent(); each != ring; each = each->getParent()) {
        if (numbering.numberOf(*each) < numbering.numberOf(*first)) {
            first = each;
        }
    }
    return first;
}

} // namespace

// The way up from an object ends at a top, at an object known to be below one, or where it closes a ring.
Owners::Owners(Numbering const& numbering) {
    QORObject* const root = numbering.objects().front();
    std::unordered_set<QORObject const*> settled;
    std::vector<QORObject*> way;
    for (QORObject* object : numbering.objects()) {
        way.clear();
        std::unordered_set<QORObject const*> onWay;
        QORObject* each = object;
        while (each && !settled.count(each) && onWay.insert(each).second) {
            way.push_back(each);
            each = each == root ? nullptr : each->getParent();
        }
        QORObject const* const first = each && onWay.count(each) ? firstOf(each, numbering) : root;
        for (QORObject* passed : way) {
            settled.insert(passed);
            QORObject* const owner = passed->getParent();
            if (owner && passed != root && passed != first) {
                owners.emplace(passed, owner);
            }
        }
    }
    for (QORObject* object : numbering.objects()) {
        if (!owners.count(object)) {
            topmost.push_back(object);
        }
    }
}

QORObject* Owners::of(QORObject const& object) const {
    auto const owner = owners.find(&object);
    return owner == owners.end() ? nullptr : owner->second;
}

} // namespace kit
