#include "Expectations.h"

#include <qor/QORClassifierMap.h>
#include <qor/QORDataSet.h>
#include <qor/QORMappingModel.h>
#include <qor/QORNote.h>
#include <qor/QORTransformation.h>
#include <qor/QORTransformationActivity.h>
#include <qor/QORTransformationStep.h>
#include <qor/QORTransformationTask.h>

namespace {

/// A transformation under all of its four possible owners at once.
struct UnderFour {
    Graph graph;
    QORTransformation* const transformation = graph.make<QORTransformation>("t");
    QORMappingModel* const model = graph.make<QORMappingModel>();
    QORTransformationTask* const task = graph.make<QORTransformationTask>();
    QORTransformationStep* const step = graph.make<QORTransformationStep>();
    QORTransformationActivity* const activity = graph.make<QORTransformationActivity>();

    UnderFour() {
        EXPECT_TRUE(activity->addTransformation(transformation));
        EXPECT_TRUE(step->addTransformation(transformation));
        EXPECT_TRUE(task->addTransformation(transformation));
        EXPECT_TRUE(model->addTransformation(transformation));
    }

    Objects owners() const { return {model, task, step, activity}; }
};

} // namespace

TEST(QORTransformation, LeavesItsFourOwnersOneAfterTheOther) {
    UnderFour const four;
    int owners = 4;
    for (QORObject* const owner : four.owners()) {
        EXPECT_EQ(four.transformation->getParent(), owner);
        EXPECT_EQ(four.transformation->getParentCount(), owners);
        expectDeletionRefused(*four.transformation);
        EXPECT_EQ(four.transformation->removeAggregationAssembly(), owner);
        EXPECT_FALSE(owner->isReferenced());
        --owners;
    }
    EXPECT_EQ(four.transformation->getParent(), nullptr);
    EXPECT_TRUE(four.transformation->recursiveDelete());
}

TEST(QORTransformation, StaysUnderAllOwnersWhenRenamed) {
    UnderFour const four;
    four.transformation->setName("renamed");
    EXPECT_STREQ(four.transformation->getName().chars, "renamed");
    EXPECT_EQ(four.transformation->getParentCount(), 4);
    EXPECT_EQ(four.model->getTransformation(0), four.transformation);
    EXPECT_EQ(four.task->getTransformation(0), four.transformation);
    EXPECT_EQ(four.step->getTransformation(), four.transformation);
    EXPECT_EQ(four.activity->getTransformation(), four.transformation);
}

TEST(QORTransformation, MovesOnlyInTheMappingModelWhenRenamed) {
    Graph graph;
    auto* const model = graph.make<QORMappingModel>();
    auto* const task = graph.make<QORTransformationTask>();
    auto* const other = graph.make<QORTransformation>("m");
    auto* const transformation = graph.make<QORTransformation>("a");
    for (QORTransformation* each : {other, transformation}) {
        model->addTransformation(each);
        task->addTransformation(each);
    }
    transformation->setName("z");
    EXPECT_EQ(model->getTransformation(0), other);
    EXPECT_EQ(model->getTransformation(1), transformation);
    EXPECT_EQ(task->getTransformation(0), transformation);
    EXPECT_EQ(task->getTransformation(1), other);
    transformation->setName("a");
}

TEST(QORTransformation, MovesInItsTaskWhenThatIsTheFirstOwner) {
    Graph graph;
    auto* const task = graph.make<QORTransformationTask>();
    auto* const step = graph.make<QORTransformationStep>();
    auto* const transformation = graph.make<QORTransformation>("a");
    task->addTransformation(graph.make<QORTransformation>("m"));
    task->addTransformation(transformation);
    step->addTransformation(transformation);
    transformation->setName("z");
    EXPECT_EQ(task->getTransformation(1), transformation);
    EXPECT_EQ(step->getTransformation(), transformation);
    EXPECT_EQ(transformation->getTransformationStep(), step);
}

TEST(QORTransformation, SharesItsNameWithSiblings) {
    Graph graph;
    auto* const task = graph.make<QORTransformationTask>();
    auto* const one = graph.make<QORTransformation>("same");
    auto* const two = graph.make<QORTransformation>("other");
    task->addTransformation(one);
    task->addTransformation(two);
    two->setName("same");
    auto const [low, high] = byAddress(one, two);
    EXPECT_EQ(task->getTransformation(0), low);
    EXPECT_EQ(task->getTransformation(1), high);
}

TEST(QORTransformation, DeletesItsMapsThenItsDataSets) {
    Graph graph;
    QORTransformation transformation;
    for (char const* name : {"set b", "set a"})
        transformation.addDataSet(graph.mortal<QORDataSet>(name));
    for (char const* name : {"map b", "map a"})
        transformation.addClassifierMap(graph.mortal<QORClassifierMap>(name));
    transformation.addNote(graph.mortal<QORNote>("note"));
    EXPECT_TRUE(transformation.recursiveDelete());
    EXPECT_EQ(graph.deaths, (Labels{"note", "map a", "map b", "set a", "set b"}));
}

TEST(QORTransformation, DeletesADataSetThatItsOwnMapReads) {
    Graph graph;
    auto* const transformation = graph.mortal<QORTransformation>("transformation");
    auto* const set = graph.mortal<QORDataSet>("set");
    auto* const map = graph.mortal<QORClassifierMap>("map");
    transformation->addDataSet(set);
    transformation->addClassifierMap(map);
    map->addSourceClassifier(set);
    map->addDestinationClassifier(set);
    delete transformation;
    EXPECT_EQ(graph.deaths, (Labels{"transformation", "map", "set"}));
}

TEST(QORTransformation, IsolatesItsOwnersInOrderThenWhatItOwns) {
    Graph graph;
    QORTransformation transformation;
    transformation.addDataSet(graph.mortal<QORDataSet>("set"));
    transformation.addClassifierMap(graph.mortal<QORClassifierMap>("map"));
    transformation.addTransformationActivity(graph.mortal<QORTransformationActivity>("activity"));
    transformation.addTransformationStep(graph.mortal<QORTransformationStep>("step"));
    transformation.addTransformationTask(graph.mortal<QORTransformationTask>("task"));
    transformation.addMappingModel(graph.mortal<QORMappingModel>("model"));
    EXPECT_EQ(transformation.isolate(true), &transformation);
    EXPECT_EQ(graph.deaths, (Labels{"model", "task", "step", "activity", "map", "set"}));
}

TEST(QORTransformation, ReencodesMapsThenDataSets) {
    Graph graph;
    QORTransformation transformation;
    transformation.setOperation(inUtf8);
    transformation.setOperationDescription(inUtf8);
    transformation.setName(inUtf8);
    transformation.addDataSet(graph.mortal<QORDataSet>("set"));
    transformation.addClassifierMap(graph.mortal<QORClassifierMap>("map"));
    Recoding recode;
    recode(transformation);
    EXPECT_EQ(graph.recodings, (Labels{"map", "set"}));
    EXPECT_STREQ(transformation.getOperation().chars, inLatin1);
    EXPECT_STREQ(transformation.getOperationDescription().chars, inLatin1);
    EXPECT_STREQ(transformation.getName().chars, inLatin1);
}

TEST(QORTransformation, WalksMapsThenDataSets) {
    QORTransformation transformation;
    auto* const set = new QORDataSet;
    auto* const mapB = named<QORClassifierMap>("b");
    auto* const mapA = named<QORClassifierMap>("a");
    transformation.addDataSet(set);
    transformation.addClassifierMap(mapB);
    transformation.addClassifierMap(mapA);
    EXPECT_EQ(walkOf(transformation), (Objects{&transformation, mapA, mapB, set}));
}
