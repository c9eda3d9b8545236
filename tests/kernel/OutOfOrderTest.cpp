#include <qor/QORArgument.h>
#include <qor/QORAssociationRole.h>
#include <qor/QORAttribute.h>
#include <qor/QORBusinessRule.h>
#include <qor/QORClass.h>
#include <qor/QORCondition.h>
#include <qor/QORConfigurationFormat.h>
#include <qor/QORDerivedType.h>
#include <qor/QORDesignPackage.h>
#include <qor/QORException.h>
#include <qor/QORMappingModel.h>
#include <qor/QORModel.h>
#include <qor/QORModelFormat.h>
#include <qor/QORNote.h>
#include <qor/QOROperation.h>
#include <qor/QORReport.h>
#include <qor/QORReportText.h>
#include <qor/QORSynonym.h>
#include <qor/QORTypeValue.h>

#include "Graph.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace {

bool accepted(QORObject& object, char const* name) {
    try {
        object.setName(name);
    } catch (QORException const&) {
        return false;
    }
    return true;
}

QORTypeValue* valued(char const* value) {
    auto* const object = new QORTypeValue;
    object->setValue(value);
    return object;
}

/// What an end holds, read by position upwards, downwards and upwards again.
template <class At>
std::vector<QORObject*> readTwice(int count, At at) {
    std::vector<QORObject*> up;
    for (int i = 0; i < count; ++i)
        up.push_back(at(i));
    for (int i = count - 1; i >= 0; --i)
        EXPECT_EQ(up[static_cast<std::size_t>(i)], at(i));
    for (int i = 0; i < count; ++i)
        EXPECT_EQ(up[static_cast<std::size_t>(i)], at(i));
    return up;
}

std::vector<QORObject*> argumentsOf(QORClass const& owner) {
    return readTwice(owner.getArgumentCount(), [&](int i) -> QORObject* { return owner.getArgument(i); });
}

std::vector<QORObject*> valuesOf(QORBusinessRule const& rule) {
    return readTwice(rule.getTypeValueCount(), [&](int i) -> QORObject* { return rule.getTypeValue(i); });
}

std::set<QORObject*> asSet(std::vector<QORObject*> const& objects) {
    return {objects.begin(), objects.end()};
}

/// Arguments that stand under an operation and in a class at once; a rename goes to the operation only.
struct SharedArguments : public ::testing::Test {
    void add(char const* name) {
        arguments.push_back(named<QORArgument>(name));
        ASSERT_TRUE(operation->addArgument(arguments.back()));
        ASSERT_TRUE(parameterized->addArgument(arguments.back()));
    }

    std::unique_ptr<QOROperation> operation = std::make_unique<QOROperation>();
    std::unique_ptr<QORClass> parameterized = std::make_unique<QORClass>();
    std::vector<QORArgument*> arguments;
};

using OutOfOrder = SharedArguments;

} // namespace

TEST_F(OutOfOrder, EachElementCanBeUnlinkedWhateverItsNameHasBecome) {
    for (std::size_t victim = 0; victim < 5; ++victim) {
        operation = std::make_unique<QOROperation>();
        parameterized = std::make_unique<QORClass>();
        arguments.clear();
        for (char const* name : {"a", "b", "c", "d", "e"})
            add(name);
        arguments[0]->setName("z");
        arguments[4]->setName("0");
        arguments[2]->setName("y");
        EXPECT_TRUE(parameterized->removeArgument(arguments[victim]));
        EXPECT_EQ(nullptr, arguments[victim]->getParameterizedClass());
        EXPECT_EQ(operation.get(), arguments[victim]->getOperation());
        std::vector<QORObject*> expected(arguments.begin(), arguments.end());
        expected.erase(expected.begin() + static_cast<std::ptrdiff_t>(victim));
        EXPECT_EQ(expected, argumentsOf(*parameterized)) << victim; // in the order of their adding
        EXPECT_FALSE(parameterized->removeArgument(arguments[victim]));
    }
}

TEST_F(OutOfOrder, ADeadElementIsNowhereLeft) {
    for (char const* name : {"a", "b", "c", "d", "e"})
        add(name);
    arguments[0]->setName("z");
    arguments[1]->setName("y");
    delete arguments[0];
    EXPECT_EQ((std::vector<QORObject*>{arguments[1], arguments[2], arguments[3], arguments[4]}),
              argumentsOf(*parameterized));
    delete arguments[1];
    delete arguments[3];
    EXPECT_EQ((std::vector<QORObject*>{arguments[2], arguments[4]}), argumentsOf(*parameterized));
    EXPECT_EQ(2, operation->getArgumentCount());
}

TEST_F(OutOfOrder, ANamesakeIsNotTakenForTheElement) {
    for (char const* name : {"a", "b", "c"})
        add(name);
    arguments[0]->setName("x");
    // In the class, a second argument may now take the name under which the first one stands.
    QORArgument* const second = named<QORArgument>("a");
    ASSERT_TRUE(parameterized->addArgument(second));
    EXPECT_TRUE(parameterized->removeArgument(second));
    EXPECT_EQ((std::vector<QORObject*>{arguments[0], arguments[1], arguments[2]}),
              argumentsOf(*parameterized));
    EXPECT_FALSE(parameterized->removeArgument(second));
    delete second;
}

TEST_F(OutOfOrder, TwoElementsThatHaveBecomeNamesakesAreToldApart) {
    add("a");
    add("m");
    EXPECT_TRUE(operation->removeArgument(arguments[1]));
    arguments[0]->setName("m"); // free in the operation now
    EXPECT_EQ(2, parameterized->getArgumentCount());
    EXPECT_TRUE(parameterized->removeArgument(arguments[1]));
    EXPECT_EQ((std::vector<QORObject*>{arguments[0]}), argumentsOf(*parameterized));
    delete arguments[1];
}

TEST_F(OutOfOrder, ARefusedRenameLeavesTheObjectInItsOwnerUnderItsOldName) {
    for (char const* name : {"a", "m", "q"})
        add(name);
    arguments[0]->setName("z");
    operation->removeArgument(arguments[1]); // now the class is its first owner
    EXPECT_FALSE(accepted(*arguments[1], "q"));
    EXPECT_STREQ("m", arguments[1]->getName().chars);
    EXPECT_EQ(parameterized.get(), arguments[1]->getParameterizedClass());
    EXPECT_EQ((std::vector<QORObject*>{arguments[0], arguments[1], arguments[2]}),
              argumentsOf(*parameterized));
}

TEST_F(OutOfOrder, ARefusedRenameIsUndoneThoughANamesakeHasComeInMeanwhile) {
    for (char const* name : {"a", "m", "q"})
        add(name);
    operation->removeArgument(arguments[1]);
    arguments[0]->setName("m"); // the class, which isn't asked, now holds two of that name
    EXPECT_FALSE(accepted(*arguments[1], "q"));
    EXPECT_STREQ("m", arguments[1]->getName().chars);
    EXPECT_EQ(parameterized.get(), arguments[1]->getParameterizedClass());
    EXPECT_EQ((std::vector<QORObject*>{arguments[0], arguments[1], arguments[2]}),
              argumentsOf(*parameterized));
    EXPECT_TRUE(accepted(*arguments[1], "r"));
    EXPECT_EQ(3, parameterized->getArgumentCount());
    EXPECT_TRUE(parameterized->removeArgument(arguments[1]));
    EXPECT_EQ(2, parameterized->getArgumentCount());
    delete arguments[1];
}

TEST_F(OutOfOrder, RandomRenamesAndRemovalsNeverLoseAnElement) {
    std::mt19937 random(4711);
    auto const below = [&random](std::size_t limit) {
        return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random);
    };
    for (int round = 0; round < 40; ++round) {
        operation = std::make_unique<QOROperation>();
        parameterized = std::make_unique<QORClass>();
        arguments.clear();
        for (int i = 0; i < 12; ++i)
            add(("n" + std::to_string(i)).c_str());
        std::set<QORObject*> inClass(arguments.begin(), arguments.end());
        for (int step = 0; step < 60; ++step) {
            QORArgument* const each = arguments[below(12)];
            switch (below(4)) {
            case 0: {
                bool const inside = inClass.count(each) != 0;
                EXPECT_EQ(inside, parameterized->removeArgument(each));
                inClass.erase(each);
                break;
            }
            case 1:
                if (parameterized->addArgument(each))
                    inClass.insert(each);
                break;
            default:
                accepted(*each, std::string(1, static_cast<char>('a' + below(26))).c_str());
            }
            parameterized->getArgument(static_cast<int>(below(12))); // moves the cursor
            EXPECT_EQ(each->getParameterizedClass() != nullptr, inClass.count(each) != 0);
        }
        EXPECT_EQ(inClass, asSet(argumentsOf(*parameterized)));
        EXPECT_EQ(12, operation->getArgumentCount());
        while (!inClass.empty()) {
            auto const victim =
                std::next(inClass.begin(), static_cast<std::ptrdiff_t>(below(inClass.size())));
            EXPECT_TRUE(parameterized->removeArgument(static_cast<QORArgument*>(*victim)));
            inClass.erase(victim);
            EXPECT_EQ(inClass, asSet(argumentsOf(*parameterized)));
        }
    }
}

TEST_F(OutOfOrder, EitherOwnerMayGoFirst) {
    for (bool const classFirst : {true, false}) {
        operation = std::make_unique<QOROperation>();
        parameterized = std::make_unique<QORClass>();
        arguments.clear();
        for (char const* name : {"a", "b", "c", "d"})
            add(name);
        Graph graph;
        for (QORArgument* const argument : arguments)
            argument->addNote(graph.mortal<QORNote>(argument->getName().chars));
        arguments[0]->setName("z");
        arguments[2]->setName("0");
        if (classFirst)
            parameterized.reset();
        else
            operation.reset();
        EXPECT_TRUE(graph.deaths.empty());
        if (classFirst)
            operation.reset();
        else
            parameterized.reset();
        EXPECT_EQ(4U, graph.deaths.size());
    }
}

TEST(OutOfOrderQualifiers, AnAttributeRenamedUnderItsRoleCanLeaveItsClass) {
    QORAssociationRole role;
    QORClass owner;
    std::vector<QORAttribute*> attributes;
    for (char const* name : {"a", "b", "c"}) {
        attributes.push_back(named<QORAttribute>(name));
        owner.addFeature(attributes.back());
        role.addQualifierAttribute(attributes.back());
    }
    attributes[0]->setName("z");
    EXPECT_EQ(attributes[0], owner.getFeature(0));
    EXPECT_EQ(attributes[0], role.getQualifierAttribute(2));
    delete attributes[0];
    EXPECT_EQ(2, owner.getFeatureCount());
    EXPECT_EQ(2, role.getQualifierAttributeCount());
    attributes[1]->setName("x");
    EXPECT_TRUE(owner.removeFeature(attributes[1]));
    EXPECT_EQ(attributes[2], owner.getFeature(0));
    EXPECT_EQ(nullptr, attributes[1]->getClassifier());
}

TEST(OutOfOrderClassifiers, AClassRenamedUnderItsReportCanLeaveItsPackage) {
    QORReport report;
    QORDesignPackage package;
    std::vector<QORClass*> classes;
    for (char const* name : {"a", "b", "c"}) {
        classes.push_back(named<QORClass>(name));
        package.addModelElement(classes.back());
        report.addClassifier(classes.back());
    }
    classes[0]->setName("z");
    EXPECT_EQ(classes[0], package.getModelElement(0));
    EXPECT_TRUE(package.removeModelElement(classes[0]));
    EXPECT_EQ(nullptr, classes[0]->getDesignPackage());
    EXPECT_EQ(2, package.getModelElementCount());
    classes[2]->setName("0");
    delete classes[2];
    ASSERT_EQ(1, package.getModelElementCount());
    EXPECT_EQ(classes[1], package.getModelElement(0));
}

TEST(OutOfOrderTypes, ATypeOfTwoModelsRenamedUnderTheFirstCanLeaveTheSecond) {
    QORModel model;
    QORMappingModel mapping;
    std::vector<QORDerivedType*> types;
    for (char const* name : {"a", "b", "c"}) {
        types.push_back(named<QORDerivedType>(name));
        model.addType(types.back());
        mapping.addType(types.back());
    }
    types[0]->setName("z");
    types[1]->setName("y");
    EXPECT_EQ(types[0], mapping.getType(0));
    delete types[1];
    EXPECT_EQ(2, mapping.getTypeCount());
    EXPECT_TRUE(mapping.removeType(types[0]));
    EXPECT_EQ(types[2], mapping.getType(0));
}

TEST(OutOfOrderConditions, ARenamedConditionLeavesTheItemsThatReferToIt) {
    QORReportText item;
    item.addNote(new QORNote);
    QORClass owner;
    std::vector<QORCondition*> conditions;
    for (char const* name : {"a", "b", "c"}) {
        conditions.push_back(named<QORCondition>(name));
        owner.addFeature(conditions.back());
        item.addCondition(conditions.back());
    }
    conditions[0]->setName("z");
    conditions[1]->setName("y");
    delete conditions[0];
    ASSERT_EQ(2, item.getConditionCount());
    EXPECT_EQ(conditions[1], item.getCondition(0));
    EXPECT_TRUE(item.removeCondition(conditions[1]));
    EXPECT_EQ(conditions[2], item.getCondition(0));
    EXPECT_EQ(0, conditions[1]->getReportItemCount());
}

// ---- values of a business rule --------------------------------------------------------------------------

namespace {

struct RuleValues : public ::testing::Test {
    void fill() {
        rule = std::make_unique<QORBusinessRule>();
        values.clear();
        for (char const* value : {"1", "2", "3", "4", "5"}) {
            values.push_back(valued(value));
            ASSERT_TRUE(rule->addTypeValue(values.back()));
        }
    }
    std::vector<QORObject*> allBut(std::size_t which) const {
        std::vector<QORObject*> rest(values.begin(), values.end());
        rest.erase(rest.begin() + static_cast<std::ptrdiff_t>(which));
        return rest;
    }

    std::unique_ptr<QORBusinessRule> rule;
    std::vector<QORTypeValue*> values;
};

using OutOfOrderValues = RuleValues;

} // namespace

TEST_F(OutOfOrderValues, AChangedValueStaysWhereItIs) {
    fill();
    values[0]->setValue("9");
    values[4]->setValue("0");
    EXPECT_EQ((std::vector<QORObject*>(values.begin(), values.end())), valuesOf(*rule));
    EXPECT_EQ(rule.get(), values[0]->getBusinessRule());
}

TEST_F(OutOfOrderValues, EachOneCanBeRemovedAfterAllHaveBeenReversed) {
    for (std::size_t victim = 0; victim < 5; ++victim) {
        fill();
        char const* const reversed[] = {"5", "4", "3", "2", "1"};
        for (std::size_t i = 0; i < 5; ++i)
            values[i]->setValue(reversed[i]);
        EXPECT_TRUE(rule->removeTypeValue(values[victim]));
        EXPECT_EQ(nullptr, values[victim]->getBusinessRule());
        EXPECT_EQ(allBut(victim), valuesOf(*rule)) << victim;
        delete values[victim];
    }
}

TEST_F(OutOfOrderValues, EachOneCanBeDeletedAndRemovedByPosition) {
    for (std::size_t victim = 0; victim < 5; ++victim) {
        fill();
        for (std::size_t i = 0; i < 5; ++i)
            values[i]->setValue(std::to_string(9 - i * 7 % 5).c_str());
        delete values[victim];
        EXPECT_EQ(allBut(victim), valuesOf(*rule)) << victim;
        fill();
        for (std::size_t i = 0; i < 5; ++i)
            values[i]->setValue("same");
        EXPECT_TRUE(rule->removeTypeValue(static_cast<int>(victim)));
        EXPECT_EQ(allBut(victim), valuesOf(*rule)) << victim;
    }
}

TEST_F(OutOfOrderValues, EqualValuesDoNotHideEachOther) {
    fill();
    for (QORTypeValue* const value : values)
        value->setValue("same");
    EXPECT_TRUE(rule->removeTypeValue(values[3]));
    EXPECT_EQ(allBut(3), valuesOf(*rule));
    EXPECT_FALSE(rule->addTypeValue(values[3])); // now it is a duplicate
    EXPECT_EQ(nullptr, values[3]->getBusinessRule());
    delete values[3];
    rule->removeTypeValues();
    EXPECT_EQ(0, rule->getTypeValueCount());
}

TEST_F(OutOfOrderValues, ARefusedRenameLeavesTheValueWhereItWas) {
    fill();
    ASSERT_TRUE(accepted(*values[4], "named"));
    for (std::size_t i = 0; i < 4; ++i)
        values[i]->setValue(std::to_string(9 - i).c_str());
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_FALSE(accepted(*values[i], "named")) << i;
        EXPECT_STREQ("", values[i]->getName().chars);
        EXPECT_EQ(rule.get(), values[i]->getBusinessRule());
        EXPECT_EQ((std::vector<QORObject*>(values.begin(), values.end())), valuesOf(*rule)) << i;
    }
}

TEST_F(OutOfOrderValues, AnAcceptedRenameKeepsAllValues) {
    for (std::size_t renamed = 0; renamed < 5; ++renamed) {
        fill();
        for (std::size_t i = 0; i < 5; ++i)
            values[i]->setValue(std::to_string(9 - i).c_str());
        EXPECT_TRUE(accepted(*values[renamed], "named"));
        EXPECT_EQ(std::set<QORObject*>(values.begin(), values.end()), asSet(valuesOf(*rule)));
        EXPECT_TRUE(rule->removeTypeValue(values[renamed]));
        EXPECT_EQ(allBut(renamed), valuesOf(*rule));
        delete values[renamed];
    }
}

TEST_F(OutOfOrderValues, AValueOfATypeAndARuleIsSortedUnderTheTypeOnly) {
    fill();
    QORDerivedType type;
    for (QORTypeValue* const value : values)
        ASSERT_TRUE(type.addTypeValue(value));
    values[0]->setValue("9");
    EXPECT_EQ(values[0], type.getTypeValue(4));
    EXPECT_EQ(values[0], rule->getTypeValue(0));
    EXPECT_THROW(values[1]->setValue("9"), QORException);
    EXPECT_STREQ("2", values[1]->getValue().chars);
    EXPECT_EQ(values[1], type.getTypeValue(0));
    EXPECT_EQ(values[1], rule->getTypeValue(1));
    delete values[0];
    EXPECT_EQ(4, type.getTypeValueCount());
    EXPECT_EQ(allBut(0), valuesOf(*rule));
    rule.reset();
    EXPECT_EQ(4, type.getTypeValueCount());
    EXPECT_EQ(nullptr, values[1]->getBusinessRule());
}

// ---- re-encoding ----------------------------------------------------------------------------------------

namespace {

/// Synonyms of a model object, which takes one of a name alone; an assignment doesn't ask it.
struct OutOfOrderSynonyms : public ::testing::Test {
    QORSynonym* add(char const* name) {
        auto* const synonym = named<QORSynonym>(name);
        EXPECT_TRUE(model.addSynonym(synonym));
        return synonym;
    }

    void transcode(QORObject& object) {
        Recoding recode("ISO-8859-1", "UTF-8");
        recode(object);
        EXPECT_EQ(0, recode.errors);
    }

    QORModel model;
};

} // namespace

TEST_F(OutOfOrderSynonyms, NamesakesAreToldApartByReEncodingThoughTheirNameStays) {
    QORSynonym* const first = add("a");
    QORSynonym* const second = add("b");
    *second = *first;
    ASSERT_STREQ("a", second->getName().chars);
    transcode(model);
    EXPECT_STREQ("a/1", first->getName().chars);
    EXPECT_STREQ("a", second->getName().chars);
    EXPECT_EQ(second, model.getSynonym(0));
    EXPECT_EQ(first, model.getSynonym(1));
}

TEST_F(OutOfOrderSynonyms, ReEncodingBringsThemBackInOrderThoughTheirNamesStay) {
    QORSynonym* const first = add("a");
    QORSynonym* const second = add("b");
    QORSynonym const source(*std::unique_ptr<QORSynonym>(named<QORSynonym>("c")));
    *first = source;
    ASSERT_EQ(first, model.getSynonym(0));
    transcode(*first);
    EXPECT_EQ(second, model.getSynonym(0));
    EXPECT_EQ(first, model.getSynonym(1));
}

// ---- links made twice -----------------------------------------------------------------------------------

TEST(OutOfOrderLinks, ALinkIsntMadeAgainWhereARenameHidesItFromBothEnds) {
    QORConfigurationFormat configuration, other;
    QORModelFormat first, second, third;
    configuration.setName("m");
    other.setName("n");
    first.setName("a");
    second.setName("m");
    third.setName("z");
    for (QORModelFormat* const format : {&first, &second, &third})
        ASSERT_TRUE(configuration.addMetadataFormat(format));
    ASSERT_TRUE(first.addConfigurationFormat(&other));
    first.setName("zz");
    configuration.setName("o");
    EXPECT_FALSE(configuration.addMetadataFormat(&first));
    EXPECT_FALSE(first.addConfigurationFormat(&configuration));
    EXPECT_EQ(3, configuration.getMetadataFormatCount());
    EXPECT_EQ(2, first.getConfigurationFormatCount());
    EXPECT_TRUE(configuration.removeMetadataFormat(&first));
    EXPECT_FALSE(first.removeConfigurationFormat(&configuration));
    EXPECT_TRUE(configuration.addMetadataFormat(&first));
    configuration.isolate(false); // or it would die with the last one
    other.isolate(false);
}

TEST(OutOfOrderLinks, AnObjectInItsOwnEndIsntAddedAgainWhereARenameHidesIt) {
    QORDesignPackage package, first, second;
    package.setName("a");
    first.setName("b");
    second.setName("c");
    EXPECT_FALSE(package.addChildPackage(&package)); // and yet it stays
    ASSERT_TRUE(package.addChildPackage(&first));
    ASSERT_TRUE(package.addChildPackage(&second));
    package.setName("d");
    EXPECT_FALSE(package.addChildPackage(&package));
    EXPECT_FALSE(package.addParentPackage(&package));
    EXPECT_EQ(3, package.getChildPackageCount());
}
