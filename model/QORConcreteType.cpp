#include <qor/QORConcreteType.h>

#include "kernel/QORRecipe.h"

QORConcreteType& QORConcreteType::operator=(QORConcreteType const& other) {
    if (this == &other)
        return *this;
    QORRecipe::reserveTexts(*this, other, QORMetamodel::description(QORElementType::CONCRETE_TYPE));
    QORType::operator=(other);
    dataType_ = other.getDataType();
    length_ = other.getLength();
    scale_ = other.getScale();
    return *this;
}

bool QORConcreteType::finalEquals(QORConcreteType const& other) const {
    return this == &other || (getDataType() == other.getDataType() && getLength() == other.getLength() &&
                              getScale() == other.getScale() && QORType::finalEquals(other));
}
