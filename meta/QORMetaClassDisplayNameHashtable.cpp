#include <qor/QORMetaClassDisplayNameHashtable.h>

#include <qor/QORMetaClass.h>
#include <qor/QORString.h>

#include <cstring>

namespace {

QORString const& displayNameOf(QORContainerItem const* item) {
    return static_cast<QORMetaClass const*>(item)->getDisplayName();
}

} // namespace

QORMetaClassDisplayNameHashtable::QORMetaClassDisplayNameHashtable(int tableSize) : QORHashtable(tableSize) {}

int QORMetaClassDisplayNameHashtable::compare2Object(QORContainerItem const* a,
                                                     QORContainerItem const* b) const {
    return std::strcmp(displayNameOf(a).chars, displayNameOf(b).chars);
}

int QORMetaClassDisplayNameHashtable::compare2Key(QORContainerItem const* item,
                                                  QORContainerKey const* key) const {
    return std::strcmp(displayNameOf(item).chars, static_cast<char const*>(key));
}

unsigned long QORMetaClassDisplayNameHashtable::hashObject(QORContainerItem const* item) const {
    return static_cast<unsigned int>(displayNameOf(item).hashCode());
}

unsigned long QORMetaClassDisplayNameHashtable::hashKey(QORContainerKey const* key) const {
    return static_cast<unsigned int>(stringHashCode(static_cast<char const*>(key)));
}
