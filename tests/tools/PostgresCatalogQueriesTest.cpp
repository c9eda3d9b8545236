#include "postgres/CatalogQueries.h"

#include <gmock/gmock.h>
#include <stdexcept>

namespace {

using postgres::filled;

TEST(PostgresCatalogQueries, APlaceIsFilledWhereverItsNameStands) {
    EXPECT_EQ(filled("{a} < {b} OR {a}x", {{"a", "n"}, {"b", "7"}}), "n < 7 OR nx");
    EXPECT_EQ(filled("no place", {}), "no place");
    EXPECT_EQ(filled("", {}), "");
}

TEST(PostgresCatalogQueries, AFillingHasNoPlaces) {
    EXPECT_EQ(filled("{a}", {{"a", "{a}"}}), "{a}");
}

TEST(PostgresCatalogQueries, APlaceWithoutAFillingIsRefused) {
    EXPECT_THROW(filled("{a} {b}", {{"a", "n"}}), std::logic_error);
    EXPECT_THROW(filled("{a} {b", {{"a", "n"}}), std::logic_error);
}

TEST(PostgresCatalogQueries, AFillingWithoutAPlaceIsRefused) {
    EXPECT_THROW(filled("{a}", {{"a", "n"}, {"b", "7"}}), std::logic_error);
}

} // namespace
