#include <qor/QORFormatLinkTree.h>
#include <qor/QORNameElementTypeLinkTree.h>
#include <qor/QORNameLinkTree.h>
#include <qor/QORNameLinkVector.h>
#include <qor/QORNamePtrLinkTree.h>
#include <qor/QOROptionalNameLinkTree.h>
#include <qor/QORPtrLinkVector.h>

#include "QORNameOrder.h"

// The orders that read names, element types and addresses alone. Those that read attributes of model classes
// stand in model/, each in the source file of its container.

int QORNameLinkTree::compare2Object(QORContainerItem const* a, QORContainerItem const* b) const {
    return qorCompareNames(a, b);
}

int QORNameLinkTree::compare2Key(QORContainerItem const* item, QORContainerKey const* key) const {
    return qorCompareNameWithKey(item, key);
}

int QOROptionalNameLinkTree::compare2Object(QORContainerItem const* a, QORContainerItem const* b) const {
    QORString const& name = qorElement(a).getName();
    int const order = name.compare(qorNameOf(b));
    return order == 0 && name.length == 0 ? compareAddresses(a, b) : order;
}

int QORNamePtrLinkTree::compare2Object(QORContainerItem const* a, QORContainerItem const* b) const {
    int const order = qorCompareNames(a, b);
    return order ? order : compareAddresses(a, b);
}

int QORNameElementTypeLinkTree::compare2Object(QORContainerItem const* a, QORContainerItem const* b) const {
    int const order = qorCompareNames(a, b);
    return order ? order : qorElement(a).getElementType() - qorElement(b).getElementType();
}

int QORFormatLinkTree::compare2Object(QORContainerItem const* a, QORContainerItem const* b) const {
    int const order = qorElement(a).getElementType() - qorElement(b).getElementType();
    return order ? order : qorCompareNames(a, b);
}

int QORFormatLinkTree::compare2Key(QORContainerItem const* item, QORContainerKey const* key) const {
    return qorCompareNameWithKey(item, key);
}

int QORPtrLinkVector::compare2Key(QORContainerItem const* item, QORContainerKey const* key) const {
    return qorCompareNameWithKey(item, key);
}

int QORNameLinkVector::compare2Object(QORContainerItem const* a, QORContainerItem const* b) const {
    return qorCompareNames(a, b);
}

int QORNameLinkVector::compare2Key(QORContainerItem const* item, QORContainerKey const* key) const {
    return qorCompareNameWithKey(item, key);
}

std::type_info const& QORNameLinkTree::countedAs() const {
    return typeid(QORNameLinkTree);
}

std::type_info const& QOROptionalNameLinkTree::countedAs() const {
    return typeid(QOROptionalNameLinkTree);
}

std::type_info const& QORNamePtrLinkTree::countedAs() const {
    return typeid(QORNamePtrLinkTree);
}

std::type_info const& QORNameElementTypeLinkTree::countedAs() const {
    return typeid(QORNameElementTypeLinkTree);
}

std::type_info const& QORFormatLinkTree::countedAs() const {
    return typeid(QORFormatLinkTree);
}
