#include "GraphObservers.h"

#include <qor/QORAttribute.h>
#include <qor/QORBaseType.h>
#include <qor/QORClass.h>
#include <qor/QORElementNamePart.h>
#include <qor/QORElementNamePartByPosition.h>
#include <qor/QORElementNode.h>
#include <qor/QORMetaAttribute.h>
#include <qor/QORStatementNode.h>

using namespace graph;

TEST(QORElementNode, IsAnExpressionNode) {
    expectConcrete<QORElementNode>(QORElementType::ELEMENT_NODE, 111, "ElementNode",
                                   QORExpressionNode::getStaticMetaClass());
}

TEST(QORElementNode, StartsAsAnInputOfAnyElement) {
    QORElementNode node;
    EXPECT_EQ(node.getKind(), QORArgumentType::IN_MODE);
    EXPECT_EQ(static_cast<int>(node.getKind()), 1);
    EXPECT_EQ(node.getDestinationElementType(), QORElementType::ELEMENT);
    EXPECT_EQ(static_cast<int>(node.getDestinationElementType()), 0);
    QORMetaClass const* const metaClass = QORElementNode::getStaticMetaClass();
    EXPECT_STREQ(metaClass->getMetaAttributeByDisplayName("kind")->getDefaultValue().chars, "IN_MODE");
    EXPECT_STREQ(metaClass->getMetaAttributeByDisplayName("destinationElementType")->getDefaultValue().chars,
                 "ELEMENT");
}

TEST(QORElementNode, IsReferencedThroughEachOfItsLinks) {
    using N = QORElementNode;
    expectReferencedThrough<N, QORClass>(&N::addElement, &N::removeElement);
    expectReferencedThrough<N, QORElementNamePart>(&N::addElementNamePart, &N::removeElementNamePart);
    expectReferencedThrough<N, QORStatementNode>(&QORExpressionNode::addStatementNode,
                                                 &QORExpressionNode::removeStatementNode);
}

TEST(QORElementNode, CanStandForAnotherNode) {
    Held<QORElementNode> node;
    Held<QORElementNode> other;
    EXPECT_TRUE(node->addElement(other));
    EXPECT_EQ(other->QORElement::getElementNode(0), node.get());
    EXPECT_EQ(node->getElement(), other.get());
    EXPECT_FALSE(other->addElement(nullptr));
}

TEST(QORElementNode, HoldsNamePartsInOrderOfInsertion) {
    QORElementNode node;
    for (char const* name : {"schema", "table", "attribute"})
        EXPECT_TRUE(node.addElementNamePart(named<QORElementNamePart>(name)));
    EXPECT_STREQ(node.getElementNamePart(0)->getName().chars, "schema");
    EXPECT_STREQ(node.getElementNamePart(1)->getName().chars, "table");
    EXPECT_STREQ(node.getElementNamePart(2)->getName().chars, "attribute");
    EXPECT_TRUE(node.addElementNamePart(named<QORElementNamePart>("table")));
    EXPECT_FALSE(node.addElementNamePart(node.getElementNamePart(1)));
    EXPECT_EQ(node.getElementNamePartCount(), 4);
}

TEST(QORElementNode, FillsAViewOfNamePartsByPosition) {
    QORElementNode node;
    short position = 3;
    for (char const* name : {"a", "b", "c"}) {
        auto* const part = named<QORElementNamePart>(name);
        part->setPosition(position--);
        node.addElementNamePart(part);
    }
    QORElementNamePartByPosition view;
    node.getElementNamePartByPosition(view);
    EXPECT_EQ(namesIn(view), (Labels{"c", "b", "a"}));
    QORElementNode const empty;
    empty.getElementNamePartByPosition(view);
    EXPECT_EQ(view.size, 0);
}

TEST(QORElementNode, DeletesWhatANodeHasThenItsPartsThenAFreeElement) {
    Journal journal;
    QORElementNode node;
    node.addElement(watched<QORClass>(journal, "element"));
    node.addElementNamePart(watched<QORElementNamePart>(journal, "first"));
    node.addElementNamePart(watched<QORElementNamePart>(journal, "second"));
    node.addType(watched<QORBaseType>(journal, "type"));
    EXPECT_TRUE(node.recursiveDelete());
    EXPECT_EQ(journal.deaths, (Labels{"type", "first", "second", "element"}));
}

TEST(QORElementNode, LeavesAnElementThatHasAnOwner) {
    Held<QORClass> owner;
    Held<QORAttribute> attribute;
    owner->addFeature(attribute);
    auto* const node = new QORElementNode;
    node->addElement(attribute);
    delete node;
    EXPECT_EQ(attribute->getElementNodeCount(), 0);
    EXPECT_EQ(attribute->getClassifier(), owner.get());
}

TEST(QORElementNode, LosesItsElementWhenThatIsDeleted) {
    Held<QORStatementNode> owner;
    Held<QORElementNode> node;
    owner->addExpressionNode(node);
    auto* const element = new QORClass;
    node->addElement(element);
    delete element;
    EXPECT_EQ(node->getElement(), nullptr);
    EXPECT_EQ(node->getStatementNode(), owner.get());
}

TEST(QORElementNode, IsolatesItsElementThenItsPartsThenTheRest) {
    Journal journal;
    QORElementNode node;
    node.addType(watched<QORBaseType>(journal, "type"));
    node.addElementNamePart(watched<QORElementNamePart>(journal, "part"));
    node.addElement(watched<QORClass>(journal, "element"));
    EXPECT_EQ(node.isolate(true), &node);
    EXPECT_EQ(journal.deaths, (Labels{"element", "part", "type"}));
}

TEST(QORElementNode, ReencodesAndWalksItsPartsInOrder) {
    Journal journal;
    Held<QORElementNode> node;
    Held<Watched<QORClass>> element(journal, "element");
    Held<Watched<QORElementNamePart>> partB(journal, "b");
    Held<Watched<QORElementNamePart>> partA(journal, "a");
    node->addElement(element);
    node->addElementNamePart(partB);
    node->addElementNamePart(partA);
    EXPECT_EQ(walkOf(*node), (Objects{node, partB, partA}));
    Recoding recode;
    recode(*node);
    EXPECT_EQ(journal.recodings, (Labels{"b", "a"}));
}

TEST(QORElementNode, ReencodesEachPartOnceThoughItMovesToTheEnd) {
    Journal journal;
    QORElementNode node;
    for (char const* label : {"1", "2", "3"}) {
        auto* const part = watched<QORElementNamePart>(journal, label);
        part->QORElementNamePart::setName(rawText);
        node.addElementNamePart(part);
    }
    Recoding recode;
    recode(node);
    EXPECT_EQ(journal.recodings, (Labels{"1", "2", "3"}));
    EXPECT_EQ(recode.first, 3);
    for (int i = 0; i < 3; ++i)
        EXPECT_STREQ(node.getElementNamePart(i)->getName().chars, recodedText);
}

TEST(QORElementNode, ComparesAndCopiesItsAttributes) {
    expectCompared<QORElementNode>([](auto& node) { node.setKind(QORArgumentType::OUT_MODE); });
    expectCompared<QORElementNode>([](auto& node) { node.setDestinationElementType(QORElementType::CLASS); });
    expectCompared<QORElementNode>([](auto& node) { node.setOriginalText("x"); });
    expectNotCompared<QORElementNode>([](auto& node) { node.addElementNamePart(new QORElementNamePart); });
    QORElementNode source;
    source.setKind(QORArgumentType::RETURN_MODE);
    source.setDestinationElementType(QORElementType::ATTRIBUTE);
    source.setPosition(5);
    source.addElementNamePart(new QORElementNamePart);
    QORElementNode assigned;
    assigned.setFrom(source);
    EXPECT_TRUE(assigned.equals(source));
    QORElementNode const copy(source);
    EXPECT_TRUE(copy.equals(source));
    EXPECT_EQ(copy.getElementNamePartCount(), 0);
}
