#pragma once

#include "database/Structure.h"

#include <tuple>

namespace database {

/// The order of the keys of a table where nothing else determines it.
inline auto sortKeyOf(Structure const& structure, Key const& key) {
    bool const refers =
        key.referredTable >= 0 && static_cast<std::size_t>(key.referredTable) < structure.tables.size();
    Table const* const table =
        refers ? &structure.tables[static_cast<std::size_t>(key.referredTable)] : nullptr;
    bool const hasSchema =
        table && table->schema >= 0 && static_cast<std::size_t>(table->schema) < structure.schemas.size();
    std::string const schema =
        hasSchema ? structure.schemas[static_cast<std::size_t>(table->schema)].name : std::string();
    return std::make_tuple(key.kind, key.name, key.columns, schema, table ? table->name : std::string(),
                           key.referredColumns);
}

/// The same of the checks of a table or type.
inline auto sortKeyOf(Structure const&, Check const& check) {
    return std::make_tuple(check.name, check.expression);
}

} // namespace database
