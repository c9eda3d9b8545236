#pragma once

#include <qor/QORArrayInterface.h>
#include <qor/QORContainer.h>

/// A growing array of items in the order of their adding. Removal keeps the order of what remains.
class QOR_API QORVector : public QORContainer, public QORArrayInterface {
public:
    /// A walk over a vector by position.
    class QOR_API Iterator : public QORContainer::Iterator {
    public:
        /// Leaves the iterator unattached until `findFirst` or `contains` of a vector sets it.
        Iterator() = default;
        /// Walks `vector`, from its first element if `toFirst`.
        Iterator(QORVector const& vector, bool toFirst);
        Iterator(Iterator const& other);
        ~Iterator() override;

        QORContainerItem* operator*() const override;
        QORContainerItem* get() const override;
        QORContainerItem* moveToFirst() override;
        QORContainerItem* moveToLast() override;
        QORContainerItem* next(int steps = 1) override;
        QORContainerItem* previous(int steps = 1) override;
        QORContainerItem* findFirst(QORContainerKey const* key) override;
        QORContainerItem* findLast(QORContainerKey const* key) override;
        QORContainerItem* findNext(QORContainerKey const* key) override;
        QORContainerItem* findPrevious(QORContainerKey const* key) override;
        /// Whether both walk the same vector and stand on the same position.
        virtual bool operator==(Iterator const& other) const;
        virtual bool operator!=(Iterator const& other) const;
        virtual Iterator& operator=(Iterator const& other);
        /// Attaches the iterator to a vector, on its first element if `toFirst`.
        virtual void moveTo(QORVector& vector, bool toFirst);
        /// Goes to a position; returns its item, or null if out of range.
        virtual QORContainerItem* moveTo(int position);
        /// The element so many steps ahead, without a move; null if there is none or the current one is gone.
        QORContainerItem* ahead(int steps) const;

    private:
        friend class QORVector;
        QORVector const* vector() const;
        void attach(QORVector const* vector);
        void detach();
        void enlist();
        void copyFrom(Iterator const& other);
        QORContainerItem* place(int position);

        int index = -1;    ///< -1: the iterator stands on nothing
        bool gone = false; ///< the current element was removed; `index` is that of its follower
        Iterator* nextOfVector = nullptr;
        Iterator** linkToThis = nullptr; ///< the pointer that leads here in the vector's list of iterators
    };

    QORVector() = default;
    QORVector(QORVector const& other);
    ~QORVector() override;

    bool empty() override;
    Iterator* newIterator(bool toFirst) const override { return new Iterator(*this, toFirst); }
    void deleteIterator(QORContainer::Iterator* iterator) const override { delete iterator; }
    bool add(QORContainerItem const* item, bool unique, QORContainer::Iterator* iterator) override;
    bool contains(QORContainerItem const* item, QORContainer::Iterator* iterator) const override;
    QORContainerItem* findFirst(QORContainerKey const* key, QORContainer::Iterator* iterator) const override;
    bool remove(QORContainer::Iterator* iterator) override;
    /// Takes over the items of another vector in their order. Strong guarantee: on bad_alloc nothing changed.
    virtual QORVector& operator=(QORVector const& other);
    /// Whether both hold the same number of items and these compare 0 in pairs.
    virtual bool operator==(QORVector const& other) const;
    virtual bool operator!=(QORVector const& other) const;

    int addElement(QORContainerItem const* item, bool unique) override;
    int containsElement(QORContainerItem const* item) const override;
    QORContainerItem* operator[](int index) const override;
    int findFirstElement(QORContainerKey const* key) const override;
    int findLastElement(QORContainerKey const* key) const override;
    int findNextElement(QORContainerKey const* key, int from) const override;
    int findPreviousElement(QORContainerKey const* key, int from) const override;
    QORContainerItem* removeElement(int index) override;

    /// Makes finding and removing items of a large vector quick. Only for a vector of distinct items that are
    /// compared by address; does nothing for a small one and where memory is short.
    void buildIndex();
    /// Makes room for `count` items in all, so that adding up to that many can't fail.
    void reserve(int count);
    /// Removes this very item, whatever compares equal to it. Returns whether it was there; allocates
    /// nothing.
    bool removeItem(QORContainerItem const* item);
    /// Moves this very item after all others. Returns whether it was there; allocates nothing.
    bool moveToEnd(QORContainerItem const* moved);
    /// Takes the first item out while `size` keeps counting it, for walks that empty a vector; null at the
    /// end. `endDraining` then settles `size`.
    QORContainerItem* drainFirst();
    /// Ends a series of `drainFirst`.
    void endDraining();
    /// Frees the memory of an empty vector; iterators on it are then unattached. A vector with items
    /// stays.
    void releaseMemory();

protected:
    /// Inserts at a position from 0 to the number of items.
    void insertAt(QORContainerItem const* item, int index);

private:
    struct Block;
    int live() const;
    QORContainerItem*& item(int index) const;
    int positionOf(QORContainerItem const* wanted) const;
    void copyItems(QORVector const& other);
    void growTo(int capacity);
    void makeRoom();
    QORContainerItem* removeAt(int index);

    Block* block = nullptr;
};
