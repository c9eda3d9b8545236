#include "kit/TreePrinter.h"

#include <qor/QORAliasType.h>
#include <qor/QORArgument.h>
#include <qor/QORAttribute.h>
#include <qor/QORBaseType.h>
#include <qor/QORClass.h>
#include <qor/QORDesignPackage.h>
#include <qor/QORModel.h>
#include <qor/QORNote.h>
#include <qor/QOROperation.h>

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <random>
#include <sstream>
#include <vector>

namespace {

using kit::lineOf;
using kit::quoted;

std::string treeOf(QORObject& root) {
    std::ostringstream out;
    kit::printTree(root, out);
    return out.str();
}

TEST(TreePrinter, QuotedTextStaysOnOneLineAndCanBeReadBack) {
    EXPECT_EQ(quoted("plain"), "\"plain\"");
    EXPECT_EQ(quoted(""), "\"\"");
    EXPECT_EQ(quoted("a\"b\\c"), "\"a\\\"b\\\\c\"");
    EXPECT_EQ(quoted("a\nb\tc\rd\x7f\x1b"), "\"a\\nb\\tc\\x0dd\\x7f\\x1b\"");
    EXPECT_EQ(quoted("Größe 樹"), "\"Größe 樹\"");
}

TEST(TreePrinter, LineOfAnUntouchedObjectIsItsClass) {
    QORAttribute column;
    EXPECT_EQ(lineOf(column), "Attribute");
}

TEST(TreePrinter, LineHoldsClassNameAndWhatDiffersFromTheDefault) {
    QORAttribute column;
    column.setName("Prénom");
    column.setID(7);
    column.setPosition(-2);
    column.setOptional(true);
    column.setInitialValue("'x y'");
    column.setCppScope(QORVisibilityType::PRIVATE);
    EXPECT_EQ(lineOf(column),
              "Attribute \"Prénom\" id=7 position=-2 initialValue=\"'x y'\" optional=true cppScope=PRIVATE");
}

TEST(TreePrinter, ValueThatDiffersFromItsDefaultTextIsShownEvenIfTheFieldStartsWithIt) {
    QORClass table;
    EXPECT_EQ(lineOf(table), "Class cppMultiplicity=\"0\"");
    table.setCppMultiplicity("MUL_UNSPECIFIED");
    EXPECT_EQ(lineOf(table), "Class");
}

TEST(TreePrinter, DateIsQuotedAndAnUnsetOneLeftOut) {
    QORModel model;
    EXPECT_EQ(lineOf(model), "Model");
    QORDate date;
    date.setDate("10:20:30 2020-02-29");
    model.setCreationTime(date);
    EXPECT_EQ(lineOf(model), "Model creationTime=\"10:20:30 2020-02-29\"");
}

TEST(TreePrinter, ReferenceToOneObjectIsShownByTheNameOfThat) {
    QORModel model; // keeps the type
    auto* type = new QORBaseType;
    type->setName("date");
    model.addType(type);
    QORAttribute column;
    column.addType(type);
    EXPECT_EQ(lineOf(column), "Attribute type->\"date\"");
    EXPECT_EQ(lineOf(*type), "BaseType \"date\""); // the way back isn't
}

TEST(TreePrinter, TreeIsIndentedAndOrderedByPositionThenName) {
    QORDesignPackage package;
    package.setName("p");
    for (char const* name : {"b", "a"}) {
        auto* table = new QORClass;
        table->setName(name);
        table->setCppMultiplicity("MUL_UNSPECIFIED");
        package.addModelElement(table);
        short position = 2;
        for (char const* columnName : {"x", "y"}) {
            auto* column = new QORAttribute;
            column->setName(columnName);
            column->setPosition(position--);
            table->addFeature(column);
        }
    }
    EXPECT_EQ(treeOf(package), "DesignPackage \"p\"\n"
                               "  Class \"a\"\n"
                               "    Attribute \"y\" position=1\n"
                               "    Attribute \"x\" position=2\n"
                               "  Class \"b\"\n"
                               "    Attribute \"y\" position=1\n"
                               "    Attribute \"x\" position=2\n");
}

/// A class whose unnamed and namesake children lie in memory, and are added, in an order of chance.
std::string shuffledTree(unsigned seed) {
    std::mt19937 random(seed);
    std::vector<QOROperation*> operations(30);
    std::generate(operations.begin(), operations.end(), [] { return new QOROperation; });
    std::shuffle(operations.begin(), operations.end(), random);
    std::vector<QORNote*> notes(90);
    std::generate(notes.begin(), notes.end(), [] { return new QORNote; });
    std::shuffle(notes.begin(), notes.end(), random);

    QORClass table;
    for (std::size_t i = 0; i < notes.size(); ++i) {
        notes[i]->setValue(std::to_string(i / 2).c_str());
        operations[i % operations.size()]->addNote(notes[i]);
    }
    for (std::size_t i = 0; i < operations.size(); ++i) {
        operations[i]->setName(i % 3 == 0 ? "same" : "");
        table.addOperation(operations[i]);
    }
    return treeOf(table);
}

TEST(TreePrinter, EqualGraphsGiveEqualTextsWhereverTheObjectsLie) {
    std::string const first = shuffledTree(1);
    EXPECT_EQ(std::count(first.begin(), first.end(), '\n'), 121);
    for (unsigned seed = 2; seed < 12; ++seed) {
        EXPECT_EQ(shuffledTree(seed), first);
    }
}

TEST(TreePrinter, ObjectWithTwoOwnersIsWrittenInFullOnce) {
    QORClass table;
    table.setCppMultiplicity("MUL_UNSPECIFIED");
    auto* operation = new QOROperation;
    auto* argument = new QORArgument;
    argument->setName("arg");
    argument->addNote(new QORNote);
    table.addOperation(operation);
    table.addArgument(argument);
    operation->addArgument(argument);
    EXPECT_EQ(treeOf(table), "Class\n"
                             "  Operation\n"
                             "    Argument \"arg\"\n"
                             "      Note\n"
                             "  Argument \"arg\" (above)\n");
}

TEST(TreePrinter, RingOfOwnersComesToAnEnd) {
    QORDesignPackage outer;
    QORDesignPackage inner;
    outer.setName("outer");
    inner.setName("inner");
    ASSERT_TRUE(outer.addChildPackage(&inner));
    ASSERT_TRUE(inner.addChildPackage(&outer));
    EXPECT_EQ(treeOf(outer), "DesignPackage \"outer\"\n"
                             "  DesignPackage \"inner\"\n"
                             "    DesignPackage \"outer\" (above)\n");
    inner.removeChildPackage(&outer);
    outer.removeChildPackage(&inner);
}

TEST(TreePrinter, IndentationEndsBelowAHundredOwners) {
    QORDesignPackage outer;
    QORDesignPackage* innermost = &outer;
    for (int i = 0; i < 102; ++i) {
        auto* const inner = new QORDesignPackage;
        innermost->addChildPackage(inner);
        innermost = inner;
    }
    innermost->setName("deep");
    std::string const text = treeOf(outer);
    std::string const blanks(200, ' ');
    EXPECT_NE(text.find("\n" + blanks + "DesignPackage\n" + blanks + "(101) DesignPackage\n" + blanks +
                        "(102) DesignPackage \"deep\"\n"),
              std::string::npos);
}

TEST(TreePrinter, NamelessAliasOfNothingIsShownByItsClass) {
    QORModel model; // keeps the types
    auto* alias = new QORAliasType;
    auto* circle = new QORAliasType;
    model.addType(alias);
    model.addType(circle);
    circle->setName("c");
    QORAttribute column;
    column.addType(alias);
    EXPECT_EQ(lineOf(column), "Attribute type->\"AliasType\"");
    alias->addAliasOfType(circle);
    circle->addAliasOfType(alias);
    EXPECT_EQ(lineOf(column), "Attribute type->\"AliasType\"");
}

} // namespace
