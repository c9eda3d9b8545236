#pragma once

#include "database/Structure.h"

#include <qor/QORArgumentType.h>
#include <qor/QORReferentialActionType.h>
#include <qor/QORTriggerType.h>
#include <qor/QORViewType.h>

#include <cstddef>
#include <string_view>

/// What stands for the values of Structure's enumerations elsewhere: in SQL, in the native kinds of a model's
/// objects, and in the model's own enumerations.
namespace database {

/// The values of an enumeration and what stands for each elsewhere. The first pair stands for whatever has
/// none.
template <class Value, class Other, std::size_t count>
struct TwoWay {
    struct Pair {
        Value value;
        Other other;
    };

    constexpr Other otherOf(Value value) const {
        for (Pair const& pair : pairs) {
            if (pair.value == value) {
                return pair.other;
            }
        }
        return pairs[0].other;
    }
    constexpr Value valueOf(Other other) const {
        for (Pair const& pair : pairs) {
            if (pair.other == other) {
                return pair.value;
            }
        }
        return pairs[0].value;
    }

    Pair pairs[count];
};

// ---- native kinds that don't follow from an enumeration ----------------------------------------------

inline constexpr char const* sequenceKind = "SEQUENCE";
inline constexpr char const* procedureKind = "PROCEDURE";
inline constexpr char const* functionKind = "FUNCTION";

// ---- texts -------------------------------------------------------------------------------------------

/// The action as SQL calls it.
char const* textOf(Action action);

/// Empty for a type of the system.
char const* nativeKindOf(TypeKind kind);
/// BUILT_IN for any other text.
TypeKind typeKindOf(std::string_view nativeKind);

/// The native kind unless the system has one of its own for the table.
char const* nativeKindOf(TableKind kind);

/// Empty unless the model's mode doesn't say it all.
char const* nativeKindOf(ArgumentMode mode);

// ---- the model's enumerations ------------------------------------------------------------------------

QORReferentialActionType modelAction(Action action);
Action actionOf(QORReferentialActionType action);

QORTriggerType modelTime(TriggerTime time);
TriggerTime timeOf(QORTriggerType time);

/// Of a view.
QORViewType modelViewType(TableKind kind);
TableKind viewKindOf(QORViewType type);

QORArgumentType modelMode(ArgumentMode mode);
ArgumentMode modeOf(QORArgumentType mode, std::string_view nativeKind);

} // namespace database
