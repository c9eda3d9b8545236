#include "exchange/JsonSource.h"

#include <gtest/gtest.h>
#include <sstream>

namespace {

/// Takes characters up to a certain one.
void take(exchange::JsonSource& source, char until) {
    for (bool found = false; !found;) {
        ASSERT_FALSE(source.atEnd());
        found = source.peek() == until;
        source.next();
    }
}

void expectAt(exchange::TextPosition const& position, std::size_t line, std::size_t column) {
    EXPECT_EQ(position.line, line);
    EXPECT_EQ(position.column, column);
}

TEST(JsonSource, KnowsWhereTheCharacterTakenLastStands) {
    std::istringstream in("ab\nc\n\n");
    exchange::JsonSource source(in);
    expectAt(source.here(), 1, 1);
    take(source, 'b');
    expectAt(source.here(), 1, 2);
    take(source, '\n');
    expectAt(source.here(), 1, 3);
    take(source, 'c');
    expectAt(source.here(), 2, 1);
    take(source, '\n');
    take(source, '\n');
    EXPECT_TRUE(source.atEnd());
    expectAt(source.here(), 3, 1);
}

TEST(JsonSource, ColumnCountsCharactersAndNotBytes) {
    std::istringstream in("\"\xc3\xa4\xe6\xa8\xb9\" x");
    exchange::JsonSource source(in);
    take(source, 'x');
    expectAt(source.here(), 1, 6);
}

TEST(JsonSource, KnowsWhereATokenBegins) {
    std::istringstream in("{ \"a\\\"{\": 12, \"b\":[true,{}]}");
    exchange::JsonSource source(in);
    take(source, '{');
    expectAt(source.tokenBegin(), 1, 1);
    take(source, ':');
    expectAt(source.tokenBegin(), 1, 3);
    take(source, ',');
    expectAt(source.tokenBegin(), 1, 11);
    take(source, '[');
    expectAt(source.tokenBegin(), 1, 19);
    take(source, ',');
    expectAt(source.tokenBegin(), 1, 20);
    take(source, '}');
    expectAt(source.tokenBegin(), 1, 25);
    take(source, ']');
    expectAt(source.tokenBegin(), 1, 25);
}

TEST(JsonSource, IteratorEndsWithTheStream) {
    std::istringstream in("ab");
    exchange::JsonSource source(in);
    std::string text;
    for (exchange::JsonCharacter each(&source); each != exchange::JsonCharacter(); ++each) {
        text += *each;
    }
    EXPECT_EQ(text, "ab");
}

} // namespace
