#include "postgres/SqlComments.h"

#include <algorithm>

namespace postgres {

using namespace database;

std::string withCommentEnded(std::string const& sql) {
    auto const line = sql.rfind('\n');
    return sql.find("--", line == std::string::npos ? 0 : line) == std::string::npos ? sql : sql + "\n";
}

Structure withCommentsEnded(Structure structure) {
    auto const end = [](std::string& sql) { sql = withCommentEnded(sql); };
    auto const endExtra = [](Extras& extras) {
        for (Extra& extra : extras) {
            extra.value = extra.name == "where" ? withCommentEnded(extra.value) : extra.value;
        }
    };
    for (Type& type : structure.types) {
        end(type.defaultValue);
    }
    for (Table& table : structure.tables) {
        std::for_each(table.columns.begin(), table.columns.end(),
                      [&](Column& column) { end(column.defaultValue); });
    }
    for (Check& check : structure.checks) {
        end(check.expression);
    }
    for (Index& index : structure.indexes) {
        endExtra(index.extras);
        std::for_each(index.members.begin(), index.members.end(),
                      [&](IndexMember& member) { end(member.expression); });
    }
    return structure;
}

} // namespace postgres
