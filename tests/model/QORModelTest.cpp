#include "ModelTestSupport.h"

#include <qor/QORArgument.h>
#include <qor/QORAttribute.h>
#include <qor/QORBaseType.h>
#include <qor/QORBusinessRule.h>
#include <qor/QORClass.h>
#include <qor/QORDate.h>
#include <qor/QORDesignPackage.h>
#include <qor/QORMappingModel.h>
#include <qor/QORMetadataOrigin.h>
#include <qor/QORModel.h>
#include <qor/QORModelFormat.h>
#include <qor/QOROperation.h>
#include <qor/QORPhysicalTarget.h>
#include <qor/QORPropertyElementTypeScope.h>
#include <qor/QORStoredProcedure.h>

namespace {

void link(Graph& graph, QORModel& object, Owners owners) {
    linkLayers(graph, object);
    linkOwner(graph, owners, "format", object, &QORModel::addModelFormat);
    if (owners == Owners::ALL)
        linkOwnerMade<QORDesignPackage>(graph, owners, "parent", object, &QORPackage::addParentPackage);
    ASSERT_TRUE(object.addBusinessRule(hung<QORBusinessRule>(graph, "rule")));
    ASSERT_TRUE(object.addPhysicalTarget(hung<QORPhysicalTarget>(graph, "target")));
    ASSERT_TRUE(object.addPropertyElementTypeScope(hung<QORPropertyElementTypeScope>(graph, "scope")));
    ASSERT_TRUE(object.addType(hung<QORBaseType>(graph, "type")));
    ASSERT_TRUE(object.addMetadataOrigin(hung<QORMetadataOrigin>(graph, "origin")));
    ASSERT_TRUE(object.addChildPackage(hung<QORDesignPackage>(graph, "child")));
}

QORDate dateOf(char const* text) {
    QORDate date;
    date.setDate(QORString(text));
    return date;
}

} // namespace

TEST(QORModel, IsAPackage) {
    graph::expectConcrete<QORModel>(QORElementType::MODEL, 2, "Model", QORPackage::getStaticMetaClass());
}

TEST(QORModel, StartsWithoutCreationTime) {
    QORModel const model;
    EXPECT_FALSE(model.getCreationTime().isSet());
    EXPECT_STREQ(model.getCreationTime().chars(), "00:00:00 ");
    EXPECT_EQ(recordedDefault(QORAttributeType::MODEL__CREATION_TIME), "00:00:00 ");
}

TEST(QORModel, CopyingTakesTheCreationTimeAndAssigningLeavesIt) {
    QORModel source;
    source.setName("A");
    source.setCreationTime(dateOf("01:02:03 2001-02-03"));
    QORModel const copy(source);
    EXPECT_STREQ(copy.getCreationTime().chars(), "01:02:03 2001-02-03");

    QORModel target;
    target.setCreationTime(dateOf("10:20:30 2010-12-31"));
    EXPECT_EQ(&(target = source), &target);
    EXPECT_EQ(target.getName(), "A");
    EXPECT_STREQ(target.getCreationTime().chars(), "10:20:30 2010-12-31");

    QORModel set;
    EXPECT_EQ(&set.setFrom(source), &set);
    EXPECT_EQ(set.getName(), "A");
    EXPECT_FALSE(set.getCreationTime().isSet());
}

TEST(QORModel, TheCreationTimeDoesNotCountForEquality) {
    graph::expectNotCompared<QORModel>(
        [](QORModel& model) { model.setCreationTime(dateOf("01:02:03 2001-02-03")); });
    graph::expectCompared<QORModel>([](QORModel& model) { model.setPhysicalName("A"); });
    expectClassesUnequal<QORModel, QORDesignPackage>();
}

TEST(QORModel, CopiesHaveNoLinks) {
    expectCopiesUnlinked<QORModel>(link);
}

TEST(QORModel, ItsFormatGoesBeforeItsParentPackage) {
    Graph graph;
    auto* const model = graph.make<QORModel>();
    auto* const format = graph.make<QORModelFormat>();
    auto* const package = graph.make<QORDesignPackage>();
    expectParent(*model, nullptr, 0);
    ASSERT_TRUE(package->addChildPackage(model));
    expectParent(*model, package, 1);
    ASSERT_TRUE(format->addModel(model));
    expectLeaves(*model, {format, package});
    EXPECT_EQ(format->getModel(), nullptr);
    EXPECT_EQ(package->getChildPackageCount(), 0);
}

TEST(QORModel, EachEndCountsAsAReference) {
    expectEndCounts<QORModel, QORModelFormat>(&QORModel::addModelFormat);
    expectEndCounts<QORModel, QORMetadataOrigin>(&QORModel::addMetadataOrigin);
    expectEndCounts<QORModel, QORType, QORBaseType>(&QORModel::addType);
    expectEndCounts<QORModel, QORPropertyElementTypeScope>(&QORModel::addPropertyElementTypeScope);
    expectEndCounts<QORModel, QORPhysicalTarget>(&QORModel::addPhysicalTarget);
    expectEndCounts<QORModel, QORBusinessRule>(&QORModel::addBusinessRule);
    expectEndCounts<QORModel, QORPackage, QORDesignPackage>(&QORModel::addChildPackage);
}

TEST(QORModel, IsTakenApartInOrder) {
    expectTakenApart<QORModel>(
        link,
        {"format", "origin", "type", "scope", "target", "rule", "parent", "child", "base", "synonym", "note"},
        {"note", "synonym", "base", "child", "origin", "type", "scope", "target", "rule"});
    expectIsolationFreesFarEnds<QORModel>(link);
}

TEST(QORModel, ReachesPackagesBeforeWhatTheyShare) {
    expectChildrenReached<QORModel>(
        link, {"note", "synonym", "child", "origin", "type", "scope", "target", "rule"});
}

TEST(QORModel, RecursiveDeleteUnderAFormatDeletesNothing) {
    Graph graph;
    auto* const model = graph.make<QORModel>();
    auto* const type = graph.make<QORBaseType>();
    auto* const package = graph.make<QORDesignPackage>();
    ASSERT_TRUE(graph.make<QORModelFormat>()->addModel(model));
    ASSERT_TRUE(model->addType(type) && model->addChildPackage(package));
    EXPECT_FALSE(model->recursiveDelete());
    EXPECT_EQ(model->getType(0), type);
    EXPECT_EQ(model->getChildPackage(0), package);
    EXPECT_EQ(model->getParentCount(), 1);
}

TEST(QORModel, AttributesDieBeforeTheTypesThatTheyReferTo) {
    Graph graph;
    auto* const model = graph.mortal<QORModel>("model");
    auto* const package = graph.mortal<QORDesignPackage>("package");
    auto* const owner = graph.mortal<QORClass>("class");
    auto* const attribute = graph.mortal<QORAttribute>("attribute");
    auto* const type = graph.mortal<QORBaseType>("type");
    ASSERT_TRUE(model->addType(type) && model->addChildPackage(package) && package->addModelElement(owner) &&
                owner->addAttribute(attribute) && attribute->addType(type));
    delete model;
    EXPECT_EQ(graph.deaths, (Labels{"model", "attribute", "class", "package", "type"}));
}

TEST(QORModel, AWalkEntersOwnersFirstAndLeavesThemLast) {
    struct Steps : QORTraversalOperation {
        Labels labels;
        bool pre_process(QORObject* object, void*&) override {
            labels.push_back(std::string("+") + object->getName().chars);
            return true;
        }
        void post_process(QORObject* object, void*) override {
            labels.push_back(std::string("-") + object->getName().chars);
        }
    } steps;
    Graph graph;
    auto* const model = graph.make<QORModel>("model");
    auto* const package = graph.make<QORDesignPackage>("package");
    auto* const owner = graph.make<QORClass>("class");
    auto* const operation = graph.make<QOROperation>("operation");
    ASSERT_TRUE(model->addType(graph.make<QORBaseType>("type")) && model->addChildPackage(package));
    ASSERT_TRUE(package->addModelElement(owner) && owner->addOperation(operation));
    ASSERT_TRUE(operation->addArgument(graph.make<QORArgument>("argument")));
    ASSERT_TRUE(owner->addAttribute(graph.make<QORAttribute>("attribute")));
    EXPECT_TRUE(model->depthTraversal(steps, nullptr));
    EXPECT_EQ(steps.labels,
              (Labels{"+model", "+package", "+class", "+attribute", "-attribute", "+operation", "+argument",
                      "-argument", "-operation", "-class", "-package", "+type", "-type", "-model"}));
}

TEST(QORModel, DeletingTheRootDeletesWhatIsOwnedOverSeveralClasses) {
    Graph graph;
    auto* const model = new QORModel;
    auto* const package = new QORDesignPackage;
    auto* const owner = new QORClass;
    auto* const operation = new QOROperation;
    ASSERT_TRUE(model->addChildPackage(package) && package->addModelElement(owner) &&
                owner->addOperation(operation));
    ASSERT_TRUE(operation->addArgument(graph.mortal<QORArgument>("argument")));
    ASSERT_TRUE(owner->addAttribute(graph.mortal<QORAttribute>("attribute")));
    ASSERT_TRUE(owner->addNote(graph.mortal<QORNote>("note of class")));
    ASSERT_TRUE(package->addStoredProcedure(graph.mortal<QORStoredProcedure>("procedure")));
    ASSERT_TRUE(model->addType(graph.mortal<QORBaseType>("type")));
    delete model;
    EXPECT_EQ(graph.deaths, (Labels{"note of class", "attribute", "argument", "procedure", "type"}));
}

TEST(QORModel, DeletedWithTwoOwnersItDeletesWhatThePackageOwnsAndUnlinksTheRest) {
    Graph graph;
    auto* const model = new QORModel;
    link(graph, *model, Owners::NONE);
    auto* const format = graph.make<QORModelFormat>();
    auto* const parent = graph.make<QORDesignPackage>();
    ASSERT_TRUE(model->addModelFormat(format) && model->addParentPackage(parent));
    std::vector<QORObject*> const rest{model->getMetadataOrigin(), model->getType(0),
                                       model->getPropertyElementTypeScope(0), model->getPhysicalTarget(0),
                                       model->getBusinessRule(0)};
    delete model;
    EXPECT_EQ(graph.deaths, (Labels{"note", "synonym", "base", "child"}));
    for (QORObject const* const each : rest)
        EXPECT_FALSE(each->isReferenced());
    EXPECT_EQ(format->getModel(), nullptr);
    EXPECT_EQ(parent->getChildPackageCount(), 0);
}

TEST(QORModel, RemovingTheOriginDeletesItUnlessAMappingModelHoldsIt) {
    Graph graph;
    auto* const model = graph.make<QORModel>();
    auto* const alone = graph.mortal<QORMetadataOrigin>("alone");
    ASSERT_TRUE(model->addMetadataOrigin(alone));
    EXPECT_TRUE(model->removeMetadataOrigin(alone));
    EXPECT_EQ(graph.deaths, Labels());
    EXPECT_FALSE(model->removeMetadataOrigin(alone));

    ASSERT_TRUE(model->addMetadataOrigin(alone));
    EXPECT_TRUE(model->removeMetadataOrigin());
    EXPECT_EQ(graph.deaths, Labels{"alone"});
    EXPECT_FALSE(model->removeMetadataOrigin());

    auto* const held = graph.make<QORMetadataOrigin>();
    ASSERT_TRUE(model->addMetadataOrigin(held) && held->addMappingModel(graph.make<QORMappingModel>()));
    EXPECT_TRUE(model->removeMetadataOrigin());
    EXPECT_EQ(model->getMetadataOrigin(), nullptr);
    EXPECT_EQ(held->getModel(), nullptr);
    EXPECT_EQ(held->getParentCount(), 1);
}

TEST(QORModel, RefusesASecondFormatAndOrigin) {
    Graph graph;
    auto* const model = graph.make<QORModel>();
    auto* const format = graph.make<QORModelFormat>();
    auto* const origin = graph.make<QORMetadataOrigin>();
    auto* const otherFormat = graph.make<QORModelFormat>();
    auto* const otherOrigin = graph.make<QORMetadataOrigin>();
    ASSERT_TRUE(model->addModelFormat(format) && model->addMetadataOrigin(origin));
    EXPECT_FALSE(model->addModelFormat(otherFormat));
    EXPECT_FALSE(otherFormat->addModel(model));
    EXPECT_FALSE(model->addMetadataOrigin(otherOrigin));
    EXPECT_FALSE(otherOrigin->addModel(model));
    EXPECT_EQ(model->getModelFormat(), format);
    EXPECT_EQ(model->getMetadataOrigin(), origin);
    EXPECT_FALSE(otherFormat->isReferenced());
    EXPECT_FALSE(otherOrigin->isReferenced());
}

TEST(QORModel, TypesAndRulesMayShareANameAndTargetsAndScopesMayNot) {
    Graph graph;
    auto* const model = graph.make<QORModel>();
    EXPECT_TRUE(model->addType(graph.make<QORBaseType>("A")));
    EXPECT_TRUE(model->addType(graph.make<QORBaseType>("A")));
    EXPECT_TRUE(model->addBusinessRule(graph.make<QORBusinessRule>("A")));
    EXPECT_TRUE(model->addBusinessRule(graph.make<QORBusinessRule>("A")));
    EXPECT_TRUE(model->addPhysicalTarget(graph.make<QORPhysicalTarget>("A")));
    EXPECT_FALSE(model->addPhysicalTarget(graph.make<QORPhysicalTarget>("A")));
    EXPECT_TRUE(model->addPropertyElementTypeScope(graph.make<QORPropertyElementTypeScope>("A")));
    EXPECT_FALSE(model->addPropertyElementTypeScope(graph.make<QORPropertyElementTypeScope>("A")));
    EXPECT_EQ(model->getTypeCount(), 2);
    EXPECT_EQ(model->getPhysicalTargetCount(), 1);
}

TEST(QORModel, UnderAPackageATakenNameIsRefused) {
    Graph graph;
    auto* const parent = graph.make<QORDesignPackage>();
    auto* const model = graph.make<QORModel>("A");
    ASSERT_TRUE(parent->addChildPackage(model) && parent->addChildPackage(graph.make<QORModel>("B")));
    expectNameRefused(*model, "B", "Package", "Package");
    model->setName("C");
    EXPECT_EQ(parent->getChildPackage(1), model);
}

TEST(QORModel, UnderAFormatItsParentPackageIsNotAskedForAName) {
    Graph graph;
    auto* const format = graph.make<QORModelFormat>();
    auto* const parent = graph.make<QORDesignPackage>();
    auto* const model = graph.make<QORModel>("A");
    ASSERT_TRUE(parent->addChildPackage(model) && parent->addChildPackage(graph.make<QORModel>("B")));
    ASSERT_TRUE(model->addModelFormat(format));
    model->setName("B");
    EXPECT_EQ(model->getName(), "B");
    EXPECT_EQ(format->getModel(), model);
    EXPECT_EQ(model->getModelFormat(), format);
    EXPECT_EQ(model->getParentPackage(), parent);
    model->setName("C");
    EXPECT_EQ(parent->getChildPackage(0), model); // still in its old place
    EXPECT_TRUE(model->removeParentPackage(parent));
    EXPECT_EQ(parent->getChildPackageCount(), 1);
    EXPECT_EQ(parent->getChildPackage(0)->getName(), "B");
}

TEST(QORModel, ReencodesEveryLayerOfItsTextsAndKeepsWhatFails) {
    Graph graph;
    auto* const model = graph.make<QORModel>(inUtf8);
    auto* const type = graph.make<QORBaseType>(notInLatin1);
    auto* const origin = graph.make<QORMetadataOrigin>(inUtf8);
    ASSERT_TRUE(model->addType(type) && model->addMetadataOrigin(origin));
    model->setPhysicalName(inUtf8);
    model->setComment(notInLatin1);
    model->setStereotype(inUtf8);
    model->setDescription(inUtf8);
    model->setNativeId(inUtf8);
    model->setNativeType(inUtf8);
    type->setComment(inUtf8);
    Recoding recode;
    recode(*model);
    EXPECT_EQ(model->getName(), inLatin1);
    EXPECT_EQ(model->getPhysicalName(), inLatin1);
    EXPECT_EQ(model->getComment(), notInLatin1);
    EXPECT_EQ(model->getStereotype(), inLatin1);
    EXPECT_EQ(model->getDescription(), inLatin1);
    EXPECT_EQ(model->getNativeId(), inLatin1);
    EXPECT_EQ(model->getNativeType(), inLatin1);
    EXPECT_EQ(origin->getName(), inLatin1);
    EXPECT_EQ(type->getName(), notInLatin1);
    EXPECT_EQ(type->getComment(), inLatin1);
    EXPECT_EQ(recode.errors, 2);
    EXPECT_EQ(recode.converted, 8);
}

TEST(QORModel, ATargetWhoseNameCollidesAfterReencodingGetsANumber) {
    Graph graph;
    auto* const model = graph.make<QORModel>();
    auto* const first = graph.make<QORPhysicalTarget>("+AGE-+AHg-");
    auto* const second = graph.make<QORPhysicalTarget>("+AGE-x");
    auto* const third = graph.make<QORPhysicalTarget>("a+AHg-");
    ASSERT_TRUE(model->addPhysicalTarget(third) && model->addPhysicalTarget(second) &&
                model->addPhysicalTarget(first));
    FromUtf7 recode;
    recode(*model);
    EXPECT_EQ(first->getName(), "ax");
    EXPECT_EQ(second->getName(), "ax/1");
    EXPECT_EQ(third->getName(), "ax/2");
    EXPECT_EQ(recode.errors, 0);
    EXPECT_EQ(model->getPhysicalTargetCount(), 3);
}
