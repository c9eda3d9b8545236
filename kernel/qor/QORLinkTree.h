#pragma once

#include <qor/QORArrayInterface.h>
#include <qor/QORRBTree.h>

#include <typeinfo>

class QORObject;

/// A nary link end kept as a sorted tree of `QORObject*`. It never owns its elements.
///
/// The tree has one **cursor**: a node, `current`, and its place in tree order, `position`.
///
/// - Reading by position moves the cursor there, from the cursor, the first or the last node. A loop over
///   ascending positions takes one step for each element. A link tree belongs to one thread at a time,
///   reads included.
/// - A search that finds an element sets the cursor on it; one that finds none unsets it, or leaves it
///   where the search began.
/// - When an element is added or removed before the cursor, the cursor stays on its element and its position
///   changes. When the element itself is removed, the cursor goes to the next one, or to the previous one if
///   there is no next one.
/// - Emptying, draining and copying unset the cursor: `position` is -1.
/// - In a tree by address, a search by name walks from element to element, yet the position changes by
///   one for each match. It may then be less than the place of the node.
class QOR_API QORLinkTree : public QORRBTree, public QORArrayInterface {
public:
    QORLinkTree() = default;
    /// Holds the same elements; the cursor of the copy is unset.
    QORLinkTree(QORLinkTree const& other);
    QORLinkTree& operator=(QORLinkTree const& other);
    QORRBTree& operator=(QORRBTree const& other) override;

    bool empty() override;
    QORRBTreeNode* addNode(QORContainerItem const* item, bool unique) override;
    QORContainerItem* removeNode(QORRBTreeNode* node) override;

    int addElement(QORContainerItem const* item, bool unique) override;
    int containsElement(QORContainerItem const* item) const override;
    QORContainerItem* operator[](int index) const override;
    int findFirstElement(QORContainerKey const* key) const override;
    int findLastElement(QORContainerKey const* key) const override;
    int findNextElement(QORContainerKey const* key, int from) const override;
    int findPreviousElement(QORContainerKey const* key, int from) const override;
    QORContainerItem* removeElement(int index) override;

    /// `addNode` without a duplicate, which knows more. The nodes of an end that owns its elements lie
    /// together, since walks and searches go along them. In an end `byAddress`, whose elements stay in order,
    /// adding behind the last element takes the same time however many there are.
    QORRBTreeNode* addLinked(QORContainerItem const* item, bool owned, bool byAddress);
    /// Changes the key of a node's element: takes it out, calls `change`, puts it back there. When the
    /// tree refuses the new key, calls `change` once more, to restore the old key, puts the element back
    /// where it was and returns false; where comparing throws, does the same and passes the exception on.
    /// Allocates nothing itself; `change` must not throw.
    bool rekeyNode(QORRBTreeNode* node, void (*change)(void*), void* context);
    /// Takes an element over from another tree with its node, which it returns; null, with nothing changed,
    /// if this end refuses it or the other one doesn't hold it. Nothing changes either where comparing
    /// throws. Allocates nothing.
    QORRBTreeNode* adoptItem(QORLinkTree& other, QORContainerItem const* item);
    /// `drainFirst` of the tree, with the cursor unset.
    QORContainerItem* drainFirst();

protected:
    /// The class whose `nextNode` and `previousNode` follow the shape of the tree, so that a place may be
    /// reached by counting nodes. Each library class returns itself. An object of a class derived from it,
    /// which may override those two, is walked from node to node.
    virtual std::type_info const& countedAs() const;

    /// The cursor: the node whose place in tree order is `position`. While that is -1, the cursor is unset,
    /// and the field serves as `lastKnown`.
    mutable QORRBTreeNode* current = nullptr;
    using _QORContainer::position;

private:
    QORRBTreeNode* addNode(QORContainerItem const* item, bool unique, bool owned, QORRBTreeNode** last);
    /// While the cursor is unset: the last node of the tree, or null if the tree doesn't know it.
    QORRBTreeNode*& lastKnown() const { return current; }
    void unsetCursor() const;
    int _moveTo(QORRBTreeNode const* node) const;
    QORRBTreeNode* _moveTo(int index) const;
    bool hasPlaces() const;
    QORRBTreeNode* walk(QORRBTreeNode* from, int steps) const;
    bool cursorHolds() const;
    void leaveNode(QORRBTreeNode* node);
    void noteAdded(QORRBTreeNode* node);
};
