#pragma once

#include "kit/ToolError.h"

#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace sqlite {

/// A query that SQLite refuses although the file is intact, such as one of a view whose table is missing.
class QueryError : public kit::ToolError {
public:
    QueryError(std::string const& file, std::string const& message)
        : ToolError(file, message), problem(message) {}

    std::string const problem; ///< SQLite's message
};

/// An SQLite database file, opened to be read in one transaction and never written. Every operation, and
/// every one of a Query on it, throws kit::ToolError when the file can't be read.
class Database {
public:
    /// Opens a file that must exist, be readable and intact, and have a valid schema. An empty file is a
    /// database without tables. Only the schema is checked, not the contents of the tables.
    explicit Database(std::string const& path);
    Database(Database const&) = delete;
    Database& operator=(Database const&) = delete;

    /// Makes SQLite accept statements that call a function of the application which wrote the file; they
    /// can't be run here.
    void standInFor(std::string const& function, bool aggregate);
    /// The functions with a placeholder, in lower case.
    std::set<std::string> const& standIns() const { return stoodIn; }
    /// The collations that are built into SQLite, likewise.
    std::set<std::string> const& ownCollations() const { return collations; }

    /// The path as passed to the constructor.
    std::string const& path() const { return file; }
    /// The version of SQLite that wrote the file last, such as "3.40.1"; empty if unknown.
    std::string const& writerVersion() const { return writer; }

private:
    friend class Query;

    struct Closer {
        void operator()(sqlite3* handle) const;
    };

    void open(std::string const& location, bool immutable);
    void configure();
    void run(char const* sql);
    void loadSchema();
    void checkSchema(bool sizeKnown);
    [[noreturn]] void fail(int code) const;
    bool isNewer() const;

    std::string file;
    std::string writer;
    std::uint32_t writerNumber = 0;
    std::set<std::string> stoodIn;
    std::set<std::string> collations;
    std::unique_ptr<sqlite3, Closer> connection;
};

/// A statement and its current row. In addition to SQLite's own functions it can call `qor_module_of`,
/// which returns the module of a virtual table from the statement that created it.
class Query {
public:
    Query(Database& database, std::string_view sql);

    /// Goes to the next row; false if there is none.
    bool next();

private:
    friend class Field;

    struct Finalizer {
        void operator()(sqlite3_stmt* handle) const;
    };

    Database& database;
    std::unique_ptr<sqlite3_stmt, Finalizer> statement;
};

/// A column of a Query. It is found by its name once, and is that of the current row from then on.
class Field {
public:
    /// Throws std::logic_error if the Query has no column of that name.
    Field(Query const& query, char const* name);

protected:
    /// In UTF-8, empty for NULL.
    char const* text() const;
    /// 0 for NULL.
    int number() const;

private:
    sqlite3_stmt* statement;
    int column;
};

/// The text of a column in UTF-8, empty for NULL.
class Text : public Field {
public:
    using Field::Field;
    operator std::string() const { return text(); }
};

/// A column that holds a number, 0 for NULL.
class Number : public Field {
public:
    using Field::Field;
    operator int() const { return number(); }
};

} // namespace sqlite
