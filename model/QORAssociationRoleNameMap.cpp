#include <qor/QORAssociationRoleNameMap.h>

#include "kernel/QORDisplayName.h"

#include <qor/QORAttribute.h>

QORString QORAssociationRoleNameMap::getDisplayName() const {
    return qorJoinNames(getSourceAttribute(), "_to_", getDestinationAttribute());
}
