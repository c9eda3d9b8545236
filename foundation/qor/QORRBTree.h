#pragma once

#include <qor/QORContainer.h>
#include <qor/QORRBTreeNode.h>

/// A red-black tree of items, ordered by `compare2Object`; items that compare 0 lie in the order of their
/// addresses. Adding, finding and removing are logarithmic.
class QOR_API QORRBTree : public QORContainer {
public:
    /// A walk over a tree in its order.
    class QOR_API Iterator : public QORContainer::Iterator {
    public:
        /// Leaves the iterator unattached until `findFirst` or `contains` of a tree sets it.
        Iterator() = default;
        /// Walks `tree`, from its first element if `toFirst`.
        Iterator(QORRBTree const& tree, bool toFirst);
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
        /// Whether both walk the same tree and stand on the same element.
        virtual bool operator==(Iterator const& other) const;
        virtual bool operator!=(Iterator const& other) const;
        virtual Iterator& operator=(Iterator const& other);
        /// Attaches the iterator to a tree, on its first element if `toFirst`.
        virtual void moveTo(QORRBTree& tree, bool toFirst);
        /// The element so many steps ahead, without a move; null if there is none or the current one is gone.
        QORContainerItem* ahead(int steps) const;

    private:
        friend class QORRBTree;
        QORRBTree const* tree() const;
        QORContainerItem* place(QORRBTreeNode* onto);
        QORRBTreeNode* step(bool forward) const;

        QORRBTreeNode* node = nullptr; ///< pinned while the iterator stands on it
    };

    QORRBTree() = default;
    QORRBTree(QORRBTree const& other);
    ~QORRBTree() override;

    bool empty() override;
    Iterator* newIterator(bool toFirst) const override { return new Iterator(*this, toFirst); }
    void deleteIterator(QORContainer::Iterator* iterator) const override { delete iterator; }
    bool add(QORContainerItem const* item, bool unique, QORContainer::Iterator* iterator) override;
    bool contains(QORContainerItem const* item, QORContainer::Iterator* iterator) const override;
    QORContainerItem* findFirst(QORContainerKey const* key, QORContainer::Iterator* iterator) const override;
    bool remove(QORContainer::Iterator* iterator) override;
    /// Takes over the items of another tree in its order. Strong guarantee: on bad_alloc nothing changed.
    virtual QORRBTree& operator=(QORRBTree const& other);
    /// Whether both hold the same number of items and these compare 0 in pairs.
    virtual bool operator==(QORRBTree const& other) const;
    virtual bool operator!=(QORRBTree const& other) const;
    /// Adds an item; returns its node, or null when `unique` refuses it.
    virtual QORRBTreeNode* addNode(QORContainerItem const* item, bool unique);
    /// The node of the item, else a node that compares 0 with it, else null.
    virtual QORRBTreeNode* getNode(QORContainerItem const* item) const;
    virtual QORRBTreeNode* firstNode() const;
    virtual QORRBTreeNode* lastNode() const;
    /// The node after `node`, or null at the end.
    virtual QORRBTreeNode* nextNode(QORRBTreeNode const* node) const;
    /// The node before `node`, or null at the beginning.
    virtual QORRBTreeNode* previousNode(QORRBTreeNode const* node) const;
    /// The first node with the key in tree order, or null.
    virtual QORRBTreeNode* findFirstNode(QORContainerKey const* key) const;
    /// The last node with the key in tree order, or null.
    virtual QORRBTreeNode* findLastNode(QORContainerKey const* key) const;
    /// The node after `node` if it has the key, else null.
    virtual QORRBTreeNode* findNextNode(QORContainerKey const* key, QORRBTreeNode const* node) const;
    /// The node before `node` if it has the key, else null.
    virtual QORRBTreeNode* findPreviousNode(QORContainerKey const* key, QORRBTreeNode const* node) const;
    /// Takes a node out of the tree and frees it; returns its item.
    virtual QORContainerItem* removeNode(QORRBTreeNode* node);

    /// The node of this very item, wherever it lies: by descent, and by a scan where the order no longer
    /// holds or comparing throws. Null if the item isn't there.
    QORRBTreeNode* nodeOfItem(QORContainerItem const* item) const;
    /// The first item, or null.
    QORContainerItem* firstItem() const { return _first ? _first->item : nullptr; }
    /// Takes the first item out while `size` keeps counting it, for walks that empty a tree; null at the
    /// end. `endDraining` then settles `size`.
    QORContainerItem* drainFirst();
    /// Ends a series of `drainFirst`.
    void endDraining();

protected:
    /// `addNode` of this class. `apart` takes the node from pages that only such nodes have. `last`, if it
    /// isn't null, leads to the last node where that is known, which spares an item after all others the way
    /// down, and gets the new node if that is the last one then. Only for items that stay in order.
    QORRBTreeNode* makeNode(QORContainerItem const* item, bool unique, bool apart, QORRBTreeNode** last);
    /// Takes a node out of the tree without freeing it.
    void unlinkNode(QORRBTreeNode* node);
    /// Puts an unlinked node back where its item belongs now; false when `unique` refuses it.
    bool relinkNode(QORRBTreeNode* node, bool unique);
    /// Puts an unlinked node back before `follower`, or at the end if that is null, whatever the order says.
    void relinkNodeBefore(QORRBTreeNode* node, QORRBTreeNode* follower);
    /// Whether `a` lies before `b` in the tree, judged only by the tree's shape.
    static bool liesBefore(QORRBTreeNode const* a, QORRBTreeNode const* b);
    /// Whether the nodes of the tree, which isn't empty, are counted and as many as `size` says. Counts them
    /// if nobody has yet; from then on, adding and removing keep the counts, and places are found in
    /// logarithmic time.
    bool isCounted() const;
    /// The place of a node of a counted tree in tree order, from 0.
    static int placeOf(QORRBTreeNode const* node);
    /// The node at a place of a counted tree, or null if out of range.
    QORRBTreeNode* nodeAt(int place) const;
    /// Neighbours in tree order, without a virtual call.
    static QORRBTreeNode* following(QORRBTreeNode const* node);
    static QORRBTreeNode* preceding(QORRBTreeNode const* node);

    QORRBTreeNode* root = nullptr;
    QORRBTreeNode* _first = nullptr;

private:
    struct Place {
        QORRBTreeNode* parent;
        bool left;
        bool taken;
        bool atEnd; ///< after all nodes
    };
    Place placeFor(QORContainerItem const* item, bool unique) const;
    void insertNode(QORRBTreeNode* node, QORRBTreeNode* parent, bool left);
    void eraseNode(QORRBTreeNode* node);
    void replaceChild(QORRBTreeNode* parent, QORRBTreeNode* from, QORRBTreeNode* to);
    void rotate(QORRBTreeNode* node, bool left);
    void repairInsert(QORRBTreeNode* node);
    void repairErase(QORRBTreeNode* node, QORRBTreeNode* parent);
    void retire(QORRBTreeNode* node, QORRBTreeNode* follower, QORRBTreeNode* predecessor);
    void freeNodes(QORRBTreeNode* top);
    void cloneFrom(QORRBTree const& other);
    /// Prefetches what the next step of a descent by items reads, whichever way it goes.
    static void prefetchChildren(QORRBTreeNode const* node);
    static void pin(QORRBTreeNode* node);
    static void unpin(QORRBTreeNode* node);
};
