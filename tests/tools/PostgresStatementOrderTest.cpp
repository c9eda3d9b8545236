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
