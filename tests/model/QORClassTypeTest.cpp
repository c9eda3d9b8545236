#include "TypeEnds.h"

#include <qor/QORClass.h>
#include <qor/QORClassType.h>
#include <qor/QORTypeValueByPosition.h>

namespace {

void linkEnds(Graph& graph, QORClassType& type, Owners owners) {
    linkTypeEnds(graph, type, owners);
    ASSERT_TRUE(type.addAssociatedClass(graph.mortal<QORClass>("class")));
}

} // namespace

TEST(QORClassType, AnswersWithConstantsWhateverItsClass) {
    Graph graph;
    auto* const type = graph.make<QORClassType>("T");
    ASSERT_TRUE(type->addAssociatedClass(graph.make<QORClass>("C")));
    EXPECT_EQ(type->getDataType(), "undefined");
    EXPECT_EQ(&type->getDataType(), &graph.make<QORClassType>()->getDataType());
    EXPECT_EQ(type->getLength(), 0);
    EXPECT_EQ(type->getScale(), 0);
    EXPECT_EQ(&type->getInitialValue(), &emptyString);
    EXPECT_EQ(&type->getLowerBound(), &emptyString);
    EXPECT_EQ(&type->getUpperBound(), &emptyString);
    EXPECT_EQ(&type->getNativeDataType(), &emptyString);
    EXPECT_EQ(&type->getNativeLogicalDataType(), &emptyString);
    EXPECT_TRUE(type->getUserDefined());
    EXPECT_FALSE(type->getUserDataType());
    EXPECT_EQ(type->getActualType(), type);
    EXPECT_EQ(type->getDisplayName(), "undefined_0_0");
}

TEST(QORClassType, HasNoTypeValues) {
    QORClassType const type;
    QORTypeValue value;
    int cursor = 0;
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

TEST(QORClassType, HasNoneOfTheAttributesThatItAnswers) {
    QORClassType type;
    for (QORAttributeType const each :
         {QORAttributeType::CONCRETE_TYPE__DATA_TYPE, QORAttributeType::CONCRETE_TYPE__LENGTH,
          QORAttributeType::CONCRETE_TYPE__SCALE})
        EXPECT_FALSE(type.isInstanceOf(
            QORMetaRepository::getMetaRepository()->getMetaAttributeByID(each)->getMetaClass()->getId()));
}

TEST(QORClassType, IsTakenApartInOrder) {
    expectTakenApart<QORClassType>(
        linkEnds,
        {"class", "model", "mappingModel", "argument", "operation", "alias", "feature", "node", "base"},
        {"base", "argument", "operation", "alias", "feature", "node", "class"});
}
