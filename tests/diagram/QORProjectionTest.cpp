#include "GraphObservers.h"

#include <qor/QORClass.h>
#include <qor/QORClassDiagram.h>
#include <qor/QORMetaAttribute.h>
#include <qor/QORProjection.h>
#include <qor/QORRelationshipProjection.h>

#include <climits>

using namespace graph;

TEST(QORProjection, IsAPresentationElement) {
    expectConcrete<QORProjection>(QORElementType::PROJECTION, 62, "Projection",
                                  QORPresentationElement::getStaticMetaClass());
}

TEST(QORProjection, StartsWhiteAndOtherwiseEmpty) {
    QORProjection projection;
    EXPECT_EQ(projection.getBackgroundColor(), 16777215);
    EXPECT_EQ(projection.getLineColor(), 0);
    EXPECT_EQ(projection.getFontColor(), 0);
    EXPECT_STREQ(projection.getFontName().chars, "");
    EXPECT_EQ(projection.getFontSize(), 0);
    EXPECT_EQ(projection.getX(), 0);
    EXPECT_EQ(projection.getY(), 0);
    EXPECT_EQ(projection.getWidth(), 0);
    EXPECT_EQ(projection.getHeight(), 0);
    EXPECT_FALSE(projection.getItalic());
    EXPECT_FALSE(projection.getBold());
    EXPECT_FALSE(projection.getUnderline());
    EXPECT_FALSE(projection.getStrike());
}

TEST(QORProjection, ListsItsAttributesInOrderOfItsFields) {
    QORVector const& attributes = QORProjection::getStaticMetaClass()->getMetaAttributes();
    Labels names;
    std::vector<int> ids;
    Labels defaults;
    for (int i = 0; i < attributes.size; ++i) {
        auto const* const attribute = static_cast<QORMetaAttribute const*>(attributes[i]);
        names.emplace_back(attribute->getDisplayName().chars);
        ids.push_back(attribute->getId());
        defaults.emplace_back(attribute->getDefaultValue().chars);
    }
    EXPECT_EQ(names,
              (Labels{"id", "name", "backgroundColor", "lineColor", "fontColor", "fontName", "fontSize", "x",
                      "y", "width", "height", "italic", "bold", "underline", "strike"}));
    EXPECT_EQ(ids,
              (std::vector<int>{173, 174, 127, 134, 129, 130, 131, 138, 139, 137, 132, 133, 128, 136, 135}));
    EXPECT_EQ(defaults, (Labels{"0", "", "16777215", "0", "0", "", "0", "0", "0", "0", "0", "false", "false",
                                "false", "false"}));
}

TEST(QORProjection, ReadsAndSetsItsPlaceThroughReflection) {
    QORProjection projection;
    QORMetaClass const* const metaClass = projection.getMetaClass();
    QORMetaAttribute const* const x = metaClass->getMetaAttributeByDisplayName("x");
    QORMetaAttribute const* const y = metaClass->getMetaAttributeByName("PROJECTION__Y");
    ASSERT_NE(x, nullptr);
    ASSERT_NE(y, nullptr);
    QORString text("-7");
    x->setValue(&projection, text);
    text = "9";
    y->setValue(&projection, text);
    EXPECT_EQ(projection.getX(), -7);
    EXPECT_EQ(projection.getY(), 9);
    EXPECT_STREQ(x->getValue(&projection).chars, "-7");
}

TEST(QORProjection, StoresAnyNumberUnchanged) {
    QORProjection projection;
    projection.setWidth(-1);
    projection.setHeight(INT_MIN);
    projection.setBackgroundColor(16777216);
    projection.setLineColor(INT_MAX);
    EXPECT_EQ(projection.getWidth(), -1);
    EXPECT_EQ(projection.getHeight(), INT_MIN);
    EXPECT_EQ(projection.getBackgroundColor(), 16777216);
    EXPECT_EQ(projection.getLineColor(), INT_MAX);
}

TEST(QORProjection, ComparesAllItsAttributesAndItsName) {
    expectCompared<QORProjection>([](auto& each) { each.setBackgroundColor(1); });
    expectCompared<QORProjection>([](auto& each) { each.setLineColor(1); });
    expectCompared<QORProjection>([](auto& each) { each.setFontColor(1); });
    expectCompared<QORProjection>([](auto& each) { each.setFontName("x"); });
    expectCompared<QORProjection>([](auto& each) { each.setFontSize(1); });
    expectCompared<QORProjection>([](auto& each) { each.setX(1); });
    expectCompared<QORProjection>([](auto& each) { each.setY(1); });
    expectCompared<QORProjection>([](auto& each) { each.setWidth(1); });
    expectCompared<QORProjection>([](auto& each) { each.setHeight(1); });
    expectCompared<QORProjection>([](auto& each) { each.setItalic(true); });
    expectCompared<QORProjection>([](auto& each) { each.setBold(true); });
    expectCompared<QORProjection>([](auto& each) { each.setUnderline(true); });
    expectCompared<QORProjection>([](auto& each) { each.setStrike(true); });
    expectCompared<QORProjection>([](auto& each) { each.setName("x"); });
}

TEST(QORProjection, ComparesNoSubjectAndNoDiagram) {
    Held<QORProjection> one;
    Held<QORProjection> two;
    Held<QORClass> subject("s");
    Held<QORClassDiagram> diagram("d");
    one->addSubjectModelObject(subject);
    one->addDiagram(diagram);
    EXPECT_TRUE(one->equals(*two));
    EXPECT_TRUE(two->equals(*one));
}

TEST(QORProjection, CopiesAllAttributesAndNoLink) {
    Held<QORProjection> source("n");
    Held<QORClass> subject;
    Held<QORClassDiagram> diagram;
    source->addSubjectModelObject(subject);
    source->addDiagram(diagram);
    source->setBackgroundColor(1);
    source->setLineColor(2);
    source->setFontColor(3);
    source->setFontName("f");
    source->setFontSize(4);
    source->setX(5);
    source->setY(6);
    source->setWidth(7);
    source->setHeight(8);
    source->setItalic(true);
    source->setBold(true);
    source->setUnderline(true);
    source->setStrike(true);
    QORProjection const copy(*source);
    EXPECT_TRUE(copy.equals(*source));
    EXPECT_EQ(copy.getStrike(), true);
    EXPECT_EQ(copy.getY(), 6);
    EXPECT_FALSE(copy.isReferenced());
    QORProjection target;
    target.setFrom(*source);
    EXPECT_TRUE(target.equals(*source));
    EXPECT_FALSE(target.isReferenced());
}

TEST(QORProjection, ReencodesItsFontNameBeforeItsName) {
    Journal journal;
    Watched<QORProjection> projection(journal, "projection");
    projection.QORProjection::setName(rawText);
    projection.setFontName(rawText);
    projection.onSetName = [&] { EXPECT_STREQ(projection.getFontName().chars, recodedText); };
    Recoding recode;
    recode(projection);
    EXPECT_EQ(journal.namings, Labels{"projection"});
    EXPECT_EQ(recode.first, 2);
    QORProjection stubborn;
    stubborn.setFontName(stubbornText);
    stubborn.setName(rawText);
    recode(stubborn);
    EXPECT_STREQ(stubborn.getFontName().chars, stubbornText);
    EXPECT_STREQ(stubborn.getName().chars, recodedText);
}

TEST(QORProjection, EqualsNoRelationshipProjection) {
    QORProjection const box;
    QORRelationshipProjection const line;
    EXPECT_FALSE(box.equals(line));
    EXPECT_FALSE(line.equals(box));
    EXPECT_TRUE(box.finalEquals(line));
}
