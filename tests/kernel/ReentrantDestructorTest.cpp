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

#include "Mortal.h"
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
    EventLog deaths;
    auto* const owner = mortal<QORClass>(deaths, "owner");
    QORClassType type;
    owner->addClassType(&type);
    owner->addGrouping(parting<QORGrouping>("grouping", [&] { type.removeAssociatedClass(); }));
    delete owner;
    EXPECT_EQ(EventLog{"owner"}, deaths);
    EXPECT_EQ(nullptr, type.getAssociatedClass());
}

TEST(ReentrantDestructor, TakesTheLastLinkOfAnOwnerThatIsTakenApart) {
    EventLog deaths;
    std::unique_ptr<QORClass> const owner(mortal<QORClass>(deaths, "owner"));
    QORClassType type;
    owner->addClassType(&type);
    owner->addGrouping(parting<QORGrouping>("grouping", [&] { type.removeAssociatedClass(); }));
    EXPECT_TRUE(owner->recursiveDelete());
    EXPECT_EQ(EventLog{}, deaths);
    EXPECT_FALSE(owner->isReferenced());
    // It can go by a removal afterwards as before.
    type.addAssociatedClass(owner.get());
    EventLog others;
    QORClassType last;
    last.addAssociatedClass(mortal<QORClass>(others, "other"));
    EXPECT_TRUE(last.removeAssociatedClass());
    EXPECT_EQ(EventLog{"other"}, others);
    type.removeAssociatedClass(owner.get());
}

TEST(ReentrantDestructor, TakesTheLastLinkOfAnOwnerFurtherUp) {
    EventLog deaths;
    auto* const package = mortal<QORDesignPackage>(deaths, "package");
    auto* const owner = named<QORClass>("owner");
    package->addModelElement(owner);
    owner->addFeature(parting<QORAttribute>("a", [&] {
        package->isolate(true);
        owner->isolate(true);
    }));
    owner->addFeature(mortal<QORAttribute>(deaths, "b"));
    delete package;
    EXPECT_EQ((EventLog{"package", "b"}), deaths);
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
    EventLog deaths;
    std::unique_ptr<QORClass> const owner(mortal<QORClass>(deaths, "owner"));
    QORClassType type;
    owner->addClassType(&type);
    owner->addFeature(parting<QORAttribute>("a", [&] {
        owner->removeFeatures();
        type.removeAssociatedClass();
    }));
    owner->addFeature(mortal<QORAttribute>(deaths, "b"));
    owner->removeFeatures();
    EXPECT_EQ(EventLog{"b"}, deaths);
    EXPECT_FALSE(owner->isReferenced());
}

TEST(ReentrantDestructor, RenamesAddsAndDeletesSiblings) {
    auto* const owner = new QORClass;
    EventLog deaths;
    QORAttribute* const sibling = mortal<QORAttribute>(deaths, "c");
    QORAttribute* const other = mortal<QORAttribute>(deaths, "d");
    owner->addFeature(parting<QORAttribute>("a", [&] {
        sibling->setName("z");
        delete other;
        owner->addFeature(mortal<QORAttribute>(deaths, "new"));
    }));
    owner->addFeature(mortal<QORAttribute>(deaths, "b"));
    owner->addFeature(sibling);
    owner->addFeature(other);
    delete owner;
    EXPECT_EQ((EventLog{"d", "b", "new", "c"}), deaths);
}

TEST(ReentrantDestructor, DeletesTheOwnerOfAnObjectThatIsBeingIsolated) {
    EventLog deaths;
    auto* const package = mortal<QORDesignPackage>(deaths, "package");
    auto* const object = mortal<QORClass>(deaths, "object");
    package->addModelElement(object);
    object->addClassType(parting<QORClassType>("type", [&] { delete package; }));
    EXPECT_TRUE(object->removeClassType());
    EXPECT_EQ(EventLog{"package"}, deaths);
    EXPECT_EQ(nullptr, object->getDesignPackage());
    EXPECT_FALSE(object->isReferenced());
    delete object;
}

TEST(ReentrantDestructor, OfATypeValueTakesItsTypeApart) {
    EventLog deaths;
    auto* const type = mortal<QORDerivedType>(deaths, "type");
    QORModel model;
    QORClass object;
    type->addTypeValue(parting<QORTypeValue>("value", [&] {
        model.addType(type);
        EXPECT_FALSE(type->recursiveDelete());
        model.removeTypes();
        EXPECT_FALSE(type->recursiveDelete());
    }));
    delete type;
    EXPECT_EQ(EventLog{"type"}, deaths);
    EXPECT_EQ(0, model.getTypeCount());
}

TEST(ReentrantDestructor, WalksAndDeletesFromADyingOwner) {
    EventLog deaths;
    auto* const owner = mortal<QORClass>(deaths, "owner");
    owner->addFeature(parting<QORAttribute>("a", [&] {
        QORTraversalDelete operation;
        owner->depthTraversal(operation, nullptr);
    }));
    owner->addFeature(mortal<QORAttribute>(deaths, "b"));
    owner->addFeature(mortal<QORAttribute>(deaths, "c"));
    delete owner;
    EXPECT_EQ((EventLog{"owner", "b", "c"}), deaths);
}
