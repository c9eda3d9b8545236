#include <qor/QORCandidateKey.h>

#include "QORFirstByPosition.h"

#include <qor/QORAttribute.h>
#include <qor/QORClass.h>

QORString QORCandidateKey::getDisplayName() const {
    if (QORClass const* const primary = getPrimaryOfClass())
        return QORString("pk_") + primary->getName();
    QORString text("ck");
    if (QORClass const* const owner = getAssociatedClass())
        text += QORString("_") + owner->getName();
    QORAttribute const* const first =
        qorFirstByPosition(getAttributeCount(), [this](int i) { return getAttribute(i); });
    if (first)
        text += QORString("_") + first->getName();
    return text;
}
