#include <qor/QORModelObject.h>

#include <qor/QORBusinessRule.h>
#include <qor/QORDatabaseSchema.h>
#include <qor/QORDesignPackage.h>
#include <qor/QORKeyMap.h>
#include <qor/QORNote.h>
#include <qor/QORPhysicalObject.h>
#include <qor/QORProjection.h>
#include <qor/QORSynonym.h>
#include <qor/QORTraversalOperation.h>

#include "Graph.h"

#include <gtest/gtest.h>

#include <memory>
#include <type_traits>

TEST(QORModelObject, OnlyDerivedClassesCanBeMade) {
    EXPECT_FALSE(std::is_default_constructible<QORModelObject>::value);
}

TEST(QORModelObject, AssignmentLeavesTheTargetsLinks) {
    QORDesignPackage source;
    source.setComment("c");
    source.setPhysicalName("p");
    source.addSynonym(named<QORSynonym>("x"));
    QORDesignPackage target;
    auto* const synonym = named<QORSynonym>("y");
    target.addSynonym(synonym);
    target.QORModelObject::operator=(source);
    EXPECT_STREQ("c", target.getComment().chars);
    EXPECT_STREQ("p", target.getPhysicalName().chars);
    EXPECT_EQ(1, target.getSynonymCount());
    EXPECT_EQ(synonym, target.getSynonym(0));
    EXPECT_EQ(1, source.getSynonymCount());
}

TEST(QORModelObject, IsReferencedByEachOfItsLinks) {
    Plain<QORModelObject> object;
    auto const once = [&object](auto& far, auto add, auto remove) {
        EXPECT_FALSE(object.isReferenced());
        EXPECT_TRUE((object.*add)(&far));
        EXPECT_TRUE(object.isReferenced());
        EXPECT_TRUE(object.QORModelObject::isReferenced());
        EXPECT_FALSE(object.QORElement::isReferenced());
        EXPECT_TRUE((object.*remove)(&far));
        EXPECT_FALSE(object.isReferenced());
        EXPECT_FALSE(far.isReferenced());
    };
    QORDatabaseSchema package;
    once(package, &QORModelObject::addDataPackage,
         static_cast<bool (QORModelObject::*)(QORDataPackage*)>(&QORModelObject::removeDataPackage));
    QORKeyMap keyMap;
    once(keyMap, &QORModelObject::addSourceOfKeyMap,
         static_cast<bool (QORModelObject::*)(QORKeyMap*)>(&QORModelObject::removeSourceOfKeyMap));
    QORProjection projection;
    once(projection, &QORModelObject::addPresentationPresentationElement,
         static_cast<bool (QORModelObject::*)(QORPresentationElement*)>(
             &QORModelObject::removePresentationPresentationElement));
    QORPhysicalObject physical;
    once(physical, &QORModelObject::addAssociatedPhysicalObject,
         static_cast<bool (QORModelObject::*)(QORPhysicalObject*)>(
             &QORModelObject::removeAssociatedPhysicalObject));
    QORBusinessRule rule;
    once(rule, &QORModelObject::addAssociatedBusinessRule,
         static_cast<bool (QORModelObject::*)(QORBusinessRule*)>(
             &QORModelObject::removeAssociatedBusinessRule));
    QORSynonym synonym;
    once(synonym, &QORModelObject::addSynonym,
         static_cast<bool (QORModelObject::*)(QORSynonym*)>(&QORModelObject::removeSynonym));
    QORDesignPackage importer;
    once(importer, &QORModelObject::addImportedByDesignPackage,
         static_cast<bool (QORModelObject::*)(QORDesignPackage*)>(
             &QORModelObject::removeImportedByDesignPackage));
}

namespace {

void linkAll(QORModelObject& object, Graph& graph) {
    object.addImportedByDesignPackage(graph.mortal<QORDesignPackage>("importer"));
    object.addSynonym(graph.mortal<QORSynonym>("synonym"));
    object.addAssociatedBusinessRule(graph.mortal<QORBusinessRule>("rule"));
    object.addAssociatedPhysicalObject(graph.mortal<QORPhysicalObject>("physical"));
    object.addPresentationPresentationElement(graph.mortal<QORProjection>("projection"));
    object.addSourceOfKeyMap(graph.mortal<QORKeyMap>("keyMap"));
    object.addDataPackage(graph.mortal<QORDatabaseSchema>("package"));
    object.addNote(graph.mortal<QORNote>("note"));
}

} // namespace

TEST(QORModelObject, RecursiveDeleteTakesSynonymsBeforeTheOtherLinks) {
    Graph graph;
    Plain<QORModelObject> object;
    linkAll(object, graph);
    EXPECT_TRUE(object.recursiveDelete());
    EXPECT_EQ((Labels{"note", "synonym", "package", "keyMap", "projection", "physical", "rule", "importer"}),
              graph.deaths);
    EXPECT_FALSE(object.isReferenced());
}

TEST(QORModelObject, IsolateWithDeletionTakesSynonymsInTheirTurn) {
    Graph graph;
    Plain<QORModelObject> object;
    linkAll(object, graph);
    EXPECT_EQ(&object, object.isolate(true));
    EXPECT_EQ((Labels{"package", "keyMap", "projection", "physical", "rule", "synonym", "importer", "note"}),
              graph.deaths);
    EXPECT_FALSE(object.isReferenced());
}

TEST(QORModelObject, TranscodeConvertsItsTextsThenTheElementsThenSynonyms) {
    Recoding toUtf8("ISO-8859-1", "UTF-8");
    Recoding toLatin("UTF-8", "ISO-8859-1");
    Plain<QORModelObject> object;
    object.setPhysicalName("\xE9");
    object.setComment("\xE8");
    object.setStereotype("\xE7");
    object.setDescription("\xE6");
    object.addSynonym(named<QORSynonym>("\xE5"));
    object.addNote(named<QORNote>("\xE4"));
    toUtf8(object);
    EXPECT_STREQ("\xC3\xA9", object.getPhysicalName().chars);
    EXPECT_STREQ("\xC3\xA8", object.getComment().chars);
    EXPECT_STREQ("\xC3\xA7", object.getStereotype().chars);
    EXPECT_STREQ("\xC3\xA6", object.getDescription().chars);
    EXPECT_STREQ("\xC3\xA5", object.getSynonym(0)->getName().chars);
    EXPECT_STREQ("\xC3\xA4", object.getNote(0)->getName().chars);
    EXPECT_EQ(6, toUtf8.converted);
    object.setComment("\xFF");
    toLatin(object);
    EXPECT_STREQ("\xE9", object.getPhysicalName().chars);
    EXPECT_STREQ("\xFF", object.getComment().chars);
    EXPECT_STREQ("\xE7", object.getStereotype().chars);
    EXPECT_EQ(1, toLatin.errors);
}

TEST(QORModelObject, WalksSynonymsByNameBehindTheElementsChildren) {
    class Order : public QORTraversalOperation {
    public:
        bool pre_process(QORObject* object, void*&) override {
            seen.push_back(object->getName().chars);
            return true;
        }
        Labels seen;
    } operation;
    Plain<QORModelObject> object;
    object.addSynonym(named<QORSynonym>("b"));
    object.addSynonym(named<QORSynonym>("a"));
    object.addNote(named<QORNote>("note"));
    object._depthTraversal(operation, nullptr);
    EXPECT_EQ((Labels{"note", "a", "b"}), operation.seen);
}
