#include "Expectations.h"

#include <qor/QORParserNode.h>
#include <qor/QORStatementNode.h>

TEST(QORParserNode, HasTheOwnersOfAnExpressionNode) {
    Graph graph;
    auto* const node = graph.make<Plain<QORParserNode>>("n");
    auto* const owner = graph.make<QORStatementNode>();
    owner->addExpressionNode(node);
    EXPECT_EQ(node->getParent(), owner);
    expectDeletionRefused(*node);
    EXPECT_EQ(node->removeAggregationAssembly(), owner);
    EXPECT_TRUE(node->recursiveDelete());
}

TEST(QORParserNode, ReencodesItsOriginalText) {
    Plain<QORParserNode> node;
    node.setOriginalText(inUtf8);
    Recoding recode;
    recode(node);
    EXPECT_STREQ(node.getOriginalText().chars, inLatin1);
    EXPECT_EQ(recode.converted, 1);
}
