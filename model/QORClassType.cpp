#include <qor/QORClassType.h>

#include <qor/QORTypeValueByPosition.h>

QORString const& QORClassType::getDataType() const {
    static QORString const undefined("undefined");
    return undefined;
}

int QORClassType::getLength() const {
    return 0;
}

int QORClassType::getScale() const {
    return 0;
}

QORString const& QORClassType::getInitialValue() const {
    return emptyString;
}

QORString const& QORClassType::getLowerBound() const {
    return emptyString;
}

QORString const& QORClassType::getUpperBound() const {
    return emptyString;
}

bool QORClassType::getUserDefined() const {
    return true;
}

QORString const& QORClassType::getNativeDataType() const {
    return emptyString;
}

bool QORClassType::getUserDataType() const {
    return false;
}

QORString const& QORClassType::getNativeLogicalDataType() const {
    return emptyString;
}

int QORClassType::getTypeValueCount() const {
    return 0;
}

bool QORClassType::containsTypeValue(QORTypeValue const*) const {
    return false;
}

QORTypeValue* QORClassType::getTypeValue(int) const {
    return nullptr;
}

QORTypeValue* QORClassType::getTypeValue(QORString const&, int*) const {
    return nullptr;
}

void QORClassType::getTypeValueByPosition(QORTypeValueByPosition& view) const {
    view.empty();
}
