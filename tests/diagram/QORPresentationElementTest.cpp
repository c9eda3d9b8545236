#include "Graph.h"

#include <qor/QORClass.h>
#include <qor/QORClassDiagram.h>
#include <qor/QORDesignPackage.h>
#include <qor/QORPresentationElement.h>
#include <qor/QORProjection.h>
#include <qor/QORRelationshipProjection.h>
#include <qor/QORTypeValue.h>

TEST(QORPresentationElement, ShowsTheNamesOfDiagramAndSubject) {
    Graph graph;
    auto* const projection = graph.make<QORProjection>("its own name");
    auto* const diagram = graph.make<QORClassDiagram>("D");
    auto* const subject = graph.make<QORClass>("S");
    EXPECT_STREQ(projection->getDisplayName().chars, "_");
    projection->addSubjectModelObject(subject);
    EXPECT_STREQ(projection->getDisplayName().chars, "_S");
    projection->addDiagram(diagram);
    EXPECT_STREQ(projection->getDisplayName().chars, "D_S");
    projection->removeSubjectModelObject(subject);
    EXPECT_STREQ(projection->getDisplayName().chars, "D_");
    diagram->setName("");
    EXPECT_STREQ(projection->getDisplayName().chars, "_");
}

TEST(QORPresentationElement, ShowsTheComputedNameOfAnUnnamedSubject) {
    Graph graph;
    auto* const projection = graph.make<QORRelationshipProjection>();
    auto* const subject = graph.make<QORTypeValue>();
    subject->setValue("value");
    projection->addSubjectModelObject(subject);
    EXPECT_STREQ(projection->getDisplayName().chars, "_value");
    subject->setName("name");
    EXPECT_STREQ(projection->getDisplayName().chars, "_name");
    projection->removeSubjectModelObject(subject);
    projection->addSubjectModelObject(graph.make<QORClass>());
    EXPECT_STREQ(projection->getDisplayName().chars, "_");
}

TEST(QORPresentationElement, TakesAFreeSubjectWithItAndLeavesAnOwnedOne) {
    Graph graph;
    auto* const projection = graph.mortal<QORProjection>("projection");
    projection->addSubjectModelObject(graph.mortal<QORClass>("subject"));
    delete projection;
    EXPECT_EQ(graph.deaths, (Labels{"projection", "subject"}));
    auto* const package = graph.make<QORDesignPackage>();
    auto* const kept = graph.make<QORClass>();
    package->addModelElement(kept);
    auto* const other = new QORProjection;
    other->addSubjectModelObject(kept);
    delete other;
    EXPECT_EQ(kept->getPresentationPresentationElementCount(), 0);
}

TEST(QORPresentationElement, LosesItsSubjectWhenThatIsDeleted) {
    Graph graph;
    auto* const diagram = graph.make<QORClassDiagram>();
    auto* const kept = graph.make<QORProjection>();
    diagram->addPresentationElement(kept);
    auto* const subject = new QORClass;
    kept->addSubjectModelObject(subject);
    subject->addPresentationPresentationElement(graph.mortal<QORProjection>("free"));
    delete subject;
    EXPECT_EQ(kept->getSubjectModelObject(), nullptr);
    EXPECT_EQ(kept->getDiagram(), diagram);
    EXPECT_EQ(graph.deaths, Labels{"free"});
}

TEST(QORPresentationElement, IsolatesItsDiagramFirst) {
    Graph graph;
    Plain<QORPresentationElement> element;
    element.addSubjectModelObject(graph.mortal<QORClass>("subject"));
    element.addDiagram(graph.mortal<QORClassDiagram>("diagram"));
    EXPECT_EQ(element.isolate(true), &element);
    EXPECT_EQ(graph.deaths, (Labels{"diagram", "subject"}));
}

TEST(QORPresentationElement, ReencodesItsNameAndIsALeaf) {
    Graph graph;
    auto* const element = graph.make<Plain<QORPresentationElement>>(inUtf8);
    auto* const subject = graph.make<QORClass>(inUtf8);
    element->addSubjectModelObject(subject);
    EXPECT_EQ(walkOf(*element), Objects{element});
    Recoding recode;
    recode(*element);
    EXPECT_STREQ(element->getName().chars, inLatin1);
    EXPECT_STREQ(subject->getName().chars, inUtf8);
}
