#pragma once

#include <qor/QORExport.h>
#include <qor/QORHashtable.h>

/// A hash table of `QORMetaClass*` by display name; its keys are `char const*`. It doesn't own its items.
class QOR_API QORMetaClassDisplayNameHashtable : public QORHashtable {
public:
    /// An empty table with a number of buckets.
    explicit QORMetaClassDisplayNameHashtable(int tableSize);

    /// Compares the display names of two classes by bytes.
    int compare2Object(QORContainerItem const* a, QORContainerItem const* b) const override;
    /// Compares the display name of a class with a text by bytes.
    int compare2Key(QORContainerItem const* item, QORContainerKey const* key) const override;
    /// The hash of a class's display name.
    unsigned long hashObject(QORContainerItem const* item) const override;
    /// The hash of a text, the same as that of a class with this display name.
    unsigned long hashKey(QORContainerKey const* key) const override;
};
