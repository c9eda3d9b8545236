#include <qor/QORPropertyElementTypeScope.h>

#include "kernel/QORRecipe.h"

#include <new>

/// The field keeps the new scope also where the owner refuses the name that goes with it.
void QORPropertyElementTypeScope::setScope(QORElementType value) {
    QORString const text(getElementTypeName(value));
    QORElementType const before = scope_;
    scope_ = value;
    try {
        setName(text);
    } catch (std::bad_alloc const&) {
        scope_ = before;
        throw;
    }
}

QORPropertyElementTypeScope&
QORPropertyElementTypeScope::operator=(QORPropertyElementTypeScope const& other) {
    if (this == &other)
        return *this;
    QORString const text(getElementTypeName(other.scope_));
    QORRecipe::reserveTexts(*this, other,
                            QORMetamodel::description(QORElementType::PROPERTY_ELEMENT_TYPE_SCOPE));
    QORObject::operator=(other);
    scope_ = other.scope_;
    setName(text);
    return *this;
}
