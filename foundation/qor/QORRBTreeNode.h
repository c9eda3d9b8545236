#pragma once

#include <qor/QORContainer.h>
#include <qor/QORPool.h>

#include <cstddef>

/// A node of a red-black tree.
class QOR_API QORRBTreeNode {
public:
    /// The item that the node holds.
    QORContainerItem* item;

private:
    friend class QORRBTree;

    static void* operator new(std::size_t size, bool apart) {
        return apart ? QORPool::allocateApart(size) : QORPool::allocate(size);
    }
    static void operator delete(void* node, bool) { QORPool::release(node, sizeof(QORRBTreeNode)); }
    static void operator delete(void* node, std::size_t size) { QORPool::release(node, size); }

    explicit QORRBTreeNode(QORContainerItem const* held)
        : item(const_cast<QORContainerItem*>(held)), red(1), removed(0), pins(0) {}

    static int countOf(QORRBTreeNode const* node) { return node ? node->count : 0; }
    /// Sums up what hangs on the node, and it.
    void addUp() { count = countOf(left) + 1 + countOf(right); }

    QORRBTreeNode* left = nullptr;  ///< of a node removed as the last one: the node before it, or null
    QORRBTreeNode* right = nullptr; ///< of a removed node: the node that followed it, or null
    QORRBTreeNode* parent = nullptr;
    unsigned red : 1;
    unsigned removed : 1; ///< out of the tree, kept only for the iterators that stand on it
    unsigned pins : 30;   ///< iterators and removed nodes that point here
    int count = 0;        ///< nodes from here downwards; 0 in a tree whose nodes nobody has counted yet
};
