#include <qor/QOROrderedVector.h>

#include <algorithm>

bool QOROrderedVector::remove(QORContainer::Iterator* iterator) {
    return QORVector::remove(iterator);
}

void QOROrderedVector::insertElement(QORContainerItem const* item, int position) {
    insertAt(item, std::clamp(position, 0, size));
}
