#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

struct pg_conn;
struct pg_result;

namespace postgres {

/// A PostgreSQL database, read in one transaction that sees one state of it and writes nothing. Every
/// operation, and every one of a Query on it, throws kit::ToolError if the server can't be reached or
/// doesn't answer. No message shows the password, nor the user that the URL names before its @.
class Connection {
public:
    /// Connects to the database of a URL, `postgresql://user@host:port/database?parameters`. Missing parts of
    /// the URL come from the environment (PGPASSWORD, PGHOST ...) and the password file, as for every
    /// PostgreSQL program. The attempt ends after 10 seconds unless the URL or PGCONNECT_TIMEOUT sets another
    /// limit. Refuses servers before 12.
    explicit Connection(std::string const& url);

    /// The URL without its secrets.
    std::string const& source() const { return shownUrl; }
    /// The server's version, such as "15.18".
    std::string version() const;
    /// The same as a number, such as 150018.
    int versionNumber() const;

private:
    friend class Query;

    struct Closer {
        void operator()(pg_conn* handle) const;
    };

    void connect(std::string const& url);
    void run(char const* sql);
    std::string withoutUser(std::string message) const;
    [[noreturn]] void fail(std::string const& message) const;

    std::string shownUrl;
    std::string user;   ///< as the URL names it before its @; empty if it doesn't
    std::string secret; ///< the password in use, of which no message may hold anything
    std::unique_ptr<pg_conn, Closer> connection;
};

/// A running statement and its current row. The rows come from the server one by one, so that a
/// large result takes no memory; there is one Query on a Connection at a time.
class Query {
public:
    /// Returns when the server has answered.
    Query(Connection& connection, std::string const& sql);
    Query(Query const&) = delete;
    Query& operator=(Query const&) = delete;

    /// Goes to the next row; false if there is none.
    bool next();

private:
    friend class Field;

    /// Reads what is left of the result when the Query ends.
    struct Rest {
        ~Rest();
        pg_conn* handle;
    };
    struct Clearer {
        void operator()(pg_result* handle) const;
    };

    void fetch();

    Connection& connection;
    Rest rest;
    std::unique_ptr<pg_result, Clearer> row;
    bool isFresh = true; ///< whether `row` came before anyone called `next`
};

/// A column of a Query. It is found by its name once, and is that of the current row from then on.
class Field {
public:
    /// Throws std::logic_error if the Query has no column of that name.
    Field(Query const& query, char const* name);
    bool isNull() const;

protected:
    /// As text in UTF-8, or as its bytes are if the database's encoding is SQL_ASCII; empty for NULL.
    char const* value() const;

private:
    Query const& query;
    int column;
};

/// The text of a column, empty for NULL.
class Text : public Field {
public:
    using Field::Field;
    operator std::string() const { return value(); }
};

/// The first letter of a column, 0 for NULL.
class Letter : public Field {
public:
    using Field::Field;
    operator char() const { return *value(); }
};

/// A column that holds true or false, false for NULL.
class Flag : public Field {
public:
    using Field::Field;
    operator bool() const { return *value() == 't'; }
};

/// A column that holds a whole number, 0 for NULL.
class Number : public Field {
public:
    using Field::Field;
    operator std::int64_t() const;
};

} // namespace postgres
