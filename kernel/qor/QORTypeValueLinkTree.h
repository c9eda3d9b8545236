#pragma once

#include <qor/QORLinkTree.h>

/// A link end of `QORTypeValue` objects, sorted by name, unnamed ones by value; both are unique.
class QOR_API QORTypeValueLinkTree : public QORLinkTree {
public:
    int compare2Object(QORContainerItem const* a, QORContainerItem const* b) const override;
    int compare2Key(QORContainerItem const* item, QORContainerKey const* key) const override;

protected:
    std::type_info const& countedAs() const override;
};
