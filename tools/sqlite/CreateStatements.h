#pragma once

#include "database/Structure.h"

#include <string>
#include <string_view>
#include <vector>

namespace sqlite {

/// What CREATE TABLE says of a column and SQLite doesn't report.
struct ColumnText {
    std::string name;
    std::string generated; ///< the expression that computes it
    database::Extras
        extras; ///< "collation", "conflict", "generated", "not null constraint", "default constraint"
};

/// A key as written in CREATE TABLE. The columns are identified by name, since SQLite accepts foreign keys to
/// anything.
struct KeyText {
    database::KeyKind kind = database::KeyKind::PRIMARY;
    std::string name;
    std::vector<std::string> columns;
    std::string referredTable;
    std::vector<std::string> referredColumns; ///< empty: those of the primary key
    database::Action onUpdate = database::Action::NO_ACTION;
    database::Action onDelete = database::Action::NO_ACTION;
    database::Extras extras; ///< "autoincrement", "columns", "conflict", "deferrable", "match", "order"
};

struct CheckText {
    std::string name;
    std::string expression;
};

struct TableText {
    std::vector<ColumnText> columns;
    std::vector<KeyText> keys;
    std::vector<CheckText> checks;
};

struct MemberText {
    std::string column; ///< empty for an expression
    std::string expression;
    bool descending = false;
    std::string collation;
};

struct IndexText {
    std::vector<MemberText> members;
    std::string where;
    std::string all; ///< the members and the condition as written
};

struct ViewText {
    bool named = false; ///< whether the columns have names of their own
    std::string select;
};

struct TriggerText {
    database::TriggerTime time = database::TriggerTime::BEFORE;
    bool onInsert = false;
    bool onUpdate = false;
    bool onDelete = false;
    std::vector<std::string> columns; ///< after UPDATE OF
    std::string body;                 ///< the text after the event
};

/// Each reads a statement that SQLite has accepted, as its schema keeps it. Unknown text is
/// skipped, so that any text has a result.
TableText readCreateTable(std::string_view statement);
IndexText readCreateIndex(std::string_view statement);
ViewText readCreateView(std::string_view statement);
TriggerText readCreateTrigger(std::string_view statement);

} // namespace sqlite
