#include "database/Enumerations.h"

namespace database {
namespace {

constexpr TwoWay<Action, std::string_view, 5> actionTexts{{{Action::NO_ACTION, "NO ACTION"},
                                                           {Action::RESTRICT, "RESTRICT"},
                                                           {Action::CASCADE, "CASCADE"},
                                                           {Action::SET_NULL, "SET NULL"},
                                                           {Action::SET_DEFAULT, "SET DEFAULT"}}};

constexpr TwoWay<TypeKind, std::string_view, 5> typeKinds{{{TypeKind::BUILT_IN, ""},
                                                           {TypeKind::DOMAIN_TYPE, "DOMAIN"},
                                                           {TypeKind::ENUMERATION, "ENUMERATION"},
                                                           {TypeKind::COMPOSITE, "COMPOSITE"},
                                                           {TypeKind::RANGE, "RANGE"}}};

constexpr TwoWay<TableKind, std::string_view, 3> tableKinds{
    {{TableKind::TABLE, "TABLE"},
     {TableKind::VIEW, "VIEW"},
     {TableKind::MATERIALIZED_VIEW, "MATERIALIZED VIEW"}}};

constexpr TwoWay<Action, QORReferentialActionType, 5> modelActions{
    {{Action::NO_ACTION, QORReferentialActionType::NONE},
     {Action::RESTRICT, QORReferentialActionType::RESTRICT},
     {Action::CASCADE, QORReferentialActionType::CASCADE},
     {Action::SET_NULL, QORReferentialActionType::SET_NULL},
     {Action::SET_DEFAULT, QORReferentialActionType::SET_DEFAULT}}};

constexpr TwoWay<TriggerTime, QORTriggerType, 3> modelTimes{
    {{TriggerTime::INSTEAD_OF, QORTriggerType::INSTEAD_OF},
     {TriggerTime::BEFORE, QORTriggerType::BEFORE},
     {TriggerTime::AFTER, QORTriggerType::AFTER}}};

constexpr TwoWay<TableKind, QORViewType, 2> viewTypes{
    {{TableKind::MATERIALIZED_VIEW, QORViewType::MATERIALIZED_VIEW}, {TableKind::VIEW, QORViewType::VIEW}}};

/// The native kind says of an argument that is IN whether it is VARIADIC.
constexpr TwoWay<ArgumentMode, QORArgumentType, 5> modelModes{
    {{ArgumentMode::IN, QORArgumentType::IN_MODE},
     {ArgumentMode::OUT, QORArgumentType::OUT_MODE},
     {ArgumentMode::IN_OUT, QORArgumentType::INOUT_MODE},
     {ArgumentMode::RESULT_COLUMN, QORArgumentType::RETURN_MODE},
     {ArgumentMode::VARIADIC, QORArgumentType::IN_MODE}}};

} // namespace

char const* textOf(Action action) {
    return actionTexts.otherOf(action).data();
}

char const* nativeKindOf(TypeKind kind) {
    return typeKinds.otherOf(kind).data();
}

TypeKind typeKindOf(std::string_view nativeKind) {
    return typeKinds.valueOf(nativeKind);
}

char const* nativeKindOf(TableKind kind) {
    return tableKinds.otherOf(kind).data();
}

char const* nativeKindOf(ArgumentMode mode) {
    return mode == ArgumentMode::VARIADIC ? "VARIADIC" : "";
}

QORReferentialActionType modelAction(Action action) {
    return modelActions.otherOf(action);
}

Action actionOf(QORReferentialActionType action) {
    return modelActions.valueOf(action);
}

QORTriggerType modelTime(TriggerTime time) {
    return modelTimes.otherOf(time);
}

TriggerTime timeOf(QORTriggerType time) {
    return modelTimes.valueOf(time);
}

QORViewType modelViewType(TableKind kind) {
    return viewTypes.otherOf(kind);
}

TableKind viewKindOf(QORViewType type) {
    return viewTypes.valueOf(type);
}

QORArgumentType modelMode(ArgumentMode mode) {
    return modelModes.otherOf(mode);
}

ArgumentMode modeOf(QORArgumentType mode, std::string_view nativeKind) {
    bool const isVariadic = nativeKind == nativeKindOf(ArgumentMode::VARIADIC);
    return isVariadic ? ArgumentMode::VARIADIC : modelModes.valueOf(mode);
}

} // namespace database
