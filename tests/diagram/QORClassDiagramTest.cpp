#include "Graph.h"

#include <qor/QORClass.h>
#include <qor/QORClassDiagram.h>

TEST(QORClassDiagram, IsSetFromAnyModelObject) {
    QORClass source;
    source.setName("source");
    source.setPhysicalName("physical");
    source.setComment("comment");
    source.setNativeId("id");
    QORClassDiagram diagram;
    EXPECT_EQ(&diagram.setFrom(source), &diagram);
    EXPECT_STREQ(diagram.getName().chars, "source");
    EXPECT_STREQ(diagram.getPhysicalName().chars, "physical");
    EXPECT_STREQ(diagram.getComment().chars, "comment");
    EXPECT_STREQ(diagram.getNativeId().chars, "");
    EXPECT_EQ(diagram.getElementType(), QORElementType::CLASS_DIAGRAM);
}
