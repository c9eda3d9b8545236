#include <qor/QORClass.h>
#include <qor/QORComponent.h>
#include <qor/QORConstantNode.h>
#include <qor/QORDesignPackage.h>
#include <qor/QORDimensionAttribute.h>
#include <qor/QORGrouping.h>
#include <qor/QORKeyMap.h>
#include <qor/QORMappingModel.h>
#include <qor/QORMetadataOrigin.h>
#include <qor/QORModel.h>
#include <qor/QORNote.h>
#include <qor/QOROperatorNode.h>
#include <qor/QORProduct.h>
#include <qor/QORReport.h>
#include <qor/QORReportText.h>
#include <qor/QORTraversalDelete.h>
#include <qor/QORVersion.h>

#include "Graph.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <vector>

namespace {

/// An object that notes its death through a note which it owns, so that its class stays a library class.
template <class Class>
Class* telling(Graph& graph, char const* name) {
    auto* const object = named<Class>(name);
    object->addNote(graph.mortal<QORNote>(name));
    return object;
}

Labels sorted(Labels log) {
    std::sort(log.begin(), log.end());
    return log;
}

} // namespace

// ---- links of an object with itself ---------------------------------------------------------------------

TEST(SelfLink, OfNaryWithUnaryIsRefusedAndLeavesTheObjectInItsOwnEnd) {
    QORDesignPackage package;
    EXPECT_FALSE(package.addChildPackage(&package));
    EXPECT_EQ(1, package.getChildPackageCount());
    EXPECT_EQ(&package, package.getChildPackage(0));
    EXPECT_EQ(nullptr, package.getParentPackage());
    EXPECT_TRUE(package.isReferenced());
    EXPECT_EQ(nullptr, package.getParent());
    EXPECT_FALSE(package.addChildPackage(&package));
    EXPECT_EQ(1, package.getChildPackageCount());
}

TEST(SelfLink, FromTheUnarySideDoesTheSame) {
    QORDesignPackage package;
    EXPECT_FALSE(package.addParentPackage(&package));
    EXPECT_EQ(1, package.getChildPackageCount());
    EXPECT_EQ(nullptr, package.getParentPackage());
}

TEST(SelfLink, UnderAnOwnerIsRefusedWithoutATrace) {
    QORDesignPackage owner;
    auto* const package = new QORDesignPackage;
    owner.addChildPackage(package);
    EXPECT_FALSE(package->addChildPackage(package));
    EXPECT_EQ(0, package->getChildPackageCount());
    EXPECT_EQ(&owner, package->getParentPackage());
}

TEST(SelfLink, InAVector) {
    QORGrouping grouping;
    EXPECT_FALSE(grouping.addChildGrouping(&grouping));
    EXPECT_EQ(1, grouping.getChildGroupingCount());
    EXPECT_EQ(&grouping, grouping.getChildGrouping(0));
    EXPECT_EQ(nullptr, grouping.getParentGrouping());
}

TEST(SelfLink, OfUnaryWithUnaryIsRefusedAndChangesNothing) {
    QORConstantNode node;
    EXPECT_FALSE(node.addNextExpressionNode(&node));
    EXPECT_FALSE(node.addPreviousExpressionNode(&node));
    EXPECT_EQ(nullptr, node.getNextExpressionNode());
    EXPECT_EQ(nullptr, node.getPreviousExpressionNode());
    EXPECT_FALSE(node.isReferenced());
    QOROperatorNode operatorNode;
    EXPECT_FALSE(operatorNode.addLeftExpressionNode(&operatorNode));
    EXPECT_FALSE(operatorNode.isReferenced());
}

TEST(SelfLink, OfNaryWithNaryIsRefusedAndChangesNothing) {
    QORVersion version;
    EXPECT_FALSE(version.addPredecessorVersion(&version));
    EXPECT_FALSE(version.addSuccessorVersion(&version));
    EXPECT_FALSE(version.addReferencedComponent(&version));
    EXPECT_FALSE(version.addReferencedByComponent(&version));
    EXPECT_FALSE(version.isReferenced());
    QORKeyMap map;
    EXPECT_FALSE(map.addParentKeyMap(&map));
    EXPECT_FALSE(map.addChildKeyMap(&map));
    EXPECT_FALSE(map.isReferenced());
    QORReportText item;
    EXPECT_FALSE(item.addReferencedReportItem(&item));
    EXPECT_FALSE(item.isReferenced());
}

TEST(SelfLink, OnAReferringEnd) {
    auto* const attribute = new QORDimensionAttribute;
    EXPECT_FALSE(attribute->addDescriptiveDimensionAttribute(attribute));
    EXPECT_EQ(1, attribute->getDescriptiveDimensionAttributeCount());
    EXPECT_EQ(nullptr, attribute->getDescriptiveOfDimensionAttribute());
    delete attribute;
}

TEST(SelfLink, DeletionEnds) {
    Graph graph;
    auto* const package = telling<QORDesignPackage>(graph, "package");
    package->addChildPackage(package);
    delete package;
    auto* const grouping = telling<QORGrouping>(graph, "grouping");
    grouping->addChildGrouping(grouping);
    delete grouping;
    auto* const item = telling<QORReportText>(graph, "item");
    item->addChildReportItem(item);
    delete item;
    auto* const product = telling<QORProduct>(graph, "product");
    product->addChildProduct(product);
    delete product;
    EXPECT_EQ((Labels{"package", "grouping", "item", "product"}), graph.deaths);
}

TEST(SelfLink, DeletionOfACallersObjectEnds) {
    Graph graph;
    auto* const package = graph.mortal<QORDesignPackage>("package");
    package->addChildPackage(package);
    delete package;
    EXPECT_EQ(Labels{"package"}, graph.deaths);
}

TEST(SelfLink, DeletionTakesTheOtherChildrenAlongOnce) {
    Graph graph;
    for (char const* self : {"a", "m", "z"}) {
        graph.deaths.clear();
        auto* const package = graph.mortal<QORDesignPackage>(self);
        package->addChildPackage(graph.mortal<QORDesignPackage>("c"));
        package->addChildPackage(package);
        package->addChildPackage(graph.mortal<QORDesignPackage>("p"));
        EXPECT_EQ(3, package->getChildPackageCount());
        delete package;
        EXPECT_EQ((Labels{self, "c", "p"}), graph.deaths);
    }
}

TEST(SelfLink, RecursiveDeleteEnds) {
    QORDesignPackage package;
    package.addChildPackage(&package);
    EXPECT_TRUE(package.recursiveDelete());
    EXPECT_FALSE(package.isReferenced());
    QORGrouping grouping;
    grouping.addChildGrouping(&grouping);
    EXPECT_TRUE(grouping.recursiveDelete());
    EXPECT_FALSE(grouping.isReferenced());
}

TEST(SelfLink, CanBeUnlinked) {
    QORDesignPackage package;
    package.addChildPackage(&package);
    EXPECT_TRUE(package.removeChildPackage(&package));
    EXPECT_FALSE(package.isReferenced());
    package.addChildPackage(&package);
    EXPECT_EQ(&package, package.isolate(false));
    EXPECT_FALSE(package.isReferenced());
    QORGrouping grouping;
    grouping.addChildGrouping(&grouping);
    EXPECT_EQ(&grouping, grouping.isolate(false));
    EXPECT_FALSE(grouping.isReferenced());
}

TEST(SelfLink, RemovingAllSparesTheObjectWhichItsEndStillCounts) {
    QORDesignPackage package;
    package.addChildPackage(&package);
    package.addChildPackage(named<QORDesignPackage>("child"));
    package.removeChildPackages();
    EXPECT_EQ(0, package.getChildPackageCount());
    EXPECT_FALSE(package.isReferenced());
    package.addChildPackage(&package);
    EXPECT_EQ(&package, package.isolate(true));
    EXPECT_FALSE(package.isReferenced());
}

TEST(SelfLink, UnderAnOwnerTakenLaterDeletionEnds) {
    Graph graph;
    auto* const owner = new QORDesignPackage;
    auto* const package = telling<QORDesignPackage>(graph, "package");
    package->addChildPackage(package);
    EXPECT_TRUE(owner->addChildPackage(package));
    EXPECT_EQ(1, package->getChildPackageCount());
    delete owner;
    EXPECT_EQ(Labels{"package"}, graph.deaths);
}

TEST(SelfLink, UnderAnOwnerTakenLaterTheObjectItselfCanGo) {
    Graph graph;
    QORDesignPackage owner;
    auto* const package = telling<QORDesignPackage>(graph, "package");
    package->addChildPackage(package);
    owner.addChildPackage(package);
    delete package;
    EXPECT_EQ(Labels{"package"}, graph.deaths);
    EXPECT_EQ(0, owner.getChildPackageCount());
}

TEST(SelfLink, RenamingAmongOtherChildrenLosesNothing) {
    Graph graph;
    auto* const package = graph.mortal<QORDesignPackage>("a");
    package->addChildPackage(package);
    package->addChildPackage(graph.mortal<QORDesignPackage>("m"));
    package->setName("z");
    EXPECT_EQ(2, package->getChildPackageCount());
    EXPECT_TRUE(package->removeChildPackage(package));
    EXPECT_EQ(1, package->getChildPackageCount());
    delete package;
    EXPECT_EQ((Labels{"a", "m"}), graph.deaths);
}

// ---- cycles of owners -----------------------------------------------------------------------------------

namespace {

template <class Class>
void expectCyclesToEnd(bool (*put)(Class&, Class*)) {
    for (std::size_t size = 2; size <= 4; ++size) {
        for (std::size_t victim = 0; victim < size; ++victim) {
            Graph graph;
            std::vector<Class*> ring;
            char const* const names[] = {"a", "b", "c", "d"};
            for (std::size_t i = 0; i < size; ++i)
                ring.push_back(telling<Class>(graph, names[i]));
            for (std::size_t i = 0; i < size; ++i)
                ASSERT_TRUE(put(*ring[i], ring[(i + 1) % size]));
            for (Class* const each : ring)
                EXPECT_FALSE(each->recursiveDelete());
            EXPECT_TRUE(graph.deaths.empty());
            delete ring[victim];
            Labels expected;
            for (std::size_t i = 0; i < size; ++i)
                expected.push_back(names[(victim + i) % size]);
            EXPECT_EQ(expected, graph.deaths) << size << victim;
        }
    }
}

} // namespace

TEST(Cycle, OfPackagesEndsWhereverItIsBroken) {
    expectCyclesToEnd<QORDesignPackage>(
        [](QORDesignPackage& owner, QORDesignPackage* child) { return owner.addChildPackage(child); });
}

TEST(Cycle, OfGroupingsEndsWhereverItIsBroken) {
    expectCyclesToEnd<QORGrouping>(
        [](QORGrouping& owner, QORGrouping* child) { return owner.addChildGrouping(child); });
}

TEST(Cycle, OfReportItemsEndsWhereverItIsBroken) {
    expectCyclesToEnd<QORReportText>(
        [](QORReportText& owner, QORReportText* child) { return owner.addChildReportItem(child); });
}

TEST(Cycle, OfOperatorNodesEndsWhereverItIsBroken) {
    expectCyclesToEnd<QOROperatorNode>(
        [](QOROperatorNode& owner, QOROperatorNode* child) { return owner.addLeftExpressionNode(child); });
}

TEST(Cycle, OfCallersObjectsEnds) {
    Graph graph;
    auto* const a = graph.mortal<QORDesignPackage>("a");
    auto* const b = graph.mortal<QORDesignPackage>("b");
    auto* const c = graph.mortal<QORDesignPackage>("c");
    a->addChildPackage(b);
    b->addChildPackage(c);
    c->addChildPackage(a);
    delete b;
    EXPECT_EQ((Labels{"b", "a", "c"}), graph.deaths);
}

TEST(Cycle, WithASelfLinkInItEnds) {
    Graph graph;
    auto* const a = telling<QORDesignPackage>(graph, "a");
    auto* const b = telling<QORDesignPackage>(graph, "b");
    a->addChildPackage(a);
    b->addChildPackage(b);
    a->addChildPackage(b);
    b->addChildPackage(a);
    delete a;
    EXPECT_EQ((Labels{"a", "b"}), graph.deaths);
}

TEST(Cycle, HeldFromOutsideStaysWithItsSecondOwner) {
    Graph graph;
    auto* const report = new QORReport;
    auto* const first = telling<QORReportText>(graph, "first");
    auto* const second = telling<QORReportText>(graph, "second");
    report->addReportItem(first);
    first->addChildReportItem(second);
    second->addChildReportItem(first);
    delete report;
    EXPECT_TRUE(graph.deaths.empty());
    EXPECT_EQ(nullptr, first->getReport());
    EXPECT_EQ(second, first->getParent());
    delete second;
    EXPECT_EQ((Labels{"first", "second"}), sorted(graph.deaths));
}

TEST(Cycle, OfReferencesDoesNotHinderDeletion) {
    Graph graph;
    auto* const a = graph.mortal<QORVersion>("a");
    auto* const b = graph.mortal<QORVersion>("b");
    a->addPredecessorVersion(b);
    b->addPredecessorVersion(a);
    EXPECT_EQ(1, a->getSuccessorVersionCount());
    delete a; // nothing else refers to b once both links are gone
    EXPECT_EQ((Labels{"a", "b"}), graph.deaths);
}

TEST(Cycle, IsUndoneByIsolatingOneOfIt) {
    QORDesignPackage a;
    QORDesignPackage b;
    a.addChildPackage(&b);
    b.addChildPackage(&a);
    EXPECT_EQ(&a, a.isolate(false));
    EXPECT_FALSE(a.isReferenced());
    EXPECT_FALSE(b.isReferenced());
}

// ---- two owners -----------------------------------------------------------------------------------------

TEST(TwoOwners, AnOriginGoesWithTheSecondOfItsModels) {
    for (bool const modelFirst : {true, false}) {
        Graph graph;
        auto* const model = new QORModel;
        auto* const mapping = new QORMappingModel;
        auto* const origin = telling<QORMetadataOrigin>(graph, "origin");
        model->addMetadataOrigin(origin);
        mapping->addMetadataOrigin(origin);
        if (modelFirst)
            delete model;
        else
            delete mapping;
        EXPECT_TRUE(graph.deaths.empty());
        EXPECT_EQ(1, origin->getParentCount());
        if (modelFirst)
            delete mapping;
        else
            delete model;
        EXPECT_EQ(Labels{"origin"}, graph.deaths);
    }
}

TEST(TwoOwners, UnderOneRootAnObjectDiesOnce) {
    for (char const* report : {"b", "z"}) { // before and behind the class in its package
        Graph graph;
        auto* const package = new QORDesignPackage;
        auto* const owned = telling<QORClass>(graph, "m");
        auto* const other = telling<QORReport>(graph, report);
        package->addModelElement(owned);
        package->addModelElement(other);
        other->addClassifier(owned);
        delete package;
        EXPECT_EQ(2U, graph.deaths.size());
        EXPECT_EQ(1, std::count(graph.deaths.begin(), graph.deaths.end(), "m"));
    }
}

TEST(TwoOwners, UnderOneRootAWalkDeletesAnObjectOnce) {
    for (char const* report : {"b", "z"}) {
        Graph graph;
        QORDesignPackage package;
        auto* const owned = graph.mortal<QORClass>("m");
        auto* const other = graph.mortal<QORReport>(report);
        package.addModelElement(owned);
        package.addModelElement(other);
        other->addClassifier(owned);
        QORTraversalDelete operation;
        package.depthTraversal(operation, &package);
        EXPECT_EQ((Labels{"m", report}), graph.deaths);
        EXPECT_FALSE(package.isReferenced());
    }
}

TEST(TwoOwners, AGroupingOfAClassInsideAnotherGroupingOfIt) {
    Graph graph;
    auto* const owner = new QORClass;
    auto* const outer = telling<QORGrouping>(graph, "outer");
    auto* const inner = telling<QORGrouping>(graph, "inner");
    owner->addGrouping(outer);
    outer->addChildGrouping(inner);
    inner->addChildGrouping(outer); // the class's grouping also hangs under its own child
    EXPECT_EQ(2, outer->getParentCount());
    delete owner;
    EXPECT_TRUE(graph.deaths.empty()); // the ring keeps itself
    delete inner;
    EXPECT_EQ((Labels{"inner", "outer"}), sorted(graph.deaths));
}
