#include <qor/QORMetaLink.h>

#include "kernel/QORClassDescription.h"

#include <qor/QORMetaClass.h>
#include <qor/QORMetaRepository.h>
#include <qor/QORObject.h>

namespace {

/// The description of an end; null for a caller's record, which reads something else.
QORLinkEnd const* descriptionOf(QORAssociationType id, QORGetLinkWrapper const& get) {
    QORLinkEnd const* const end = &QORMetamodel::ends[id];
    return get.getEnd() == end ? end : nullptr;
}

} // namespace

QORMetaLink::QORMetaLink(QORMetaClass* ofClass, QORAssociationType ofId, QORString role, bool isUnaryEnd,
                         QORMetaLinkType ofType, QORGetLinkWrapper getLinkOf, QORGetLinkCountWrapper countOf,
                         Add addTo)
    : id(ofId), name(getAssociationTypeName(ofId)), metaClass(ofClass), roleName(role), unary(isUnaryEnd),
      type(ofType), get(getLinkOf), count(countOf), add(addTo) {
    if (metaClass)
        metaClass->addLink(this);
    QORMetaRepository::getMetaRepository()->addMetaLink(this);
}

QORMetaClass* QORMetaLink::getFarMetaClass() const {
    QORMetaLink const* const far = getFarMetaLink();
    return far ? far->metaClass : nullptr;
}

QORMetaLink* QORMetaLink::getFarMetaLink() const {
    QORLinkEnd const* const end = descriptionOf(id, get);
    if (!end)
        return nullptr;
    return QORMetaRepository::getMetaRepository()->getMetaLinkByID(static_cast<QORAssociationType>(end->far));
}

bool QORMetaLink::isOrdered() const {
    QORLinkEnd const* const end = descriptionOf(id, get);
    return end && end->shape == QOREndShape::VECTOR;
}

bool QORMetaLink::addLink(QORObject* object, QORObject* other) const {
    return add && (object->*add)(other);
}

int QORMetaLink::getLinkCount(QORObject* object) const {
    return unary ? 0 : count.getLinkCount(object);
}

QORObject* QORMetaLink::getLink(QORObject* object, int index) const {
    return get.getLink(object, unary ? 0 : index);
}
