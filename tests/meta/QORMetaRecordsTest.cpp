#include <qor/QORMetaAttribute.h>
#include <qor/QORMetaClass.h>
#include <qor/QORMetaClassDisplayNameHashtable.h>
#include <qor/QORMetaLink.h>
#include <qor/QORMetaLinkType.h>
#include <qor/QORMetaRepository.h>
#include <qor/QORObject.h>
#include <qor/QORSortOrderType.h>

#include <gtest/gtest.h>

#include <climits>
#include <list>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

/// Puts back the library's own records that a test's records take the places of.
class PlacesKept {
public:
    PlacesKept() {
        for (int id = 0; QorElementTypeStringArray[id]; ++id)
            classes.push_back(repository->getMetaClassByID(static_cast<QORElementType>(id)));
        for (int id = 0; QorAttributeTypeStringArray[id]; ++id)
            attributes.push_back(repository->getMetaAttributeByID(static_cast<QORAttributeType>(id)));
        for (int id = 0; QorAssociationTypeStringArray[id]; ++id)
            links.push_back(repository->getMetaLinkByID(static_cast<QORAssociationType>(id)));
    }
    PlacesKept(PlacesKept const&) = delete;
    PlacesKept& operator=(PlacesKept const&) = delete;
    ~PlacesKept() {
        for (QORMetaClass* each : classes) {
            if (each && repository->getMetaClassByID(each->getId()) != each)
                repository->addMetaClass(each);
        }
        for (QORMetaAttribute* each : attributes) {
            if (each)
                repository->addMetaAttribute(each);
        }
        for (QORMetaLink* each : links) {
            if (each)
                repository->addMetaLink(each);
        }
    }

private:
    QORMetaRepository* repository = QORMetaRepository::getMetaRepository();
    std::vector<QORMetaClass*> classes;
    std::vector<QORMetaAttribute*> attributes;
    std::vector<QORMetaLink*> links;
};

/// A record that lives until the process ends, as the repository goes on knowing it.
template <class Record, class... Arguments>
Record& newRecord(Arguments const&... arguments) {
    static std::list<Record> records;
    return records.emplace_back(arguments...);
}

QORMetaClass& newClass(QORMetaClass* parent, QORElementType id, char const* displayName,
                       bool abstract = false) {
    return newRecord<QORMetaClass>(parent, id, displayName, abstract);
}

/// A class outside the metamodel with an attribute of each kind and two link ends.
class Sample : public QORObject {
public:
    bool isBool() const { return boolean; }
    void setBool(bool value) { boolean = value; }
    short getShort() const { return small; }
    void setShort(short value) { small = value; }
    int getInt() const { return integer; }
    void setInt(int value) { integer = value; }
    QORString const& getText() const { return text; }
    void setText(QORString const& value) { text = value; }
    void setTextRefused(QORString const&) { throw std::runtime_error("refused"); }
    QORDate const& getDate() const { return date; }
    void setDate(QORDate const& value) { date = value; }
    QORSortOrderType getOrder() const { return order; }
    void setOrder(QORSortOrderType value) { order = value; }

    bool addFriend(QORObject* other) {
        if (!other)
            return false;
        friends.push_back(other);
        return true;
    }

    bool boolean = false;
    short small = 0;
    int integer = 0;
    QORString text;
    QORDate date;
    QORSortOrderType order = QORSortOrderType::DEFAULT;
    std::vector<QORObject*> friends;
};

class DerivedSample : public Sample {
public:
    QORString const& getName() const override { return text; }
};

struct Accessors {
    QORGetValueWrapper get;
    QORSetValueWrapper set;
    QORGetEnumIDByNameWrapper read;
    QORGetEnumNameByIDWrapper write;
};

QORMetaAttribute* newAttribute(QORMetaAttributeType type, Accessors const& with,
                               QORMetaClass* ofClass = nullptr, char const* displayName = "sample",
                               QORAttributeType id = QORAttributeType::INDEX__CLUSTERED) {
    return &newRecord<QORMetaAttribute>(ofClass, id, displayName, type, QORString("default"), with.get,
                                        with.set, with.read, with.write);
}

QORMetaLink* newLink(bool unary, QORGetLinkWrapper get, QORGetLinkCountWrapper count, QORMetaLink::Add add,
                     QORMetaClass* ofClass = nullptr, char const* role = "friend") {
    return &newRecord<QORMetaLink>(ofClass, QORAssociationType::CLASS__OPERATION, QORString(role), unary,
                                   QORMetaLinkType::REF, get, count, add);
}

std::string value(QORMetaAttribute const& attribute, QORObject& object) {
    std::string const read = attribute.getValue(&object).chars;
    QORString room("a text that was there before and is to leave nothing behind");
    EXPECT_EQ(attribute.getValue(&object, room).chars, read);
    return read;
}

void set(QORMetaAttribute const& attribute, QORObject& object, char const* text) {
    QORString string(text);
    attribute.setValue(&object, string);
}

class QORMetaRecords : public testing::Test {
protected:
    PlacesKept kept;
    QORMetaRepository& repository = *QORMetaRepository::getMetaRepository();
    Sample sample;
};

using QORMetaClassTest = QORMetaRecords;
using QORMetaAttributeTest = QORMetaRecords;
using QORMetaLinkTest = QORMetaRecords;
using QORMetaRepositoryTest = QORMetaRecords;

constexpr Accessors noAccessors;
constexpr Accessors forBool = {
    QORGetValueWrapper::of<&Sample::isBool>(), QORSetValueWrapper::of<&Sample::setBool>(), {}, {}};
constexpr Accessors forShort = {
    QORGetValueWrapper::of<&Sample::getShort>(), QORSetValueWrapper::of<&Sample::setShort>(), {}, {}};
constexpr Accessors forInt = {
    QORGetValueWrapper::of<&Sample::getInt>(), QORSetValueWrapper::of<&Sample::setInt>(), {}, {}};
constexpr Accessors forLong = {
    QORGetValueWrapper::of<&QORObject::getID>(), QORSetValueWrapper::of<&QORObject::setID>(), {}, {}};
constexpr Accessors forText = {
    QORGetValueWrapper::of<&Sample::getText>(), QORSetValueWrapper::of<&Sample::setText>(), {}, {}};
constexpr Accessors forName = {
    QORGetValueWrapper::of<&QORObject::getName>(), QORSetValueWrapper::of<&QORObject::setName>(), {}, {}};
constexpr Accessors forDate = {
    QORGetValueWrapper::of<&Sample::getDate>(), QORSetValueWrapper::of<&Sample::setDate>(), {}, {}};
constexpr Accessors forOrder = {QORGetValueWrapper::of<&Sample::getOrder>(),
                                QORSetValueWrapper::of<&Sample::setOrder>(),
                                QORGetEnumIDByNameWrapper::of<&getSortOrderTypeByName>(),
                                QORGetEnumNameByIDWrapper::of<&getSortOrderTypeName>()};

} // namespace

TEST_F(QORMetaClassTest, TellsWhatItWasMadeOf) {
    QORMetaClass const& root = newClass(nullptr, QORElementType::NOTE, "RecordsRoot", true);
    QORMetaClass const& leaf =
        newClass(const_cast<QORMetaClass*>(&root), QORElementType::LEVEL_KEY, "RecordsLeaf", false);
    EXPECT_EQ(root.getId(), QORElementType::NOTE);
    EXPECT_STREQ(root.getName().chars, "NOTE");
    EXPECT_STREQ(root.getDisplayName().chars, "RecordsRoot");
    EXPECT_TRUE(root.isAbstract());
    EXPECT_EQ(root.getParent(), nullptr);
    EXPECT_EQ(root.getDescription(), nullptr);
    EXPECT_STREQ(leaf.getName().chars, "LEVEL_KEY");
    EXPECT_FALSE(leaf.isAbstract());
    EXPECT_EQ(leaf.getParent(), &root);
}

TEST_F(QORMetaClassTest, ParentListsItsDirectSubclassesInOrderOfCreation) {
    QORMetaClass& root = newClass(nullptr, QORElementType::NOTE, "SubclassesRoot");
    QORMetaClass& second = newClass(&root, QORElementType::LEVEL_KEY, "SubclassesB");
    QORMetaClass& third = newClass(&root, QORElementType::LEVEL, "SubclassesA");
    newClass(&third, QORElementType::CUBE, "SubclassesBelow");
    ASSERT_EQ(root.getSubclasses().size, 2);
    EXPECT_EQ(root.getSubclasses()[0], &second);
    EXPECT_EQ(root.getSubclasses()[1], &third);
    EXPECT_EQ(third.getSubclasses().size, 1);
    EXPECT_EQ(second.getSubclasses().size, 0);
}

TEST_F(QORMetaClassTest, TakesOverWhatItsParentHasAtItsCreation) {
    QORMetaClass& root = newClass(nullptr, QORElementType::NOTE, "InheritRoot");
    auto* const one = newAttribute(QORMetaAttributeType::BOOL, forBool, &root, "one");
    auto* const end = newLink(true, {}, {}, nullptr, &root, "end");
    QORMetaClass& leaf = newClass(&root, QORElementType::LEVEL_KEY, "InheritLeaf");
    auto* const late = newAttribute(QORMetaAttributeType::BOOL, forBool, &root, "late");
    auto* const own = newAttribute(QORMetaAttributeType::BOOL, forBool, &leaf, "own");
    auto* const ownEnd = newLink(true, {}, {}, nullptr, &leaf, "ownEnd");

    ASSERT_EQ(leaf.getMetaAttributes().size, 2);
    EXPECT_EQ(leaf.getMetaAttributes()[0], one);
    EXPECT_EQ(leaf.getMetaAttributes()[1], own);
    ASSERT_EQ(leaf.getMetaLinks().size, 2);
    EXPECT_EQ(leaf.getMetaLinks()[0], end);
    EXPECT_EQ(leaf.getMetaLinks()[1], ownEnd);
    EXPECT_EQ(leaf.getMetaAttributeByDisplayName("one"), one);
    EXPECT_EQ(leaf.getMetaAttributeByDisplayName("late"), nullptr);
    EXPECT_EQ(leaf.getMetaAttributeByDisplayName("own"), own);
    EXPECT_EQ(leaf.getMetaLinkByRoleName("end"), end);
    ASSERT_EQ(root.getMetaAttributes().size, 2);
    EXPECT_EQ(root.getMetaAttributes()[1], late);
    EXPECT_EQ(root.getMetaAttributeByDisplayName("late"), late);
    EXPECT_EQ(root.getMetaAttributeByDisplayName("own"), nullptr);
    EXPECT_EQ(one->getMetaClass(), &root);
}

TEST_F(QORMetaClassTest, FindsAttributesByIdNameAndDisplayName) {
    QORMetaClass& root = newClass(nullptr, QORElementType::NOTE, "FindRoot");
    QORMetaAttribute* const position =
        newAttribute(QORMetaAttributeType::INT, {}, &root, "position", QORAttributeType::FEATURE__POSITION);
    QORMetaClass const& leaf = newClass(&root, QORElementType::LEVEL_KEY, "FindLeaf");
    for (QORMetaClass const* each : {static_cast<QORMetaClass const*>(&root), &leaf}) {
        EXPECT_EQ(each->getMetaAttributeByID(QORAttributeType::FEATURE__POSITION), position);
        EXPECT_EQ(each->getMetaAttributeByName("FEATURE__POSITION"), position);
        EXPECT_EQ(each->getMetaAttributeByDisplayName("position"), position);
        EXPECT_EQ(each->getMetaAttributeByID(QORAttributeType::INDEX__CLUSTERED), nullptr);
    }
}

TEST_F(QORMetaClassTest, FindsLinksByIdNameAndRoleName) {
    QORMetaClass& root = newClass(nullptr, QORElementType::NOTE, "FindLinkRoot");
    auto* const end = newLink(false, {}, {}, nullptr, &root, "operation");
    EXPECT_EQ(root.getMetaLinkByID(QORAssociationType::CLASS__OPERATION), end);
    EXPECT_EQ(root.getMetaLinkByName("CLASS__OPERATION"), end);
    EXPECT_EQ(root.getMetaLinkByRoleName("operation"), end);
    EXPECT_EQ(root.getMetaLinkByID(QORAssociationType::CLASS__ARGUMENT), nullptr);
}

TEST_F(QORMetaClassTest, UnknownTextsFindNothing) {
    QORMetaClass& root = newClass(nullptr, QORElementType::NOTE, "UnknownRoot");
    newAttribute(QORMetaAttributeType::BOOL, forBool, &root, "abcdef");
    newLink(false, {}, {}, nullptr, &root, "abcdef");
    // The first few agree with the text in length, first, middle and last character.
    for (char const* text : {"axcdef", "abxdef", "abcdxf", "Abcdef", "abcde", "abcdefg", "bcdef", ""}) {
        EXPECT_EQ(root.getMetaAttributeByDisplayName(text), nullptr) << text;
        EXPECT_EQ(root.getMetaAttributeByName(text), nullptr) << text;
        EXPECT_EQ(root.getMetaLinkByRoleName(text), nullptr) << text;
        EXPECT_EQ(root.getMetaLinkByName(text), nullptr) << text;
    }
    EXPECT_EQ(root.getMetaAttributeByDisplayName(nullptr), nullptr);
    EXPECT_EQ(root.getMetaAttributeByName(nullptr), nullptr);
    EXPECT_EQ(root.getMetaLinkByRoleName(nullptr), nullptr);
    EXPECT_EQ(root.getMetaLinkByName(nullptr), nullptr);
    EXPECT_EQ(root.getMetaAttributeByDisplayName(std::string(70000, 'a').c_str()), nullptr);
}

TEST_F(QORMetaClassTest, FirstOfSeveralNamesakesIsFound) {
    QORMetaClass& root = newClass(nullptr, QORElementType::NOTE, "NamesakeRoot");
    auto* const first = newAttribute(QORMetaAttributeType::BOOL, forBool, &root, "same");
    newAttribute(QORMetaAttributeType::SHORT, forShort, &root, "same");
    EXPECT_EQ(root.getMetaAttributeByDisplayName("same"), first);
    EXPECT_EQ(root.getMetaAttributeByName("INDEX__CLUSTERED"), first);
    EXPECT_EQ(root.getMetaAttributeByID(QORAttributeType::INDEX__CLUSTERED), first);
    EXPECT_EQ(root.getMetaAttributes().size, 2);
}

TEST_F(QORMetaClassTest, RecordInThePlaceOfADeadOneIsFoundByItsOwnName) {
    QORMetaClass& root = newClass(nullptr, QORElementType::NOTE, "PlaceRoot");
    alignas(QORMetaAttribute) static unsigned char place[sizeof(QORMetaAttribute)];
    auto const make = [&root](QORAttributeType id, char const* displayName) {
        return new (place)
            QORMetaAttribute(&root, id, displayName, QORMetaAttributeType::BOOL, QORString(), {}, {}, {}, {});
    };
    make(QORAttributeType::INDEX__CLUSTERED, "before")->~QORMetaAttribute();
    QORMetaAttribute* const now = make(QORAttributeType::INDEX__GENERATE, "now");
    EXPECT_EQ(root.getMetaAttributes().size, 1);
    EXPECT_EQ(root.getMetaAttributeByDisplayName("now"), now);
    EXPECT_EQ(root.getMetaAttributeByDisplayName("before"), nullptr);
    EXPECT_EQ(root.getMetaAttributeByID(QORAttributeType::INDEX__GENERATE), now);
    EXPECT_EQ(root.getMetaAttributeByID(QORAttributeType::INDEX__CLUSTERED), nullptr);
}

TEST_F(QORMetaClassTest, NewInstanceIsMadeByElementType) {
    QORMetaClass const& abstractClass = newClass(nullptr, QORElementType::TYPE, "InstanceType", true);
    QORMetaClass const& concreteClass = newClass(nullptr, QORElementType::NOTE, "InstanceNote");
    EXPECT_EQ(abstractClass.newInstance(), nullptr);
    std::unique_ptr<QORObject> const note(concreteClass.newInstance());
    ASSERT_NE(note, nullptr);
    EXPECT_EQ(note->getElementType(), QORElementType::NOTE);
}

TEST_F(QORMetaRepositoryTest, IsOne) {
    EXPECT_NE(QORMetaRepository::getMetaRepository(), nullptr);
    EXPECT_EQ(QORMetaRepository::getMetaRepository(), &repository);
}

/// The accessors by number are compiled into callers' programs.
TEST_F(QORMetaRepositoryTest, HoldsNoArrayThatGrowsWithAVocabulary) {
    EXPECT_EQ(sizeof(QORMetaRepository), 4 * sizeof(void*));
}

TEST_F(QORMetaRepositoryTest, KnowsEachRecordByIdOnceItIsMade) {
    QORMetaClass& root = newClass(nullptr, QORElementType::CONFIGURATION_FORMAT, "ByIdRoot");
    EXPECT_EQ(repository.getMetaClassByID(QORElementType::CONFIGURATION_FORMAT), &root);
    auto* const attribute = newAttribute(QORMetaAttributeType::BOOL, forBool);
    EXPECT_EQ(repository.getMetaAttributeByID(QORAttributeType::INDEX__CLUSTERED), attribute);
    auto* const end = newLink(true, {}, {}, nullptr);
    EXPECT_EQ(repository.getMetaLinkByID(QORAssociationType::CLASS__OPERATION), end);
}

TEST_F(QORMetaRepositoryTest, LaterRecordTakesThePlaceOfItsId) {
    auto* const first = newAttribute(QORMetaAttributeType::BOOL, forBool);
    auto* const second = newAttribute(QORMetaAttributeType::BOOL, forBool);
    EXPECT_EQ(repository.getMetaAttributeByID(QORAttributeType::INDEX__CLUSTERED), second);
    repository.addMetaAttribute(first);
    EXPECT_EQ(repository.getMetaAttributeByID(QORAttributeType::INDEX__CLUSTERED), first);
}

TEST_F(QORMetaRepositoryTest, FindsClassesByDisplayName) {
    QORMetaClass const& root = newClass(nullptr, QORElementType::NOTE, "DisplayNameRoot");
    EXPECT_EQ(repository.getMetaClassByDisplayName(std::string("DisplayNameRoot").c_str()), &root);
    for (char const* unknown :
         {"displaynameroot", "DisplayNameRoo", "DisplayNameRoot ", "NOTE", "", "nonsense"})
        EXPECT_EQ(repository.getMetaClassByDisplayName(unknown), nullptr) << unknown;
    EXPECT_EQ(repository.getMetaClassByDisplayName(nullptr), nullptr);
}

TEST_F(QORMetaRepositoryTest, FirstClassKeepsItsDisplayName) {
    QORMetaClass const& first = newClass(nullptr, QORElementType::NOTE, "KeptName");
    QORMetaClass const& second = newClass(nullptr, QORElementType::LEVEL, "KeptName");
    EXPECT_EQ(repository.getMetaClassByDisplayName("KeptName"), &first);
    EXPECT_EQ(repository.getMetaClassByID(QORElementType::LEVEL), &second);
}

TEST_F(QORMetaRecords, HashtableComparesAndHashesByDisplayName) {
    QORMetaClass const& a = newClass(nullptr, QORElementType::NOTE, "HashA");
    QORMetaClass const& alsoA = newClass(nullptr, QORElementType::LEVEL, "HashA");
    QORMetaClass const& b = newClass(nullptr, QORElementType::NOTE, "HashB");
    QORMetaClassDisplayNameHashtable table(3);
    EXPECT_LT(table.compare2Object(&a, &b), 0);
    EXPECT_GT(table.compare2Object(&b, &a), 0);
    EXPECT_EQ(table.compare2Object(&a, &alsoA), 0);
    EXPECT_LT(table.compare2Key(&a, "HashB"), 0);
    EXPECT_GT(table.compare2Key(&b, "HashA"), 0);
    EXPECT_EQ(table.compare2Key(&a, "HashA"), 0);
    EXPECT_EQ(table.hashObject(&a), table.hashObject(&alsoA));
    EXPECT_EQ(table.hashObject(&a), table.hashKey("HashA"));
    EXPECT_TRUE(table.add(&a, true, nullptr));
    EXPECT_TRUE(table.add(&b, true, nullptr));
    EXPECT_FALSE(table.add(&alsoA, true, nullptr));
    EXPECT_EQ(table.size, 2);
    EXPECT_EQ(table.findFirst("HashA", nullptr), &a);
    EXPECT_EQ(table.findFirst("HashC", nullptr), nullptr);
}

TEST_F(QORMetaAttributeTest, GivesATextThatTheObjectHoldsWithoutACopy) {
    sample.setText("a text that is too long to lie in its string");
    QORString room("room");
    EXPECT_EQ(&newAttribute(QORMetaAttributeType::STRING, forText)->getValue(&sample, room),
              &sample.getText());
    EXPECT_STREQ(room.chars, "room");
    sample.setInt(7);
    EXPECT_EQ(&newAttribute(QORMetaAttributeType::INT, forInt)->getValue(&sample, room), &room);
    EXPECT_STREQ(room.chars, "7");
    EXPECT_EQ(&newAttribute(QORMetaAttributeType::STRING, noAccessors)->getValue(&sample, room), &room);
    EXPECT_EQ(room.chars, QORString::emptyPtr);
}

TEST_F(QORMetaAttributeTest, TellsWhatItWasMadeOf) {
    auto* const attribute = newAttribute(QORMetaAttributeType::SHORT, forShort);
    EXPECT_EQ(attribute->getId(), QORAttributeType::INDEX__CLUSTERED);
    EXPECT_STREQ(attribute->getName().chars, "INDEX__CLUSTERED");
    EXPECT_STREQ(attribute->getDisplayName().chars, "sample");
    EXPECT_EQ(attribute->getMetaClass(), nullptr);
    EXPECT_EQ(attribute->getType(), QORMetaAttributeType::SHORT);
    EXPECT_STREQ(attribute->getDefaultValue().chars, "default");
}

TEST_F(QORMetaAttributeTest, OnlyTheTextTrueIsTrue) {
    auto* const attribute = newAttribute(QORMetaAttributeType::BOOL, forBool);
    EXPECT_EQ(value(*attribute, sample), "false");
    set(*attribute, sample, "true");
    EXPECT_TRUE(sample.boolean);
    EXPECT_EQ(value(*attribute, sample), "true");
    for (char const* text : {"TRUE", "1", "True", "true ", " true", "tru", "truer", "", "false"}) {
        sample.boolean = true;
        set(*attribute, sample, text);
        EXPECT_FALSE(sample.boolean) << text;
    }
}

TEST_F(QORMetaAttributeTest, TextPassesAsItIs) {
    auto* const attribute = newAttribute(QORMetaAttributeType::STRING, forText);
    EXPECT_EQ(value(*attribute, sample), "");
    for (char const* text : {" a text, longer than what a string could hold within itself ", "x", ""}) {
        set(*attribute, sample, text);
        EXPECT_STREQ(sample.text.chars, text);
        EXPECT_EQ(value(*attribute, sample), text);
    }
}

TEST_F(QORMetaAttributeTest, AccessorsAreCalledVirtually) {
    auto* const attribute = newAttribute(QORMetaAttributeType::STRING, forName);
    DerivedSample derived;
    set(*attribute, derived, "stored");
    derived.text = QORString("overridden");
    EXPECT_EQ(value(*attribute, derived), "overridden");
    set(*attribute, sample, "plain");
    EXPECT_EQ(value(*attribute, sample), "plain");
}

TEST_F(QORMetaAttributeTest, ExceptionOfTheSetterReachesTheCaller) {
    auto* const attribute =
        newAttribute(QORMetaAttributeType::STRING,
                     {forText.get, QORSetValueWrapper::of<&Sample::setTextRefused>(), {}, {}});
    EXPECT_THROW(set(*attribute, sample, "any"), std::runtime_error);
}

TEST_F(QORMetaAttributeTest, IntIsReadFromTheLeadingNumber) {
    auto* const attribute = newAttribute(QORMetaAttributeType::INT, forInt);
    struct Case {
        char const* text;
        int expected;
    };
    Case const cases[] = {
        {"12", 12},  {"-7", -7}, {"+5", 5},  {" \t\n 42", 42},        {"12abc", 12},           {"3.9", 3},
        {"0x10", 0}, {"007", 7}, {"1 2", 1}, {"2147483647", INT_MAX}, {"-2147483648", INT_MIN}};
    for (Case const& each : cases) {
        sample.integer = 99;
        set(*attribute, sample, each.text);
        EXPECT_EQ(sample.integer, each.expected) << each.text;
        EXPECT_EQ(value(*attribute, sample), std::to_string(each.expected));
    }
}

TEST_F(QORMetaAttributeTest, TextThatIsNoNumberSetsZero) {
    auto* const integer = newAttribute(QORMetaAttributeType::INT, forInt);
    auto* const small = newAttribute(QORMetaAttributeType::SHORT, forShort);
    for (char const* text : {"", "abc", "-", "+-3", "  ", "true"}) {
        sample.integer = 99;
        sample.small = 99;
        set(*integer, sample, text);
        set(*small, sample, text);
        EXPECT_EQ(sample.integer, 0) << text;
        EXPECT_EQ(sample.small, 0) << text;
    }
}

TEST_F(QORMetaAttributeTest, NumberTooLargeBecomesTheNearestThatFits) {
    auto* const integer = newAttribute(QORMetaAttributeType::INT, forInt);
    auto* const small = newAttribute(QORMetaAttributeType::SHORT, forShort);
    set(*integer, sample, "2147483648");
    EXPECT_EQ(sample.integer, INT_MAX);
    set(*integer, sample, "-99999999999999999999999");
    EXPECT_EQ(sample.integer, INT_MIN);
    set(*small, sample, "32768");
    EXPECT_EQ(sample.small, SHRT_MAX);
    set(*small, sample, "-40000");
    EXPECT_EQ(sample.small, SHRT_MIN);
}

TEST_F(QORMetaAttributeTest, ShortIsReadAndWrittenWithItsSign) {
    auto* const attribute = newAttribute(QORMetaAttributeType::SHORT, forShort);
    sample.small = -1;
    EXPECT_EQ(value(*attribute, sample), "-1");
    set(*attribute, sample, "-32768");
    EXPECT_EQ(sample.small, SHRT_MIN);
    EXPECT_EQ(value(*attribute, sample), "-32768");
}

TEST_F(QORMetaAttributeTest, IdCarriesTheWholeLong) {
    auto* const attribute = newAttribute(QORMetaAttributeType::INT, forLong);
    EXPECT_EQ(value(*attribute, sample), "0");
    for (long id : {LONG_MAX, LONG_MIN, 0L, -1L}) {
        set(*attribute, sample, std::to_string(id).c_str());
        EXPECT_EQ(sample.getID(), id);
        EXPECT_EQ(value(*attribute, sample), std::to_string(id));
    }
}

TEST_F(QORMetaAttributeTest, DateIsExchangedAsItsText) {
    auto* const attribute = newAttribute(QORMetaAttributeType::DATE, forDate);
    EXPECT_EQ(value(*attribute, sample), "00:00:00 ");
    set(*attribute, sample, "12:34:56 2001-02-03");
    EXPECT_STREQ(sample.date.chars(), "12:34:56 2001-02-03");
    EXPECT_EQ(value(*attribute, sample), "12:34:56 2001-02-03");
    set(*attribute, sample, "no date");
    EXPECT_EQ(value(*attribute, sample), "00:00:00 ");
}

TEST_F(QORMetaAttributeTest, EnumIsExchangedByTheTextsOfItsValues) {
    auto* const attribute = newAttribute(QORMetaAttributeType::ENUM, forOrder);
    EXPECT_EQ(value(*attribute, sample), "DEFAULT");
    set(*attribute, sample, "DESCENDING");
    EXPECT_EQ(sample.order, QORSortOrderType::DESCENDING);
    EXPECT_EQ(value(*attribute, sample), "DESCENDING");
}

TEST_F(QORMetaAttributeTest, UnknownTextOfAnEnumSetsMinusOneWhichHasNoText) {
    auto* const attribute = newAttribute(QORMetaAttributeType::ENUM, forOrder);
    for (char const* text : {"descending", "SIDEWAYS", ""}) {
        sample.order = QORSortOrderType::ASCENDING;
        set(*attribute, sample, text);
        EXPECT_EQ(static_cast<int>(sample.order), -1) << text;
        EXPECT_EQ(value(*attribute, sample), "");
    }
}

TEST_F(QORMetaAttributeTest, EnumWithoutItsFunctionsHasNoTexts) {
    auto* const attribute = newAttribute(QORMetaAttributeType::ENUM, {forOrder.get, forOrder.set, {}, {}});
    EXPECT_EQ(value(*attribute, sample), "");
    set(*attribute, sample, "ASCENDING");
    EXPECT_EQ(static_cast<int>(sample.order), -1);
}

TEST_F(QORMetaAttributeTest, TextsOfAnEnumerationAreThoseOfItsTable) {
    EXPECT_EQ(repository.getMetaAttributeByID(QORAttributeType::INDEX_MEMBER__SORT_ORDER)->getEnumTexts(),
              QorSortOrderTypeStringArray);
    int enumerations = 0;
    for (int id = 0; QorAttributeTypeStringArray[id]; ++id) {
        QORMetaAttribute const* const attribute =
            repository.getMetaAttributeByID(static_cast<QORAttributeType>(id));
        if (!attribute)
            continue;
        bool const isEnum = attribute->getType() == QORMetaAttributeType::ENUM;
        EXPECT_EQ(attribute->getEnumTexts() != nullptr, isEnum) << attribute->getName().chars;
        enumerations += isEnum ? 1 : 0;
    }
    EXPECT_GT(enumerations, 40);
}

namespace {

/// An enumeration of a caller's, whose function knows no end.
char const* nameOfAny(QORSortOrderType) {
    return "any";
}

} // namespace

TEST_F(QORMetaAttributeTest, RecordOfACallerHasNoTextsOfAnEnumeration) {
    Accessors ofCaller = forOrder;
    ofCaller.write = QORGetEnumNameByIDWrapper::of<&nameOfAny>();
    EXPECT_EQ(newAttribute(QORMetaAttributeType::ENUM, ofCaller)->getEnumTexts(), nullptr);
    ofCaller.write = {};
    EXPECT_EQ(newAttribute(QORMetaAttributeType::ENUM, ofCaller)->getEnumTexts(), nullptr);
    EXPECT_EQ(newAttribute(QORMetaAttributeType::INT, forInt)->getEnumTexts(), nullptr);
}

TEST(QORMetaWrappers, AreEqualIfTheyWrapTheSameFunction) {
    EXPECT_TRUE(QORGetEnumNameByIDWrapper::of<&getSortOrderTypeName>() == forOrder.write);
    EXPECT_TRUE(QORGetEnumNameByIDWrapper::of<&nameOfAny>() != forOrder.write);
    EXPECT_TRUE(QORGetEnumNameByIDWrapper() != forOrder.write);
    EXPECT_TRUE(QORGetEnumNameByIDWrapper() == QORGetEnumNameByIDWrapper());
}

TEST_F(QORMetaAttributeTest, WithoutAccessorsThereIsNoValue) {
    for (int type = QORMetaAttributeType::BOOL; type <= QORMetaAttributeType::ENUM; ++type) {
        auto* const attribute = newAttribute(static_cast<QORMetaAttributeType>(type), noAccessors);
        EXPECT_EQ(value(*attribute, sample), "") << type;
        set(*attribute, sample, "true");
        EXPECT_EQ(value(*attribute, sample), "") << type;
    }
}

TEST_F(QORMetaAttributeTest, AccessorsOfAnotherKindCountAsNone) {
    Accessors const all[] = {forBool, forText, forInt, forShort, forDate, forOrder};
    for (int kind = 0; kind < 6; ++kind) {
        for (int type = 0; type < 6; ++type) {
            if (kind == type)
                continue;
            auto* const attribute = newAttribute(static_cast<QORMetaAttributeType>(type), all[kind]);
            Sample object;
            set(*attribute, object, "ASCENDING");
            EXPECT_EQ(value(*attribute, object), "") << kind << " as " << type;
            EXPECT_EQ(object.text.length, 0) << kind << " as " << type;
            EXPECT_EQ(object.order, QORSortOrderType::DEFAULT) << kind << " as " << type;
        }
    }
}

namespace {

QORObject* friendAt(QORObject const* object, void const* end, int index) {
    auto const& friends = static_cast<Sample const*>(object)->friends;
    std::size_t const position = static_cast<std::size_t>(index + *static_cast<int const*>(end));
    return index >= 0 && position < friends.size() ? friends[position] : nullptr;
}

int friendCount(QORObject const* object, void const* end) {
    return static_cast<int>(static_cast<Sample const*>(object)->friends.size()) -
           *static_cast<int const*>(end);
}

QORMetaLink::Add const addFriend = static_cast<QORMetaLink::Add>(&Sample::addFriend);

} // namespace

TEST_F(QORMetaLinkTest, TellsWhatItWasMadeOf) {
    auto* const link = newLink(true, {}, {}, nullptr);
    EXPECT_EQ(link->getId(), QORAssociationType::CLASS__OPERATION);
    EXPECT_STREQ(link->getName().chars, "CLASS__OPERATION");
    EXPECT_STREQ(link->getRoleName().chars, "friend");
    EXPECT_EQ(link->getMetaClass(), nullptr);
    EXPECT_TRUE(link->isUnary());
    EXPECT_EQ(link->getType(), QORMetaLinkType::REF);
}

/// Though it has the number of an end of the library, and leads to one of its functions' own data.
TEST_F(QORMetaLinkTest, RecordOfACallerHasNoFarEndAndNoOrder) {
    int const skipped = 0;
    for (QORGetLinkWrapper const& get : {QORGetLinkWrapper(), QORGetLinkWrapper(friendAt, &skipped)}) {
        auto* const link =
            &newRecord<QORMetaLink>(nullptr, QORAssociationType::ELEMENT__PROPERTY_VALUE, QORString("friend"),
                                    false, QORMetaLinkType::CHILD, get, QORGetLinkCountWrapper(), nullptr);
        EXPECT_EQ(link->getFarMetaLink(), nullptr);
        EXPECT_EQ(link->getFarMetaClass(), nullptr);
        EXPECT_FALSE(link->isOrdered());
    }
}

TEST_F(QORMetaLinkTest, FarEndIsTheRecordThatTheRepositoryHasNow) {
    QORMetaLink const& near = *repository.getMetaLinkByID(QORAssociationType::OPERATION__ASSOCIATED__CLASS);
    QORMetaClass& ofCaller = newClass(nullptr, QORElementType::NOTE, "FarOfCaller");
    auto* const inItsPlace = newLink(false, {}, {}, nullptr, &ofCaller, "operation");
    EXPECT_EQ(near.getFarMetaLink(), inItsPlace);
    EXPECT_EQ(near.getFarMetaClass(), &ofCaller);
}

TEST_F(QORMetaLinkTest, AddGivesTheResultOfTheEndsAdd) {
    auto* const link = newLink(false, {}, {}, addFriend);
    Sample other;
    EXPECT_TRUE(link->addLink(&sample, &other));
    ASSERT_EQ(sample.friends.size(), 1u);
    EXPECT_EQ(sample.friends[0], &other);
    EXPECT_FALSE(link->addLink(&sample, nullptr));
}

TEST_F(QORMetaLinkTest, NaryEndCountsAndGivesByPosition) {
    int const skipped = 1;
    auto* const link = newLink(false, {friendAt, &skipped}, {friendCount, &skipped}, addFriend);
    Sample others[3];
    for (Sample& other : others)
        link->addLink(&sample, &other);
    EXPECT_EQ(link->getLinkCount(&sample), 2);
    EXPECT_EQ(link->getLink(&sample, 0), &others[1]);
    EXPECT_EQ(link->getLink(&sample, 1), &others[2]);
    EXPECT_EQ(link->getLink(&sample, 2), nullptr);
    EXPECT_EQ(link->getLink(&sample, -1), nullptr);
}

TEST_F(QORMetaLinkTest, UnaryEndCountsZeroAndIgnoresThePosition) {
    int const skipped = 0;
    auto* const link = newLink(true, {friendAt, &skipped}, {friendCount, &skipped}, addFriend);
    EXPECT_EQ(link->getLink(&sample, 0), nullptr);
    Sample other;
    link->addLink(&sample, &other);
    EXPECT_EQ(link->getLinkCount(&sample), 0);
    for (int index : {0, 1, -1, INT_MAX})
        EXPECT_EQ(link->getLink(&sample, index), &other) << index;
}

TEST_F(QORMetaLinkTest, WithoutItsFunctionsAnEndIsEmptyAndRefuses) {
    auto* const link = newLink(false, {}, {}, nullptr);
    EXPECT_EQ(link->getLinkCount(&sample), 0);
    EXPECT_EQ(link->getLink(&sample, 0), nullptr);
    EXPECT_FALSE(link->addLink(&sample, &sample));
}

TEST(QORMetaWrappers, AreFilledOnlyIfMadeFromSomething) {
    EXPECT_FALSE(QORGetValueWrapper().isFilled());
    EXPECT_FALSE(QORSetValueWrapper().isFilled());
    EXPECT_FALSE(QORGetEnumIDByNameWrapper().isFilled());
    EXPECT_FALSE(QORGetEnumNameByIDWrapper().isFilled());
    EXPECT_FALSE(QORGetLinkWrapper().isFilled());
    EXPECT_FALSE(QORGetLinkWrapper(nullptr, nullptr).isFilled());
    EXPECT_FALSE(QORGetLinkCountWrapper().isFilled());
    EXPECT_TRUE(forBool.get.isFilled() && forBool.set.isFilled());
    EXPECT_TRUE(forOrder.read.isFilled() && forOrder.write.isFilled());
    EXPECT_TRUE(QORGetLinkWrapper(friendAt, nullptr).isFilled());
    EXPECT_TRUE(QORGetLinkCountWrapper(friendCount, nullptr).isFilled());
}

TEST(QORMetaWrappers, KnowTheKindOfTheirValue) {
    EXPECT_EQ(forBool.get.getType(), QORMetaAttributeType::BOOL);
    EXPECT_EQ(forShort.set.getType(), QORMetaAttributeType::SHORT);
    EXPECT_EQ(forInt.get.getType(), QORMetaAttributeType::INT);
    EXPECT_EQ(forLong.set.getType(), QORMetaAttributeType::INT);
    EXPECT_EQ(forText.get.getType(), QORMetaAttributeType::STRING);
    EXPECT_EQ(forDate.set.getType(), QORMetaAttributeType::DATE);
    EXPECT_EQ(forOrder.get.getType(), QORMetaAttributeType::ENUM);
}

TEST(QORMetaTypes, NumbersOfTheKindsAreFixed) {
    static_assert(QORMetaLinkType::REF == 0 && QORMetaLinkType::BACK_REF == 1);
    static_assert(QORMetaLinkType::PARENT == 2 && QORMetaLinkType::CHILD == 3);
    static_assert(QORMetaAttributeType::BOOL == 0 && QORMetaAttributeType::STRING == 1);
    static_assert(QORMetaAttributeType::INT == 2 && QORMetaAttributeType::SHORT == 3);
    static_assert(QORMetaAttributeType::DATE == 4 && QORMetaAttributeType::ENUM == 5);
}
