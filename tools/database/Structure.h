#pragma once

#include <string>
#include <string_view>
#include <vector>

/// The structure of a database, whatever its system: the reader of each system fills these records,
/// `buildModel` makes a model of them, `readModel` returns them from a model, and the writer of each system
/// prints them as SQL. All texts are UTF-8. Records refer to each other by index into the vectors of
/// Structure, -1 for none.
namespace database {

/// One fact that the model has no member for, such as ("fillfactor", "70"). It becomes a user property.
struct Extra {
    std::string name;
    std::string value;
};
using Extras = std::vector<Extra>;

/// The value of the first extra of that name, or null.
inline std::string const* findExtra(Extras const& extras, std::string_view name) {
    for (Extra const& extra : extras) {
        if (extra.name == name) {
            return &extra.value;
        }
    }
    return nullptr;
}

/// The members of every named object.
struct Named {
    std::string name;
    std::string comment;
    Extras extras;
};

struct Origin {
    std::string system;  ///< "SQLite" or "PostgreSQL"
    std::string version; ///< as the system writes it, such as "15.18"; empty if unknown
    std::string source;  ///< the path, or the URL without its password
    std::string encoding;
    std::string formatName;
    std::string formatVersion;
};

struct Schema : Named {};

enum class TypeKind { BUILT_IN, DOMAIN_TYPE, ENUMERATION, COMPOSITE, RANGE };

/// A type of columns and arguments. One for each spelling, so that VARCHAR(10) and VARCHAR(20) are two.
struct Type : Named {
    int schema = -1; ///< -1 for a type of the system
    TypeKind kind = TypeKind::BUILT_IN;
    std::string declaration;         ///< the spelling of the database, such as "character varying(40)"
    std::string dataType;            ///< a key of QorDataTypeName, such as "SQL_VARCHAR"
    int length = 0;                  ///< in characters, bytes or digits, 0 if unknown
    int scale = 0;                   ///< digits after the point
    std::vector<std::string> values; ///< of an enumeration, in order
    int base = -1;                   ///< the type under a domain, into Structure::types
    bool notNull = false;            ///< of a domain
    std::string defaultValue;        ///< of a domain, as an SQL expression
};

struct Column : Named {
    int type = -1;
    bool notNull = false;
    std::string defaultValue; ///< as an SQL expression; of a generated column the expression that computes it
    bool generated = false;   ///< Extra "generated" then says VIRTUAL or STORED
};

enum class TableKind { TABLE, VIEW, MATERIALIZED_VIEW };

/// A table or a view.
struct Table : Named {
    int schema = -1;
    TableKind kind = TableKind::TABLE;
    std::string
        nativeKind; ///< "TABLE", "VIRTUAL TABLE", "TABLE WITHOUT ROWID", "PARTITIONED TABLE", "VIEW", ...
    std::vector<Column> columns;
    std::string statement;    ///< of a view: the SELECT
    std::vector<int> parents; ///< tables that this one inherits from
};

enum class KeyKind { PRIMARY, UNIQUE, FOREIGN };
enum class Action { NO_ACTION, RESTRICT, CASCADE, SET_NULL, SET_DEFAULT };

/// A key constraint. The system's own names for unnamed constraints are left empty. Extra "deferrable" of a
/// deferrable one says INITIALLY DEFERRED or INITIALLY IMMEDIATE; Extra "match" says FULL or PARTIAL.
struct Key : Named {
    KeyKind kind = KeyKind::PRIMARY;
    int table = -1;
    std::vector<int> columns; ///< into the columns of the table, in the order of the key
    /// Of a foreign key. If the database has no such table (-1) or not all of the columns (then
    /// `referredColumns` is empty), Extra "references" has the text after REFERENCES.
    int referredTable = -1;
    std::vector<int> referredColumns;
    Action onUpdate = Action::NO_ACTION;
    Action onDelete = Action::NO_ACTION;
};

/// A condition on the rows of a table or on the values of a domain.
struct Check : Named {
    int table = -1; ///< or
    int type = -1;  ///< a domain
    std::string expression;
};

struct IndexMember {
    int column = -1; ///< -1 for an expression
    std::string expression;
    bool descending = false;
    Extras extras; ///< such as "collation", "opclass", "nulls"
};

/// An index, other than those that only implement a key. It may belong to a materialized view.
struct Index : Named {
    int table = -1;
    bool unique = false;
    bool clustered = false;
    std::vector<IndexMember> members;
    /// The condition of a partial index is Extra "where", the method Extra "method".
};

enum class TriggerTime { BEFORE, AFTER, INSTEAD_OF };

struct Trigger : Named {
    int table = -1; ///< or view
    TriggerTime time = TriggerTime::AFTER;
    bool onInsert = false;
    bool onUpdate = false;
    bool onDelete = false;
    std::string statement; ///< the whole CREATE TRIGGER
};

enum class ArgumentMode { IN, OUT, IN_OUT, VARIADIC, RESULT_COLUMN };

struct Argument : Named {
    ArgumentMode mode = ArgumentMode::IN;
    int type = -1;
    std::string defaultValue;
};

/// A function or procedure. Overloads are records of equal names.
struct Routine : Named {
    int schema = -1;
    bool procedure = false;
    std::vector<Argument> arguments;
    int returnType = -1;
    std::string statement; ///< the whole CREATE FUNCTION or CREATE PROCEDURE
};

/// A sequence; its settings are in its extras.
struct Sequence : Named {
    int schema = -1;
};

/// A remark of a reader about an object: what it couldn't read, or what the object needs.
struct Remark {
    std::string object; ///< such as "index by_name"
    std::string text;
};

struct Structure {
    Named catalog;
    Origin origin;
    std::vector<Schema> schemas;
    std::vector<Type> types;
    std::vector<Table> tables;
    std::vector<Key> keys;
    std::vector<Check> checks;
    std::vector<Index> indexes;
    std::vector<Trigger> triggers;
    std::vector<Routine> routines;
    std::vector<Sequence> sequences;
    /// Whether the order of the keys and checks of a table is significant.
    bool keepsKeyOrder = false;
    std::vector<Remark> remarks; ///< no part of the model, where each is the comment of its object
};

} // namespace database
