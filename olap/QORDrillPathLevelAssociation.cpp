#include <qor/QORDrillPathLevelAssociation.h>

#include "kernel/QORDisplayName.h"

#include <qor/QORDrillPath.h>
#include <qor/QORLevel.h>

QORString QORDrillPathLevelAssociation::getDisplayName() const {
    return qorNameInOwner(getDrillPath(), getLevel());
}
