#include "postgres/PostgresSource.h"

#include <gmock/gmock.h>

namespace {

TEST(PostgresSource, IsKnownByItsUrlAndShownWithoutItsUser) {
    kit::SourceKind const kind = postgres::postgresSource();
    EXPECT_TRUE(kind.recognises({"postgresql://u:secret@h/x.json", ""}));
    EXPECT_TRUE(kind.recognises({"postgres://h", ""}));
    EXPECT_FALSE(kind.recognises({"mysql://h/x", ""}));
    EXPECT_FALSE(kind.recognises({"postgresql", "postgresql://h"}));
    EXPECT_EQ(kind.shown("postgres://u:secret@h/x"), "postgresql://h/x");
    EXPECT_THAT(kind.filesOf("postgresql://h/x"), testing::IsEmpty());
}

} // namespace
