#include "Expectations.h"

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
    ASSERT_TRUE(object.addImportedModelObject(graph.mortal<QORClass>("imported")));
    ASSERT_TRUE(object.addDefaultDiagram(graph.mortal<QORClassDiagram>("default")));
    ASSERT_TRUE(object.addTransformationActivity(graph.mortal<QORTransformationActivity>("activity")));
    ASSERT_TRUE(object.addTransformationTask(graph.mortal<QORTransformationTask>("task")));
    ASSERT_TRUE(object.addStoredProcedure(graph.mortal<QORStoredProcedure>("procedure")));
    ASSERT_TRUE(object.addModelElement(graph.mortal<QORClass>("element")));
    ASSERT_TRUE(object.addDiagram(graph.mortal<QORClassDiagram>("diagram")));
    ASSERT_TRUE(object.addChildPackage(graph.mortal<QORDesignPackage>("child")));
}

} // namespace

TEST(QORDesignPackage, IsTakenApartInOrder) {
    expectTakenApart<QORDesignPackage>(link,
                                       {"default", "diagram", "element", "procedure", "imported", "task",
                                        "activity", "parent", "child", "base", "synonym", "note"},
                                       {"note", "synonym", "base", "child", "diagram", "element", "procedure",
                                        "task", "activity", "default", "imported"});
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
    ASSERT_TRUE(package->addTransformationActivity(graph.mortal<QORTransformationActivity>("b")));
    ASSERT_TRUE(package->addTransformationActivity(graph.mortal<QORTransformationActivity>("a")));
    package->removeTransformationActivitys();
    EXPECT_EQ(graph.deaths, (Labels{"a", "b"}));
    EXPECT_EQ(package->getTransformationActivityCount(), 0);
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
