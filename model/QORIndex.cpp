#include <qor/QORIndex.h>

#include "QORFirstByPosition.h"
#include "kernel/QORDisplayName.h"

#include <qor/QORAttribute.h>
#include <qor/QORClass.h>
#include <qor/QORIndexMember.h>
#include <qor/QORKey.h>

QORString QORIndex::getDisplayName() const {
    if (QORKey const* const key = getKey())
        return qorLabelOf(*key);
    QORString text = qorNameOf(getAssociatedClass());
    QORIndexMember const* const first =
        qorFirstByPosition(getIndexMemberCount(), [this](int i) { return getIndexMember(i); });
    if (first && first->getAttribute())
        text += QORString("_") + first->getAttribute()->getName();
    return text;
}
