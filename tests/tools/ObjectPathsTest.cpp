#include "kit/ObjectPaths.h"

#include "kit/Graph.h"
#include "kit/Numbering.h"
#include "kit/ToolError.h"

#include <qor/QORAttribute.h>
#include <qor/QORBaseType.h>
#include <qor/QORClass.h>
#include <qor/QORDesignPackage.h>
#include <qor/QORModel.h>
#include <qor/QORNote.h>

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class ObjectPaths : public testing::Test {
protected:
    template <class Class>
    Class* made(char const* name) {
        auto* object = new Class;
        graph.adopt(object);
        object->setName(name);
        return object;
    }

    /// Expects the path of an object, which must lead back to it.
    void expectPath(QORObject* object, char const* path) {
        kit::ObjectPaths const paths{kit::Numbering(graph.root())};
        EXPECT_EQ(paths.pathOf(*object), path);
        EXPECT_THAT(paths.find(path), ElementsAre(object));
    }

    kit::Graph graph;
    QORModel* model = made<QORModel>("m");
};

TEST_F(ObjectPaths, NamesOfOwnersLeadToAnObject) {
    auto* package = made<QORDesignPackage>("p");
    auto* table = made<QORClass>("t");
    model->addChildPackage(package);
    package->addModelElement(table);
    expectPath(model, "/");
    expectPath(package, "p");
    expectPath(table, "p/t");
}

TEST_F(ObjectPaths, ClassAndNumberTellSiblingsApart) {
    auto* package = made<QORDesignPackage>("x");
    auto* type = made<QORBaseType>("x");
    auto* note = made<QORNote>("");
    auto* second = made<QORNote>("");
    model->addChildPackage(package);
    model->addType(type);
    model->addNote(note);
    model->addNote(second);
    second->setPosition(1);
    expectPath(package, "DesignPackage:x");
    expectPath(type, "BaseType:x");
    expectPath(note, "Note:");
    expectPath(second, "Note:#2");
    EXPECT_THAT(kit::ObjectPaths(kit::Numbering(*model)).find("x"), SizeIs(2));
}

TEST_F(ObjectPaths, NameMayHoldWhatPathsAreMadeOf) {
    for (char const* name : {"a/b", "a\\", "/", "Note:", "Note:#2", "\\/"}) {
        model->addChildPackage(made<QORDesignPackage>(name));
    }
    model->addNote(made<QORNote>(""));
    model->addNote(made<QORNote>(""));
    for (std::size_t i = 1; i < graph.objects().size(); ++i) {
        kit::ObjectPaths const paths{kit::Numbering(*model)};
        EXPECT_THAT(paths.find(paths.pathOf(*graph.objects()[i])), ElementsAre(graph.objects()[i]));
    }
}

TEST_F(ObjectPaths, WhatTheRootDoesNotOwnBeginsWithASlash) {
    auto* table = made<QORClass>("t");
    auto* column = made<QORAttribute>("c");
    auto* type = made<QORBaseType>("b");
    model->addType(type);
    table->addFeature(column);
    column->addType(type);
    expectPath(table, "/t");
    expectPath(column, "/t/c");
}

TEST_F(ObjectPaths, PathToNothingGivesNothing) {
    model->addChildPackage(made<QORDesignPackage>("p"));
    kit::ObjectPaths const paths{kit::Numbering(*model)};
    for (char const* path : {"q", "p/q", "/q", "p/", "//", "p\\"}) {
        EXPECT_THAT(paths.find(path), IsEmpty()) << path;
    }
}

/// What `only` says of a path that stands for no object or for several.
std::string problemOf(kit::ObjectPaths const& paths, char const* path) {
    try {
        paths.only(path, "x");
    } catch (kit::ToolError const& error) {
        return error.what();
    }
    return "";
}

TEST_F(ObjectPaths, EndOfAPathIsEnoughIfItLeadsToOneObject) {
    auto* first = made<QORDesignPackage>("p");
    auto* second = made<QORDesignPackage>("q");
    auto* table = made<QORClass>("t");
    auto* other = made<QORClass>("t");
    auto* column = made<QORAttribute>("a:b#c/d\\e");
    model->addChildPackage(first);
    model->addChildPackage(second);
    first->addModelElement(table);
    second->addModelElement(other);
    table->addFeature(column);
    kit::ObjectPaths const paths{kit::Numbering(*model)};
    EXPECT_EQ(&paths.only("p/t", "x"), table);
    EXPECT_EQ(&paths.only("a\\:b\\#c\\/d\\\\e", "x"), column);
    EXPECT_EQ(&paths.only("t/a\\:b\\#c\\/d\\\\e", "x"), column);
    EXPECT_EQ(&paths.only("Class:t/Attribute:a\\:b\\#c\\/d\\\\e", "x"), column);
    EXPECT_EQ(problemOf(paths, "t"), "x: more than one object at t, such as p/t and q/t");
    EXPECT_EQ(problemOf(paths, "Class:t"), "x: more than one object at Class:t, such as p/t and q/t");
}

TEST_F(ObjectPaths, MissingPartOfAPathIsTold) {
    auto* package = made<QORDesignPackage>("p");
    model->addChildPackage(package);
    package->addModelElement(made<QORClass>("t"));
    model->addType(made<QORBaseType>("same"));
    model->addChildPackage(made<QORDesignPackage>("same"));
    kit::ObjectPaths const paths{kit::Numbering(*model)};
    EXPECT_EQ(problemOf(paths, "q"), "x: no object at q: there is no q");
    EXPECT_EQ(problemOf(paths, "q/t"), "x: no object at q/t: there is no q");
    EXPECT_EQ(problemOf(paths, "p/u"), "x: no object at p/u: p has no u");
    EXPECT_EQ(problemOf(paths, "p/t/c"), "x: no object at p/t/c: p/t has no c");
    EXPECT_EQ(problemOf(paths, "same/c"), "x: no object at same/c: same has no c");
}

TEST_F(ObjectPaths, RingOfOwnersBeginsAtItsFirstObject) {
    auto* outer = made<QORDesignPackage>("outer");
    auto* inner = made<QORDesignPackage>("inner");
    auto* table = made<QORClass>("t");
    auto* column = made<QORAttribute>("c");
    auto* type = made<QORBaseType>("b");
    model->addType(type);
    column->addType(type);
    table->addFeature(column);
    inner->addModelElement(table);
    outer->addChildPackage(inner);
    inner->addChildPackage(outer);
    kit::ObjectPaths const paths{kit::Numbering(*model)};
    for (QORObject* object : graph.objects()) {
        EXPECT_THAT(paths.find(paths.pathOf(*object)), ElementsAre(object)) << paths.pathOf(*object);
    }
    EXPECT_EQ(paths.owners().tops().size(), 2u);
    EXPECT_TRUE(paths.owners().tops()[1] == outer || paths.owners().tops()[1] == inner);
}

TEST_F(ObjectPaths, LongPathLeavesOutItsMiddleAndStillLeadsToItsObject) {
    constexpr int depth = 100;
    QORPackage* innermost = model;
    for (int i = 0; i < depth; ++i) {
        auto* const inner = made<QORDesignPackage>(i % 2 ? "odd" : "even");
        innermost->addChildPackage(inner);
        innermost = inner;
    }
    kit::Numbering const numbering(*model);
    kit::ObjectPaths const paths{numbering};
    for (QORObject* object : numbering.objects()) {
        EXPECT_THAT(paths.find(paths.pathOf(*object)), ElementsAre(object)) << paths.pathOf(*object);
    }
    std::string const half = "even/odd/even/odd/even/odd/even/odd/even/odd/even/odd/even/odd/even/odd";
    EXPECT_EQ(paths.pathOf(*innermost), half + "/#68/" + half);
    EXPECT_EQ(paths.pathFrom(*numbering.objects()[1], *innermost), "#83/" + half);
    EXPECT_EQ(paths.pathFrom(*numbering.objects()[99], *innermost), "odd");
    for (char const* path :
         {"even/#67/odd", "even/#98", "even/#98/even", "even/#", "#0/even", "#99999999999/odd"}) {
        EXPECT_THAT(paths.find(path), IsEmpty()) << path;
    }
    EXPECT_THAT(paths.find("even/#98/odd"), ElementsAre(innermost));
}

TEST_F(ObjectPaths, LongNamesOfOwnersAreLeftOutButNeverTheOwnName) {
    std::string const name(5000, 'x');
    auto* outer = made<QORDesignPackage>(name.c_str());
    auto* table = made<QORClass>("t");
    auto* column = made<QORAttribute>(name.c_str());
    model->addChildPackage(outer);
    outer->addModelElement(table);
    table->addFeature(column);
    expectPath(table, "#1/t");
    expectPath(column, ("#2/" + name).c_str());
}

} // namespace
