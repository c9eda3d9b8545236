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

    static void* operator new(std::size_t size) { return QORPool::allocate(size); }
    static void operator delete(void* node, std::size_t size) { QORPool::release(node, size); }

    explicit QORRBTreeNode(QORContainerItem const* held) : item(const_cast<QORContainerItem*>(held)) {}

    QORRBTreeNode* left = nullptr;  ///< of a node removed as the last one: the node before it, or null
    QORRBTreeNode* right = nullptr; ///< of a removed node: the node that followed it, or null
    QORRBTreeNode* parent = nullptr;
    unsigned red : 1;
    unsigned removed : 1; ///< out of the tree, kept only for the iterators that stand on it
    unsigned pins : 30;   ///< iterators and removed nodes that point here
};
