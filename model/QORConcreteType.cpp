#include <qor/QORConcreteType.h>

#include <utility>

QORConcreteType& QORConcreteType::operator=(QORConcreteType const& other) {
    if (this == &other)
        return *this;
    // All is read before anything changes: a caller's class may override what reads, and that may throw.
    QORString dataType = other.getDataType();
    int const length = other.getLength();
    int const scale = other.getScale();
    QORType::operator=(other);
    dataType_ = std::move(dataType);
    length_ = length;
    scale_ = scale;
    return *this;
}

bool QORConcreteType::finalEquals(QORConcreteType const& other) const {
    return this == &other || (getDataType() == other.getDataType() && getLength() == other.getLength() &&
                              getScale() == other.getScale() && QORType::finalEquals(other));
}
