#pragma once

#include <qor/QORLinkTree.h>

/// A link end sorted by name: no two elements share a name. A key is a `QORString const*`.
class QOR_API QORNameLinkTree : public QORLinkTree {
public:
    int compare2Object(QORContainerItem const* a, QORContainerItem const* b) const override;
    int compare2Key(QORContainerItem const* item, QORContainerKey const* key) const override;

protected:
    std::type_info const& countedAs() const override;
};
