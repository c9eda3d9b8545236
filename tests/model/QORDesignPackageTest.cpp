#include "ModelTestSupport.h"

#include <qor/QORAssociation.h>
#include <qor/QORClass.h>
#include <qor/QORClassDiagram.h>
#include <qor/QORDesignPackage.h>
#include <qor/QORSQLViewEntity.h>
#include <qor/QORStoredProcedure.h>
#include <qor/QORTransformationActivity.h>
#include <qor/QORTransformationTask.h>

namespace {

void link(Graph& graph, QORDesignPackage& object, Owners owners) {
    linkLayers(graph, object);
    linkOwnerMade<QORDesignPackage>(graph, owners, "parent", object, &QORPackage::addParentPackage);
    ASSERT_TRUE(object.addImportedModelObject(hung<QORClass>(graph, "imported")));
    ASSERT_TRUE(object.addDefaultDiagram(hung<QORClassDiagram>(graph, "default")));
    ASSERT_TRUE(object.addTransformationActivity(hung<QORTransformationActivity>(graph, "activity")));
    ASSERT_TRUE(object.addTransformationTask(hung<QORTransformationTask>(graph, "task")));
    ASSERT_TRUE(object.addStoredProcedure(hung<QORStoredProcedure>(graph, "procedure")));
    ASSERT_TRUE(object.addModelElement(hung<QORClass>(graph, "element")));
    ASSERT_TRUE(object.addDiagram(hung<QORClassDiagram>(graph, "diagram")));
    ASSERT_TRUE(object.addChildPackage(hung<QORDesignPackage>(graph, "child")));
}

} // namespace

TEST(QORDesignPackage, IsAPackage) {
    graph::expectConcrete<QORDesignPackage>(QORElementType::DESIGN_PACKAGE, 9, "DesignPackage",
                                            QORPackage::getStaticMetaClass());
}

TEST(QORDesignPackage, UserDefinedIsFalseAtFirstAndCountsForEquality) {
    expectAttribute<QORDesignPackage>(&QORDesignPackage::getUserDefined, &QORDesignPackage::setUserDefined,
                                      false, true);
}

TEST(QORDesignPackage, CopiesHaveNoLinks) {
    expectCopiesUnlinked<QORDesignPackage>(link);
}

TEST(QORDesignPackage, EachEndCountsAsAReference) {
    expectEndCounts<QORDesignPackage, QORDiagram, QORClassDiagram>(&QORDesignPackage::addDefaultDiagram);
    expectEndCounts<QORDesignPackage, QORDiagram, QORClassDiagram>(&QORDesignPackage::addDiagram);
    expectEndCounts<QORDesignPackage, QORModelElement, QORClass>(&QORDesignPackage::addModelElement);
    expectEndCounts<QORDesignPackage, QORStoredProcedure>(&QORDesignPackage::addStoredProcedure);
    expectEndCounts<QORDesignPackage, QORModelObject, QORClass>(&QORDesignPackage::addImportedModelObject);
    expectEndCounts<QORDesignPackage, QORTransformationTask>(&QORDesignPackage::addTransformationTask);
    expectEndCounts<QORDesignPackage, QORTransformationActivity>(
        &QORDesignPackage::addTransformationActivity);
}

TEST(QORDesignPackage, IsTakenApartInOrder) {
    expectTakenApart<QORDesignPackage>(link,
                                       {"default", "diagram", "element", "procedure", "imported", "task",
                                        "activity", "parent", "child", "base", "synonym", "note"},
                                       {"note", "synonym", "base", "child", "diagram", "element", "procedure",
                                        "task", "activity", "default", "imported"});
    expectIsolationFreesFarEnds<QORDesignPackage>(link);
}

TEST(QORDesignPackage, ReachesWhatItOwnsAndNotWhatItImports) {
    expectChildrenReached<QORDesignPackage>(
        link, {"note", "synonym", "child", "diagram", "element", "procedure", "task", "activity"});
}

TEST(QORDesignPackage, ADefaultDiagramAmongItsOwnDiagramsDiesOnce) {
    Graph graph;
    auto* const package = graph.mortal<QORDesignPackage>("package");
    auto* const diagram = graph.mortal<QORClassDiagram>("diagram");
    ASSERT_TRUE(package->addDiagram(diagram) && package->addDefaultDiagram(diagram));
    delete package;
    EXPECT_EQ(graph.deaths, (Labels{"package", "diagram"}));
}

TEST(QORDesignPackage, AnImportedObjectThatLivesElsewhereSurvives) {
    Graph graph;
    auto* const home = graph.make<QORDesignPackage>();
    auto* const imported = graph.make<QORClass>();
    auto* const package = new QORDesignPackage;
    ASSERT_TRUE(home->addModelElement(imported) && package->addImportedModelObject(imported));
    EXPECT_FALSE(package->addImportedModelObject(imported));
    delete package;
    EXPECT_EQ(home->getModelElement(0), imported);
    EXPECT_EQ(imported->getImportedByDesignPackageCount(), 0);
}

TEST(QORDesignPackage, RemovingAllActivitiesDeletesThem) {
    Graph graph;
    auto* const package = graph.make<QORDesignPackage>();
    package->removeTransformationActivitys();
    ASSERT_TRUE(package->addTransformationActivity(hung<QORTransformationActivity>(graph, "b")));
    ASSERT_TRUE(package->addTransformationActivity(hung<QORTransformationActivity>(graph, "a")));
    package->removeTransformationActivitys();
    EXPECT_EQ(graph.deaths, (Labels{"a", "b"}));
    EXPECT_EQ(package->getTransformationActivityCount(), 0);
}

TEST(QORDesignPackage, RefusesASecondDefaultDiagram) {
    Graph graph;
    auto* const package = graph.make<QORDesignPackage>();
    auto* const diagram = graph.make<QORClassDiagram>();
    auto* const other = graph.make<QORClassDiagram>();
    ASSERT_TRUE(package->addDefaultDiagram(diagram));
    EXPECT_FALSE(package->addDefaultDiagram(other));
    EXPECT_FALSE(graph.make<QORDesignPackage>()->addDefaultDiagram(diagram));
    EXPECT_EQ(package->getDefaultDiagram(), diagram);
    EXPECT_FALSE(other->isReferenced());
}

TEST(QORDesignPackage, TablesAndViewsShareOneNameSpaceAndRelationshipsHaveNone) {
    Graph graph;
    auto* const package = graph.make<QORDesignPackage>();
    EXPECT_TRUE(package->addModelElement(graph.make<QORClass>("A")));
    EXPECT_FALSE(package->addModelElement(graph.make<QORSQLViewEntity>("A")));
    EXPECT_TRUE(package->addModelElement(graph.make<QORAssociation>("A")));
    EXPECT_TRUE(package->addModelElement(graph.make<QORAssociation>("A")));
    EXPECT_EQ(package->getModelElementCount(), 3);
}

TEST(QORDesignPackage, DiagramsProceduresTasksAndActivitiesHaveTheirOwnNames) {
    Graph graph;
    auto* const package = graph.make<QORDesignPackage>();
    EXPECT_TRUE(package->addDiagram(graph.make<QORClassDiagram>("A")));
    EXPECT_FALSE(package->addDiagram(graph.make<QORClassDiagram>("A")));
    EXPECT_TRUE(package->addStoredProcedure(graph.make<QORStoredProcedure>("A")));
    EXPECT_FALSE(package->addStoredProcedure(graph.make<QORStoredProcedure>("A")));
    EXPECT_TRUE(package->addTransformationTask(graph.make<QORTransformationTask>("A")));
    EXPECT_FALSE(package->addTransformationTask(graph.make<QORTransformationTask>("A")));
    EXPECT_TRUE(package->addTransformationActivity(graph.make<QORTransformationActivity>("A")));
    EXPECT_FALSE(package->addTransformationActivity(graph.make<QORTransformationActivity>("A")));
    EXPECT_TRUE(package->addModelElement(graph.make<QORClass>("A")));
}
