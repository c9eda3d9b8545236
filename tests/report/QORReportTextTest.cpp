#include "Expectations.h"

#include <qor/QORReportText.h>

TEST(QORReportText, ReencodesItsValueBeforeItsName) {
    Graph graph;
    Mortal<QORReportText> text(graph, "text");
    text.QORReportText::setName(inUtf8);
    text.setValue(inUtf8);
    text.setComment(notInLatin1);
    text.addChildReportItem(graph.mortal<QORReportText>("child"));
    text.onSetName = [&] {
        EXPECT_STREQ(text.getValue().chars, inLatin1);
        EXPECT_EQ(graph.recodings, Labels{"text"});
    };
    Recoding recode;
    recode(text);
    EXPECT_EQ(graph.namings, (Labels{"text", "child"}));
    EXPECT_EQ(graph.recodings, (Labels{"text", "child"}));
    EXPECT_STREQ(text.getComment().chars, notInLatin1);
    EXPECT_EQ(recode.errors, 1);
}
