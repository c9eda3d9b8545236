#pragma once

#include "database/Structure.h"

#include <string_view>
#include <vector>

namespace postgres {

/// When the SQL creates the object of a catalog's extra.
enum class Moment { FIRST, BEFORE_TYPES, BEHIND_TYPES, BEHIND_TRIGGERS, LAST, NEVER };

/// A kind of object that the catalog keeps as statements.
struct CatalogKind {
    std::string_view prefix; ///< of the extra's name; the thing's name follows
    Moment moment;
    bool inSchema = false; ///< its statement begins with its qualified name
    /// Its options may hold a secret; those that look like one weren't read.
    bool hasSecrets = false;
};

/// The kind of an extra; one of the moment NEVER if the SQL can't create it.
CatalogKind const& kindOf(database::Extra const& extra);

/// The extras that are created at a moment, ordered by kind so that each kind comes after those that it
/// needs.
std::vector<database::Extra const*> extrasOf(database::Extras const& extras, Moment moment);

} // namespace postgres
