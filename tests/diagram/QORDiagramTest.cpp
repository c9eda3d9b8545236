#include "GraphObservers.h"

#include <qor/QORClass.h>
#include <qor/QORClassDiagram.h>
#include <qor/QORDesignPackage.h>
#include <qor/QORNote.h>
#include <qor/QORProjection.h>
#include <qor/QORRelationshipProjection.h>

using namespace graph;

TEST(QORDiagram, IsAnAbstractModelObject) {
    expectAbstract<QORDiagram>(QORElementType::DIAGRAM, 10, "Diagram", QORModelObject::getStaticMetaClass());
}

TEST(QORDiagram, IsReferencedThroughEachOfItsLinks) {
    using D = QORDiagram;
    using Near = Plain<QORDiagram>;
    expectReferencedThrough<Near, QORDesignPackage>(&D::addDesignPackage, &D::removeDesignPackage);
    expectReferencedThrough<Near, QORDesignPackage>(&D::addDefaultOfDesignPackage,
                                                    &D::removeDefaultOfDesignPackage);
    expectReferencedThrough<Near, QORClass>(&D::addModelElement, &D::removeModelElement);
    expectReferencedThrough<Near, QORProjection>(&D::addPresentationElement, &D::removePresentationElement);
}

TEST(QORDiagram, RefusesATakenNameInItsPackage) {
    QORDesignPackage package;
    auto* const diagram = named<QORClassDiagram>("diagram");
    package.addDiagram(diagram);
    package.addDiagram(named<QORClassDiagram>("taken"));
    expectNameRefused(*diagram, "taken", "DesignPackage", "Diagram");
    EXPECT_EQ(package.getDiagram(0), diagram);
    diagram->setName("zebra");
    EXPECT_EQ(package.getDiagram(1), diagram);
}

TEST(QORDiagram, ShowsItsName) {
    Held<QORClassDiagram> diagram("diagram");
    Held<QORProjection> projection("projection");
    diagram->addPresentationElement(projection);
    EXPECT_STREQ(diagram->getDisplayName().chars, "diagram");
}

TEST(QORDiagram, BelongsToItsPackageOnly) {
    Held<QORDesignPackage> package;
    Held<QORDesignPackage> other;
    Held<QORClassDiagram> diagram;
    Held<QORProjection> projection;
    diagram->addPresentationElement(projection);
    EXPECT_TRUE(diagram->addDefaultOfDesignPackage(other));
    EXPECT_EQ(other->getDefaultDiagram(), diagram.get());
    EXPECT_EQ(other->getDiagramCount(), 0);
    EXPECT_EQ(diagram->getParent(), nullptr);
    EXPECT_EQ(diagram->removeAggregationAssembly(), nullptr);
    package->addDiagram(diagram);
    EXPECT_EQ(diagram->getParent(), package.get());
    EXPECT_EQ(diagram->getParentCount(), 1);
    expectDeletionRefused(*diagram);
    EXPECT_EQ(projection->getDiagram(), diagram.get());
    EXPECT_EQ(diagram->removeAggregationAssembly(), package.get());
    EXPECT_EQ(other->getDefaultDiagram(), diagram.get());
}

TEST(QORDiagram, DeletesProjectionsThenAFreePackageThenFreeElements) {
    Journal journal;
    Held<QORDesignPackage> package;
    Held<QORClass> kept;
    package->addModelElement(kept);
    QORClassDiagram diagram;
    diagram.addModelElement(kept);
    diagram.addModelElement(watched<QORClass>(journal, "element"));
    diagram.addDefaultOfDesignPackage(watched<QORDesignPackage>(journal, "default of"));
    diagram.addPresentationElement(watched<QORProjection>(journal, "projection"));
    diagram.addNote(watched<QORNote>(journal, "note"));
    EXPECT_TRUE(diagram.recursiveDelete());
    EXPECT_EQ(journal.deaths, (Labels{"note", "projection", "default of", "element"}));
    EXPECT_EQ(kept->getDiagramCount(), 0);
    EXPECT_EQ(kept->getDesignPackage(), package.get());
}

TEST(QORDiagram, DeletesProjectionsInTreeOrder) {
    Journal journal;
    QORClassDiagram diagram;
    auto* const one = watched<QORProjection>(journal, "one");
    auto* const two = watched<QORProjection>(journal, "two");
    diagram.addPresentationElement(one);
    diagram.addPresentationElement(two);
    Labels const expected = byAddress(one, two).first == one ? Labels{"one", "two"} : Labels{"two", "one"};
    EXPECT_EQ(walkOf(diagram).at(1), byAddress(one, two).first);
    EXPECT_TRUE(diagram.recursiveDelete());
    EXPECT_EQ(journal.deaths, expected);
}

TEST(QORDiagram, LeavesTheElementsOfThePackageThatItIsTakenFrom) {
    Held<QORDesignPackage> package;
    Held<QORClass> element;
    Held<QORClass> subject;
    Journal journal;
    package->addModelElement(element);
    subject->setName("subject");
    package->addModelElement(subject);
    auto* const diagram = watched<QORClassDiagram>(journal, "diagram");
    auto* const projection = watched<QORProjection>(journal, "projection");
    diagram->addPresentationElement(projection);
    projection->addSubjectModelObject(subject);
    diagram->addModelElement(element);
    diagram->addModelElement(subject);
    package->addDiagram(diagram);
    package->addDefaultDiagram(diagram);
    EXPECT_TRUE(package->removeDiagram(diagram));
    EXPECT_TRUE(diagram->recursiveDelete());
    EXPECT_EQ(journal.deaths, Labels{"projection"});
    EXPECT_EQ(package->getDefaultDiagram(), nullptr);
    EXPECT_EQ(package->getModelElementCount(), 2);
    EXPECT_EQ(element->getDiagramCount(), 0);
    EXPECT_EQ(subject->getPresentationPresentationElementCount(), 0);
    delete diagram;
}

TEST(QORDiagram, IsolatesInItsOwnOrder) {
    Journal journal;
    QORClassDiagram diagram;
    diagram.addNote(watched<QORNote>(journal, "note"));
    diagram.addPresentationElement(watched<QORProjection>(journal, "projection"));
    diagram.addModelElement(watched<QORClass>(journal, "element"));
    diagram.addDefaultOfDesignPackage(watched<QORDesignPackage>(journal, "default of"));
    diagram.addDesignPackage(watched<QORDesignPackage>(journal, "package"));
    EXPECT_EQ(diagram.isolate(true), &diagram);
    EXPECT_EQ(journal.deaths, (Labels{"package", "default of", "element", "projection", "note"}));
}

TEST(QORDiagram, ReencodesAndWalksItsProjectionsOnly) {
    Journal journal;
    Held<QORClassDiagram> diagram(rawText);
    Held<Watched<QORProjection>> projection(journal, "projection");
    Held<Watched<QORClass>> element(journal, "element");
    diagram->addPresentationElement(projection);
    diagram->addModelElement(element);
    EXPECT_EQ(walkOf(*diagram), (Objects{diagram, projection}));
    Recoding recode;
    recode(*diagram);
    EXPECT_EQ(journal.recodings, Labels{"projection"});
    EXPECT_STREQ(diagram->getName().chars, recodedText);
}

TEST(QORDiagram, SharesNamesAmongItsProjections) {
    Held<QORClassDiagram> diagram;
    Held<QORProjection> one("same");
    Held<QORRelationshipProjection> two("other");
    EXPECT_TRUE(diagram->addPresentationElement(one));
    EXPECT_TRUE(diagram->addPresentationElement(two));
    two->setName("same");
    EXPECT_STREQ(two->getName().chars, "same");
    EXPECT_EQ(diagram->getPresentationElementCount(), 2);
}
