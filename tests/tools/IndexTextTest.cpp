#include "database/IndexText.h"

#include <gtest/gtest.h>

namespace {

database::Table view() {
    database::Table table;
    table.columns.resize(2);
    table.columns[0].name = "a \"b\"";
    table.columns[1].name = "größe";
    return table;
}

TEST(IndexText, WhatWasWrittenIsReadAgain) {
    database::Index index;
    index.name = "i\n";
    index.comment = "quick";
    index.unique = true;
    index.clustered = true;
    index.extras = {{"where", "a > 'x'"}, {"method", "gin"}};
    index.members.resize(2);
    index.members[0].column = 1;
    index.members[0].descending = true;
    index.members[0].extras = {{"nulls", "FIRST"}};
    index.members[1].expression = "lower(a)";

    std::string const text = database::writeIndexText(index, view());
    EXPECT_EQ(text.find('\n'), std::string::npos) << text;
    auto const read = database::readIndexText(text, view());
    ASSERT_TRUE(read);
    EXPECT_EQ(read->name, "i\n");
    EXPECT_EQ(read->comment, "quick");
    EXPECT_TRUE(read->unique);
    EXPECT_TRUE(read->clustered);
    ASSERT_EQ(read->extras.size(), 2u);
    EXPECT_EQ(read->extras[1].value, "gin");
    ASSERT_EQ(read->members.size(), 2u);
    EXPECT_EQ(read->members[0].column, 1);
    EXPECT_TRUE(read->members[0].descending);
    ASSERT_EQ(read->members[0].extras.size(), 1u);
    EXPECT_EQ(read->members[0].extras[0].name, "nulls");
    EXPECT_EQ(read->members[1].column, -1);
    EXPECT_EQ(read->members[1].expression, "lower(a)");
    EXPECT_FALSE(read->members[1].descending);
}

TEST(IndexText, EachColumnCanBeAMember) {
    for (int column : {0, 1}) {
        database::Index index;
        index.members.resize(1);
        index.members[0].column = column;
        auto const read = database::readIndexText(database::writeIndexText(index, view()), view());
        ASSERT_TRUE(read) << column;
        EXPECT_EQ(read->members.at(0).column, column);
    }
}

TEST(IndexText, TextThatIsNoIndexGivesNone) {
    std::string const head =
        R"({"name":"i","comment":"","unique":false,"clustered":false,"extras":[],"members":)";
    EXPECT_TRUE(database::readIndexText(head + "[]}", view()));
    for (std::string const& text :
         {std::string(), std::string("{}"), std::string("[1]"), head, head + "3}",
          head + R"([{"column":"nobody","descending":false,"extras":[]}]})",
          head + R"([{"expression":"","descending":false,"extras":[]}]})",
          head + R"([{"descending":false}]})", head + R"([{"expression":"a","descending":1,"extras":[]}]})",
          head + R"([{"expression":"a","descending":false,"extras":[["x"]]}]})"}) {
        EXPECT_FALSE(database::readIndexText(text, view())) << text;
    }
}

} // namespace
