#include <qor/QORPhysicalRelationship.h>

#include <qor/QORPhysicalObject.h>

namespace {

/// Name and kind of one end; nothing for an end that isn't set.
QORString textOfEnd(QORPhysicalObject const* object) {
    if (!object)
        return QORString();
    QORString const kind(getPhysicalObjectTypeName(object->getObjectType()));
    return object->getName().length ? object->getName() + "_" + kind : kind;
}

} // namespace

QORString QORPhysicalRelationship::getDisplayName() const {
    return textOfEnd(getSourcePhysicalObject()) + "_to_" + textOfEnd(getDestinationPhysicalObject());
}
