#include "GraphObservers.h"

#include <qor/QORBaseType.h>
#include <qor/QORClass.h>
#include <qor/QORMappingFormat.h>
#include <qor/QORMappingModel.h>
#include <qor/QORMetadataOrigin.h>
#include <qor/QORNote.h>
#include <qor/QORPropertyElementTypeScope.h>
#include <qor/QORTransformation.h>

using namespace graph;

namespace {

constexpr char const* someTime = "12:34:56 2001-02-03";
constexpr char const* otherTime = "01:02:03 2004-05-06";

QORDate date(char const* text) {
    QORDate result;
    result.setDate(QORString(text));
    return result;
}

} // namespace

TEST(QORMappingModel, IsAMappingObject) {
    expectConcrete<QORMappingModel>(QORElementType::MAPPING_MODEL, 80, "MappingModel",
                                    QORMappingObject::getStaticMetaClass());
}

TEST(QORMappingModel, StartsWithoutATimeAndUnlinked) {
    QORMappingModel model;
    EXPECT_STREQ(model.getCreationTime().chars(), "00:00:00 ");
    EXPECT_EQ(model.getMappingFormat(), nullptr);
    EXPECT_EQ(model.getVariableClass(), nullptr);
    EXPECT_EQ(model.getMetadataOrigin(), nullptr);
    EXPECT_EQ(model.getTransformationCount(), 0);
    EXPECT_EQ(model.getPropertyElementTypeScopeCount(), 0);
    EXPECT_EQ(model.getTypeCount(), 0);
    EXPECT_FALSE(model.isReferenced());
}

TEST(QORMappingModel, CopyConstructorTakesTheTime) {
    QORMappingModel source;
    source.setCreationTime(date(someTime));
    source.addVariableClass(new QORClass);
    QORMappingModel const copy(source);
    EXPECT_STREQ(copy.getCreationTime().chars(), someTime);
    EXPECT_EQ(copy.getVariableClass(), nullptr);
    EXPECT_FALSE(copy.isReferenced());
}

TEST(QORMappingModel, AssignmentLeavesTheTime) {
    QORMappingModel source;
    source.setName("source");
    source.setCreationTime(date(someTime));
    QORMappingModel assigned;
    assigned.setCreationTime(date(otherTime));
    assigned = source;
    EXPECT_STREQ(assigned.getName().chars, "source");
    EXPECT_STREQ(assigned.getCreationTime().chars(), otherTime);
    QORMappingModel set;
    set.setFrom(source);
    EXPECT_STREQ(set.getName().chars, "source");
    EXPECT_STREQ(set.getCreationTime().chars(), "00:00:00 ");
}

TEST(QORMappingModel, ComparesWithoutTheTime) {
    expectNotCompared<QORMappingModel>([](auto& model) { model.setCreationTime(date(someTime)); });
    expectCompared<QORMappingModel>([](auto& model) { model.setName("m"); });
    expectCompared<QORMappingModel>([](auto& model) { model.setNativeType("t"); });
}

TEST(QORMappingModel, IsReferencedThroughEachOfItsLinks) {
    using M = QORMappingModel;
    expectReferencedThrough<M, QORMappingFormat>(&M::addMappingFormat, &M::removeMappingFormat);
    expectReferencedThrough<M, QORClass>(&M::addVariableClass, &M::removeVariableClass);
    expectReferencedThrough<M, QORMetadataOrigin>(&M::addMetadataOrigin, &M::removeMetadataOrigin);
    expectReferencedThrough<M, QORTransformation>(&M::addTransformation, &M::removeTransformation);
    expectReferencedThrough<M, QORPropertyElementTypeScope>(&M::addPropertyElementTypeScope,
                                                            &M::removePropertyElementTypeScope);
    expectReferencedThrough<M, QORBaseType>(&M::addType, &M::removeType);
}

TEST(QORMappingModel, BelongsToItsFormat) {
    Held<QORMappingFormat> format;
    Held<QORMappingModel> model("old");
    EXPECT_EQ(model->getParentCount(), 0);
    ASSERT_TRUE(model->addMappingFormat(format));
    EXPECT_EQ(format->getMappingModel(), model.get());
    EXPECT_EQ(model->getParent(), format.get());
    EXPECT_EQ(model->getParentCount(), 1);
    model->setName("new");
    EXPECT_STREQ(model->getName().chars, "new");
    EXPECT_EQ(format->getMappingModel(), model.get());
    EXPECT_EQ(model->getMappingFormat(), format.get());
    expectDeletionRefused(*model);
    EXPECT_EQ(model->removeAggregationAssembly(), format.get());
    EXPECT_EQ(format->getMappingModel(), nullptr);
    EXPECT_EQ(model->removeAggregationAssembly(), nullptr);
}

TEST(QORMappingModel, RefusalToBeDeletedLeavesWhatItOwns) {
    Held<QORMappingFormat> format;
    Held<QORMappingModel> model;
    Held<QORTransformation> transformation;
    format->addMappingModel(model);
    model->addTransformation(transformation);
    expectDeletionRefused(*model);
    EXPECT_EQ(transformation->getMappingModel(), model.get());
}

TEST(QORMappingModel, SortsTransformationsOfOneNameByAddress) {
    Held<QORMappingModel> model;
    Held<QORTransformation> b1("b");
    Held<QORTransformation> a("a");
    Held<QORTransformation> b2("b");
    EXPECT_TRUE(model->addTransformation(b1));
    EXPECT_TRUE(model->addTransformation(a));
    EXPECT_TRUE(model->addTransformation(b2));
    EXPECT_FALSE(model->addTransformation(b2));
    auto const [low, high] = byAddress(b1.get(), b2.get());
    EXPECT_EQ(model->getTransformation(0), a.get());
    EXPECT_EQ(model->getTransformation(1), low);
    EXPECT_EQ(model->getTransformation(2), high);
}

TEST(QORMappingModel, DeletesWhatItOwnsSingleObjectsFirst) {
    Journal journal;
    QORMappingModel model;
    model.addType(watched<QORBaseType>(journal, "type"));
    model.addPropertyElementTypeScope(watched<QORPropertyElementTypeScope>(journal, "scope"));
    auto* const b = watched<QORTransformation>(journal, "b");
    b->setName("b");
    auto* const a = watched<QORTransformation>(journal, "a");
    a->setName("a");
    model.addTransformation(b);
    model.addTransformation(a);
    model.addMetadataOrigin(watched<QORMetadataOrigin>(journal, "origin"));
    model.addVariableClass(watched<QORClass>(journal, "variables"));
    EXPECT_TRUE(model.recursiveDelete());
    EXPECT_EQ(journal.deaths, (Labels{"variables", "origin", "a", "b", "scope", "type"}));
    EXPECT_FALSE(model.isReferenced());
}

TEST(QORMappingModel, IsolatesItsOwnerFirst) {
    Journal journal;
    QORMappingModel model;
    model.addType(watched<QORBaseType>(journal, "type"));
    model.addPropertyElementTypeScope(watched<QORPropertyElementTypeScope>(journal, "scope"));
    model.addTransformation(watched<QORTransformation>(journal, "transformation"));
    model.addMetadataOrigin(watched<QORMetadataOrigin>(journal, "origin"));
    model.addVariableClass(watched<QORClass>(journal, "variables"));
    model.addMappingFormat(watched<QORMappingFormat>(journal, "format"));
    EXPECT_EQ(model.isolate(true), &model);
    EXPECT_EQ(journal.deaths, (Labels{"format", "variables", "origin", "transformation", "scope", "type"}));
    EXPECT_FALSE(model.isReferenced());
}

TEST(QORMappingModel, ReencodesWhatItOwnsInOrder) {
    Journal journal;
    QORMappingModel model;
    model.setName(rawText);
    model.addType(watched<QORBaseType>(journal, "type"));
    model.addPropertyElementTypeScope(watched<QORPropertyElementTypeScope>(journal, "scope"));
    model.addTransformation(watched<QORTransformation>(journal, "transformation"));
    model.addMetadataOrigin(watched<QORMetadataOrigin>(journal, "origin"));
    model.addVariableClass(watched<QORClass>(journal, "variables"));
    Recoding recode;
    recode(model);
    EXPECT_STREQ(model.getName().chars, recodedText);
    EXPECT_EQ(journal.recodings, (Labels{"variables", "origin", "transformation", "scope", "type"}));
}

TEST(QORMappingModel, ReencodesEachTransformationOnceThoughItsPlaceChanges) {
    Journal journal;
    QORMappingModel model;
    for (char const* name : {"\xC2\xBF", "\xC3\x80", "\xC3\xBF"}) {
        auto* const transformation = watched<QORTransformation>(journal, name);
        transformation->setName(name);
        model.addTransformation(transformation);
    }
    Recoding recode;
    recode(model);
    EXPECT_EQ(journal.recodings, (Labels{"\xC2\xBF", "\xC3\x80", "\xC3\xBF"}));
    EXPECT_STREQ(model.getTransformation(0)->getName().chars, "\xBF");
    EXPECT_STREQ(model.getTransformation(1)->getName().chars, "\xC0");
    EXPECT_STREQ(model.getTransformation(2)->getName().chars, "\xFF");
}

TEST(QORMappingModel, WalksSingleObjectsBeforeContainers) {
    QORMappingModel model;
    auto* const type = new QORBaseType;
    auto* const scope = new QORPropertyElementTypeScope;
    auto* const transformation = new QORTransformation;
    auto* const origin = new QORMetadataOrigin;
    auto* const variables = new QORClass;
    auto* const note = new QORNote;
    model.addType(type);
    model.addPropertyElementTypeScope(scope);
    model.addTransformation(transformation);
    model.addMetadataOrigin(origin);
    model.addVariableClass(variables);
    model.addNote(note);
    EXPECT_EQ(walkOf(model), (Objects{&model, note, variables, origin, transformation, scope, type}));
}
