#include "TypeEnds.h"

#include <qor/QORBaseType.h>
#include <qor/QORNote.h>
#include <qor/QORTypeValueByPosition.h>
#include <qor/QORTypeValueMap.h>

namespace {

void setAll(QORDerivedType& type) {
    type.setDataType("SQL_CHAR");
    type.setLength(1);
    type.setScale(2);
    type.setInitialValue("initial");
    type.setLowerBound("lower");
    type.setUpperBound("upper");
    type.setUserDefined(true);
    type.setNativeDataType("native");
    type.setUserDataType(true);
    type.setNativeLogicalDataType("logical");
}

std::vector<QORTypeValue*> valuesOf(QORDerivedType const& type) {
    return listOf(type.getTypeValueCount(), [&](int i) { return type.getTypeValue(i); });
}

/// A caller's value that equals nothing, not even itself.
class UnlikeAll : public QORTypeValue {
public:
    bool equals(QORObject const&) const override { return false; }
};

/// A caller's type with answers of its own.
class Fixed : public QORDerivedType {
public:
    QORString const& getInitialValue() const override { return text; }
    QORString const& getLowerBound() const override { return text; }
    QORString const& getUpperBound() const override { return text; }
    bool getUserDefined() const override { return true; }
    QORString const& getNativeDataType() const override { return text; }
    bool getUserDataType() const override { return true; }
    QORString const& getNativeLogicalDataType() const override { return text; }

private:
    QORString text = "FIXED";
};

void expectFixed(QORDerivedType const& type) {
    EXPECT_EQ(type.getInitialValue(), "FIXED");
    EXPECT_EQ(type.getLowerBound(), "FIXED");
    EXPECT_EQ(type.getUpperBound(), "FIXED");
    EXPECT_TRUE(type.getUserDefined());
    EXPECT_EQ(type.getNativeDataType(), "FIXED");
    EXPECT_TRUE(type.getUserDataType());
    EXPECT_EQ(type.getNativeLogicalDataType(), "FIXED");
}

} // namespace

TEST(QORDerivedType, StartsEmpty) {
    QORDerivedType const type;
    EXPECT_EQ(type.getInitialValue(), "");
    EXPECT_FALSE(type.getUserDefined());
    EXPECT_FALSE(type.getUserDataType());
    EXPECT_EQ(type.getTypeValueCount(), 0);
    EXPECT_EQ(type.getActualType(), &type);
    EXPECT_EQ(type.getDisplayName(), "_0_0");
}

TEST(QORDerivedType, FindsItsValues) {
    Graph graph;
    auto* const type = graph.make<QORDerivedType>();
    auto* const firstUnnamed = valueOf(graph, *type, "", "1");
    auto* const secondUnnamed = valueOf(graph, *type, "", "2");
    auto* const named = valueOf(graph, *type, "N", "0");
    EXPECT_EQ(valuesOf(*type), (std::vector<QORTypeValue*>{firstUnnamed, secondUnnamed, named}));
    EXPECT_EQ(type->getTypeValue("N", nullptr), named);
    EXPECT_EQ(type->getTypeValue("M", nullptr), nullptr);
    int cursor = 0;
    EXPECT_EQ(type->getTypeValue("N", &cursor), named);
    EXPECT_EQ(cursor, 2);
    cursor = 0;
    EXPECT_EQ(type->getTypeValue("", &cursor), firstUnnamed);
    EXPECT_EQ(cursor, 0);
    ++cursor;
    EXPECT_EQ(type->getTypeValue("", &cursor), secondUnnamed);
    EXPECT_EQ(cursor, 1);
    ++cursor;
    EXPECT_EQ(type->getTypeValue("", &cursor), nullptr);
    EXPECT_EQ(cursor, 2);
}

TEST(QORDerivedType, ContainsANamesakeToo) {
    Graph graph;
    auto* const type = graph.make<QORDerivedType>();
    valueOf(graph, *type, "N", "1");
    valueOf(graph, *type, "", "2");
    auto* const other = graph.make<QORTypeValue>("N");
    EXPECT_TRUE(type->containsTypeValue(other));
    EXPECT_FALSE(type->removeTypeValue(other));
    EXPECT_EQ(type->getTypeValueCount(), 2);
    other->setName("");
    EXPECT_FALSE(type->containsTypeValue(other));
    other->setValue("2");
    EXPECT_TRUE(type->containsTypeValue(other));
    EXPECT_FALSE(type->addTypeValue(other));
    EXPECT_EQ(other->getDerivedType(), nullptr);
}

TEST(QORDerivedType, ValuesAreReadInTheOrderOfTheirPositions) {
    Graph graph;
    auto* const type = graph.make<QORDerivedType>();
    auto* const last = valueOf(graph, *type, "A", "", 3);
    auto* const second = valueOf(graph, *type, "C", "", 1);
    auto* const first = valueOf(graph, *type, "B", "", 1);
    QORTypeValueByPosition view;
    ASSERT_TRUE(view.add(graph.make<QORTypeValue>(), false, nullptr));
    type->getTypeValueByPosition(view);
    EXPECT_EQ(listOf(view), (Objects{first, second, last}));
    QORDerivedType const empty;
    empty.getTypeValueByPosition(view);
    EXPECT_EQ(view.size, 0);
}

TEST(QORDerivedType, ACopyHasCopiesOfTheValues) {
    Graph graph;
    auto* const type = graph.make<QORDerivedType>("T");
    setAll(*type);
    linkDerivedTypeEnds(graph, *type, Owners::ALL);
    valueOf(graph, *type, "A", "1", 1);
    valueOf(graph, *type, "B", "2", 2);
    QORDerivedType const copy(*type);
    EXPECT_EQ(copy.getInitialValue(), "initial");
    EXPECT_EQ(copy.getLowerBound(), "lower");
    EXPECT_EQ(copy.getUpperBound(), "upper");
    EXPECT_TRUE(copy.getUserDefined());
    EXPECT_EQ(copy.getNativeDataType(), "native");
    EXPECT_TRUE(copy.getUserDataType());
    EXPECT_EQ(copy.getNativeLogicalDataType(), "logical");
    EXPECT_EQ(copy.getDisplayName(), "SQL_CHAR_1_2");
    ASSERT_EQ(copy.getTypeValueCount(), 3);
    for (int i = 0; i < 3; ++i) {
        EXPECT_NE(copy.getTypeValue(i), type->getTypeValue(i));
        EXPECT_TRUE(copy.getTypeValue(i)->equals(*type->getTypeValue(i)));
        EXPECT_EQ(copy.getTypeValue(i)->getDerivedType(), &copy);
        EXPECT_EQ(type->getTypeValue(i)->getDerivedType(), type);
    }
    EXPECT_TRUE(copy.equals(*type));
    EXPECT_EQ(copy.getParentCount(), 0);
    EXPECT_EQ(copy.getDerivedFromConcreteType(), nullptr);
    EXPECT_EQ(copy.getDerivedTypeCount() + copy.getSourceOfEnumeratedTypeMapCount() +
                  copy.getDestinationOfEnumeratedTypeMapCount() + copy.getFeatureCount() +
                  copy.getArgumentCount() + copy.getOperationCount() + copy.getAliasTypeCount() +
                  copy.getExpressionNodeCount() + copy.getAssociatedBusinessRuleCount(),
              0);
    EXPECT_EQ(graph.deaths, Labels());
}

TEST(QORDerivedType, CopiesReadTheSourceThroughItsVirtualGetters) {
    Fixed const source;
    QORDerivedType target;
    target = source;
    expectFixed(target);
    expectFixed(QORDerivedType(source));
}

TEST(QORDerivedType, AssignmentReplacesTheValues) {
    Graph graph;
    QORDerivedType source;
    setAll(source);
    auto* const value = graph.make<QORTypeValue>("A");
    ASSERT_TRUE(source.addTypeValue(value));
    auto* const target = graph.make<QORDerivedType>("T");
    auto* const concrete = graph.make<QORBaseType>();
    auto* const kept = graph.make<QORTypeValue>("A");
    auto* const map = graph.make<QORTypeValueMap>();
    ASSERT_TRUE(target->addDerivedFromConcreteType(concrete) &&
                target->addTypeValue(graph.mortal<QORTypeValue>("old", "B")) && target->addTypeValue(kept) &&
                kept->addSourceOfTypeValueMap(map));
    EXPECT_EQ(&target->setFrom(source), target);
    EXPECT_EQ(graph.deaths, Labels{"old"});
    EXPECT_EQ(kept->getDerivedType(), nullptr);
    EXPECT_EQ(map->getSourceTypeValue(), kept);
    ASSERT_EQ(target->getTypeValueCount(), 1);
    EXPECT_NE(target->getTypeValue(0), value);
    EXPECT_EQ(target->getTypeValue(0)->getName(), "A");
    EXPECT_EQ(source.getTypeValue(0), value);
    EXPECT_EQ(target->getDerivedFromConcreteType(), concrete);
    EXPECT_EQ(*target, source);
    target->removeTypeValues();
    ASSERT_TRUE(source.removeTypeValue(value));
}

TEST(QORDerivedType, SelfAssignmentKeepsTheValues) {
    Graph graph;
    auto* const type = graph.make<QORDerivedType>("T");
    setAll(*type);
    auto* const value = valueOf(graph, *type, "A");
    QORDerivedType const& same = *type;
    *type = same;
    EXPECT_EQ(type->getTypeValueCount(), 1);
    EXPECT_EQ(type->getTypeValue(0), value);
    EXPECT_EQ(type->getInitialValue(), "initial");
}

TEST(QORDerivedType, ComparesTheValues) {
    Graph graph;
    auto* const type = graph.make<QORDerivedType>();
    auto* const other = graph.make<QORDerivedType>();
    valueOf(graph, *type, "A", "1");
    EXPECT_NE(*type, *other);
    auto* const value = valueOf(graph, *other, "A", "2");
    EXPECT_NE(*type, *other);
    value->setValue("1");
    EXPECT_EQ(*type, *other);
    valueOf(graph, *other, "B");
    EXPECT_NE(*type, *other);
}

TEST(QORDerivedType, ComparesTheValuesAlsoWithItself) {
    Graph graph;
    auto* const type = graph.make<QORDerivedType>();
    EXPECT_TRUE(type->finalEquals(*type));
    ASSERT_TRUE(type->addTypeValue(graph.make<UnlikeAll>()));
    EXPECT_FALSE(type->finalEquals(*type));
    EXPECT_FALSE(type->equals(*type));
}

TEST(QORDerivedType, IsTakenApartInOrder) {
    expectTakenApart<QORDerivedType>(linkDerivedTypeEnds,
                                     {"concrete", "value", "sourceMap", "destinationMap", "derived", "model",
                                      "mappingModel", "argument", "operation", "alias", "feature", "node",
                                      "base"},
                                     {"base", "argument", "operation", "alias", "feature", "node", "derived",
                                      "concrete", "sourceMap", "destinationMap"},
                                     {"value"});
}

TEST(QORDerivedType, RecursiveDeleteLeavesTheValuesToTheDestructor) {
    Graph graph;
    auto* const type = new QORDerivedType;
    auto* const value = graph.mortal<QORTypeValue>("value");
    ASSERT_TRUE(type->addTypeValue(value));
    EXPECT_TRUE(type->recursiveDelete());
    EXPECT_EQ(value->getDerivedType(), type);
    EXPECT_EQ(type->getTypeValueCount(), 1);
    delete type;
    EXPECT_EQ(graph.deaths, Labels{"value"});
}

TEST(QORDerivedType, ValuesThatAMapRefersToSurviveTheirType) {
    Graph graph;
    auto* const type = new QORDerivedType;
    auto* const source = graph.make<QORTypeValue>("A");
    auto* const destination = graph.make<QORTypeValue>("B");
    auto* const map = graph.make<QORTypeValueMap>();
    ASSERT_TRUE(type->addTypeValue(source) && type->addTypeValue(destination) &&
                type->addTypeValue(graph.mortal<QORTypeValue>("value", "C")));
    ASSERT_TRUE(map->addSourceTypeValue(source) && map->addDestinationTypeValue(destination));
    delete type;
    EXPECT_EQ(graph.deaths, Labels{"value"});
    EXPECT_EQ(source->getDerivedType(), nullptr);
    EXPECT_EQ(destination->getDerivedType(), nullptr);
    EXPECT_EQ(map->getSourceTypeValue(), source);
}

TEST(QORDerivedType, ValuesThatAMapRefersToSurviveTheModelOfTheirType) {
    Graph graph;
    auto* const model = new QORModel;
    auto* const type = new QORDerivedType;
    auto* const kept = graph.make<QORTypeValue>("A");
    ASSERT_TRUE(model->addType(type) && type->addTypeValue(kept) &&
                type->addTypeValue(graph.mortal<QORTypeValue>("value", "B")) &&
                kept->addSourceOfTypeValueMap(graph.make<QORTypeValueMap>()));
    delete model;
    EXPECT_EQ(graph.deaths, Labels{"value"});
    EXPECT_EQ(kept->getDerivedType(), nullptr);
}

TEST(QORDerivedType, IsolationWithoutDeletionAsksTheVirtualOperationsForTheValues) {
    class Counting : public QORDerivedType {
    public:
        mutable int counts = 0;
        mutable int reads = 0;
        int getTypeValueCount() const override { return ++counts, QORDerivedType::getTypeValueCount(); }
        QORTypeValue* getTypeValue(int index) const override {
            ++reads;
            EXPECT_EQ(index, 0);
            return QORDerivedType::getTypeValue(index);
        }
    };
    Graph graph;
    auto* const type = graph.make<Counting>();
    valueOf(graph, *type, "A");
    valueOf(graph, *type, "B");
    type->counts = 0;
    type->isolate(false);
    EXPECT_EQ(type->counts, 3);
    EXPECT_EQ(type->reads, 2);
    EXPECT_EQ(type->QORDerivedType::getTypeValueCount(), 0);
}

TEST(QORDerivedType, ReencodesNotesBeforeValuesAndEachValueOnce) {
    Graph graph;
    auto* const type = graph.make<QORDerivedType>();
    // The first value goes behind the others while they are under way.
    ASSERT_TRUE(type->addTypeValue(graph.mortal<QORTypeValue>("first", "\xC3\xBF")) &&
                type->addTypeValue(graph.mortal<QORTypeValue>("second", "\xC4")) &&
                type->addTypeValue(graph.mortal<QORTypeValue>("third", "\xC5")) &&
                type->addNote(graph.mortal<QORNote>("note")) &&
                type->addDerivedType(graph.mortal<QORDerivedType>("derived")));
    Recoding recode;
    recode(*type);
    EXPECT_EQ(graph.recodings, (Labels{"note", "first", "second", "third"}));
    EXPECT_EQ(type->getTypeValue(2)->getName(), "\xFF");
    EXPECT_EQ(recode.errors, 2);
}

TEST(QORDerivedType, IsWalkedWithNotesBeforeValues) {
    Graph graph;
    auto* const type = graph.make<QORDerivedType>();
    auto* const note = graph.make<QORNote>();
    auto* const b = valueOf(graph, *type, "B");
    auto* const a = valueOf(graph, *type, "A");
    ASSERT_TRUE(type->addNote(note) && type->addDerivedType(graph.make<QORDerivedType>()));
    EXPECT_EQ(walkOf(*type), (Objects{type, note, a, b}));
}
