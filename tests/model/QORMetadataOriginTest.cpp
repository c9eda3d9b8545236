#include "Expectations.h"

#include <qor/QORElementNode.h>
#include <qor/QORMappingModel.h>
#include <qor/QORMetadataOrigin.h>
#include <qor/QORModel.h>

namespace {

void link(Graph& graph, QORMetadataOrigin& object, Owners owners) {
    ASSERT_TRUE(object.addElementNode(graph.mortal<QORElementNode>("node")));
    ASSERT_TRUE(object.addNote(graph.mortal<QORNote>("note")));
    linkOwner(graph, owners, "model", object, &QORMetadataOrigin::addModel);
    linkFurtherOwner(graph, owners, "mapping", object, &QORMetadataOrigin::addMappingModel);
}

} // namespace

TEST(QORMetadataOrigin, TheEncodingIsNotReplacedByThatOfTheTexts) {
    QORMetadataOrigin origin;
    origin.setEncoding("utf-8");
    Recoding recode;
    recode(origin);
    EXPECT_EQ(origin.getEncoding(), "utf-8");
}

TEST(QORMetadataOrigin, ItsModelGoesBeforeItsMappingModel) {
    Graph graph;
    auto* const origin = graph.make<QORMetadataOrigin>();
    auto* const model = graph.make<QORModel>();
    auto* const mapping = graph.make<QORMappingModel>();
    ASSERT_TRUE(mapping->addMetadataOrigin(origin));
    expectParent(*origin, mapping, 1);
    ASSERT_TRUE(model->addMetadataOrigin(origin));
    expectLeaves(*origin, {model, mapping});
    EXPECT_EQ(model->getMetadataOrigin(), nullptr);
    EXPECT_EQ(mapping->getMetadataOrigin(), nullptr);
}

TEST(QORMetadataOrigin, IsTakenApartInOrder) {
    expectTakenApart<QORMetadataOrigin>(link, {"model", "mapping", "note", "node"}, {"note", "node"});
}

TEST(QORMetadataOrigin, ReachesItsNotesOnly) {
    expectChildrenReached<QORMetadataOrigin>(link, {"note"});
}

TEST(QORMetadataOrigin, RemovingItsModelDeletesAModelThatIsLeftWithoutReference) {
    Graph graph;
    auto* const origin = graph.make<QORMetadataOrigin>();
    auto* const alone = graph.mortal<QORModel>("alone");
    ASSERT_TRUE(origin->addModel(alone));
    EXPECT_TRUE(origin->removeModel(alone));
    EXPECT_EQ(graph.deaths, Labels());
    ASSERT_TRUE(origin->addModel(alone));
    EXPECT_TRUE(origin->removeModel());
    EXPECT_EQ(graph.deaths, Labels{"alone"});
    EXPECT_FALSE(origin->removeModel());

    auto* const held = graph.make<QORModel>();
    ASSERT_TRUE(held->addNote(graph.make<QORNote>()) && origin->addModel(held));
    EXPECT_TRUE(origin->removeModel());
    EXPECT_EQ(held->getMetadataOrigin(), nullptr);
}

TEST(QORMetadataOrigin, WithTwoOwnersItDiesWithTheSecondOne) {
    Graph graph;
    auto* const origin = graph.mortal<QORMetadataOrigin>("origin");
    auto* const model = new QORModel;
    auto* const mapping = new QORMappingModel;
    ASSERT_TRUE(origin->addModel(model) && origin->addMappingModel(mapping));
    EXPECT_FALSE(origin->recursiveDelete());
    delete model;
    EXPECT_EQ(graph.deaths, Labels());
    expectParent(*origin, mapping, 1);
    EXPECT_FALSE(origin->recursiveDelete());
    delete mapping;
    EXPECT_EQ(graph.deaths, Labels{"origin"});
}

TEST(QORMetadataOrigin, DeletedWithTwoOwnersItLeavesBothAndItsNotesDie) {
    Graph graph;
    auto* const origin = new QORMetadataOrigin;
    link(graph, *origin, Owners::NONE);
    auto* const model = graph.make<QORModel>();
    auto* const mapping = graph.make<QORMappingModel>();
    ASSERT_TRUE(origin->addModel(model) && origin->addMappingModel(mapping));
    delete origin;
    EXPECT_EQ(graph.deaths, (Labels{"note", "node"}));
    EXPECT_EQ(model->getMetadataOrigin(), nullptr);
    EXPECT_EQ(mapping->getMetadataOrigin(), nullptr);
}

TEST(QORMetadataOrigin, KeepsItsOwnersWhenItIsNamed) {
    Graph graph;
    auto* const origin = graph.make<QORMetadataOrigin>();
    auto* const model = graph.make<QORModel>();
    auto* const mapping = graph.make<QORMappingModel>();
    origin->setName("A");
    EXPECT_EQ(origin->getName(), "A");
    ASSERT_TRUE(origin->addMappingModel(mapping));
    origin->setName("B");
    EXPECT_EQ(origin->getName(), "B");
    EXPECT_EQ(mapping->getMetadataOrigin(), origin);
    ASSERT_TRUE(origin->addModel(model));
    origin->setName("C");
    EXPECT_EQ(origin->getName(), "C");
    EXPECT_EQ(model->getMetadataOrigin(), origin);
    EXPECT_EQ(origin->getModel(), model);
    EXPECT_EQ(origin->getMappingModel(), mapping);
}
