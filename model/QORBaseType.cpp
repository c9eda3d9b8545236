#include <qor/QORBaseType.h>

#include <qor/QORTypeValueByPosition.h>

QORString const& QORBaseType::getInitialValue() const {
    return emptyString;
}

QORString const& QORBaseType::getLowerBound() const {
    return emptyString;
}

QORString const& QORBaseType::getUpperBound() const {
    return emptyString;
}

bool QORBaseType::getUserDefined() const {
    return false;
}

QORString const& QORBaseType::getNativeDataType() const {
    return emptyString;
}

bool QORBaseType::getUserDataType() const {
    return false;
}

QORString const& QORBaseType::getNativeLogicalDataType() const {
    return emptyString;
}

int QORBaseType::getTypeValueCount() const {
    return 0;
}

bool QORBaseType::containsTypeValue(QORTypeValue const*) const {
    return false;
}

QORTypeValue* QORBaseType::getTypeValue(int) const {
    return nullptr;
}

QORTypeValue* QORBaseType::getTypeValue(QORString const&, int*) const {
    return nullptr;
}

void QORBaseType::getTypeValueByPosition(QORTypeValueByPosition& view) const {
    view.empty();
}
