#include "kit/Graph.h"

#include <qor/QORArgument.h>
#include <qor/QORClass.h>
#include <qor/QORDesignPackage.h>
#include <qor/QOROperation.h>

#include <Mortal.h>

#include <gtest/gtest.h>
#include <utility>
#include <vector>

namespace {

using kit::Graph;
using Objects = std::vector<QORObject*>;

TEST(Graph, TakesOverAnObjectOfTwoOwnersOnce) {
    EventLog deaths;
    auto* const table = mortal<QORClass>(deaths, "class");
    auto* const operation = mortal<QOROperation>(deaths, "operation");
    auto* const argument = mortal<QORArgument>(deaths, "argument");
    ASSERT_TRUE(table->addOperation(operation));
    ASSERT_TRUE(table->addArgument(argument));
    ASSERT_TRUE(operation->addArgument(argument));
    {
        Graph graph;
        graph.adoptTree(table);
        EXPECT_EQ(&graph.root(), table);
        EXPECT_EQ(graph.objects(), (Objects{table, operation, argument}));
        EXPECT_TRUE(deaths.empty());
    }
    EXPECT_EQ(deaths, (EventLog{"class", "operation", "argument"}));
}

TEST(Graph, DeletesObjectsThatOwnEachOtherInARing) {
    EventLog deaths;
    auto* const above = mortal<QORDesignPackage>(deaths, "above");
    auto* const below = mortal<QORDesignPackage>(deaths, "below");
    ASSERT_TRUE(above->addChildPackage(below));
    ASSERT_TRUE(below->addChildPackage(above));
    {
        Graph graph;
        graph.adopt(above);
        graph.adopt(below);
    }
    EXPECT_EQ(deaths, (EventLog{"above", "below"}));
}

TEST(Graph, MovesWithItsObjects) {
    EventLog deaths;
    Graph graph;
    graph.adopt(mortal<QORClass>(deaths, "first"));
    Graph moved(std::move(graph));
    EXPECT_TRUE(graph.objects().empty());
    Graph other;
    other.adopt(mortal<QORClass>(deaths, "other"));
    other = std::move(moved);
    EXPECT_EQ(other.root().getName(), "first");
}

} // namespace
