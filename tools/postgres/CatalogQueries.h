#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace postgres {

/// A text with the places in it filled, each of which is a name in braces. Throws std::logic_error if a place
/// has no filling or a filling no place.
std::string filled(std::string_view text,
                   std::initializer_list<std::pair<std::string_view, std::string>> fillings);

// ---- conditions and expressions; the arguments are expressions, too, unless it is said otherwise -----

/// Five columns that describe a type, for TypeFields; `type` is its row of pg_type.
std::string typeColumns(std::string const& oid, std::string const& modifier, std::string const& type);

/// The condition that an object belongs to a schema of the database's users and to no extension.
/// `catalogue` names the table that the object is a row of.
std::string isOwn(std::string const& catalogue, std::string const& oid, std::string const& namespaceOid);

/// The condition that an object is none of the system's and belongs to no extension.
std::string isMade(std::string const& catalogue, std::string const& oid);

/// Options such as {fillfactor=70} as SQL writes them after WITH; NULL if there are none. Some servers keep
/// a stamp of their own among the options of a column, `pg_attver`, which nobody can set and which isn't
/// read.
std::string optionsText(std::string const& options);

/// Options of a foreign object as SQL writes them; NULL if there are none. What may hold a secret by its name
/// or its value isn't read.
std::string foreignOptions(std::string const& options);

/// The comment on an object, or on its part of that number.
std::string commentOn(std::string const& catalogue, std::string const& oid, std::string const& part = "0");

/// The statement that comments on something, behind another one; nothing without a comment.
std::string commentBehind(std::string const& thing, std::string const& comment);

/// The same for an object of a kind, such as TABLE.
std::string commentStatement(std::string const& kind, std::string const& name, std::string const& catalogue,
                             std::string const& oid);

/// The statements that declare on which extensions an object depends; `alteration` begins them. NULL if
/// there are none.
std::string neededExtensions(std::string const& catalogue, std::string const& oid,
                             std::string const& alteration);

/// The qualified name of a collation unless it is the one that the type has by itself, which is NULL then.
std::string otherCollation(std::string const& collation, std::string const& ofType);

/// The names of columns of a table whose numbers are an array.
std::string columnNames(std::string const& table, std::string const& numbers);

/// The names of the columns that are only stored in index `i`, a row of pg_index.
std::string includedColumns();

/// The index of a partitioned table that an index of a partition is a part of.
std::string partitionedIndex(std::string const& oid);

/// The joins that add the qualified name `q` to row `x` of a catalogue; the names of the catalogue's columns
/// begin with `prefix`.
std::string qualifiedName(std::string const& prefix);

// ---- what belongs to the database as a whole ---------------------------------------------------------

/// A query for things that become extras. Its columns are `name`, which stands behind the prefix in the name
/// of the extra, and `statement`, the SQL that makes the thing and comments on it.
struct ExtraQuery {
    std::string_view prefix;
    std::string sql;
};

std::vector<ExtraQuery> operatorQueries();
std::vector<ExtraQuery> textSearchQueries();

} // namespace postgres
