#include <qor/QORDependency.h>

#include "kernel/QORDisplayName.h"

#include <qor/QORClass.h>

QORString QORDependency::getDisplayName() const {
    return qorJoinNames(getSupplierClass(), "_", getClientClass());
}
