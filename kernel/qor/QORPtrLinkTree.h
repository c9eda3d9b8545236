#pragma once

#include <qor/QORLinkTree.h>

/// A link end sorted by address: the same object stands in it once, names may be shared. Searches by name are
/// scans, as the order says nothing of names; a key is a `QORString const*`.
class QOR_API QORPtrLinkTree : public QORLinkTree {
public:
    QORRBTreeNode* findFirstNode(QORContainerKey const* key) const override;
    QORRBTreeNode* findLastNode(QORContainerKey const* key) const override;
    QORRBTreeNode* findNextNode(QORContainerKey const* key, QORRBTreeNode const* node) const override;
    QORRBTreeNode* findPreviousNode(QORContainerKey const* key, QORRBTreeNode const* node) const override;

protected:
    std::type_info const& countedAs() const override;
};
