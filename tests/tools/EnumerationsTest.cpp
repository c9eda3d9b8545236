#include "database/Enumerations.h"

#include <gmock/gmock.h>
#include <set>

namespace {

using namespace database;

constexpr Action actions[] = {Action::NO_ACTION, Action::RESTRICT, Action::CASCADE, Action::SET_NULL,
                              Action::SET_DEFAULT};
constexpr TypeKind typeKinds[] = {TypeKind::BUILT_IN, TypeKind::DOMAIN_TYPE, TypeKind::ENUMERATION,
                                  TypeKind::COMPOSITE, TypeKind::RANGE};
constexpr TriggerTime times[] = {TriggerTime::BEFORE, TriggerTime::AFTER, TriggerTime::INSTEAD_OF};
constexpr ArgumentMode modes[] = {ArgumentMode::IN, ArgumentMode::OUT, ArgumentMode::IN_OUT,
                                  ArgumentMode::VARIADIC, ArgumentMode::RESULT_COLUMN};

TEST(Enumerations, ATableLeadsBothWays) {
    constexpr TwoWay<TriggerTime, char, 2> letters{{{TriggerTime::BEFORE, 'b'}, {TriggerTime::AFTER, 'a'}}};
    static_assert(letters.otherOf(TriggerTime::AFTER) == 'a');
    static_assert(letters.valueOf('a') == TriggerTime::AFTER);
    static_assert(letters.otherOf(TriggerTime::INSTEAD_OF) == 'b', "the first one stands for the rest");
    static_assert(letters.valueOf('x') == TriggerTime::BEFORE);
}

TEST(Enumerations, EachActionHasATextAndAValueOfTheModel) {
    std::set<std::string_view> texts;
    for (Action const action : actions) {
        EXPECT_TRUE(texts.insert(textOf(action)).second) << textOf(action);
        EXPECT_EQ(actionOf(modelAction(action)), action) << textOf(action);
    }
    EXPECT_THAT(texts, testing::ElementsAre("CASCADE", "NO ACTION", "RESTRICT", "SET DEFAULT", "SET NULL"));
    EXPECT_EQ(actionOf(QORReferentialActionType::UNSPECIFIED), Action::NO_ACTION);
}

TEST(Enumerations, EachKindOfTypeIsToldByItsNativeKind) {
    for (TypeKind const kind : typeKinds) {
        EXPECT_EQ(typeKindOf(nativeKindOf(kind)), kind) << nativeKindOf(kind);
    }
    EXPECT_STREQ(nativeKindOf(TypeKind::DOMAIN_TYPE), "DOMAIN");
    EXPECT_EQ(typeKindOf("another"), TypeKind::BUILT_IN);
}

TEST(Enumerations, EachKindOfTableHasANativeKind) {
    EXPECT_STREQ(nativeKindOf(TableKind::TABLE), "TABLE");
    EXPECT_STREQ(nativeKindOf(TableKind::VIEW), "VIEW");
    EXPECT_STREQ(nativeKindOf(TableKind::MATERIALIZED_VIEW), "MATERIALIZED VIEW");
}

TEST(Enumerations, EachKindOfViewHasAValueOfTheModel) {
    for (TableKind const kind : {TableKind::VIEW, TableKind::MATERIALIZED_VIEW}) {
        EXPECT_EQ(viewKindOf(modelViewType(kind)), kind) << nativeKindOf(kind);
    }
    EXPECT_EQ(viewKindOf(QORViewType::SNAPSHOT), TableKind::MATERIALIZED_VIEW);
}

TEST(Enumerations, EachTimeOfATriggerHasAValueOfTheModel) {
    for (TriggerTime const time : times) {
        EXPECT_EQ(timeOf(modelTime(time)), time) << static_cast<int>(time);
    }
}

TEST(Enumerations, EachModeOfAnArgumentHasAValueOfTheModelAndANativeKind) {
    for (ArgumentMode const mode : modes) {
        EXPECT_EQ(modeOf(modelMode(mode), nativeKindOf(mode)), mode) << static_cast<int>(mode);
    }
    EXPECT_EQ(modelMode(ArgumentMode::VARIADIC), QORArgumentType::IN_MODE);
    EXPECT_EQ(modeOf(QORArgumentType::OUT_MODE, "VARIADIC"), ArgumentMode::VARIADIC);
}

} // namespace
