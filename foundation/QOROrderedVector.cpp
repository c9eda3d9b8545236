#include <qor/QOROrderedVector.h>

#include <algorithm>

bool QOROrderedVector::remove(QORContainer::Iterator* iterator) {
    return QORVector::remove(iterator);
}

void QOROrderedVector::insertElement(QORContainerItem const* item, int index) {
    insertAt(item, std::clamp(index, 0, size));
}
