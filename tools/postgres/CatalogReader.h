#pragma once

#include "database/Structure.h"
#include "postgres/Connection.h"

#include <cstdint>
#include <map>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace postgres {

using Oid = std::int64_t;

/// Fills a Structure from the system catalogue. What is read later refers to what was read before, so that
/// the order of `run` matters.
class CatalogReader {
public:
    explicit CatalogReader(Connection& toRead) : connection(toRead) {}

    database::Structure run();

private:
    void readOrigin();
    void readSchemas();
    void readCatalogExtras();

    void readTypes();
    void readEnumerationValues();
    void readTypeExtras();

    void readTables();
    void readParents();
    void readColumns();
    void readTableExtras();
    void readSequences();
    void readIdentity(Query const& row);

    void readConstraints();
    void readKey(Query const& row, int table);
    void readCheck(Query const& row, int table, int type);
    void readReference(Query const& row, database::Key& key);
    void readIndexes();
    void readIndexMembers();
    void readTriggers();

    void readRoutines();
    void readArguments();

    /// Throws unless a condition holds. The functions of the server that print statements read the newest
    /// state, and so return nothing for an object dropped in the meantime.
    void checkUnchanged(bool holds) const;
    bool since(int version) const { return connection.versionNumber() >= version; }
    int schemaOf(Oid oid) const;
    int tableOf(Oid oid) const;
    /// The columns of a table by their numbers in the catalogue, as an array or a vector prints these.
    std::vector<int> columnsOf(int table, std::string const& numbers) const;
    int columnOf(int table, int number) const;
    /// The type that six columns of a row describe, from `column` on; see `typeColumns`.
    int typeOf(Query const& row, int column);

    Connection& connection;
    database::Structure structure;
    std::unordered_map<Oid, int> schemas;
    std::unordered_map<Oid, int> tables;
    std::unordered_map<Oid, int> ownTypes;
    std::unordered_map<Oid, int> indexes;
    std::unordered_map<Oid, int> routines;
    std::map<std::pair<Oid, std::int64_t>, int> spelledTypes; ///< by type and modifier
    std::vector<std::vector<int>> columnsByNumber;            ///< for each table
};

/// Six columns of a query that describe a type: `oid` and `modifier` are expressions, `type` is its row of
/// pg_type.
std::string typeColumns(std::string const& oid, std::string const& modifier, std::string const& type);

/// The condition that an object belongs to a schema of the database's users and to no extension.
/// `namespaceOid` and `oid` are expressions, `catalogue` is the table that the object is a row of.
std::string isOwn(std::string const& catalogue, std::string const& oid, std::string const& namespaceOid);

/// Options such as {fillfactor=70} as SQL writes them after WITH; NULL if there are none. Some servers keep
/// a stamp of their own among the options of a column, `pg_attver`, which nobody can set and which isn't
/// read.
std::string optionsText(std::string const& options);

/// Options of a foreign object as SQL writes them; NULL if there are none. What may hold a secret by its name
/// or its value isn't read.
std::string foreignOptions(std::string const& options);

/// The comment on an object, or on its part of that number.
std::string commentOn(std::string const& catalogue, std::string const& oid, std::string const& part = "0");

/// The statements that declare on which extensions an object depends; `alteration` begins them. NULL if
/// there are none.
std::string neededExtensions(std::string const& catalogue, std::string const& oid,
                             std::string const& alteration);

/// Adds an extra unless the value is empty.
void addExtra(database::Extras& extras, char const* name, std::string value);

/// Adds an extra of value "true" if a condition holds.
void addFlag(database::Extras& extras, char const* name, bool holds);

/// The numbers in a text such as "{1,-2}" or "1 -2".
std::vector<int> numbersIn(std::string const& text);

/// The SQL data type nearest to a type, with its length and its digits after the point.
void describeType(database::Type& type, std::string const& systemName, char category, std::int64_t modifier);

} // namespace postgres
