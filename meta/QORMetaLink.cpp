#include <qor/QORMetaLink.h>

#include <qor/QORMetaClass.h>
#include <qor/QORMetaRepository.h>
#include <qor/QORObject.h>

QORMetaLink::QORMetaLink(QORMetaClass* ofClass, QORAssociationType ofId, QORString role, bool isUnaryEnd,
                         QORMetaLinkType ofType, QORGetLinkWrapper getLinkOf, QORGetLinkCountWrapper countOf,
                         Add addTo)
    : id(ofId), name(getAssociationTypeName(ofId)), metaClass(ofClass), roleName(role), unary(isUnaryEnd),
      type(ofType), get(getLinkOf), count(countOf), add(addTo) {
    if (metaClass)
        metaClass->addLink(this);
    QORMetaRepository::getMetaRepository()->addMetaLink(this);
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
