#include <qor/QORModelElementLinkTree.h>

#include "kernel/QORNameOrder.h"

namespace {

/// Tables and views share one name space with classes.
int typeInDesignPackage(QORContainerItem const* item) {
    int const type = qorElement(item).getElementType();
    return type == QORElementType::SQL_VIEW_ENTITY ? static_cast<int>(QORElementType::CLASS) : type;
}

bool mayShareNameAndType(int type) {
    switch (type) {
    case QORElementType::GENERALIZATION:
    case QORElementType::ASSOCIATION:
    case QORElementType::SQL_VIEW_ASSOCIATION:
    case QORElementType::DEPENDENCY:
    case QORElementType::REALIZATION:
    case QORElementType::JOIN:
        return true;
    default:
        return false;
    }
}

} // namespace

int QORModelElementLinkTree::compare2Object(QORContainerItem const* a, QORContainerItem const* b) const {
    if (int const order = qorCompareNames(a, b))
        return order;
    int const type = typeInDesignPackage(a);
    if (int const order = type - typeInDesignPackage(b))
        return order;
    return mayShareNameAndType(type) ? compareAddresses(a, b) : 0;
}

int QORModelElementLinkTree::compare2Key(QORContainerItem const* item, QORContainerKey const* key) const {
    return qorCompareNameWithKey(item, key);
}

std::type_info const& QORModelElementLinkTree::countedAs() const {
    return typeid(QORModelElementLinkTree);
}
