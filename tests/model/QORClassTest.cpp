#include "Expectations.h"

#include <qor/QORArgument.h>
#include <qor/QORArgumentByPosition.h>
#include <qor/QORAssociation.h>
#include <qor/QORAssociationRole.h>
#include <qor/QORAttribute.h>
#include <qor/QORAttributeByPosition.h>
#include <qor/QORCandidateKey.h>
#include <qor/QORClass.h>
#include <qor/QORClassDiagram.h>
#include <qor/QORClassType.h>
#include <qor/QORDataAttribute.h>
#include <qor/QORDependency.h>
#include <qor/QORDesignPackage.h>
#include <qor/QORForeignKey.h>
#include <qor/QORGeneralization.h>
#include <qor/QORGrouping.h>
#include <qor/QORIndex.h>
#include <qor/QORJoinRole.h>
#include <qor/QORMappingModel.h>
#include <qor/QOROperation.h>
#include <qor/QOROperationByPosition.h>
#include <qor/QORRealization.h>
#include <qor/QORReport.h>
#include <qor/QORSQLViewEntity.h>

namespace {

void linkRelationships(Graph& graph, QORClass& object) {
    ASSERT_TRUE(object.addSpecificationOfRealization(graph.mortal<QORRealization>("specification")));
    ASSERT_TRUE(object.addSupplierOfDependency(graph.mortal<QORDependency>("supplier")));
    ASSERT_TRUE(object.addDependency(graph.mortal<QORDependency>("dependency")));
    ASSERT_TRUE(object.addRealization(graph.mortal<QORRealization>("realization")));
    ASSERT_TRUE(object.addAssociationRole(graph.mortal<QORAssociationRole>("role")));
    ASSERT_TRUE(object.addSubtypeOfGeneralization(graph.mortal<QORGeneralization>("subtype")));
    ASSERT_TRUE(object.addSupertypeOfGeneralization(graph.mortal<QORGeneralization>("supertype")));
    ASSERT_TRUE(object.addClassType(graph.mortal<QORClassType>("class type")));
    ASSERT_TRUE(object.addAssociation(graph.mortal<QORAssociation>("association")));
    ASSERT_TRUE(object.addPrimaryCandidateKey(graph.mortal<QORCandidateKey>("primary")));
}

void link(Graph& graph, QORClass& object, Owners owners) {
    linkLayers(graph, object);
    linkOwner(graph, owners, "mapping", object, &QORClass::addMappingModel);
    linkFurtherOwner(graph, owners, "report", object, &QORClassifier::addReport);
    linkFurtherOwner(graph, owners, "package", object, &QORModelElement::addDesignPackage);
    linkRelationships(graph, object);
    ASSERT_TRUE(object.addDiagram(graph.mortal<QORClassDiagram>("diagram")));
    ASSERT_TRUE(object.addAssociatedJoinRole(graph.mortal<QORJoinRole>("join role")));
    ASSERT_TRUE(object.addFeature(graph.mortal<QORAttribute>("feature")));
    ASSERT_TRUE(object.addKey(graph.mortal<QORForeignKey>("key")));
    ASSERT_TRUE(object.addIndex(graph.mortal<QORIndex>("index")));
    ASSERT_TRUE(object.addArgument(graph.mortal<QORArgument>("argument")));
    ASSERT_TRUE(object.addOperation(graph.mortal<QOROperation>("operation")));
    ASSERT_TRUE(object.addGrouping(graph.mortal<QORGrouping>("grouping")));
}

} // namespace

TEST(QORClass, AsksMappingModelThenReportThenDesignPackage) {
    Graph graph;
    auto* const object = graph.make<QORClass>();
    auto* const mapping = graph.make<QORMappingModel>();
    auto* const report = graph.make<QORReport>();
    auto* const package = graph.make<QORDesignPackage>();
    ASSERT_TRUE(object->addDesignPackage(package));
    expectParent(*object, package, 1);
    ASSERT_TRUE(object->addReport(report));
    expectParent(*object, report, 2);
    ASSERT_TRUE(mapping->addVariableClass(object));
    expectLeaves(*object, {mapping, report, package});
    EXPECT_EQ(mapping->getVariableClass(), nullptr);
}

TEST(QORClass, IsTakenApartInOrder) {
    expectTakenApart<QORClass>(
        link, {"primary",   "grouping",      "association", "class type", "mapping",     "operation",
               "argument",  "supertype",     "subtype",     "role",       "realization", "dependency",
               "supplier",  "specification", "index",       "key",        "report",      "feature",
               "join role", "package",       "diagram",     "base",       "synonym",     "note"},
        {"note",      "synonym",  "base",  "diagram",     "feature",    "join role",   "grouping",
         "operation", "argument", "index", "key",         "primary",    "association", "class type",
         "supertype", "subtype",  "role",  "realization", "dependency", "supplier",    "specification"});
}

TEST(QORClass, ReachesFeaturesThenItsGroupingThenTheRest) {
    expectChildrenReached<QORClass>(
        link, {"note", "synonym", "feature", "grouping", "operation", "argument", "index", "key"});
}

TEST(QORClass, DeletedUnderAMappingModelAndAReportItLeavesItsOwnMembersUnlinked) {
    Graph graph;
    auto* const object = new QORClass;
    link(graph, *object, Owners::NONE);
    Objects const left{object->getGrouping(),   object->getOperation(0), object->getArgument(0),
                       object->getIndex(0),     object->getKey(0),       object->getClassType(),
                       object->getDependency(0)};
    auto* const mapping = graph.make<QORMappingModel>();
    auto* const report = graph.make<QORReport>();
    ASSERT_TRUE(object->addMappingModel(mapping) && object->addReport(report));
    delete object;
    EXPECT_EQ(graph.deaths, (Labels{"note", "synonym", "base", "diagram", "feature", "join role"}));
    for (QORObject const* const each : left)
        EXPECT_FALSE(each->isReferenced());
    EXPECT_EQ(mapping->getVariableClass(), nullptr);
    EXPECT_EQ(report->getClassifierCount(), 0);
}

TEST(QORClass, DeletedWithThreeOwnersItLeavesItsFeaturesUnlinkedToo) {
    Graph graph;
    auto* const object = new QORClass;
    link(graph, *object, Owners::NONE);
    QORFeature const* const feature = object->getFeature(0);
    auto* const package = graph.make<QORDesignPackage>();
    ASSERT_TRUE(object->addMappingModel(graph.make<QORMappingModel>()) &&
                object->addReport(graph.make<QORReport>()) && object->addDesignPackage(package));
    delete object;
    EXPECT_EQ(graph.deaths, (Labels{"note", "synonym", "base", "diagram"}));
    EXPECT_FALSE(feature->isReferenced());
    EXPECT_EQ(package->getModelElementCount(), 0);
}

TEST(QORClass, AnOperationOfAViewAndAGroupingOfAGroupingSurviveTheClass) {
    Graph graph;
    auto* const object = new QORClass;
    auto* const operation = graph.make<QOROperation>();
    auto* const view = graph.make<QORSQLViewEntity>();
    auto* const grouping = graph.make<QORGrouping>();
    auto* const parent = graph.make<QORGrouping>();
    auto* const argument = graph.make<QORArgument>();
    ASSERT_TRUE(object->addOperation(operation) && view->addOperation(operation));
    ASSERT_TRUE(object->addGrouping(grouping) && parent->addChildGrouping(grouping));
    ASSERT_TRUE(object->addArgument(argument) && operation->addArgument(argument));
    delete object;
    expectParent(*operation, view, 1);
    expectParent(*grouping, parent, 1);
    expectParent(*argument, operation, 1);
}

TEST(QORClass, InAMappingModelNoOtherOwnerIsAskedForAName) {
    Graph graph;
    auto* const package = graph.make<QORDesignPackage>();
    auto* const mapping = graph.make<QORMappingModel>();
    auto* const object = graph.make<QORClass>("A");
    ASSERT_TRUE(package->addModelElement(object) && package->addModelElement(graph.make<QORClass>("B")));
    expectNameRefused(*object, "B", "DesignPackage", "ModelElement");
    ASSERT_TRUE(object->addMappingModel(mapping));
    object->setName("B");
    EXPECT_EQ(object->getName(), "B");
    EXPECT_EQ(object->getMappingModel(), mapping);
    EXPECT_EQ(mapping->getVariableClass(), object);
    object->setName("C");
    EXPECT_EQ(package->getModelElement(0), object); // where it was
    EXPECT_TRUE(package->removeModelElement(object));
    EXPECT_EQ(package->getModelElementCount(), 1);
    EXPECT_EQ(package->getModelElement(0)->getName(), "B");
}

TEST(QORClass, InAReportTheDesignPackageIsNotAskedForAName) {
    Graph graph;
    auto* const package = graph.make<QORDesignPackage>();
    auto* const report = graph.make<QORReport>();
    auto* const object = graph.make<QORClass>("A");
    ASSERT_TRUE(package->addModelElement(object) && package->addModelElement(graph.make<QORClass>("C")));
    ASSERT_TRUE(object->addReport(report) && report->addClassifier(graph.make<QORClass>("B")));
    object->setName("C");
    EXPECT_EQ(report->getClassifier(1), object);
    expectParent(*object, report, 2);
}

TEST(QORClass, RemovesAllOfAnEndThoughItsPluralIsIrregular) {
    Graph graph;
    auto* const object = graph.make<QORClass>();
    auto* const other = graph.make<QORClass>();
    auto* const held = graph.make<QORDependency>();
    ASSERT_TRUE(object->addDependency(graph.mortal<QORDependency>("dependency")));
    ASSERT_TRUE(object->addDependency(held) && other->addSupplierOfDependency(held));
    ASSERT_TRUE(object->addSupplierOfDependency(graph.mortal<QORDependency>("supplier")));
    ASSERT_TRUE(object->addIndex(graph.mortal<QORIndex>("index")));
    object->removeDependencys();
    EXPECT_EQ(graph.deaths, Labels{"dependency"});
    EXPECT_EQ(held->getClientClass(), nullptr);
    EXPECT_EQ(held->getSupplierClass(), other);
    object->removeSupplierOfDependencys();
    object->removeIndexs();
    EXPECT_EQ(graph.deaths, (Labels{"dependency", "supplier", "index"}));
    EXPECT_FALSE(object->isReferenced());
}

TEST(QORClass, AttributesAreItsFeatures) {
    Graph graph;
    auto* const object = graph.make<QORClass>();
    auto* const a = graph.make<QORAttribute>("a");
    auto* const b = graph.make<QORAttribute>("b");
    EXPECT_TRUE(object->addAttribute(b));
    EXPECT_TRUE(object->addAttribute(a));
    EXPECT_FALSE(object->addAttribute(a));
    EXPECT_FALSE(object->addAttribute(graph.make<QORAttribute>("a")));
    EXPECT_EQ(object->getAttributeCount(), 2);
    EXPECT_EQ(object->getFeatureCount(), 2);
    EXPECT_EQ(object->getAttribute(0), a);
    EXPECT_EQ(object->getFeature(1), b);
    EXPECT_EQ(object->getAttribute(2), nullptr);
    EXPECT_EQ(a->getClassifier(), object);
}

TEST(QORClass, FindsAnAttributeByNameAndTellsItsPosition) {
    Graph graph;
    auto* const object = graph.make<QORClass>();
    auto* const x = graph.make<QORAttribute>("x");
    ASSERT_TRUE(object->addAttribute(graph.make<QORAttribute>("a")) && object->addAttribute(x) &&
                object->addAttribute(graph.make<QORAttribute>("z")));
    EXPECT_EQ(object->getAttribute("x", nullptr), x);
    EXPECT_EQ(object->getAttribute("y", nullptr), nullptr);
    int position = 0;
    EXPECT_EQ(object->getAttribute("x", &position), x);
    EXPECT_EQ(position, 1);
    EXPECT_EQ(object->getAttribute("x", &position), x); // the search resumes at the match itself
    EXPECT_EQ(position, 1);
    position = 2;
    EXPECT_EQ(object->getAttribute("x", &position), nullptr);
    EXPECT_EQ(position, 2);
    position = 0;
    EXPECT_EQ(object->getAttribute("y", &position), nullptr);
    EXPECT_EQ(position, 0);
}

TEST(QORClass, ContainsAnAttributeByItsName) {
    Graph graph;
    auto* const object = graph.make<QORClass>();
    auto* const attribute = graph.make<QORAttribute>("x");
    auto* const namesake = graph.make<QORAttribute>("x");
    EXPECT_FALSE(object->containsAttribute(attribute));
    ASSERT_TRUE(object->addAttribute(attribute));
    EXPECT_TRUE(object->containsAttribute(attribute));
    EXPECT_TRUE(object->containsAttribute(namesake));
    EXPECT_FALSE(object->containsAttribute(graph.make<QORAttribute>("y")));
    EXPECT_FALSE(object->containsAttribute(nullptr));
    EXPECT_FALSE(object->removeAttribute(namesake)); // a removal takes no namesake
    EXPECT_EQ(attribute->getClassifier(), object);
}

TEST(QORClass, RemovesAttributesInAllForms) {
    Graph graph;
    auto* const object = graph.make<QORClass>();
    for (char const* const name : {"a", "b", "c", "d", "e"})
        ASSERT_TRUE(object->addAttribute(graph.mortal<QORAttribute>(name)));
    QORAttribute* const c = object->getAttribute(2);
    EXPECT_TRUE(object->removeAttribute(c));
    EXPECT_EQ(c->getClassifier(), nullptr);
    EXPECT_EQ(graph.deaths, Labels());
    EXPECT_TRUE(object->removeAttribute(0));
    EXPECT_FALSE(object->removeAttribute(7));
    EXPECT_TRUE(object->removeAttribute("d", nullptr));
    EXPECT_FALSE(object->removeAttribute("d", nullptr));
    EXPECT_EQ(graph.deaths, (Labels{"a", "d"}));
    int cursor = 0;
    EXPECT_TRUE(object->removeAttribute("e", &cursor));
    EXPECT_EQ(cursor, 1);
    EXPECT_FALSE(object->removeAttribute("e", &cursor));
    EXPECT_EQ(object->getAttributeCount(), 1);
    object->removeAttributes();
    EXPECT_EQ(graph.deaths, (Labels{"a", "d", "e", "b"}));
    EXPECT_EQ(object->getAttributeCount(), 0);
}

TEST(QORClass, EveryFeatureCountsAsAnAttribute) {
    Graph graph;
    auto* const object = graph.make<QORClass>();
    auto* const feature = graph.make<QORDataAttribute>("x");
    ASSERT_TRUE(object->addFeature(feature));
    int position = 0;
    void const* const address = static_cast<QORObject const*>(feature);
    EXPECT_EQ(object->getAttributeCount(), 1);
    EXPECT_EQ(static_cast<void const*>(object->getAttribute(0)), address);
    EXPECT_EQ(static_cast<void const*>(object->getAttribute("x", nullptr)), address);
    EXPECT_EQ(static_cast<void const*>(object->getAttribute("x", &position)), address);
}

TEST(QORClass, MembersComeByPosition) {
    expectSortedByPosition<QORClass, QOROperation, QOROperationByPosition>(&QORClass::addOperation,
                                                                           &QORClass::getOperationByPosition);
    expectSortedByPosition<QORClass, QORArgument, QORArgumentByPosition>(&QORClass::addArgument,
                                                                         &QORClass::getArgumentByPosition);
    expectSortedByPosition<QORClass, QORAttribute, QORAttributeByPosition>(&QORClass::addAttribute,
                                                                           &QORClass::getAttributeByPosition);
}

TEST(QORClass, ItsDisplayNameIsItsName) {
    QORClass object;
    EXPECT_EQ(object.getDisplayName(), "");
    object.setName("A");
    EXPECT_EQ(object.getDisplayName(), "A");
}
