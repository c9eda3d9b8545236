#include "diff/GraphDiff.h"

#include "diff/Matching.h"
#include "kit/Progress.h"
#include "kit/Reflection.h"
#include "kit/TreePrinter.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

namespace diff {
namespace {

std::string textOf(QORString const& text) {
    return std::string(kit::view(text));
}

std::string classOf(QORObject const& object) {
    return textOf(object.getMetaClass()->getDisplayName());
}

bool isOrigin(QORObject const* object) {
    return object && object->isInstanceOf(QORElementType::METADATA_ORIGIN);
}

bool tellsSystemVersion(QORAttributeType attribute) {
    return attribute == QORAttributeType::DATABASE_CATALOG__NATIVE_VERSION ||
           attribute == QORAttributeType::DATABASE_CATALOG__MAJOR_VERSION ||
           attribute == QORAttributeType::DATABASE_CATALOG__MINOR_VERSION ||
           attribute == QORAttributeType::DATABASE_CATALOG__TERTIARY_VERSION;
}

bool isText(QORMetaAttribute const& attribute) {
    return attribute.getType() == QORMetaAttributeType::STRING ||
           attribute.getType() == QORMetaAttributeType::DATE;
}

/// The objects that an object is linked with one by one, and its attributes, but for those that only repeat
/// its name or its place.
std::string detailsOf(QORObject& object) {
    std::string text;
    auto const append = [&text](std::string const& more) {
        text.append(text.empty() ? "" : ", ").append(more);
    };
    for (QORMetaLink const* link : kit::linksOf(object)) {
        bool const refers =
            link->getType() == QORMetaLinkType::REF || link->getType() == QORMetaLinkType::BACK_REF;
        QORObject const* const far = link->isUnary() && refers ? link->getLink(&object, 0) : nullptr;
        if (far && far->getName().length) {
            append(textOf(link->getRoleName()) + " " + textOf(far->getName()));
        }
    }
    for (QORMetaAttribute const* attribute : kit::attributesOf(object)) {
        QORString const value = attribute->getValue(&object);
        std::string const name = textOf(attribute->getDisplayName());
        if (value == attribute->getDefaultValue() || value == object.getName() || name == "position") {
            continue;
        }
        append(value == "true"
                   ? name
                   : name + " " + (isText(*attribute) ? kit::quoted(kit::view(value)) : textOf(value)));
    }
    return text;
}

/// Finds the objects whose positions changed only because siblings were added or removed: the object has the
/// same place among those that both graphs have, and its position changed by the number of siblings added or
/// removed before it.
class Positions {
public:
    /// Reads an end of two objects that match.
    void read(Side const& before, Side const& after, QORObject& ours, QORObject& theirs,
              QORMetaLink const& link) {
        std::vector<Item> const here = items(before, ours, link);
        std::vector<Item> const there = items(after, theirs, link);
        std::vector<Item> const kept = keptOf(here);
        std::vector<Item> const keptThere = keptOf(there);
        for (std::size_t i = 0; i < std::min(kept.size(), keptThere.size()); ++i) {
            bool const stayed = before.partnerOf(kept[i].object) == keptThere[i].object;
            long const moved = keptThere[i].position - kept[i].position;
            if (stayed && moved != 0 && moved == keptThere[i].place - kept[i].place) {
                explained.insert(keptThere[i].object);
            }
        }
    }

    bool explains(QORObject const& theirs) const { return explained.count(&theirs) > 0; }

private:
    struct Item {
        QORObject* object;
        long position;
        long place; ///< among all objects of the end
        bool kept;
    };

    static std::vector<Item> items(Side const& side, QORObject& owner, QORMetaLink const& link) {
        std::vector<Item> all;
        for (QORObject* object : side.numbering.elements(owner, link)) {
            if (std::optional<int> const position = kit::positionOf(*object)) {
                all.push_back({object, *position, 0, side.partnerOf(object) != nullptr});
            }
        }
        std::stable_sort(all.begin(), all.end(),
                         [](Item const& a, Item const& b) { return a.position < b.position; });
        for (std::size_t i = 0; i < all.size(); ++i) {
            all[i].place = static_cast<long>(i);
        }
        return all;
    }

    static std::vector<Item> keptOf(std::vector<Item> const& items) {
        std::vector<Item> kept;
        std::copy_if(items.begin(), items.end(), std::back_inserter(kept),
                     [](Item const& item) { return item.kept; });
        return kept;
    }

    std::unordered_set<QORObject const*> explained;
};

class Comparison {
public:
    Comparison(QORObject& first, QORObject& second, Options const& given)
        : before(first), after(second), chapters(chaptersOf(before)), chaptersThere(chaptersOf(after)),
          options(given) {}

    Difference run() {
        kit::Progress::phase("comparing");
        Matching(before, after).run(options.renames);
        difference.rootBefore = textOf(before.root.getName());
        difference.rootAfter = textOf(after.root.getName());
        for (QORObject* object : before.numbering.objects()) {
            if (!before.partnerOf(object) && counts(before, *object)) {
                difference.removed.push_back(single(before, *object));
            }
        }
        for (QORObject* object : after.numbering.objects()) {
            readPositions(*object);
        }
        for (QORObject* object : after.numbering.objects()) {
            if (!counts(after, *object)) {
                continue;
            }
            if (QORObject* const ours = after.partnerOf(object)) {
                reportPair(*ours, *object);
            } else {
                difference.added.push_back(single(after, *object));
            }
        }
        return std::move(difference);
    }

private:
    bool counts(Side const& side, QORObject const& object) const {
        return options.origin || (!isOrigin(&object) && !isOrigin(side.paths.owners().of(object)));
    }

    /// For each object the nearest class, table or view that owns it or that it is, or else the nearest
    /// package, or else the object itself.
    static std::vector<QORObject const*> chaptersOf(Side const& side) {
        std::vector<QORObject const*> chapters(side.numbering.objects().size());
        kit::Owners const& owners = side.paths.owners();
        for (std::size_t const number : owners.downwards()) {
            QORObject const* const object = side.numbering.objects()[number];
            std::size_t const owner = owners.of(number);
            QORObject const* const above = owner == kit::Owners::none ? nullptr : chapters[owner];
            bool const isIn = above && (above->isInstanceOf(QORElementType::CLASSIFIER) ||
                                        (above->isInstanceOf(QORElementType::PACKAGE) &&
                                         !object->isInstanceOf(QORElementType::PACKAGE)));
            chapters[number] = isIn && !object->isInstanceOf(QORElementType::CLASSIFIER) ? above : object;
        }
        return chapters;
    }

    Place placeOf(Side const& side, QORObject const& object) const {
        QORObject const& found =
            *(&side == &before ? chapters : chaptersThere)[side.numbering.numberOf(object)];
        QORObject const* const kept = &side == &before ? before.partnerOf(&found) : &found;
        return {classOf(found), kept ? after.paths.pathOf(*kept) : side.paths.pathOf(found), !kept,
                &found == &object ? "" : side.paths.pathFrom(found, object)};
    }

    Single single(Side const& side, QORObject& object) const {
        return {classOf(object), side.paths.pathOf(object), detailsOf(object), placeOf(side, object)};
    }

    void readPositions(QORObject& theirs) {
        QORObject* const ours = after.partnerOf(&theirs);
        if (!ours) {
            return;
        }
        for (QORMetaLink const* link : kit::linksOf(theirs)) {
            if (link->getType() == QORMetaLinkType::CHILD && !link->isUnary()) {
                positions.read(before, after, *ours, theirs, *link);
            }
        }
    }

    /// The name of the root, or of an object that has it from there.
    bool isRootName(QORObject const& ours, QORObject const& theirs, QORString const& from,
                    QORString const& to) const {
        bool const isTop = &ours == &before.root || before.paths.owners().of(ours) == &before.root;
        bool const isTopThere = &theirs == &after.root || after.paths.owners().of(theirs) == &after.root;
        return isTop && isTopThere && from == before.root.getName() && to == after.root.getName();
    }

    void reportPair(QORObject& ours, QORObject& theirs) {
        bool const renamed =
            ours.getName() != theirs.getName() && !isRootName(ours, theirs, ours.getName(), theirs.getName());
        QORObject const* const owner = before.paths.owners().of(ours);
        QORObject const* const ownerThere = after.paths.owners().of(theirs);
        bool const moved = !owner != !ownerThere || before.partnerOf(owner) != ownerThere;
        Change change;
        compareAttributes(ours, theirs, change);
        for (QORMetaLink const* link : kit::linksOf(ours)) {
            compareLinks(ours, theirs, *link, change);
        }
        bool const changed = !change.attributes.empty() || !change.links.empty();
        if (!renamed && !moved && !changed) {
            return;
        }
        change.className = classOf(ours);
        change.path = after.paths.pathOf(theirs);
        change.place = placeOf(after, theirs);
        Pair const pair{change.className, before.paths.pathOf(ours), change.path, change.place};
        if (renamed) {
            difference.renamed.push_back(pair);
        }
        if (moved) {
            difference.moved.push_back(pair);
        }
        if (changed) {
            difference.changed.push_back(std::move(change));
        }
    }

    void compareAttributes(QORObject& ours, QORObject& theirs, Change& change) const {
        for (QORMetaAttribute const* attribute : kit::attributesOf(ours)) {
            QORString const from = attribute->getValue(&ours);
            QORString const to = attribute->getValue(&theirs);
            if (from == to || attribute->getId() == QORAttributeType::OBJECT__NAME ||
                isRootName(ours, theirs, from, to) ||
                (!options.origin && tellsSystemVersion(attribute->getId()))) {
                continue;
            }
            if (attribute->getDisplayName() == "position" && positions.explains(theirs)) {
                continue;
            }
            change.attributes.push_back(
                {textOf(attribute->getDisplayName()), textOf(from), textOf(to), isText(*attribute)});
        }
    }

    /// Reports each link once: a reference at the end that refers, a further owner at the owned object. That
    /// an object is added, removed or moved implies the change of its first owner. An order is reported at
    /// each end that keeps one.
    void compareLinks(QORObject& ours, QORObject& theirs, QORMetaLink const& link, Change& change) const {
        QORMetaLinkType const type = link.getType();
        bool const telling = type == QORMetaLinkType::REF || type == QORMetaLinkType::PARENT;
        bool const inOrder = link.isOrdered();
        if (!telling && !inOrder) {
            return;
        }
        std::vector<QORObject*> here = before.numbering.elements(ours, link);
        std::vector<QORObject*> there = after.numbering.elements(theirs, link);
        if (here.empty() && there.empty()) {
            return;
        }
        if (type == QORMetaLinkType::PARENT) {
            here.erase(std::remove(here.begin(), here.end(), before.paths.owners().of(ours)), here.end());
            there.erase(std::remove(there.begin(), there.end(), after.paths.owners().of(theirs)),
                        there.end());
        }
        LinkChange found{textOf(link.getRoleName()), {}, {}, false, link.isUnary()};
        std::vector<QORObject*> const kept = keptIn(before, here, there, telling ? &found.removed : nullptr);
        std::vector<QORObject*> keptThere = keptIn(after, there, here, telling ? &found.added : nullptr);
        for (QORObject*& object : keptThere) {
            object = after.partnerOf(object);
        }
        found.reordered = inOrder && kept != keptThere;
        if (found.reordered || !found.removed.empty() || !found.added.empty()) {
            change.links.push_back(std::move(found));
        }
    }

    /// Returns the objects of an end whose partners the same end of the other graph holds, and adds the paths
    /// of the others to `alone`.
    static std::vector<QORObject*> keptIn(Side const& side, std::vector<QORObject*> const& objects,
                                          std::vector<QORObject*> const& others,
                                          std::vector<LinkedObject>* alone) {
        std::unordered_set<QORObject const*> const held(others.begin(), others.end());
        std::vector<QORObject*> kept;
        for (QORObject* object : objects) {
            if (held.count(side.partnerOf(object))) {
                kept.push_back(object);
            } else if (alone) {
                alone->push_back({side.paths.pathOf(*object), !side.partnerOf(object)});
            }
        }
        return kept;
    }

    Side before;
    Side after;
    std::vector<QORObject const*> chapters; ///< of the first graph, by the numbers of the objects
    std::vector<QORObject const*> chaptersThere;
    Options options;
    Positions positions;
    Difference difference;
};

} // namespace

bool Difference::none() const {
    return added.empty() && removed.empty() && renamed.empty() && moved.empty() && changed.empty();
}

Difference compare(QORObject& before, QORObject& after, Options const& options) {
    return Comparison(before, after, options).run();
}

} // namespace diff
