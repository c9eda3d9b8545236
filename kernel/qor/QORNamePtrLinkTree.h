#pragma once

#include <qor/QORNameLinkTree.h>

/// A link end sorted by name and then address: names may be shared, an object stands in it once.
class QOR_API QORNamePtrLinkTree : public QORNameLinkTree {
public:
    int compare2Object(QORContainerItem const* a, QORContainerItem const* b) const override;

protected:
    std::type_info const& countedAs() const override;
};
