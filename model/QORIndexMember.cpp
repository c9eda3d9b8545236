#include <qor/QORIndexMember.h>

#include "kernel/QORDisplayName.h"

#include <qor/QORAttribute.h>
#include <qor/QORIndex.h>

QORString QORIndexMember::getDisplayName() const {
    QORIndex const* const index = getIndex();
    QORString const column = qorNameOf(getAttribute());
    return index ? qorLabelOf(*index) + "_" + column : column;
}
