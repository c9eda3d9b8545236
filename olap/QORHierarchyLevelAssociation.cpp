#include <qor/QORHierarchyLevelAssociation.h>

#include "kernel/QORDisplayName.h"

#include <qor/QORHierarchy.h>
#include <qor/QORLevel.h>

QORString QORHierarchyLevelAssociation::getDisplayName() const {
    return qorNameInOwner(getHierarchy(), getLevel());
}
