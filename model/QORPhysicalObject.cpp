#include <qor/QORPhysicalObject.h>

QORString QORPhysicalObject::getDisplayName() const {
    return getPhysicalObjectTypeName(getObjectType());
}
