#pragma once

#include "kit/Graph.h"

#include <qor/QORAttribute.h>
#include <qor/QORBaseType.h>
#include <qor/QORClass.h>
#include <qor/QORDesignPackage.h>
#include <qor/QORGeneralization.h>
#include <qor/QORModel.h>

#include <string>
#include <vector>

/// What labels, records and tables are made of, line breaks, and what is no UTF-8.
inline std::vector<std::string> const nastyNames = {
    "\"",    "\\", "\\l",  "\\N",   "{",  "}",       "|",    "<",   ">",    "<b>",
    "&amp;", "&",  "a\nb", "\r",    "\t", "\x01",    "a b",  "'",   "`",    "*",
    "_",     "#",  "- x",  "1. x",  "~~", "![x](y)", "<!--", "-->", "\xe9", "\xc3\xa9",
    "\\\"",  "",   "$",    "graph", "->", ";",       "//",   "/*",  "\\\\", "a\\"};

/// A class of each such name, in packages of such names, with a column and a generalization of it.
class Nasty {
public:
    Nasty() {
        adopted(model)->setName("\"{|}\"");
        for (std::string const& name : nastyNames) {
            auto* const package = named(new QORDesignPackage, name);
            auto* const table = named(new QORClass, name);
            auto* const column = named(new QORAttribute, name);
            auto* const type = named(new QORBaseType, name);
            auto* const relation = named(new QORGeneralization, name);
            model->addChildPackage(package);
            model->addType(type);
            package->addModelElement(table);
            table->addFeature(column);
            table->setComment(name.c_str());
            column->addType(type);
            column->setInitialValue(name.c_str());
            package->addModelElement(relation);
            relation->addSubtypeClass(table);
            relation->addSupertypeClass(table);
        }
    }

    template <class Class>
    Class* adopted(Class* object) {
        graph.adopt(object);
        return object;
    }

    template <class Class>
    Class* named(Class* object, std::string const& name) {
        object->setName(name.c_str());
        return adopted(object);
    }

    kit::Graph graph;
    QORModel* model = new QORModel;
};
