#include "Graph.h"

#include <qor/QORRepositoryObject.h>

namespace {

constexpr char const* created = "12:34:56 2001-02-03";

QORDate date(char const* text) {
    QORDate result;
    result.setDate(QORString(text));
    return result;
}

} // namespace

TEST(QORRepositoryObject, ReencodesAuthorAndModifierEachOnItsOwn) {
    Graph graph;
    Mortal<QORRepositoryObject> object(graph, "object");
    object.QORRepositoryObject::setName(inUtf8);
    object.setAuthor(notInLatin1);
    object.setModifier(inUtf8);
    object.setCreationTime(date(created));
    object.onSetName = [&] { EXPECT_STREQ(object.getModifier().chars, inLatin1); };
    Recoding recode;
    recode(object);
    EXPECT_EQ(graph.namings, Labels{"object"});
    EXPECT_STREQ(object.getAuthor().chars, notInLatin1);
    EXPECT_STREQ(object.getName().chars, inLatin1);
    EXPECT_STREQ(object.getCreationTime().chars(), created);
    EXPECT_EQ(recode.converted, 2);
    EXPECT_EQ(recode.errors, 1);
}
