#include <qor/QORAliasType.h>

#include <qor/QORTypeValueByPosition.h>

namespace {

/// The type at the end of the chain, which must end at a type that is no alias.
QORType const& endOfChain(QORAliasType const& alias) {
    QORType const* type = &alias;
    do
        type = static_cast<QORAliasType const*>(type)->getAliasOfType();
    while (type->getElementType() == QORElementType::ALIAS_TYPE);
    return *type;
}

/// The aliased type. On an alias of an alias this never returns: the type-value operations don't go down a
/// chain.
QORType const& aliased(QORAliasType const& alias) {
    QORType const& type = *alias.getAliasOfType();
    bool volatile isAlias = true; // volatile, or the loop might be taken for one that ends
    while (isAlias)
        isAlias = type.getElementType() == QORElementType::ALIAS_TYPE;
    return type;
}

} // namespace

QORString const& QORAliasType::getDataType() const {
    return endOfChain(*this).getDataType();
}

int QORAliasType::getLength() const {
    return endOfChain(*this).getLength();
}

int QORAliasType::getScale() const {
    return endOfChain(*this).getScale();
}

QORString const& QORAliasType::getInitialValue() const {
    return endOfChain(*this).getInitialValue();
}

QORString const& QORAliasType::getLowerBound() const {
    return endOfChain(*this).getLowerBound();
}

QORString const& QORAliasType::getUpperBound() const {
    return endOfChain(*this).getUpperBound();
}

bool QORAliasType::getUserDefined() const {
    return endOfChain(*this).getUserDefined();
}

QORString const& QORAliasType::getNativeDataType() const {
    return endOfChain(*this).getNativeDataType();
}

bool QORAliasType::getUserDataType() const {
    return endOfChain(*this).getUserDataType();
}

QORString const& QORAliasType::getNativeLogicalDataType() const {
    return endOfChain(*this).getNativeLogicalDataType();
}

QORType* QORAliasType::getActualType() const {
    QORType* type = getAliasOfType();
    while (type && type->getElementType() == QORElementType::ALIAS_TYPE)
        type = static_cast<QORAliasType*>(type)->getAliasOfType();
    return type;
}

int QORAliasType::getTypeValueCount() const {
    return aliased(*this).getTypeValueCount();
}

bool QORAliasType::containsTypeValue(QORTypeValue const* value) const {
    return aliased(*this).containsTypeValue(value);
}

QORTypeValue* QORAliasType::getTypeValue(int index) const {
    return aliased(*this).getTypeValue(index);
}

QORTypeValue* QORAliasType::getTypeValue(QORString const& wanted, int* cursor) const {
    return aliased(*this).getTypeValue(wanted, cursor);
}

void QORAliasType::getTypeValueByPosition(QORTypeValueByPosition& view) const {
    aliased(*this).getTypeValueByPosition(view);
}
