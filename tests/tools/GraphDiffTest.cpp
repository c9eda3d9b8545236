#include "diff/GraphDiff.h"

#include "kit/Graph.h"
#include "kit/ToolError.h"

#include <qor/QORAttribute.h>
#include <qor/QORBaseType.h>
#include <qor/QORClass.h>
#include <qor/QORDesignPackage.h>
#include <qor/QORGeneralization.h>
#include <qor/QORModel.h>
#include <qor/QORNote.h>

#include <gmock/gmock.h>
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
    diff::printText(diff::compare(*a.model, *b.model, renames), out);
    return out.str();
}

TEST(GraphDiff, EqualGraphsHaveNoDifference) {
    Shop a;
    Shop b;
    EXPECT_TRUE(diff::compare(*a.model, *b.model, {}).none());
    EXPECT_EQ(textOf(a, b), "");
}

TEST(GraphDiff, ObjectsComeAndGoWithWhatTheyOwn) {
    Shop a;
    Shop b;
    auto* note = b.named(new QORNote, "");
    auto* order = b.named(new QORClass, "order");
    b.sales->addModelElement(order);
    order->addNote(note);
    EXPECT_EQ(textOf(a, b), "added   Class sales/order\nadded   Note sales/order/Note:\n");
    EXPECT_EQ(textOf(b, a), "removed Class sales/order\nremoved Note sales/order/Note:\n");
}

TEST(GraphDiff, AttributesAreToldOneByOne) {
    Shop a;
    Shop b;
    b.mail->setComment("\"new\"");
    b.mail->setOptional(true);
    b.model->setName("store");
    EXPECT_EQ(textOf(a, b), "changed Model /\n    name: \"shop\" -> \"store\"\n"
                            "changed Attribute sales/customer/mail\n"
                            "    comment: \"\" -> \"\\\"new\\\"\"\n    optional: \"false\" -> \"true\"\n");
}

TEST(GraphDiff, LinksAreToldOneByOne) {
    Shop a;
    Shop b;
    b.mail->removeType(b.text);
    b.mail->addType(b.number);
    EXPECT_EQ(textOf(a, b), "changed Attribute sales/customer/mail\n"
                            "    type: without text\n    type: with number\n");
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
    EXPECT_EQ(textOf(a, b),
              "changed Class sales/customer\n    supertypeOfGeneralization: in another order\n");
}

TEST(GraphDiff, NewNameIsNoRenameUnlessSomethingTellsSo) {
    Shop a;
    Shop b;
    b.customer->setName("client");
    EXPECT_EQ(textOf(a, b), "removed Class sales/customer\nremoved Attribute sales/customer/mail\n"
                            "added   Class sales/client\nadded   Attribute sales/client/mail\n");
    EXPECT_EQ(textOf(a, b, {{"sales/customer", "sales/client"}}),
              "renamed Class sales/customer -> sales/client\n");
}

TEST(GraphDiff, IdTellsARenameAndAMove) {
    Shop a;
    Shop b;
    a.customer->setID(7);
    b.customer->setID(7);
    b.customer->setName("client");
    EXPECT_EQ(textOf(a, b), "renamed Class sales/customer -> sales/client\n");
    a.mail->setID(8);
    b.mail->setID(8);
    b.customer->removeFeature(b.mail);
    b.invoice->addFeature(b.mail);
    EXPECT_EQ(textOf(a, b), "renamed Class sales/customer -> sales/client\n"
                            "moved   Attribute sales/customer/mail -> sales/invoice/mail\n");
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
    EXPECT_TRUE(diff::compare(*a.model, *b.model, {}).renamed.empty());
    EXPECT_EQ(diff::compare(*a.model, *b.model, {}).added.size(), 3u);
}

TEST(GraphDiff, RenameThatNothingAnswersToIsAnError) {
    Shop a;
    Shop b;
    EXPECT_THROW(textOf(a, b, {{"sales/nobody", "sales/customer"}}), kit::ToolError);
    EXPECT_THROW(textOf(a, b, {{"sales/customer", "sales/nobody"}}), kit::ToolError);
    EXPECT_THROW(textOf(a, b, {{"sales/customer", "text"}}), kit::ToolError);
    EXPECT_THROW(textOf(a, b, {{"/", "/"}}), kit::ToolError);
}

TEST(GraphDiff, JsonTellsTheSameAsTheText) {
    Shop a;
    Shop b;
    b.invoice->setName("bi/ll");
    b.mail->setComment("\xe9");
    std::ostringstream out;
    diff::printJson(diff::compare(*a.model, *b.model, {}), out);
    auto const json = nlohmann::json::parse(out.str());
    EXPECT_EQ(json["same"], false);
    EXPECT_EQ(json["removed"][0]["path"], "sales/invoice");
    EXPECT_EQ(json["added"][0]["path"], "sales/bi\\/ll");
    EXPECT_EQ(json["changed"][0]["attributes"][0]["to"]["hex"], "e9");
    std::ostringstream same;
    diff::printJson(diff::compare(*a.model, *a.model, {}), same);
    EXPECT_EQ(nlohmann::json::parse(same.str())["same"], true);
}

} // namespace
