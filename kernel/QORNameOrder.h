#pragma once

#include <qor/QORContainer.h>
#include <qor/QORObject.h>

/// What the orders of the link containers have in common: their elements are `QORObject*`, most keys names.

inline QORObject const& qorElement(QORContainerItem const* item) {
    return *static_cast<QORObject const*>(item);
}

inline QORString const& qorNameOf(QORContainerItem const* item) {
    return qorElement(item).getName();
}

inline int qorCompareNames(QORContainerItem const* a, QORContainerItem const* b) {
    return qorNameOf(a).compare(qorNameOf(b));
}

/// The order of an element and a key that is a `QORString`.
inline int qorCompareNameWithKey(QORContainerItem const* item, QORContainerKey const* key) {
    return qorNameOf(item).compare(*static_cast<QORString const*>(key));
}
