#include "kit/ObjectPaths.h"

#include "kit/Graph.h"
#include "kit/Numbering.h"

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

} // namespace
