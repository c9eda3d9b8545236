#include <qor/QORAttribute.h>

#include <qor/QORClass.h>

// The classifier's own class isn't looked at, so the cast is unchecked.
QORClass* QORAttribute::getAssociatedClass() const {
    return reinterpret_cast<QORClass*>(getClassifier());
}

bool QORAttribute::addAssociatedClass(QORClass* owner) {
    return addClassifier(owner);
}

bool QORAttribute::removeAssociatedClass() {
    return removeClassifier();
}

bool QORAttribute::removeAssociatedClass(QORClass* owner) {
    return removeClassifier(owner);
}
