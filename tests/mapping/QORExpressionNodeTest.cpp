#include "Expectations.h"

#include <qor/QORBaseType.h>
#include <qor/QORBranchingNode.h>
#include <qor/QORConstantNode.h>
#include <qor/QORDelimiterNode.h>
#include <qor/QORElementNode.h>
#include <qor/QORNote.h>
#include <qor/QOROperationNode.h>
#include <qor/QOROperatorNode.h>
#include <qor/QORPredicateNode.h>
#include <qor/QORStatementNode.h>

namespace {

/// A place that a node can take under an owner of its own.
struct Place {
    char const* role;
    std::unique_ptr<QORObject> owner;
    std::function<bool(QORExpressionNode&)> take;
    std::function<QORObject*(QORExpressionNode const&)> ownerOf;
    std::function<bool(QORExpressionNode const&)> holds; ///< whether the owner's end holds the node
};

template <class Owner>
bool inContainer(Owner const& owner, QORExpressionNode const& node) {
    return owner.getExpressionNodeCount() == 1 && owner.getExpressionNode(0) == &node;
}

/// The eight places, in the order in which they are asked.
std::vector<Place> eightPlaces() {
    std::vector<Place> places;
    auto const add = [&places](char const* role, auto* owner, auto take, auto ownerOf, auto holds) {
        places.push_back({role, std::unique_ptr<QORObject>(owner),
                          [=](QORExpressionNode& node) { return (node.*take)(owner); },
                          [=](QORExpressionNode const& node) -> QORObject* { return (node.*ownerOf)(); },
                          [=](QORExpressionNode const& node) { return holds(*owner, node); }});
    };
    using Node = QORExpressionNode;
    auto const inside = [](auto const& owner, Node const& node) { return inContainer(owner, node); };
    add("operationNode", new QOROperationNode, &Node::addOperationNode, &Node::getOperationNode, inside);
    add("predicateNode", new QORPredicateNode, &Node::addPredicateNode, &Node::getPredicateNode,
        [](auto const& owner, Node const& node) { return owner.getExpressionNode() == &node; });
    add("leftOfOperatorNode", new QOROperatorNode, &Node::addLeftOfOperatorNode, &Node::getLeftOfOperatorNode,
        [](auto const& owner, Node const& node) { return owner.getLeftExpressionNode() == &node; });
    add("rightOfOperatorNode", new QOROperatorNode, &Node::addRightOfOperatorNode,
        &Node::getRightOfOperatorNode,
        [](auto const& owner, Node const& node) { return owner.getRightExpressionNode() == &node; });
    add("conditionOfBranchingNode", new QORBranchingNode, &Node::addConditionOfBranchingNode,
        &Node::getConditionOfBranchingNode,
        [](auto const& owner, Node const& node) { return owner.getConditionExpressionNode() == &node; });
    add("branchingNode", new QORBranchingNode, &Node::addBranchingNode, &Node::getBranchingNode, inside);
    add("delimiterNode", new QORDelimiterNode, &Node::addDelimiterNode, &Node::getDelimiterNode, inside);
    add("statementNode", new QORStatementNode, &Node::addStatementNode, &Node::getStatementNode, inside);
    return places;
}

} // namespace

TEST(QORExpressionNode, HangsOnEachOwnerAlone) {
    for (Place const& place : eightPlaces()) {
        SCOPED_TRACE(place.role);
        QORConstantNode node;
        ASSERT_TRUE(place.take(node));
        EXPECT_FALSE(place.take(node));
        EXPECT_EQ(node.getParent(), place.owner.get());
        EXPECT_EQ(node.getParentCount(), 1);
        EXPECT_TRUE(node.isReferenced());
        expectDeletionRefused(node);
        node.setName("renamed");
        EXPECT_STREQ(node.getName().chars, "renamed");
        EXPECT_EQ(place.ownerOf(node), place.owner.get());
        EXPECT_TRUE(place.holds(node));
        EXPECT_EQ(node.removeAggregationAssembly(), place.owner.get());
        EXPECT_EQ(place.ownerOf(node), nullptr);
        EXPECT_FALSE(place.holds(node));
        EXPECT_FALSE(place.owner->isReferenced());
        EXPECT_FALSE(node.isReferenced());
    }
}

TEST(QORExpressionNode, LeavesItsOwnersInAFixedOrder) {
    std::vector<Place> const places = eightPlaces();
    QORConstantNode node;
    for (auto place = places.rbegin(); place != places.rend(); ++place)
        ASSERT_TRUE(place->take(node));
    node.setName("renamed");
    for (Place const& place : places) {
        EXPECT_EQ(place.ownerOf(node), place.owner.get()) << place.role;
        EXPECT_TRUE(place.holds(node)) << place.role;
    }
    int owners = 8;
    for (Place const& place : places) {
        SCOPED_TRACE(place.role);
        EXPECT_EQ(node.getParent(), place.owner.get());
        EXPECT_EQ(node.getParentCount(), owners--);
        expectDeletionRefused(node);
        EXPECT_EQ(node.removeAggregationAssembly(), place.owner.get());
        EXPECT_FALSE(place.holds(node));
    }
    EXPECT_EQ(node.getParentCount(), 0);
    EXPECT_TRUE(node.recursiveDelete());
}

TEST(QORExpressionNode, AsksTheFirstOfAnyTwoOwners) {
    for (std::size_t first = 0; first < 8; ++first) {
        for (std::size_t second = first + 1; second < 8; ++second) {
            std::vector<Place> const places = eightPlaces();
            Place const& early = places[first];
            Place const& late = places[second];
            SCOPED_TRACE(std::string(early.role) + " and " + late.role);
            QORConstantNode node;
            ASSERT_TRUE(late.take(node));
            ASSERT_TRUE(early.take(node));
            EXPECT_EQ(node.getParent(), early.owner.get());
            EXPECT_EQ(node.getParentCount(), 2);
            EXPECT_EQ(node.removeAggregationAssembly(), early.owner.get());
            EXPECT_TRUE(late.holds(node));
            EXPECT_EQ(node.getParent(), late.owner.get());
            expectDeletionRefused(node);
            EXPECT_EQ(node.removeAggregationAssembly(), late.owner.get());
        }
    }
}

TEST(QORExpressionNode, IsInNoOwnerAnyMoreAfterItsDeath) {
    for (std::size_t owners = 1; owners <= 8; ++owners) {
        std::vector<Place> const places = eightPlaces();
        auto* const node = new QORConstantNode;
        for (std::size_t i = 0; i < owners; ++i)
            ASSERT_TRUE(places[i].take(*node));
        delete node;
        for (Place const& place : places)
            EXPECT_FALSE(place.owner->isReferenced()) << place.role << " of " << owners;
    }
}

TEST(QORExpressionNode, GoesWithItsLastOwner) {
    for (std::size_t keep = 0; keep < 8; ++keep) {
        Graph graph;
        std::vector<Place> places = eightPlaces();
        auto* const node = graph.mortal<QORConstantNode>("node");
        for (Place const& place : places)
            ASSERT_TRUE(place.take(*node));
        for (std::size_t i = 0; i < 8; ++i)
            if (i != keep)
                places[i].owner.reset();
        EXPECT_EQ(graph.deaths, Labels{});
        EXPECT_EQ(node->getParent(), places[keep].owner.get());
        EXPECT_EQ(node->getParentCount(), 1);
        places[keep].owner.reset();
        EXPECT_EQ(graph.deaths, Labels{"node"});
    }
}

TEST(QORExpressionNode, ChainsBothWays) {
    Graph graph;
    auto* const a = graph.make<QORConstantNode>();
    auto* const b = graph.make<QOROperatorNode>();
    auto* const c = graph.make<QORConstantNode>();
    EXPECT_TRUE(a->addPreviousExpressionNode(b));
    EXPECT_EQ(a->getPreviousExpressionNode(), b);
    EXPECT_EQ(b->getNextExpressionNode(), a);
    EXPECT_EQ(a->getNextExpressionNode(), nullptr);
    EXPECT_EQ(b->getPreviousExpressionNode(), nullptr);
    EXPECT_TRUE(a->addNextExpressionNode(c));
    EXPECT_EQ(c->getPreviousExpressionNode(), a);
    EXPECT_FALSE(c->addPreviousExpressionNode(b));
    EXPECT_FALSE(b->addNextExpressionNode(c));
    EXPECT_FALSE(c->addNextExpressionNode(c));
    EXPECT_EQ(c->getNextExpressionNode(), nullptr);
    EXPECT_EQ(a->getParentCount(), 0);
}

TEST(QORExpressionNode, CanChainToARing) {
    Graph graph;
    auto* const a = graph.make<QORConstantNode>();
    auto* const b = graph.make<QORConstantNode>();
    EXPECT_TRUE(a->addNextExpressionNode(b));
    EXPECT_TRUE(b->addNextExpressionNode(a));
    EXPECT_EQ(a->getPreviousExpressionNode(), b);
    EXPECT_EQ(b->getPreviousExpressionNode(), a);
}

TEST(QORExpressionNode, TakesFreeNeighboursInTheChainWithIt) {
    Graph graph;
    auto* const middle = graph.mortal<QORConstantNode>("middle");
    middle->addPreviousExpressionNode(graph.mortal<QORConstantNode>("previous"));
    middle->addNextExpressionNode(graph.mortal<QORConstantNode>("next"));
    delete middle;
    EXPECT_EQ(graph.deaths, (Labels{"middle", "previous", "next"}));
}

TEST(QORExpressionNode, LeavesNeighboursThatHaveMoreLinksInTwoChains) {
    Graph graph;
    auto* const first = graph.make<QORConstantNode>();
    auto* const second = graph.make<QORConstantNode>();
    auto* const fourth = graph.make<QORConstantNode>();
    auto* const owner = graph.make<QORStatementNode>();
    auto* const third = new QORConstantNode;
    first->addNextExpressionNode(second);
    second->addNextExpressionNode(third);
    third->addNextExpressionNode(fourth);
    owner->addExpressionNode(fourth);
    delete third;
    EXPECT_EQ(second->getNextExpressionNode(), nullptr);
    EXPECT_EQ(second->getPreviousExpressionNode(), first);
    EXPECT_EQ(fourth->getPreviousExpressionNode(), nullptr);
    EXPECT_EQ(fourth->getStatementNode(), owner);
}

TEST(QORExpressionNode, TakesAWholeFreeChainOnlyAsFarAsNothingIsLeft) {
    Graph graph;
    auto* const a = graph.mortal<QORConstantNode>("a");
    auto* const b = graph.mortal<QORConstantNode>("b");
    auto* const c = graph.mortal<QORConstantNode>("c");
    auto* const d = graph.mortal<QORConstantNode>("d");
    a->addNextExpressionNode(b);
    b->addNextExpressionNode(c);
    c->addNextExpressionNode(d);
    delete b;
    EXPECT_EQ(graph.deaths, (Labels{"b", "a"}));
    EXPECT_EQ(c->getPreviousExpressionNode(), nullptr);
    EXPECT_EQ(c->getNextExpressionNode(), d);
}

TEST(QORExpressionNode, DeletesFreeFarObjectsInOrder) {
    Graph graph;
    QORConstantNode node;
    node.addReferencedByStatementNode(graph.mortal<QORStatementNode>("referrer"));
    node.addNextExpressionNode(graph.mortal<QORConstantNode>("next"));
    node.addPreviousExpressionNode(graph.mortal<QORConstantNode>("previous"));
    node.addType(graph.mortal<QORBaseType>("type"));
    node.addElementNode(graph.mortal<QORElementNode>("element node"));
    node.addNote(graph.mortal<QORNote>("note"));
    EXPECT_TRUE(node.recursiveDelete());
    EXPECT_EQ(graph.deaths, (Labels{"note", "element node", "type", "previous", "next", "referrer"}));
}

TEST(QORExpressionNode, IsolatesInItsOwnOrder) {
    Graph graph;
    Mortal<QORConstantNode> node(graph, "node");
    node.addNote(graph.mortal<QORNote>("note"));
    node.addReferencedByStatementNode(graph.mortal<QORStatementNode>("referrer"));
    node.addNextExpressionNode(graph.mortal<QORConstantNode>("next"));
    node.addPreviousExpressionNode(graph.mortal<QORConstantNode>("previous"));
    node.addStatementNode(graph.mortal<QORStatementNode>("statement"));
    node.addDelimiterNode(graph.mortal<QORDelimiterNode>("delimiter"));
    node.addBranchingNode(graph.mortal<QORBranchingNode>("branching"));
    node.addConditionOfBranchingNode(graph.mortal<QORBranchingNode>("condition of"));
    node.addRightOfOperatorNode(graph.mortal<QOROperatorNode>("right of"));
    node.addLeftOfOperatorNode(graph.mortal<QOROperatorNode>("left of"));
    node.addPredicateNode(graph.mortal<QORPredicateNode>("predicate"));
    node.addOperationNode(graph.mortal<QOROperationNode>("operation"));
    node.addType(graph.mortal<QORBaseType>("type"));
    EXPECT_EQ(node.isolate(true), &node);
    EXPECT_EQ(graph.deaths,
              (Labels{"type", "operation", "predicate", "left of", "right of", "condition of", "branching",
                      "delimiter", "statement", "previous", "next", "referrer", "note"}));
}

TEST(QORExpressionNode, ReencodesItsOriginalTextBeforeItsName) {
    Graph graph;
    auto* const node = graph.mortal<QORConstantNode>("node");
    node->addNextExpressionNode(graph.mortal<QORConstantNode>("next"));
    node->QORConstantNode::setName(inUtf8);
    node->setOriginalText(inUtf8);
    node->onSetName = [&] { EXPECT_STREQ(node->getOriginalText().chars, inLatin1); };
    Recoding recode;
    recode(*node);
    EXPECT_EQ(graph.namings, Labels{"node"});
    EXPECT_EQ(graph.recodings, Labels{"node"});
    EXPECT_STREQ(node->getName().chars, inLatin1);
}

TEST(QORExpressionNode, WalksNotesAndNoNeighbour) {
    Graph graph;
    auto* const node = graph.make<QORConstantNode>();
    auto* const note = graph.make<QORNote>();
    node->addPreviousExpressionNode(graph.make<QORConstantNode>());
    node->addNextExpressionNode(graph.make<QORConstantNode>());
    node->addNote(note);
    EXPECT_EQ(walkOf(*node), (Objects{node, note}));
}
