#include "database/Writable.h"

#include <gmock/gmock.h>

namespace {

using database::Rules;
using database::Structure;
using database::Writable;
using testing::Contains;
using testing::IsEmpty;
using testing::SizeIs;

Rules strictRules() {
    Rules rules;
    rules.emptyTables = true;
    rules.strict = true;
    rules.utf8 = true;
    rules.comparesTypes = true;
    rules.defaultSchema = "public";
    return rules;
}

/// Two tables of one column each, "a.x" and "b.y", the first of them a primary key.
Structure twoTables() {
    Structure all;
    all.schemas.emplace_back().name = "public";
    for (char const* name : {"a", "b"}) {
        database::Table& table = all.tables.emplace_back();
        table.name = name;
        table.schema = 0;
        table.columns.emplace_back().name = *name == 'a' ? "x" : "y";
    }
    database::Key& key = all.keys.emplace_back();
    key.table = 0;
    key.columns = {0};
    return all;
}

database::Key& addReference(Structure& all) {
    database::Key& key = all.keys.emplace_back();
    key.kind = database::KeyKind::FOREIGN;
    key.name = "f";
    key.table = 1;
    key.columns = {0};
    key.referredTable = 0;
    key.referredColumns = {0};
    return key;
}

std::vector<std::string> omissionsOf(Structure const& all, Rules const& rules = strictRules()) {
    std::vector<std::string> lines;
    for (database::Omission const& omission : database::writable(all, rules).omissions) {
        lines.push_back(omission.object + ": " + omission.reason);
    }
    return lines;
}

TEST(Writable, WhatLacksNothingStays) {
    Structure all = twoTables();
    addReference(all);
    Writable const result = database::writable(all, strictRules());
    EXPECT_THAT(result.omissions, IsEmpty());
    EXPECT_THAT(result.structure.keys, SizeIs(2));
    EXPECT_THAT(result.structure.tables, SizeIs(2));
}

TEST(Writable, ForeignKeyNeedsATargetThatIsAKey) {
    Structure all = twoTables();
    addReference(all).referredTable = -1;
    EXPECT_THAT(omissionsOf(all), Contains("foreign key f of b: it refers to no table"));
    all.keys.back().referredTable = 0;
    all.keys.back().referredColumns.clear();
    EXPECT_THAT(omissionsOf(all), Contains("foreign key f of b: the columns that it refers to are unknown"));
    all.keys.back().referredColumns = {0};
    all.keys.erase(all.keys.begin());
    EXPECT_THAT(omissionsOf(all), Contains("foreign key f of b: the columns that it refers to aren't a key"));
}

TEST(Writable, WhatRefersToSomethingLeftOutIsLeftOutToo) {
    Structure all = twoTables();
    addReference(all);
    all.tables[0].name = "";
    database::Check& check = all.checks.emplace_back();
    check.table = 0;
    check.expression = "x > 1";
    Writable const result = database::writable(all, strictRules());
    EXPECT_THAT(result.structure.tables, SizeIs(1));
    EXPECT_THAT(result.structure.keys, IsEmpty());
    EXPECT_THAT(result.structure.checks, IsEmpty());
    EXPECT_THAT(result.omissions, SizeIs(4));
}

TEST(Writable, IndexesOfThingsMoveWithThem) {
    Structure all = twoTables();
    all.tables[0].columns.insert(all.tables[0].columns.begin(), database::Column());
    all.keys[0].columns = {1};
    Writable const result = database::writable(all, strictRules());
    EXPECT_EQ(result.structure.keys[0].columns, std::vector<int>{0});
    EXPECT_EQ(result.structure.tables[0].columns[0].name, "x");
}

TEST(Writable, ExpressionMustStayWithinItself) {
    Structure all = twoTables();
    for (char const* text :
         {"", " ", "(", ")(", "1); DROP TABLE a; --", "'", "\"x", "$$ 1", "1 /*", "1 -- or\n/*"}) {
        all.checks.assign(1, database::Check());
        all.checks[0].table = 0;
        all.checks[0].expression = text;
        EXPECT_THAT(database::writable(all, strictRules()).structure.checks, IsEmpty()) << text;
    }
    for (char const* text : {"x > 1", "(x)", "x = ';'", "x = '--' /* y */ AND true", "x = 'it''s'",
                             "x = $$'$$", "1 -- or", "1 /* or */ -- else"}) {
        all.checks[0].expression = text;
        EXPECT_THAT(omissionsOf(all), IsEmpty()) << text;
        all.checks.assign(1, all.checks[0]);
    }
}

TEST(Writable, ParentsInACircleLoseTheOneThatClosesIt) {
    Structure all = twoTables();
    all.tables[0].columns.clear();
    all.keys.clear();
    all.tables[0].parents = {1};
    all.tables[1].parents = {0};
    Writable const result = database::writable(all, strictRules());
    EXPECT_EQ(result.structure.tables[0].parents.size() + result.structure.tables[1].parents.size(), 1u);
    EXPECT_THAT(omissionsOf(all), Contains("that b inherits from a: that one inherits from it"));
}

TEST(Writable, TakenNamesAndSchemasOfOneNameAreToldApart) {
    Structure all = twoTables();
    all.schemas.emplace_back().name = "public";
    all.tables[1].schema = 1;
    all.tables[1].name = "a";
    EXPECT_THAT(omissionsOf(all), Contains("table a: its name is already taken"));
    EXPECT_THAT(omissionsOf(all, Rules()), IsEmpty());
}

} // namespace
