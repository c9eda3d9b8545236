#pragma once

#include <qor/QORPtrLinkTree.h>

/// The elements of a design package, sorted by name and then element type. Tables and views share one name
/// space with classes; relationships may share name and type.
class QOR_API QORModelElementLinkTree : public QORPtrLinkTree {
public:
    int compare2Object(QORContainerItem const* a, QORContainerItem const* b) const override;
    int compare2Key(QORContainerItem const* item, QORContainerKey const* key) const override;

protected:
    std::type_info const& countedAs() const override;
};
