#include "kit/Numbering.h"

#include "kit/Reflection.h"

#include <qor/QORTraversalOperation.h>

#include <algorithm>
#include <cstdlib>
#include <tuple>
#include <unordered_map>
#include <unordered_set>

namespace kit {
namespace {

using Color = Hash;
using Index = std::size_t;
constexpr Index none = static_cast<Index>(-1);

/// What siblings are sorted by, and the sibling.
template <class Sorted>
struct SortKey {
    int position;
    std::string_view name;
    std::string_view className;
    Hash contents;
    Sorted sorted;

    auto tie() const { return std::tie(position, name, className, contents); }
    bool operator<(SortKey const& other) const { return tie() < other.tie(); }
};

template <class Sorted>
SortKey<Sorted> sortKeyOf(QORObject& object, Hash contents, Sorted sorted) {
    return {positionOf(object).value_or(0), view(object.getName()),
            view(object.getMetaClass()->getDisplayName()), contents, sorted};
}

} // namespace

std::optional<int> positionOf(QORObject& object) {
    QORMetaAttribute const* const attribute =
        object.getMetaClass()->getMetaAttributeByDisplayName("position");
    return attribute ? std::optional(std::atoi(attribute->getValue(&object).chars)) : std::nullopt;
}

// ---- Numbering -----------------------------------------------------------------------------------------

/// The graph with a colour for each object: a hash that two objects share only as long as nothing
/// distinguishes them.
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

    /// Takes the result out of it: the objects in order, with their numbers.
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

    /// Ends with a node and an end of nothing, which mark the ends of the last parts.
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

    /// Colours by what the objects hold, then repeatedly by the colours of what they are linked with, as long
    /// as that distinguishes more objects.
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

    /// Makes an object differ from those that share its colour, and then, step by step, what is linked with
    /// it from what is linked with them. Returns the other objects that this recolours.
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

    /// The objects of an end that have no number yet, in the order of the numbers that they will have.
    std::vector<Index> inOrder(End const& end) {
        std::vector<SortKey<Index>> keys;
        for (Index const each : farOf(end)) {
            if (nodes[each].number == none) {
                keys.push_back(sortKeyOf(*nodes[each].object, nodes[each].color, each));
            }
        }
        std::vector<Index> sorted;
        if (!end.keepsOrder) {
            std::stable_sort(keys.begin(), keys.end());
        }
        std::unordered_set<Index> waiting; // filled on first use
        for (auto key = keys.begin(); key != keys.end(); ++key) {
            sorted.push_back(key->sorted);
            std::vector<Index> const changed =
                end.keepsOrder ? std::vector<Index>() : distinguish(key->sorted);
            if (changed.empty()) {
                continue;
            }
            if (waiting.empty()) {
                std::for_each(key, keys.end(),
                              [&](SortKey<Index> const& each) { waiting.insert(each.sorted); });
            }
            waiting.erase(key->sorted);
            if (isAnyOf(changed, waiting)) {
                for (auto rest = key + 1; rest != keys.end(); ++rest) {
                    rest->contents = nodes[rest->sorted].color;
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

    /// If owners form a ring, the way ends before it closes.
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

namespace {

// ---- OwnedOrder ----------------------------------------------------------------------------------------

/// The NUL after each text keeps neighbours apart.
void append(Hash& hash, std::string_view text) {
    hash = hashOf({"", 1}, hashOf(text, hash));
}

void append(Hash& hash, Hash number) {
    append(hash, {reinterpret_cast<char const*>(&number), sizeof number});
}

void appendAttributes(Hash& hash, QORObject& object) {
    append(hash, view(object.getMetaClass()->getDisplayName()));
    QORString room;
    for (QORMetaAttribute const* attribute : attributesOf(object)) {
        append(hash, view(attribute->getValue(&object, room)));
    }
}

void appendNames(Hash& hash, std::vector<QORObject*> const& objects) {
    std::vector<std::string_view> names;
    for (QORObject const* object : objects) {
        names.push_back(view(object->getName()));
    }
    std::sort(names.begin(), names.end());
    for (std::string_view name : names) {
        append(hash, name);
    }
}

} // namespace

/// Signs objects children first, so that an object's signature covers all that it owns: its class and
/// attributes, the names of what it refers to, and the signatures of its children in whatever order they
/// come.
class OwnedOrder::Signing : public QORTraversalOperation {
public:
    explicit Signing(std::unordered_map<QORObject const*, Hash>& kept) : signatures(kept) {}

    /// Cuts off what is signed already, and so a ring of owners too.
    bool pre_process(QORObject* object, void*&) override { return signatures.emplace(object, 0).second; }

    void post_process(QORObject* object, void*) override {
        Hash hash = hashOf("");
        appendAttributes(hash, *object);
        for (QORMetaLink const* link : linksOf(*object)) {
            append(hash, view(link->getRoleName()));
            if (link->getType() == QORMetaLinkType::CHILD) {
                appendSignatures(hash, elementsOf(*object, *link));
            } else if (link->getType() != QORMetaLinkType::PARENT) {
                appendNames(hash, elementsOf(*object, *link));
            }
        }
        signatures[object] = hash;
    }

private:
    void appendSignatures(Hash& hash, std::vector<QORObject*> const& children) const {
        std::vector<Hash> numbers;
        for (QORObject const* child : children) {
            auto const known = signatures.find(child);
            numbers.push_back(known == signatures.end() ? 0 : known->second);
        }
        std::sort(numbers.begin(), numbers.end());
        for (Hash number : numbers) {
            append(hash, number);
        }
    }

    std::unordered_map<QORObject const*, Hash>& signatures;
};

Hash OwnedOrder::signatureOf(QORObject& object) {
    auto const known = signatures.find(&object);
    if (known != signatures.end()) {
        return known->second;
    }
    Signing signing(signatures);
    object.depthTraversal(signing, nullptr);
    return signatures[&object];
}

std::vector<QORObject*> OwnedOrder::elements(QORObject& object, QORMetaLink const& link) {
    std::vector<SortKey<QORObject*>> keys;
    for (QORObject* element : elementsOf(object, link)) {
        keys.push_back(sortKeyOf(*element, Hash(0), element));
    }
    std::stable_sort(keys.begin(), keys.end());
    for (auto first = keys.begin(); first != keys.end();) {
        auto const last = std::upper_bound(first, keys.end(), *first);
        for (auto key = first; last - first > 1 && key != last; ++key) {
            key->contents = signatureOf(*key->sorted);
        }
        first = last;
    }
    std::stable_sort(keys.begin(), keys.end());
    std::vector<QORObject*> sorted;
    sorted.reserve(keys.size());
    for (SortKey<QORObject*> const& key : keys) {
        sorted.push_back(key.sorted);
    }
    return sorted;
}

std::vector<QORObject*> OwnedOrder::children(QORObject& object) {
    std::vector<QORObject*> all;
    for (QORMetaLink const* link : linksOf(object)) {
        if (link->getType() == QORMetaLinkType::CHILD) {
            std::vector<QORObject*> const ofEnd = elements(object, *link);
            all.insert(all.end(), ofEnd.begin(), ofEnd.end());
        }
    }
    return all;
}

} // namespace kit
