#pragma once

#include <qor/QORNameLinkTree.h>

/// A link end sorted by name and then element type: no two elements share both.
class QOR_API QORNameElementTypeLinkTree : public QORNameLinkTree {
public:
    int compare2Object(QORContainerItem const* a, QORContainerItem const* b) const override;

protected:
    std::type_info const& countedAs() const override;
};
