#include "diff/GraphDiff.h"

#include "kit/Graph.h"
#include "kit/ToolError.h"

#include <qor/QORArgument.h>
#include <qor/QORAssociation.h>
#include <qor/QORAssociationRole.h>
#include <qor/QORAttribute.h>
#include <qor/QORBaseType.h>
#include <qor/QORCandidateKey.h>
#include <qor/QORClass.h>
#include <qor/QORDatabaseCatalog.h>
#include <qor/QORDerivedType.h>
#include <qor/QORDesignPackage.h>
#include <qor/QORGeneralization.h>
#include <qor/QORIndex.h>
#include <qor/QORIndexMember.h>
#include <qor/QORMetadataOrigin.h>
#include <qor/QORModel.h>
#include <qor/QORNote.h>
#include <qor/QOROperation.h>

#include <gmock/gmock.h>
#include <initializer_list>
#include <nlohmann/json.hpp>
#include <sstream>

namespace {

/// A model with a package of two classes, which tests change.
struct Shop {
    Shop() {
        model->setName("shop");
        graph.adopt(model);
        model->addChildPackage(named(sales, "sales"));
        model->addType(named(text, "text"));
        model->addType(named(number, "number"));
        sales->addModelElement(named(customer, "customer"));
        sales->addModelElement(named(invoice, "invoice"));
        customer->addFeature(named(mail, "mail"));
        mail->addType(text);
    }

    template <class Class>
    Class* named(Class* object, char const* name) {
        object->setName(name);
        graph.adopt(object);
        return object;
    }

    kit::Graph graph;
    QORModel* model = new QORModel;
    QORDesignPackage* sales = new QORDesignPackage;
    QORBaseType* text = new QORBaseType;
    QORBaseType* number = new QORBaseType;
    QORClass* customer = new QORClass;
    QORClass* invoice = new QORClass;
    QORAttribute* mail = new QORAttribute;
};

std::string textOf(Shop const& a, Shop const& b, std::vector<diff::Rename> const& renames = {}) {
    std::ostringstream out;
    diff::printText(diff::compare(*a.model, *b.model, {renames, false}), false, out);
    std::string const text = out.str();
    return text.substr(0, text.rfind("\n", text.size() - 2)); // without the summary
}

TEST(GraphDiff, EqualGraphsHaveNoDifference) {
    Shop a;
    Shop b;
    EXPECT_TRUE(diff::compare(*a.model, *b.model).none());
    EXPECT_EQ(textOf(a, b), "");
}

TEST(GraphDiff, ObjectsComeAndGoWithWhatTheyOwn) {
    Shop a;
    Shop b;
    auto* note = b.named(new QORNote, "");
    auto* order = b.named(new QORClass, "order");
    b.sales->addModelElement(order);
    order->addNote(note);
    note->setValue("late");
    EXPECT_EQ(textOf(a, b), "+ Class sales/order\n  + Note:  (value \"late\")\n");
    EXPECT_EQ(textOf(b, a), "- Class sales/order\n  - Note:  (value \"late\")\n");
}

TEST(GraphDiff, AttributesAreToldOneByOne) {
    Shop a;
    Shop b;
    b.mail->setComment("\"new\"");
    b.mail->setOptional(true);
    b.model->setComment("all");
    EXPECT_EQ(textOf(a, b), "Model shop\n"
                            "  ~ comment \"\" -> \"all\"\n"
                            "Class sales/customer\n"
                            "  ~ Attribute mail: comment \"\" -> \"\\\"new\\\"\"\n"
                            "  ~ Attribute mail: optional false -> true\n");
}

TEST(GraphDiff, LongTextsAreToldAroundTheirDifference) {
    Shop a;
    Shop b;
    auto const repeated = [](char const* text, int count) {
        std::string all;
        for (int i = 0; i < count; ++i) {
            all += text;
        }
        return all;
    };
    auto const euros = [&](int count) { return repeated("\xe2\x82\xac", count); }; // three bytes each
    a.mail->setComment((euros(50) + "old" + euros(50)).c_str());
    b.mail->setComment((euros(50) + euros(50)).c_str());
    EXPECT_EQ(textOf(a, b), "Class sales/customer\n  ~ Attribute mail: comment \"..." + euros(7) + "old" +
                                euros(7) + "...\" -> \"..." + euros(7) + euros(7) + "...\"\n");
    a.mail->setComment(("old" + repeated("x", 100)).c_str());
    b.mail->setComment(("new" + repeated("x", 100)).c_str());
    EXPECT_EQ(textOf(a, b), "Class sales/customer\n  ~ Attribute mail: comment \"old" + repeated("x", 20) +
                                "...\" -> \"new" + repeated("x", 20) + "...\"\n");
    std::string const common = repeated("x", 30);
    a.mail->setComment(common.c_str());
    b.mail->setComment((common + repeated("y", 40)).c_str());
    std::string const heading = "Class sales/customer\n  ~ Attribute mail: comment ";
    std::string const shorter = "\"..." + repeated("x", 20) + "\"";
    std::string const longer = "\"..." + repeated("x", 20) + repeated("y", 40) + "\"";
    EXPECT_EQ(textOf(a, b), heading + shorter + " -> " + longer + "\n");
    EXPECT_EQ(textOf(b, a), heading + longer + " -> " + shorter + "\n");
}

TEST(GraphDiff, LinksAreToldOneByOne) {
    Shop a;
    Shop b;
    b.mail->removeType(b.text);
    b.mail->addType(b.number);
    EXPECT_EQ(textOf(a, b), "Class sales/customer\n  ~ Attribute mail: type text -> number\n");
    b.mail->removeType(b.number);
    EXPECT_EQ(textOf(a, b), "Class sales/customer\n  ~ Attribute mail: type without text\n");
}

TEST(GraphDiff, LinkToAnObjectThatCameIsLeftOutOfTheTextAlone) {
    Shop a;
    Shop b;
    auto* derived = b.named(new QORDerivedType, "derived");
    b.model->addType(derived);
    b.text->addDerivedType(derived);
    EXPECT_EQ(textOf(a, b), "Model shop\n  + DerivedType derived  (derivedFromConcreteType text)\n");
    diff::Difference const difference = diff::compare(*a.model, *b.model);
    ASSERT_EQ(difference.changed.size(), 1u);
    EXPECT_EQ(difference.changed[0].links.at(0).added.at(0).path, "derived");
}

TEST(GraphDiff, OrderCountsWhereAnEndKeepsOne) {
    Shop a;
    Shop b;
    for (Shop* shop : {&a, &b}) {
        auto* first = shop->named(new QORGeneralization, "first");
        auto* second = shop->named(new QORGeneralization, "second");
        shop->sales->addModelElement(first);
        shop->sales->addModelElement(second);
        shop->customer->addSupertypeOfGeneralization(shop == &a ? first : second);
        shop->customer->addSupertypeOfGeneralization(shop == &a ? second : first);
    }
    EXPECT_EQ(textOf(a, b), "Class sales/customer\n  ~ supertypeOfGeneralization in another order\n");
}

TEST(GraphDiff, NewNameIsNoRenameUnlessSomethingTellsSo) {
    Shop a;
    Shop b;
    b.customer->setName("client");
    EXPECT_EQ(textOf(a, b), "+ Class sales/client\n  + Attribute mail  (type text)\n"
                            "- Class sales/customer\n  - Attribute mail  (type text)\n");
    EXPECT_EQ(textOf(a, b, {{"sales/customer", "sales/client"}}),
              "Class sales/client\n  > is renamed from customer\n");
    EXPECT_EQ(textOf(a, b, {{"customer", "client"}}), "Class sales/client\n  > is renamed from customer\n");
}

TEST(GraphDiff, IdTellsARenameAndAMove) {
    Shop a;
    Shop b;
    a.customer->setID(7);
    b.customer->setID(7);
    b.customer->setName("client");
    EXPECT_EQ(textOf(a, b), "Class sales/client\n  > is renamed from customer\n");
    a.mail->setID(8);
    b.mail->setID(8);
    b.customer->removeFeature(b.mail);
    b.invoice->addFeature(b.mail);
    EXPECT_EQ(textOf(a, b), "Class sales/client\n  > is renamed from customer\n"
                            "Class sales/invoice\n  > Attribute mail is moved from sales/customer/mail\n");
}

TEST(GraphDiff, AnEndThatKeepsNoOrderIsInNone) {
    Shop a;
    Shop b;
    for (Shop* shop : {&a, &b}) {
        auto* const phone = shop->named(new QORAttribute, "phone");
        shop->customer->addFeature(phone);
        auto* const key = shop->named(new QORCandidateKey, "key");
        shop->customer->addKey(key);
        key->addAttribute(shop->mail);
        key->addAttribute(phone);
    }
    b.mail->setName("post"); // which comes behind the other name
    diff::Difference const difference =
        diff::compare(*a.model, *b.model, {{{"sales/customer/mail", "sales/customer/post"}}, false});
    EXPECT_EQ(difference.renamed.size(), 1u);
    EXPECT_TRUE(difference.changed.empty());
}

// ---- roots, and where graphs come from ------------------------------------------------------------------

/// What an import makes of a database, as far as it depends on the source.
struct Source {
    explicit Source(char const* name) {
        graph.adopt(model);
        model->setName(name);
        add(*catalog, name);
        add(*package, name);
        model->addMetadataOrigin(origin);
        graph.adopt(origin);
        origin->setSource((name + std::string(".db")).c_str());
        catalog->setNativeVersion((name + std::string(" 1.0")).c_str());
        auto* table = new QORClass;
        graph.adopt(table);
        table->setName("table");
        package->addModelElement(table);
    }

    void add(QORPackage& added, char const* name) {
        graph.adopt(&added);
        added.setName(name);
        added.setPhysicalName(name);
        model->addChildPackage(&added);
    }

    diff::Difference difference(Source const& other, bool withOrigin = false) const {
        return diff::compare(*model, *other.model, {{}, withOrigin});
    }

    kit::Graph graph;
    QORModel* model = new QORModel;
    QORDatabaseCatalog* catalog = new QORDatabaseCatalog;
    QORDesignPackage* package = new QORDesignPackage;
    QORMetadataOrigin* origin = new QORMetadataOrigin;
};

TEST(GraphDiff, NameOfTheSourceDoesNotCount) {
    Source const a("old");
    Source const b("new");
    diff::Difference const difference = a.difference(b);
    EXPECT_TRUE(difference.none());
    EXPECT_EQ(difference.rootBefore, "old");
    EXPECT_EQ(difference.rootAfter, "new");
    b.package->setName("other");
    EXPECT_EQ(a.difference(b).added.size(), 2u) << "not the root's name any more";
}

TEST(GraphDiff, OriginCountsOnRequest) {
    Source const a("old");
    Source const b("new");
    diff::Difference const difference = a.difference(b, true);
    ASSERT_EQ(difference.changed.size(), 2u);
    EXPECT_EQ(difference.changed[0].className, "DatabaseCatalog");
    EXPECT_EQ(difference.changed[1].className, "MetadataOrigin");
    b.model->removeMetadataOrigin(b.origin);
    EXPECT_TRUE(a.difference(b).none());
    EXPECT_EQ(a.difference(b, true).removed.size(), 1u);
}

TEST(GraphDiff, WhatTheOriginOwnsCountsOnRequestToo) {
    Source const a("old");
    Source b("new");
    auto* const note = new QORNote;
    b.graph.adopt(note);
    b.origin->addNote(note);
    EXPECT_TRUE(a.difference(b).none());
    EXPECT_TRUE(b.difference(a).none());
    EXPECT_EQ(a.difference(b, true).added.size(), 1u);
    EXPECT_EQ(b.difference(a, true).removed.size(), 1u);
}

TEST(GraphDiff, RootsOfTwoClassesHaveNothingInCommon) {
    Shop a;
    diff::Difference const difference = diff::compare(*a.model, *a.sales);
    EXPECT_FALSE(difference.none());
}

// ---- what has no name -----------------------------------------------------------------------------------

/// A table with columns a, b and c and unnamed keys, each of which has as many members as told.
struct Keys {
    explicit Keys(std::vector<std::vector<int>> const& members) {
        table->setName("t");
        graph.adopt(table);
        for (char const* name : {"a", "b", "c"}) {
            columns.push_back(new QORAttribute);
            columns.back()->setName(name);
            graph.adopt(columns.back());
            table->addFeature(columns.back());
        }
        for (std::vector<int> const& key : members) {
            add(key);
        }
    }

    QORIndex* add(std::vector<int> const& members) {
        auto* const index = new QORIndex;
        graph.adopt(index);
        table->addIndex(index);
        for (int const column : members) {
            auto* const member = new QORIndexMember;
            graph.adopt(member);
            index->addIndexMember(member);
            columns[static_cast<std::size_t>(column)]->addIndexMember(member);
        }
        return index;
    }

    diff::Difference difference(Keys const& other) const { return diff::compare(*table, *other.table); }

    kit::Graph graph;
    QORClass* table = new QORClass;
    std::vector<QORAttribute*> columns;
};

TEST(GraphDiff, UnnamedObjectsBelongTogetherByWhatTheyHold) {
    Keys const a({{0}, {1}, {2}});
    Keys const b({{2}, {0}});
    EXPECT_TRUE(a.difference(Keys({{2}, {1}, {0}})).none());
    diff::Difference const difference = a.difference(b);
    ASSERT_EQ(difference.removed.size(), 2u);
    EXPECT_EQ(difference.removed[0].className, "Index");
    EXPECT_EQ(difference.removed[1].className, "IndexMember");
    EXPECT_EQ(difference.added.size(), 0u);
    EXPECT_TRUE(difference.changed.empty());
}

TEST(GraphDiff, WhatIsAlikeInEverythingGoesBeforeWhatIsAlikeInItsLinks) {
    for (char const* comment : {"a", "b", "c", "d", "e", "f"}) {
        Keys a({});
        Keys b({});
        a.add({0})->setComment("same");
        a.add({0})->setComment("before");
        b.add({0})->setComment("same");
        b.add({0})->setComment(comment);
        diff::Difference const difference = a.difference(b);
        ASSERT_EQ(difference.changed.size(), 1u) << comment;
        EXPECT_EQ(difference.changed[0].attributes.at(0).from, "before");
        EXPECT_EQ(difference.changed[0].attributes.at(0).to, comment);
    }
}

TEST(GraphDiff, UnnamedObjectWithAnotherAttributeIsTheSame) {
    Keys const a({{0}, {1}, {2}});
    Keys b({{0}, {1}, {2}});
    for (QORObject* object : b.graph.objects()) {
        if (object->getElementType() == QORElementType::INDEX &&
            static_cast<QORIndex*>(object)->getIndexMember(0)->getAttribute() == b.columns[1]) {
            static_cast<QORIndex*>(object)->setUnique(true);
        }
    }
    diff::Difference const difference = a.difference(b);
    EXPECT_TRUE(difference.removed.empty() && difference.added.empty());
    ASSERT_EQ(difference.changed.size(), 1u);
    EXPECT_EQ(difference.changed[0].attributes.at(0).name, "unique");
}

TEST(GraphDiff, ManyUnnamedObjectsInAPackageAreNotMixedUp) {
    // As many associations as columns; the one in the middle goes, and a new one between others comes.
    struct Tables {
        explicit Tables(std::vector<std::pair<int, int>> const& associations) {
            graph.adopt(package);
            for (char const* name : {"a", "b", "c", "d"}) {
                classes.push_back(new QORClass);
                classes.back()->setName(name);
                graph.adopt(classes.back());
                package->addModelElement(classes.back());
            }
            for (auto const& [from, to] : associations) {
                auto* const association = new QORAssociation;
                graph.adopt(association);
                package->addModelElement(association);
                for (int const end : {from, to}) {
                    auto* const role = new QORAssociationRole;
                    graph.adopt(role);
                    association->addAssociationRole(role);
                    classes[static_cast<std::size_t>(end)]->addAssociationRole(role);
                }
            }
        }
        kit::Graph graph;
        QORDesignPackage* package = new QORDesignPackage;
        std::vector<QORClass*> classes;
    };
    Tables const a({{0, 1}, {1, 2}, {2, 3}});
    Tables const b({{2, 3}, {0, 1}, {3, 0}});
    diff::Difference const difference = diff::compare(*a.package, *b.package);
    EXPECT_EQ(difference.removed.size(), 3u) << "an association with two roles";
    EXPECT_EQ(difference.added.size(), 3u);
    for (diff::Change const& change : difference.changed) {
        EXPECT_EQ(change.className, "Class") << "the ends of those";
        EXPECT_TRUE(change.attributes.empty());
    }
}

TEST(GraphDiff, PositionThatFollowsFromOthersIsNoChange) {
    Keys a({});
    Keys b({});
    for (Keys* keys : {&a, &b}) {
        for (std::size_t i = 0; i < 3; ++i) {
            keys->columns[i]->setPosition(static_cast<short>(i + 1));
        }
    }
    auto* const first = new QORAttribute;
    b.graph.adopt(first);
    first->setName("first");
    first->setPosition(1);
    b.table->addFeature(first);
    for (std::size_t i = 0; i < 3; ++i) {
        b.columns[i]->setPosition(static_cast<short>(i + 2));
    }
    EXPECT_EQ(a.difference(b).added.size(), 1u);
    EXPECT_TRUE(a.difference(b).changed.empty());
    EXPECT_TRUE(b.difference(a).changed.empty());
    b.columns[2]->setPosition(9);
    ASSERT_EQ(a.difference(b).changed.size(), 1u);
    EXPECT_EQ(a.difference(b).changed[0].path, "c");
}

// ---- owners ---------------------------------------------------------------------------------------------

/// A class that two packages which own each other own, and that only a type of the model leads to.
struct Ring {
    Ring() {
        for (QORObject* object :
             std::initializer_list<QORObject*>{model, type, column, table, outer, inner}) {
            graph.adopt(object);
        }
        type->setName("type");
        column->setName("column");
        table->setName("table");
        outer->setName("outer");
        inner->setName("inner");
        model->addType(type);
        column->addType(type);
        table->addFeature(column);
        inner->addModelElement(table);
        outer->addChildPackage(inner);
        inner->addChildPackage(outer);
    }

    kit::Graph graph;
    QORModel* model = new QORModel;
    QORBaseType* type = new QORBaseType;
    QORAttribute* column = new QORAttribute;
    QORClass* table = new QORClass;
    QORDesignPackage* outer = new QORDesignPackage;
    QORDesignPackage* inner = new QORDesignPackage;
};

TEST(GraphDiff, RingOfOwnersIsCompared) {
    Ring const a;
    Ring const b;
    EXPECT_TRUE(diff::compare(*a.model, *b.model).none());
    b.column->setComment("new");
    diff::Difference const difference = diff::compare(*a.model, *b.model);
    EXPECT_TRUE(difference.added.empty());
    ASSERT_EQ(difference.changed.size(), 1u);
    EXPECT_EQ(difference.changed[0].attributes.at(0).to, "new");
}

TEST(GraphDiff, SecondOwnerCounts) {
    struct Table {
        Table() {
            for (QORObject* object : std::initializer_list<QORObject*>{table, operation, argument}) {
                graph.adopt(object);
            }
            operation->setName("operation");
            argument->setName("argument");
            table->addOperation(operation);
            table->addArgument(argument);
        }
        kit::Graph graph;
        QORClass* table = new QORClass;
        QOROperation* operation = new QOROperation;
        QORArgument* argument = new QORArgument;
    };
    Table const a;
    Table const b;
    EXPECT_TRUE(diff::compare(*a.table, *b.table).none());
    b.operation->addArgument(b.argument);
    EXPECT_FALSE(diff::compare(*a.table, *b.table).none());
    EXPECT_FALSE(diff::compare(*b.table, *a.table).none());
}

TEST(GraphDiff, IdThatSeveralObjectsHaveTellsNothing) {
    Shop a;
    Shop b;
    for (Shop* shop : {&a, &b}) {
        shop->customer->setID(7);
        shop->invoice->setID(7);
    }
    b.customer->setName("x");
    b.invoice->setName("y");
    EXPECT_TRUE(diff::compare(*a.model, *b.model).renamed.empty());
    EXPECT_EQ(diff::compare(*a.model, *b.model).added.size(), 3u);
}

TEST(GraphDiff, RenameThatNothingAnswersToIsAnError) {
    Shop a;
    Shop b;
    EXPECT_THROW(textOf(a, b, {{"sales/nobody", "sales/customer"}}), kit::ToolError);
    EXPECT_THROW(textOf(a, b, {{"sales/customer", "sales/nobody"}}), kit::ToolError);
    EXPECT_THROW(textOf(a, b, {{"sales/customer", "text"}}), kit::ToolError);
    EXPECT_THROW(textOf(a, b, {{"customer", "customer"}, {"customer", "invoice"}}), kit::ToolError);
    EXPECT_THROW(textOf(a, b, {{"/", "/"}}), kit::ToolError);
}

TEST(GraphDiff, JsonTellsTheSameAsTheText) {
    Shop a;
    Shop b;
    b.invoice->setName("bi/ll");
    b.mail->setComment("\xe9");
    std::ostringstream out;
    diff::printJson(diff::compare(*a.model, *b.model), out);
    auto const json = nlohmann::json::parse(out.str());
    EXPECT_EQ(json["same"], false);
    EXPECT_EQ(json["roots"]["to"], "shop");
    EXPECT_EQ(json["removed"][0]["path"], "sales/invoice");
    EXPECT_EQ(json["added"][0]["path"], "sales/bi\\/ll");
    EXPECT_EQ(json["changed"][0]["attributes"][0]["to"]["hex"], "e9");
    std::ostringstream same;
    diff::printJson(diff::compare(*a.model, *a.model), same);
    EXPECT_EQ(nlohmann::json::parse(same.str())["same"], true);
}

} // namespace
