#include "Graph.h"

#include <qor/QORAttribute.h>
#include <qor/QORBaseType.h>
#include <qor/QORClass.h>
#include <qor/QORElementNamePart.h>
#include <qor/QORElementNode.h>
#include <qor/QORStatementNode.h>

TEST(QORElementNode, CanStandForAnotherNode) {
    Graph graph;
    auto* const node = graph.make<QORElementNode>();
    auto* const other = graph.make<QORElementNode>();
    EXPECT_TRUE(node->addElement(other));
    EXPECT_EQ(other->QORElement::getElementNode(0), node);
    EXPECT_EQ(node->getElement(), other);
    EXPECT_FALSE(other->addElement(nullptr));
}

TEST(QORElementNode, DeletesWhatANodeHasThenItsPartsThenAFreeElement) {
    Graph graph;
    QORElementNode node;
    node.addElement(graph.mortal<QORClass>("element"));
    node.addElementNamePart(graph.mortal<QORElementNamePart>("first"));
    node.addElementNamePart(graph.mortal<QORElementNamePart>("second"));
    node.addType(graph.mortal<QORBaseType>("type"));
    EXPECT_TRUE(node.recursiveDelete());
    EXPECT_EQ(graph.deaths, (Labels{"type", "first", "second", "element"}));
}

TEST(QORElementNode, LeavesAnElementThatHasAnOwner) {
    Graph graph;
    auto* const owner = graph.make<QORClass>();
    auto* const attribute = graph.make<QORAttribute>();
    owner->addFeature(attribute);
    auto* const node = new QORElementNode;
    node->addElement(attribute);
    delete node;
    EXPECT_EQ(attribute->getElementNodeCount(), 0);
    EXPECT_EQ(attribute->getClassifier(), owner);
}

TEST(QORElementNode, LosesItsElementWhenThatIsDeleted) {
    Graph graph;
    auto* const owner = graph.make<QORStatementNode>();
    auto* const node = graph.make<QORElementNode>();
    owner->addExpressionNode(node);
    auto* const element = new QORClass;
    node->addElement(element);
    delete element;
    EXPECT_EQ(node->getElement(), nullptr);
    EXPECT_EQ(node->getStatementNode(), owner);
}

TEST(QORElementNode, IsolatesItsElementThenItsPartsThenTheRest) {
    Graph graph;
    QORElementNode node;
    node.addType(graph.mortal<QORBaseType>("type"));
    node.addElementNamePart(graph.mortal<QORElementNamePart>("part"));
    node.addElement(graph.mortal<QORClass>("element"));
    EXPECT_EQ(node.isolate(true), &node);
    EXPECT_EQ(graph.deaths, (Labels{"element", "part", "type"}));
}

TEST(QORElementNode, ReencodesAndWalksItsPartsInOrder) {
    Graph graph;
    auto* const node = graph.make<QORElementNode>();
    auto* const partB = graph.mortal<QORElementNamePart>("b");
    auto* const partA = graph.mortal<QORElementNamePart>("a");
    node->addElement(graph.mortal<QORClass>("element"));
    node->addElementNamePart(partB);
    node->addElementNamePart(partA);
    EXPECT_EQ(walkOf(*node), (Objects{node, partB, partA}));
    Recoding recode;
    recode(*node);
    EXPECT_EQ(graph.recodings, (Labels{"b", "a"}));
}

TEST(QORElementNode, ReencodesEachPartOnceThoughItMovesToTheEnd) {
    Graph graph;
    QORElementNode node;
    for (char const* label : {"1", "2", "3"}) {
        auto* const part = graph.mortal<QORElementNamePart>(label);
        part->QORElementNamePart::setName(inUtf8);
        node.addElementNamePart(part);
    }
    Recoding recode;
    recode(node);
    EXPECT_EQ(graph.recodings, (Labels{"1", "2", "3"}));
    EXPECT_EQ(recode.converted, 3);
    for (int i = 0; i < 3; ++i)
        EXPECT_STREQ(node.getElementNamePart(i)->getName().chars, inLatin1);
}
