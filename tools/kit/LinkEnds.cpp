#include "kit/LinkEnds.h"

#include "kit/Reflection.h"

#include <qor/QORMetaRepository.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <stdexcept>
#include <unordered_map>

namespace kit {
namespace {

struct Disposal {
    void operator()(QORObject* object) const {
        object->isolate(false);
        delete object;
    }
};
using Specimen = std::unique_ptr<QORObject, Disposal>;

/// An object of the class or, if that is abstract, of one below it.
Specimen specimenOf(QORMetaClass const& metaClass) {
    if (QORObject* const object = metaClass.newInstance()) {
        return Specimen(object);
    }
    for (QORMetaClass const* below : recordsOf<QORMetaClass>(metaClass.getSubclasses())) {
        if (Specimen object = specimenOf(*below)) {
            return object;
        }
    }
    return nullptr;
}

Specimen nearSpecimen(QORMetaLink const& link) {
    return specimenOf(*link.getMetaClass());
}

Specimen farSpecimen(QORMetaLink const& link) {
    return specimenOf(*QORMetaRepository::getMetaRepository()->getMetaClassByID(farClassOf(link)));
}

QORMetaLink const* reverseOf(QORMetaLink const& link) {
    Specimen const near = nearSpecimen(link);
    Specimen const far = farSpecimen(link);
    link.addLink(near.get(), far.get());
    for (QORMetaLink const* end : linksOf(*far)) {
        if (end->getLink(far.get(), 0) == near.get()) {
            return end;
        }
    }
    throw std::logic_error(std::string(view(link.getName())) + ": a link end that can't be linked");
}

/// Some objects refuse a name; these can only be sorted by their addresses.
void tryToName(QORObject& object, char const* name) {
    try {
        object.setName(name);
    } catch (int) {
    }
}

/// Adds objects in an order that is neither that of their addresses nor that of their names.
bool keepsOrder(QORMetaLink const& link) {
    if (link.isUnary()) {
        return false;
    }
    Specimen const near = nearSpecimen(link);
    Specimen specimens[] = {farSpecimen(link), farSpecimen(link), farSpecimen(link)};
    std::sort(std::begin(specimens), std::end(specimens),
              [](Specimen const& a, Specimen const& b) { return std::less<>()(a.get(), b.get()); });
    char const* const names[] = {"a", "b", "c"};
    std::vector<QORObject*> added;
    for (int const i : {1, 2, 0}) {
        tryToName(*specimens[i], names[i]);
        added.push_back(specimens[i].get());
        if (!link.addLink(near.get(), specimens[i].get())) {
            return false;
        }
    }
    return elementsOf(*near, link) == added;
}

} // namespace

std::vector<QORObject*> elementsOf(QORObject& object, QORMetaLink const& link) {
    std::vector<QORObject*> elements;
    int const count = link.isUnary() ? 1 : link.getLinkCount(&object);
    elements.reserve(static_cast<std::size_t>(std::max(count, 0)));
    for (int i = 0; i < count; ++i) {
        if (QORObject* element = link.getLink(&object, i)) {
            elements.push_back(element);
        }
    }
    return elements;
}

LinkEnd const& linkEnd(QORMetaLink const& link) {
    thread_local std::unordered_map<QORMetaLink const*, LinkEnd> known;
    auto const found = known.find(&link);
    if (found != known.end()) {
        return found->second;
    }
    return known.emplace(&link, LinkEnd{reverseOf(link), keepsOrder(link)}).first->second;
}

// The text of an end is its class, its role and the far class: "CLASS__SUPERTYPE_OF__GENERALIZATION".
QORElementType farClassOf(QORMetaLink const& link) {
    std::string_view const text = view(link.getName());
    return getElementTypeByName(text.data() + text.rfind("__") + 2);
}

bool isNearEnd(QORMetaLink const& link) {
    return link.getType() == QORMetaLinkType::CHILD || link.getType() == QORMetaLinkType::REF;
}

} // namespace kit
