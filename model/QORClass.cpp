#include <qor/QORClass.h>

#include <qor/QORAttribute.h>

bool QORClass::addAttribute(QORAttribute* attribute) {
    return addFeature(attribute);
}

void QORClass::getAttributeByPosition(QORAttributeByPosition& view) const {
    getFeatureByPosition(view);
}

bool QORClass::removeAttribute(int index) {
    return removeFeature(index);
}

bool QORClass::removeAttribute(QORString const& wanted, int* cursor) {
    return removeFeature(wanted, cursor);
}

bool QORClass::removeAttribute(QORAttribute* attribute) {
    return removeFeature(attribute);
}

void QORClass::removeAttributes() {
    removeFeatures();
}

int QORClass::getAttributeCount() const {
    return getFeatureCount();
}

bool QORClass::containsAttribute(QORAttribute const* attribute) const {
    return attribute && feature_->contains(static_cast<QORObject const*>(attribute), nullptr);
}

// Every feature counts as an attribute here: the object's class isn't looked at, so the casts are unchecked.
QORAttribute* QORClass::getAttribute(int index) const {
    return reinterpret_cast<QORAttribute*>(getFeature(index));
}

QORAttribute* QORClass::getAttribute(QORString const& wanted, int* cursor) const {
    if (cursor)
        return reinterpret_cast<QORAttribute*>(_getn(&feature_, wanted, cursor));
    return static_cast<QORAttribute*>(feature_->findFirst(&wanted, nullptr));
}
