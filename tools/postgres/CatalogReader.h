#pragma once

#include "database/Structure.h"
#include "postgres/Connection.h"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace postgres {

using Oid = std::int64_t;

struct ConstraintRow;
struct ExtraQuery;
struct SequenceRow;

/// The columns of a query that describe a type; see `typeColumns`.
struct TypeFields {
    explicit TypeFields(Query const& row)
        : oid(row, "type_oid"), modifier(row, "type_modifier"), declaration(row, "type_declaration"),
          systemName(row, "type_system_name"), category(row, "type_category") {}

    Number oid;
    Number modifier;
    Text declaration;
    Text systemName; ///< empty unless the type is one of the system
    Letter category;
};

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
    void addToCatalog(ExtraQuery const& query);

    void readTypes();
    void readEnumerationValues();
    void readTypeExtras();
    void addToTypes(std::string const& prefix, std::string const& sql);

    void readTables();
    void readParents();
    void readColumns();
    void readTableExtras();
    void readSequences();
    void readIdentity(SequenceRow const& row);

    void readConstraints();
    void readKey(ConstraintRow const& row, int table);
    void readCheck(ConstraintRow const& row, int table, int type);
    void readReference(ConstraintRow const& row, database::Key& key);
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
    /// -1 if the type is NULL.
    int typeOf(TypeFields const& fields);

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

/// Adds an extra unless the value is empty.
void addExtra(database::Extras& extras, std::string_view name, std::string value);

/// Adds an extra of value "true" if a condition holds.
void addFlag(database::Extras& extras, std::string_view name, bool holds);

/// The value of the extra "inherited" of a part of a table.
char const* inheritance(bool isInherited, bool isLocal);

/// The numbers in a text such as "{1,-2}" or "1 -2".
std::vector<int> numbersIn(std::string const& text);

/// The SQL data type nearest to a type, with its length and its digits after the point.
void describeType(database::Type& type, std::string const& systemName, char category, std::int64_t modifier);

} // namespace postgres
