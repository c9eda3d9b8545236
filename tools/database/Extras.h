#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace database {

/// The names of the extras that more than one folder knows; the others are in the folders of their systems.
namespace extra {

inline constexpr char const* autoincrement = "autoincrement";
inline constexpr char const* collation = "collation";
inline constexpr char const* columns = "columns";
inline constexpr char const* deferrable = "deferrable";
inline constexpr char const* expression = "expression";
inline constexpr char const* generated = "generated";
inline constexpr char const* identity = "identity";
inline constexpr char const* index = "index";
inline constexpr char const* match = "match";
inline constexpr char const* method = "method";
inline constexpr char const* notNull = "not null";
inline constexpr char const* order = "order";
inline constexpr char const* position = "position";
inline constexpr char const* range = "range";
inline constexpr char const* references = "references";
inline constexpr char const* statement = "statement";
inline constexpr char const* where = "where";

} // namespace extra

/// What people read of an extra. The tables of docs/import.md are made of these.
struct ExtraFact {
    std::string_view name;                ///< ends with a blank if it is the beginning of names
    std::string_view rest;                ///< how people see what stands behind such a beginning, "NAME"
    std::vector<std::string_view> owners; ///< the classes of the objects that have it
    std::string_view meaning;             ///< of the value
};
using ExtraFacts = std::vector<ExtraFact>;

ExtraFacts sharedExtras();

/// Whether the facts say that an object of a class may have an extra of that name.
bool isKnownExtra(ExtraFacts const& facts, std::string_view name, std::string_view owner);

/// The facts as a table in Markdown.
std::string tableOf(ExtraFacts const& facts);

} // namespace database
