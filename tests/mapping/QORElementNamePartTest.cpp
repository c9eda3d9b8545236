#include "GraphObservers.h"

#include <qor/QORAttribute.h>
#include <qor/QORClass.h>
#include <qor/QORElementNamePart.h>
#include <qor/QORElementNode.h>

using namespace graph;

TEST(QORElementNamePart, IsAnObject) {
    expectConcrete<QORElementNamePart>(QORElementType::ELEMENT_NAME_PART, 110, "ElementNamePart",
                                       QORObject::getStaticMetaClass());
    EXPECT_FALSE(QORElementNamePart().isInstanceOf(QORElementType::ELEMENT));
}

TEST(QORElementNamePart, StartsForAnyElementAtPositionZero) {
    QORElementNamePart part;
    EXPECT_EQ(part.getSourceElementType(), QORElementType::ELEMENT);
    EXPECT_EQ(part.getPosition(), 0);
}

TEST(QORElementNamePart, IsReferencedThroughEachOfItsLinks) {
    using P = QORElementNamePart;
    expectReferencedThrough<P, QORElementNode>(&P::addElementNode, &P::removeElementNode);
    expectReferencedThrough<P, QORClass>(&P::addReferencedElement, &P::removeReferencedElement);
}

TEST(QORElementNamePart, BelongsToItsElementNode) {
    Held<QORElementNode> node;
    Held<QORElementNamePart> part;
    EXPECT_EQ(part->getParentCount(), 0);
    EXPECT_EQ(part->removeAggregationAssembly(), nullptr);
    node->addElementNamePart(part);
    EXPECT_EQ(part->getParent(), node.get());
    EXPECT_EQ(part->getParentCount(), 1);
    expectDeletionRefused(*part);
    EXPECT_EQ(part->removeAggregationAssembly(), node.get());
    EXPECT_EQ(node->getElementNamePartCount(), 0);
}

TEST(QORElementNamePart, MovesToTheEndWhenRenamed) {
    QORElementNode node;
    auto* const first = named<QORElementNamePart>("first");
    auto* const second = named<QORElementNamePart>("second");
    node.addElementNamePart(first);
    node.addElementNamePart(second);
    first->setName("second");
    EXPECT_STREQ(first->getName().chars, "second");
    EXPECT_EQ(first->getElementNode(), &node);
    ASSERT_EQ(node.getElementNamePartCount(), 2);
    EXPECT_EQ(node.getElementNamePart(0), second);
    EXPECT_EQ(node.getElementNamePart(1), first);
}

TEST(QORElementNamePart, DeletesFreeElementsToWhichItRefers) {
    Journal journal;
    Held<QORClass> owner;
    Held<QORAttribute> kept;
    owner->addFeature(kept);
    QORElementNamePart part;
    part.addReferencedElement(kept);
    part.addReferencedElement(watched<QORClass>(journal, "free"));
    EXPECT_TRUE(part.recursiveDelete());
    EXPECT_EQ(journal.deaths, Labels{"free"});
    EXPECT_EQ(kept->getReferencedByElementNamePartCount(), 0);
    EXPECT_FALSE(part.isReferenced());
}

TEST(QORElementNamePart, IsolatesItsNodeFirst) {
    Journal journal;
    QORElementNamePart part;
    part.addReferencedElement(watched<QORClass>(journal, "element"));
    part.addElementNode(watched<QORElementNode>(journal, "node"));
    EXPECT_EQ(part.isolate(true), &part);
    EXPECT_EQ(journal.deaths, (Labels{"node", "element"}));
}

TEST(QORElementNamePart, ReencodesItsNameOnlyAndIsALeaf) {
    Held<QORElementNamePart> part(rawText);
    Held<QORClass> element(rawText);
    part->addReferencedElement(element);
    EXPECT_EQ(walkOf(*part), Objects{part});
    Recoding recode;
    recode(*part);
    EXPECT_STREQ(part->getName().chars, recodedText);
    EXPECT_STREQ(element->getName().chars, rawText);
    EXPECT_EQ(recode.first, 1);
}

TEST(QORElementNamePart, ComparesAndCopiesItsAttributes) {
    expectCompared<QORElementNamePart>([](auto& part) { part.setPosition(1); });
    expectCompared<QORElementNamePart>([](auto& part) { part.setSourceElementType(QORElementType::CLASS); });
    expectCompared<QORElementNamePart>([](auto& part) { part.setName("x"); });
    QORElementNamePart source;
    source.setName("n");
    source.setPosition(9);
    source.setSourceElementType(QORElementType::ATTRIBUTE);
    EXPECT_TRUE(QORElementNamePart(source).equals(source));
    QORElementNamePart assigned;
    assigned.setFrom(source);
    EXPECT_TRUE(assigned.equals(source));
}
