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
    Query(Connection& connection, std::string const& sql);
    Query(Query const&) = delete;
    Query& operator=(Query const&) = delete;
    /// Reads the rest of the result.
    ~Query();

    /// Goes to the next row; false if there is none.
    bool next();
    /// A column of the row as text in UTF-8, or as its bytes are if the database's encoding is SQL_ASCII;
    /// empty for NULL; it lives until `next`.
    char const* text(int column) const;
    bool isNull(int column) const;
    /// A column that holds true or false; false for NULL.
    bool flag(int column) const;
    /// A column of the row as a number, 0 for NULL.
    std::int64_t number(int column) const;

private:
    struct Clearer {
        void operator()(pg_result* handle) const;
    };

    Connection& connection;
    std::unique_ptr<pg_result, Clearer> row;
};

} // namespace postgres
