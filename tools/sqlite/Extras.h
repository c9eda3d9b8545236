#pragma once

#include "database/Extras.h"

namespace sqlite {

/// The names of the extras of SQLite alone, and those of all systems.
namespace extra {

using namespace database::extra;

inline constexpr char const* applicationId = "application_id";
inline constexpr char const* autoVacuum = "auto_vacuum";
inline constexpr char const* conflict = "conflict";
inline constexpr char const* defaultConstraint = "default constraint";
inline constexpr char const* encoding = "encoding";
inline constexpr char const* module = "module";
inline constexpr char const* notNullConstraint = "not null constraint";
inline constexpr char const* userVersion = "user_version";

} // namespace extra

database::ExtraFacts extraFacts();

} // namespace sqlite
