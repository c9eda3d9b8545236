#include "Graph.h"

#include <qor/QORBaseType.h>
#include <qor/QORClass.h>
#include <qor/QORMappingFormat.h>
#include <qor/QORMappingModel.h>
#include <qor/QORMetadataOrigin.h>
#include <qor/QORNote.h>
#include <qor/QORPropertyElementTypeScope.h>
#include <qor/QORTransformation.h>

TEST(QORMappingModel, SortsTransformationsOfOneNameByAddress) {
    Graph graph;
    auto* const model = graph.make<QORMappingModel>();
    auto* const b1 = graph.make<QORTransformation>("b");
    auto* const a = graph.make<QORTransformation>("a");
    auto* const b2 = graph.make<QORTransformation>("b");
    EXPECT_TRUE(model->addTransformation(b1));
    EXPECT_TRUE(model->addTransformation(a));
    EXPECT_TRUE(model->addTransformation(b2));
    EXPECT_FALSE(model->addTransformation(b2));
    auto const [low, high] = byAddress(b1, b2);
    EXPECT_EQ(model->getTransformation(0), a);
    EXPECT_EQ(model->getTransformation(1), low);
    EXPECT_EQ(model->getTransformation(2), high);
}

TEST(QORMappingModel, DeletesWhatItOwnsSingleObjectsFirst) {
    Graph graph;
    QORMappingModel model;
    model.addType(graph.mortal<QORBaseType>("type"));
    model.addPropertyElementTypeScope(graph.mortal<QORPropertyElementTypeScope>("scope"));
    model.addTransformation(graph.mortal<QORTransformation>("b"));
    model.addTransformation(graph.mortal<QORTransformation>("a"));
    model.addMetadataOrigin(graph.mortal<QORMetadataOrigin>("origin"));
    model.addVariableClass(graph.mortal<QORClass>("variables"));
    EXPECT_TRUE(model.recursiveDelete());
    EXPECT_EQ(graph.deaths, (Labels{"variables", "origin", "a", "b", "scope", "type"}));
    EXPECT_FALSE(model.isReferenced());
}

TEST(QORMappingModel, IsolatesItsOwnerFirst) {
    Graph graph;
    QORMappingModel model;
    model.addType(graph.mortal<QORBaseType>("type"));
    model.addPropertyElementTypeScope(graph.mortal<QORPropertyElementTypeScope>("scope"));
    model.addTransformation(graph.mortal<QORTransformation>("transformation"));
    model.addMetadataOrigin(graph.mortal<QORMetadataOrigin>("origin"));
    model.addVariableClass(graph.mortal<QORClass>("variables"));
    model.addMappingFormat(graph.mortal<QORMappingFormat>("format"));
    EXPECT_EQ(model.isolate(true), &model);
    EXPECT_EQ(graph.deaths, (Labels{"format", "variables", "origin", "transformation", "scope", "type"}));
    EXPECT_FALSE(model.isReferenced());
}

TEST(QORMappingModel, ReencodesWhatItOwnsInOrder) {
    Graph graph;
    QORMappingModel model;
    model.setName(inUtf8);
    model.addType(graph.mortal<QORBaseType>("type"));
    model.addPropertyElementTypeScope(graph.mortal<QORPropertyElementTypeScope>("scope"));
    model.addTransformation(graph.mortal<QORTransformation>("transformation"));
    model.addMetadataOrigin(graph.mortal<QORMetadataOrigin>("origin"));
    model.addVariableClass(graph.mortal<QORClass>("variables"));
    Recoding recode;
    recode(model);
    EXPECT_STREQ(model.getName().chars, inLatin1);
    EXPECT_EQ(graph.recodings, (Labels{"variables", "origin", "transformation", "scope", "type"}));
}

TEST(QORMappingModel, ReencodesEachTransformationOnceThoughItsPlaceChanges) {
    Graph graph;
    QORMappingModel model;
    for (char const* name : {"\xC2\xBF", "\xC3\x80", "\xC3\xBF"})
        model.addTransformation(graph.mortal<QORTransformation>(name));
    Recoding recode;
    recode(model);
    EXPECT_EQ(graph.recodings, (Labels{"\xC2\xBF", "\xC3\x80", "\xC3\xBF"}));
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
