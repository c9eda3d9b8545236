#pragma once

#include <qor/QORPtrLinkTree.h>

/// A view of `QORPropertyValue` objects in the order of their types: usage, group, position and name of the
/// type, then position of the value.
class QOR_API QORSortedPropertyValuesLinkTree : public QORPtrLinkTree {
public:
    int compare2Object(QORContainerItem const* a, QORContainerItem const* b) const override;

protected:
    std::type_info const& countedAs() const override;
};
