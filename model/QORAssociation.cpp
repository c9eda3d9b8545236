#include <qor/QORAssociation.h>

#include "kernel/QORDisplayName.h"

#include <qor/QORAssociationRole.h>
#include <qor/QORClass.h>
#include <qor/QORNameLinkTree.h>

#include <utility>

namespace {

/// Whether the role at index 1 is shown first: when it alone is unnamed, or when it is the source of two
/// roles that are both named or both unnamed.
bool secondComesFirst(QORAssociationRole const& role0, QORAssociationRole const& role1) {
    bool const named0 = role0.getName().length != 0;
    bool const named1 = role1.getName().length != 0;
    return named0 == named1 ? role1.getSource() : named0;
}

/// Class, role and class of a link between two classes; the first role's name isn't shown.
QORString nameOfPair(QORAssociationRole const* first, QORAssociationRole const* second) {
    if (secondComesFirst(*first, *second))
        std::swap(first, second);
    QORString text = first->getAssociatedClass()->getName() + "_";
    if (second->getName().length)
        text += second->getName() + "_";
    return text + second->getAssociatedClass()->getName();
}

} // namespace

QORString QORAssociation::getDisplayName() const {
    int const count = getAssociationRoleCount();
    if (count == 2 && getAssociationRole(0)->getAssociatedClass() &&
        getAssociationRole(1)->getAssociatedClass())
        return nameOfPair(getAssociationRole(0), getAssociationRole(1));
    QORNameLinkTree classes;
    for (int i = 0; i < count; ++i)
        if (QORObject const* const end = getAssociationRole(i)->getAssociatedClass())
            classes.add(end, true, nullptr);
    return qorJoinAll(classes);
}
