#include "kit/Statistics.h"

#include <qor/QORArgument.h>
#include <qor/QORAttribute.h>
#include <qor/QORBaseType.h>
#include <qor/QORClass.h>
#include <qor/QORDesignPackage.h>
#include <qor/QORModel.h>
#include <qor/QOROperation.h>

#include <gmock/gmock.h>
#include <memory>
#include <sstream>

namespace {

using kit::countObjects;
using kit::Statistics;
using testing::ElementsAre;
using testing::Pair;

TEST(Statistics, CountsTheRootAndAllThatItOwnsByClass) {
    QORModel model;
    auto* package = new QORDesignPackage;
    package->setName("p");
    model.addChildPackage(package);
    for (char const* name : {"a", "b"}) {
        auto* table = new QORClass;
        table->setName(name);
        package->addModelElement(table);
        table->addFeature(new QORAttribute);
    }
    Statistics const statistics = countObjects(model);
    EXPECT_THAT(statistics.objectsByClass, ElementsAre(Pair("Attribute", 2), Pair("Class", 2),
                                                       Pair("DesignPackage", 1), Pair("Model", 1)));
    EXPECT_EQ(statistics.objects, 6);
}

TEST(Statistics, WhatIsOnlyReferredToDoesNotCount) {
    QORModel model; // keeps the type
    auto* type = new QORBaseType;
    model.addType(type);
    QORAttribute column;
    column.addType(type);
    EXPECT_THAT(countObjects(column).objectsByClass, ElementsAre(Pair("Attribute", 1)));
}

TEST(Statistics, ObjectWithTwoOwnersCountsOnce) {
    QORClass table;
    auto* operation = new QOROperation;
    auto* argument = new QORArgument;
    table.addOperation(operation);
    table.addArgument(argument);
    operation->addArgument(argument);
    EXPECT_EQ(countObjects(table).objects, 3);
}

TEST(Statistics, DeepGraphIsCounted) {
    auto const root = std::make_unique<QORDesignPackage>();
    QORDesignPackage* innermost = root.get();
    constexpr int depth = 200000;
    for (int i = 0; i < depth; ++i) {
        auto* inner = new QORDesignPackage;
        innermost->addChildPackage(inner);
        innermost = inner;
    }
    EXPECT_EQ(countObjects(*root).objects, depth + 1);
}

TEST(Statistics, PrintsALineForEachClassAndTheSum) {
    std::ostringstream out;
    kit::printStatistics({{{"Attribute", 98}, {"Class", 7}}, 105}, out);
    EXPECT_EQ(out.str(), " 98  Attribute\n"
                         "  7  Class\n"
                         "105  in all\n");
}

} // namespace
