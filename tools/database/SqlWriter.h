#pragma once

#include "database/Omission.h"
#include "database/Structure.h"

#include <iosfwd>
#include <string>
#include <vector>

namespace database {

/// Writes a structure as SQL. It knows what all systems have in common: the order of the statements, how
/// omissions are reported, and the words of keys and checks. The writer of each system derives from it. The
/// structure must be one of `writable`.
class SqlWriter {
public:
    SqlWriter(Structure const& toWrite, std::ostream& stream);
    SqlWriter(SqlWriter const&) = delete;
    SqlWriter& operator=(SqlWriter const&) = delete;
    virtual ~SqlWriter() = default;

    /// Writes all statements. Returns what is left out: what is known to be, which is reported first, and
    /// what this system lacks.
    Omissions run(Omissions const& known);

protected:
    // ---- the statements, in this order ---------------------------------------------------------------
    virtual void begin() {}
    /// The tables, and what must be made before them or along with them.
    virtual void writeTables() = 0;
    virtual void writeIndexes() = 0;
    /// What refers to tables: views, and the keys that don't stand in a table's statement.
    virtual void writeReferences() = 0;
    virtual void writeTriggers() = 0;
    virtual void end() {}

    // ---- names ---------------------------------------------------------------------------------------
    virtual std::string quoted(std::string const& name) const = 0;
    /// The name of a table in a statement.
    virtual std::string tableName(int table) const;
    /// The names of columns, in parentheses.
    std::string columnNames(int table, std::vector<int> const& columns) const;
    /// The start of a constraint, with a blank behind; empty for one without a name.
    std::string constraintName(std::string const& name) const;

    // ---- parts of statements -------------------------------------------------------------------------
    /// A key as a part of a table.
    virtual std::string keyText(Key const& key);
    /// The columns of a key in parentheses, and what stands before these.
    virtual std::string keyColumns(Key const& key);
    /// What stands behind the columns of a primary or unique key.
    virtual std::string keyOptions(Key const& key);
    /// What stands behind the columns of a foreign key: table, columns and actions.
    virtual std::string referenceText(Key const& key);
    /// What happens at an event; empty for what happens anyway.
    static std::string actionText(char const* event, Action action);
    std::string checkText(std::string const& name, std::string const& expression) const;
    /// The parts of a table in parentheses, one on each line; empty ones are passed over.
    static std::string partsText(std::vector<std::string> const& parts);
    /// The beginning of the statement that creates an index, up to ON. An empty name means none.
    static std::string indexStart(Index const& index, std::string const& quotedName);

    // ---- output --------------------------------------------------------------------------------------
    virtual void statement(std::string const& text);
    void leftOut(Omission const& omission);

    Structure const& structure;
    std::ostream& out;
    std::vector<std::vector<Key const*>> keysOfTable;
    std::vector<std::vector<Check const*>> checksOfTable;
    std::vector<std::vector<Check const*>> checksOfType;

private:
    Omissions omissions;
};

} // namespace database
