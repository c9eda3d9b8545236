#include "GraphObservers.h"

#include <qor/QORParserNode.h>
#include <qor/QORStatementNode.h>

using namespace graph;

TEST(QORParserNode, IsAnAbstractExpressionNode) {
    expectAbstract<QORParserNode>(QORElementType::PARSER_NODE, 116, "ParserNode",
                                  QORExpressionNode::getStaticMetaClass());
}

TEST(QORParserNode, IsReferencedAsAnExpressionNode) {
    using N = QORExpressionNode;
    expectReferencedThrough<Plain<QORParserNode>, QORStatementNode>(&N::addStatementNode,
                                                                    &N::removeStatementNode);
}

TEST(QORParserNode, HasTheOwnersOfAnExpressionNode) {
    Held<Plain<QORParserNode>> node("n");
    Held<QORStatementNode> owner;
    owner->addExpressionNode(node);
    EXPECT_EQ(node->getParent(), owner.get());
    expectDeletionRefused(*node);
    EXPECT_EQ(node->removeAggregationAssembly(), owner.get());
    EXPECT_TRUE(node->recursiveDelete());
}

TEST(QORParserNode, ReencodesItsOriginalText) {
    Plain<QORParserNode> node;
    node.setOriginalText(rawText);
    Recoding recode;
    recode(node);
    EXPECT_STREQ(node.getOriginalText().chars, recodedText);
    EXPECT_EQ(recode.first, 1);
}
