#include "postgres/CatalogKinds.h"

#include <algorithm>

namespace postgres {
namespace {

using database::Extra;

/// In the order in which they are made. An event trigger comes last, since it could refuse what comes behind
/// it.
constexpr CatalogKind kinds[] = {
    {"extension ", Moment::FIRST},
    {"collation ", Moment::BEFORE_TYPES, true},
    {"conversion ", Moment::BEFORE_TYPES, true},
    {"text search parser ", Moment::BEFORE_TYPES, true},
    {"text search template ", Moment::BEFORE_TYPES, true},
    {"text search dictionary ", Moment::BEFORE_TYPES, true},
    {"text search configuration ", Moment::BEFORE_TYPES, true},
    {"language ", Moment::BEFORE_TYPES},
    {"access method ", Moment::BEFORE_TYPES},
    {"foreign data wrapper ", Moment::BEFORE_TYPES, false, true},
    {"server ", Moment::BEFORE_TYPES, false, true},
    {"user mapping ", Moment::BEFORE_TYPES, false, true},
    {"operator family ", Moment::BEHIND_TYPES, true},
    {"operator ", Moment::BEHIND_TYPES, true},
    {"operator class ", Moment::BEHIND_TYPES, true},
    {"members of operator family ", Moment::BEHIND_TYPES},
    {"cast ", Moment::BEHIND_TYPES},
    {"transform ", Moment::BEHIND_TYPES},
    {"publication ", Moment::BEHIND_TRIGGERS},
    {"comment on type ", Moment::BEHIND_TRIGGERS},
    {"event trigger ", Moment::LAST},
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
