#include <qor/QORPtrLinkTree.h>

#include "QORNameOrder.h"

#include <cstring>

// The elements lie in the order of their addresses, so a name is looked for from element to element.

namespace {

bool hasName(QORContainerItem const* item, QORContainerKey const* key) {
    QORString const& name = qorNameOf(item);
    QORString const& wanted = *static_cast<QORString const*>(key);
    return name.length == wanted.length && std::strcmp(name.chars, wanted.chars) == 0;
}

} // namespace

QORRBTreeNode* QORPtrLinkTree::findFirstNode(QORContainerKey const* key) const {
    if (size == 0)
        return nullptr;
    QORRBTreeNode* node = _first;
    while (node && !hasName(node->item, key))
        node = nextNode(node);
    return node;
}

QORRBTreeNode* QORPtrLinkTree::findLastNode(QORContainerKey const* key) const {
    if (size == 0)
        return nullptr;
    QORRBTreeNode* node = lastNode();
    while (node && !hasName(node->item, key))
        node = previousNode(node);
    return node;
}

QORRBTreeNode* QORPtrLinkTree::findNextNode(QORContainerKey const* key, QORRBTreeNode const* from) const {
    QORRBTreeNode* node = nextNode(from);
    while (node && !hasName(node->item, key))
        node = nextNode(node);
    return node;
}

QORRBTreeNode* QORPtrLinkTree::findPreviousNode(QORContainerKey const* key, QORRBTreeNode const* from) const {
    QORRBTreeNode* node = previousNode(from);
    while (node && !hasName(node->item, key))
        node = previousNode(node);
    return node;
}

std::type_info const& QORPtrLinkTree::countedAs() const {
    return typeid(QORPtrLinkTree);
}
