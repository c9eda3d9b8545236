#include "kit/Numbering.h"

#include "kit/GraphOrder.h"
#include "kit/LinkEnds.h"
#include "kit/Reflection.h"

#include <algorithm>
#include <cstdlib>
#include <tuple>
#include <unordered_map>
#include <unordered_set>

namespace kit {
namespace {

using Color = std::uint64_t;
using Index = std::size_t;
constexpr Index none = static_cast<Index>(-1);

/// The same in every process and for every word size.
Color mixed(Color color, Color other) {
    Color mix = (color ^ (other + 0x9e3779b97f4a7c15u + (color << 6) + (color >> 2))) * 0xbf58476d1ce4e5b9u;
    mix ^= mix >> 27;
    mix *= 0x94d049bb133111ebu;
    return mix ^ mix >> 31;
}

Color mixed(Color color, std::string_view text) {
    Color hash = 14695981039346656037u;
    for (char const character : text) {
        hash = (hash ^ static_cast<unsigned char>(character)) * 1099511628211u;
    }
    return mixed(color, mixed(hash, text.size()));
}

int positionOf(QORObject& object) {
    QORMetaAttribute const* const attribute =
        object.getMetaClass()->getMetaAttributeByDisplayName("position");
    return attribute ? std::atoi(attribute->getValue(&object).chars) : 0;
}

} // namespace

/// The graph with a color for each object: a number that two objects share only if they couldn't be told
/// apart so far.
class Numbering::Graph {
public:
    explicit Graph(QORObject& root) {
        reach(root);
        color();
        number(0);
        for (Index i = 0; i < ordered.size(); ++i) {
            for (End const& end : nodes[indexOf(*ordered[i])].ends) {
                numberReferred(end);
            }
        }
    }

    std::vector<QORObject*> const& objects() const { return ordered; }
    std::size_t numberOf(QORObject const& object) const { return nodes[indexOf(object)].number; }

private:
    struct End {
        QORMetaLink const* link;
        bool keepsOrder;
        std::vector<Index> far;
    };
    struct Node {
        QORObject* object;
        std::vector<End> ends; ///< those that hold something
        Color color = 0;
        std::size_t number = none;
    };

    Index indexOf(QORObject const& object) const { return indices.at(&object); }

    Index indexed(QORObject& object) {
        auto const [place, isNew] = indices.emplace(&object, nodes.size());
        if (isNew) {
            nodes.push_back({&object, {}});
        }
        return place->second;
    }

    void reach(QORObject& root) {
        indexed(root);
        for (Index i = 0; i < nodes.size(); ++i) {
            QORObject& object = *nodes[i].object;
            for (QORMetaLink const* link : linksOf(object)) {
                End end{link, false, {}};
                for (QORObject* far : elementsOf(object, *link)) {
                    end.far.push_back(indexed(*far));
                }
                if (!end.far.empty()) {
                    end.keepsOrder = linkEnd(*link).keepsOrder;
                    nodes[i].ends.push_back(std::move(end));
                }
            }
        }
    }

    /// Colors by what the objects hold, then over and over by the colors of what they are linked with, as
    /// long as that tells more objects apart.
    void color() {
        QORString room;
        for (Node& node : nodes) {
            node.color = mixed(0, view(node.object->getMetaClass()->getDisplayName()));
            for (QORMetaAttribute const* attribute : attributesOf(*node.object)) {
                node.color = mixed(node.color, view(attribute->getValue(node.object, room)));
            }
        }
        constexpr int mostRounds = 32;
        std::size_t before = 0;
        std::size_t colors = countColors();
        for (int round = 0; round < mostRounds && before < colors && colors < nodes.size(); ++round) {
            colorByLinks();
            before = colors;
            colors = countColors();
        }
    }

    std::size_t countColors() {
        sizes.clear();
        for (Node const& node : nodes) {
            ++sizes[node.color];
        }
        return sizes.size();
    }

    void colorByLinks() {
        std::vector<Color> next;
        next.reserve(nodes.size());
        for (Node const& node : nodes) {
            Color color = node.color;
            for (End const& end : node.ends) {
                color = mixed(color, colorOf(end));
            }
            next.push_back(color);
        }
        for (Index i = 0; i < nodes.size(); ++i) {
            nodes[i].color = next[i];
        }
    }

    Color colorOf(End const& end) const {
        std::vector<Color> colors;
        for (Index const far : end.far) {
            colors.push_back(nodes[far].color);
        }
        if (!end.keepsOrder) {
            std::sort(colors.begin(), colors.end());
        }
        Color color = static_cast<Color>(end.link->getId());
        for (Color const other : colors) {
            color = mixed(color, other);
        }
        return color;
    }

    bool isShared(Index index) const { return sizes.at(nodes[index].color) > 1; }

    void recolor(Index index, Color color) {
        --sizes[nodes[index].color];
        ++sizes[color];
        nodes[index].color = color;
    }

    /// Makes an object differ from those that it is like, and then what is linked with it, step by step,
    /// from what is linked with them. Gives what that changed beside the object.
    std::vector<Index> distinguish(Index chosen) {
        std::vector<Index> changed;
        if (!isShared(chosen)) {
            return changed;
        }
        recolor(chosen, mixed(nodes[chosen].color, ordered.size() + 1));
        std::unordered_set<Index> met{chosen};
        std::vector<Index> last{chosen};
        while (!last.empty()) {
            std::unordered_map<Index, std::vector<Color>> reasons;
            for (Index const index : last) {
                for (End const& end : nodes[index].ends) {
                    giveReasons(end, nodes[index].color, met, reasons);
                }
            }
            last.clear();
            for (auto& [index, colors] : reasons) {
                std::sort(colors.begin(), colors.end());
                Color color = nodes[index].color;
                for (Color const reason : colors) {
                    color = mixed(color, reason);
                }
                recolor(index, color);
                met.insert(index);
                last.push_back(index);
                changed.push_back(index);
            }
        }
        return changed;
    }

    void giveReasons(End const& end, Color color, std::unordered_set<Index> const& met,
                     std::unordered_map<Index, std::vector<Color>>& reasons) const {
        for (Index const far : end.far) {
            if (nodes[far].number == none && !met.count(far) && isShared(far)) {
                reasons[far].push_back(mixed(color, static_cast<Color>(end.link->getId())));
            }
        }
    }

    struct SortKey {
        int position;
        std::string_view name;
        std::string_view className;
        Color color;
        Index index;

        auto tie() const { return std::tie(position, name, className, color); }
        bool operator<(SortKey const& other) const { return tie() < other.tie(); }
    };

    SortKey sortKeyOf(Index index) const {
        QORObject& object = *nodes[index].object;
        return {positionOf(object), view(object.getName()), view(object.getMetaClass()->getDisplayName()),
                nodes[index].color, index};
    }

    /// The objects of an end that have no number yet, in the order in which they are to get theirs.
    std::vector<Index> inOrder(End const& end) {
        std::vector<SortKey> keys;
        for (Index const far : end.far) {
            if (nodes[far].number == none) {
                keys.push_back(sortKeyOf(far));
            }
        }
        std::vector<Index> sorted;
        if (!end.keepsOrder) {
            std::stable_sort(keys.begin(), keys.end());
        }
        std::unordered_set<Index> waiting; // filled when first asked for
        for (auto key = keys.begin(); key != keys.end(); ++key) {
            sorted.push_back(key->index);
            std::vector<Index> const changed =
                end.keepsOrder ? std::vector<Index>() : distinguish(key->index);
            if (changed.empty()) {
                continue;
            }
            if (waiting.empty()) {
                std::for_each(key, keys.end(), [&](SortKey const& each) { waiting.insert(each.index); });
            }
            waiting.erase(key->index);
            if (isAnyOf(changed, waiting)) {
                for (auto rest = key + 1; rest != keys.end(); ++rest) {
                    rest->color = nodes[rest->index].color;
                }
                std::stable_sort(key + 1, keys.end());
            }
        }
        return sorted;
    }

    static bool isAnyOf(std::vector<Index> const& indices, std::unordered_set<Index> const& among) {
        return std::any_of(indices.begin(), indices.end(),
                           [&among](Index index) { return among.count(index) > 0; });
    }

    void number(Index start) {
        std::vector<Index> pending{start};
        while (!pending.empty()) {
            Index const index = pending.back();
            pending.pop_back();
            if (nodes[index].number != none) {
                continue;
            }
            nodes[index].number = ordered.size();
            ordered.push_back(nodes[index].object);
            std::vector<Index> children;
            for (End const& end : nodes[index].ends) {
                if (end.link->getType() == QORMetaLinkType::CHILD) {
                    std::vector<Index> const ofEnd = inOrder(end);
                    children.insert(children.end(), ofEnd.begin(), ofEnd.end());
                }
            }
            pending.insert(pending.end(), children.rbegin(), children.rend());
        }
    }

    void numberReferred(End const& end) {
        for (Index const far : inOrder(end)) {
            if (nodes[far].number == none) {
                number(topmostOwner(far));
            }
        }
    }

    /// Owners could form a ring; then the way stops before it is closed.
    Index topmostOwner(Index index) const {
        std::unordered_set<Index> met{index};
        for (;;) {
            QORObject const* const owner = nodes[index].object->getParent();
            if (!owner || nodes[indexOf(*owner)].number != none || !met.insert(indexOf(*owner)).second) {
                return index;
            }
            index = indexOf(*owner);
        }
    }

    std::vector<Node> nodes;
    std::unordered_map<QORObject const*, Index> indices;
    std::unordered_map<Color, std::size_t> sizes; ///< how many objects have a color
    std::vector<QORObject*> ordered;
};

Numbering::Numbering(QORObject& root) : graph(std::make_unique<Graph>(root)) {}

Numbering::~Numbering() = default;

std::vector<QORObject*> const& Numbering::objects() const {
    return graph->objects();
}

std::size_t Numbering::numberOf(QORObject const& object) const {
    return graph->numberOf(object);
}

std::vector<QORObject*> Numbering::elements(QORObject& object, QORMetaLink const& link) const {
    std::vector<QORObject*> elements = elementsOf(object, link);
    if (!linkEnd(link).keepsOrder) {
        std::sort(elements.begin(), elements.end(),
                  [this](QORObject const* a, QORObject const* b) { return numberOf(*a) < numberOf(*b); });
    }
    return elements;
}

} // namespace kit
