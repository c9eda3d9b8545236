#include "Expectations.h"

#include <qor/QORArgument.h>
#include <qor/QORClass.h>
#include <qor/QORSQLViewEntity.h>
#include <qor/QORTrigger.h>

TEST(QORTrigger, HasTheOwnersOfAnOperation) {
    Graph graph;
    auto* const trigger = graph.make<QORTrigger>();
    auto* const owner = graph.make<QORClass>();
    auto* const view = graph.make<QORSQLViewEntity>();
    ASSERT_TRUE(owner->addOperation(trigger) && view->addOperation(trigger));
    expectLeaves(*trigger, {owner, view});
}

TEST(QORTrigger, DeletedWithTwoOwnersItDeletesItsArguments) {
    Graph graph;
    auto* const trigger = new QORTrigger;
    auto* const owner = graph.make<QORClass>();
    auto* const view = graph.make<QORSQLViewEntity>();
    ASSERT_TRUE(owner->addOperation(trigger) && view->addOperation(trigger) &&
                trigger->addArgument(graph.mortal<QORArgument>("argument")));
    delete trigger; // the trigger leaves the class, the operation the view
    EXPECT_EQ(graph.deaths, Labels{"argument"});
    EXPECT_FALSE(owner->isReferenced());
    EXPECT_FALSE(view->isReferenced());
}

TEST(QORTrigger, ReencodesTheTextsAndArgumentsOfAnOperation) {
    Graph graph;
    auto* const trigger = graph.make<QORTrigger>();
    auto* const argument = graph.make<QORArgument>(inUtf8);
    ASSERT_TRUE(trigger->addArgument(argument));
    Recoding recode;
    recode(*trigger);
    EXPECT_EQ(argument->getName(), inLatin1);
}
