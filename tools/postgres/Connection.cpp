#include "postgres/Connection.h"

#include "kit/Text.h"
#include "kit/ToolError.h"
#include "postgres/PostgresUrl.h"

#include <cstdlib>
#include <cstring>
#include <libpq-fe.h>
#include <new>
#include <stdexcept>

namespace postgres {
namespace {

using kit::ToolError;

constexpr int oldestServer = 120000;

/// The error of the server if an object is dropped while the server prints its definition.
constexpr std::string_view internalError = "XX000";

/// All names come qualified and all texts in one form, whatever the server's, the database's and the user's
/// settings are. The session waits for a limited time for another one that changes the structure.
constexpr char const* settings =
    "SET search_path = ''; SET quote_all_identifiers = off; SET standard_conforming_strings = on;"
    "SET jit = off; SET lock_timeout = '10s'; SET statement_timeout = 0; SET bytea_output = 'hex';"
    "SET DateStyle = 'ISO'; SET IntervalStyle = 'postgres'; SET extra_float_digits = 1;"
    "BEGIN TRANSACTION ISOLATION LEVEL REPEATABLE READ READ ONLY";

/// A message on one line, without blanks at its ends.
std::string onOneLine(std::string const& message) {
    std::string result;
    for (char const character : message) {
        if (character != ' ' && !kit::isControl(character)) {
            result += character;
        } else if (!result.empty() && result.back() != ' ') {
            result += ' ';
        }
    }
    while (!result.empty() && result.back() == ' ') {
        result.pop_back();
    }
    return result;
}

/// A message of libpq about an address that it can't read or misreads, without the parts that it quotes: they
/// may hold a password.
std::string withoutQuotations(std::string const& message) {
    std::string result;
    bool quoted = false;
    for (char const character : message) {
        quoted = character == '"' ? !quoted : quoted;
        result +=
            character == '"' ? std::string(quoted ? "..." : "") : std::string(quoted ? 0 : 1, character);
    }
    return result;
}

/// libpq recognises the scheme only in lower case.
std::string withPlainScheme(std::string const& url) {
    auto const end = url.find("://");
    return end == std::string::npos ? url : "postgresql" + url.substr(end);
}

void checkUrl(std::string const& url, std::string const& shownUrl) {
    char* problem = nullptr;
    PQconninfoOption* const options = PQconninfoParse(url.c_str(), &problem);
    std::string const message = problem ? problem : "out of memory";
    PQfreemem(problem);
    PQconninfoFree(options);
    if (!options) {
        throw ToolError(shownUrl, "isn't a valid address: " + onOneLine(withoutQuotations(message)));
    }
}

} // namespace

void Connection::Closer::operator()(pg_conn* handle) const {
    PQfinish(handle);
}

Connection::Connection(std::string const& url) : shownUrl(withoutPassword(url)) {
    if (!isPostgresUrl(url)) {
        throw ToolError(shownUrl, "isn't a valid address: it must begin with postgresql://");
    }
    std::string const address = withPlainScheme(url);
    checkUrl(address, shownUrl);
    connect(address);
    if (versionNumber() < oldestServer) {
        throw ToolError(shownUrl,
                        "the server is PostgreSQL " + version() + "; the oldest supported version is 12");
    }
    // Such a database doesn't know what its texts are encoded in, and the server converts none of them.
    char const* const encoding = PQparameterStatus(connection.get(), "server_encoding");
    if (encoding && std::string_view(encoding) == "SQL_ASCII") {
        run("SET client_encoding = 'SQL_ASCII'");
    }
    run(settings);
}

/// Of keywords given twice the last one counts, and the URL is one of them.
void Connection::connect(std::string const& url) {
    bool const timeoutKnown = std::getenv("PGCONNECT_TIMEOUT") != nullptr;
    char const* const keywords[] = {"fallback_application_name", timeoutKnown ? "dbname" : "connect_timeout",
                                    "dbname", "client_encoding", nullptr};
    char const* const values[] = {"qor", timeoutKnown ? url.c_str() : "10", url.c_str(), "UTF8", nullptr};
    connection.reset(PQconnectdbParams(keywords, values, 1));
    if (!connection) {
        throw std::bad_alloc();
    }
    PQsetNoticeProcessor(
        connection.get(), [](void*, char const*) {}, nullptr);
    char const* const password = PQpass(connection.get());
    secret = password ? password : "";
    user = url.find('@') == std::string::npos ? "" : PQuser(connection.get());
    if (PQstatus(connection.get()) != CONNECTION_OK) {
        fail(PQerrorMessage(connection.get()));
    }
}

std::string Connection::version() const {
    char const* const text = PQparameterStatus(connection.get(), "server_version");
    return text ? std::string(text, std::strcspn(text, " ")) : "";
}

int Connection::versionNumber() const {
    return PQserverVersion(connection.get());
}

void Connection::run(char const* sql) {
    std::unique_ptr<PGresult, void (*)(PGresult*)> const result(PQexec(connection.get(), sql), PQclear);
    if (PQresultStatus(result.get()) != PGRES_COMMAND_OK) {
        fail(PQerrorMessage(connection.get()));
    }
}

/// The server quotes the user, which isn't shown in addresses either.
std::string Connection::withoutUser(std::string message) const {
    std::string const quoted = '"' + user + '"';
    for (auto found = message.find(quoted); !user.empty() && found != std::string::npos;
         found = message.find(quoted, found)) {
        message.replace(found, quoted.size(), "\"***\"");
    }
    return message;
}

/// A message that contains the password, even by chance, isn't shown: stars in its place would reveal it to
/// anyone who knows the usual message.
void Connection::fail(std::string const& message) const {
    bool const isHidden = shownUrl == hiddenUrl;
    std::string const line = onOneLine(isHidden ? withoutQuotations(message) : withoutUser(message));
    bool const tells = !secret.empty() && line.find(secret) != std::string::npos;
    if (!tells) {
        throw ToolError(shownUrl, line);
    }
    bool const refused = line.find("password authentication failed") != std::string::npos;
    throw ToolError(shownUrl, refused ? "password authentication failed" : "the server can't be used");
}

void Query::Clearer::operator()(pg_result* handle) const {
    PQclear(handle);
}

Query::Rest::~Rest() {
    while (PGresult* const left = PQgetResult(handle)) {
        PQclear(left);
    }
}

Query::Query(Connection& onConnection, std::string const& sql)
    : connection(onConnection), rest{onConnection.connection.get()} {
    if (!PQsendQuery(rest.handle, sql.c_str()) || !PQsetSingleRowMode(rest.handle)) {
        connection.fail(PQerrorMessage(rest.handle));
    }
    fetch();
}

void Query::fetch() {
    row.reset(PQgetResult(rest.handle));
    ExecStatusType const status = row ? PQresultStatus(row.get()) : PGRES_TUPLES_OK;
    if (status != PGRES_SINGLE_TUPLE && status != PGRES_TUPLES_OK) {
        char const* const code = PQresultErrorField(row.get(), PG_DIAG_SQLSTATE);
        bool const isLost = code && std::string_view(code) == internalError;
        connection.fail((isLost ? "the structure changed while it was read; try again: " : "") +
                        std::string(PQresultErrorMessage(row.get())));
    }
}

bool Query::next() {
    if (!isFresh) {
        fetch();
    }
    isFresh = false;
    return row && PQresultStatus(row.get()) == PGRES_SINGLE_TUPLE;
}

Field::Field(Query const& ofQuery, char const* name)
    : query(ofQuery), column(PQfnumber(ofQuery.row.get(), name)) {
    if (column < 0) {
        throw std::logic_error(std::string("a query has no column ") + name);
    }
}

bool Field::isNull() const {
    return PQgetisnull(query.row.get(), 0, column) != 0;
}

char const* Field::value() const {
    return PQgetvalue(query.row.get(), 0, column);
}

Number::operator std::int64_t() const {
    return std::strtoll(value(), nullptr, 10);
}

} // namespace postgres
