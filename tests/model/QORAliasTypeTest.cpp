#include "TypeEnds.h"

#include <qor/QORBaseType.h>
#include <qor/QORClassType.h>
#include <qor/QORTypeValueByPosition.h>

#include <csignal>
#include <cstdlib>
#include <functional>
#include <sys/time.h>

namespace {

void linkEnds(Graph& graph, QORAliasType& type, Owners owners) {
    linkTypeEnds(graph, type, owners);
    ASSERT_TRUE(type.addAliasOfType(graph.mortal<QORBaseType>("target")));
}

QORDerivedType* fullType(Graph& graph) {
    auto* const type = graph.make<QORDerivedType>("D");
    type->setDataType("SQL_DECIMAL");
    type->setLength(9);
    type->setScale(2);
    type->setInitialValue("1");
    type->setLowerBound("0");
    type->setUpperBound("5");
    type->setUserDefined(true);
    type->setNativeDataType("DEC");
    type->setUserDataType(true);
    type->setNativeLogicalDataType("DECIMAL");
    return type;
}

void expectAnswersOf(QORType const& alias, QORType const& type) {
    EXPECT_EQ(&alias.getDataType(), &type.getDataType());
    EXPECT_EQ(alias.getLength(), type.getLength());
    EXPECT_EQ(alias.getScale(), type.getScale());
    EXPECT_EQ(&alias.getInitialValue(), &type.getInitialValue());
    EXPECT_EQ(&alias.getLowerBound(), &type.getLowerBound());
    EXPECT_EQ(&alias.getUpperBound(), &type.getUpperBound());
    EXPECT_EQ(alias.getUserDefined(), type.getUserDefined());
    EXPECT_EQ(&alias.getNativeDataType(), &type.getNativeDataType());
    EXPECT_EQ(alias.getUserDataType(), type.getUserDataType());
    EXPECT_EQ(&alias.getNativeLogicalDataType(), &type.getNativeLogicalDataType());
    EXPECT_EQ(alias.getDisplayName(), type.getDisplayName());
}

QORAliasType* aliasOf(Graph& graph, QORType& type) {
    auto* const alias = graph.make<QORAliasType>("Alias");
    EXPECT_TRUE(alias->addAliasOfType(&type));
    return alias;
}

/// Runs a question that is expected to go on for ever, and ends it by a signal.
[[noreturn]] void interrupted(std::function<void()> const& question) {
    std::signal(SIGALRM, SIG_DFL);
    itimerval soon = {};
    soon.it_value.tv_usec = 200000;
    setitimer(ITIMER_REAL, &soon, nullptr);
    question();
    std::_Exit(0);
}

} // namespace

TEST(QORAliasType, AnswersWithTheAttributesOfItsType) {
    Graph graph;
    auto* const type = fullType(graph);
    auto* const alias = aliasOf(graph, *type);
    expectAnswersOf(*alias, *type);
    EXPECT_EQ(alias->getDisplayName(), "SQL_DECIMAL_9_2");
    EXPECT_EQ(alias->getActualType(), type);
}

TEST(QORAliasType, AnswersWithTheAttributesAtTheEndOfAChain) {
    Graph graph;
    auto* const type = fullType(graph);
    auto* const alias = aliasOf(graph, *aliasOf(graph, *aliasOf(graph, *type)));
    expectAnswersOf(*alias, *type);
    EXPECT_EQ(alias->getActualType(), type);
}

TEST(QORAliasType, AnswersOfAClassTypeAreForwardedToo) {
    Graph graph;
    auto* const type = graph.make<QORClassType>();
    auto* const alias = aliasOf(graph, *aliasOf(graph, *type));
    expectAnswersOf(*alias, *type);
    EXPECT_EQ(alias->getDisplayName(), "undefined_0_0");
    EXPECT_EQ(alias->getActualType(), type);
}

TEST(QORAliasType, AChainThatEndsAtAnAliasHasNoActualType) {
    Graph graph;
    auto* const last = graph.make<QORAliasType>();
    EXPECT_EQ(last->getActualType(), nullptr);
    EXPECT_EQ(aliasOf(graph, *last)->getActualType(), nullptr);
}

TEST(QORAliasType, AnswersWithTheValuesOfItsType) {
    Graph graph;
    auto* const type = fullType(graph);
    auto* const a = valueOf(graph, *type, "A", "", 2);
    auto* const b = valueOf(graph, *type, "B", "", 1);
    auto* const alias = aliasOf(graph, *type);
    EXPECT_EQ(alias->getTypeValueCount(), 2);
    EXPECT_EQ(alias->getTypeValue(0), a);
    EXPECT_EQ(alias->getTypeValue(1), b);
    EXPECT_EQ(alias->getTypeValue(2), nullptr);
    EXPECT_TRUE(alias->containsTypeValue(b));
    EXPECT_FALSE(alias->containsTypeValue(graph.make<QORTypeValue>("C")));
    EXPECT_EQ(alias->getTypeValue("B", nullptr), b);
    int cursor = 0;
    EXPECT_EQ(alias->getTypeValue("B", &cursor), b);
    EXPECT_EQ(cursor, 1);
    QORTypeValueByPosition view;
    alias->getTypeValueByPosition(view);
    EXPECT_EQ(listOf(view), (Objects{b, a}));
}

TEST(QORAliasType, AnAliasOfABaseTypeHasNoValues) {
    Graph graph;
    auto* const alias = aliasOf(graph, *graph.make<QORBaseType>());
    QORTypeValueByPosition view;
    ASSERT_TRUE(view.add(graph.make<QORTypeValue>(), false, nullptr));
    alias->getTypeValueByPosition(view);
    EXPECT_EQ(view.size, 0);
    EXPECT_EQ(alias->getTypeValueCount(), 0);
    EXPECT_EQ(alias->getTypeValue(0), nullptr);
}

TEST(QORAliasTypeDeathTest, QuestionsForTheValuesOfAnAliasOfAnAliasNeverReturn) {
    Graph graph;
    auto* const alias = aliasOf(graph, *aliasOf(graph, *fullType(graph)));
    QORTypeValue const value;
    QORTypeValueByPosition view;
    auto const endedBySignal = testing::KilledBySignal(SIGALRM);
    EXPECT_EXIT(interrupted([&] { alias->getTypeValueCount(); }), endedBySignal, "");
    EXPECT_EXIT(interrupted([&] { alias->containsTypeValue(&value); }), endedBySignal, "");
    EXPECT_EXIT(interrupted([&] { alias->getTypeValue(0); }), endedBySignal, "");
    EXPECT_EXIT(interrupted([&] { alias->getTypeValue("", nullptr); }), endedBySignal, "");
    EXPECT_EXIT(interrupted([&] { alias->getTypeValueByPosition(view); }), endedBySignal, "");
}

TEST(QORAliasType, IsTakenApartInOrder) {
    expectTakenApart<QORAliasType>(
        linkEnds,
        {"target", "model", "mappingModel", "argument", "operation", "alias", "feature", "node", "base"},
        {"base", "argument", "operation", "alias", "feature", "node", "target"});
}
