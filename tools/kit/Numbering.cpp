#include "kit/Numbering.h"

#include "kit/GraphOrder.h"
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

/// The graph with a colour for each object: a number that two objects share only if they couldn't be told
/// apart so far.
class Numbering::Graph {
public:
    explicit Graph(QORObject& root) {
        reach(root);
        color();
        number(0);
        for (Index i = 0; i < ordered.size(); ++i) {
            for (End const& end : endsOf(indexOf(*ordered[i]))) {
                numberReferred(end);
            }
        }
    }

    /// What is left of it: the objects in order, with their numbers.
    Numbers take() {
        for (auto& [object, number] : indices) {
            number = nodes[number].number;
        }
        return {std::move(ordered), std::move(indices)};
    }

private:
    /// A part of one of the vectors that hold such things of all objects: a vector for each object would take
    /// several times the memory.
    template <class Item>
    struct Part {
        Item const* first;
        Item const* last;

        Item const* begin() const { return first; }
        Item const* end() const { return last; }
    };
    struct End {
        QORMetaLink const* link;
        Index far; ///< the first of its objects; the others follow
        bool keepsOrder;
    };
    struct Node {
        QORObject* object;
        Color color = 0;
        Index number = none;
        Index ends = 0; ///< the first of those that hold something
    };

    Index indexOf(QORObject const& object) const { return indices.at(&object); }

    Part<End> endsOf(Index index) const {
        return {ends.data() + nodes[index].ends, ends.data() + nodes[index + 1].ends};
    }
    Part<Index> farOf(End const& end) const { return {far.data() + end.far, far.data() + (&end + 1)->far}; }

    Index indexed(QORObject& object) {
        auto const [place, isNew] = indices.emplace(&object, nodes.size());
        if (isNew) {
            nodes.push_back({&object});
        }
        return place->second;
    }

    /// A node and an end that stand for nothing close the last parts.
    void reach(QORObject& root) {
        indexed(root);
        for (Index i = 0; i < nodes.size(); ++i) {
            QORObject& object = *nodes[i].object;
            nodes[i].ends = ends.size();
            for (QORMetaLink const* link : linksOf(object)) {
                Index const first = far.size();
                for (QORObject* each : elementsOf(object, *link)) {
                    far.push_back(indexed(*each));
                }
                if (far.size() > first) {
                    ends.push_back({link, first, link->isOrdered()});
                }
            }
        }
        nodes.push_back({nullptr});
        nodes.back().ends = ends.size();
        ends.push_back({nullptr, far.size(), false});
    }

    Index count() const { return nodes.size() - 1; }

    /// Colours by what the objects hold, then over and over by the colours of what they are linked with, as
    /// long as that tells more objects apart.
    void color() {
        QORString room;
        for (Index i = 0; i < count(); ++i) {
            Node& node = nodes[i];
            node.color = mixed(0, view(node.object->getMetaClass()->getDisplayName()));
            for (QORMetaAttribute const* attribute : attributesOf(*node.object)) {
                node.color = mixed(node.color, view(attribute->getValue(node.object, room)));
            }
        }
        constexpr int mostRounds = 32;
        Index before = 0;
        Index colors = countColors();
        for (int round = 0; round < mostRounds && before < colors && colors < count(); ++round) {
            colorByLinks();
            before = colors;
            colors = countColors();
        }
        countShared();
    }

    std::vector<Color> sortedColors() const {
        std::vector<Color> colors;
        colors.reserve(count());
        for (Index i = 0; i < count(); ++i) {
            colors.push_back(nodes[i].color);
        }
        std::sort(colors.begin(), colors.end());
        return colors;
    }

    Index countColors() const {
        std::vector<Color> colors = sortedColors();
        return static_cast<Index>(std::unique(colors.begin(), colors.end()) - colors.begin());
    }

    void countShared() {
        std::vector<Color> const colors = sortedColors();
        for (auto first = colors.begin(); first != colors.end();) {
            auto const last = std::upper_bound(first, colors.end(), *first);
            if (last - first > 1) {
                shared.emplace(*first, last - first);
            }
            first = last;
        }
    }

    void colorByLinks() {
        std::vector<Color> next;
        next.reserve(count());
        for (Index i = 0; i < count(); ++i) {
            Color color = nodes[i].color;
            for (End const& end : endsOf(i)) {
                color = mixed(color, colorOf(end));
            }
            next.push_back(color);
        }
        for (Index i = 0; i < count(); ++i) {
            nodes[i].color = next[i];
        }
    }

    Color colorOf(End const& end) const {
        std::vector<Color> colors;
        for (Index const each : farOf(end)) {
            colors.push_back(nodes[each].color);
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

    bool isShared(Index index) const {
        auto const known = shared.find(nodes[index].color);
        return known != shared.end() && known->second > 1;
    }

    void recolor(Index index, Color color) {
        --shared[nodes[index].color];
        ++shared[color];
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
                for (End const& end : endsOf(index)) {
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
        for (Index const each : farOf(end)) {
            if (nodes[each].number == none && !met.count(each) && isShared(each)) {
                reasons[each].push_back(mixed(color, static_cast<Color>(end.link->getId())));
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
        for (Index const each : farOf(end)) {
            if (nodes[each].number == none) {
                keys.push_back(sortKeyOf(each));
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
            for (End const& end : endsOf(index)) {
                if (end.link->getType() == QORMetaLinkType::CHILD) {
                    std::vector<Index> const ofEnd = inOrder(end);
                    children.insert(children.end(), ofEnd.begin(), ofEnd.end());
                }
            }
            pending.insert(pending.end(), children.rbegin(), children.rend());
        }
    }

    void numberReferred(End const& end) {
        for (Index const each : inOrder(end)) {
            if (nodes[each].number == none) {
                number(topmostOwner(each));
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
    std::vector<End> ends;
    std::vector<Index> far;
    std::unordered_map<QORObject const*, Index> indices;
    std::unordered_map<Color, Index> shared; ///< how many objects have a colour that several had
    std::vector<QORObject*> ordered;
};

Numbering::Numbering(QORObject& root) : numbers(std::make_shared<Numbers const>(Graph(root).take())) {}

std::vector<QORObject*> Numbering::elements(QORObject& object, QORMetaLink const& link) const {
    std::vector<QORObject*> elements = elementsOf(object, link);
    if (!link.isOrdered()) {
        std::sort(elements.begin(), elements.end(),
                  [this](QORObject const* a, QORObject const* b) { return numberOf(*a) < numberOf(*b); });
    }
    return elements;
}

} // namespace kit
