#pragma once

#include <qor/QORVector.h>

/// A link end in the order of adding: the same object stands in it once, names may be shared. A key is a
/// `QORString const*`.
class QOR_API QORPtrLinkVector : public QORVector {
public:
    int compare2Key(QORContainerItem const* item, QORContainerKey const* key) const override;
};
