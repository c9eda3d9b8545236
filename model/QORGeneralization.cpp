#include <qor/QORGeneralization.h>

#include "kernel/QORDisplayName.h"

#include <qor/QORClass.h>

QORString QORGeneralization::getDisplayName() const {
    QORString const supertypes = qorJoinAll(supertypeClass_);
    if (getSupertypeClassCount() != 1 || getSubtypeClassCount() != 1)
        return supertypes; // several subtypes aren't shown at all
    return supertypes + "_subtypedto_" + getSubtypeClass(0)->getName();
}
