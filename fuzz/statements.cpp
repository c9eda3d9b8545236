// Statements run by SQLite itself on a file, which is then read as a model; and the same text as each of the
// reader's own parsers takes it.

#include "Require.h"
#include "ScratchFolder.h"

#include "database/ModelBuilder.h"
#include "database/SqlTokens.h"
#include "kit/Verify.h"
#include "sqlite/CreateStatements.h"
#include "sqlite/DeclaredType.h"
#include "sqlite/SqliteDatabase.h"
#include "sqlite/StructureReader.h"
#include "sqlite/Translation.h"
#include "sqlite/VirtualTable.h"

#include <qor/QORModel.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>

#include <sqlite3.h>

namespace {

/// How many things of each kind the file holds, as SQLite tells it.
struct Counts {
    int tables = 0;
    int indexes = 0;
    int triggers = 0;
};

/// What changes a file's schema, and nothing that reaches beyond the file or into it by another way.
int allow(void*, int action, char const*, char const*, char const*, char const*) {
    switch (action) {
    case SQLITE_ATTACH:
    case SQLITE_DETACH:
    case SQLITE_PRAGMA:
    case SQLITE_TRANSACTION:
    case SQLITE_SAVEPOINT:
        return SQLITE_DENY;
    default:
        return SQLITE_OK;
    }
}

int giveUp(void*) {
    return 1;
}

class Writer {
public:
    explicit Writer(std::string const& path) {
        require(sqlite3_open(path.c_str(), &handle) == SQLITE_OK, "a database can be made");
        sqlite3_exec(handle, "PRAGMA page_size = 512; PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF",
                     nullptr, nullptr, nullptr);
        sqlite3_set_authorizer(handle, allow, nullptr);
        sqlite3_progress_handler(handle, 100000, giveUp, nullptr);
        sqlite3_limit(handle, SQLITE_LIMIT_LENGTH, 100000);
    }
    Writer(Writer const&) = delete;
    Writer& operator=(Writer const&) = delete;
    ~Writer() { sqlite3_close(handle); }

    /// Runs one statement after the other; what fails is passed over.
    void run(char const* sql) {
        while (*sql) {
            sqlite3_stmt* statement = nullptr;
            if (sqlite3_prepare_v2(handle, sql, -1, &statement, &sql) != SQLITE_OK && !statement &&
                !skip(sql))
                return;
            while (statement && sqlite3_step(statement) == SQLITE_ROW) {
            }
            sqlite3_finalize(statement);
        }
    }

    Counts counts() {
        sqlite3_set_authorizer(handle, nullptr, nullptr);
        sqlite3_progress_handler(handle, 0, nullptr, nullptr);
        return {count("type IN ('table', 'view') AND name NOT LIKE 'sqlite\\_%' ESCAPE '\\'"),
                count("type = 'index' AND sql IS NOT NULL"), count("type = 'trigger'")};
    }

private:
    /// Goes behind the next semicolon; false if there is none.
    static bool skip(char const*& sql) {
        while (*sql && *sql != ';')
            ++sql;
        return *sql && *++sql;
    }

    int count(std::string const& condition) {
        std::string const sql = "SELECT count(*) FROM main.sqlite_schema WHERE " + condition;
        sqlite3_stmt* statement = nullptr;
        require(sqlite3_prepare_v2(handle, sql.c_str(), -1, &statement, nullptr) == SQLITE_OK,
                "the schema can be read");
        require(sqlite3_step(statement) == SQLITE_ROW, "the schema can be counted");
        int const number = sqlite3_column_int(statement, 0);
        sqlite3_finalize(statement);
        return number;
    }

    sqlite3* handle = nullptr;
};

Counts make(std::string const& path, std::string const& sql) {
    std::filesystem::remove(path);
    Writer writer(path);
    writer.run(sql.c_str());
    return writer.counts();
}

void readBack(std::string const& path, Counts const& counts) {
    try {
        sqlite::Database file(path);
        database::Structure const structure = sqlite::readStructure(file);
        require(static_cast<int>(structure.tables.size()) == counts.tables, "each table and view is read");
        require(static_cast<int>(structure.indexes.size()) == counts.indexes, "each index is read");
        require(static_cast<int>(structure.triggers.size()) == counts.triggers, "each trigger is read");
        std::unique_ptr<QORModel> const model = database::buildModel(structure);
        for (std::string const& fault : kit::verify(*model))
            require(false, fault.c_str());
    } catch (kit::ToolError const& error) {
        require(std::strstr(error.what(), "unsafe use of"), error.what());
    }
}

void parse(std::string const& text) {
    for (sqlite::ColumnText const& column : sqlite::readCreateTable(text).columns)
        require(column.name.size() <= text.size(), "a column's name is a part of the statement");
    for (sqlite::MemberText const& member : sqlite::readCreateIndex(text).members)
        require(text.find(member.expression) != std::string::npos, "a member is a part of the statement");
    require(sqlite::readCreateView(text).select.size() <= text.size(),
            "a view's query is a part of the statement");
    sqlite::readCreateTrigger(text);
    require(sqlite::moduleOf(text).size() <= text.size(), "a module's name is a part of the statement");
    sqlite::DeclaredType const type = sqlite::readDeclaredType(text);
    require(type.dataType && *type.dataType, "each declared type stands for something");
    sqlite::translateSql(text);
    sqlite::translateDomainCheck(text, "value of it");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    static ScratchFolder const folder;
    std::string const text(reinterpret_cast<char const*>(data), size);
    parse(text);
    std::string const path = folder.path / "made.sqlite";
    Counts const counts = make(path, text);
    readBack(path, counts);
    return 0;
}
