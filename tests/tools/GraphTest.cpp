#include "kit/Graph.h"

#include <qor/QORArgument.h>
#include <qor/QORClass.h>
#include <qor/QORDesignPackage.h>
#include <qor/QOROperation.h>

#include <Graph.h>

#include <gtest/gtest.h>
#include <utility>

namespace {

using kit::Graph;

TEST(Graph, TakesOverAnObjectOfTwoOwnersOnce) {
    ::Graph notes;
    auto* const table = notes.mortal<QORClass>("class");
    auto* const operation = notes.mortal<QOROperation>("operation");
    auto* const argument = notes.mortal<QORArgument>("argument");
    ASSERT_TRUE(table->addOperation(operation));
    ASSERT_TRUE(table->addArgument(argument));
    ASSERT_TRUE(operation->addArgument(argument));
    {
        Graph graph;
        graph.adoptTree(table);
        EXPECT_EQ(&graph.root(), table);
        EXPECT_EQ(graph.objects(), (Objects{table, operation, argument}));
        EXPECT_TRUE(notes.deaths.empty());
    }
    EXPECT_EQ(notes.deaths, (Labels{"class", "operation", "argument"}));
}

TEST(Graph, DeletesObjectsThatOwnEachOtherInARing) {
    ::Graph notes;
    auto* const above = notes.mortal<QORDesignPackage>("above");
    auto* const below = notes.mortal<QORDesignPackage>("below");
    ASSERT_TRUE(above->addChildPackage(below));
    ASSERT_TRUE(below->addChildPackage(above));
    {
        Graph graph;
        graph.adopt(above);
        graph.adopt(below);
    }
    EXPECT_EQ(notes.deaths, (Labels{"above", "below"}));
}

TEST(Graph, MovesWithItsObjects) {
    ::Graph notes;
    Graph graph;
    graph.adopt(notes.mortal<QORClass>("first"));
    Graph moved(std::move(graph));
    EXPECT_TRUE(graph.objects().empty());
    Graph other;
    other.adopt(notes.mortal<QORClass>("other"));
    other = std::move(moved);
    EXPECT_EQ(other.root().getName(), "first");
}

} // namespace
