#pragma once

#include <qor/QORPtrLinkTree.h>

/// A link end of formats, sorted by element type and then name: no two elements share both.
class QOR_API QORFormatLinkTree : public QORPtrLinkTree {
public:
    int compare2Object(QORContainerItem const* a, QORContainerItem const* b) const override;
    int compare2Key(QORContainerItem const* item, QORContainerKey const* key) const override;

protected:
    std::type_info const& countedAs() const override;
};
