#include "GraphObservers.h"

#include <qor/QORClassifierMap.h>
#include <qor/QORDataSet.h>
#include <qor/QORMappingModel.h>
#include <qor/QORNote.h>
#include <qor/QORTransformation.h>
#include <qor/QORTransformationActivity.h>
#include <qor/QORTransformationStep.h>
#include <qor/QORTransformationTask.h>

using namespace graph;

namespace {

/// A transformation under all of its four possible owners at once.
struct UnderFour {
    Held<QORTransformation> transformation{"t"};
    Held<QORMappingModel> model;
    Held<QORTransformationTask> task;
    Held<QORTransformationStep> step;
    Held<QORTransformationActivity> activity;

    UnderFour() {
        EXPECT_TRUE(activity->addTransformation(transformation));
        EXPECT_TRUE(step->addTransformation(transformation));
        EXPECT_TRUE(task->addTransformation(transformation));
        EXPECT_TRUE(model->addTransformation(transformation));
    }

    Objects owners() const { return {model, task, step, activity}; }
};

} // namespace

TEST(QORTransformation, IsAMappingObject) {
    expectConcrete<QORTransformation>(QORElementType::TRANSFORMATION, 79, "Transformation",
                                      QORMappingObject::getStaticMetaClass());
}

TEST(QORTransformation, StartsOfUnknownType) {
    QORTransformation transformation;
    EXPECT_STREQ(transformation.getOperation().chars, "");
    EXPECT_STREQ(transformation.getOperationDescription().chars, "");
    EXPECT_EQ(transformation.getMappingType(), QORMappingType::LINEAGE);
    EXPECT_EQ(transformation.getTransformationType(), QORTransformationType::UNKNOWN);
    EXPECT_FALSE(transformation.isReferenced());
}

TEST(QORTransformation, TakesAnyNameWithoutAnOwner) {
    QORTransformation transformation;
    transformation.setName("any name");
    EXPECT_STREQ(transformation.getName().chars, "any name");
    EXPECT_EQ(transformation.getParent(), nullptr);
    EXPECT_EQ(transformation.getParentCount(), 0);
    EXPECT_EQ(transformation.removeAggregationAssembly(), nullptr);
}

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
    EXPECT_EQ(four.model->getTransformation(0), four.transformation.get());
    EXPECT_EQ(four.task->getTransformation(0), four.transformation.get());
    EXPECT_EQ(four.step->getTransformation(), four.transformation.get());
    EXPECT_EQ(four.activity->getTransformation(), four.transformation.get());
}

TEST(QORTransformation, MovesOnlyInTheMappingModelWhenRenamed) {
    Held<QORMappingModel> model;
    Held<QORTransformationTask> task;
    Held<QORTransformation> other("m");
    Held<QORTransformation> transformation("a");
    for (QORTransformation* each : {other.get(), transformation.get()}) {
        model->addTransformation(each);
        task->addTransformation(each);
    }
    transformation->setName("z");
    EXPECT_EQ(model->getTransformation(0), other.get());
    EXPECT_EQ(model->getTransformation(1), transformation.get());
    EXPECT_EQ(task->getTransformation(0), transformation.get());
    EXPECT_EQ(task->getTransformation(1), other.get());
    transformation->setName("a");
}

TEST(QORTransformation, MovesInItsTaskWhenThatIsTheFirstOwner) {
    Held<QORTransformationTask> task;
    Held<QORTransformationStep> step;
    Held<QORTransformation> other("m");
    Held<QORTransformation> transformation("a");
    task->addTransformation(other);
    task->addTransformation(transformation);
    step->addTransformation(transformation);
    transformation->setName("z");
    EXPECT_EQ(task->getTransformation(1), transformation.get());
    EXPECT_EQ(step->getTransformation(), transformation.get());
    EXPECT_EQ(transformation->getTransformationStep(), step.get());
}

TEST(QORTransformation, SharesItsNameWithSiblings) {
    Held<QORTransformationTask> task;
    Held<QORTransformation> one("same");
    Held<QORTransformation> two("other");
    task->addTransformation(one);
    task->addTransformation(two);
    two->setName("same");
    auto const [low, high] = byAddress(one.get(), two.get());
    EXPECT_EQ(task->getTransformation(0), low);
    EXPECT_EQ(task->getTransformation(1), high);
}

TEST(QORTransformation, HangsAtMostOnceOnAStep) {
    Held<QORTransformationStep> step;
    Held<QORTransformation> one;
    Held<QORTransformation> two;
    EXPECT_TRUE(one->addTransformationStep(step));
    EXPECT_FALSE(two->addTransformationStep(step));
    EXPECT_FALSE(step->addTransformation(two));
    EXPECT_EQ(step->getTransformation(), one.get());
    EXPECT_EQ(two->getTransformationStep(), nullptr);
}

TEST(QORTransformation, IsReferencedThroughEachOfItsLinks) {
    using T = QORTransformation;
    expectReferencedThrough<T, QORMappingModel>(&T::addMappingModel, &T::removeMappingModel);
    expectReferencedThrough<T, QORTransformationTask>(&T::addTransformationTask,
                                                      &T::removeTransformationTask);
    expectReferencedThrough<T, QORTransformationStep>(&T::addTransformationStep,
                                                      &T::removeTransformationStep);
    expectReferencedThrough<T, QORTransformationActivity>(&T::addTransformationActivity,
                                                          &T::removeTransformationActivity);
    expectReferencedThrough<T, QORClassifierMap>(&T::addClassifierMap, &T::removeClassifierMap);
    expectReferencedThrough<T, QORDataSet>(&T::addDataSet, &T::removeDataSet);
}

TEST(QORTransformation, DeletesItsMapsThenItsDataSets) {
    Journal journal;
    QORTransformation transformation;
    for (char const* name : {"set b", "set a"}) {
        auto* const set = watched<QORDataSet>(journal, name);
        set->setName(name);
        transformation.addDataSet(set);
    }
    for (char const* name : {"map b", "map a"}) {
        auto* const map = watched<QORClassifierMap>(journal, name);
        map->setName(name);
        transformation.addClassifierMap(map);
    }
    transformation.addNote(watched<QORNote>(journal, "note"));
    EXPECT_TRUE(transformation.recursiveDelete());
    EXPECT_EQ(journal.deaths, (Labels{"note", "map a", "map b", "set a", "set b"}));
}

TEST(QORTransformation, DeletesADataSetThatItsOwnMapReads) {
    Journal journal;
    auto* const transformation = watched<QORTransformation>(journal, "transformation");
    auto* const set = watched<QORDataSet>(journal, "set");
    auto* const map = watched<QORClassifierMap>(journal, "map");
    transformation->addDataSet(set);
    transformation->addClassifierMap(map);
    map->addSourceClassifier(set);
    map->addDestinationClassifier(set);
    delete transformation;
    EXPECT_EQ(journal.deaths, (Labels{"transformation", "map", "set"}));
}

TEST(QORTransformation, IsolatesItsOwnersInOrderThenWhatItOwns) {
    Journal journal;
    QORTransformation transformation;
    transformation.addDataSet(watched<QORDataSet>(journal, "set"));
    transformation.addClassifierMap(watched<QORClassifierMap>(journal, "map"));
    transformation.addTransformationActivity(watched<QORTransformationActivity>(journal, "activity"));
    transformation.addTransformationStep(watched<QORTransformationStep>(journal, "step"));
    transformation.addTransformationTask(watched<QORTransformationTask>(journal, "task"));
    transformation.addMappingModel(watched<QORMappingModel>(journal, "model"));
    EXPECT_EQ(transformation.isolate(true), &transformation);
    EXPECT_EQ(journal.deaths, (Labels{"model", "task", "step", "activity", "map", "set"}));
}

TEST(QORTransformation, ReencodesMapsThenDataSets) {
    Journal journal;
    QORTransformation transformation;
    transformation.setOperation(rawText);
    transformation.setOperationDescription(rawText);
    transformation.setName(rawText);
    transformation.addDataSet(watched<QORDataSet>(journal, "set"));
    transformation.addClassifierMap(watched<QORClassifierMap>(journal, "map"));
    Recoding recode;
    recode(transformation);
    EXPECT_EQ(journal.recodings, (Labels{"map", "set"}));
    EXPECT_STREQ(transformation.getOperation().chars, recodedText);
    EXPECT_STREQ(transformation.getOperationDescription().chars, recodedText);
    EXPECT_STREQ(transformation.getName().chars, recodedText);
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

TEST(QORTransformation, ComparesAndCopiesItsFourAttributes) {
    expectCompared<QORTransformation>([](auto& each) { each.setOperation("x"); });
    expectCompared<QORTransformation>([](auto& each) { each.setOperationDescription("x"); });
    expectCompared<QORTransformation>([](auto& each) { each.setMappingType(QORMappingType::STEP); });
    expectCompared<QORTransformation>(
        [](auto& each) { each.setTransformationType(QORTransformationType::CUSTOM); });
    expectCompared<QORTransformation>([](auto& each) { each.setName("x"); });
    QORTransformation source;
    source.setOperation("o");
    source.setOperationDescription("d");
    source.setMappingType(QORMappingType::ACTIVITY);
    source.setTransformationType(QORTransformationType::JOINER);
    source.addDataSet(new QORDataSet);
    QORTransformation const copy(source);
    EXPECT_TRUE(copy.equals(source));
    EXPECT_FALSE(copy.isReferenced());
    QORTransformation assigned;
    assigned.setFrom(source);
    EXPECT_TRUE(assigned.equals(source));
    EXPECT_FALSE(assigned.isReferenced());
}
