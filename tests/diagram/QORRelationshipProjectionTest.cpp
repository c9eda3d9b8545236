#include "Expectations.h"

#include <qor/QORClassDiagram.h>
#include <qor/QORRelationshipProjection.h>

TEST(QORRelationshipProjection, BelongsToItsDiagram) {
    Graph graph;
    auto* const diagram = graph.make<QORClassDiagram>("d");
    auto* const line = graph.make<QORRelationshipProjection>();
    line->addDiagram(diagram);
    EXPECT_STREQ(line->getDisplayName().chars, "d_");
    expectDeletionRefused(*line);
    EXPECT_EQ(line->removeAggregationAssembly(), diagram);
}
