#include <qor/QORElement.h>

#include "QORRecipe.h"

#include <qor/QORNote.h>
#include <qor/QORSortedPropertyValuesLinkTree.h>

#include <memory>

namespace {

/// Copies the notes of one element to another, which keeps those that it has.
void copyNotes(QORElement const& from, QORElement& to) {
    for (int i = 0, count = from.getNoteCount(); i < count; ++i) {
        auto copy = std::make_unique<QORNote>(*from.getNote(i));
        if (to.addNote(copy.get()))
            copy.release();
    }
}

} // namespace

QORElement::QORElement(QORElement const& other)
    : QORObject(other), description_(other.description_), nativeType_(other.nativeType_) {
    try {
        copyNotes(other, *this);
    } catch (...) {
        removeNotes();
        throw;
    }
}

QORElement& QORElement::operator=(QORElement const& other) {
    if (this == &other)
        return *this;
    QORObject::operator=(other);
    description_ = other.description_;
    nativeId_ = QORString();
    nativeType_ = other.nativeType_;
    copyNotes(other, *this);
    return *this;
}

void QORElement::getSortedPropertyValues(QORSortedPropertyValuesLinkTree& result) const {
    result.empty();
    QORVector::Iterator walk(propertyValue_, true);
    for (QORContainerItem* value = walk.get(); value; value = walk.next(1))
        result.add(value, false, nullptr);
}
