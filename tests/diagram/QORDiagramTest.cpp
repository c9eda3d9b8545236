#include "Graph.h"

#include <qor/QORClass.h>
#include <qor/QORClassDiagram.h>
#include <qor/QORDesignPackage.h>
#include <qor/QORNote.h>
#include <qor/QORProjection.h>

TEST(QORDiagram, ShowsItsName) {
    Graph graph;
    auto* const diagram = graph.make<QORClassDiagram>("diagram");
    diagram->addPresentationElement(graph.make<QORProjection>("projection"));
    EXPECT_STREQ(diagram->getDisplayName().chars, "diagram");
}

TEST(QORDiagram, DeletesProjectionsThenAFreePackageThenFreeElements) {
    Graph graph;
    auto* const package = graph.make<QORDesignPackage>();
    auto* const kept = graph.make<QORClass>();
    package->addModelElement(kept);
    QORClassDiagram diagram;
    diagram.addModelElement(kept);
    diagram.addModelElement(graph.mortal<QORClass>("element"));
    diagram.addDefaultOfDesignPackage(graph.mortal<QORDesignPackage>("default of"));
    diagram.addPresentationElement(graph.mortal<QORProjection>("projection"));
    diagram.addNote(graph.mortal<QORNote>("note"));
    EXPECT_TRUE(diagram.recursiveDelete());
    EXPECT_EQ(graph.deaths, (Labels{"note", "projection", "default of", "element"}));
    EXPECT_EQ(kept->getDiagramCount(), 0);
    EXPECT_EQ(kept->getDesignPackage(), package);
}

TEST(QORDiagram, DeletesProjectionsInTreeOrder) {
    Graph graph;
    QORClassDiagram diagram;
    auto* const one = graph.mortal<QORProjection>("one");
    auto* const two = graph.mortal<QORProjection>("two");
    diagram.addPresentationElement(one);
    diagram.addPresentationElement(two);
    Labels const expected = byAddress(one, two).first == one ? Labels{"one", "two"} : Labels{"two", "one"};
    EXPECT_EQ(walkOf(diagram).at(1), byAddress(one, two).first);
    EXPECT_TRUE(diagram.recursiveDelete());
    EXPECT_EQ(graph.deaths, expected);
}

TEST(QORDiagram, LeavesTheElementsOfThePackageThatItIsTakenFrom) {
    Graph graph;
    auto* const package = graph.make<QORDesignPackage>();
    auto* const element = graph.make<QORClass>();
    auto* const subject = graph.make<QORClass>();
    package->addModelElement(element);
    subject->setName("subject");
    package->addModelElement(subject);
    auto* const diagram = graph.mortal<QORClassDiagram>("diagram");
    auto* const projection = graph.mortal<QORProjection>("projection");
    diagram->addPresentationElement(projection);
    projection->addSubjectModelObject(subject);
    diagram->addModelElement(element);
    diagram->addModelElement(subject);
    package->addDiagram(diagram);
    package->addDefaultDiagram(diagram);
    EXPECT_TRUE(package->removeDiagram(diagram));
    EXPECT_TRUE(diagram->recursiveDelete());
    EXPECT_EQ(graph.deaths, Labels{"projection"});
    EXPECT_EQ(package->getDefaultDiagram(), nullptr);
    EXPECT_EQ(package->getModelElementCount(), 2);
    EXPECT_EQ(element->getDiagramCount(), 0);
    EXPECT_EQ(subject->getPresentationPresentationElementCount(), 0);
    delete diagram;
}

TEST(QORDiagram, IsolatesInItsOwnOrder) {
    Graph graph;
    QORClassDiagram diagram;
    diagram.addNote(graph.mortal<QORNote>("note"));
    diagram.addPresentationElement(graph.mortal<QORProjection>("projection"));
    diagram.addModelElement(graph.mortal<QORClass>("element"));
    diagram.addDefaultOfDesignPackage(graph.mortal<QORDesignPackage>("default of"));
    diagram.addDesignPackage(graph.mortal<QORDesignPackage>("package"));
    EXPECT_EQ(diagram.isolate(true), &diagram);
    EXPECT_EQ(graph.deaths, (Labels{"package", "default of", "element", "projection", "note"}));
}

TEST(QORDiagram, ReencodesAndWalksItsProjectionsOnly) {
    Graph graph;
    auto* const diagram = graph.make<QORClassDiagram>(inUtf8);
    auto* const projection = graph.mortal<QORProjection>("projection");
    diagram->addPresentationElement(projection);
    diagram->addModelElement(graph.mortal<QORClass>("element"));
    EXPECT_EQ(walkOf(*diagram), (Objects{diagram, projection}));
    Recoding recode;
    recode(*diagram);
    EXPECT_EQ(graph.recodings, Labels{"projection"});
    EXPECT_STREQ(diagram->getName().chars, inLatin1);
}
