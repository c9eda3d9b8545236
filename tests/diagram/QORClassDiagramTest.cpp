#include "GraphObservers.h"

#include <qor/QORClass.h>
#include <qor/QORClassDiagram.h>
#include <qor/QORDesignPackage.h>
#include <qor/QORProjection.h>

using namespace graph;

TEST(QORClassDiagram, IsADiagram) {
    expectConcrete<QORClassDiagram>(QORElementType::CLASS_DIAGRAM, 11, "ClassDiagram",
                                    QORDiagram::getStaticMetaClass());
}

TEST(QORClassDiagram, ComparesAsAModelObjectOfItsOwnKind) {
    expectCompared<QORClassDiagram>([](auto& diagram) { diagram.setPhysicalName("x"); });
    expectCompared<QORClassDiagram>(
        [](auto& diagram) { diagram.setDesignLevel(QORDesignLevelType::PHYSICAL_ONLY); });
    expectNotCompared<QORClassDiagram>([](auto& diagram) { diagram.setComment("x"); });
    expectNotCompared<QORClassDiagram>(
        [](auto& diagram) { diagram.addPresentationElement(new QORProjection); });
    QORClassDiagram const diagram;
    EXPECT_FALSE(diagram.equals(QORClass()));
}

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

TEST(QORClassDiagram, CopiesNoLink) {
    Held<QORClassDiagram> source;
    Held<QORDesignPackage> package;
    Held<QORProjection> projection;
    package->addDiagram(source);
    source->addPresentationElement(projection);
    QORClassDiagram const copy(*source);
    EXPECT_TRUE(copy.equals(*source));
    EXPECT_FALSE(copy.isReferenced());
    EXPECT_EQ(projection->getDiagram(), source.get());
}
