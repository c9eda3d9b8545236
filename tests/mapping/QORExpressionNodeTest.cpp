#include "GraphObservers.h"

#include <qor/QORBaseType.h>
#include <qor/QORBranchingNode.h>
#include <qor/QORConstantNode.h>
#include <qor/QORDelimiterNode.h>
#include <qor/QORElementNode.h>
#include <qor/QORExpression.h>
#include <qor/QORNote.h>
#include <qor/QOROperationNode.h>
#include <qor/QOROperatorNode.h>
#include <qor/QORPredicateNode.h>
#include <qor/QORStatementNode.h>

using namespace graph;

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

TEST(QORExpressionNode, IsAnAbstractElement) {
    expectAbstract<QORExpressionNode>(QORElementType::EXPRESSION_NODE, 113, "ExpressionNode",
                                      QORElement::getStaticMetaClass());
}

TEST(QORExpressionNode, StartsEmpty) {
    QORConstantNode node;
    EXPECT_FALSE(node.getBlock());
    EXPECT_EQ(node.getPosition(), 0);
    EXPECT_STREQ(node.getOriginalText().chars, "");
    EXPECT_EQ(node.getStatus(), 0);
    EXPECT_FALSE(node.isReferenced());
}

TEST(QORExpressionNode, TakesAnyNameWithoutAnOwner) {
    QORConstantNode node;
    EXPECT_EQ(node.getParent(), nullptr);
    EXPECT_EQ(node.removeAggregationAssembly(), nullptr);
    node.setName("x");
    EXPECT_STREQ(node.getName().chars, "x");
}

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
        Journal journal;
        std::vector<Place> places = eightPlaces();
        auto* const node = watched<QORConstantNode>(journal, "node");
        for (Place const& place : places)
            ASSERT_TRUE(place.take(*node));
        for (std::size_t i = 0; i < 8; ++i)
            if (i != keep)
                places[i].owner.reset();
        EXPECT_EQ(journal.deaths, Labels{});
        EXPECT_EQ(node->getParent(), places[keep].owner.get());
        EXPECT_EQ(node->getParentCount(), 1);
        places[keep].owner.reset();
        EXPECT_EQ(journal.deaths, Labels{"node"});
    }
}

TEST(QORExpressionNode, IsReferencedThroughEachOtherLink) {
    using N = QORExpressionNode;
    using Near = Plain<QORExpressionNode>;
    expectReferencedThrough<Near, QORBaseType>(&N::addType, &N::removeType);
    expectReferencedThrough<Near, QORConstantNode>(&N::addPreviousExpressionNode,
                                                   &N::removePreviousExpressionNode);
    expectReferencedThrough<Near, QORConstantNode>(&N::addNextExpressionNode, &N::removeNextExpressionNode);
    expectReferencedThrough<Near, QORStatementNode>(&N::addReferencedByStatementNode,
                                                    &N::removeReferencedByStatementNode);
}

TEST(QORExpressionNode, ChainsBothWays) {
    Held<QORConstantNode> a;
    Held<QOROperatorNode> b;
    Held<QORConstantNode> c;
    EXPECT_TRUE(a->addPreviousExpressionNode(b));
    EXPECT_EQ(a->getPreviousExpressionNode(), b.get());
    EXPECT_EQ(b->getNextExpressionNode(), a.get());
    EXPECT_EQ(a->getNextExpressionNode(), nullptr);
    EXPECT_EQ(b->getPreviousExpressionNode(), nullptr);
    EXPECT_TRUE(a->addNextExpressionNode(c));
    EXPECT_EQ(c->getPreviousExpressionNode(), a.get());
    EXPECT_FALSE(c->addPreviousExpressionNode(b));
    EXPECT_FALSE(b->addNextExpressionNode(c));
    EXPECT_FALSE(c->addNextExpressionNode(c));
    EXPECT_EQ(c->getNextExpressionNode(), nullptr);
    EXPECT_EQ(a->getParentCount(), 0);
}

TEST(QORExpressionNode, CanChainToARing) {
    Held<QORConstantNode> a;
    Held<QORConstantNode> b;
    EXPECT_TRUE(a->addNextExpressionNode(b));
    EXPECT_TRUE(b->addNextExpressionNode(a));
    EXPECT_EQ(a->getPreviousExpressionNode(), b.get());
    EXPECT_EQ(b->getPreviousExpressionNode(), a.get());
}

TEST(QORExpressionNode, TakesFreeNeighboursInTheChainWithIt) {
    Journal journal;
    auto* const middle = watched<QORConstantNode>(journal, "middle");
    middle->addPreviousExpressionNode(watched<QORConstantNode>(journal, "previous"));
    middle->addNextExpressionNode(watched<QORConstantNode>(journal, "next"));
    delete middle;
    EXPECT_EQ(journal.deaths, (Labels{"middle", "previous", "next"}));
}

TEST(QORExpressionNode, LeavesNeighboursThatHaveMoreLinksInTwoChains) {
    Held<QORConstantNode> first;
    Held<QORConstantNode> second;
    Held<QORConstantNode> fourth;
    Held<QORStatementNode> owner;
    auto* const third = new QORConstantNode;
    first->addNextExpressionNode(second);
    second->addNextExpressionNode(third);
    third->addNextExpressionNode(fourth);
    owner->addExpressionNode(fourth);
    delete third;
    EXPECT_EQ(second->getNextExpressionNode(), nullptr);
    EXPECT_EQ(second->getPreviousExpressionNode(), first.get());
    EXPECT_EQ(fourth->getPreviousExpressionNode(), nullptr);
    EXPECT_EQ(fourth->getStatementNode(), owner.get());
}

TEST(QORExpressionNode, TakesAWholeFreeChainOnlyAsFarAsNothingIsLeft) {
    Journal journal;
    auto* const a = watched<QORConstantNode>(journal, "a");
    auto* const b = watched<QORConstantNode>(journal, "b");
    Held<Watched<QORConstantNode>> c(journal, "c");
    Held<Watched<QORConstantNode>> d(journal, "d");
    a->addNextExpressionNode(b);
    b->addNextExpressionNode(c);
    c->addNextExpressionNode(d);
    delete b;
    EXPECT_EQ(journal.deaths, (Labels{"b", "a"}));
    EXPECT_EQ(c->getPreviousExpressionNode(), nullptr);
    EXPECT_EQ(c->getNextExpressionNode(), d.get());
}

TEST(QORExpressionNode, DeletesFreeFarObjectsInOrder) {
    Journal journal;
    QORConstantNode node;
    node.addReferencedByStatementNode(watched<QORStatementNode>(journal, "referrer"));
    node.addNextExpressionNode(watched<QORConstantNode>(journal, "next"));
    node.addPreviousExpressionNode(watched<QORConstantNode>(journal, "previous"));
    node.addType(watched<QORBaseType>(journal, "type"));
    node.addElementNode(watched<QORElementNode>(journal, "element node"));
    node.addNote(watched<QORNote>(journal, "note"));
    EXPECT_TRUE(node.recursiveDelete());
    EXPECT_EQ(journal.deaths, (Labels{"note", "element node", "type", "previous", "next", "referrer"}));
}

TEST(QORExpressionNode, IsolatesInItsOwnOrder) {
    Journal journal;
    Watched<QORConstantNode> node(journal, "node");
    node.addNote(watched<QORNote>(journal, "note"));
    node.addReferencedByStatementNode(watched<QORStatementNode>(journal, "referrer"));
    node.addNextExpressionNode(watched<QORConstantNode>(journal, "next"));
    node.addPreviousExpressionNode(watched<QORConstantNode>(journal, "previous"));
    node.addStatementNode(watched<QORStatementNode>(journal, "statement"));
    node.addDelimiterNode(watched<QORDelimiterNode>(journal, "delimiter"));
    node.addBranchingNode(watched<QORBranchingNode>(journal, "branching"));
    node.addConditionOfBranchingNode(watched<QORBranchingNode>(journal, "condition of"));
    node.addRightOfOperatorNode(watched<QOROperatorNode>(journal, "right of"));
    node.addLeftOfOperatorNode(watched<QOROperatorNode>(journal, "left of"));
    node.addPredicateNode(watched<QORPredicateNode>(journal, "predicate"));
    node.addOperationNode(watched<QOROperationNode>(journal, "operation"));
    node.addType(watched<QORBaseType>(journal, "type"));
    EXPECT_EQ(node.isolate(true), &node);
    EXPECT_EQ(journal.deaths,
              (Labels{"type", "operation", "predicate", "left of", "right of", "condition of", "branching",
                      "delimiter", "statement", "previous", "next", "referrer", "note"}));
}

TEST(QORExpressionNode, ReencodesItsOriginalTextBeforeItsName) {
    Journal journal;
    Held<Watched<QORConstantNode>> node(journal, "node");
    Held<Watched<QORConstantNode>> next(journal, "next");
    node->addNextExpressionNode(next);
    node->QORConstantNode::setName(rawText);
    node->setOriginalText(rawText);
    node->onSetName = [&] { EXPECT_STREQ(node->getOriginalText().chars, recodedText); };
    Recoding recode;
    recode(*node);
    EXPECT_EQ(journal.namings, Labels{"node"});
    EXPECT_EQ(journal.recodings, Labels{"node"});
    EXPECT_STREQ(node->getName().chars, recodedText);
}

TEST(QORExpressionNode, WalksNotesAndNoNeighbour) {
    Held<QORConstantNode> node;
    Held<QORConstantNode> previous;
    Held<QORConstantNode> next;
    Held<QORNote> note;
    node->addPreviousExpressionNode(previous);
    node->addNextExpressionNode(next);
    node->addNote(note);
    EXPECT_EQ(walkOf(*node), (Objects{node, note}));
}

TEST(QORExpressionNode, ComparesItsFourAttributesAndTheElement) {
    expectCompared<QORConstantNode>([](auto& node) { node.setPosition(1); });
    expectCompared<QORConstantNode>([](auto& node) { node.setBlock(true); });
    expectCompared<QORConstantNode>([](auto& node) { node.setOriginalText("x"); });
    expectCompared<QORConstantNode>([](auto& node) { node.setStatus(1); });
    expectCompared<QORConstantNode>([](auto& node) { node.setName("x"); });
    expectCompared<QORConstantNode>([](auto& node) { node.setNativeType("x"); });
}

TEST(QORExpressionNode, ACopyHasNoOwnerAndNoChain) {
    Held<QORConstantNode> source;
    Held<QORConstantNode> next;
    Held<QORStatementNode> owner;
    source->setPosition(2);
    source->setBlock(true);
    source->setOriginalText("t");
    source->setStatus(3);
    source->addNextExpressionNode(next);
    owner->addExpressionNode(source);
    QORConstantNode const copy(*source);
    EXPECT_TRUE(copy.equals(*source));
    EXPECT_FALSE(copy.isReferenced());
    QORConstantNode assigned;
    assigned = *source;
    EXPECT_TRUE(assigned.equals(*source));
    EXPECT_FALSE(assigned.isReferenced());
}
