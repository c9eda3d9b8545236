#pragma once

#include <qor/QORExport.h>
#include <qor/QOROrderedVector.h>
#include <qor/QORString.h>

/// A vector of QORString pointers that are compared by their texts. The strings stay the caller's.
class QOR_API QORStringList : public QOROrderedVector {
public:
    /// Compares the texts of two items.
    int compare2Object(QORContainerItem const* a, QORContainerItem const* b) const override {
        return compareTexts(a, b);
    }

    /// Compares the text of an item with that of a key, a QORString as well.
    int compare2Key(QORContainerItem const* item, QORContainerKey const* key) const override {
        return compareTexts(item, key);
    }

private:
    static int compareTexts(void const* left, void const* right) {
        return std::strcmp(static_cast<QORString const*>(left)->chars,
                           static_cast<QORString const*>(right)->chars);
    }
};
