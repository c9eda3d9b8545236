#include "Expectations.h"

#include <qor/QORArgument.h>
#include <qor/QORAttribute.h>
#include <qor/QORBaseType.h>
#include <qor/QORBusinessRule.h>
#include <qor/QORClass.h>
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
    ASSERT_TRUE(object.addBusinessRule(graph.mortal<QORBusinessRule>("rule")));
    ASSERT_TRUE(object.addPhysicalTarget(graph.mortal<QORPhysicalTarget>("target")));
    ASSERT_TRUE(object.addPropertyElementTypeScope(graph.mortal<QORPropertyElementTypeScope>("scope")));
    ASSERT_TRUE(object.addType(graph.mortal<QORBaseType>("type")));
    ASSERT_TRUE(object.addMetadataOrigin(graph.mortal<QORMetadataOrigin>("origin")));
    ASSERT_TRUE(object.addChildPackage(graph.mortal<QORDesignPackage>("child")));
}

} // namespace

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

TEST(QORModel, IsTakenApartInOrder) {
    expectTakenApart<QORModel>(
        link,
        {"format", "origin", "type", "scope", "target", "rule", "parent", "child", "base", "synonym", "note"},
        {"note", "synonym", "base", "child", "origin", "type", "scope", "target", "rule"});
}

TEST(QORModel, ReachesPackagesBeforeWhatTheyShare) {
    expectChildrenReached<QORModel>(
        link, {"note", "synonym", "child", "origin", "type", "scope", "target", "rule"});
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
    Objects const rest{model->getMetadataOrigin(), model->getType(0), model->getPropertyElementTypeScope(0),
                       model->getPhysicalTarget(0), model->getBusinessRule(0)};
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
    Recoding recode("UTF-7", "UTF-8");
    recode(*model);
    EXPECT_EQ(first->getName(), "ax");
    EXPECT_EQ(second->getName(), "ax/1");
    EXPECT_EQ(third->getName(), "ax/2");
    EXPECT_EQ(recode.errors, 0);
    EXPECT_EQ(model->getPhysicalTargetCount(), 3);
}
