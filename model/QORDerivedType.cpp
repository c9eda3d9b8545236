#include <qor/QORDerivedType.h>

#include "QORTypeValueCopies.h"
#include "kernel/QORRecipe.h"

#include <utility>

QORDerivedType::QORDerivedType(QORDerivedType const& other)
    : QORConcreteType(other), userDefined_(other.getUserDefined()), userDataType_(other.getUserDataType()),
      initialValue_(other.getInitialValue()), lowerBound_(other.getLowerBound()),
      upperBound_(other.getUpperBound()), nativeDataType_(other.getNativeDataType()),
      nativeLogicalDataType_(other.getNativeLogicalDataType()) {
    elementType = QORElementType::DERIVED_TYPE;
    QORTypeValueCopies(other).giveTo(*this, QORElementType::DERIVED_TYPE);
}

QORDerivedType& QORDerivedType::operator=(QORDerivedType const& other) {
    if (this == &other)
        return *this;
    // All is read before anything changes: a caller's class may override what reads, and that may throw.
    QORTypeValueCopies copies(other);
    QORString initialValue = other.getInitialValue();
    QORString lowerBound = other.getLowerBound();
    QORString upperBound = other.getUpperBound();
    bool const userDefined = other.getUserDefined();
    QORString nativeDataType = other.getNativeDataType();
    bool const userDataType = other.getUserDataType();
    QORString nativeLogicalDataType = other.getNativeLogicalDataType();
    QORConcreteType::operator=(other);
    initialValue_ = std::move(initialValue);
    lowerBound_ = std::move(lowerBound);
    upperBound_ = std::move(upperBound);
    userDefined_ = userDefined;
    nativeDataType_ = std::move(nativeDataType);
    userDataType_ = userDataType;
    nativeLogicalDataType_ = std::move(nativeLogicalDataType);
    copies.replaceThoseOf(*this, QORElementType::DERIVED_TYPE);
    return *this;
}

bool QORDerivedType::finalEquals(QORDerivedType const& other) const {
    int const count = getTypeValueCount();
    if (count != other.getTypeValueCount())
        return false;
    for (int i = 0; i < count; ++i)
        if (*getTypeValue(i) != *other.getTypeValue(i))
            return false;
    return this == &other ||
           (initialValue_ == other.initialValue_ && lowerBound_ == other.lowerBound_ &&
            upperBound_ == other.upperBound_ && userDefined_ == other.userDefined_ &&
            nativeDataType_ == other.nativeDataType_ && userDataType_ == other.userDataType_ &&
            nativeLogicalDataType_ == other.nativeLogicalDataType_ && QORConcreteType::finalEquals(other));
}

QORObject* QORDerivedType::isolate(bool deleteUnreferenced) {
    if (!deleteUnreferenced) {
        removeDerivedFromConcreteType(getDerivedFromConcreteType());
        while (getTypeValueCount() != 0)
            if (!removeTypeValue(getTypeValue(0)))
                break;
    }
    QORRecipe::isolate(*this, QORMetamodel::description(QORElementType::DERIVED_TYPE), deleteUnreferenced);
    return this;
}
