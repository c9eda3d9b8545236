#pragma once

#include <qor/QORVector.h>

/// A vector whose removal is bound to keep the order of what remains, with insertion anywhere.
class QOR_API QOROrderedVector : public QORVector {
public:
    bool remove(QORContainer::Iterator* iterator) override;
    /// Inserts an item before the element at `position`; a position out of range is brought into it.
    virtual void insertElement(QORContainerItem const* item, int index);
};
