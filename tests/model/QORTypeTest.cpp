#include "TypeEnds.h"

#include <qor/QORBaseType.h>
#include <qor/QORClassType.h>

TEST(QORType, ANewNameMovesATypeInItsModelAlone) {
    Graph graph;
    auto* const model = graph.make<QORModel>();
    auto* const mappingModel = graph.make<QORMappingModel>();
    auto* const first = graph.make<QORBaseType>("A");
    auto* const second = graph.make<QORBaseType>("B");
    for (QORBaseType* const each : {first, second})
        ASSERT_TRUE(model->addType(each) && mappingModel->addType(each));
    first->setName("C");
    EXPECT_EQ(model->getType(0), second);
    EXPECT_EQ(model->getType(1), first);
    EXPECT_EQ(mappingModel->getType(0), first);
    EXPECT_EQ(mappingModel->getType(1), second);
}

TEST(QORType, WithoutModelANewNameMovesItInItsMappingModel) {
    Graph graph;
    auto* const mappingModel = graph.make<QORMappingModel>();
    auto* const first = graph.make<QORClassType>("A");
    auto* const second = graph.make<QORBaseType>("B");
    ASSERT_TRUE(mappingModel->addType(first) && mappingModel->addType(second));
    first->setName("C");
    EXPECT_EQ(mappingModel->getType(0), second);
    EXPECT_EQ(mappingModel->getType(1), first);
}

TEST(QORType, TheModelIsTheFirstOfTwoParents) {
    Graph graph;
    auto* const model = graph.make<QORModel>();
    auto* const mappingModel = graph.make<QORMappingModel>();
    auto* const type = graph.make<QORBaseType>();
    EXPECT_EQ(type->getParent(), nullptr);
    EXPECT_EQ(type->removeAggregationAssembly(), nullptr);
    ASSERT_TRUE(type->addMappingModel(mappingModel));
    EXPECT_EQ(type->getParent(), mappingModel);
    EXPECT_EQ(type->getParentCount(), 1);
    ASSERT_TRUE(type->addModel(model));
    EXPECT_EQ(type->getParent(), model);
    EXPECT_EQ(type->getParentCount(), 2);
    EXPECT_EQ(type->removeAggregationAssembly(), model);
    EXPECT_EQ(type->getModel(), nullptr);
    EXPECT_EQ(type->getMappingModel(), mappingModel);
    EXPECT_EQ(type->removeAggregationAssembly(), mappingModel);
    EXPECT_EQ(type->removeAggregationAssembly(), nullptr);
    EXPECT_EQ(model->getTypeCount() + mappingModel->getTypeCount(), 0);
}

TEST(QORType, AnOwnerThatDiesLeavesATypeToTheOtherOne) {
    Graph graph;
    auto* const model = new QORModel;
    auto* const mappingModel = graph.make<QORMappingModel>();
    auto* const type = graph.make<QORBaseType>();
    auto* const feature = graph.make<QORAttribute>();
    ASSERT_TRUE(model->addType(type) && mappingModel->addType(type) && type->addFeature(feature));
    delete model;
    EXPECT_EQ(type->getModel(), nullptr);
    EXPECT_EQ(type->getMappingModel(), mappingModel);
    EXPECT_EQ(feature->getType(), type);
}

TEST(QORType, ATypeInUseSurvivesTheLossOfOneUser) {
    Graph graph;
    auto* const type = graph.mortal<QORBaseType>("type");
    auto* const feature = graph.make<QORAttribute>();
    auto* const argument = graph.make<QORArgument>();
    ASSERT_TRUE(feature->addType(type) && argument->addType(type));
    EXPECT_TRUE(feature->removeType());
    EXPECT_EQ(graph.deaths, Labels());
    EXPECT_TRUE(argument->removeType());
    EXPECT_EQ(graph.deaths, Labels{"type"});
}

TEST(QORType, TheShapeIsReadThroughTheVirtualOperations) {
    class Fixed : public QORBaseType {
    public:
        QORString const& getDataType() const override {
            static QORString const fixed("FIXED");
            return fixed;
        }
        int getLength() const override { return -7; }
        int getScale() const override { return 12; }
    } const type;
    EXPECT_EQ(type.getDisplayName(), "FIXED_-7_12");
}
