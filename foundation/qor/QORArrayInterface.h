#pragma once

#include <qor/QORContainer.h>

/// Access to the elements of a container by position, counted from 0; -1 stands for none.
class QOR_API QORArrayInterface : public virtual _QORContainer {
public:
    ~QORArrayInterface() override = default;

    /// Adds an item; returns its position, or -1 when `unique` refuses it.
    virtual int addElement(QORContainerItem const* item, bool unique) = 0;
    /// Position of an element that compares 0 with the item, or -1.
    virtual int containsElement(QORContainerItem const* item) const = 0;
    /// The item at the position, or null if out of range.
    virtual QORContainerItem* operator[](int index) const = 0;
    /// Position of the first element with the key, or -1.
    virtual int findFirstElement(QORContainerKey const* key) const = 0;
    /// Position of the last element with the key, or -1.
    virtual int findLastElement(QORContainerKey const* key) const = 0;
    /// Position of the next element with the key strictly after `from`, or -1.
    virtual int findNextElement(QORContainerKey const* key, int from) const = 0;
    /// Position of the previous element with the key strictly before `from`, or -1.
    virtual int findPreviousElement(QORContainerKey const* key, int from) const = 0;
    /// Removes the element at the position; returns its item, or null if out of range.
    virtual QORContainerItem* removeElement(int index) = 0;
};
