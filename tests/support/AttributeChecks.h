#pragma once

#include "Graph.h"
#include "TableDeviations.h"
#include "TableSubjects.h"

#include <qor/QORDate.h>
#include <qor/QORMetaAttribute.h>
#include <qor/QORMetaAttributeType.h>
#include <qor/QORMetaClass.h>
#include <qor/QORString.h>

#include <climits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

/// Checks of an attribute, through its typed members and through reflection.
namespace table {

/// What the table says of an attribute.
struct AttributeRow {
    int id;
    char const* text; ///< of the id
    char const* name;
    QORMetaAttributeType type;
    int ownerId; ///< number of the class that declares the attribute
    char const* first;
    char const* defaultText;
    bool compared;
    bool assigned;
    char const* const* enumerators; ///< texts by value, closed by null; an empty one is retired
};

/// An attribute with its typed members. Numbers, bools and enumerators count as numbers, texts and dates as
/// texts; the members of the other sort are null.
struct Attribute {
    AttributeRow row;
    Maker maker; ///< makes objects that have the attribute
    long (*getNumber)(QORObject const& object);
    void (*setNumber)(QORObject& object, long value);
    std::string (*getText)(QORObject const& object);
    void (*setText)(QORObject& object, char const* value);
};

template <class Class, class Value, Value (Class::*get)() const, void (Class::*set)(Value)>
struct NumberMembers {
    static long callGet(QORObject const& object) {
        return static_cast<long>((static_cast<Class const&>(object).*get)());
    }
    static void callSet(QORObject& object, long value) {
        (static_cast<Class&>(object).*set)(static_cast<Value>(value));
    }
    static constexpr Attribute of(AttributeRow const& row, Maker const& maker) {
        return {row, maker, callGet, callSet, nullptr, nullptr};
    }
};

template <class Class, QORString const& (Class::*get)() const, void (Class::*set)(QORString const&)>
struct TextMembers {
    static std::string callGet(QORObject const& object) {
        return (static_cast<Class const&>(object).*get)().chars;
    }
    static void callSet(QORObject& object, char const* value) { (static_cast<Class&>(object).*set)(value); }
    static constexpr Attribute of(AttributeRow const& row, Maker const& maker) {
        return {row, maker, nullptr, nullptr, callGet, callSet};
    }
};

template <class Class, QORDate const& (Class::*get)() const, void (Class::*set)(QORDate const&)>
struct DateMembers {
    static std::string callGet(QORObject const& object) {
        QORDate date((static_cast<Class const&>(object).*get)());
        return QORString(date.chars()).chars;
    }
    static void callSet(QORObject& object, char const* value) {
        QORDate date;
        date.setDate(value);
        (static_cast<Class&>(object).*set)(date);
    }
    static constexpr Attribute of(AttributeRow const& row, Maker const& maker) {
        return {row, maker, nullptr, nullptr, callGet, callSet};
    }
};

// ---- values ---------------------------------------------------------------------------------------------

/// A value of an attribute and its text. `number` is of no meaning for texts and dates.
struct Value {
    long number;
    std::string text;
};

inline std::vector<Value> valuesOf(Attribute const& attribute) {
    switch (attribute.row.type) {
    case QORMetaAttributeType::BOOL:
        return {{1, "true"}, {0, "false"}};
    case QORMetaAttributeType::SHORT:
        return {{7, "7"}, {-1, "-1"}, {SHRT_MIN, "-32768"}, {SHRT_MAX, "32767"}, {0, "0"}};
    case QORMetaAttributeType::INT:
        return {{7, "7"}, {-1, "-1"}, {INT_MIN, "-2147483648"}, {INT_MAX, "2147483647"}, {0, "0"}};
    case QORMetaAttributeType::STRING:
        return {{0, "text"}, {0, "two words, \xC3\xA9"}, {0, ""}};
    case QORMetaAttributeType::DATE:
        return {{0, "12:34:56 2001-02-03"}, {0, "00:00:00 1999-12-31"}, {0, "00:00:00 "}};
    case QORMetaAttributeType::ENUM:
        break;
    }
    std::vector<Value> values;
    for (int i = 0; attribute.row.enumerators[i]; ++i)
        if (*attribute.row.enumerators[i])
            values.push_back({i, attribute.row.enumerators[i]});
    return values;
}

inline QORMetaAttribute const& recordOf(Attribute const& attribute) {
    return *QORMetaRepository::getMetaRepository()->getMetaAttributeByID(
        static_cast<QORAttributeType>(attribute.row.id));
}

inline void set(Attribute const& attribute, QORObject& object, Value const& value) {
    if (attribute.setNumber)
        attribute.setNumber(object, value.number);
    else
        attribute.setText(object, value.text.c_str());
}

inline void setByText(Attribute const& attribute, QORObject& object, char const* value) {
    QORString text(value);
    recordOf(attribute).setValue(&object, text);
}

inline std::string textOf(Attribute const& attribute, QORObject& object) {
    return recordOf(attribute).getValue(&object).chars;
}

/// Expects a value, by the typed getter and by the record.
inline void expectValue(Attribute const& attribute, QORObject& object, Value const& value) {
    if (attribute.getNumber) {
        EXPECT_EQ(value.number, attribute.getNumber(object)) << attribute.row.text;
    } else {
        EXPECT_EQ(value.text, attribute.getText(object)) << attribute.row.text;
    }
    EXPECT_EQ(value.text, textOf(attribute, object)) << attribute.row.text;
}

/// The value of that text. Texts and dates have any; of numbers it must be among the tried ones.
inline Value valueOf(Attribute const& attribute, std::string const& text) {
    for (Value const& each : valuesOf(attribute))
        if (each.text == text)
            return each;
    return {std::stol(text), text};
}

/// The value of a new object.
inline Value firstValue(Attribute const& attribute) {
    if (attribute.setText)
        return {0, attribute.row.first};
    return valueOf(attribute, attribute.row.first);
}

/// A value other than that of a new object; an enumeration of one value has none but -1, which has no text.
inline Value otherThanFirst(Attribute const& attribute) {
    for (Value const& each : valuesOf(attribute))
        if (each.text != attribute.row.first)
            return each;
    return {-1, ""};
}

// ---- checks ---------------------------------------------------------------------------------------------

/// Expects the texts to be those of the table, retired ones included.
inline void checkEnumTexts(AttributeRow const& row, char const* const* texts) {
    ASSERT_EQ(row.enumerators != nullptr, texts != nullptr) << row.text;
    if (!texts)
        return;
    int place = 0;
    for (; row.enumerators[place] && texts[place]; ++place)
        EXPECT_STREQ(row.enumerators[place], texts[place]) << row.text;
    EXPECT_EQ(row.enumerators[place], texts[place]) << row.text; // both end here
}

inline void checkAttributeRecord(Attribute const& attribute) {
    AttributeRow const& row = attribute.row;
    QORMetaAttribute const& record = recordOf(attribute);
    EXPECT_EQ(row.id, static_cast<int>(record.getId()));
    EXPECT_STREQ(row.text, record.getName().chars);
    EXPECT_STREQ(row.name, record.getDisplayName().chars);
    EXPECT_EQ(row.type, record.getType());
    checkEnumTexts(row, record.getEnumTexts());
    EXPECT_STREQ(row.defaultText, record.getDefaultValue().chars);
    ASSERT_NE(nullptr, record.getMetaClass());
    EXPECT_EQ(row.ownerId, static_cast<int>(record.getMetaClass()->getId()));
    Subject object(attribute.maker, false);
    EXPECT_EQ(&record, object->getMetaClass()->getMetaAttributeByID(record.getId()));
    EXPECT_EQ(&record, object->getMetaClass()->getMetaAttributeByName(row.text));
    EXPECT_EQ(&record, record.getMetaClass()->getMetaAttributeByDisplayName(row.name));
}

inline void checkSetting(Attribute const& attribute) {
    Subject typed(attribute.maker, false), reflected(attribute.maker, false);
    expectValue(attribute, *typed, firstValue(attribute));
    for (Value const& each : valuesOf(attribute)) {
        set(attribute, *typed, each);
        expectValue(attribute, *typed, each);
        setByText(attribute, *reflected, each.text.c_str());
        expectValue(attribute, *reflected, each);
    }
}

/// Texts that are no value of the kind.
inline void checkForeignTexts(Attribute const& attribute) {
    Subject object(attribute.maker, false);
    if (attribute.row.type == QORMetaAttributeType::BOOL) {
        for (char const* text : {"TRUE", "1", "true ", ""}) {
            attribute.setNumber(*object, 1);
            setByText(attribute, *object, text);
            EXPECT_EQ(0, attribute.getNumber(*object)) << text;
        }
    } else if (attribute.row.type == QORMetaAttributeType::ENUM && takesUnknownValue(attribute.row.id)) {
        setByText(attribute, *object, "no such value");
        EXPECT_EQ(-1, attribute.getNumber(*object));
    } else if (attribute.row.type == QORMetaAttributeType::DATE) {
        set(attribute, *object, otherThanFirst(attribute));
        setByText(attribute, *object, "no date");
        EXPECT_EQ("00:00:00 ", attribute.getText(*object));
    }
}

/// The target of an assignment keeps what it has.
inline void checkKeeping(Attribute const& attribute, QORObject const& source) {
    Subject target(attribute.maker, false);
    Value const own = valuesOf(attribute)[1];
    ASSERT_NE(own.text, otherThanFirst(attribute).text);
    set(attribute, *target, own);
    attribute.maker.assign(*target, source);
    expectValue(attribute, *target, own);
    target->setFrom(source);
    expectValue(attribute, *target, own);
}

inline void checkCarrying(Attribute const& attribute) {
    Value const value = otherThanFirst(attribute);
    Subject source(attribute.maker, false), assigned(attribute.maker, false),
        otherwise(attribute.maker, false);
    set(attribute, *source, value);
    Subject const copy(attribute.maker.copy(*source));
    bool const carried = isCarried(attribute.row.id);
    EXPECT_EQ(carried ? value.text : attribute.row.first, textOf(attribute, *copy));
    attribute.maker.assign(*assigned, *source);
    bool const kept = !carried || !attribute.row.assigned;
    EXPECT_EQ(kept ? attribute.row.first : value.text, textOf(attribute, *assigned));
    EXPECT_EQ(otherwise.get(), &otherwise->setFrom(*source));
    EXPECT_EQ(textOf(attribute, *assigned), textOf(attribute, *otherwise));
    if (!attribute.row.assigned)
        checkKeeping(attribute, *source);
    expectValue(attribute, *source, value);
    attribute.maker.assign(*source, *source);
    expectValue(attribute, *source, value);
}

inline void checkComparing(Attribute const& attribute) {
    Subject const one(attribute.maker, false), other(attribute.maker, false);
    bool const compared = attribute.row.compared && isCompared(attribute.row.id);
    set(attribute, *one, firstValue(attribute)); // by the setter too, which may do more than a constructor
    for (Value const& each : valuesOf(attribute)) {
        set(attribute, *other, each);
        bool const equal = !compared || textOf(attribute, *one) == each.text;
        EXPECT_EQ(equal, one->equals(*other)) << each.text;
        EXPECT_EQ(equal, other->equals(*one)) << each.text;
        EXPECT_EQ(equal, *one == *other) << each.text;
        EXPECT_EQ(!equal, *one != *other) << each.text;
    }
    EXPECT_TRUE(other->equals(*other));
}

inline Recoding recoded(QORObject& object, char const* from, char const* to) {
    Recoding recode(from, to);
    recode(object);
    return recode;
}

/// A text is re-encoded, or left alone if it can't be, whatever becomes of the others.
inline void checkRecoding(Attribute const& attribute) {
    if (attribute.row.type != QORMetaAttributeType::STRING)
        return;
    Subject const object(attribute.maker, false);
    nameObject(*object, "\xC3\xBC");
    bool const hasOtherName =
        attribute.row.id != QORAttributeType::OBJECT__NAME && object->getName().length != 0;
    attribute.setText(*object, "caf\xE9");
    EXPECT_EQ(1, recoded(*object, "UTF-8", "ISO-8859-1").errors);
    EXPECT_EQ("caf\xE9", attribute.getText(*object));
    if (hasOtherName) {
        EXPECT_STREQ("\xFC", object->getName().chars);
    }
    Recoding const recoding = recoded(*object, "ISO-8859-1", "UTF-8");
    EXPECT_EQ("caf\xC3\xA9", attribute.getText(*object));
    EXPECT_EQ(0, recoding.errors);
    if (hasOtherName) {
        EXPECT_STREQ("\xC3\xBC", object->getName().chars);
    }
    attribute.setText(*object, "");
    EXPECT_EQ(recoding.converted - 1, recoded(*object, "ISO-8859-1", "UTF-8").converted);
    EXPECT_EQ("", attribute.getText(*object));
}

inline void checkAttribute(Attribute const& attribute) {
    ASSERT_NE(nullptr, QORMetaRepository::getMetaRepository()->getMetaAttributeByID(
                           static_cast<QORAttributeType>(attribute.row.id)));
    checkAttributeRecord(attribute);
    checkSetting(attribute);
    checkForeignTexts(attribute);
    checkCarrying(attribute);
    checkComparing(attribute);
    checkRecoding(attribute);
}

} // namespace table
