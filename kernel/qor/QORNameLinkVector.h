#pragma once

#include <qor/QORVector.h>

/// A link end in the order of adding, in which no two elements share a name. A key is a `QORString const*`.
class QOR_API QORNameLinkVector : public QORVector {
public:
    int compare2Object(QORContainerItem const* a, QORContainerItem const* b) const override;
    int compare2Key(QORContainerItem const* item, QORContainerKey const* key) const override;
};
