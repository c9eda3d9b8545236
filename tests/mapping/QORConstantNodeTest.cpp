#include "GraphObservers.h"

#include <qor/QORConstantNode.h>
#include <qor/QORElementNode.h>
#include <qor/QORStatementNode.h>

using namespace graph;

TEST(QORConstantNode, IsAnExpressionNode) {
    expectConcrete<QORConstantNode>(QORElementType::CONSTANT_NODE, 104, "ConstantNode",
                                    QORExpressionNode::getStaticMetaClass());
}

TEST(QORConstantNode, IsReferencedAsAnExpressionNode) {
    using N = QORExpressionNode;
    expectReferencedThrough<QORConstantNode, QORStatementNode>(&N::addStatementNode, &N::removeStatementNode);
    expectReferencedThrough<QORConstantNode, QORElementNode>(&QORElement::addElementNode,
                                                             &QORElement::removeElementNode);
}

TEST(QORConstantNode, ShowsItsName) {
    QORConstantNode node;
    node.setName("42");
    node.setOriginalText("0x2A");
    EXPECT_STREQ(node.getDisplayName().chars, "42");
}

TEST(QORConstantNode, EqualsOnlyItsOwnKind) {
    QORConstantNode const constant;
    QORElementNode const element;
    EXPECT_FALSE(constant.equals(element));
    EXPECT_TRUE(constant.equals(QORConstantNode()));
}
