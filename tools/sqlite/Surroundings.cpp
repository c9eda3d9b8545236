#include "sqlite/Surroundings.h"

#include "database/SqlTokens.h"
#include "sqlite/Calls.h"
#include "sqlite/SqliteDatabase.h"

namespace sqlite {
namespace {

std::set<std::string> namesFrom(Database& database, char const* sql) {
    std::set<std::string> names;
    Query rows(database, sql);
    Text const name(rows, "name");
    while (rows.next()) {
        names.insert(database::lowerCase(std::string(name)));
    }
    return names;
}

void append(std::string& list, char const* kind, std::string const& name) {
    list += (list.empty() ? "" : ", ") + std::string(kind) + name;
}

std::string sentence(std::string const& list) {
    return list.empty() ? "" : "Needs " + list + ", which SQLite doesn't have by itself.";
}

} // namespace

Surroundings::Surroundings(Database& toRead)
    : database(toRead), functions(namesFrom(toRead, "SELECT name FROM pragma_function_list")),
      modules(namesFrom(toRead, "SELECT name FROM pragma_module_list")) {}

/// The modules of the pragmas are only there once they are used.
bool Surroundings::hasFunction(std::string const& name) const {
    std::string const lower = database::lowerCase(name);
    bool const isKnown = functions.count(lower) || modules.count(lower) || lower.find("pragma_") == 0;
    return isKnown && !database.standIns().count(lower);
}

bool Surroundings::hasCollation(std::string const& name) const {
    return database.ownCollations().count(database::lowerCase(name)) > 0;
}

std::string Surroundings::missingIn(std::string_view sql) const {
    Calls const calls = callsIn(sql);
    std::string list;
    for (std::string const& name : calls.functions) {
        if (!hasFunction(name)) {
            append(list, "the function ", name);
        }
    }
    for (std::string const& name : calls.collations) {
        if (!hasCollation(name)) {
            append(list, "the collation ", name);
        }
    }
    return sentence(list);
}

std::string Surroundings::missingCollation(std::string const& name) const {
    return sentence(hasCollation(name) ? "" : "the collation " + name);
}

void Surroundings::completeFor(std::string_view sql) {
    Calls const calls = callsIn(sql);
    for (std::string const& name : calls.functions) {
        std::string const lower = database::lowerCase(name);
        if (!hasFunction(name) && !database.standIns().count(lower)) {
            database.standInFor(name, calls.aggregates.count(name) > 0);
        }
    }
}

} // namespace sqlite
