#include <qor/QORObject.h>

#include "QORRecipe.h"

#include <qor/QORArrayInterface.h>
#include <qor/QORContainer.h>
#include <qor/QORObjectNameHashtable.h>
#include <qor/QORSetGeneralPointerOperation.h>
#include <qor/QORTraversalDelete.h>
#include <qor/QORTraversalOperation.h>

#include <cstring>
#include <memory>

QORObject::QORObject() = default;

QORObject::QORObject(QORObject const& other) : name(other.name) {}

QORObject& QORObject::operator=(QORObject const& other) {
    if (this == &other)
        return *this;
    name = other.name;
    flag1 = false;
    flag2 = false;
    flag3 = false;
    generalPointer = nullptr;
    return *this;
}

QORObject& QORObject::setFrom(QORObject const& other) {
    return QORObject::operator=(other);
}

QORObject::~QORObject() = default;

QORObject* QORObject::removeAggregationAssembly() {
    return nullptr;
}

bool QORObject::recursiveDelete() {
    return true;
}

QORObject* QORObject::isolate(bool) {
    return this;
}

bool QORObject::isInstanceOf(QORElementType type) const {
    return type == QORElementType::OBJECT;
}

QORObject* QORObject::getParent() const {
    return nullptr;
}

int QORObject::getParentCount() const {
    return 0;
}

bool QORObject::operator==(QORObject const& other) const {
    return equals(other);
}

bool QORObject::operator!=(QORObject const& other) const {
    return !equals(other);
}

bool QORObject::equals(QORObject const& other) const {
    return QORObject::finalEquals(other);
}

bool QORObject::finalEquals(QORObject const& other) const {
    QORString const& mine = getName();
    QORString const& theirs = other.getName();
    return mine.length == theirs.length && std::strcmp(mine.chars, theirs.chars) == 0;
}

bool QORObject::isReferenced() const {
    return false;
}

void QORObject::transcode(QOREncodingConverter* from, QOREncodingConverter* to, int& firstCounter,
                          int& errorCounter) {
    if (name.length == 0)
        return;
    int const errors = errorCounter;
    QORString const converted = convertEncoding(name, from, to, firstCounter, errorCounter);
    if (errorCounter != errors)
        return;
    try {
        setName(converted);
    } catch (...) {
        setUniqueName(converted, '/');
    }
}

bool QORObject::depthTraversal(QORTraversalOperation& operation, void* data) {
    return QORRecipe::walk(*this, operation, data);
}

void QORObject::setName(QORString const& newName) {
    name = newName;
}

QORString const& QORObject::getName() const {
    return name;
}

QORString QORObject::getDisplayName() const {
    return getName();
}

void QORObject::_depthTraversal(QORTraversalOperation&, void*) {}

QORMetaClass* QORObject::getMetaClass() const {
    return getStaticMetaClass();
}

void QORObject::setUniqueName(QORString const& base, char separator) {
    for (int n = 1;; ++n) {
        QORString const candidate = base + QORString(separator) + QORString(n);
        try {
            setName(candidate);
            return;
        } catch (...) { // taken, or refused: the next number
        }
    }
}

void QORObject::addLinkUniqueName(bool (QORObject::*add)(QORObject*), QORObject* other, char separator) {
    for (int n = 1;; ++n) {
        other->setName(other->getName() + QORString(separator) + QORString(n));
        if ((this->*add)(other))
            return;
    }
}

// ---- primitives -----------------------------------------------------------------------------------------

namespace {

/// An iterator of a container, given back whatever happens.
auto borrowIterator(QORContainer const& container) {
    auto const giveBack = [&container](QORContainer::Iterator* iterator) {
        container.deleteIterator(iterator);
    };
    return std::unique_ptr<QORContainer::Iterator, decltype(giveBack)>(container.newIterator(true), giveBack);
}

} // namespace

// The primitives don't know which ends they work on: what they do is looked up in the ends later, unless the
// recipe, which does know, called them.

bool QORObject::_addnn(QORContainer* own, QORContainer* far, QORObject* other) {
    if (other == this)
        return false;
    linked |= QORRecipe::lookAtEnds;
    other->linked |= QORRecipe::lookAtEnds;
    auto const iterator = borrowIterator(*own);
    if (!own->add(other, true, iterator.get()))
        return false;
    try {
        if (far->add(this, true, nullptr))
            return true;
    } catch (...) {
        own->remove(iterator.get());
        throw;
    }
    own->remove(iterator.get());
    return false;
}

bool QORObject::_addnu(QORContainer* own, QORObject** far, QORObject* other) {
    if (*far)
        return false;
    linked |= QORRecipe::lookAtEnds;
    other->linked |= QORRecipe::lookAtEnds;
    if (!own->add(other, true, nullptr))
        return false;
    if (other == this) // the object stays in its own end
        return false;
    *far = this;
    return true;
}

bool QORObject::_adduu(QORObject** own, QORObject** far, QORObject* other) {
    if (*far || *own || other == this)
        return false;
    linked |= QORRecipe::lookAtEnds;
    other->linked |= QORRecipe::lookAtEnds;
    *own = other;
    *far = this;
    return true;
}

namespace {

/// Searches an end for a key from a caller's cursor on and moves the cursor to what is found; returns the
/// position, or -1. From 0 the search starts at the first element; from any other number at the element
/// itself that the cursor names, so that what stands there is found again.
int searchFrom(QORArrayInterface const& end, QORString const& key, int& cursor) {
    int const position = cursor == 0 ? end.findFirstElement(&key) : end.findNextElement(&key, cursor - 1);
    if (position != -1)
        cursor = position;
    return position;
}

} // namespace

QORObject* QORObject::_getn(QORArrayInterface const* end, QORString const& key, int* cursor) const {
    int const position = searchFrom(*end, key, *cursor);
    if (position == -1)
        return nullptr;
    return static_cast<QORObject*>((*end)[position]);
}

QORObject* QORObject::_removen(QORArrayInterface* end, QORString const& key, int* cursor) {
    int const position = searchFrom(*end, key, *cursor);
    if (position == -1)
        return nullptr;
    linked |= QORRecipe::lookAtEnds;
    return static_cast<QORObject*>(end->removeElement(position));
}

bool QORObject::_removen(QORContainer* end, QORObject* item) {
    auto const iterator = borrowIterator(*end);
    try {
        end->contains(item, iterator.get());
    } catch (...) { // a caller's comparison; the search below needs none
    }
    // A namesake, or an element that no longer lies where its key belongs: this very object is looked for.
    if (iterator->get() != item)
        for (iterator->moveToFirst(); iterator->get() && iterator->get() != item;)
            iterator->next(1);
    if (!iterator->get())
        return false;
    linked |= QORRecipe::lookAtEnds;
    return end->remove(iterator.get());
}

// ---- traversal operations -------------------------------------------------------------------------------

bool QORTraversalOperation::pre_process(QORObject*, void*&) {
    return true;
}

void QORTraversalOperation::post_process(QORObject*, void*) {}

void QORTraversalDelete::post_process(QORObject* object, void* data) {
    if (object && object != data)
        QORRecipe::dispose(*object);
}

void QORSetGeneralPointerOperation::post_process(QORObject* object, void*) {
    object->generalPointer = pointer;
}

// ---- QORObjectNameHashtable -----------------------------------------------------------------------------

namespace {

QORString const& nameOfItem(QORContainerItem const* item) {
    return static_cast<QORObject const*>(item)->getName();
}

} // namespace

int QORObjectNameHashtable::compare2Object(QORContainerItem const* a, QORContainerItem const* b) const {
    return std::strcmp(nameOfItem(a).chars, nameOfItem(b).chars);
}

int QORObjectNameHashtable::compare2Key(QORContainerItem const* item, QORContainerKey const* key) const {
    return std::strcmp(nameOfItem(item).chars, static_cast<char const*>(key));
}

unsigned long QORObjectNameHashtable::hashObject(QORContainerItem const* item) const {
    return static_cast<unsigned>(nameOfItem(item).hashCode());
}

unsigned long QORObjectNameHashtable::hashKey(QORContainerKey const* key) const {
    return static_cast<unsigned>(stringHashCode(static_cast<char const*>(key)));
}
