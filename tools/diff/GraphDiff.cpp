#include "diff/GraphDiff.h"

#include "kit/LinkEnds.h"
#include "kit/Numbering.h"
#include "kit/ObjectPaths.h"
#include "kit/Reflection.h"
#include "kit/ToolError.h"

#include <map>
#include <tuple>
#include <unordered_map>
#include <unordered_set>

namespace diff {
namespace {

using Partners = std::unordered_map<QORObject const*, QORObject*>;

std::string textOf(QORString const& text) {
    return std::string(kit::view(text));
}

std::string classOf(QORObject const& object) {
    return textOf(object.getMetaClass()->getDisplayName());
}

struct Side {
    explicit Side(QORObject& top) : root(top), numbering(top), paths(numbering) {}

    QORObject& root;
    kit::Numbering numbering;
    kit::ObjectPaths paths;
    Partners partners; ///< the same objects in the other graph
};

class Comparison {
public:
    Comparison(QORObject& first, QORObject& second) : before(first), after(second) {}

    Difference run(std::vector<Rename> const& renames) {
        if (before.root.getMetaClass() == after.root.getMetaClass()) {
            pair(before.root, after.root);
        }
        for (Rename const& rename : renames) {
            pairRenamed(rename);
        }
        pairTops();
        settle();
        while (pairByNumber()) {
            settle();
        }
        report();
        return std::move(difference);
    }

private:
    void pair(QORObject& ours, QORObject& theirs) {
        before.partners[&ours] = &theirs;
        after.partners[&theirs] = &ours;
        pending.push_back(&ours);
    }

    static QORObject& only(Side const& side, std::string const& path) {
        std::vector<QORObject*> const found = side.paths.find(path);
        if (found.size() != 1) {
            throw kit::ToolError("renames",
                                 (found.empty() ? "no object at " : "more than one object at ") + path);
        }
        return *found.front();
    }

    void pairRenamed(Rename const& rename) {
        QORObject& ours = only(before, rename.from);
        QORObject& theirs = only(after, rename.to);
        if (ours.getMetaClass() != theirs.getMetaClass()) {
            throw kit::ToolError("renames", rename.from + " and " + rename.to + " aren't of one class");
        }
        if (before.partners.count(&ours) || after.partners.count(&theirs)) {
            throw kit::ToolError("renames", rename.from + " or " + rename.to + " has a partner already");
        }
        pair(ours, theirs);
    }

    using Key = std::tuple<std::string, std::string, std::size_t>;

    /// The objects without a partner by class, name, and how many of both came before.
    static std::map<Key, QORObject*> keyed(Side const& side, std::vector<QORObject*> const& objects) {
        std::map<std::pair<std::string, std::string>, std::size_t> counts;
        std::map<Key, QORObject*> byKey;
        for (QORObject* object : objects) {
            if (!side.partners.count(object)) {
                std::string const name = textOf(object->getName());
                std::size_t const place = counts[{classOf(*object), name}]++;
                byKey.emplace(Key(classOf(*object), name, place), object);
            }
        }
        return byKey;
    }

    void pairByName(std::vector<QORObject*> const& ours, std::vector<QORObject*> const& theirs) {
        auto const others = keyed(after, theirs);
        for (auto const& [key, object] : keyed(before, ours)) {
            auto const other = others.find(key);
            if (other != others.end()) {
                pair(*object, *other->second);
            }
        }
    }

    static std::vector<QORObject*> topsOf(Side const& side) {
        std::vector<QORObject*> tops;
        for (QORObject* object : side.numbering.objects()) {
            if (!object->getParent()) {
                tops.push_back(object);
            }
        }
        return tops;
    }

    void pairTops() { pairByName(topsOf(before), topsOf(after)); }

    /// Pairs what is owned by pairs.
    void settle() {
        while (!pending.empty()) {
            QORObject& ours = *pending.back();
            pending.pop_back();
            QORObject& theirs = *before.partners.at(&ours);
            for (QORMetaLink const* link : kit::linksOf(ours)) {
                if (link->getType() == QORMetaLinkType::CHILD) {
                    pairByName(before.numbering.elements(ours, *link),
                               after.numbering.elements(theirs, *link));
                }
            }
        }
    }

    using Number = std::pair<std::string, long>;

    /// The objects left over by class and number; null where several share them.
    static std::map<Number, QORObject*> numbered(Side const& side) {
        std::map<Number, QORObject*> byNumber;
        for (QORObject* object : side.numbering.objects()) {
            if (object->getID() != 0 && !side.partners.count(object)) {
                auto const [place, isNew] =
                    byNumber.emplace(Number(classOf(*object), object->getID()), object);
                place->second = isNew ? object : nullptr;
            }
        }
        return byNumber;
    }

    bool pairByNumber() {
        bool paired = false;
        auto const others = numbered(after);
        for (auto const& [number, object] : numbered(before)) {
            auto const other = others.find(number);
            if (object && other != others.end() && other->second) {
                pair(*object, *other->second);
                paired = true;
            }
        }
        return paired;
    }

    void report() {
        for (QORObject* object : before.numbering.objects()) {
            if (!before.partners.count(object)) {
                difference.removed.push_back({classOf(*object), before.paths.pathOf(*object)});
            }
        }
        for (QORObject* object : after.numbering.objects()) {
            auto const partner = after.partners.find(object);
            if (partner == after.partners.end()) {
                difference.added.push_back({classOf(*object), after.paths.pathOf(*object)});
            } else {
                reportPair(*partner->second, *object);
            }
        }
    }

    void reportPair(QORObject& ours, QORObject& theirs) {
        Pair const pair{classOf(ours), before.paths.pathOf(ours), after.paths.pathOf(theirs)};
        // The root is the same whatever its name; that counts as an attribute.
        bool const renamed = &ours != &before.root && ours.getName() != theirs.getName();
        if (renamed) {
            difference.renamed.push_back(pair);
        }
        if (partnerOf(ours.getParent()) != theirs.getParent()) {
            difference.moved.push_back(pair);
        }
        Change change{pair.className, pair.to, {}, {}};
        for (QORMetaAttribute const* attribute : kit::attributesOf(ours)) {
            QORString const from = attribute->getValue(&ours);
            QORString const to = attribute->getValue(&theirs);
            if (from != to && !(renamed && attribute->getId() == QORAttributeType::OBJECT__NAME)) {
                change.attributes.push_back({textOf(attribute->getDisplayName()), textOf(from), textOf(to)});
            }
        }
        for (QORMetaLink const* link : kit::linksOf(ours)) {
            compareLinks(ours, theirs, *link, change);
        }
        if (!change.attributes.empty() || !change.links.empty()) {
            difference.changed.push_back(std::move(change));
        }
    }

    QORObject const* partnerOf(QORObject const* object) const {
        auto const partner = before.partners.find(object);
        return partner == before.partners.end() ? nullptr : partner->second;
    }

    /// A link is told at the end that refers; what an owner holds is told by the objects that come and go,
    /// and an order at each end that keeps one.
    void compareLinks(QORObject& ours, QORObject& theirs, QORMetaLink const& link, Change& change) const {
        LinkChange found{textOf(link.getRoleName()), {}, {}, false};
        std::vector<QORObject*> const here = before.numbering.elements(ours, link);
        std::vector<QORObject*> const there = after.numbering.elements(theirs, link);
        std::vector<QORObject*> const kept = keptIn(before, here, there, found.removed);
        std::vector<QORObject*> keptThere = keptIn(after, there, here, found.added);
        for (QORObject*& object : keptThere) {
            object = after.partners.at(object);
        }
        found.reordered = kit::linkEnd(link).keepsOrder && kept != keptThere;
        if (link.getType() != QORMetaLinkType::REF) {
            found.removed.clear();
            found.added.clear();
        }
        if (found.reordered || !found.removed.empty() || !found.added.empty()) {
            change.links.push_back(std::move(found));
        }
    }

    /// The objects of an end whose partners the same end of the other graph holds; the paths of the others
    /// go to `alone`.
    static std::vector<QORObject*> keptIn(Side const& side, std::vector<QORObject*> const& objects,
                                          std::vector<QORObject*> const& others,
                                          std::vector<std::string>& alone) {
        std::unordered_set<QORObject const*> const held(others.begin(), others.end());
        std::vector<QORObject*> kept;
        for (QORObject* object : objects) {
            auto const partner = side.partners.find(object);
            if (partner != side.partners.end() && held.count(partner->second)) {
                kept.push_back(object);
            } else {
                alone.push_back(side.paths.pathOf(*object));
            }
        }
        return kept;
    }

    Side before;
    Side after;
    std::vector<QORObject*> pending;
    Difference difference;
};

} // namespace

bool Difference::none() const {
    return added.empty() && removed.empty() && renamed.empty() && moved.empty() && changed.empty();
}

Difference compare(QORObject& before, QORObject& after, std::vector<Rename> const& renames) {
    return Comparison(before, after).run(renames);
}

} // namespace diff
