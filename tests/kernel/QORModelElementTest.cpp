#include <qor/QORModelElement.h>

#include <qor/QORAssociation.h>
#include <qor/QORClass.h>
#include <qor/QORClassDiagram.h>
#include <qor/QORDependency.h>
#include <qor/QORDesignPackage.h>
#include <qor/QORNote.h>
#include <qor/QORReport.h>
#include <qor/QORSQLViewEntity.h>
#include <qor/QORSynonym.h>

#include "Expectations.h"

#include <gtest/gtest.h>

#include <type_traits>

TEST(QORModelElement, OnlyDerivedClassesCanBeMade) {
    EXPECT_FALSE(std::is_default_constructible<QORModelElement>::value);
}

TEST(QORModelElement, ADiagramRefersToIt) {
    QORClassDiagram diagram;
    Plain<QORModelElement> element;
    element.addDiagram(&diagram);
    EXPECT_TRUE(element.isReferenced());
    EXPECT_FALSE(element.QORModelObject::isReferenced());
    EXPECT_EQ(nullptr, element.getParent());
    EXPECT_TRUE(element.removeDiagram(&diagram));
    EXPECT_FALSE(element.isReferenced());
    EXPECT_FALSE(diagram.isReferenced());
}

TEST(QORModelElement, RecursiveDeleteIsRefusedInsideAPackage) {
    QORDesignPackage package;
    auto* const element = new QORClass;
    package.addModelElement(element);
    element->addNote(new QORNote);
    element->addSynonym(new QORSynonym);
    EXPECT_FALSE(element->recursiveDelete());
    EXPECT_FALSE(element->QORModelElement::recursiveDelete());
    EXPECT_EQ(1, element->getNoteCount());
    EXPECT_EQ(1, element->getSynonymCount());
    EXPECT_EQ(&package, element->getDesignPackage());
    delete element;
    EXPECT_EQ(0, package.getModelElementCount());
}

TEST(QORModelElement, RecursiveDeleteEndsUnreferencedDiagramsLast) {
    Graph graph;
    Plain<QORModelElement> element;
    element.addDiagram(graph.mortal<QORClassDiagram>("diagram"));
    element.addSynonym(graph.mortal<QORSynonym>("synonym"));
    EXPECT_TRUE(element.recursiveDelete());
    EXPECT_EQ((Labels{"synonym", "diagram"}), graph.deaths);
}

TEST(QORModelElement, IsolateWithDeletionTakesPackageAndDiagramsFirst) {
    Graph graph;
    Plain<QORModelElement> element;
    element.addSynonym(graph.mortal<QORSynonym>("synonym"));
    element.addDiagram(graph.mortal<QORClassDiagram>("diagram"));
    element.addDesignPackage(graph.mortal<QORDesignPackage>("package"));
    EXPECT_EQ(&element, element.isolate(true));
    EXPECT_EQ((Labels{"package", "diagram", "synonym"}), graph.deaths);
}

TEST(QORModelElement, ATakenNameIsRefusedAndItStaysUnderItsOldOne) {
    QORDesignPackage package;
    auto* const a = named<QORClass>("a");
    auto* const b = named<QORClass>("b");
    package.addModelElement(a);
    package.addModelElement(b);
    expectNameRefused(*b, "a", "DesignPackage", "ModelElement");
    EXPECT_EQ(a, package.getModelElement(0));
    EXPECT_EQ(b, package.getModelElement(1));
    b->setName("c");
    a->setName("d");
    EXPECT_EQ(b, package.getModelElement(0));
    EXPECT_EQ(a, package.getModelElement(1));
}

TEST(QORModelElement, RelationshipsOfOneClassMayShareAName) {
    QORDesignPackage package;
    auto* const a = named<QORAssociation>("a");
    auto* const b = named<QORAssociation>("b");
    package.addModelElement(a);
    package.addModelElement(b);
    EXPECT_NO_THROW(a->setName("b"));
    EXPECT_EQ(2, package.getModelElementCount());
    auto* const c = named<QORDependency>("c");
    package.addModelElement(c);
    EXPECT_NO_THROW(c->setName("b"));
}

TEST(QORModelElement, ViewsShareTheNamesOfClassesAndReportsDoNot) {
    QORDesignPackage package;
    package.addModelElement(named<QORClass>("a"));
    auto* const view = named<QORSQLViewEntity>("v");
    auto* const report = named<QORReport>("r");
    package.addModelElement(view);
    package.addModelElement(report);
    expectNameRefused(*view, "a", "DesignPackage", "ModelElement");
    EXPECT_NO_THROW(report->setName("a"));
    EXPECT_STREQ("a", report->getName().chars);
    EXPECT_EQ(3, package.getModelElementCount());
}

TEST(QORModelElement, TranscodeIsThatOfTheModelObject) {
    Recoding recode("ISO-8859-1", "UTF-8");
    Plain<QORModelElement> element;
    element.setName("\xE9");
    element.setComment("\xE9");
    element.addSynonym(named<QORSynonym>("\xE9"));
    QORClassDiagram diagram;
    diagram.setName("\xE9");
    element.addDiagram(&diagram);
    recode(element);
    EXPECT_EQ(3, recode.converted);
    EXPECT_STREQ("\xE9", diagram.getName().chars);
    element.removeDiagram(&diagram);
}
