#include "Expectations.h"

#include <qor/QORClass.h>
#include <qor/QORModel.h>
#include <qor/QORNote.h>
#include <qor/QORTypeValue.h>
#include <qor/QORTypeValueByPosition.h>
#include <qor/QORTypeValueMap.h>

namespace {

void linkEnds(Graph& graph, QORBusinessRule& rule, Owners owners) {
    linkBase(graph, rule);
    ASSERT_TRUE(rule.addTypeValue(graph.mortal<QORTypeValue>("value")));
    ASSERT_TRUE(rule.addModelObject(graph.mortal<QORClass>("modelObject")));
    linkOwner(graph, owners, "owner", rule, &QORBusinessRule::addModel);
}

QORTypeValue* valueOf(Graph& graph, QORBusinessRule& rule, char const* name, short position = 0) {
    auto* const made = graph.make<QORTypeValue>(name);
    made->setPosition(position);
    EXPECT_TRUE(rule.addTypeValue(made));
    return made;
}

} // namespace

TEST(QORBusinessRule, KeepsItsModelObjectsInTheOrderOfAdding) {
    Graph graph;
    auto* const rule = graph.make<QORBusinessRule>();
    auto* const b = graph.make<QORClass>("B");
    auto* const a = graph.make<QORClass>("A");
    ASSERT_TRUE(rule->addModelObject(b) && a->addAssociatedBusinessRule(rule));
    EXPECT_EQ(rule->getModelObject(0), b);
    EXPECT_EQ(rule->getModelObject(1), a);
    EXPECT_EQ(a->getAssociatedBusinessRule(0), rule);
    EXPECT_FALSE(rule->addModelObject(a));
    EXPECT_FALSE(rule->addModelObject(rule));
}

TEST(QORBusinessRule, ValuesAreReadInTheOrderOfTheirPositions) {
    Graph graph;
    auto* const rule = graph.make<QORBusinessRule>();
    auto* const last = valueOf(graph, *rule, "A", 3);
    auto* const second = valueOf(graph, *rule, "C", 1);
    auto* const first = valueOf(graph, *rule, "B", 1);
    QORTypeValueByPosition view;
    ASSERT_TRUE(view.add(graph.make<QORTypeValue>(), false, nullptr));
    rule->getTypeValueByPosition(view);
    EXPECT_EQ(listOf(view), (Objects{first, second, last}));
    QORBusinessRule().getTypeValueByPosition(view);
    EXPECT_EQ(view.size, 0);
}

TEST(QORBusinessRule, ACopyHasCopiesOfTheValues) {
    Graph graph;
    auto* const rule = graph.make<QORBusinessRule>("R");
    linkEnds(graph, *rule, Owners::ALL);
    valueOf(graph, *rule, "A", 4)->setValue("v");
    rule->setType(QORBusinessRuleType::MIN_MAX);
    rule->setValue("value");
    rule->setLowerBound("lower");
    rule->setUpperBound("upper");
    QORBusinessRule const copy(*rule);
    EXPECT_EQ(copy.getType(), QORBusinessRuleType::MIN_MAX);
    EXPECT_EQ(copy.getValue(), "value");
    EXPECT_EQ(copy.getLowerBound(), "lower");
    EXPECT_EQ(copy.getUpperBound(), "upper");
    ASSERT_EQ(copy.getTypeValueCount(), 2);
    for (int i = 0; i < 2; ++i) {
        EXPECT_NE(copy.getTypeValue(i), rule->getTypeValue(i));
        EXPECT_TRUE(copy.getTypeValue(i)->equals(*rule->getTypeValue(i)));
        EXPECT_EQ(copy.getTypeValue(i)->getBusinessRule(), &copy);
        EXPECT_EQ(rule->getTypeValue(i)->getBusinessRule(), rule);
    }
    EXPECT_EQ(copy.getModel(), nullptr);
    EXPECT_EQ(copy.getModelObjectCount(), 0);
    EXPECT_EQ(copy.getAssociatedBusinessRuleCount(), 0);
}

TEST(QORBusinessRule, AssignmentReplacesTheValues) {
    Graph graph;
    auto* const source = graph.make<QORBusinessRule>("S");
    auto* const value = valueOf(graph, *source, "A");
    auto* const target = graph.make<QORBusinessRule>("T");
    auto* const kept = valueOf(graph, *target, "A");
    auto* const object = graph.make<QORClass>();
    ASSERT_TRUE(target->addTypeValue(graph.mortal<QORTypeValue>("old", "B")) &&
                target->addModelObject(object) &&
                kept->addDestinationOfTypeValueMap(graph.make<QORTypeValueMap>()));
    EXPECT_EQ(&target->setFrom(*source), target);
    EXPECT_EQ(graph.deaths, Labels{"old"});
    EXPECT_EQ(kept->getBusinessRule(), nullptr);
    ASSERT_EQ(target->getTypeValueCount(), 1);
    EXPECT_NE(target->getTypeValue(0), value);
    EXPECT_NE(target->getTypeValue(0), kept);
    EXPECT_EQ(source->getTypeValue(0), value);
    EXPECT_EQ(target->getModelObject(0), object);
    EXPECT_EQ(*target, *source);
    target->removeTypeValues();
}

TEST(QORBusinessRule, SelfAssignmentKeepsTheValues) {
    Graph graph;
    auto* const rule = graph.make<QORBusinessRule>("R");
    auto* const value = valueOf(graph, *rule, "A");
    QORBusinessRule const& same = *rule;
    *rule = same;
    EXPECT_EQ(rule->getTypeValue(0), value);
}

TEST(QORBusinessRule, IsTakenApartInOrder) {
    expectTakenApart<QORBusinessRule>(linkEnds, {"owner", "value", "modelObject", "base"},
                                      {"base", "modelObject"}, {"value"});
}

TEST(QORBusinessRule, ValuesThatAMapRefersToSurviveTheRuleAndItsModel) {
    Graph graph;
    auto* const model = new QORModel;
    auto* const rule = new QORBusinessRule;
    auto* const kept = graph.make<QORTypeValue>("A");
    ASSERT_TRUE(model->addBusinessRule(rule) && rule->addTypeValue(kept) &&
                rule->addTypeValue(graph.mortal<QORTypeValue>("value", "B")) &&
                kept->addSourceOfTypeValueMap(graph.make<QORTypeValueMap>()));
    delete model;
    EXPECT_EQ(graph.deaths, Labels{"value"});
    EXPECT_EQ(kept->getBusinessRule(), nullptr);
    EXPECT_NE(kept->getSourceOfTypeValueMap(0), nullptr);
}

TEST(QORBusinessRule, ReencodesNotesBeforeValuesAndNoModelObject) {
    Graph graph;
    auto* const rule = graph.make<QORBusinessRule>();
    ASSERT_TRUE(rule->addTypeValue(graph.mortal<QORTypeValue>("first", inUtf8)) &&
                rule->addTypeValue(graph.mortal<QORTypeValue>("second", "\xC4")) &&
                rule->addNote(graph.mortal<QORNote>("note")) &&
                rule->addModelObject(graph.mortal<QORClass>("class")));
    Recoding recode;
    recode(*rule);
    EXPECT_EQ(graph.recodings, (Labels{"note", "first", "second"}));
    EXPECT_EQ(rule->getTypeValue(1)->getName(), inLatin1);
}

TEST(QORBusinessRule, IsWalkedWithNotesBeforeValues) {
    Graph graph;
    auto* const rule = graph.make<QORBusinessRule>();
    auto* const note = graph.make<QORNote>();
    auto* const b = valueOf(graph, *rule, "B");
    auto* const a = valueOf(graph, *rule, "A");
    ASSERT_TRUE(rule->addNote(note) && rule->addModelObject(graph.make<QORClass>()));
    EXPECT_EQ(walkOf(*rule), (Objects{rule, note, a, b}));
}
