#include <qor/QORAttribute.h>
#include <qor/QORClass.h>
#include <qor/QORClassType.h>
#include <qor/QORDerivedType.h>
#include <qor/QORDesignPackage.h>
#include <qor/QORGrouping.h>
#include <qor/QORMetadataOrigin.h>
#include <qor/QORModel.h>
#include <qor/QORTraversalDelete.h>
#include <qor/QORTypeValue.h>

#include "Graph.h"
#include "Unruly.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

// Destructors of callers' classes that go on with the objects around them. What is being deleted or taken
// apart isn't deleted once more, whatever they do to its links.

namespace {

/// An object of a caller's class whose destructor does something.
template <class Base>
Parting<Base>* parting(char const* name, std::function<void()> action) {
    auto* const object = new Parting<Base>(std::move(action));
    object->setName(name);
    return object;
}

} // namespace

TEST(ReentrantDestructor, TakesTheLastLinkOfADyingOwner) {
    Graph graph;
    auto* const owner = graph.mortal<QORClass>("owner");
    QORClassType type;
    owner->addClassType(&type);
    owner->addGrouping(parting<QORGrouping>("grouping", [&] { type.removeAssociatedClass(); }));
    delete owner;
    EXPECT_EQ(Labels{"owner"}, graph.deaths);
    EXPECT_EQ(nullptr, type.getAssociatedClass());
}

TEST(ReentrantDestructor, TakesTheLastLinkOfAnOwnerThatIsTakenApart) {
    Graph graph;
    std::unique_ptr<QORClass> const owner(graph.mortal<QORClass>("owner"));
    QORClassType type;
    owner->addClassType(&type);
    owner->addGrouping(parting<QORGrouping>("grouping", [&] { type.removeAssociatedClass(); }));
    EXPECT_TRUE(owner->recursiveDelete());
    EXPECT_EQ(Labels{}, graph.deaths);
    EXPECT_FALSE(owner->isReferenced());
    // It can go by a removal afterwards as before.
    type.addAssociatedClass(owner.get());
    Graph others;
    QORClassType last;
    last.addAssociatedClass(others.mortal<QORClass>("other"));
    EXPECT_TRUE(last.removeAssociatedClass());
    EXPECT_EQ(Labels{"other"}, others.deaths);
    type.removeAssociatedClass(owner.get());
}

TEST(ReentrantDestructor, TakesTheLastLinkOfAnOwnerFurtherUp) {
    Graph graph;
    auto* const package = graph.mortal<QORDesignPackage>("package");
    auto* const owner = named<QORClass>("owner");
    package->addModelElement(owner);
    owner->addFeature(parting<QORAttribute>("a", [&] {
        package->isolate(true);
        owner->isolate(true);
    }));
    owner->addFeature(graph.mortal<QORAttribute>("b"));
    delete package;
    EXPECT_EQ((Labels{"package", "b"}), graph.deaths);
}

TEST(ReentrantDestructor, RemovesItselfOnceMore) {
    QORClass owner;
    int deaths = 0;
    for (int form = 0; form < 4; ++form) {
        QORAttribute* attribute = nullptr;
        attribute = parting<QORAttribute>("a", [&] {
            ++deaths;
            owner.addFeature(attribute);
            if (form == 0)
                owner.removeFeature(0);
            else if (form == 1)
                owner.removeFeature("a", nullptr);
            else if (form == 2)
                owner.removeFeatures();
            else
                owner.isolate(true);
        });
        owner.addFeature(attribute);
        owner.removeFeature(0);
        EXPECT_EQ(form + 1, deaths);
        EXPECT_EQ(0, owner.getFeatureCount());
        EXPECT_FALSE(owner.isReferenced());
    }
}

TEST(ReentrantDestructor, UndoesAndRenewsTheUnaryEndThatItLeaves) {
    QORClass owner;
    QORClassType next;
    for (bool const renewed : {false, true}) {
        int deaths = 0;
        owner.addClassType(parting<QORClassType>("type", [&] {
            ++deaths;
            owner.removeClassType();
            if (renewed)
                owner.addClassType(&next);
        }));
        EXPECT_TRUE(owner.removeClassType());
        EXPECT_EQ(1, deaths);
        EXPECT_EQ(renewed ? &next : nullptr, owner.getClassType());
        EXPECT_EQ(renewed ? &owner : nullptr, next.getAssociatedClass());
        EXPECT_EQ(renewed, owner.isReferenced());
    }
    owner.removeClassType(&next);
}

TEST(ReentrantDestructor, TakesApartWhatStillHoldsAnEndToIt) {
    // While an owner goes by a removal from its child's side, the child's end is still set.
    auto* const child = named<QORAttribute>("child");
    int deaths = 0;
    QORClass* owner = nullptr;
    owner = parting<QORClass>("owner", [&] {
        ++deaths;
        EXPECT_EQ(owner, child->getClassifier());
        child->setName("renamed");
        child->removeClassifier();
        EXPECT_TRUE(child->recursiveDelete());
    });
    owner->addFeature(child);
    EXPECT_TRUE(child->removeClassifier());
    EXPECT_EQ(1, deaths);
    EXPECT_EQ(nullptr, child->getClassifier());
    EXPECT_STREQ("renamed", child->getName().chars);
    delete child;
}

TEST(ReentrantDestructor, TakesTheLastLinkOfTheObjectWhoseEndIsEmptied) {
    Graph graph;
    std::unique_ptr<QORClass> const owner(graph.mortal<QORClass>("owner"));
    QORClassType type;
    owner->addClassType(&type);
    owner->addFeature(parting<QORAttribute>("a", [&] {
        owner->removeFeatures();
        type.removeAssociatedClass();
    }));
    owner->addFeature(graph.mortal<QORAttribute>("b"));
    owner->removeFeatures();
    EXPECT_EQ(Labels{"b"}, graph.deaths);
    EXPECT_FALSE(owner->isReferenced());
}

TEST(ReentrantDestructor, RenamesAddsAndDeletesSiblings) {
    auto* const owner = new QORClass;
    Graph graph;
    QORAttribute* const sibling = graph.mortal<QORAttribute>("c");
    QORAttribute* const other = graph.mortal<QORAttribute>("d");
    owner->addFeature(parting<QORAttribute>("a", [&] {
        sibling->setName("z");
        delete other;
        owner->addFeature(graph.mortal<QORAttribute>("new"));
    }));
    owner->addFeature(graph.mortal<QORAttribute>("b"));
    owner->addFeature(sibling);
    owner->addFeature(other);
    delete owner;
    EXPECT_EQ((Labels{"d", "b", "new", "c"}), graph.deaths);
}

TEST(ReentrantDestructor, DeletesTheOwnerOfAnObjectThatIsBeingIsolated) {
    Graph graph;
    auto* const package = graph.mortal<QORDesignPackage>("package");
    auto* const object = graph.mortal<QORClass>("object");
    package->addModelElement(object);
    object->addClassType(parting<QORClassType>("type", [&] { delete package; }));
    EXPECT_TRUE(object->removeClassType());
    EXPECT_EQ(Labels{"package"}, graph.deaths);
    EXPECT_EQ(nullptr, object->getDesignPackage());
    EXPECT_FALSE(object->isReferenced());
    delete object;
}

TEST(ReentrantDestructor, OfATypeValueTakesItsTypeApart) {
    Graph graph;
    auto* const type = graph.mortal<QORDerivedType>("type");
    QORModel model;
    QORClass object;
    type->addTypeValue(parting<QORTypeValue>("value", [&] {
        model.addType(type);
        EXPECT_FALSE(type->recursiveDelete());
        model.removeTypes();
        EXPECT_FALSE(type->recursiveDelete());
    }));
    delete type;
    EXPECT_EQ(Labels{"type"}, graph.deaths);
    EXPECT_EQ(0, model.getTypeCount());
}

TEST(ReentrantDestructor, WalksAndDeletesFromADyingOwner) {
    Graph graph;
    auto* const owner = graph.mortal<QORClass>("owner");
    owner->addFeature(parting<QORAttribute>("a", [&] {
        QORTraversalDelete operation;
        owner->depthTraversal(operation, nullptr);
    }));
    owner->addFeature(graph.mortal<QORAttribute>("b"));
    owner->addFeature(graph.mortal<QORAttribute>("c"));
    delete owner;
    EXPECT_EQ((Labels{"owner", "b", "c"}), graph.deaths);
}
