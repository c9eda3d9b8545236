#pragma once

#include <set>
#include <string>
#include <string_view>

namespace sqlite {

class Database;

/// The functions, collations and modules built into SQLite, and thus what else a piece of SQL needs from its
/// application.
class Surroundings {
public:
    explicit Surroundings(Database& database);

    /// A sentence that names the functions and collations which SQLite doesn't have; empty if there are none.
    std::string missingIn(std::string_view sql) const;
    /// The same for a column's collation.
    std::string missingCollation(std::string const& name) const;
    /// Defines placeholders for the functions that a statement needs, so that SQLite accepts it.
    void completeFor(std::string_view sql);

private:
    bool hasFunction(std::string const& name) const;
    bool hasCollation(std::string const& name) const;

    Database& database;
    std::set<std::string> functions; ///< in lower case, as are the modules
    std::set<std::string> modules;
};

} // namespace sqlite
