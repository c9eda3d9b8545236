#include <qor/QORMetaRepository.h>

#include <qor/QORMetaAttribute.h>
#include <qor/QORMetaClass.h>
#include <qor/QORMetaLink.h>

#include <type_traits>

namespace {

template <class Records, class Texts>
constexpr bool onePlaceForEachText =
    std::extent_v<Records> + 1 == std::extent_v<Texts>; // the null at the end

} // namespace

QORMetaRepository::QORMetaRepository() : byDisplayName(new QORMetaClassDisplayNameHashtable(151)) {
    static_assert(onePlaceForEachText<decltype(metaClasses), decltype(QorElementTypeStringArray)>);
    static_assert(onePlaceForEachText<decltype(metaAttributes), decltype(QorAttributeTypeStringArray)>);
    static_assert(onePlaceForEachText<decltype(metaLinks), decltype(QorAssociationTypeStringArray)>);
}

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
