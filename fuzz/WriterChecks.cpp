#include "WriterChecks.h"

#include "database/ModelReader.h"
#include "database/SqlTokens.h"
#include "diff/GraphDiff.h"
#include "documents/DotWriter.h"
#include "documents/MarkdownWriter.h"
#include "exchange/JsonWriter.h"
#include "kit/Statistics.h"
#include "kit/ToolError.h"
#include "kit/TreePrinter.h"
#include "qor/Dialects.h"

#include <qor/QORModel.h>

#include <functional>
#include <sqlite3.h>
#include <sstream>

namespace {

using Faults = std::vector<std::string>;

/// Runs what may refuse a graph by kit::ToolError alone.
void attempt(char const* what, Faults& faults, std::function<void()> const& run) {
    try {
        run();
    } catch (kit::ToolError const&) { // refused
    } catch (std::exception const& error) {
        faults.push_back(std::string(what) + ": " + error.what());
    }
}

void tryAsText(char const* what, Faults& faults, std::function<void(std::ostream&)> const& write) {
    attempt(what, faults, [&] {
        std::ostringstream out;
        write(out);
    });
}

/// What stands near a token.
std::string around(std::string const& sql, database::Token const& token) {
    constexpr std::size_t reach = 100;
    auto const place = static_cast<std::size_t>(token.text.data() - sql.data());
    return sql.substr(place < reach ? 0 : place - reach, 2 * reach);
}

/// Names and lists of names that aren't there. SQLite itself takes an empty name.
void findGaps(std::string const& sql, bool emptyNames, Faults& faults) {
    std::vector<database::Token> const tokens = database::tokenize(sql);
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        if (tokens[i].text == "\"\"" && !emptyNames) {
            faults.push_back("an empty name in " + around(sql, tokens[i]));
        }
        bool const isList = i > 1 && tokens[i].isSymbol(')') && tokens[i - 1].isSymbol('(');
        for (char const* before : {"KEY", "UNIQUE", "CHECK", "INCLUDE", "INDEX"}) {
            if (isList && tokens[i - 2].is(before)) {
                faults.push_back("an empty list in " + around(sql, tokens[i]));
            }
        }
    }
}

/// Runs each statement by itself, so that all that fail are told.
void runStatements(std::string const& sql, Faults& faults) {
    sqlite3* database = nullptr;
    sqlite3_open(":memory:", &database);
    for (char const* next = sql.c_str(); *next;) {
        sqlite3_stmt* statement = nullptr;
        char const* const begin = next;
        int result = sqlite3_prepare_v2(database, begin, -1, &statement, &next);
        if (result == SQLITE_OK && statement) {
            result = sqlite3_step(statement);
        }
        if (result != SQLITE_OK && result != SQLITE_DONE && result != SQLITE_ROW) {
            faults.push_back(std::string(sqlite3_errmsg(database)) + ": " +
                             std::string(begin, next > begin ? next : begin));
        }
        sqlite3_finalize(statement);
        if (next == begin) {
            break;
        }
    }
    sqlite3_close(database);
}

} // namespace

std::string sqlOf(QORModel& model, char const* dialect) {
    database::Structure const structure = database::readModel(model);
    std::ostringstream out;
    database::Dialects const& all = qorprogram::dialects();
    all.write(structure, all.named(dialect), out);
    return out.str();
}

Faults writerFaults(QORModel& model) {
    Faults faults;
    tryAsText("json", faults, [&](std::ostream& out) { exchange::writeJson(model, out); });
    tryAsText("dot", faults, [&](std::ostream& out) { documents::writeDot(model, out); });
    tryAsText("markdown", faults, [&](std::ostream& out) { documents::writeMarkdown(model, out); });
    tryAsText("tree", faults, [&](std::ostream& out) { kit::printTree(model, out); });
    tryAsText("statistics", faults,
              [&](std::ostream& out) { kit::printStatistics(kit::countObjects(model), out); });
    tryAsText("difference", faults, [&](std::ostream& out) {
        diff::Difference const difference = diff::compare(model, model);
        diff::printText(difference, false, out);
        diff::printJson(difference, out);
        if (!difference.none()) {
            faults.push_back("a model differs from itself");
        }
    });
    attempt("sqlite", faults, [&] {
        std::string const sql = sqlOf(model, "sqlite");
        findGaps(sql, database::readModel(model).origin.system == "SQLite", faults);
        runStatements(sql, faults);
    });
    attempt("postgresql", faults, [&] { findGaps(sqlOf(model, "postgresql"), false, faults); });
    return faults;
}
