#include <qor/QORSortedPropertyValuesLinkTree.h>

#include <qor/QORPropertyType.h>
#include <qor/QORPropertyValue.h>

#include "kernel/QORNameOrder.h"

#include <cstring>

namespace {

QORPropertyValue const& propertyValue(QORContainerItem const* item) {
    return static_cast<QORPropertyValue const&>(qorElement(item));
}

int compareTypesOfValues(QORPropertyType const& a, QORPropertyType const& b) {
    if (int const order = std::strcmp(a.getUsage().chars, b.getUsage().chars))
        return order;
    if (int const order = std::strcmp(a.getGroup().chars, b.getGroup().chars))
        return order;
    if (int const order = a.getPosition() - b.getPosition())
        return order;
    return std::strcmp(a.getName().chars, b.getName().chars);
}

} // namespace

int QORSortedPropertyValuesLinkTree::compare2Object(QORContainerItem const* a,
                                                    QORContainerItem const* b) const {
    QORPropertyValue const& left = propertyValue(a);
    QORPropertyValue const& right = propertyValue(b);
    QORPropertyType const* const leftType = left.getPropertyType();
    QORPropertyType const* const rightType = right.getPropertyType();
    if (leftType && rightType)
        if (int const order = compareTypesOfValues(*leftType, *rightType))
            return order;
    int const order = left.getPosition() - right.getPosition();
    return order ? order : compareAddresses(a, b);
}

std::type_info const& QORSortedPropertyValuesLinkTree::countedAs() const {
    return typeid(QORSortedPropertyValuesLinkTree);
}
