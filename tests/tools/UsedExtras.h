#pragma once

#include "database/Extras.h"
#include "database/ModelBuilder.h"

#include <qor/QORMetaClass.h>
#include <qor/QORMetaRepository.h>
#include <qor/QORModel.h>
#include <qor/QORPropertyElementTypeScope.h>
#include <qor/QORPropertyType.h>

#include <algorithm>
#include <set>
#include <string>
#include <utility>
#include <vector>

/// The name of an extra and the class of an object that has it.
using UsedExtra = std::pair<std::string, std::string>;

/// The extras of all objects in a model.
inline std::set<UsedExtra> usedExtras(QORModel const& model) {
    std::set<UsedExtra> used;
    for (int i = 0; i < model.getPropertyElementTypeScopeCount(); ++i) {
        QORPropertyElementTypeScope const* const scope = model.getPropertyElementTypeScope(i);
        QORMetaClass const& owner =
            *QORMetaRepository::getMetaRepository()->getMetaClassByID(scope->getScope());
        for (int j = 0; j < scope->getPropertyTypeCount(); ++j) {
            QORPropertyType const* const type = scope->getPropertyType(j);
            if (type->getGroup() == database::extrasGroup) {
                used.emplace(type->getName().chars, owner.getDisplayName().chars);
            }
        }
    }
    return used;
}

inline std::string textOf(UsedExtra const& used) {
    return used.first + " of " + used.second;
}

/// Those that no table of facts lists.
inline std::vector<std::string> unknownExtras(database::ExtraFacts const& facts,
                                              std::set<UsedExtra> const& used) {
    std::vector<std::string> unknown;
    for (UsedExtra const& each : used) {
        if (!database::isKnownExtra(facts, each.first, each.second)) {
            unknown.push_back(textOf(each));
        }
    }
    return unknown;
}

/// What the facts tell of and nothing has.
inline std::vector<std::string> unusedExtras(database::ExtraFacts const& facts,
                                             std::set<UsedExtra> const& used) {
    std::vector<std::string> unused;
    for (database::ExtraFact const& fact : facts) {
        for (std::string_view const owner : fact.owners) {
            bool const isUsed = std::any_of(used.begin(), used.end(), [&](UsedExtra const& each) {
                return each.second == owner && database::isKnownExtra({fact}, each.first, each.second);
            });
            if (!isUsed) {
                unused.push_back(textOf({std::string(fact.name), std::string(owner)}));
            }
        }
    }
    return unused;
}
