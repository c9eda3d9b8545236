#include "exchange/TableKeys.h"

#include "kit/GraphOrder.h"
#include "kit/Reflection.h"

#include <qor/QORAssociationRole.h>
#include <qor/QORAssociationRoleNameMap.h>
#include <qor/QORAttribute.h>
#include <qor/QORCandidateKey.h>
#include <qor/QORClass.h>
#include <qor/QORForeignKey.h>
#include <qor/QORIndex.h>
#include <qor/QORIndexMember.h>

#include <algorithm>

namespace exchange {
namespace {

std::vector<QORObject*> elements(QORObject& object, char const* role, kit::GraphOrder& order) {
    return order.elements(object, *object.getMetaClass()->getMetaLinkByRoleName(role));
}

} // namespace

std::vector<QORAttribute*> columnsOf(QORKey& key, kit::GraphOrder& order) {
    std::vector<QORAttribute*> columns;
    if (QORIndex* const index = key.getIndex()) {
        for (QORObject* member : elements(*index, "indexMember", order)) {
            if (QORAttribute* column = static_cast<QORIndexMember*>(member)->getAttribute()) {
                columns.push_back(column);
            }
        }
    }
    if (columns.empty()) {
        for (QORObject* column : elements(key, "attribute", order)) {
            columns.push_back(static_cast<QORAttribute*>(column));
        }
    }
    return columns;
}

Reference referenceOf(QORForeignKey& key, kit::GraphOrder& order) {
    Reference reference;
    if (QORAssociationRole const* role = key.getAssociationRole()) {
        reference.table = role->getAssociatedClass();
    }
    QORCandidateKey* const referred = key.getCandidateKey();
    if (!reference.table && referred) {
        reference.table = referred->getAssociatedClass();
    }
    for (QORObject* object : elements(key, "associationRoleNameMap", order)) {
        auto const& pair = static_cast<QORAssociationRoleNameMap const&>(*object);
        if (pair.getSourceAttribute()) {
            reference.columns.emplace_back(pair.getSourceAttribute(), pair.getDestinationAttribute());
        }
    }
    std::stable_sort(reference.columns.begin(), reference.columns.end(), [](auto const& a, auto const& b) {
        return a.first->getPosition() < b.first->getPosition();
    });
    if (reference.columns.empty()) {
        std::vector<QORAttribute*> const far =
            referred ? columnsOf(*referred, order) : std::vector<QORAttribute*>();
        std::vector<QORAttribute*> const near = columnsOf(key, order);
        for (std::size_t i = 0; i < near.size(); ++i) {
            reference.columns.emplace_back(near[i], near.size() == far.size() ? far[i] : nullptr);
        }
    }
    return reference;
}

} // namespace exchange
