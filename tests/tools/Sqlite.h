#pragma once

#include <sqlite3.h>
#include <stdexcept>
#include <string>
#include <vector>

/// A connection that writes a test's database.
class Sqlite {
public:
    explicit Sqlite(std::string const& path) {
        if (sqlite3_open(path.c_str(), &handle) != SQLITE_OK) {
            throw std::runtime_error("no database " + path);
        }
    }
    Sqlite(Sqlite const&) = delete;
    Sqlite& operator=(Sqlite const&) = delete;
    ~Sqlite() { sqlite3_close(handle); }

    void run(std::string const& sql) {
        if (sqlite3_exec(handle, sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
            throw std::runtime_error(std::string(sqlite3_errmsg(handle)) + " in " + sql);
        }
    }

    /// Whether SQLite takes a statement.
    bool tries(std::string const& sql) {
        return sqlite3_exec(handle, sql.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK;
    }

    /// The first column of the rows of a query.
    std::vector<std::string> ask(std::string const& sql) {
        std::vector<std::string> rows;
        auto const take = [](void* into, int, char** values, char**) {
            static_cast<std::vector<std::string>*>(into)->emplace_back(values[0] ? values[0] : "");
            return 0;
        };
        if (sqlite3_exec(handle, sql.c_str(), take, &rows, nullptr) != SQLITE_OK) {
            throw std::runtime_error(std::string(sqlite3_errmsg(handle)) + " in " + sql);
        }
        return rows;
    }

private:
    sqlite3* handle = nullptr;
};

/// Makes a database and gives its path.
inline std::string makeDatabase(std::string const& path, std::string const& sql) {
    Sqlite(path).run(sql);
    return path;
}
