#include <qor/QORTypeValueLinkTree.h>

#include <qor/QORTypeValue.h>

#include "kernel/QORNameOrder.h"

#include <cstring>

namespace {

QORString const& valueOf(QORContainerItem const* item) {
    return static_cast<QORTypeValue const&>(qorElement(item)).getValue();
}

} // namespace

int QORTypeValueLinkTree::compare2Object(QORContainerItem const* a, QORContainerItem const* b) const {
    QORString const& name = qorElement(a).getName();
    if (int const order = name.compare(qorNameOf(b)))
        return order;
    if (name.length)
        return 0;
    return std::strcmp(valueOf(a).chars, valueOf(b).chars);
}

int QORTypeValueLinkTree::compare2Key(QORContainerItem const* item, QORContainerKey const* key) const {
    return qorCompareNameWithKey(item, key);
}

std::type_info const& QORTypeValueLinkTree::countedAs() const {
    return typeid(QORTypeValueLinkTree);
}
