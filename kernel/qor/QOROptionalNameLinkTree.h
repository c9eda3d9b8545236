#pragma once

#include <qor/QORNameLinkTree.h>

/// A link end sorted by name, in which any number of elements may be unnamed.
class QOR_API QOROptionalNameLinkTree : public QORNameLinkTree {
public:
    int compare2Object(QORContainerItem const* a, QORContainerItem const* b) const override;

protected:
    std::type_info const& countedAs() const override;
};
