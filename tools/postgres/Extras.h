#pragma once

#include "database/Extras.h"

namespace postgres {

/// The names of the extras of PostgreSQL alone, and those of all systems.
namespace extra {

using namespace database::extra;

inline constexpr char const* accessMethod = "access method";
inline constexpr char const* attributes = "attributes";
inline constexpr char const* base = "base";
inline constexpr char const* cache = "cache";
inline constexpr char const* clustered = "clustered";
inline constexpr char const* commentOnConstraint = "comment on constraint";
inline constexpr char const* commentOnIndex = "comment on index";
inline constexpr char const* compression = "compression";
inline constexpr char const* cycle = "cycle";
inline constexpr char const* dependsOnExtension = "depends on extension";
inline constexpr char const* detachPending = "detach pending";
inline constexpr char const* enabled = "enabled";
inline constexpr char const* extension = "extension";
inline constexpr char const* identityChanges = "identity changes";
inline constexpr char const* identitySequence = "identity sequence";
inline constexpr char const* include = "include";
inline constexpr char const* increment = "increment";
inline constexpr char const* inherited = "inherited";
inline constexpr char const* inherits = "inherits";
inline constexpr char const* kind = "kind";
inline constexpr char const* language = "language";
inline constexpr char const* maximum = "maximum";
inline constexpr char const* minimum = "minimum";
inline constexpr char const* noInherit = "no inherit";
inline constexpr char const* notValid = "not valid";
inline constexpr char const* nulls = "nulls";
inline constexpr char const* nullsNotDistinct = "nulls not distinct";
inline constexpr char const* of = "of";
inline constexpr char const* onDeleteColumns = "on delete columns";
inline constexpr char const* opclass = "opclass";
inline constexpr char const* opclassOptions = "opclass options";
inline constexpr char const* options = "options";
inline constexpr char const* ownedBy = "owned by";
inline constexpr char const* partitionBound = "partition bound";
inline constexpr char const* partitionBy = "partition by";
inline constexpr char const* partOf = "part of";
inline constexpr char const* replicaIdentity = "replica identity";
inline constexpr char const* rowSecurity = "row security";
inline constexpr char const* securityDefiner = "security definer";
inline constexpr char const* server = "server";
inline constexpr char const* setOf = "set of";
inline constexpr char const* shell = "shell";
inline constexpr char const* start = "start";
inline constexpr char const* statistics = "statistics";
inline constexpr char const* storage = "storage";
inline constexpr char const* strict = "strict";
inline constexpr char const* tablespace = "tablespace";
inline constexpr char const* truncate = "truncate";
inline constexpr char const* type = "type";
inline constexpr char const* unlogged = "unlogged";
inline constexpr char const* volatility = "volatility";
inline constexpr char const* with = "with";

} // namespace extra

/// The beginnings of the names of extras that hold what has no record of its own. The thing's name follows.
namespace prefix {

inline constexpr char const* accessMethod = "access method ";
inline constexpr char const* cast = "cast ";
inline constexpr char const* collation = "collation ";
inline constexpr char const* commentOn = "comment on ";
inline constexpr char const* commentOnType = "comment on type ";
inline constexpr char const* conversion = "conversion ";
inline constexpr char const* eventTrigger = "event trigger ";
inline constexpr char const* exclusion = "exclusion ";
inline constexpr char const* extension = "extension ";
inline constexpr char const* foreignDataWrapper = "foreign data wrapper ";
inline constexpr char const* language = "language ";
inline constexpr char const* membersOfOperatorFamily = "members of operator family ";
inline constexpr char const* operatorClass = "operator class ";
inline constexpr char const* operatorFamily = "operator family ";
inline constexpr char const* operatorItself = "operator ";
inline constexpr char const* policy = "policy ";
inline constexpr char const* publication = "publication ";
inline constexpr char const* rule = "rule ";
inline constexpr char const* securityLabel = "security label of ";
inline constexpr char const* server = "server ";
inline constexpr char const* statistics = "statistics ";
inline constexpr char const* subscription = "subscription ";
inline constexpr char const* textSearchConfiguration = "text search configuration ";
inline constexpr char const* textSearchDictionary = "text search dictionary ";
inline constexpr char const* textSearchParser = "text search parser ";
inline constexpr char const* textSearchTemplate = "text search template ";
inline constexpr char const* transform = "transform ";
inline constexpr char const* trigger = "trigger ";
inline constexpr char const* userMapping = "user mapping ";

} // namespace prefix

database::ExtraFacts extraFacts();

} // namespace postgres
