#include "sqlite/SqliteDatabase.h"

#include "database/SqlTokens.h"
#include "sqlite/FileHeader.h"
#include "sqlite/VirtualTable.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

#include <sqlite3.h>
#include <sys/stat.h>

namespace sqlite {
namespace {

using kit::ToolError;

constexpr int lockTimeoutMilliseconds = 1000;

/// The location without links and "..": the files of unfinished changes are beside it.
std::string locationOf(std::string const& path) {
    struct Free {
        void operator()(char* text) const { std::free(text); }
    };
    std::unique_ptr<char, Free> const resolved(realpath(path.c_str(), nullptr));
    if (!resolved) {
        throw ToolError(path.empty() ? "\"\"" : path, std::strerror(errno));
    }
    return resolved.get();
}

bool hasContent(std::string const& path) {
    struct stat status;
    return stat(path.c_str(), &status) == 0 && status.st_size > 0;
}

bool isPlain(char character) {
    return kit::isLetter(character) || kit::isDigit(character) || std::strchr("/._-", character);
}

std::string uriOf(std::string const& location, bool immutable) {
    constexpr char const* digits = "0123456789ABCDEF";
    std::string uri = "file:";
    for (char const signedCharacter : location) {
        auto const character = static_cast<unsigned char>(signedCharacter);
        if (isPlain(character)) {
            uri += signedCharacter;
        } else {
            uri.append({'%', digits[character >> 4], digits[character & 15]});
        }
    }
    return uri + (immutable ? "?mode=ro&immutable=1" : "?mode=ro");
}

/// `moduleOf` for queries.
void moduleOfFunction(sqlite3_context* context, int, sqlite3_value** arguments) {
    auto const* statement = reinterpret_cast<char const*>(sqlite3_value_text(arguments[0]));
    std::string const module = moduleOf(statement ? statement : "");
    sqlite3_result_text(context, module.c_str(), -1, SQLITE_TRANSIENT);
}

/// Replaces functions of applications; nothing that is read here calls them.
void refuseScalar(sqlite3_context* context, int, sqlite3_value**) {
    sqlite3_result_error(context, "only the application has this function", -1);
}

void refuseResult(sqlite3_context* context) {
    refuseScalar(context, 0, nullptr);
}

int compareBytes(void*, int leftSize, void const* left, int rightSize, void const* right) {
    int const order =
        std::memcmp(left, right, static_cast<std::size_t>(leftSize < rightSize ? leftSize : rightSize));
    return order != 0 ? order : leftSize - rightSize;
}

/// Replaces a collation of the application.
void provideCollation(void*, sqlite3* handle, int encoding, char const* name) {
    sqlite3_create_collation(handle, name, encoding, nullptr, compareBytes);
}

/// The function in SQLite's message that its own function takes other arguments; empty for other messages.
std::string overloadedFunction(std::string const& message) {
    constexpr std::string_view words = "wrong number of arguments to function ";
    std::size_t const start = message.find(words);
    std::size_t const end = message.find("()", start);
    return start == std::string::npos || end == std::string::npos
               ? ""
               : message.substr(start + words.size(), end - start - words.size());
}

/// The first thing found, without the line about the database that it was found in.
std::string firstFinding(std::string_view checkResult) {
    if (checkResult.substr(0, 3) == "***") {
        checkResult.remove_prefix(checkResult.find('\n') + 1);
    }
    return std::string(checkResult.substr(0, checkResult.find('\n')));
}

std::string versionText(std::uint32_t number) {
    if (number == 0) {
        return "";
    }
    return std::to_string(number / 1000000) + "." + std::to_string(number / 1000 % 1000) + "." +
           std::to_string(number % 1000);
}

/// The size of a file means nothing while a change is in a file beside it.
void checkSize(FileHeader const& header, std::string const& name) {
    if (header.fileSize == 0) {
        return;
    }
    if (header.fileSize < header.neededSize) {
        throw ToolError(name, "is truncated: " + std::to_string(header.fileSize) + " of " +
                                  std::to_string(header.neededSize) + " bytes");
    }
    if (header.neededSize == 0 && header.fileSize % header.pageSize != 0) {
        throw ToolError(name, "is truncated: its last page is incomplete");
    }
}

} // namespace

void Database::Closer::operator()(sqlite3* handle) const {
    sqlite3_close(handle);
}

Database::Database(std::string const& path) : file(path) {
    std::string const location = locationOf(path);
    FileHeader const header = readFileHeader(location, path);
    writerNumber = header.writerVersion;
    writer = versionText(writerNumber);
    bool const changing = hasContent(location + "-wal") || hasContent(location + "-journal");
    if (!changing) {
        checkSize(header, path);
    }
    open(location, !changing);
    configure();
    run("BEGIN");
    loadSchema();
    checkSchema(header.neededSize != 0 || header.fileSize == 0);
}

/// A file without unfinished changes is opened as immutable, which needs no locks and leaves no files beside
/// it.
void Database::open(std::string const& location, bool immutable) {
    sqlite3* handle = nullptr;
    int const code = sqlite3_open_v2(uriOf(location, immutable).c_str(), &handle,
                                     SQLITE_OPEN_READONLY | SQLITE_OPEN_URI, nullptr);
    connection.reset(handle);
    if (code != SQLITE_OK) {
        fail(code);
    }
}

/// The schema may use all that SQLite has by itself, as it may where it was made. Reading it runs nothing of
/// it, and what reaches beyond the database, such as loading extensions, stays off.
void Database::configure() {
    sqlite3* const handle = connection.get();
    sqlite3_extended_result_codes(handle, 1);
    sqlite3_busy_timeout(handle, lockTimeoutMilliseconds);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 1, nullptr);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_DQS_DDL, 1, nullptr);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_DQS_DML, 1, nullptr);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_ENABLE_LOAD_EXTENSION, 0, nullptr);
    sqlite3_collation_needed(handle, nullptr, provideCollation);
    Query names(*this, "PRAGMA collation_list"); // later it lists what the schema names as well
    Text const name(names, "name");
    while (names.next()) {
        collations.insert(database::lowerCase(std::string(name)));
    }
    int const code = sqlite3_create_function(handle, "qor_module_of", 1,
                                             SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_DIRECTONLY, nullptr,
                                             moduleOfFunction, nullptr, nullptr);
    if (code != SQLITE_OK) {
        fail(code);
    }
}

/// Takes any number of arguments, and a window as well if it is an aggregate.
void Database::standInFor(std::string const& function, bool aggregate) {
    constexpr int flags = SQLITE_UTF8 | SQLITE_DETERMINISTIC;
    int const code = aggregate ? sqlite3_create_window_function(connection.get(), function.c_str(), -1, flags,
                                                                nullptr, refuseScalar, refuseResult,
                                                                refuseResult, refuseScalar, nullptr)
                               : sqlite3_create_function(connection.get(), function.c_str(), -1, flags,
                                                         nullptr, refuseScalar, nullptr, nullptr);
    if (code != SQLITE_OK) {
        fail(code);
    }
    stoodIn.insert(database::lowerCase(function));
}

void Database::run(char const* sql) {
    int const code = sqlite3_exec(connection.get(), sql, nullptr, nullptr, nullptr);
    if (code != SQLITE_OK) {
        fail(code);
    }
}

/// SQLite checks the number of arguments of calls in the schema, so a function of the application that has
/// the name of a function of SQLite must be replaced.
void Database::loadSchema() {
    for (;;) {
        int const code =
            sqlite3_exec(connection.get(), "SELECT 1 FROM main.sqlite_schema", nullptr, nullptr, nullptr);
        if (code == SQLITE_OK) {
            return;
        }
        std::string const function = overloadedFunction(sqlite3_errmsg(connection.get()));
        if (function.empty() || stoodIn.count(database::lowerCase(function))) {
            fail(code);
        }
        standInFor(function, false);
    }
}

/// Where the header doesn't have the number of pages, all pages must be read to find out whether any is
/// missing. Reading them must not compute the conditions of the tables, which may call functions of the
/// application.
void Database::checkSchema(bool sizeKnown) {
    run("PRAGMA ignore_check_constraints = ON");
    try {
        Query check(*this,
                    sizeKnown ? "PRAGMA main.quick_check(sqlite_schema)" : "PRAGMA main.quick_check(1)");
        if (!check.next()) {
            throw ToolError(file, "is damaged");
        }
        if (std::string const result = Text(check, "quick_check"); result != "ok") {
            throw ToolError(file, "is damaged: " + firstFinding(result));
        }
    } catch (QueryError const&) { // of a generated column or a virtual table, which only the application has
    }
}

/// Whether a newer SQLite wrote the file, whose statements this one may not know.
bool Database::isNewer() const {
    return writerNumber > static_cast<std::uint32_t>(sqlite3_libversion_number());
}

void Database::fail(int code) const {
    int const extended = connection ? sqlite3_extended_errcode(connection.get()) : code;
    std::string const message = connection ? sqlite3_errmsg(connection.get()) : sqlite3_errstr(code);
    if (extended == SQLITE_READONLY_ROLLBACK) {
        throw ToolError(file,
                        "contains an interrupted change; a program with write access must undo it first");
    }
    bool const isUnknownStatement = message.find("malformed database schema") == 0;
    if (isUnknownStatement && isNewer()) {
        throw ToolError(file, "is from SQLite " + writer + ", and can't be read by " + sqlite3_libversion() +
                                  ": " + message);
    }
    switch (extended & 0xff) {
    case SQLITE_NOTADB:
        throw ToolError(file, "is not an SQLite database, or is an encrypted one");
    case SQLITE_CORRUPT:
        throw ToolError(file, "is damaged: " + message);
    case SQLITE_BUSY:
        throw ToolError(file, "is locked by another program");
    case SQLITE_ERROR:
        throw QueryError(file, message);
    default:
        throw ToolError(file, message);
    }
}

void Query::Finalizer::operator()(sqlite3_stmt* handle) const {
    sqlite3_finalize(handle);
}

Query::Query(Database& onDatabase, std::string_view sql) : database(onDatabase) {
    sqlite3_stmt* handle = nullptr;
    int const code = sqlite3_prepare_v2(database.connection.get(), sql.data(), static_cast<int>(sql.size()),
                                        &handle, nullptr);
    statement.reset(handle);
    if (code != SQLITE_OK) {
        database.fail(code);
    }
}

bool Query::next() {
    int const code = sqlite3_step(statement.get());
    if (code != SQLITE_ROW && code != SQLITE_DONE) {
        database.fail(code);
    }
    return code == SQLITE_ROW;
}

Field::Field(Query const& query, char const* name) : statement(query.statement.get()), column(0) {
    int const count = sqlite3_column_count(statement);
    while (column < count && std::string_view(name) != sqlite3_column_name(statement, column)) {
        ++column;
    }
    if (column == count) {
        throw std::logic_error(std::string("a query has no column ") + name);
    }
}

char const* Field::text() const {
    auto const* characters = reinterpret_cast<char const*>(sqlite3_column_text(statement, column));
    return characters ? characters : "";
}

int Field::number() const {
    return sqlite3_column_int(statement, column);
}

} // namespace sqlite
