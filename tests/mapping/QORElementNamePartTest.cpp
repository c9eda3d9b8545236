#include "Expectations.h"

#include <qor/QORAttribute.h>
#include <qor/QORClass.h>
#include <qor/QORElementNamePart.h>
#include <qor/QORElementNode.h>

TEST(QORElementNamePart, MovesToTheEndWhenRenamed) {
    expectNewNameMovesToEnd(&QORElementNode::addElementNamePart, &QORElementNode::getElementNamePart);
}

TEST(QORElementNamePart, DeletesFreeElementsToWhichItRefers) {
    Graph graph;
    auto* const owner = graph.make<QORClass>();
    auto* const kept = graph.make<QORAttribute>();
    owner->addFeature(kept);
    QORElementNamePart part;
    part.addReferencedElement(kept);
    part.addReferencedElement(graph.mortal<QORClass>("free"));
    EXPECT_TRUE(part.recursiveDelete());
    EXPECT_EQ(graph.deaths, Labels{"free"});
    EXPECT_EQ(kept->getReferencedByElementNamePartCount(), 0);
    EXPECT_FALSE(part.isReferenced());
}

TEST(QORElementNamePart, IsolatesItsNodeFirst) {
    Graph graph;
    QORElementNamePart part;
    part.addReferencedElement(graph.mortal<QORClass>("element"));
    part.addElementNode(graph.mortal<QORElementNode>("node"));
    EXPECT_EQ(part.isolate(true), &part);
    EXPECT_EQ(graph.deaths, (Labels{"node", "element"}));
}

TEST(QORElementNamePart, ReencodesItsNameOnlyAndIsALeaf) {
    Graph graph;
    auto* const part = graph.make<QORElementNamePart>(inUtf8);
    auto* const element = graph.make<QORClass>(inUtf8);
    part->addReferencedElement(element);
    EXPECT_EQ(walkOf(*part), Objects{part});
    Recoding recode;
    recode(*part);
    EXPECT_STREQ(part->getName().chars, inLatin1);
    EXPECT_STREQ(element->getName().chars, inUtf8);
    EXPECT_EQ(recode.converted, 1);
}
