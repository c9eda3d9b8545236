#include <qor/QORType.h>

QORType* QORType::getActualType() const {
    return const_cast<QORType*>(this);
}

QORString QORType::getDisplayName() const {
    return getDataType() + "_" + QORString(getLength()) + "_" + QORString(getScale());
}
