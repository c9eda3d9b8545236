#pragma once

#include <qor/QORHashtable.h>

/// A hash table of `QORObject*` by name; a key is a `char const*`. The objects aren't owned.
class QOR_API QORObjectNameHashtable : public QORHashtable {
public:
    /// A table with the given number of buckets.
    explicit QORObjectNameHashtable(int tableSize) : QORHashtable(tableSize) {}

    int compare2Object(QORContainerItem const* a, QORContainerItem const* b) const override;
    int compare2Key(QORContainerItem const* item, QORContainerKey const* key) const override;
    unsigned long hashObject(QORContainerItem const* item) const override;
    unsigned long hashKey(QORContainerKey const* key) const override;
};
