#include "database/ModelReader.h"

#include "DescribeStructure.h"
#include "EveryRecord.h"
#include "database/ModelBuilder.h"
#include "exchange/JsonReader.h"
#include "exchange/JsonWriter.h"
#include "kit/Verify.h"

#include <qor/QORAliasFeature.h>
#include <qor/QORAliasType.h>
#include <qor/QORAssociationRoleNameMap.h>
#include <qor/QORAttribute.h>
#include <qor/QORBaseType.h>
#include <qor/QORCandidateKey.h>
#include <qor/QORClass.h>
#include <qor/QORCube.h>
#include <qor/QORDerivedType.h>
#include <qor/QORDesignPackage.h>
#include <qor/QORForeignKey.h>
#include <qor/QORModel.h>

#include <gmock/gmock.h>
#include <sstream>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(ModelReader, EveryRecordComesBackFromItsModel) {
    database::Structure const structure = everyRecord();
    auto const model = database::buildModel(structure);
    EXPECT_EQ(describe(database::readModel(*model)), describe(structure));
}

TEST(ModelReader, EveryRecordComesBackFromAModelThatWasJson) {
    database::Structure const structure = everyRecord();
    std::stringstream json;
    exchange::writeJson(*database::buildModel(structure), json);
    kit::Graph const graph = exchange::readJson(json, "test");
    EXPECT_THAT(kit::verify(graph.root()), IsEmpty());
    EXPECT_EQ(describe(database::readModel(static_cast<QORModel&>(graph.root()))), describe(structure));
}

TEST(ModelReader, WhatCameBackGivesTheSameModelAgain) {
    auto const model = database::buildModel(everyRecord());
    std::stringstream first;
    exchange::writeJson(*model, first);
    std::stringstream second;
    exchange::writeJson(*database::buildModel(database::readModel(*model)), second);
    EXPECT_EQ(first.str(), second.str());
}

TEST(ModelReader, EmptyModelIsAnEmptyStructure) {
    QORModel model;
    database::Structure const structure = database::readModel(model);
    EXPECT_THAT(structure.schemas, IsEmpty());
    EXPECT_THAT(structure.tables, IsEmpty());
    EXPECT_THAT(structure.types, IsEmpty());
}

TEST(ModelReader, ModelMadeByHandNeedsNoSchemaAndNoPhysicalNames) {
    QORModel model;
    auto* const package = new QORDesignPackage;
    package->setName("sales");
    model.addChildPackage(package);
    auto* const base = new QORBaseType;
    base->setName("text");
    base->setDataType("SQL_VARCHAR");
    model.addType(base);
    auto* const alias = new QORAliasType;
    alias->setName("name");
    alias->addAliasOfType(base);
    model.addType(alias);
    auto* const table = new QORClass;
    table->setName("customer");
    package->addModelElement(table);
    for (char const* name : {"b", "a"}) {
        auto* const column = new QORAttribute;
        column->setName(name);
        column->setPosition(name[0] == 'b' ? 1 : 2);
        column->addType(alias);
        table->addAttribute(column);
    }
    auto* const key = new QORCandidateKey;
    key->addAttribute(table->getAttribute("b", nullptr));
    table->addKey(key);
    table->addPrimaryCandidateKey(key);
    auto* const foreign = new QORForeignKey;
    foreign->addAttribute(table->getAttribute("a", nullptr));
    foreign->addCandidateKey(key);
    table->addKey(foreign);

    database::Structure const structure = database::readModel(model);
    ASSERT_EQ(structure.schemas.size(), 1u);
    EXPECT_EQ(structure.schemas[0].name, "sales");
    ASSERT_EQ(structure.tables.size(), 1u);
    EXPECT_EQ(structure.tables[0].name, "customer");
    EXPECT_EQ(structure.tables[0].schema, 0);
    EXPECT_EQ(structure.tables[0].nativeKind, "TABLE");
    ASSERT_EQ(structure.tables[0].columns.size(), 2u);
    EXPECT_EQ(structure.tables[0].columns[0].name, "b");
    ASSERT_EQ(structure.types.size(), 1u);
    EXPECT_EQ(structure.types[0].dataType, "SQL_VARCHAR");
    ASSERT_EQ(structure.keys.size(), 2u);
    EXPECT_EQ(structure.keys[0].kind, database::KeyKind::PRIMARY);
    EXPECT_THAT(structure.keys[0].columns, ElementsAre(0));
    EXPECT_EQ(structure.keys[1].kind, database::KeyKind::FOREIGN);
    EXPECT_THAT(structure.keys[1].columns, ElementsAre(1));
    EXPECT_EQ(structure.keys[1].referredTable, 0);
    EXPECT_THAT(structure.keys[1].referredColumns, ElementsAre(0));
}

TEST(ModelReader, TypesInACircleAreReadAndTheCircleIsOpened) {
    QORModel model;
    QORDerivedType* types[4];
    for (int i = 0; i < 4; ++i) {
        types[i] = new QORDerivedType;
        types[i]->setName(QORString(i));
        model.addType(types[i]);
    }
    types[0]->addDerivedFromConcreteType(types[1]);
    types[1]->addDerivedFromConcreteType(types[2]);
    types[2]->addDerivedFromConcreteType(types[1]);
    types[3]->addDerivedFromConcreteType(types[3]);
    database::Structure const structure = database::readModel(model);
    ASSERT_EQ(structure.types.size(), 4u);
    for (auto const& type : structure.types) {
        int steps = 0;
        for (int base = type.base; base >= 0; base = structure.types[static_cast<std::size_t>(base)].base) {
            ASSERT_LT(++steps, 4);
        }
    }
}

TEST(ModelReader, LongChainsOfTypesAreNoTrouble) {
    QORModel model;
    QORDerivedType* last = nullptr;
    for (int i = 0; i < 50000; ++i) {
        auto* const type = new QORDerivedType;
        type->setName(QORString(i));
        model.addType(type);
        if (last) {
            type->addDerivedFromConcreteType(last);
        }
        last = type;
    }
    EXPECT_EQ(database::readModel(model).types.size(), 50000u);
}

TEST(ModelReader, AliasesInACircleAreNoType) {
    QORModel model;
    auto* const one = new QORAliasType;
    auto* const other = new QORAliasType;
    one->setName("one");
    other->setName("other");
    model.addType(one);
    model.addType(other);
    one->addAliasOfType(other);
    other->addAliasOfType(one);
    auto* const package = new QORDesignPackage;
    model.addChildPackage(package);
    auto* const table = new QORClass;
    package->addModelElement(table);
    auto* const column = new QORAttribute;
    column->addType(one);
    table->addAttribute(column);
    EXPECT_EQ(database::readModel(model).tables[0].columns[0].type, -1);
}

TEST(ModelReader, PropertiesOfUsersAreNoExtras) {
    database::Structure structure;
    structure.catalog.name = "shop";
    structure.schemas.resize(1);
    structure.schemas[0].name = "main";
    structure.tables.resize(1);
    structure.tables[0].name = "t";
    structure.tables[0].schema = 0;
    structure.tables[0].extras = {{"colour", "red"}};
    auto const model = database::buildModel(structure);
    std::stringstream json;
    exchange::writeJson(*model, json);
    std::string text = json.str();
    std::string const group = "\"group\": \"database\"";
    ASSERT_NE(text.find(group), std::string::npos);
    text.replace(text.find(group), group.size(), "\"group\": \"mine\"");
    std::istringstream changed(text);
    kit::Graph const graph = exchange::readJson(changed, "test");
    EXPECT_THAT(database::readModel(static_cast<QORModel&>(graph.root())).tables[0].extras, IsEmpty());
    EXPECT_EQ(database::readModel(*model).tables[0].extras.size(), 1u);
}

TEST(ModelReader, ColumnOfAnotherTableIsNoneOfAKeyOrAnIndex) {
    QORModel model;
    auto* const package = new QORDesignPackage;
    model.addChildPackage(package);
    QORClass* tables[2];
    QORAttribute* columns[2];
    for (int i : {0, 1}) {
        tables[i] = new QORClass;
        columns[i] = new QORAttribute;
        tables[i]->setName(i ? "b" : "a");
        columns[i]->setName("c");
        package->addModelElement(tables[i]);
        tables[i]->addFeature(columns[i]);
    }
    auto* const key = new QORCandidateKey;
    tables[0]->addKey(key);
    key->addAttribute(columns[1]);
    auto* const index = new QORIndex;
    tables[0]->addIndex(index);
    auto* const member = new QORIndexMember;
    index->addIndexMember(member);
    member->addAttribute(columns[1]);
    database::Structure const structure = database::readModel(model);
    ASSERT_EQ(structure.keys.size(), 1u);
    EXPECT_EQ(structure.keys[0].columns, std::vector<int>{-1});
    ASSERT_EQ(structure.indexes.size(), 1u);
    EXPECT_EQ(structure.indexes[0].members[0].column, -1);
    EXPECT_THAT(structure.keys[0].extras, IsEmpty());
    // A document names it nevertheless.
    database::Structure const read = database::readDocument(kit::Numbering(model)).structure;
    EXPECT_EQ(*database::findExtra(read.keys.at(0).extras, database::columnName), "c");
    EXPECT_EQ(*database::findExtra(read.indexes.at(0).members.at(0).extras, database::columnName), "c");
}

/// A table whose columns are the letters, in that order, all of them in its key.
template <class Key>
struct Lettered {
    explicit Lettered(QORModel& model, char const* name, std::string const& letters)
        : table(new QORClass), key(new Key) {
        auto* const package = new QORDesignPackage;
        package->setName(name);
        model.addChildPackage(package);
        table->setName(name);
        package->addModelElement(table);
        table->addKey(key);
        for (char const letter : letters) {
            auto* const column = new QORAttribute;
            column->setName(std::string(1, letter).c_str());
            column->setPosition(static_cast<short>(table->getFeatureCount() + 1));
            table->addFeature(column);
            key->addAttribute(column);
        }
    }

    QORClass* table;
    Key* key;
};

TEST(ModelReader, ForeignKeyWithoutPairsRefersToTheColumnsOfTheOtherKeyInTheirOrder) {
    QORModel model;
    Lettered<QORCandidateKey> const far(model, "far", "xy");
    Lettered<QORForeignKey> const near(model, "near", "ba");
    near.key->addCandidateKey(far.key);
    database::Structure const structure = database::readModel(model);
    ASSERT_EQ(structure.keys.size(), 2u);
    database::Key const& foreign = structure.keys[1];
    EXPECT_EQ(foreign.kind, database::KeyKind::FOREIGN);
    EXPECT_EQ(foreign.referredTable, structure.keys[0].table);
    EXPECT_THAT(foreign.columns, ElementsAre(0, 1));
    EXPECT_THAT(foreign.referredColumns, ElementsAre(0, 1));
}

TEST(ModelReader, ForeignKeyRefersToNoColumnsWhereTheKeysDifferInLength) {
    for (char const* letters : {"x", "xyz", ""}) {
        QORModel model;
        Lettered<QORCandidateKey> const far(model, "far", letters);
        Lettered<QORForeignKey> const near(model, "near", "ab");
        near.key->addCandidateKey(far.key);
        database::Structure const structure = database::readModel(model);
        ASSERT_EQ(structure.keys.size(), 2u);
        EXPECT_EQ(structure.keys[1].referredTable, structure.keys[0].table);
        EXPECT_THAT(structure.keys[1].columns, ElementsAre(0, 1));
        EXPECT_THAT(structure.keys[1].referredColumns, IsEmpty()) << letters;
    }
}

TEST(ModelReader, DocumentHasEveryClassifierByItsLogicalName) {
    QORModel model;
    model.setName("m");
    auto* const package = new QORDesignPackage;
    model.addChildPackage(package);
    auto* const cube = new QORCube;
    cube->setName("a cube");
    package->addModelElement(cube);
    auto* const table = new QORClass;
    table->setName("a table");
    table->setPhysicalName("T");
    table->setNativeType("SEQUENCE");
    package->addModelElement(table);
    auto* const alias = new QORAliasFeature;
    alias->setName("f");
    table->addFeature(alias);
    auto const read = database::readDocument(kit::Numbering(model));
    EXPECT_EQ(read.structure.catalog.name, "m");
    EXPECT_THAT(read.tables, ElementsAre(cube, table));
    ASSERT_EQ(read.structure.tables.size(), 2u);
    EXPECT_EQ(read.structure.tables[0].name, "a cube");
    EXPECT_EQ(read.structure.tables[1].name, "a table");
    ASSERT_EQ(read.structure.tables[1].columns.size(), 1u);
    EXPECT_TRUE(database::findExtra(read.structure.tables[1].columns[0].extras, database::withoutValue));
}

TEST(ModelReader, DocumentKnowsTheObjectsOfItsKeysInTheOrderOfTheRecords) {
    database::Structure structure = everyRecord();
    auto const model = database::buildModel(structure);
    auto const read = database::readDocument(kit::Numbering(*model));
    ASSERT_EQ(read.keys.size(), structure.keys.size());
    for (std::size_t i = 0; i < read.keys.size(); ++i) {
        EXPECT_EQ(read.structure.keys[i].name, read.keys[i]->getName().chars);
        bool const isForeign = read.keys[i]->isInstanceOf(QORElementType::FOREIGN_KEY);
        EXPECT_EQ(read.structure.keys[i].kind == database::KeyKind::FOREIGN, isForeign);
    }
}

TEST(ModelReader, DocumentShowsTheColumnsThatAForeignKeyHas) {
    QORModel model;
    Lettered<QORForeignKey> const near(model, "near", "ab");
    near.key->addAssociationRoleNameMap(new QORAssociationRoleNameMap); // of no columns
    EXPECT_THAT(database::readModel(model).keys.at(0).columns, ElementsAre(-1));
    EXPECT_THAT(database::readDocument(kit::Numbering(model)).structure.keys.at(0).columns,
                ElementsAre(0, 1));
}

} // namespace
