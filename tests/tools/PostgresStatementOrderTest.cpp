#include "postgres/StatementOrder.h"

#include <gmock/gmock.h>

namespace {

using postgres::Creation;
using postgres::orderByNeeds;
using testing::ElementsAre;

TEST(PostgresStatementOrder, StaysWhereNothingNeedsAnything) {
    EXPECT_THAT(orderByNeeds({}, false), ElementsAre());
    EXPECT_THAT(orderByNeeds({{"s", "a", "a"}, {"s", "b", "b"}}, false), ElementsAre(0u, 1u));
}

TEST(PostgresStatementOrder, PutsWhatIsNeededFirst) {
    std::vector<Creation> const creations = {
        {"s", "a", "needs s.b and s.c"}, {"s", "b", "needs \"s\".d"}, {"s", "c", ""}, {"s", "d", ""}};
    EXPECT_THAT(orderByNeeds(creations, false), ElementsAre(3u, 1u, 2u, 0u));
}

TEST(PostgresStatementOrder, KnowsThingsByTheirSchema) {
    EXPECT_THAT(orderByNeeds({{"s", "a", "t.b, b"}, {"s", "b", ""}}, false), ElementsAre(0u, 1u));
    EXPECT_THAT(orderByNeeds({{"s", "a", "s.b.column"}, {"s", "b", ""}}, false), ElementsAre(1u, 0u));
}

TEST(PostgresStatementOrder, PutsAllThingsOfANameFirst) {
    EXPECT_THAT(orderByNeeds({{"s", "a", "s.f(1)"}, {"s", "f", "one"}, {"s", "f", "two"}}, false),
                ElementsAre(1u, 2u, 0u));
}

TEST(PostgresStatementOrder, LooksAtTheBeginningAlone) {
    EXPECT_THAT(orderByNeeds({{"s", "a", "head AS s.b", 4}, {"s", "b", ""}}, false), ElementsAre(0u, 1u));
}

TEST(PostgresStatementOrder, GoesOnWhereTwoNeedEachOther) {
    EXPECT_THAT(orderByNeeds({{"s", "a", "s.a s.b"}, {"s", "b", "s.a"}}, false), ElementsAre(1u, 0u));
}

TEST(PostgresStatementOrder, KnowsOperatorsByTheirSchema) {
    EXPECT_THAT(orderByNeeds({{"s", "a", "x OPERATOR(s.<=) y"}, {"s", "<=", ""}, {"s", "<", ""}}, false),
                ElementsAre(1u, 0u, 2u));
}

/// A table and a function can have one name.
TEST(PostgresStatementOrder, TakesNoNamesakeForNeeded) {
    EXPECT_THAT(orderByNeeds({{"s", "a", "CREATE TABLE s.a"}, {"s", "a", "CREATE FUNCTION s.a(s.a)"}}, false),
                ElementsAre(0u, 1u));
    EXPECT_THAT(
        orderByNeeds({{"s", "a", "CREATE TABLE s.a DEFAULT s.a()"}, {"s", "a", "FUNCTION s.a()"}}, false),
        ElementsAre(1u, 0u));
}

TEST(PostgresStatementOrder, TakesOnlyEarlierNamesakesIfTold) {
    std::vector<Creation> const creations = {{"s", "a", "TEMPLATE s.a", std::string::npos, true},
                                             {"s", "a", "DICTIONARY s.a (s.a)", std::string::npos, true},
                                             {"s", "a", "CONFIGURATION s.a (s.a)", std::string::npos, true}};
    EXPECT_THAT(orderByNeeds(creations, false), ElementsAre(0u, 1u, 2u));
}

/// The functions of a type name it and come first.
TEST(PostgresStatementOrder, PutsWhatIsLastBehindWhatItNames) {
    Creation type = {"s", "t", "TYPE s.t (s.in)"};
    type.isLast = true;
    EXPECT_THAT(orderByNeeds({type, {"s", "f", "s.f(s.t)"}, {"s", "in", "s.in() RETURNS s.t"}}, false),
                ElementsAre(2u, 0u, 1u));
}

TEST(PostgresStatementOrder, SplitsWhatStandsInACircle) {
    Creation table = {"s", "t", "TABLE s.t CHECK s.f"};
    table.bare = "TABLE s.t";
    table.rest = "ALTER s.t CHECK s.f";
    Creation other = {"s", "o", "TABLE s.o"};
    other.bare = "never";
    other.rest = "never";
    std::vector<Creation> creations = {other, table, {"s", "f", "FUNCTION s.f(s.t)"}};
    postgres::splitCircles(creations, false);
    std::vector<std::string> statements;
    for (std::size_t const index : orderByNeeds(creations, false)) {
        statements.push_back(creations[index].statement);
    }
    EXPECT_THAT(statements,
                ElementsAre("TABLE s.o", "TABLE s.t", "FUNCTION s.f(s.t)", "ALTER s.t CHECK s.f"));
}

TEST(PostgresStatementOrder, LeavesCirclesThatCannotBeSplit) {
    std::vector<Creation> creations = {{"s", "a", "s.a s.b"}, {"s", "b", "s.b s.a"}};
    creations[0].bare = "s.a";
    postgres::splitCircles(creations, false);
    EXPECT_EQ(creations.size(), 2u);
    EXPECT_EQ(creations[0].statement, "s.a s.b");
}

TEST(PostgresStatementOrder, LeavesTheSchemaAndTheCaseAsideIfTold) {
    EXPECT_THAT(orderByNeeds({{"s", "a", "FROM Bee"}, {"s", "bEE", ""}}, true), ElementsAre(1u, 0u));
}

TEST(PostgresStatementOrder, TakesALongChain) {
    constexpr std::size_t length = 200000;
    std::vector<Creation> creations;
    for (std::size_t i = 0; i < length; ++i) {
        creations.push_back({"s", "v" + std::to_string(i), "s.v" + std::to_string(i + 1)});
    }
    auto const order = orderByNeeds(creations, false);
    ASSERT_EQ(order.size(), length);
    EXPECT_EQ(order.front(), length - 1);
    EXPECT_EQ(order.back(), 0u);
}

} // namespace
