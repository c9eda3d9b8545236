#include <qor/QORLevelAssociation.h>

#include "kernel/QORDisplayName.h"

#include <qor/QORLevel.h>

QORString QORLevelAssociation::getDisplayName() const {
    return qorNameInOwner(getParentLevel(), getChildLevel());
}
