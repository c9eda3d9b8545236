#include "kit/GraphOrder.h"

#include <qor/QORArgument.h>
#include <qor/QORAttribute.h>
#include <qor/QORBaseType.h>
#include <qor/QORClass.h>
#include <qor/QORMetaClass.h>
#include <qor/QORMetaLink.h>
#include <qor/QORMetadataOrigin.h>
#include <qor/QORModel.h>
#include <qor/QORNote.h>
#include <qor/QOROperation.h>

#include <algorithm>
#include <gmock/gmock.h>
#include <string>
#include <vector>

namespace {

using kit::GraphOrder;
using testing::ElementsAre;

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

TEST(GraphOrder, PositionGoesBeforeName) {
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
    EXPECT_THAT(namesOf(GraphOrder().elements(table, linkOf(table, "feature"))), ElementsAre("b", "c", "a"));
}

TEST(GraphOrder, NamesGoBeforeAddresses) {
    for (bool const reversed : {false, true}) {
        QORClass table;
        auto const operations = newByAddress<QOROperation>(3, reversed);
        for (std::size_t i = 0; i < 3; ++i) {
            operations[i]->setName(std::string(1, static_cast<char>('a' + i)).c_str());
            table.addOperation(operations[i]);
        }
        EXPECT_THAT(namesOf(GraphOrder().elements(table, linkOf(table, "operation"))),
                    ElementsAre("a", "b", "c"));
    }
}

TEST(GraphOrder, OfUnnamedObjectsTheAttributesDecideAndNotTheAddresses) {
    std::vector<std::string> orders[2];
    for (bool const reversed : {false, true}) {
        QORClass table;
        auto const notes = newByAddress<QORNote>(20, reversed);
        for (std::size_t i = 0; i < notes.size(); ++i) {
            notes[i]->setValue(std::to_string(i).c_str());
            table.addNote(notes[i]);
        }
        for (QORObject* note : GraphOrder().elements(table, linkOf(table, "note"))) {
            orders[reversed].emplace_back(static_cast<QORNote*>(note)->getValue().chars);
        }
    }
    EXPECT_EQ(orders[0].size(), 20u);
    EXPECT_EQ(orders[0], orders[1]);
}

TEST(GraphOrder, ATextCountsByTheAttributeThatHoldsIt) {
    std::vector<std::string> orders[2];
    for (bool const reversed : {false, true}) {
        QORClass table;
        auto const operations = newByAddress<QOROperation>(2, reversed);
        operations[0]->setNativeId("text");
        operations[1]->setNativeType("text");
        for (QOROperation* operation : operations) {
            table.addOperation(operation);
        }
        for (QORObject* operation : GraphOrder().elements(table, linkOf(table, "operation"))) {
            orders[reversed].emplace_back(static_cast<QOROperation*>(operation)->getNativeId().chars);
        }
    }
    EXPECT_EQ(orders[0].size(), 2u);
    EXPECT_EQ(orders[0], orders[1]);
}

TEST(GraphOrder, OfOtherwiseEqualObjectsWhatTheyOwnDecides) {
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
        for (QORObject* operation : GraphOrder().elements(table, linkOf(table, "operation"))) {
            orders[reversed].emplace_back(
                static_cast<QOROperation*>(operation)->getArgument(0)->getName().chars);
        }
    }
    EXPECT_EQ(orders[0].size(), 20u);
    EXPECT_EQ(orders[0], orders[1]);
}

TEST(GraphOrder, OfOtherwiseEqualObjectsTheNamesOfWhatTheyReferToDecide) {
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
        for (QORObject* operation : GraphOrder().elements(table, linkOf(table, "operation"))) {
            orders[reversed].emplace_back(
                static_cast<QOROperation*>(operation)->getReturnType()->getName().chars);
        }
    }
    EXPECT_EQ(orders[0].size(), 20u);
    EXPECT_EQ(orders[0], orders[1]);
}

TEST(GraphOrder, UnaryEndGivesOneElementOrNone) {
    QORModel model;
    EXPECT_TRUE(kit::elementsOf(model, linkOf(model, "metadataOrigin")).empty());
    auto* origin = new QORMetadataOrigin;
    model.addMetadataOrigin(origin);
    EXPECT_THAT(kit::elementsOf(model, linkOf(model, "metadataOrigin")), ElementsAre(origin));
    EXPECT_THAT(GraphOrder().elements(model, linkOf(model, "metadataOrigin")), ElementsAre(origin));
}

TEST(GraphOrder, ChildrenAreThoseOfAllChildEndsAndNothingElse) {
    QORModel model;
    auto* package = new QORModel;
    package->setName("inner");
    auto* origin = new QORMetadataOrigin;
    model.addChildPackage(package);
    model.addMetadataOrigin(origin);
    EXPECT_THAT(GraphOrder().children(model), ElementsAre(package, origin));
    EXPECT_TRUE(GraphOrder().children(*package).empty()); // its parent is none
}

} // namespace
