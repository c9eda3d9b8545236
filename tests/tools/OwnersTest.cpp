#include "kit/Owners.h"

#include "kit/Graph.h"
#include "kit/Numbering.h"

#include <qor/QORArgument.h>
#include <qor/QORAttribute.h>
#include <qor/QORBaseType.h>
#include <qor/QORClass.h>
#include <qor/QORDesignPackage.h>
#include <qor/QOROperation.h>

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;

template <class Class>
Class* made(kit::Graph& graph) {
    auto* const object = new Class;
    graph.adopt(object);
    return object;
}

TEST(Owners, RootAndWhatHasNoOwnerAreTops) {
    kit::Graph graph;
    auto* root = made<QORBaseType>(graph);
    auto* column = made<QORAttribute>(graph);
    auto* table = made<QORClass>(graph);
    column->addType(root);
    table->addFeature(column);
    kit::Owners const owners{kit::Numbering(*root)};
    EXPECT_THAT(owners.tops(), ElementsAre(root, table));
    EXPECT_EQ(owners.of(*column), table);
    EXPECT_EQ(owners.of(*table), nullptr);
}

TEST(Owners, RootIsATopEvenIfItIsOwned) {
    kit::Graph graph;
    auto* package = made<QORDesignPackage>(graph);
    auto* table = made<QORClass>(graph);
    package->addModelElement(table);
    kit::Owners const owners{kit::Numbering(*table)};
    EXPECT_THAT(owners.tops(), ElementsAre(table, package));
}

TEST(Owners, ObjectWithTwoOwnersIsBelowTheFirst) {
    kit::Graph graph;
    auto* table = made<QORClass>(graph);
    auto* operation = made<QOROperation>(graph);
    auto* argument = made<QORArgument>(graph);
    table->addOperation(operation);
    table->addArgument(argument);
    operation->addArgument(argument);
    kit::Owners const owners{kit::Numbering(*table)};
    EXPECT_EQ(owners.of(*argument), argument->getParent());
}

TEST(Owners, RingIsCutAtItsFirstObjectWhereverTheWayEntersIt) {
    kit::Graph graph;
    auto* root = made<QORBaseType>(graph);
    auto* column = made<QORAttribute>(graph);
    auto* table = made<QORClass>(graph);
    auto* outer = made<QORDesignPackage>(graph);
    auto* inner = made<QORDesignPackage>(graph);
    column->addType(root);
    table->addFeature(column);
    inner->addModelElement(table);
    inner->addChildPackage(outer);
    outer->addChildPackage(inner);
    kit::Numbering const numbering(*root);
    kit::Owners const owners(numbering);
    QORObject* const first = numbering.numberOf(*outer) < numbering.numberOf(*inner) ? outer : inner;
    EXPECT_THAT(owners.tops(), ElementsAre(root, first));
    EXPECT_EQ(owners.of(*column), table);
    EXPECT_EQ(owners.of(*table), inner);
    EXPECT_EQ(owners.of(*(first == outer ? inner : outer)), first);
}

TEST(Owners, DeepGraphTakesNoLongerThanAFlatOne) {
    kit::Graph graph;
    QORDesignPackage* innermost = made<QORDesignPackage>(graph);
    constexpr int depth = 100000;
    for (int i = 0; i < depth; ++i) {
        auto* inner = made<QORDesignPackage>(graph);
        innermost->addChildPackage(inner);
        innermost = inner;
    }
    kit::Owners const owners{kit::Numbering(graph.root())};
    EXPECT_EQ(owners.tops().size(), 1u);
    EXPECT_EQ(owners.of(*innermost), innermost->getParent());
}

} // namespace
