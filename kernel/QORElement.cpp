#include <qor/QORElement.h>

#include "QORRecipe.h"

#include <qor/QORNote.h>
#include <qor/QORSortedPropertyValuesLinkTree.h>

#include <memory>
#include <vector>

namespace {

/// Adds copies of another element's notes to those that an element has: all of them or, if memory ends, none.
void copyNotes(QORElement const& from, QORElement& to) {
    std::vector<std::unique_ptr<QORNote>> copies;
    for (int i = 0, count = from.getNoteCount(); i < count; ++i)
        copies.push_back(std::make_unique<QORNote>(*from.getNote(i)));
    try {
        for (auto const& copy : copies)
            to.addNote(copy.get());
    } catch (...) {
        for (auto const& copy : copies)
            to.removeNote(copy.get());
        throw;
    }
    for (auto& copy : copies)
        if (copy->getElement())
            copy.release();
}

} // namespace

QORElement::QORElement(QORElement const& other)
    : QORObject(other), description_(other.description_), nativeType_(other.nativeType_) {
    copyNotes(other, *this);
}

QORElement& QORElement::operator=(QORElement const& other) {
    if (this == &other)
        return *this;
    QORRecipe::reserveTexts(*this, other, QORMetamodel::description(QORElementType::ELEMENT));
    copyNotes(other, *this);
    QORObject::operator=(other);
    description_ = other.description_;
    nativeId_ = QORString();
    nativeType_ = other.nativeType_;
    return *this;
}

void QORElement::getSortedPropertyValues(QORSortedPropertyValuesLinkTree& result) const {
    result.empty();
    QORVector::Iterator walk(propertyValue_, true);
    for (QORContainerItem* value = walk.get(); value; value = walk.next(1))
        result.add(value, false, nullptr);
}
