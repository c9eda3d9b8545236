#include <qor/QORGrouping.h>

#include <qor/QORAssociationRole.h>
#include <qor/QORAttribute.h>

namespace {

QORString textOfNode(QORGrouping const& grouping) {
    switch (grouping.getGroupingType()) {
    case QORGroupingType::SEQUENCE:
        return "(,)";
    case QORGroupingType::OR:
        return "(|)";
    case QORGroupingType::ALL:
        return "(&)";
    case QORGroupingType::LEAF:
        if (QORAssociationRole const* const role = grouping.getLeafAssociationRole())
            return role->getDisplayName();
        if (QORAttribute const* const attribute = grouping.getLeafAttribute())
            return attribute->getDisplayName();
        return QORString();
    default:
        return QORString();
    }
}

QORString textOfMultiplicity(QORString const& multiplicity) {
    if (multiplicity == "1")
        return QORString();
    if (multiplicity == "0..1")
        return "?";
    if (multiplicity == "0..*")
        return "*";
    if (multiplicity == "1..*")
        return "+";
    return QORString("{") + multiplicity + "}";
}

} // namespace

QORString QORGrouping::getDisplayName() const {
    return textOfNode(*this) + textOfMultiplicity(getMultiplicity());
}
