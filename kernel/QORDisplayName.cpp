#include "QORDisplayName.h"

#include <qor/QORObject.h>

#include <memory>

QORString qorNameOf(QORObject const* object) {
    return object ? object->getName() : QORString();
}

QORString qorLabelOf(QORObject const& object) {
    QORString const& name = object.getName();
    return name.length ? name : object.getDisplayName();
}

QORString qorJoinNames(QORObject const* first, char const* between, QORObject const* second) {
    return qorNameOf(first) + between + qorNameOf(second);
}

QORString qorNameInOwner(QORObject const* owner, QORObject const* member) {
    return owner ? qorJoinNames(owner, "_", member) : qorNameOf(member);
}

QORString qorJoinAll(QORContainer const& objects) {
    QORString joined;
    char const* between = "";
    std::unique_ptr<QORContainer::Iterator> const walk(objects.newIterator(true));
    for (QORContainerItem* item = walk->get(); item; item = walk->next(1)) {
        joined += between + static_cast<QORObject const*>(item)->getName();
        between = "_";
    }
    return joined;
}
