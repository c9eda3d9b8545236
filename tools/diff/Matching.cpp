#include "diff/Matching.h"

#include "kit/Hash.h"
#include "kit/Reflection.h"
#include "kit/ToolError.h"

#include <algorithm>
#include <map>
#include <string_view>
#include <unordered_map>

namespace diff {
namespace {

using kit::Hash;
using kit::mixed;

bool isPackage(QORObject const& object) {
    return object.isInstanceOf(QORElementType::PACKAGE);
}

/// Class and name, both of which outlive the comparison.
using Key = std::pair<QORMetaClass const*, std::string_view>;

struct KeyHash {
    std::size_t operator()(Key const& key) const {
        return mixed(std::hash<QORMetaClass const*>()(key.first), std::hash<std::string_view>()(key.second));
    }
};

Key keyOf(QORObject const& object) {
    return {object.getMetaClass(), kit::view(object.getName())};
}

/// The objects without a partner that a root owns on an end and that have its name.
std::vector<QORObject*> namedAsRoot(Side const& side, QORMetaLink const& link) {
    std::vector<QORObject*> found;
    for (QORObject* object : side.numbering.elements(side.root, link)) {
        if (object->getName() == side.root.getName() && !side.partnerOf(object)) {
            found.push_back(object);
        }
    }
    return found;
}

} // namespace

void Matching::run(std::vector<Rename> const& renames) {
    for (Rename const& rename : renames) {
        pairRenamed(rename);
    }
    pairRoots();
    pairByName(before.paths.owners().tops(), after.paths.owners().tops(), true);
    do {
        settle();
    } while (pairById() || settleGroups());
}

void Matching::pair(QORObject& ours, QORObject& theirs) {
    ++pairCount;
    std::size_t const number = before.numbering.numberOf(ours);
    std::size_t const otherNumber = after.numbering.numberOf(theirs);
    before.partners[number] = &theirs;
    before.pairs[number] = pairCount;
    after.partners[otherNumber] = &ours;
    after.pairs[otherNumber] = pairCount;
    pending.push_back(&ours);
}

void Matching::pairRenamed(Rename const& rename) {
    QORObject& ours = before.paths.only(rename.from, "renames, in the first graph");
    QORObject& theirs = after.paths.only(rename.to, "renames, in the second graph");
    if (ours.getMetaClass() != theirs.getMetaClass()) {
        throw kit::ToolError("renames", rename.from + " and " + rename.to + " aren't of the same class");
    }
    if (&ours == &before.root || &theirs == &after.root) {
        throw kit::ToolError("renames", "the roots always match");
    }
    if (before.partnerOf(&ours) || after.partnerOf(&theirs)) {
        throw kit::ToolError("renames", rename.from + " or " + rename.to + " is already matched");
    }
    pair(ours, theirs);
}

/// An object directly below a root that has its name, such as the catalog of a database, has the name from
/// the source, as the root does.
void Matching::pairRoots() {
    if (before.root.getMetaClass() != after.root.getMetaClass()) {
        return;
    }
    pair(before.root, after.root);
    if (before.root.getName() == after.root.getName()) {
        return;
    }
    for (QORMetaLink const* link : kit::linksOf(before.root)) {
        if (link->getType() != QORMetaLinkType::CHILD) {
            continue;
        }
        for (QORObject* ours : namedAsRoot(before, *link)) {
            for (QORObject* theirs : namedAsRoot(after, *link)) {
                if (ours->getMetaClass() == theirs->getMetaClass() && !before.partnerOf(ours) &&
                    !after.partnerOf(theirs)) {
                    pair(*ours, *theirs);
                }
            }
        }
    }
}

/// Pairs the objects without a partner that class and name identify; the others are paired later.
void Matching::pairByName(Objects const& ours, Objects const& theirs, bool inPackage) {
    std::unordered_map<Key, Objects, KeyHash> others;
    for (QORObject* object : theirs) {
        if (!after.partnerOf(object)) {
            others[keyOf(*object)].push_back(object);
        }
    }
    std::unordered_map<Key, std::size_t, KeyHash> places;
    std::vector<Group> found;
    for (QORObject* object : ours) {
        auto const other = others.find(keyOf(*object));
        if (before.partnerOf(object) || other == others.end()) {
            continue;
        }
        auto const [place, isNew] = places.emplace(other->first, found.size());
        if (isNew) {
            bool const isModelObject = object->isInstanceOf(QORElementType::MODEL_OBJECT);
            found.push_back({{}, other->second, inPackage && isModelObject});
        }
        found[place->second].ours.push_back(object);
    }
    for (Group& group : found) {
        bool const named = group.ours.front()->getName().length > 0;
        if (group.ours.size() == 1 && group.theirs.size() == 1 && (named || !group.independent)) {
            pair(*group.ours.front(), *group.theirs.front());
        } else {
            groups.push_back(std::move(group));
        }
    }
}

/// Pairs what is owned by pairs.
void Matching::settle() {
    while (!pending.empty()) {
        QORObject& ours = *pending.back();
        pending.pop_back();
        QORObject& theirs = *before.partnerOf(&ours);
        for (QORMetaLink const* link : kit::linksOf(ours)) {
            if (link->getType() == QORMetaLinkType::CHILD) {
                pairByName(before.numbering.elements(ours, *link), after.numbering.elements(theirs, *link),
                           isPackage(ours));
            }
        }
    }
}

namespace {

using Number = std::pair<std::string_view, long>;

/// The objects without a partner by their class and the caller's number; null where several share both.
std::map<Number, QORObject*> numbered(Side const& side) {
    std::map<Number, QORObject*> byNumber;
    for (QORObject* object : side.numbering.objects()) {
        if (object->getID() != 0 && !side.partnerOf(object)) {
            Number const number(kit::view(object->getMetaClass()->getDisplayName()), object->getID());
            auto const [place, isNew] = byNumber.emplace(number, object);
            place->second = isNew ? object : nullptr;
        }
    }
    return byNumber;
}

} // namespace

bool Matching::pairById() {
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

/// Settles the groups. Returns whether there were any.
bool Matching::settleGroups() {
    if (groups.empty()) {
        return false;
    }
    std::deque<Group> settling;
    settling.swap(groups);
    for (Group& group : settling) {
        settleGroup(group);
    }
    return true;
}

/// Pairs by links, by what the objects own and by attributes, the most reliable first. The remaining objects
/// are paired in their order, unless they have no names and are independent of each other.
void Matching::settleGroup(Group& group) {
    pairBySignature(group, &Matching::wholeOf, true);
    pairBySignature(group, &Matching::linksOf, true);
    pairBySignature(group, &Matching::attributesOf, false);
    if (group.independent && (group.ours.empty() || group.ours.front()->getName().length == 0)) {
        return;
    }
    std::size_t const count = std::min(group.ours.size(), group.theirs.size());
    for (std::size_t i = 0; i < count; ++i) {
        pair(*group.ours[i], *group.theirs[i]);
    }
}

/// Pairs the objects of one signature: several in their order, or only one with one.
void Matching::pairBySignature(Group& group, Signature signature, bool evenSeveral) {
    dropPaired(group);
    if (group.ours.empty() || group.theirs.empty()) {
        return;
    }
    std::unordered_map<Hash, std::pair<Objects, Objects>> bySignature;
    std::vector<Hash> order;
    for (QORObject* object : group.ours) {
        Hash const number = (this->*signature)(before, *object);
        Objects& same = bySignature[number].first;
        if (number != 0 && same.empty()) {
            order.push_back(number);
        }
        same.push_back(object);
    }
    for (QORObject* object : group.theirs) {
        bySignature[(this->*signature)(after, *object)].second.push_back(object);
    }
    for (Hash const number : order) {
        auto const& [ours, theirs] = bySignature.at(number);
        if (!evenSeveral && (ours.size() != 1 || theirs.size() != 1)) {
            continue;
        }
        for (std::size_t i = 0; i < std::min(ours.size(), theirs.size()); ++i) {
            pair(*ours[i], *theirs[i]);
        }
    }
    dropPaired(group);
}

void Matching::dropPaired(Group& group) const {
    auto const drop = [](Objects& objects, Side const& side) {
        auto const isPaired = [&side](QORObject* object) { return side.partnerOf(object) != nullptr; };
        objects.erase(std::remove_if(objects.begin(), objects.end(), isPaired), objects.end());
    };
    drop(group.ours, before);
    drop(group.theirs, after);
}

// ---- signatures: equal numbers for objects that are alike, 0 for none ------------------------------------

namespace {

/// A bound: the time for all signatures must be proportional to the number of objects.
constexpr int deepest = 3;

} // namespace

Hash Matching::wholeOf(Side const& side, QORObject& object) const {
    return signatureOf(side, object, true, deepest);
}

Hash Matching::linksOf(Side const& side, QORObject& object) const {
    return signatureOf(side, object, false, deepest);
}

/// The signature of the attributes alone; none if all of them have the values of a new object.
Hash Matching::attributesOf(Side const&, QORObject& object) const {
    Hash hash = 0;
    for (QORMetaAttribute const* attribute : kit::attributesOf(object)) {
        QORString const value = attribute->getValue(&object);
        if (attribute->getId() != QORAttributeType::OBJECT__NAME && value != attribute->getDefaultValue()) {
            hash = mixed(mixed(hash, static_cast<Hash>(attribute->getId())), kit::view(value));
        }
    }
    return hash;
}

/// The signature of what the object refers to, of the only object that refers to it over an end, and of what
/// it owns; none if there is nothing of these and the attributes don't count.
Hash Matching::signatureOf(Side const& side, QORObject& object, bool withAttributes, int depth) const {
    Hash hash = withAttributes ? mixed(attributesOf(side, object), 1) : 0;
    for (QORMetaLink const* link : kit::linksOf(object)) {
        QORMetaLinkType const type = link->getType();
        bool const owned = type == QORMetaLinkType::CHILD;
        if (type == QORMetaLinkType::PARENT || (type == QORMetaLinkType::BACK_REF && !link->isUnary()) ||
            (owned && depth == 0)) {
            continue;
        }
        std::vector<Hash> numbers;
        for (QORObject* far : side.numbering.elements(object, *link)) {
            Hash const label = labelOf(side, *far);
            numbers.push_back(owned ? mixed(signatureOf(side, *far, withAttributes, depth - 1), label)
                                    : label);
        }
        std::sort(numbers.begin(), numbers.end());
        for (Hash const number : numbers) {
            hash = mixed(mixed(hash, static_cast<Hash>(link->getId())), number);
        }
    }
    return hash;
}

/// The number of the pair, or class and name.
Hash Matching::labelOf(Side const& side, QORObject const& object) const {
    if (std::size_t const pair = side.pairs[side.numbering.numberOf(object)]) {
        return mixed(1, pair);
    }
    return mixed(mixed(2, kit::view(object.getMetaClass()->getDisplayName())), kit::view(object.getName()));
}

} // namespace diff
