#include "ReportItemSupport.h"

#include <qor/QORReportText.h>

using namespace graph;

TEST(QORReportText, IsAReportItem) {
    expectConcrete<QORReportText>(QORElementType::REPORT_TEXT, 133, "ReportText",
                                  QORReportItem::getStaticMetaClass());
    expectPlainReportItem<QORReportText>();
}

TEST(QORReportText, ComparesAndCopiesItsValue) {
    EXPECT_STREQ(QORReportText().getValue().chars, "");
    expectCompared<QORReportText>([](auto& text) { text.setValue("x"); });
    QORReportText source;
    source.setValue("v");
    source.setPosition(2);
    EXPECT_TRUE(QORReportText(source).equals(source));
    QORReportText target;
    target.setFrom(source);
    EXPECT_TRUE(target.equals(source));
}

TEST(QORReportText, ReencodesItsValueBeforeItsName) {
    Journal journal;
    Watched<QORReportText> text(journal, "text");
    text.QORReportText::setName(rawText);
    text.setValue(rawText);
    text.setComment(stubbornText);
    text.addChildReportItem(watched<QORReportText>(journal, "child"));
    text.onSetName = [&] {
        EXPECT_STREQ(text.getValue().chars, recodedText);
        EXPECT_EQ(journal.recodings, Labels{"text"});
    };
    Recoding recode;
    recode(text);
    EXPECT_EQ(journal.namings, Labels{"text"});
    EXPECT_EQ(journal.recodings, (Labels{"text", "child"}));
    EXPECT_STREQ(text.getComment().chars, stubbornText);
    EXPECT_EQ(recode.errors, 1);
}
