#include "database/Extras.h"

#include "Sqlite.h"
#include "TemporaryFolder.h"
#include "UsedExtras.h"
#include "postgres/Extras.h"
#include "sqlite/Extras.h"
#include "sqlite/SqliteDatabase.h"
#include "sqlite/StructureReader.h"

#include <cstdlib>
#include <fstream>
#include <gmock/gmock.h>

namespace {

using database::ExtraFacts;
using database::isKnownExtra;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

TEST(Extras, AnExtraIsKnownByItsNameAndTheClassOfItsObject) {
    ExtraFacts const facts = {{"with", "", {"Class", "Index"}, ""}, {"rule ", "NAME", {"Class"}, ""}};
    EXPECT_TRUE(isKnownExtra(facts, "with", "Class"));
    EXPECT_TRUE(isKnownExtra(facts, "with", "Index"));
    EXPECT_TRUE(isKnownExtra(facts, "rule r", "Class"));
    EXPECT_FALSE(isKnownExtra(facts, "with", "IndexMember"));
    EXPECT_FALSE(isKnownExtra(facts, "with r", "Class"));
    EXPECT_FALSE(isKnownExtra(facts, "rule", "Class"));
}

TEST(Extras, ATableHasALineForEachFact) {
    EXPECT_EQ(
        database::tableOf({{"with", "", {"Class", "Index"}, "options"}, {"rule ", "NAME", {"Class"}, "SQL"}}),
        "| Property | On | Value |\n| --- | --- | --- |\n"
        "| `with` | Class, Index | options |\n| `rule NAME` | Class | SQL |\n");
}

ExtraFacts together(ExtraFacts const& some, ExtraFacts const& more) {
    ExtraFacts all = some;
    all.insert(all.end(), more.begin(), more.end());
    return all;
}

void addExtrasOf(std::string const& sql, std::set<UsedExtra>& used) {
    TemporaryFolder const folder;
    sqlite::Database file(makeDatabase(folder.file("all.sqlite"), sql));
    used.merge(usedExtras(*database::buildModel(sqlite::readStructure(file))));
}

constexpr char const* everything = R"(
    PRAGMA encoding = 'UTF-16le'; PRAGMA auto_vacuum = FULL; PRAGMA user_version = 7; PRAGMA application_id = 8;
    CREATE TABLE a(id INTEGER CONSTRAINT k PRIMARY KEY AUTOINCREMENT,
        b TEXT COLLATE NOCASE CONSTRAINT n NOT NULL ON CONFLICT IGNORE CONSTRAINT d DEFAULT 'x',
        c INT AS (id + 1), UNIQUE (b COLLATE RTRIM DESC) ON CONFLICT REPLACE, UNIQUE (c, b), UNIQUE (b, c),
        CHECK (c > 0), CHECK (b > 'a'));
    CREATE TABLE o(id INTEGER PRIMARY KEY DESC, x REFERENCES nowhere, y REFERENCES a MATCH FULL DEFERRABLE);
    CREATE TABLE two(x, y, z, FOREIGN KEY (y, x) REFERENCES a(b, c), FOREIGN KEY (x) REFERENCES a);
    CREATE INDEX i ON a(lower(b), b COLLATE RTRIM) WHERE c > 1;
    CREATE VIEW v(named) AS SELECT id FROM a;
    CREATE TRIGGER t AFTER UPDATE OF b ON a BEGIN SELECT 1; END;
    CREATE VIRTUAL TABLE f USING fts5(x);)";

TEST(Extras, ThoseOfSqliteDatabasesAreKnown) {
    std::set<UsedExtra> used;
    addExtrasOf(everything, used);
    addExtrasOf(contentOf(QOR_SOURCE_DIR "/samples/orchard.sql"), used);
    EXPECT_THAT(unknownExtras(together(database::sharedExtras(), sqlite::extraFacts()), used), IsEmpty());
    EXPECT_THAT(unusedExtras(sqlite::extraFacts(), used), IsEmpty());
    EXPECT_THAT(unusedExtras(database::sharedExtras(), used),
                UnorderedElementsAre("deferrable of CandidateKey", "index of SQLViewEntity",
                                     "not null of DerivedType"))
        << "which SQLite doesn't have";
}

/// A document with these tables in place of its own.
std::string withTables(std::string text, std::vector<std::string> const& tables) {
    std::size_t place = 0;
    for (std::string const& table : tables) {
        place = text.find("| Property | On | Value |\n", place);
        std::size_t const end = text.find("\n\n", place);
        if (end == std::string::npos) {
            return "no such table";
        }
        text.replace(place, end + 1 - place, table);
        place += table.size();
    }
    return text;
}

TEST(Extras, TheDocumentHasTheirTables) {
    std::string const file = QOR_SOURCE_DIR "/docs/import.md";
    std::string const expected =
        withTables(contentOf(file), {tableOf(database::sharedExtras()), tableOf(sqlite::extraFacts()),
                                     tableOf(postgres::extraFacts())});
    if (std::getenv("QOR_WRITE_TABLES")) {
        std::ofstream(file) << expected;
    }
    EXPECT_EQ(contentOf(file), expected) << "QOR_WRITE_TABLES=1 lets this test write the tables.";
}

} // namespace
