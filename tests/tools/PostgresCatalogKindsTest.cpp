#include "postgres/CatalogKinds.h"

#include <gmock/gmock.h>

namespace {

using database::Extra;
using database::Extras;
using postgres::extrasOf;
using postgres::kindOf;
using postgres::Moment;
using testing::ElementsAre;

TEST(PostgresCatalogKinds, KnowAnExtraByTheLongestBeginningOfItsName) {
    EXPECT_EQ(kindOf({"operator s.<", "CREATE OPERATOR s.<"}).prefix, "operator ");
    EXPECT_EQ(kindOf({"operator class s.o", "CREATE OPERATOR CLASS s.o"}).prefix, "operator class ");
    EXPECT_EQ(kindOf({"operator family s.o", "CREATE OPERATOR FAMILY s.o"}).prefix, "operator family ");
    EXPECT_EQ(kindOf({"members of operator family s.o", "ALTER OPERATOR FAMILY s.o"}).moment,
              Moment::BEHIND_TYPES);
}

TEST(PostgresCatalogKinds, MakeNothingOfWhatIsNoStatement) {
    EXPECT_EQ(kindOf({"operator classes", "s.a, s.b"}).moment, Moment::NEVER);
    EXPECT_EQ(kindOf({"operator class s.o", "s.o"}).moment, Moment::NEVER);
    EXPECT_EQ(kindOf({"subscription s", "PUBLICATION p"}).moment, Moment::NEVER);
    EXPECT_EQ(kindOf({"colour", "CREATE TABLE t"}).moment, Moment::NEVER);
}

TEST(PostgresCatalogKinds, PutWhatIsNeededFirst) {
    Extras const extras = {{"operator class c", "CREATE"},   {"operator o", "CREATE OPERATOR o"},
                           {"operator class c", "CREATE c"}, {"extension e", "CREATE EXTENSION e"},
                           {"operator p", "CREATE p"},       {"operator family f", "CREATE f"}};
    std::vector<std::string> values;
    for (Extra const* const extra : extrasOf(extras, Moment::BEHIND_TYPES)) {
        values.push_back(extra->value);
    }
    EXPECT_THAT(values, ElementsAre("CREATE f", "CREATE OPERATOR o", "CREATE p", "CREATE c"));
}

} // namespace
