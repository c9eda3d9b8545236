#include <qor/QORForeignKey.h>

#include "kernel/QORDisplayName.h"

#include <qor/QORAssociation.h>
#include <qor/QORAssociationRole.h>
#include <qor/QORAttribute.h>
#include <qor/QORClass.h>
#include <qor/QORGeneralization.h>

QORString QORForeignKey::getDisplayName() const {
    if (QORAssociationRole const* const role = getAssociationRole()) {
        QORAssociation const* const association = role->getAssociation();
        return association ? QORString("fk_") + qorLabelOf(*association) : QORString("fk");
    }
    QORGeneralization const* const generalization = getGeneralization();
    if (!generalization)
        return "fk";
    QORString text = QORString("fk_") + qorLabelOf(*generalization);
    QORAttribute const* const first = getAttribute(0);
    if (QORClassifier const* const classifier = first ? first->getClassifier() : nullptr)
        text += QORString("_") + classifier->getName();
    return text;
}
