#pragma once

#include "database/Structure.h"

#include <string_view>
#include <vector>

namespace postgres {

/// When the SQL makes what an extra of the catalog tells of.
enum class Moment { FIRST, BEFORE_TYPES, BEHIND_TYPES, BEHIND_TRIGGERS, LAST, NEVER };

/// A kind of things that the catalog keeps as statements.
struct CatalogKind {
    std::string_view prefix; ///< of the extra's name; the thing's name follows
    Moment moment;
    bool inSchema = false; ///< its statement begins with its qualified name
    /// Its options may hold a secret, and those that sound like one weren't read.
    bool hasSecrets = false;
};

/// The kind that an extra is of; one of the moment NEVER if it is none that can be made again.
CatalogKind const& kindOf(database::Extra const& extra);

/// The extras that are made at a moment, kind by kind so that what other kinds need comes first.
std::vector<database::Extra const*> extrasOf(database::Extras const& extras, Moment moment);

} // namespace postgres
