#include "EveryKind.h"
#include "exchange/JsonReader.h"
#include "exchange/JsonWriter.h"
#include "kit/Numbering.h"
#include "kit/Reflection.h"
#include "kit/ToolError.h"
#include "kit/Verify.h"

#include <qor/QORClass.h>
#include <qor/QORDesignPackage.h>
#include <qor/QORGeneralization.h>
#include <qor/QORModel.h>
#include <qor/QORNote.h>
#include <qor/QOROperation.h>
#include <qor/QORPropertyElementTypeScope.h>
#include <qor/QORPropertyType.h>
#include <qor/QORPropertyValue.h>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <random>
#include <regex>
#include <sstream>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

std::string jsonOf(QORObject& root) {
    std::ostringstream out;
    exchange::writeJson(root, out);
    return out.str();
}

kit::Graph graphOf(std::string const& json) {
    std::istringstream in(json);
    return exchange::readJson(in, "x.json");
}

std::string problemOf(std::string const& json) {
    try {
        graphOf(json);
    } catch (kit::ToolError const& error) {
        return error.what();
    }
    return "";
}

/// The same with the line alone.
std::string problemInLine(std::string const& json) {
    return std::regex_replace(problemOf(json), std::regex(", column [0-9]+:"), ":");
}

/// A file with the lines given as objects, from line 5 on, and as links.
std::string fileOf(std::string const& objects, std::string const& links = "") {
    return "{\n\"format\": \"qor-graph\",\n\"version\": 1,\n\"objects\": [\n" + objects +
           "\n],\n\"links\": [\n" + links + "\n]\n}\n";
}

void replace(std::string& text, std::string const& what, std::string const& with) {
    std::size_t const place = text.find(what);
    ASSERT_NE(place, std::string::npos);
    text.replace(place, what.size(), with);
}

// ---- round trips -------------------------------------------------------------------------------------

/// Expects the objects of two graphs with one number to agree in everything.
void expectEqual(QORObject& root, QORObject& otherRoot) {
    kit::Numbering const ours(root);
    kit::Numbering const theirs(otherRoot);
    ASSERT_EQ(ours.objects().size(), theirs.objects().size());
    for (std::size_t i = 0; i < ours.objects().size(); ++i) {
        QORObject& our = *ours.objects()[i];
        QORObject& their = *theirs.objects()[i];
        ASSERT_EQ(our.getMetaClass(), their.getMetaClass());
        EXPECT_EQ(our.getID(), their.getID());
        for (QORMetaAttribute const* attribute : kit::attributesOf(our)) {
            EXPECT_STREQ(attribute->getValue(&our).chars, attribute->getValue(&their).chars)
                << attribute->getName().chars;
        }
        for (QORMetaLink const* link : kit::linksOf(our)) {
            std::vector<std::size_t> ourFar;
            std::vector<std::size_t> theirFar;
            for (QORObject const* far : ours.elements(our, *link)) {
                ourFar.push_back(ours.numberOf(*far));
            }
            for (QORObject const* far : theirs.elements(their, *link)) {
                theirFar.push_back(theirs.numberOf(*far));
            }
            EXPECT_EQ(ourFar, theirFar) << link->getName().chars;
        }
    }
}

std::size_t nearEndCount() {
    std::set<QORAssociationType> ends;
    for (QORMetaClass const* metaClass : concreteClasses()) {
        for (QORMetaLink const* link : kit::recordsOf<QORMetaLink>(metaClass->getMetaLinks())) {
            if (kit::isNearEnd(*link)) {
                ends.insert(link->getId());
            }
        }
    }
    return ends.size();
}

TEST(JsonExchange, GraphWithEveryClassAttributeAndLinkComesBackEqual) {
    EveryKind const every;
    QORObject& root = every.graph.root();
    ASSERT_EQ(every.linked.size(), nearEndCount());
    ASSERT_EQ(kit::Numbering(root).objects().size(), every.graph.objects().size());
    ASSERT_THAT(kit::verify(root), IsEmpty());

    std::string const json = jsonOf(root);
    kit::Graph const read = graphOf(json);
    EXPECT_EQ(read.objects().size(), every.graph.objects().size());
    EXPECT_THAT(kit::verify(read.root()), IsEmpty());
    expectEqual(root, read.root());
    EXPECT_TRUE(jsonOf(read.root()) == json);
}

TEST(JsonExchange, EveryAttributeThatCanBeSetIsOneThatTheTestSets) {
    EveryKind const every;
    std::set<std::string> unchanged;
    for (QORMetaClass const* metaClass : concreteClasses()) {
        for (QORMetaAttribute const* attribute :
             kit::recordsOf<QORMetaAttribute>(metaClass->getMetaAttributes())) {
            if (!every.changed.count(attribute->getId())) {
                unchanged.insert(attribute->getName().chars);
            }
        }
    }
    EXPECT_THAT(unchanged, ElementsAre());
}

// ---- what is written ---------------------------------------------------------------------------------

std::vector<QORObject*> elements(QORObject& object, char const* role) {
    return kit::elementsOf(object, *object.getMetaClass()->getMetaLinkByRoleName(role));
}

template <class Class>
Class* made(kit::Graph& graph, char const* name = "") {
    auto* object = new Class;
    graph.adopt(object);
    if (*name) {
        object->setName(name);
    }
    return object;
}

TEST(JsonExchange, OnlyWhatDiffersFromANewObjectIsWritten) {
    QORModel model;
    EXPECT_EQ(jsonOf(model), "{\n\"format\": \"qor-graph\",\n\"version\": 1,\n\"objects\": [\n"
                             "{\"number\": 1, \"class\": \"Model\"}\n],\n\"links\": []\n}\n");
    QORClass table; // whose multiplicity starts with "0", while its record says otherwise
    EXPECT_THAT(jsonOf(table), Not(HasSubstr("attributes")));
    table.setCppMultiplicity("MUL_UNSPECIFIED");
    EXPECT_THAT(jsonOf(table), HasSubstr("\"attributes\": {\"cppMultiplicity\": \"MUL_UNSPECIFIED\"}}"));
}

TEST(JsonExchange, LinksAreWrittenOnceFromTheOwnersOrReferringEnd) {
    kit::Graph graph;
    auto* model = made<QORModel>(graph, "m");
    for (char const* name : {"b", "a"}) {
        model->addChildPackage(made<QORDesignPackage>(graph, name));
    }
    EXPECT_THAT(jsonOf(*model),
                HasSubstr("\"links\": [\n{\"from\": 1, \"role\": \"childPackage\", \"to\": [2, 3]}\n]"));
}

TEST(JsonExchange, BothEndsOfALinkKeepTheirOrder) {
    kit::Graph graph;
    std::vector<QORClass*> classes;
    std::vector<QORGeneralization*> generalizations;
    for (int i = 0; i < 4; ++i) {
        std::string const number = std::to_string(i);
        classes.push_back(made<QORClass>(graph, ("c" + number).c_str()));
        generalizations.push_back(made<QORGeneralization>(graph, ("g" + number).c_str()));
    }
    // An order that is neither that of the one side nor that of the other.
    for (auto const& [c, g] : std::vector<std::pair<std::size_t, std::size_t>>{
             {2, 1}, {0, 3}, {2, 0}, {3, 1}, {0, 1}, {1, 2}, {1, 3}, {2, 3}}) {
        ASSERT_TRUE(classes[c]->addSupertypeOfGeneralization(generalizations[g]));
    }
    kit::Graph const read = graphOf(jsonOf(*classes[2]));
    expectEqual(*classes[2], read.root());
    std::vector<std::string> names;
    for (QORObject const* generalization : elements(read.root(), "supertypeOfGeneralization")) {
        names.emplace_back(generalization->getName().chars);
    }
    EXPECT_THAT(names, ElementsAre("g1", "g0", "g3"));
    names.clear();
    QORObject& g1 = *elements(read.root(), "supertypeOfGeneralization")[0];
    for (QORObject const* table : elements(g1, "supertypeClass")) {
        names.emplace_back(table->getName().chars);
    }
    EXPECT_THAT(names, ElementsAre("c2", "c3", "c0"));
}

TEST(JsonExchange, TextThatIsNotUtf8KeepsItsBytes) {
    for (char const* text : {"\xe9", "a\xc3", "\xed\xa0\x80", "\xc0\x80", "\xf4\x90\x80\x80", "\xff\"\\"}) {
        QORModel model;
        model.setName(text);
        EXPECT_THAT(jsonOf(model), HasSubstr("\"name\": {\"hex\": \""));
        EXPECT_STREQ(graphOf(jsonOf(model)).root().getName().chars, text);
    }
    for (char const* text : {"\xc3\xa9", "\xed\x9f\xbf", "\xf4\x8f\xbf\xbf", "\x7f\x01\n\t\"\\/"}) {
        QORModel model;
        model.setName(text);
        EXPECT_THAT(jsonOf(model), Not(HasSubstr("hex")));
        EXPECT_STREQ(graphOf(jsonOf(model)).root().getName().chars, text);
    }
}

TEST(JsonExchange, NameThatComesFromTheTypeIsNotWritten) {
    kit::Graph graph;
    auto* table = made<QORClass>(graph, "t");
    auto* type = made<QORPropertyType>(graph, "color");
    auto* value = made<QORPropertyValue>(graph);
    value->setValue("red");
    value->addPropertyType(type);
    table->addPropertyValue(value);
    std::string const json = jsonOf(*table);
    EXPECT_THAT(json, HasSubstr("\"class\": \"PropertyValue\", \"attributes\": {\"value\": \"red\"}}"));
    kit::Graph const read = graphOf(json);
    EXPECT_STREQ(elements(read.root(), "propertyValue")[0]->getName().chars, "color");
}

TEST(JsonExchange, NameThatWasChangedAfterTheAttributeItFollowsStays) {
    for (char const* name : {"", "other", "CLASS"}) {
        QORPropertyElementTypeScope scope;
        scope.setScope(QORElementType::CLASS);
        scope.setName(name);
        kit::Graph const read = graphOf(jsonOf(scope));
        expectEqual(scope, read.root());
    }
}

/// Classes and generalizations without names, which differ in their links with each other alone.
std::string jsonOfTwins(unsigned seed) {
    kit::Graph graph;
    auto* model = made<QORModel>(graph);
    auto* package = made<QORDesignPackage>(graph);
    model->addChildPackage(package);
    constexpr std::size_t count = 12;
    std::vector<QORGeneralization*> generalizations;
    std::vector<QORClass*> classes;
    for (std::size_t i = 0; i < count; ++i) {
        generalizations.push_back(made<QORGeneralization>(graph));
        classes.push_back(made<QORClass>(graph));
    }
    // Which ones belong together is a matter of the seed, and so of their addresses.
    for (std::size_t i = 0; i < count; ++i) {
        QORGeneralization* const generalization = generalizations[(i * 5 + seed) % count];
        package->addModelElement(generalization);
        QORClass* const table = classes[(i * 7 + seed * 3) % count];
        generalization->addSupertypeClass(table);
        generalization->addSubtypeClass(classes[((i + 1) % count * 7 + seed * 3) % count]);
    }
    return jsonOf(*model);
}

TEST(JsonExchange, TextDoesNotDependOnWhereTheObjectsLie) {
    std::string const first = jsonOfTwins(0);
    EXPECT_THAT(first, HasSubstr("\"number\": 26"));
    for (unsigned seed = 1; seed < 12; ++seed) {
        EXPECT_TRUE(jsonOfTwins(seed) == first) << seed;
    }
}

TEST(JsonExchange, DeepGraphNeedsNoDeepStack) {
    kit::Graph graph;
    auto* package = made<QORDesignPackage>(graph);
    for (int i = 0; i < 20000; ++i) {
        auto* inner = made<QORDesignPackage>(graph);
        ASSERT_TRUE(package->addChildPackage(inner));
        package = inner;
    }
    std::string const json = jsonOf(graph.root());
    EXPECT_TRUE(jsonOf(graphOf(json).root()) == json);
}

// ---- what is refused ---------------------------------------------------------------------------------

TEST(JsonExchange, CutOffFileIsRefusedWhereverItEnds) {
    kit::Graph graph;
    auto* model = made<QORModel>(graph, "m");
    model->addChildPackage(made<QORDesignPackage>(graph, "\xe9"));
    std::string const json = jsonOf(*model);
    std::size_t const end = json.size() - 1; // the line break behind the last brace
    ASSERT_EQ(problemOf(json.substr(0, end)), "");
    for (std::size_t size = 0; size < end; ++size) {
        EXPECT_THAT(problemOf(json.substr(0, size)), StartsWith("x.json: line ")) << size;
    }
    EXPECT_EQ(problemOf(json.substr(0, 100)),
              "x.json: line 5, column 48: the text is truncated, in object 1");
}

TEST(JsonExchange, MistakesAreNamedWithTheirLine) {
    struct Case {
        char const* objects;
        char const* links;
        char const* problem;
    };
    char const* const two =
        "{\"number\": 1, \"class\": \"Model\"},\n{\"number\": 2, \"class\": \"DesignPackage\"}";
    Case const cases[] = {
        {"{\"number\": 1, \"class\": \"Modell\"}", "", "line 5: \"Modell\" isn't a class"},
        {"{\"number\": 1, \"class\": \"Element\"}", "", "line 5: \"Element\" is a class without instances"},
        {"{\"number\": 1, \"class\": \"Object\"}", "", "line 5: \"Object\" is a class without instances"},
        {"\n{\"number\": 1, \"class\": \"Model\",\n\"attributes\": {\n\"color\": 1}}", "",
         "line 8: Model has no attribute \"color\""},
        {"{\"number\": 1, \"class\": \"Model\", \"attributes\": {\"name\": \"a\", \"name\": \"b\"}}", "",
         "line 5: the attribute \"name\" is repeated"},
        {"{\"number\": 1, \"class\": \"Model\", \"attributes\": {\"name\": 1}}", "",
         "line 5: \"name\" takes a text"},
        {"{\"number\": 1, \"class\": \"Model\", \"attributes\": {\"name\": null}}", "", "line 5: null"},
        {"{\"number\": 1, \"class\": \"Model\", \"attributes\": {\"name\": \"a\\u0000b\"}}", "",
         "line 5: the text of \"name\" holds a NUL"},
        {"{\"number\": 1, \"class\": \"Model\", \"attributes\": {\"name\": {\"hex\": \"4\"}}}", "",
         "line 5: \"hex\" must be"},
        {"{\"number\": 1, \"class\": \"Model\", \"attributes\": {\"name\": {\"hex\": \"4G\"}}}", "",
         "line 5: \"hex\" must be"},
        {"{\"number\": 1, \"class\": \"Model\", \"attributes\": {\"name\": {}}}", "",
         "line 5: \"hex\" is missing"},
        {"{\"number\": 1, \"class\": \"Class\", \"attributes\": {\"cppAbstract\": \"true\"}}", "",
         "line 5: \"cppAbstract\" takes true or false"},
        {"{\"number\": 1, \"class\": \"Class\", \"attributes\": {\"cppSpace\": 1.5}}", "",
         "line 5: 1.5 isn't a whole number"},
        {"{\"number\": 1, \"class\": \"Class\", \"attributes\": {\"cppSpace\": 99999999999}}", "",
         "line 5: Class doesn't take \"99999999999\" as \"cppSpace\""},
        {"{\"number\": 1, \"class\": \"Attribute\", \"attributes\": {\"position\": 40000}}", "",
         "line 5: Attribute doesn't take \"40000\" as \"position\""},
        {"{\"number\": 1, \"class\": \"Class\", \"attributes\": {\n\"cppClassType\": \"entity\"\n\n}}", "",
         "line 6: Class doesn't take \"entity\" as \"cppClassType\""},
        {"{\"number\": 1, \"class\": \"PropertyElementTypeScope\", \"attributes\": {\"scope\": \"NOTHING\"}}",
         "", "line 5: PropertyElementTypeScope doesn't take \"NOTHING\" as \"scope\""},
        {"{\"number\": 1, \"class\": \"ModelFormat\", \"attributes\": {\"formatType\": \"text/plain\"}}", "",
         "line 5: ModelFormat doesn't take \"text/plain\" as \"formatType\""},
        {"{\"number\": 1, \"class\": \"PropertyValue\", \"attributes\": {\"name\": \"x\"}}", "",
         "line 5: PropertyValue doesn't take \"x\" as \"name\""},
        {"{\"number\": 1, \"class\": \"Version\", \"attributes\": {\"startDate\": \"25:00:00 2001-01-01\"}}",
         "", "line 5: "},
        {"{\"number\": 1, \"class\": \"Model\"},\n{\"number\": 1, \"class\": \"Model\"}", "",
         "line 6: the number 1 is used twice"},
        {"{\"number\": 0, \"class\": \"Model\"}", "", "line 5: expected the number of an object"},
        {"{\"number\": -1, \"class\": \"Model\"}", "", "line 5: expected the number of an object"},
        {"{\"number\": 1}", "", "line 5: \"class\" is missing"},
        {"{\"number\": 1, \"class\": \"Model\", \"colour\": 1}", "", "line 5: \"colour\" isn't a key here"},
        {"{\"number\": 1, \"class\": \"Model\", \"attributes\": {}, \"attributes\": {}}", "",
         "line 5: \"attributes\" is repeated"},
        {"[1]", "", "line 5: [ isn't allowed here"},
        {"", "", "the graph has no object"},
        {two, "{\"from\": 1, \"role\": \"childPackage\", \"to\": [3]}", "line 9: no object has the number 3"},
        {two, "\n{\"from\": 3, \"role\": \"childPackage\", \"to\": [2]}",
         "line 10: no object has the number 3"},
        {two, "{\"from\": 1, \"role\": \"color\", \"to\": [2]}", "line 9: Model has no role \"color\""},
        {two, "{\"from\": 2, \"role\": \"parentPackage\", \"to\": [1]}",
         "line 9: the role \"parentPackage\" of DesignPackage must be at its other end"},
        {two, "{\"from\": 1, \"role\": \"type\", \"to\": [2]}",
         "line 9: the role \"type\" of Model accepts no DesignPackage"},
        {two, "{\"from\": 1, \"role\": \"childPackage\", \"to\": [1]}",
         "line 9: an object is linked with itself as \"childPackage\""},
        {two, "{\"from\": 1, \"role\": \"childPackage\", \"to\": [2,\n2]}",
         "line 10: the link \"childPackage\" to the object 2 is refused: an end is already linked"},
        {"{\"number\": 1, \"class\": \"Model\"},\n{\"number\": 2, \"class\": \"Model\"},\n{\"number\": 3, "
         "\"class\": \"Model\"}",
         "{\"from\": 1, \"role\": \"childPackage\", \"to\": [2, 3]}",
         "line 10: the link \"childPackage\" to the object 3 is refused"},
        {"{\"number\": 1, \"class\": \"Generalization\"},\n{\"number\": 2, \"class\": \"Class\"}",
         "{\"from\": 2, \"role\": \"supertypeOfGeneralization\", \"to\": [1, 1]}",
         "line 9: the link \"supertypeOfGeneralization\" to the object 1 is refused"},
        {two, "{\"from\": 1, \"role\": \"childPackage\"}", "line 9: \"to\" is missing"},
        {two, "{\"from\": 1, \"to\": [2]}", "line 9: \"role\" is missing"},
        {two, "{\"from\": 1, \"role\": \"childPackage\", \"to\": [[2]]}", "line 9: [ isn't allowed here"},
    };
    for (Case const& each : cases) {
        EXPECT_THAT(problemInLine(fileOf(each.objects, each.links)), HasSubstr(each.problem))
            << each.objects << each.links;
    }
}

TEST(JsonExchange, ObjectNumbersHaveUpTo18Digits) {
    EXPECT_EQ(problemOf(fileOf("{\"number\": 999999999999999999, \"class\": \"Model\"}")), "");
    EXPECT_THAT(problemOf(fileOf("{\"number\": 1000000000000000000, \"class\": \"Model\"}")),
                HasSubstr("a whole number of at least 1"));
}

TEST(JsonExchange, WhatIsNotTheFormatIsRefused) {
    std::string const good = fileOf("{\"number\": 1, \"class\": \"Model\"}");
    ASSERT_EQ(problemOf(good), "");
    struct Change {
        char const* from;
        char const* to;
        char const* problem;
    };
    Change const changes[] = {
        {"qor-graph", "qor", "line 2: \"format\" must be"},
        {"\"version\": 1", "\"version\": 2", "line 3: \"version\" isn't supported"},
        {"\"version\": 1", "\"version\": \"1\"", "line 3: \"version\""},
        {"\"version\": 1,\n", "", "\"version\" is missing"},
        {",\n\"links\": [\n\n]", "", "\"links\" is missing"},
        {"]\n}\n", "],\n\"more\": 1}\n", "\"more\" isn't a key here"},
        {"]\n}\n", "]\n}\n{}", "there is text after the graph"},
        {"\"Model\"", "\"Mod\xff\"", "line 5: this isn't JSON"},
        {"\"Model\"", "'Model'", "line 5: this isn't JSON"},
        {"{\n", "[\n", "line 1: [ isn't allowed here"},
    };
    for (Change const& change : changes) {
        std::string json = good;
        replace(json, change.from, change.to);
        EXPECT_THAT(problemInLine(json), HasSubstr(change.problem)) << change.to;
    }
    EXPECT_THAT(problemInLine("1"), HasSubstr("line 1: 1 isn't allowed here"));
    EXPECT_THAT(problemInLine(std::string(1000000, '[')), HasSubstr("line 1: [ isn't allowed here"));
    EXPECT_THAT(problemInLine(fileOf(std::string(1000000, '['))), HasSubstr("line 5: [ isn't allowed here"));
}

TEST(JsonExchange, MistakeIsNamedWithItsPlaceInALongLineAndItsObject) {
    std::string const objects =
        "{\"format\":\"qor-graph\",\"version\":1,\"objects\":[{\"number\":7,\"class\":"
        "\"Model\",\"attributes\":{\"name\":\"\xc3\xa4\"}},";
    std::string const links = objects + "{\"number\":8,\"class\":\"DesignPackage\"}],\"links\":[";
    auto const expectAt = [](std::string const& before, std::string const& at, std::string const& problem) {
        std::size_t const column = before.size(); // whose one character of two bytes makes up for the next
        EXPECT_EQ(problemOf(before + at),
                  "x.json: line 1, column " + std::to_string(column) + ": " + problem);
    };
    expectAt(objects + "{\"number\":8,\"class\":", "\"Klass\"}", "\"Klass\" isn't a class, in object 8");
    expectAt(objects, "{\"number\":8}", "\"class\" is missing, in object 8");
    expectAt(objects, "{\"class\":\"Model\"}", "\"number\" is missing");
    expectAt(objects + "{\"number\":", "0}",
             "expected the number of an object, a whole number of at least 1");
    expectAt(objects + "{\"number\":8,", "\"x\":1}", "\"x\" isn't a key here, in object 8");
    expectAt(objects, "{\"number\":7,\"class\":\"Model\"}", "the number 7 is used twice, in object 7");
    expectAt(objects + "{\"number\":8,\"class\":\"Model\",\"attributes\":{\"name\":", "null",
             "null isn't allowed here, in object 8");
    expectAt(objects + "{\"number\":8,\"class\":\"Model\",\"attributes\":{", "\"color\":1}}",
             "Model has no attribute \"color\", in object 8");
    expectAt(objects + "{\"number\":8,\"class\":\"Attribute\",\"attributes\":{", "\"position\":40000}}",
             "Attribute doesn't take \"40000\" as \"position\", in object 8");
    expectAt(links, "{\"from\":7,\"to\":[8]}", "\"role\" is missing, in the links of object 7");
    expectAt(links + "{\"from\":7,\"role\":\"childPackage\",\"to\":[8,", "9]}",
             "no object has the number 9, in the links of object 7");
    expectAt(links + "{\"from\":7,\"role\":", "\"child\",\"to\":[8]}",
             "Model has no role \"child\", in the links of object 7");
    expectAt(links + "{\"from\":", "6,\"role\":\"x\",\"to\":[]}",
             "no object has the number 6, in the links of object 6");
    expectAt(objects, "{\"number\":8,\"class\":\"Model\"}],\"links\":[]}",
             "no links lead from the first object to the object 8");
}

// ---- the order of keys has no meaning ----------------------------------------------------------------

/// The same document with the keys of all its objects in another order.
void writeShuffled(nlohmann::ordered_json const& json, std::mt19937& random, std::string& text) {
    if (!json.is_structured()) {
        text += json.dump();
        return;
    }
    std::vector<nlohmann::ordered_json::const_iterator> parts;
    for (auto each = json.begin(); each != json.end(); ++each) {
        parts.push_back(each);
    }
    if (json.is_object()) {
        std::shuffle(parts.begin(), parts.end(), random);
    }
    char const* separator = json.is_object() ? "{" : "[";
    for (auto const& part : parts) {
        text += separator + (json.is_object() ? "\"" + part.key() + "\":" : std::string());
        writeShuffled(*part, random, text);
        separator = ",";
    }
    text += parts.empty() ? (json.is_object() ? "{}" : "[]") : (json.is_object() ? "}" : "]");
}

TEST(JsonExchange, KeysMayStandInAnyOrder) {
    EveryKind const every;
    std::string const json = jsonOf(every.graph.root());
    std::string const sorted = nlohmann::json::parse(json).dump();
    ASSERT_LT(sorted.find("\"links\""), sorted.find("\"objects\""));
    EXPECT_TRUE(jsonOf(graphOf(sorted).root()) == json);
    auto const document = nlohmann::ordered_json::parse(json);
    std::mt19937 random(5);
    for (int i = 0; i < 20; ++i) {
        std::string shuffled;
        writeShuffled(document, random, shuffled);
        EXPECT_TRUE(jsonOf(graphOf(shuffled).root()) == json) << i;
    }
}

TEST(JsonExchange, MistakesInLinksThatComeFirstAreNamedWithTheirPlace) {
    std::string const start = "{\"links\":[{\"role\":\"childPackage\",\"to\":[2,";
    EXPECT_EQ(problemOf(start + "3],\"from\":1}],\"objects\":[{\"class\":\"Model\",\"number\":1},"
                                "{\"class\":\"DesignPackage\",\"number\":2}],\"format\":\"qor-graph\"}"),
              "x.json: line 1, column " + std::to_string(start.size() + 1) +
                  ": no object has the number 3, in the links of object 1");
    EXPECT_THAT(problemOf("{\"links\":[],\"format\":\"qor-graph\",\"version\":1}"),
                HasSubstr("\"objects\" is missing"));
    EXPECT_THAT(problemOf("{\"objects\":[{\"class\":\"Model\",\"number\":1}],\"links\":[],\"version\":1,"
                          "\"format\":\"qor\"}"),
                HasSubstr("\"format\" must be"));
}

TEST(JsonExchange, MissingFileAndFolderAreRefused) {
    TemporaryFolder const folder;
    EXPECT_THROW(exchange::readJsonFile(folder.file("none.json")), kit::ToolError);
    EXPECT_THROW(exchange::readJsonFile(folder.path.string()), kit::ToolError);
}

} // namespace
