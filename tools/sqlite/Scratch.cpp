#include "sqlite/Scratch.h"

#include "database/SqlTokens.h"
#include "kit/ToolError.h"
#include "sqlite/Names.h"

#include <sqlite3.h>

namespace sqlite {

void Scratch::Closer::operator()(sqlite3* handle) const {
    sqlite3_close(handle);
}

Scratch::Scratch() {
    sqlite3* handle = nullptr;
    int const code = sqlite3_open(":memory:", &handle);
    connection.reset(handle);
    if (code != SQLITE_OK) {
        throw kit::ToolError("SQLite", sqlite3_errstr(code));
    }
}

std::string Scratch::run(std::string const& sql) {
    int const code = sqlite3_exec(connection.get(), sql.c_str(), nullptr, nullptr, nullptr);
    return code == SQLITE_OK ? "" : sqlite3_errmsg(connection.get());
}

std::string Scratch::undo(std::string const& problem) {
    run("ROLLBACK TO step");
    run("RELEASE step");
    return problem;
}

std::string Scratch::take(std::string const& sql) {
    run("SAVEPOINT step");
    std::string const problem = run(sql);
    return problem.empty() ? run("RELEASE step") : undo(problem);
}

std::string Scratch::check(std::string const& sql) {
    run("SAVEPOINT step");
    return undo(run(sql));
}

std::string Scratch::takeView(std::string const& sql, std::string const& name) {
    run("SAVEPOINT step");
    std::string problem = run(sql);
    if (problem.empty()) {
        problem = run("EXPLAIN SELECT * FROM " + quoteName(name));
    }
    return problem.empty() ? run("RELEASE step") : undo(problem);
}

std::string Scratch::problem(std::string const& sql) const {
    sqlite3_stmt* statement = nullptr;
    char const* rest = nullptr;
    int const code = sqlite3_prepare_v2(connection.get(), sql.c_str(), -1, &statement, &rest);
    sqlite3_finalize(statement);
    std::string const text = code == SQLITE_OK ? "" : sqlite3_errmsg(connection.get());
    for (char const* unknown : {"no such function", "no such module", "no such collation"}) {
        if (text.compare(0, std::string(unknown).size(), unknown) == 0) {
            return "";
        }
    }
    bool const isOne = code != SQLITE_OK || database::tokenize(rest).empty();
    return isOne ? text : "more than one statement";
}

std::string Scratch::problem(std::string const& needed, std::string const& sql) {
    run("SAVEPOINT step");
    run(needed);
    return undo(problem(sql));
}

} // namespace sqlite
