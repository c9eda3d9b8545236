#include <qor/QORMetaRepository.h>

#include <qor/QORMetaAttribute.h>
#include <qor/QORMetaClass.h>
#include <qor/QORMetaLink.h>

#include <type_traits>

namespace {

/// The number of texts in a vocabulary's array, without the null at the end.
template <class Texts>
constexpr int placesIn = static_cast<int>(std::extent_v<Texts>) - 1;

QORMetaClass* classesById[placesIn<decltype(QorElementTypeStringArray)>];
QORMetaAttribute* attributesById[placesIn<decltype(QorAttributeTypeStringArray)>];
QORMetaLink* linksById[placesIn<decltype(QorAssociationTypeStringArray)>];

} // namespace

QORMetaRepository::QORMetaRepository()
    : metaClasses(classesById), metaAttributes(attributesById), metaLinks(linksById),
      byDisplayName(new QORMetaClassDisplayNameHashtable(placesIn<decltype(QorElementTypeStringArray)>)) {}

QORMetaRepository::~QORMetaRepository() = default;

QORMetaRepository* QORMetaRepository::getMetaRepository() {
    static QORMetaRepository repository;
    return &repository;
}

void QORMetaRepository::addMetaClass(QORMetaClass* metaClass) {
    metaClasses[metaClass->getId()] = metaClass;
    byDisplayName->add(metaClass, true, nullptr);
}

void QORMetaRepository::addMetaAttribute(QORMetaAttribute* metaAttribute) {
    metaAttributes[metaAttribute->getId()] = metaAttribute;
}

void QORMetaRepository::addMetaLink(QORMetaLink* metaLink) {
    metaLinks[metaLink->getId()] = metaLink;
}

QORMetaClass* QORMetaRepository::getMetaClassByDisplayName(char const* displayName) const {
    if (!displayName)
        return nullptr;
    return static_cast<QORMetaClass*>(byDisplayName->findFirst(displayName, nullptr));
}
