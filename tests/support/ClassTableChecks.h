#pragma once

#include "Graph.h"
#include "Metamodel.h"
#include "TableDeviations.h"
#include "TableSubjects.h"

#include <qor/QORMetaAttribute.h>
#include <qor/QORMetaAttributeType.h>
#include <qor/QORMetaClass.h>
#include <qor/QORString.h>
#include <qor/QORVector.h>

#include <algorithm>
#include <memory>
#include <string>
#include <typeinfo>
#include <vector>

/// Checks of a class as a whole: what is made of its number, its place among the classes, its record, and how
/// its objects are copied, assigned and compared with all their attributes, the inherited ones included.
namespace table {

/// What the tables say of an attribute that a class has, its own or an inherited one.
struct HeldAttribute {
    int id;
    char const* first;
    char const* other; ///< a value other than the first one
    bool isText;
    bool compared;
    bool assigned;
    bool settable; ///< false where the class has a setter of its own that refuses
};

/// What the tables say of a class.
struct ClassRow {
    int id;
    char const* text; ///< of the id
    char const* displayName;
    bool abstract;
    int parentId;                ///< -1 for the root
    std::vector<int> lineage;    ///< the class and its bases, the root first
    std::vector<int> refused;    ///< the attributes with a setter of the class's own that refuses
    std::vector<int> subclasses; ///< the direct ones, in the order in which their records are made

    std::vector<HeldAttribute> attributes = {}; ///< those of the root first
};

/// A text of an attribute's value other than its first one; an enumeration of one value has none but -1's.
inline char const* otherValue(metamodel::Attribute const& attribute) {
    switch (attribute.type) {
    case QORMetaAttributeType::BOOL:
        return std::string(attribute.first) == "true" ? "false" : "true";
    case QORMetaAttributeType::SHORT:
        return "-7";
    case QORMetaAttributeType::INT:
        return "123456";
    case QORMetaAttributeType::DATE:
        return "12:34:56 2001-02-03";
    case QORMetaAttributeType::ENUM: {
        char const* other = "";
        for (char const* const* text = attribute.enumerators; *text; ++text)
            if (**text && std::string(*text) != attribute.first)
                other = *text;
        return other;
    }
    default:
        return "other";
    }
}

/// The attributes of a class and its bases, in the order of their records.
inline std::vector<HeldAttribute> heldAttributes(ClassRow const& row) {
    std::vector<HeldAttribute> held;
    for (int const level : row.lineage) {
        std::vector<metamodel::Attribute> own = metamodel::attributesOf(level);
        std::sort(own.begin(), own.end(), [](auto const& a, auto const& b) { return a.place < b.place; });
        for (metamodel::Attribute const& each : own) {
            bool const refused =
                std::find(row.refused.begin(), row.refused.end(), each.id) != row.refused.end();
            held.push_back({each.id, each.first, otherValue(each), each.type == QORMetaAttributeType::STRING,
                            each.compared, each.assigned, !refused});
        }
    }
    return held;
}

/// A class behind plain functions. `maker` makes its objects, or those of a class below an abstract one.
struct ClassMembers {
    Maker maker;
    QORMetaClass* (*getStaticMetaClass)();
    bool (*isInstanceOf)(QORObject const& object, QORElementType type); ///< that of this very class
    bool (*isExactly)(QORObject const& object);
};

template <class Class, class Concrete = Class>
struct MembersOf {
    static bool callIsInstanceOf(QORObject const& object, QORElementType type) {
        return static_cast<Class const&>(object).Class::isInstanceOf(type);
    }
    static bool isExactly(QORObject const& object) { return typeid(object) == typeid(Class); }
    static constexpr ClassMembers members{MakerOf<Concrete>::maker, Class::getStaticMetaClass,
                                          callIsInstanceOf, isExactly};
};

// ---- the factory, the lineage, the record ---------------------------------------------------------------

inline void checkFactory(ClassRow const& row, ClassMembers const& members) {
    std::unique_ptr<QORObject> const object(createObject(row.id));
    std::unique_ptr<QORObject> const instance(members.getStaticMetaClass()->newInstance());
    bool const made = !row.abstract && !isNotMade(row.id);
    ASSERT_EQ(made, object != nullptr);
    ASSERT_EQ(made, instance != nullptr);
    if (!made)
        return;
    for (QORObject* each : {object.get(), instance.get()}) {
        EXPECT_EQ(row.id, static_cast<int>(each->getElementType()));
        EXPECT_TRUE(members.isExactly(*each));
        EXPECT_EQ(0, each->getID());
        EXPECT_FALSE(each->isReferenced());
        EXPECT_FALSE(each->flag1 || each->flag2 || each->flag3 || each->generalPointer);
        EXPECT_EQ(members.getStaticMetaClass(), each->getMetaClass());
    }
}

inline void checkLineage(ClassRow const& row, ClassMembers const& members) {
    Subject const object(members.maker, false);
    std::vector<int> lineage;
    for (int id = 0; QorElementTypeStringArray[id]; ++id)
        if (members.isInstanceOf(*object, static_cast<QORElementType>(id)))
            lineage.push_back(id);
    std::vector<int> expected = row.lineage;
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(expected, lineage);
    EXPECT_FALSE(members.isInstanceOf(*object, static_cast<QORElementType>(-1)));
    EXPECT_TRUE(object->isInstanceOf(static_cast<QORElementType>(row.id)));
}

template <class Record>
std::vector<int> idsOf(QORVector const& records) {
    std::vector<int> ids;
    for (int i = 0; i < records.size; ++i)
        ids.push_back(static_cast<int>(static_cast<Record const*>(records[i])->getId()));
    return ids;
}

/// Expects a class to have the link ends of its base and behind them ends of its own. Which those are, and in
/// what order, is the matter of each end's own check.
inline void checkLinkRecords(QORMetaClass const& record) {
    QORVector const& links = record.getMetaLinks();
    int const inherited = record.getParent() ? record.getParent()->getMetaLinks().size : 0;
    ASSERT_LE(inherited, links.size);
    for (int i = 0; i < links.size; ++i) {
        auto const* const link = static_cast<QORMetaLink const*>(links[i]);
        EXPECT_EQ(link, QORMetaRepository::getMetaRepository()->getMetaLinkByID(link->getId()));
        EXPECT_STRNE("", link->getName().chars);
        if (i < inherited) {
            EXPECT_EQ(record.getParent()->getMetaLinks()[i], link);
        } else {
            EXPECT_EQ(&record, link->getMetaClass()) << link->getName().chars;
        }
    }
}

inline void checkClassRecord(ClassRow const& row, ClassMembers const& members) {
    QORMetaRepository const& repository = *QORMetaRepository::getMetaRepository();
    QORMetaClass const& record = *members.getStaticMetaClass();
    EXPECT_EQ(&record, repository.getMetaClassByID(static_cast<QORElementType>(row.id)));
    EXPECT_EQ(&record, repository.getMetaClassByDisplayName(row.displayName));
    EXPECT_EQ(row.id, static_cast<int>(record.getId()));
    EXPECT_STREQ(row.text, record.getName().chars);
    EXPECT_STREQ(row.displayName, record.getDisplayName().chars);
    EXPECT_EQ(row.abstract, record.isAbstract());
    EXPECT_EQ(row.parentId, record.getParent() ? static_cast<int>(record.getParent()->getId()) : -1);
    EXPECT_EQ(row.subclasses, idsOf<QORMetaClass>(record.getSubclasses()));
    std::vector<int> attributes;
    for (HeldAttribute const& each : row.attributes)
        attributes.push_back(each.id);
    EXPECT_EQ(attributes, idsOf<QORMetaAttribute>(record.getMetaAttributes()));
    checkLinkRecords(record);
}

// ---- attributes -----------------------------------------------------------------------------------------

inline QORMetaAttribute const& recordOf(HeldAttribute const& attribute) {
    return *QORMetaRepository::getMetaRepository()->getMetaAttributeByID(
        static_cast<QORAttributeType>(attribute.id));
}

inline std::string textOf(HeldAttribute const& attribute, QORObject const& object) {
    return recordOf(attribute).getValue(const_cast<QORObject*>(&object)).chars;
}

inline void set(HeldAttribute const& attribute, QORObject& object, char const* value) {
    QORString text(value);
    recordOf(attribute).setValue(&object, text);
}

inline std::vector<std::string> textsOf(ClassRow const& row, QORObject const& object) {
    std::vector<std::string> texts;
    for (HeldAttribute const& each : row.attributes)
        texts.push_back(textOf(each, object));
    return texts;
}

/// Sets all attributes of an object to other values than those of a new one, where they can be set.
inline void setAll(ClassRow const& row, QORObject& object) {
    for (HeldAttribute const& each : row.attributes)
        if (each.settable)
            set(each, object, each.other);
}

inline void checkFirstValues(ClassRow const& row, ClassMembers const& members) {
    Subject const object(members.maker, false);
    for (HeldAttribute const& each : row.attributes) {
        bool const isName = each.id == QORAttributeType::OBJECT__NAME;
        if (each.settable && !(isName && startsNamed(row.id))) {
            EXPECT_EQ(each.first, textOf(each, *object)) << recordOf(each).getName().chars;
        }
    }
}

/// A setter that refuses leaves the value as it is.
inline void checkRefusingSetters(ClassRow const& row, ClassMembers const& members) {
    for (HeldAttribute const& each : row.attributes) {
        if (each.settable)
            continue;
        Subject const object(members.maker, false);
        std::string const before = textOf(each, *object);
        EXPECT_ANY_THROW(set(each, *object, each.other));
        EXPECT_EQ(before, textOf(each, *object));
    }
}

inline void checkCopying(ClassRow const& row, ClassMembers const& members) {
    Subject const source(members.maker, false), fresh(members.maker, false), target(members.maker, false);
    int mark = 0;
    setAll(row, *source);
    source->flag1 = source->flag2 = source->flag3 = true;
    source->generalPointer = &mark;
    Subject const copy(members.maker.copy(*source));
    EXPECT_TRUE(members.isExactly(*copy));
    EXPECT_EQ(row.id, static_cast<int>(copy->getElementType()));
    EXPECT_FALSE(copy->flag1 || copy->flag2 || copy->flag3 || copy->generalPointer);

    target->setID(-3);
    target->flag1 = target->flag2 = target->flag3 = true;
    target->generalPointer = &mark;
    members.maker.assign(*target, *source);
    EXPECT_EQ(row.id, static_cast<int>(target->getElementType()));
    EXPECT_EQ(-3, target->getID());
    EXPECT_FALSE(target->flag1 || target->flag2 || target->flag3 || target->generalPointer);
    target->setID(0);

    Subject const otherTarget(members.maker, false);
    EXPECT_EQ(otherTarget.get(), &otherTarget->setFrom(*source));
    for (HeldAttribute const& each : row.attributes) {
        SCOPED_TRACE(recordOf(each).getName().chars);
        std::string const first = textOf(each, *fresh), set = textOf(each, *source);
        EXPECT_EQ(each.settable, set != first);
        EXPECT_EQ(isCarried(each.id) ? set : first, textOf(each, *copy));
        EXPECT_EQ(isCarried(each.id) && each.assigned ? set : first, textOf(each, *target));
        EXPECT_EQ(textOf(each, *target), textOf(each, *otherTarget));
    }
}

inline void checkSelfAssignment(ClassRow const& row, ClassMembers const& members) {
    Subject const object(members.maker, false);
    int mark = 0;
    setAll(row, *object);
    object->flag2 = true;
    object->generalPointer = &mark;
    std::vector<std::string> const before = textsOf(row, *object);
    QORObject const& itself = *object;
    members.maker.assign(*object, itself);
    EXPECT_EQ(object.get(), &object->setFrom(itself));
    EXPECT_EQ(before, textsOf(row, *object));
    EXPECT_TRUE(object->flag2);
    EXPECT_EQ(&mark, object->generalPointer);
}

// ---- equality -------------------------------------------------------------------------------------------

inline void checkEquality(ClassRow const& row, ClassMembers const& members) {
    Subject const one(members.maker, false), other(members.maker, false);
    EXPECT_TRUE(one->equals(*other));
    setAll(row, *one);
    setAll(row, *other);
    EXPECT_TRUE(one->equals(*one));
    EXPECT_TRUE(one->equals(*other));
    EXPECT_TRUE(*one == *other);
    EXPECT_FALSE(*one != *other);
    for (HeldAttribute const& each : row.attributes) {
        if (!each.settable)
            continue;
        SCOPED_TRACE(recordOf(each).getName().chars);
        Subject const fresh(members.maker, false), changed(members.maker, false);
        set(each, *changed, each.other);
        EXPECT_EQ(!(each.compared && isCompared(each.id)), fresh->equals(*changed));
        EXPECT_EQ(!(each.compared && isCompared(each.id)), changed->equals(*fresh));
    }
}

/// An object equals none of another class, even if all that both have is the same.
inline void checkOtherClasses(ClassRow const& row, ClassMembers const& members) {
    Subject const object(members.maker, false);
    for (int id = 0; QorElementTypeStringArray[id]; ++id) {
        QORMetaClass const* const record =
            QORMetaRepository::getMetaRepository()->getMetaClassByID(static_cast<QORElementType>(id));
        if (!record || record->isAbstract() || id == row.id || isNotMade(id))
            continue;
        std::unique_ptr<QORObject> const other(createObject(id));
        bool const isRoot = isNotMade(row.id); // compares names only, whatever the classes
        EXPECT_EQ(isRoot && other->getName() == object->getName(), object->equals(*other))
            << record->getDisplayName().chars;
        EXPECT_FALSE(other->equals(*object)) << record->getDisplayName().chars;
    }
}

// ---- re-encoding ----------------------------------------------------------------------------------------

inline void checkRecodingOfAll(ClassRow const& row, ClassMembers const& members) {
    Recoding toLatin("UTF-8", "ISO-8859-1"), toUtf8("ISO-8859-1", "UTF-8");
    Subject const object(members.maker, false);
    int texts = 0;
    for (HeldAttribute const& each : row.attributes) {
        if (!each.isText)
            continue;
        if (each.settable)
            set(each, *object, "\xE9");
        texts += textOf(each, *object).empty() ? 0 : 1;
    }
    int const convertible = texts;
    int settable = 0;
    toLatin(*object);
    for (HeldAttribute const& each : row.attributes)
        if (each.isText && each.settable) {
            ++settable;
            EXPECT_EQ("\xE9", textOf(each, *object)) << recordOf(each).getName().chars;
        }
    EXPECT_EQ(settable, toLatin.errors);
    EXPECT_EQ(convertible - settable, toLatin.converted);
    toUtf8(*object);
    EXPECT_EQ(convertible, toUtf8.converted);
    EXPECT_EQ(0, toUtf8.errors);
    for (HeldAttribute const& each : row.attributes)
        if (each.isText && each.settable) {
            EXPECT_EQ("\xC3\xA9", textOf(each, *object)) << recordOf(each).getName().chars;
        }
}

// ---- all together ---------------------------------------------------------------------------------------

inline void checkClass(ClassRow row, ClassMembers const& members) {
    row.attributes = heldAttributes(row);
    for (HeldAttribute const& each : row.attributes)
        ASSERT_NE(nullptr, QORMetaRepository::getMetaRepository()->getMetaAttributeByID(
                               static_cast<QORAttributeType>(each.id)));
    checkFactory(row, members);
    checkLineage(row, members);
    checkClassRecord(row, members);
    if (row.abstract)
        return;
    checkFirstValues(row, members);
    checkRefusingSetters(row, members);
    checkCopying(row, members);
    checkSelfAssignment(row, members);
    checkEquality(row, members);
    checkOtherClasses(row, members);
    checkRecodingOfAll(row, members);
}

} // namespace table
