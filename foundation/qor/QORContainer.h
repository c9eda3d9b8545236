#pragma once

#include <qor/QORExport.h>

/// An item of a container: an untyped pointer that the container doesn't own.
using QORContainerItem = void;
/// A key by which items are searched; its meaning is fixed by `compare2Key` of the container's class.
using QORContainerKey = void;

/// The shared end of the container family: holds the number of items where every interface finds it.
class QOR_API _QORContainer {
public:
    virtual ~_QORContainer() = default;

    /// Number of items. Read it freely; only the containers write it.
    int size = 0;

protected:
    /// Place of the cursor of a container that has one, -1 while it is unset. Beside `size` it takes no room.
    mutable int position = -1;

    _QORContainer() = default;
    /// Leaves the number and the cursor alone: a container that takes items over counts them itself.
    _QORContainer(_QORContainer const&) {}
    _QORContainer& operator=(_QORContainer const&) { return *this; }
};

/// What all containers offer. The order of the elements and the notion of a duplicate are those of
/// `compare2Object` and `compare2Key`.
class QOR_API QORContainer : public virtual _QORContainer {
public:
    /// A walk over a container. It stays valid while elements come and go: when its current element is
    /// removed by somebody else, `get` returns null and the next step reaches the element that followed, a
    /// step back the one before. An iterator that has run past an end stands on nothing, and stays so until
    /// it is moved to an element.
    class QOR_API Iterator {
    public:
        virtual ~Iterator() = default;

        /// The container that is walked, or null for an unattached iterator.
        virtual QORContainer const* getContainer() const;
        /// The current item, or null.
        virtual QORContainerItem* operator*() const = 0;
        /// The current item, or null.
        virtual QORContainerItem* get() const = 0;
        /// Goes to the first element; returns its item, or null if there is none.
        virtual QORContainerItem* moveToFirst() = 0;
        /// Goes to the last element; returns its item, or null if there is none.
        virtual QORContainerItem* moveToLast() = 0;
        /// Goes `steps` elements on; returns the item then current, or null past the end.
        virtual QORContainerItem* next(int steps = 1) = 0;
        /// Goes `steps` elements back; returns the item then current, or null before the beginning.
        virtual QORContainerItem* previous(int steps = 1) = 0;
        /// Goes to the first element with the key; returns its item, or null.
        virtual QORContainerItem* findFirst(QORContainerKey const* key) = 0;
        /// Goes to the last element with the key; returns its item, or null.
        virtual QORContainerItem* findLast(QORContainerKey const* key) = 0;
        /// Goes to the next element with the key after the current one; returns its item, or null.
        virtual QORContainerItem* findNext(QORContainerKey const* key) = 0;
        /// Goes to the previous element with the key before the current one; returns its item, or null.
        virtual QORContainerItem* findPrevious(QORContainerKey const* key) = 0;

    protected:
        explicit Iterator(QORContainer const* walked = nullptr) : container(walked) {}
        Iterator(Iterator const&) = default;
        Iterator& operator=(Iterator const&) = default;

        QORContainer const* container;
    };

    /// Removes all items and deletes none. Returns true.
    virtual bool empty() = 0;
    /// A new iterator on the heap, on the first element if `toFirst`. End it with `deleteIterator`.
    virtual Iterator* newIterator(bool toFirst) const = 0;
    /// Deletes an iterator that `newIterator` returned; null is allowed.
    virtual void deleteIterator(Iterator* iterator) const = 0;
    /// Adds an item. With `unique`, returns false for an item that compares 0 with an element. The iterator
    /// may be null; otherwise it stands on the new element afterwards.
    virtual bool add(QORContainerItem const* item, bool unique, Iterator* iterator) = 0;
    /// Whether an element compares 0 with the item. The iterator may be null; otherwise it stands on it.
    virtual bool contains(QORContainerItem const* item, Iterator* iterator) const = 0;
    /// The first item with the key, or null. The iterator may be null; otherwise it stands on the result.
    virtual QORContainerItem* findFirst(QORContainerKey const* key, Iterator* iterator) const = 0;
    /// Removes the element under the iterator, which then stands on the element that followed. Returns false
    /// when the iterator stands on no element.
    virtual bool remove(Iterator* iterator) = 0;
    /// Negative, 0 or positive as `a` comes before, is equal to or comes after `b`; here by address.
    virtual int compare2Object(QORContainerItem const* a, QORContainerItem const* b) const;
    /// Negative, 0 or positive as the item comes before, has or comes after the key; here by address.
    virtual int compare2Key(QORContainerItem const* item, QORContainerKey const* key) const;

    /// Sign of the difference of two addresses as unsigned numbers, its value held to the range of an int.
    static int compareAddresses(void const* a, void const* b);
};
