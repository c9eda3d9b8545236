#include <qor/QORAssociationRole.h>

#include "kernel/QORDisplayName.h"

#include <qor/QORAssociation.h>
#include <qor/QORClass.h>
#include <qor/QORNameLinkTree.h>

QORString QORAssociationRole::getDisplayName() const {
    QORAssociation const* const association = getAssociation();
    if (!association)
        return qorNameOf(getAssociatedClass());
    QORNameLinkTree classes;
    for (int i = 0, count = association->getAssociationRoleCount(); i < count; ++i) {
        QORAssociationRole const* const role = association->getAssociationRole(i);
        QORObject const* const end = role == this ? nullptr : role->getAssociatedClass();
        if (end)
            classes.add(end, true, nullptr);
    }
    return QORString("from_") + qorJoinAll(classes);
}
