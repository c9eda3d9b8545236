#include "postgres/CatalogKinds.h"

#include "postgres/Extras.h"

#include <algorithm>

namespace postgres {
namespace {

using database::Extra;

/// In the order in which they are made. An event trigger comes last, since it could refuse what comes behind
/// it.
constexpr CatalogKind kinds[] = {
    {prefix::extension, Moment::FIRST},
    {prefix::collation, Moment::BEFORE_TYPES, true},
    {prefix::conversion, Moment::BEFORE_TYPES, true},
    {prefix::textSearchParser, Moment::BEFORE_TYPES, true},
    {prefix::textSearchTemplate, Moment::BEFORE_TYPES, true},
    {prefix::textSearchDictionary, Moment::BEFORE_TYPES, true},
    {prefix::textSearchConfiguration, Moment::BEFORE_TYPES, true},
    {prefix::language, Moment::BEFORE_TYPES},
    {prefix::accessMethod, Moment::BEFORE_TYPES},
    {prefix::foreignDataWrapper, Moment::BEFORE_TYPES, false, true},
    {prefix::server, Moment::BEFORE_TYPES, false, true},
    {prefix::userMapping, Moment::BEFORE_TYPES, false, true},
    {prefix::operatorFamily, Moment::BEHIND_TYPES, true},
    {prefix::operatorItself, Moment::BEHIND_TYPES, true},
    {prefix::operatorClass, Moment::BEHIND_TYPES, true},
    {prefix::membersOfOperatorFamily, Moment::BEHIND_TYPES},
    {prefix::cast, Moment::BEHIND_TYPES},
    {prefix::transform, Moment::BEHIND_TYPES},
    {prefix::publication, Moment::BEHIND_TRIGGERS},
    {prefix::commentOnType, Moment::BEHIND_TRIGGERS},
    {prefix::eventTrigger, Moment::LAST},
};
constexpr CatalogKind none = {"", Moment::NEVER};

bool beginsWith(std::string_view text, std::string_view start) {
    return text.substr(0, start.size()) == start;
}

} // namespace

CatalogKind const& kindOf(Extra const& extra) {
    CatalogKind const* result = &none;
    bool const isStatement = beginsWith(extra.value, "CREATE ") || beginsWith(extra.value, "ALTER ") ||
                             beginsWith(extra.value, "COMMENT ");
    for (CatalogKind const& kind : kinds) {
        bool const isCloser = kind.prefix.size() > result->prefix.size();
        if (isStatement && isCloser && beginsWith(extra.name, kind.prefix)) {
            result = &kind;
        }
    }
    return *result;
}

std::vector<Extra const*> extrasOf(database::Extras const& extras, Moment moment) {
    std::vector<Extra const*> result;
    for (Extra const& extra : extras) {
        if (kindOf(extra).moment == moment) {
            result.push_back(&extra);
        }
    }
    std::stable_sort(result.begin(), result.end(),
                     [](Extra const* a, Extra const* b) { return &kindOf(*a) < &kindOf(*b); });
    return result;
}

} // namespace postgres
