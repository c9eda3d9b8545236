#include "database/Records.h"

#include <gtest/gtest.h>

namespace {

TEST(Records, ExtrasAreTextsBetweenWordsOrNothing) {
    database::Named const thing{"a", "", {{"with", "x=1"}, {"flag", ""}}};
    EXPECT_TRUE(has(thing, "flag"));
    EXPECT_FALSE(has(thing, "none"));
    EXPECT_EQ(database::valueOf(thing.extras, "with"), "x=1");
    EXPECT_EQ(database::valueOf(thing.extras, "none"), "");
    EXPECT_EQ(database::clause(thing.extras, "with", " WITH (", ")"), " WITH (x=1)");
    EXPECT_EQ(database::clause(thing.extras, "flag", " WITH (", ")"), "");
    EXPECT_EQ(database::clause(thing.extras, "none", " WITH (", ")"), "");
}

TEST(Records, TextBeginsWithItsStartAlone) {
    EXPECT_TRUE(database::beginsWith("policy p", "policy "));
    EXPECT_TRUE(database::beginsWith("a", ""));
    EXPECT_FALSE(database::beginsWith("polic", "policy "));
    EXPECT_FALSE(database::beginsWith("a policy ", "policy "));
}

} // namespace
