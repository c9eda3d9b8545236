#include "TypeEnds.h"

#include <qor/QORBaseType.h>
#include <qor/QORTypeValueByPosition.h>

namespace {

void linkEnds(Graph& graph, QORBaseType& type, Owners owners) {
    linkTypeEnds(graph, type, owners);
    ASSERT_TRUE(type.addDerivedType(graph.mortal<QORDerivedType>("derived")));
}

} // namespace

TEST(QORBaseType, ShowsItsShapeAndNotItsName) {
    QORBaseType type;
    type.setName("T");
    EXPECT_EQ(type.getDisplayName(), "_0_0");
    type.setDataType("SQL_CHAR");
    EXPECT_EQ(type.getDisplayName(), "SQL_CHAR_0_0");
    type.setLength(10);
    type.setScale(-2);
    EXPECT_EQ(type.getDisplayName(), "SQL_CHAR_10_-2");
}

TEST(QORBaseType, AnswersNothingToWhatItHasNot) {
    QORBaseType const type;
    EXPECT_EQ(&type.getInitialValue(), &emptyString);
    EXPECT_EQ(&type.getLowerBound(), &emptyString);
    EXPECT_EQ(&type.getUpperBound(), &emptyString);
    EXPECT_EQ(&type.getNativeDataType(), &emptyString);
    EXPECT_EQ(&type.getNativeLogicalDataType(), &emptyString);
    EXPECT_FALSE(type.getUserDefined());
    EXPECT_FALSE(type.getUserDataType());
    EXPECT_EQ(type.getActualType(), &type);
}

TEST(QORBaseType, HasNoTypeValues) {
    QORBaseType const type;
    QORTypeValue value;
    int cursor = 3;
    EXPECT_EQ(type.getTypeValueCount(), 0);
    EXPECT_FALSE(type.containsTypeValue(&value));
    EXPECT_EQ(type.getTypeValue(0), nullptr);
    EXPECT_EQ(type.getTypeValue("", nullptr), nullptr);
    EXPECT_EQ(type.getTypeValue("", &cursor), nullptr);
    QORTypeValueByPosition view;
    ASSERT_TRUE(view.add(&value, false, nullptr));
    type.getTypeValueByPosition(view);
    EXPECT_EQ(view.size, 0);
}

TEST(QORBaseType, IsTakenApartInOrder) {
    expectTakenApart<QORBaseType>(
        linkEnds,
        {"derived", "model", "mappingModel", "argument", "operation", "alias", "feature", "node", "base"},
        {"base", "argument", "operation", "alias", "feature", "node", "derived"});
}
