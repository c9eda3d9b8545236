#include "EveryKind.h"
#include "exchange/JsonReader.h"
#include "exchange/JsonWriter.h"
#include "kit/GraphOrder.h"
#include "kit/Numbering.h"
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

} // namespace
