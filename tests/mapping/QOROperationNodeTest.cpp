#include "GraphObservers.h"

#include <qor/QORBaseType.h>
#include <qor/QORClass.h>
#include <qor/QORConstantNode.h>
#include <qor/QORExpressionNodeByPosition.h>
#include <qor/QORNote.h>
#include <qor/QOROperation.h>
#include <qor/QOROperationNode.h>

using namespace graph;

TEST(QOROperationNode, IsAnExpressionNodeButNoParserNode) {
    expectConcrete<QOROperationNode>(QORElementType::OPERATION_NODE, 114, "OperationNode",
                                     QORExpressionNode::getStaticMetaClass());
    EXPECT_FALSE(QOROperationNode().isInstanceOf(QORElementType::PARSER_NODE));
}

TEST(QOROperationNode, IsReferencedThroughEachOfItsLinks) {
    using N = QOROperationNode;
    expectReferencedThrough<N, QOROperation>(&N::addOperation, &N::removeOperation);
    expectReferencedThrough<N, QORConstantNode>(&N::addExpressionNode, &N::removeExpressionNode);
}

TEST(QOROperationNode, FillsAViewOfItsArgumentsByPosition) {
    QOROperationNode node;
    short position = 5;
    for (char const* name : {"last", "middle", "first"}) {
        auto* const argument = named<QORConstantNode>(name);
        argument->setPosition(position--);
        node.addExpressionNode(argument);
    }
    QORExpressionNodeByPosition view;
    QORConstantNode stray;
    view.add(&stray, false, nullptr);
    node.getExpressionNodeByPosition(view);
    EXPECT_EQ(namesIn(view), (Labels{"first", "middle", "last"}));
}

TEST(QOROperationNode, DeletesWhatANodeHasThenArgumentsThenAFreeOperation) {
    Journal journal;
    QOROperationNode node;
    node.addOperation(watched<QOROperation>(journal, "operation"));
    node.addExpressionNode(watched<QORConstantNode>(journal, "argument"));
    node.addType(watched<QORBaseType>(journal, "type"));
    EXPECT_TRUE(node.recursiveDelete());
    EXPECT_EQ(journal.deaths, (Labels{"type", "argument", "operation"}));
}

TEST(QOROperationNode, LeavesAnOperationThatHasAClass) {
    Held<QORClass> owner;
    Held<QOROperation> operation;
    owner->addOperation(operation);
    auto* const node = new QOROperationNode;
    node->addOperation(operation);
    delete node;
    EXPECT_EQ(operation->getOperationNodeCount(), 0);
    EXPECT_EQ(operation->getAssociatedClass(), owner.get());
}

TEST(QOROperationNode, IsolatesItsOperationThenArgumentsThenTheRest) {
    Journal journal;
    QOROperationNode node;
    node.addType(watched<QORBaseType>(journal, "type"));
    node.addExpressionNode(watched<QORConstantNode>(journal, "argument"));
    node.addOperation(watched<QOROperation>(journal, "operation"));
    node.isolate(true);
    EXPECT_EQ(journal.deaths, (Labels{"operation", "argument", "type"}));
}

TEST(QOROperationNode, ReencodesAndWalksItsArguments) {
    Journal journal;
    Held<QOROperationNode> node;
    Held<Watched<QOROperation>> operation(journal, "operation");
    Held<Watched<QORConstantNode>> argument(journal, "argument");
    Held<QORNote> note;
    node->addOperation(operation);
    node->addExpressionNode(argument);
    node->addNote(note);
    EXPECT_EQ(walkOf(*node), (Objects{node, note, argument}));
    Recoding recode;
    recode(*node);
    EXPECT_EQ(journal.recodings, Labels{"argument"});
}

TEST(QOROperationNode, CanBeTheArgumentOfAnother) {
    Held<QOROperationNode> outer;
    Held<QOROperationNode> inner;
    EXPECT_TRUE(outer->addExpressionNode(inner));
    EXPECT_EQ(inner->getOperationNode(), outer.get());
    EXPECT_EQ(inner->getParent(), outer.get());
    EXPECT_EQ(outer->getParent(), nullptr);
}
