#include "kit/Numbering.h"

#include "kit/Graph.h"
#include "kit/Reflection.h"

#include <qor/QORArgument.h>
#include <qor/QORAttribute.h>
#include <qor/QORBaseType.h>
#include <qor/QORCandidateKey.h>
#include <qor/QORClass.h>
#include <qor/QORDesignPackage.h>
#include <qor/QORForeignKey.h>
#include <qor/QORGeneralization.h>
#include <qor/QORIndex.h>
#include <qor/QORIndexMember.h>
#include <qor/QORMetadataOrigin.h>
#include <qor/QORModel.h>
#include <qor/QORNote.h>
#include <qor/QOROperation.h>

#include <algorithm>
#include <ctime>
#include <functional>
#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;

class Numbering : public testing::Test {
protected:
    template <class Class>
    Class* made(char const* name) {
        auto* object = new Class;
        graph.adopt(object);
        object->setName(name);
        return object;
    }

    static std::vector<std::string> numbered(QORObject& root) {
        std::vector<std::string> names;
        kit::Numbering const numbering(root);
        for (QORObject const* object : numbering.objects()) {
            names.emplace_back(object->getName().chars);
        }
        return names;
    }

    kit::Graph graph;
};

TEST_F(Numbering, OwnersComeBeforeWhatTheyOwnAndThatBeforeTheNext) {
    auto* model = made<QORModel>("m");
    for (char const* name : {"b", "a"}) {
        auto* package = made<QORDesignPackage>(name);
        model->addChildPackage(package);
        package->addChildPackage(made<QORDesignPackage>((std::string(name) + "1").c_str()));
    }
    EXPECT_THAT(numbered(*model), ElementsAre("m", "a", "a1", "b", "b1"));
}

TEST_F(Numbering, WhatIsReferredToFollowsFromItsTopmostOwnerOn) {
    auto* table = made<QORClass>("t");
    auto* column = made<QORAttribute>("c");
    auto* model = made<QORModel>("m");
    auto* type = made<QORBaseType>("b");
    auto* other = made<QORBaseType>("a");
    table->addFeature(column);
    column->addType(type);
    model->addType(type);
    model->addType(other);
    EXPECT_THAT(numbered(*table), ElementsAre("t", "c", "m", "a", "b"));
    EXPECT_THAT(numbered(*model), ElementsAre("m", "a", "b", "t", "c"));
    EXPECT_EQ(kit::Numbering(*table).numberOf(*type), 4u);
}

TEST_F(Numbering, EndThatKeepsAnOrderGivesItAndTheOthersGoByNumber) {
    auto* table = made<QORClass>("t");
    auto* first = made<QORGeneralization>("b");
    auto* second = made<QORGeneralization>("a");
    table->addSupertypeOfGeneralization(first);
    table->addSupertypeOfGeneralization(second);
    kit::Numbering const numbering(*table);
    QORMetaLink const* const link = table->getMetaClass()->getMetaLinkByRoleName("supertypeOfGeneralization");
    EXPECT_THAT(numbering.elements(*table, *link), ElementsAre(first, second));
    auto* model = made<QORModel>("m");
    auto* late = made<QORBaseType>("z");
    auto* early = made<QORBaseType>("y");
    model->addType(late);
    model->addType(early);
    QORMetaLink const* const types = model->getMetaClass()->getMetaLinkByRoleName("type");
    EXPECT_THAT(kit::Numbering(*model).elements(*model, *types), ElementsAre(early, late));
}

TEST_F(Numbering, PositionGoesBeforeNameAndNameBeforeClass) {
    auto* const table = made<QORClass>("t");
    EXPECT_EQ(kit::positionOf(*table), std::nullopt);
    for (char const* name : {"a", "b", "c"}) {
        auto* const column = made<QORAttribute>(name);
        column->setPosition(static_cast<short>('c' - *name));
        table->addFeature(column);
        EXPECT_EQ(kit::positionOf(*column), 'c' - *name);
    }
    EXPECT_THAT(numbered(*table), ElementsAre("t", "c", "b", "a"));
    auto* const other = made<QORClass>("u");
    auto* const foreign = made<QORForeignKey>("");
    auto* const candidate = made<QORCandidateKey>("");
    other->addKey(foreign);
    other->addKey(candidate);
    EXPECT_THAT(kit::Numbering(*other).objects(), ElementsAre(other, candidate, foreign));
}

TEST_F(Numbering, RingOfOwnersIsNumberedOnce) {
    auto* outer = made<QORDesignPackage>("o");
    auto* inner = made<QORDesignPackage>("i");
    outer->addChildPackage(inner);
    inner->addChildPackage(outer);
    EXPECT_THAT(numbered(*outer), ElementsAre("o", "i"));
    EXPECT_THAT(numbered(*inner), ElementsAre("i", "o"));
}

/// The processor time for a class with so many indexes that are all alike, each with a member.
double secondsForAlike(int count) {
    kit::Graph graph;
    auto* const table = new QORClass;
    graph.adopt(table);
    for (int i = 0; i < count; ++i) {
        auto* const index = new QORIndex;
        auto* const member = new QORIndexMember;
        graph.adopt(index);
        graph.adopt(member);
        index->addIndexMember(member);
        table->addIndex(index);
    }
    std::clock_t const start = std::clock();
    EXPECT_EQ(kit::Numbering(*table).objects().size(), static_cast<std::size_t>(2 * count + 1));
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

TEST_F(Numbering, ManyAlikeObjectsTakeTimeByTheirNumber) {
    secondsForAlike(1000); // finds out about the ends
    double const few = secondsForAlike(2000);
    double const many = secondsForAlike(16000);
    EXPECT_LT(many, 24 * few + 0.1); // by their square it would be 64 times as much
}

// ---- OwnedOrder -----------------------------------------------------------------------------------------

QORMetaLink& linkOf(QORObject& object, char const* role) {
    return *object.getMetaClass()->getMetaLinkByRoleName(role);
}

std::vector<std::string> namesOf(std::vector<QORObject*> const& objects) {
    std::vector<std::string> names;
    for (QORObject const* object : objects) {
        names.emplace_back(object->getName().chars);
    }
    return names;
}

/// New objects, those with the lower addresses first; or last, if `reversed`.
template <class Class>
std::vector<Class*> newByAddress(std::size_t count, bool reversed) {
    std::vector<Class*> objects(count);
    std::generate(objects.begin(), objects.end(), [] { return new Class; });
    std::sort(objects.begin(), objects.end(), std::less<>());
    if (reversed) {
        std::reverse(objects.begin(), objects.end());
    }
    return objects;
}

TEST(OwnedOrder, PositionGoesBeforeName) {
    QORClass table;
    char const* const names[] = {"a", "b", "c"};
    short const positions[] = {3, 1, 2};
    for (int i = 0; i < 3; ++i) {
        auto* column = new QORAttribute;
        column->setName(names[i]);
        column->setPosition(positions[i]);
        table.addFeature(column);
    }
    EXPECT_THAT(namesOf(kit::elementsOf(table, linkOf(table, "feature"))), ElementsAre("a", "b", "c"));
    EXPECT_THAT(namesOf(kit::OwnedOrder().elements(table, linkOf(table, "feature"))),
                ElementsAre("b", "c", "a"));
}

TEST(OwnedOrder, NamesGoBeforeAddresses) {
    for (bool const reversed : {false, true}) {
        QORClass table;
        auto const operations = newByAddress<QOROperation>(3, reversed);
        for (std::size_t i = 0; i < 3; ++i) {
            operations[i]->setName(std::string(1, static_cast<char>('a' + i)).c_str());
            table.addOperation(operations[i]);
        }
        EXPECT_THAT(namesOf(kit::OwnedOrder().elements(table, linkOf(table, "operation"))),
                    ElementsAre("a", "b", "c"));
    }
}

TEST(OwnedOrder, OfUnnamedObjectsTheAttributesDecideAndNotTheAddresses) {
    std::vector<std::string> orders[2];
    for (bool const reversed : {false, true}) {
        QORClass table;
        auto const notes = newByAddress<QORNote>(20, reversed);
        for (std::size_t i = 0; i < notes.size(); ++i) {
            notes[i]->setValue(std::to_string(i).c_str());
            table.addNote(notes[i]);
        }
        for (QORObject* note : kit::OwnedOrder().elements(table, linkOf(table, "note"))) {
            orders[reversed].emplace_back(static_cast<QORNote*>(note)->getValue().chars);
        }
    }
    EXPECT_EQ(orders[0].size(), 20u);
    EXPECT_EQ(orders[0], orders[1]);
}

TEST(OwnedOrder, ATextCountsByTheAttributeThatHoldsIt) {
    std::vector<std::string> orders[2];
    for (bool const reversed : {false, true}) {
        QORClass table;
        auto const operations = newByAddress<QOROperation>(2, reversed);
        operations[0]->setNativeId("text");
        operations[1]->setNativeType("text");
        for (QOROperation* operation : operations) {
            table.addOperation(operation);
        }
        for (QORObject* operation : kit::OwnedOrder().elements(table, linkOf(table, "operation"))) {
            orders[reversed].emplace_back(static_cast<QOROperation*>(operation)->getNativeId().chars);
        }
    }
    EXPECT_EQ(orders[0].size(), 2u);
    EXPECT_EQ(orders[0], orders[1]);
}

TEST(OwnedOrder, OfOtherwiseEqualObjectsWhatTheyOwnDecides) {
    std::vector<std::string> orders[2];
    for (bool const reversed : {false, true}) {
        QORClass table;
        auto const operations = newByAddress<QOROperation>(20, reversed);
        for (std::size_t i = 0; i < operations.size(); ++i) {
            auto* argument = new QORArgument;
            argument->setName(std::to_string(i).c_str());
            operations[i]->addArgument(argument);
            table.addOperation(operations[i]);
        }
        for (QORObject* operation : kit::OwnedOrder().elements(table, linkOf(table, "operation"))) {
            orders[reversed].emplace_back(
                static_cast<QOROperation*>(operation)->getArgument(0)->getName().chars);
        }
    }
    EXPECT_EQ(orders[0].size(), 20u);
    EXPECT_EQ(orders[0], orders[1]);
}

TEST(OwnedOrder, OfOtherwiseEqualObjectsTheNamesOfWhatTheyReferToDecide) {
    std::vector<std::string> orders[2];
    for (bool const reversed : {false, true}) {
        QORModel model;
        QORClass table;
        auto const operations = newByAddress<QOROperation>(20, reversed);
        for (std::size_t i = 0; i < operations.size(); ++i) {
            auto* type = new QORBaseType;
            type->setName(std::to_string(i).c_str());
            model.addType(type);
            operations[i]->addReturnType(type);
            table.addOperation(operations[i]);
        }
        for (QORObject* operation : kit::OwnedOrder().elements(table, linkOf(table, "operation"))) {
            orders[reversed].emplace_back(
                static_cast<QOROperation*>(operation)->getReturnType()->getName().chars);
        }
    }
    EXPECT_EQ(orders[0].size(), 20u);
    EXPECT_EQ(orders[0], orders[1]);
}

TEST(OwnedOrder, ChildrenAreThoseOfAllChildEndsAndNothingElse) {
    QORModel model;
    auto* package = new QORModel;
    package->setName("inner");
    auto* origin = new QORMetadataOrigin;
    model.addChildPackage(package);
    model.addMetadataOrigin(origin);
    EXPECT_THAT(kit::OwnedOrder().children(model), ElementsAre(package, origin));
    EXPECT_TRUE(kit::OwnedOrder().children(*package).empty()); // its parent is none
}

} // namespace
