#pragma once

#include "kit/ToolError.h"

#include <memory>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace sqlite {

/// A query that SQLite refuses although the file is whole, such as one of a view whose table is gone.
class QueryError : public kit::ToolError {
public:
    using ToolError::ToolError;
};

/// An SQLite database file, opened to be read in one transaction and never written. Every operation, and
/// every one of a Query on it, throws kit::ToolError when the file can't be read.
class Database {
public:
    /// Opens a file that exists, can be read, is whole and has a sound schema. An empty file is a database
    /// without tables. The schema is all that is checked: what the tables hold doesn't matter here.
    explicit Database(std::string const& path);

    /// The path as it was given.
    std::string const& path() const { return file; }
    /// The version of SQLite that wrote the file last, such as "3.40.1"; empty if the file doesn't tell.
    std::string const& writerVersion() const { return writer; }

private:
    friend class Query;

    struct Closer {
        void operator()(sqlite3* handle) const;
    };

    void open(std::string const& location, bool immutable);
    void configure();
    void run(char const* sql);
    void checkSchema(bool sizeKnown);
    [[noreturn]] void fail(int code) const;

    std::string file;
    std::string writer;
    std::unique_ptr<sqlite3, Closer> connection;
};

/// A statement and the row on which it stands. Beside SQLite's own functions it can call `module_of`, which
/// gives the module of a virtual table by the statement that made it.
class Query {
public:
    Query(Database& database, std::string_view sql);

    /// Goes to the next row; false if there is none.
    bool next();
    /// A column of the row as text in UTF-8, empty for NULL; it lives until `next`.
    char const* text(int column) const;
    /// A column of the row as a number, 0 for NULL.
    int number(int column) const;

private:
    struct Finalizer {
        void operator()(sqlite3_stmt* handle) const;
    };

    Database& database;
    std::unique_ptr<sqlite3_stmt, Finalizer> statement;
};

} // namespace sqlite
