#include "Graph.h"

#include <qor/QORConstantNode.h>

TEST(QORConstantNode, ShowsItsName) {
    QORConstantNode node;
    node.setName("42");
    node.setOriginalText("0x2A");
    EXPECT_STREQ(node.getDisplayName().chars, "42");
}
