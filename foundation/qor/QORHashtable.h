#pragma once

#include <qor/QORContainer.h>

/// A hash table of items: buckets by `hashObject` and `hashKey`, comparison by `compare2Object` and
/// `compare2Key` within a bucket. A walk goes in the order of adding.
class QOR_API QORHashtable : public QORContainer {
    struct Node;

public:
    /// A walk over a table in the order of adding.
    class QOR_API Iterator : public QORContainer::Iterator {
    public:
        /// Leaves the iterator unattached until `findFirst` or `contains` of a table sets it.
        Iterator() = default;
        /// Walks `table`, from its first element if `toFirst`.
        Iterator(QORHashtable const& table, bool toFirst);
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
        /// Whether both walk the same table and stand on the same element.
        virtual bool operator==(Iterator const& other) const;
        virtual bool operator!=(Iterator const& other) const;
        virtual Iterator& operator=(Iterator const& other);
        /// Attaches the iterator to a table, on its first element if `toFirst`.
        virtual void moveTo(QORHashtable& table, bool toFirst);

    private:
        friend class QORHashtable;
        QORHashtable const* table() const;
        QORContainerItem* place(Node* onto);
        Node* step(bool forward) const;

        Node* node = nullptr; ///< pinned while the iterator stands on it
    };

    /// A table with the given number of buckets; less than 1 counts as 1.
    explicit QORHashtable(int bucketCount);
    QORHashtable(QORHashtable const& other);
    ~QORHashtable() override;

    bool empty() override;
    Iterator* newIterator(bool toFirst) const override { return new Iterator(*this, toFirst); }
    void deleteIterator(QORContainer::Iterator* iterator) const override { delete iterator; }
    bool add(QORContainerItem const* item, bool unique, QORContainer::Iterator* iterator) override;
    bool contains(QORContainerItem const* item, QORContainer::Iterator* iterator) const override;
    QORContainerItem* findFirst(QORContainerKey const* key, QORContainer::Iterator* iterator) const override;
    bool remove(QORContainer::Iterator* iterator) override;
    /// Takes over the items of another table. Strong guarantee: on bad_alloc nothing changed.
    virtual QORHashtable& operator=(QORHashtable const& other);
    /// Whether both hold the same number of items and each item of one compares 0 with one of the other.
    virtual bool operator==(QORHashtable const& other) const;
    virtual bool operator!=(QORHashtable const& other) const;
    /// Changes the number of buckets and spreads the items again.
    virtual void resize(int bucketCount);
    /// The last item with the key, or null. The iterator may be null; otherwise it stands on the result.
    virtual QORContainerItem* findLast(QORContainerKey const* key, QORContainer::Iterator* iterator) const;
    /// The number that picks the bucket of an item; here the pointer itself.
    virtual unsigned long hashObject(QORContainerItem const* item) const;
    /// The number that picks the bucket of a key; here the pointer itself.
    virtual unsigned long hashKey(QORContainerKey const* key) const;

private:
    Node*& bucketOf(unsigned long hash) const;
    Node* nodeOf(QORContainerItem const* item) const;
    Node* firstWith(QORContainerKey const* key) const;
    Node* lastWith(QORContainerKey const* key) const;
    void chain(Node* node) const;
    void swapWith(QORHashtable& other);
    static void pin(Node* node);
    static void unpin(Node* node);

    Node** buckets = nullptr;
    int bucketCount = 0;
    Node* first = nullptr;
    Node* last = nullptr;
};
