#include "exchange/LinkSequence.h"

#include "kit/GraphOrder.h"
#include "kit/LinkEnds.h"
#include "kit/Numbering.h"
#include "kit/Reflection.h"
#include "kit/ToolError.h"

#include <functional>
#include <map>
#include <queue>
#include <utility>

namespace exchange {
namespace {

using Place = std::size_t;

/// The links by the numbers of their objects, and which of them must come before which others.
class Sequencing {
public:
    explicit Sequencing(kit::Numbering const& ofGraph) : numbering(ofGraph) {}

    std::vector<Link> run() {
        collect();
        successors.resize(links.size());
        waitingFor.resize(links.size());
        for (auto const& [end, places] : byFarEnd) {
            chain(*numbering.objects()[end.first], *end.second, places);
        }
        for (auto const& [before, after] : inNearEnds) {
            require(before, after);
        }
        return sorted();
    }

private:
    using FarEnd = std::pair<std::size_t, QORMetaLink const*>;

    void collect() {
        for (QORObject* object : numbering.objects()) {
            for (QORMetaLink const* role : kit::linksOf(*object)) {
                if (kit::isNearEnd(*role)) {
                    collect(*object, *role);
                }
            }
        }
    }

    void collect(QORObject& from, QORMetaLink const& role) {
        std::vector<QORObject*> const elements = numbering.elements(from, role);
        for (QORObject* to : elements) {
            if (to != elements.front() && role.isOrdered()) {
                inNearEnds.emplace_back(links.size() - 1, links.size());
            }
            QORMetaLink const& reverse = *role.getFarMetaLink();
            if (reverse.isOrdered()) {
                byFarEnd[{numbering.numberOf(*to), &reverse}].emplace(&from, links.size());
            }
            links.push_back({&from, &role, to});
        }
    }

    void chain(QORObject& object, QORMetaLink const& end, std::map<QORObject const*, Place> const& places) {
        Place const* before = nullptr;
        for (QORObject const* near : kit::elementsOf(object, end)) {
            auto const after = places.find(near);
            if (after == places.end()) {
                fail();
            }
            if (before) {
                require(*before, after->second);
            }
            before = &after->second;
        }
    }

    void require(Place before, Place after) {
        successors[before].push_back(after);
        ++waitingFor[after];
    }

    /// Takes the first one that waits for none, again and again.
    std::vector<Link> sorted() {
        std::priority_queue<Place, std::vector<Place>, std::greater<>> free;
        for (Place i = 0; i < links.size(); ++i) {
            if (waitingFor[i] == 0) {
                free.push(i);
            }
        }
        std::vector<Link> sequence;
        while (!free.empty()) {
            Place const place = free.top();
            free.pop();
            sequence.push_back(links[place]);
            for (Place const next : successors[place]) {
                if (--waitingFor[next] == 0) {
                    free.push(next);
                }
            }
        }
        if (sequence.size() != links.size()) {
            fail();
        }
        return sequence;
    }

    [[noreturn]] static void fail() {
        throw kit::ToolError("graph", "its links can't be restored in the orders that their ends keep");
    }

    kit::Numbering const& numbering;
    std::vector<Link> links;
    std::map<FarEnd, std::map<QORObject const*, Place>> byFarEnd;
    std::vector<std::pair<Place, Place>> inNearEnds;
    std::vector<std::vector<Place>> successors;
    std::vector<std::size_t> waitingFor;
};

} // namespace

std::vector<Link> linkSequence(kit::Numbering const& numbering) {
    return Sequencing(numbering).run();
}

} // namespace exchange
