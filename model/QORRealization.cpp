#include <qor/QORRealization.h>

#include "kernel/QORDisplayName.h"

#include <qor/QORClass.h>

QORString QORRealization::getDisplayName() const {
    return qorJoinNames(getSpecificationClass(), "_", getRealizationClass());
}
