#include "Graph.h"

#include <qor/QORBaseType.h>
#include <qor/QORConstantNode.h>
#include <qor/QORDelimiterNode.h>

TEST(QORDelimiterNode, DeletesItsMembersAfterWhatANodeHas) {
    Graph graph;
    QORDelimiterNode node;
    node.addExpressionNode(graph.mortal<QORConstantNode>("member"));
    node.addType(graph.mortal<QORBaseType>("type"));
    EXPECT_TRUE(node.recursiveDelete());
    EXPECT_EQ(graph.deaths, (Labels{"type", "member"}));
}

TEST(QORDelimiterNode, IsolatesItsMembersBeforeWhatANodeHas) {
    Graph graph;
    QORDelimiterNode node;
    node.addType(graph.mortal<QORBaseType>("type"));
    node.addExpressionNode(graph.mortal<QORConstantNode>("member"));
    node.isolate(true);
    EXPECT_EQ(graph.deaths, (Labels{"member", "type"}));
}

TEST(QORDelimiterNode, ReencodesItsDelimiterAndItsMembers) {
    Graph graph;
    Mortal<QORDelimiterNode> node(graph, "node");
    node.setDelimiter(inUtf8);
    node.setOriginalText(notInLatin1);
    node.QORDelimiterNode::setName(inUtf8);
    auto* const member = graph.mortal<QORConstantNode>("member");
    node.addExpressionNode(member);
    node.onSetName = [&] { EXPECT_STREQ(node.getDelimiter().chars, inLatin1); };
    EXPECT_EQ(walkOf(node), (Objects{&node, member}));
    Recoding recode;
    recode(node);
    EXPECT_EQ(graph.namings, (Labels{"node", "member"}));
    EXPECT_EQ(graph.recodings, (Labels{"node", "member"}));
    EXPECT_STREQ(node.getOriginalText().chars, notInLatin1);
    EXPECT_STREQ(node.getName().chars, inLatin1);
}
