#include "GraphObservers.h"

#include <qor/QORBaseType.h>
#include <qor/QORConstantNode.h>
#include <qor/QORDelimiterNode.h>
#include <qor/QORExpressionNodeByPosition.h>

using namespace graph;

TEST(QORDelimiterNode, IsAParserNode) {
    expectConcrete<QORDelimiterNode>(QORElementType::DELIMITER_NODE, 107, "DelimiterNode",
                                     QORParserNode::getStaticMetaClass());
}

TEST(QORDelimiterNode, StartsWithoutADelimiter) {
    EXPECT_STREQ(QORDelimiterNode().getDelimiter().chars, "");
}

TEST(QORDelimiterNode, IsReferencedThroughItsMembers) {
    using N = QORDelimiterNode;
    expectReferencedThrough<N, QORConstantNode>(&N::addExpressionNode, &N::removeExpressionNode);
}

TEST(QORDelimiterNode, FillsAViewOfItsMembersByPosition) {
    QORDelimiterNode node;
    for (char const* name : {"c", "a", "b"}) // of one position, so the names decide
        node.addExpressionNode(named<QORConstantNode>(name));
    QORExpressionNodeByPosition view;
    node.getExpressionNodeByPosition(view);
    EXPECT_EQ(namesIn(view), (Labels{"a", "b", "c"}));
}

TEST(QORDelimiterNode, DeletesItsMembersAfterWhatANodeHas) {
    Journal journal;
    QORDelimiterNode node;
    node.addExpressionNode(watched<QORConstantNode>(journal, "member"));
    node.addType(watched<QORBaseType>(journal, "type"));
    EXPECT_TRUE(node.recursiveDelete());
    EXPECT_EQ(journal.deaths, (Labels{"type", "member"}));
}

TEST(QORDelimiterNode, IsolatesItsMembersBeforeWhatANodeHas) {
    Journal journal;
    QORDelimiterNode node;
    node.addType(watched<QORBaseType>(journal, "type"));
    node.addExpressionNode(watched<QORConstantNode>(journal, "member"));
    node.isolate(true);
    EXPECT_EQ(journal.deaths, (Labels{"member", "type"}));
}

TEST(QORDelimiterNode, ReencodesItsDelimiterAndItsMembers) {
    Journal journal;
    Watched<QORDelimiterNode> node(journal, "node");
    node.setDelimiter(rawText);
    node.setOriginalText(stubbornText);
    node.QORDelimiterNode::setName(rawText);
    auto* const member = watched<QORConstantNode>(journal, "member");
    node.addExpressionNode(member);
    node.onSetName = [&] { EXPECT_STREQ(node.getDelimiter().chars, recodedText); };
    EXPECT_EQ(walkOf(node), (Objects{&node, member}));
    Recoding recode;
    recode(node);
    EXPECT_EQ(journal.namings, Labels{"node"});
    EXPECT_EQ(journal.recodings, (Labels{"node", "member"}));
    EXPECT_STREQ(node.getOriginalText().chars, stubbornText);
    EXPECT_STREQ(node.getName().chars, recodedText);
}

TEST(QORDelimiterNode, ComparesAndCopiesItsDelimiter) {
    expectCompared<QORDelimiterNode>([](auto& node) { node.setDelimiter(","); });
    expectCompared<QORDelimiterNode>([](auto& node) { node.setStatus(1); });
    QORDelimiterNode source;
    source.setDelimiter(";");
    source.setPosition(1);
    EXPECT_TRUE(QORDelimiterNode(source).equals(source));
    QORDelimiterNode assigned;
    assigned.setFrom(source);
    EXPECT_TRUE(assigned.equals(source));
}
