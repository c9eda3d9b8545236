#include "sqlite/CreateStatements.h"

#include <gmock/gmock.h>
#include <random>

namespace {

using database::KeyKind;
using sqlite::readCreateIndex;
using sqlite::readCreateTable;
using sqlite::readCreateTrigger;
using sqlite::readCreateView;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr char const* table = "CREATE TABLE IF NOT EXISTS main.\"t (x)\" (a INTEGER CONSTRAINT p PRIMARY KEY "
                              "ASC AUTOINCREMENT, 'b c' DECIMAL(10, 2)"
                              " NOT NULL ON CONFLICT ROLLBACK DEFAULT (1) CHECK (\"b c\" > 0) COLLATE \"my "
                              "nocase\" REFERENCES u(\"x,y\") ON DELETE SET"
                              " NULL, [c] TEXT GENERATED ALWAYS AS (a || 'x)') STORED UNIQUE, CONSTRAINT f "
                              "FOREIGN KEY (a, 'b c') REFERENCES \"v v\""
                              " ON UPDATE SET DEFAULT DEFERRABLE INITIALLY DEFERRED, CHECK (a) CONSTRAINT q "
                              "CHECK (b), UNIQUE (a COLLATE NOCASE)"
                              " ON CONFLICT IGNORE) WITHOUT ROWID";

TEST(CreateStatements, TableHasColumnsKeysAndChecks) {
    sqlite::TableText const text = readCreateTable(table);
    ASSERT_EQ(text.columns.size(), 3u);
    EXPECT_EQ(text.columns[1].name, "b c");
    EXPECT_EQ(*database::findExtra(text.columns[1].extras, "collation"), "my nocase");
    EXPECT_EQ(*database::findExtra(text.columns[1].extras, "conflict"), "ROLLBACK");
    EXPECT_EQ(text.columns[2].generated, "a || 'x)'");
    ASSERT_EQ(text.keys.size(), 5u);
    EXPECT_EQ(text.keys[0].name, "p");
    EXPECT_EQ(text.keys[0].kind, KeyKind::PRIMARY);
    EXPECT_EQ(text.keys[1].referredTable, "u");
    EXPECT_THAT(text.keys[1].referredColumns, ElementsAre("x,y"));
    EXPECT_THAT(text.keys[1].columns, ElementsAre("b c"));
    EXPECT_THAT(text.keys[2].columns, ElementsAre("c"));
    EXPECT_THAT(text.keys[3].columns, ElementsAre("a", "b c"));
    EXPECT_EQ(text.keys[3].onUpdate, database::Action::SET_DEFAULT);
    EXPECT_EQ(*database::findExtra(text.keys[4].extras, "columns"), "a COLLATE NOCASE");
    ASSERT_EQ(text.checks.size(), 3u);
    EXPECT_EQ(text.checks[0].expression, "\"b c\" > 0");
    EXPECT_EQ(text.checks[1].name, "");
    EXPECT_EQ(text.checks[2].name, "q");
}

TEST(CreateStatements, KeywordsCanBeNamesWhereSqliteTakesThem) {
    EXPECT_EQ(readCreateTable("CREATE TABLE if(key TEXT, conflict, action, generated, \"check\" INT)")
                  .columns.size(),
              5u);
    EXPECT_EQ(readCreateView("CREATE VIEW view AS SELECT 1").select, "SELECT 1");
    EXPECT_TRUE(readCreateTrigger("CREATE TRIGGER before AFTER INSERT ON t BEGIN SELECT 1; END").onInsert);
    EXPECT_THAT(readCreateIndex("CREATE INDEX \"on (x)\" ON t(a)").members, testing::SizeIs(1));
}

TEST(CreateStatements, ViewIsWhatStandsBehindAs) {
    EXPECT_EQ(
        readCreateView("CREATE TEMP VIEW IF NOT EXISTS v(a, \"as\") AS WITH q AS (SELECT 1) SELECT * FROM q")
            .select,
        "WITH q AS (SELECT 1) SELECT * FROM q");
    EXPECT_TRUE(readCreateView("CREATE VIEW v(a) AS SELECT 1").named);
    EXPECT_FALSE(readCreateView("CREATE VIEW v AS SELECT (1)").named);
}

TEST(CreateStatements, TriggerWithoutATimeIsOneBefore) {
    sqlite::TriggerText const text =
        readCreateTrigger("CREATE TRIGGER r UPDATE OF a, [b c] ON t BEGIN SELECT 1; END");
    EXPECT_EQ(text.time, database::TriggerTime::BEFORE);
    EXPECT_TRUE(text.onUpdate);
    EXPECT_FALSE(text.onInsert);
    EXPECT_THAT(text.columns, ElementsAre("a", "b c"));
}

TEST(CreateStatements, IndexHasMembersAndACondition) {
    sqlite::IndexText const text = readCreateIndex(
        "CREATE UNIQUE INDEX i ON t(a DESC, f(b, 'x'), \"c\" COLLATE rtrim ASC, (d)) WHERE a > (1)");
    ASSERT_EQ(text.members.size(), 4u);
    EXPECT_TRUE(text.members[0].descending);
    EXPECT_EQ(text.members[0].column, "a");
    EXPECT_EQ(text.members[1].column, "");
    EXPECT_EQ(text.members[1].expression, "f(b, 'x')");
    EXPECT_EQ(text.members[2].collation, "rtrim");
    EXPECT_EQ(text.members[3].expression, "(d)");
    EXPECT_EQ(text.where, "a > (1)");
}

TEST(CreateStatements, AnyBeginningAndAnyDamageOfAStatementIsRead) {
    std::string const whole = table;
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        std::string const part = whole.substr(0, length);
        EXPECT_LE(readCreateTable(part).columns.size(), 3u);
        readCreateIndex(part);
        readCreateView(part);
        readCreateTrigger(part);
    }
    std::mt19937 random(5);
    char const alphabet[] = "(),;'\"[]`$ -/*\nax";
    for (int round = 0; round < 3000; ++round) {
        std::string damaged = whole;
        for (int i = 0; i < 4; ++i) {
            damaged[random() % damaged.size()] = alphabet[random() % (sizeof alphabet - 1)];
        }
        std::size_t const columns = readCreateTable(damaged).columns.size();
        EXPECT_LE(columns, damaged.size());
    }
    EXPECT_THAT(readCreateTable("").columns, IsEmpty());
    EXPECT_THAT(readCreateIndex("CREATE").members, IsEmpty());
    EXPECT_EQ(readCreateView("CREATE VIEW").select, "");
}

} // namespace
