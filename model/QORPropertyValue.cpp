#include <qor/QORPropertyValue.h>

#include <qor/QORPropertyType.h>

QORString const& QORPropertyValue::getName() const {
    QORPropertyType const* const type = getPropertyType();
    return type ? type->getName() : emptyString;
}

QORString QORPropertyValue::getDisplayName() const {
    QORPropertyType const* const type = getPropertyType();
    return type ? type->getDisplayName() : QORString();
}

/// The name is that of the type and can't be set here.
void QORPropertyValue::setName(QORString const&) {
    throw 1;
}
