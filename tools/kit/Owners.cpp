#include "kit/Owners.h"

#include <qor/QORObject.h>

#include <numeric>

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

Owners::Owners(Numbering const& numbering) : numbers(numbering), ownerOf(numbering.objects().size(), none) {
    findOwners();
    groupByOwner();
    for (std::size_t const top : ownedBy(none)) {
        topmost.push_back(numbers.objects()[top]);
    }
}

// The way up from an object ends at a top, at an object known to be below one, or where it closes a ring.
void Owners::findOwners() {
    enum State : unsigned char { NEW, ON_WAY, SETTLED };
    QORObject* const root = numbers.objects().front();
    std::vector<State> states(ownerOf.size(), NEW);
    std::vector<std::size_t> way;
    for (QORObject* object : numbers.objects()) {
        way.clear();
        QORObject* each = object;
        while (each && states[numbers.numberOf(*each)] == NEW) {
            way.push_back(numbers.numberOf(*each));
            states[way.back()] = ON_WAY;
            each = each == root ? nullptr : each->getParent();
        }
        bool const isRing = each && states[numbers.numberOf(*each)] == ON_WAY;
        QORObject const* const first = isRing ? firstOf(each, numbers) : root;
        for (std::size_t const passed : way) {
            states[passed] = SETTLED;
            QORObject* const one = numbers.objects()[passed];
            QORObject const* const owner = one->getParent();
            if (owner && one != root && one != first) {
                ownerOf[passed] = numbers.numberOf(*owner);
            }
        }
    }
}

void Owners::groupByOwner() {
    std::size_t const count = ownerOf.size();
    begin.resize(count + 2);
    for (std::size_t const owner : ownerOf) {
        ++begin[(owner == none ? count : owner) + 1];
    }
    std::partial_sum(begin.begin(), begin.end(), begin.begin());
    owned.resize(count);
    std::vector<std::size_t> next(begin.begin(), begin.end() - 1);
    for (std::size_t number = 0; number < count; ++number) {
        std::size_t const owner = ownerOf[number] == none ? count : ownerOf[number];
        owned[next[owner]++] = number;
    }
}

std::vector<std::size_t> Owners::ownedBy(std::size_t number) const {
    std::size_t const group = number == none ? ownerOf.size() : number;
    auto const place = [this](std::size_t at) { return owned.begin() + static_cast<std::ptrdiff_t>(at); };
    return {place(begin[group]), place(begin[group + 1])};
}

std::vector<std::size_t> Owners::downwards() const {
    std::vector<std::size_t> order = ownedBy(none);
    order.reserve(ownerOf.size());
    for (std::size_t i = 0; i < order.size(); ++i) {
        std::vector<std::size_t> const below = ownedBy(order[i]);
        order.insert(order.end(), below.begin(), below.end());
    }
    return order;
}

} // namespace kit
