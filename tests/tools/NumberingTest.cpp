#include "kit/Numbering.h"

#include "kit/Graph.h"
#include "kit/Reflection.h"

#include <qor/QORAttribute.h>
#include <qor/QORBaseType.h>
#include <qor/QORClass.h>
#include <qor/QORDesignPackage.h>
#include <qor/QORGeneralization.h>
#include <qor/QORIndex.h>
#include <qor/QORIndexMember.h>
#include <qor/QORModel.h>

#include <ctime>
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

} // namespace
