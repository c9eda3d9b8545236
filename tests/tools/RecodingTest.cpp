#include "exchange/Recoding.h"

#include "EveryKind.h"
#include "exchange/JsonWriter.h"
#include "kit/Verify.h"

#include <qor/QORArgument.h>
#include <qor/QORAssociation.h>
#include <qor/QORAssociationRole.h>
#include <qor/QORClass.h>
#include <qor/QORDesignPackage.h>
#include <qor/QOREncodingConverter.h>
#include <qor/QORModel.h>
#include <qor/QOROperation.h>

#include <gmock/gmock.h>
#include <memory>
#include <sstream>

namespace {

using exchange::Recoded;
using testing::ElementsAre;
using testing::IsEmpty;

std::unique_ptr<QOREncodingConverter> converter(char const* name) {
    return std::unique_ptr<QOREncodingConverter>(QOREncodingConverter::create(name));
}

Recoded recoded(QORObject& root, char const* from = "ISO-8859-1", char const* to = "UTF-8") {
    return exchange::recode(root, *converter(from), *converter(to));
}

std::string jsonOf(QORObject& root) {
    std::ostringstream out;
    exchange::writeJson(root, out);
    return out.str();
}

template <class Class>
Class* named(kit::Graph& graph, char const* name) {
    auto* const object = new Class;
    object->setName(name);
    graph.adopt(object);
    return object;
}

bool hasElement(QORDesignPackage& package, char const* name) {
    for (int i = 0; i < package.getModelElementCount(); ++i) {
        if (package.getModelElement(i)->getName() == name) {
            return true;
        }
    }
    return false;
}

TEST(Recoding, EachTextIsConvertedAndCountedOnce) {
    kit::Graph graph;
    auto* const model = named<QORModel>(graph, "plain");
    model->setComment("\xe9");
    Recoded const result = recoded(*model);
    EXPECT_EQ(result.converted, 1u);
    EXPECT_EQ(result.unchanged, 1u);
    EXPECT_EQ(result.failed, 0u);
    EXPECT_STREQ(static_cast<QORModel&>(result.graph.root()).getComment().chars, "\xc3\xa9");
    EXPECT_STREQ(model->getComment().chars, "\xe9") << "the source stays";
}

TEST(Recoding, ObjectWithTwoOwnersIsConvertedOnce) {
    kit::Graph graph;
    auto* const table = named<QORClass>(graph, "table");
    auto* const operation = named<QOROperation>(graph, "operation");
    auto* const argument = named<QORArgument>(graph, "\xe9");
    table->addOperation(operation);
    table->addArgument(argument);
    operation->addArgument(argument);
    Recoded const result = recoded(*table);
    EXPECT_EQ(result.converted, 1u);
    ASSERT_EQ(result.graph.objects().size(), 3u);
    auto& other = static_cast<QORClass&>(result.graph.root());
    QORObject const* const argumentOfTable =
        other.getMetaClass()->getMetaLinkByRoleName("argument")->getLink(&other, 0);
    ASSERT_NE(argumentOfTable, nullptr);
    EXPECT_STREQ(argumentOfTable->getName().chars, "\xc3\xa9");
    EXPECT_EQ(argumentOfTable->getParentCount(), 2);
}

TEST(Recoding, RingOfOwnersIsConverted) {
    kit::Graph graph;
    auto* const outer = named<QORDesignPackage>(graph, "\xe9");
    auto* const inner = named<QORDesignPackage>(graph, "\xe8");
    ASSERT_TRUE(outer->addChildPackage(inner));
    ASSERT_TRUE(inner->addChildPackage(outer));
    Recoded const result = recoded(*outer);
    EXPECT_EQ(result.converted, 2u);
    EXPECT_STREQ(result.graph.root().getName().chars, "\xc3\xa9");
    EXPECT_STREQ(result.graph.root().getParent()->getName().chars, "\xc3\xa8");
}

TEST(Recoding, NameThatAnotherObjectStillBearsIsNoCollision) {
    kit::Graph graph;
    auto* const package = named<QORDesignPackage>(graph, "package");
    // What the first one is to be called, the second one is called until its turn comes.
    ASSERT_TRUE(package->addModelElement(named<QORClass>(graph, "\xe9")));
    ASSERT_TRUE(package->addModelElement(named<QORClass>(graph, "\xc3\xa9")));
    Recoded const result = recoded(*package);
    EXPECT_EQ(result.renamed, 0u);
    auto& other = static_cast<QORDesignPackage&>(result.graph.root());
    EXPECT_TRUE(hasElement(other, "\xc3\xa9"));
    EXPECT_TRUE(hasElement(other, "\xc3\x83\xc2\xa9"));
}

TEST(Recoding, NameThatIsTakenGetsANumber) {
    kit::Graph graph;
    auto* const package = named<QORDesignPackage>(graph, "package");
    ASSERT_TRUE(package->addModelElement(named<QORClass>(graph, "\xc3\xa9")));
    ASSERT_TRUE(package->addModelElement(named<QORClass>(graph, "\xe9"))); // no UTF-8, so it stays
    Recoded const result = recoded(*package, "UTF-8", "ISO-8859-1");
    EXPECT_EQ(result.failed, 1u);
    EXPECT_EQ(result.firstFailed, "?, name");
    EXPECT_EQ(result.renamed, 1u);
    auto& other = static_cast<QORDesignPackage&>(result.graph.root());
    EXPECT_TRUE(hasElement(other, "\xe9"));
    EXPECT_TRUE(hasElement(other, "\xe9/1"));
}

TEST(Recoding, OrderOfAnEndIsKept) {
    kit::Graph graph;
    auto* const association = named<QORAssociation>(graph, "a");
    for (char const* name : {"\xe9", "b", "\xe8"}) {
        association->addAssociationRole(named<QORAssociationRole>(graph, name));
    }
    Recoded const result = recoded(*association);
    std::vector<std::string> names;
    for (QORObject const* object : result.graph.objects()) {
        names.emplace_back(object->getName().chars);
    }
    EXPECT_THAT(names, ElementsAre("a", "\xc3\xa9", "b", "\xc3\xa8"));
}

TEST(Recoding, GraphOfEveryKindComesBackTheSame) {
    EveryKind const every;
    std::string const before = jsonOf(every.graph.root());
    Recoded const there = recoded(every.graph.root());
    EXPECT_GT(there.converted, 1000u);
    EXPECT_THAT(kit::verify(there.graph.root()), IsEmpty());
    EXPECT_NE(jsonOf(there.graph.root()), before);
    Recoded const back = recoded(there.graph.root(), "UTF-8", "ISO-8859-1");
    EXPECT_EQ(back.converted, there.converted);
    EXPECT_EQ(back.failed, 0u);
    EXPECT_EQ(jsonOf(back.graph.root()), before);
}

} // namespace
