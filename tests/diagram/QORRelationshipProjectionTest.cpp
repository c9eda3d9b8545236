#include "GraphObservers.h"

#include <qor/QORClassDiagram.h>
#include <qor/QORMetaAttribute.h>
#include <qor/QORRelationshipProjection.h>

using namespace graph;

TEST(QORRelationshipProjection, IsAProjection) {
    expectConcrete<QORRelationshipProjection>(QORElementType::RELATIONSHIP_PROJECTION, 63,
                                              "RelationshipProjection", QORProjection::getStaticMetaClass());
}

TEST(QORRelationshipProjection, StartsAsAProjectionWithoutPoints) {
    QORRelationshipProjection line;
    EXPECT_STREQ(line.getLinePoints().chars, "");
    EXPECT_EQ(line.getBackgroundColor(), 16777215);
    QORVector const& attributes = line.getMetaClass()->getMetaAttributes();
    auto const* const last = static_cast<QORMetaAttribute const*>(attributes[attributes.size - 1]);
    EXPECT_EQ(static_cast<int>(last->getId()), 146);
}

TEST(QORRelationshipProjection, ComparesAndCopiesItsPointsAndTheProjection) {
    expectCompared<QORRelationshipProjection>([](auto& line) { line.setLinePoints("1,2"); });
    expectCompared<QORRelationshipProjection>([](auto& line) { line.setStrike(true); });
    QORRelationshipProjection source;
    source.setLinePoints("anything at all");
    source.setX(3);
    EXPECT_TRUE(QORRelationshipProjection(source).equals(source));
    QORRelationshipProjection target;
    target.setFrom(source);
    EXPECT_TRUE(target.equals(source));
    EXPECT_STREQ(target.getLinePoints().chars, "anything at all");
}

TEST(QORRelationshipProjection, ReencodesItsPointsAndItsFontName) {
    QORRelationshipProjection line;
    line.setLinePoints(stubbornText);
    line.setFontName(rawText);
    line.setName(rawText);
    Recoding recode;
    recode(line);
    EXPECT_STREQ(line.getLinePoints().chars, stubbornText);
    EXPECT_STREQ(line.getFontName().chars, recodedText);
    EXPECT_STREQ(line.getName().chars, recodedText);
    line.setLinePoints(rawText);
    line.setName("");
    line.setFontName("");
    recode(line);
    EXPECT_STREQ(line.getLinePoints().chars, recodedText);
}

TEST(QORRelationshipProjection, BelongsToItsDiagram) {
    Held<QORClassDiagram> diagram("d");
    Held<QORRelationshipProjection> line;
    line->addDiagram(diagram);
    EXPECT_STREQ(line->getDisplayName().chars, "d_");
    expectDeletionRefused(*line);
    EXPECT_EQ(line->removeAggregationAssembly(), diagram.get());
}
