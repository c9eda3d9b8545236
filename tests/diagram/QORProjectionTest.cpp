#include "Graph.h"

#include <qor/QORProjection.h>
#include <qor/QORRelationshipProjection.h>

#include <climits>

TEST(QORProjection, ReencodesItsFontNameBeforeItsName) {
    Graph graph;
    Mortal<QORProjection> projection(graph, "projection");
    projection.QORProjection::setName(inUtf8);
    projection.setFontName(inUtf8);
    projection.onSetName = [&] { EXPECT_STREQ(projection.getFontName().chars, inLatin1); };
    Recoding recode;
    recode(projection);
    EXPECT_EQ(graph.namings, Labels{"projection"});
    EXPECT_EQ(recode.converted, 2);
    QORProjection stubborn;
    stubborn.setFontName(notInLatin1);
    stubborn.setName(inUtf8);
    recode(stubborn);
    EXPECT_STREQ(stubborn.getFontName().chars, notInLatin1);
    EXPECT_STREQ(stubborn.getName().chars, inLatin1);
}

TEST(QORProjection, EqualsNoRelationshipProjection) {
    QORProjection const box;
    QORRelationshipProjection const line;
    EXPECT_FALSE(box.equals(line));
    EXPECT_FALSE(line.equals(box));
    EXPECT_TRUE(box.finalEquals(line));
}
