#include <qor/QORAttribute.h>
#include <qor/QORClass.h>
#include <qor/QORClassType.h>
#include <qor/QORConfigurationFormat.h>
#include <qor/QORDerivedType.h>
#include <qor/QORDesignPackage.h>
#include <qor/QORMetadataOrigin.h>
#include <qor/QORModel.h>
#include <qor/QORModelFormat.h>
#include <qor/QORNameLinkTree.h>
#include <qor/QORNote.h>
#include <qor/QORObjectNameHashtable.h>
#include <qor/QORPropertyElementTypeScope.h>
#include <qor/QORPtrLinkTree.h>
#include <qor/QORTraversalOperation.h>
#include <qor/QORTypeValue.h>

#include "Graph.h"
#include "Unruly.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace {

std::vector<std::string> featuresOf(QORClass const& owner) {
    std::vector<std::string> names;
    for (int i = 0; i < owner.getFeatureCount(); ++i)
        names.emplace_back(owner.getFeature(i)->getName().chars);
    return names;
}

using Names = std::vector<std::string>;

/// A class with the attributes "a" to "e", of a caller's class all but "b".
struct UnrulyAttributes : public ::testing::Test {
    UnrulyAttributes() {
        for (char const* name : {"a", "b", "c", "d", "e"}) {
            attributes.push_back(*name == 'b' ? named<QORAttribute>(name) : unruly<QORAttribute>(name));
            owner.addFeature(attributes.back());
        }
    }

    QORClass owner;
    std::vector<QORAttribute*> attributes;
};

} // namespace

// ---- names that can't be told ---------------------------------------------------------------------------

TEST_F(UnrulyAttributes, ARenameAmongThemIsWholeOrNothing) {
    for (char const* name : {"z", "0", "cc", "b"}) {
        int const failures =
            failEachOverride([&] { attributes[1]->setName(name); },
                             [&] {
                                 EXPECT_STREQ("b", attributes[1]->getName().chars);
                                 EXPECT_EQ(&owner, attributes[1]->getClassifier());
                                 EXPECT_EQ((Names{"a", "b", "c", "d", "e"}), featuresOf(owner));
                             });
        EXPECT_LT(0, failures);
        EXPECT_STREQ(name, attributes[1]->getName().chars);
        attributes[1]->setName("b");
    }
    delete attributes[1];
    EXPECT_EQ((Names{"a", "c", "d", "e"}), featuresOf(owner));
}

TEST_F(UnrulyAttributes, AnAddAmongThemIsWholeOrNothing) {
    QORAttribute added;
    added.setName("bb");
    auto const verify = [&] {
        EXPECT_EQ(nullptr, added.getClassifier());
        EXPECT_FALSE(added.isReferenced());
        EXPECT_EQ(5, owner.getFeatureCount());
    };
    EXPECT_LT(0, failEachOverride([&] { EXPECT_TRUE(owner.addFeature(&added)); }, verify));
    EXPECT_TRUE(owner.removeFeature(&added));
    EXPECT_LT(0, failEachOverride([&] { EXPECT_TRUE(added.addClassifier(&owner)); }, verify));
    EXPECT_EQ((Names{"a", "b", "bb", "c", "d", "e"}), featuresOf(owner));
}

TEST_F(UnrulyAttributes, ASearchThatThrowsLeavesTheCursorRight) {
    for (int first = 0; first < 5; ++first)
        for (char const* name : {"a", "b", "c", "d", "e"}) {
            int cursor = 0;
            owner.getFeature(first);
            int const failures = failEachOverride(
                [&] { EXPECT_NE(nullptr, owner.getAttribute(name, &cursor)); },
                [&] {
                    for (int i : {first, 4, 0, 2, 3, 1})
                        EXPECT_EQ(attributes[static_cast<std::size_t>(i)], owner.getFeature(i));
                    owner.getFeature(first);
                });
            EXPECT_LT(0, failures);
        }
}

TEST_F(UnrulyAttributes, ARemovalByNameThatThrowsRemovesNothing) {
    for (bool const withCursor : {false, true}) {
        int cursor = 0;
        int const failures = failEachOverride(
            [&] {
                FailingOverride::call(); // so that there is one to fail
                owner.removeFeature("0", withCursor ? &cursor : nullptr);
            },
            [&] {
                EXPECT_EQ((Names{"a", "b", "c", "d", "e"}), featuresOf(owner));
            });
        EXPECT_LT(1, failures);
    }
}

TEST(ThrowingOverrides, SetValueAmongUnrulyValuesIsWholeOrNothing) {
    QORDerivedType type;
    for (char const* text : {"1", "3", "5"}) {
        auto* const value = new Unruly<QORTypeValue>;
        value->setValue(text);
        type.addTypeValue(value);
    }
    auto* const value = new QORTypeValue;
    value->setValue("4");
    type.addTypeValue(value);
    int const failures = failEachOverride([&] { value->setValue("0"); },
                                          [&] {
                                              EXPECT_STREQ("4", value->getValue().chars);
                                              EXPECT_EQ(&type, value->getDerivedType());
                                              EXPECT_EQ(value, type.getTypeValue(2));
                                          });
    EXPECT_LT(0, failures);
    EXPECT_EQ(value, type.getTypeValue(0));
}

TEST(ThrowingOverrides, AnAddOfTwoSortedEndsIsWholeOrNothingAndItsUndoingNeedsNoNames) {
    QORConfigurationFormat configuration;
    Unruly<QORModelFormat> format;
    std::vector<std::unique_ptr<QORModelFormat>> formats;
    std::vector<std::unique_ptr<QORConfigurationFormat>> configurations;
    for (int i = 0; i < 3; ++i) {
        formats.push_back(std::make_unique<Unruly<QORModelFormat>>());
        configurations.push_back(std::make_unique<Unruly<QORConfigurationFormat>>());
        configuration.addMetadataFormat(formats.back().get());
        format.addConfigurationFormat(configurations.back().get());
    }
    auto const linked = [&] {
        return configuration.getMetadataFormatCount() - 3 + format.getConfigurationFormatCount() - 3;
    };
    for (int way = 0; way < 4; ++way) {
        auto const add = [&] {
            return way % 2 ? configuration.addMetadataFormat(&format)
                           : format.addConfigurationFormat(&configuration);
        };
        EXPECT_LT(0, failEachOverride([&] { EXPECT_TRUE(add()); }, [&] { EXPECT_EQ(0, linked()); }));
        EXPECT_EQ(2, linked());
        FailingOverride const failing(way);
        EXPECT_TRUE(way < 2 ? configuration.removeMetadataFormat(&format)
                            : format.removeConfigurationFormat(&configuration));
        EXPECT_EQ(0, linked());
    }
    configuration.isolate(false);
    format.isolate(false);
}

// ---- questions that aren't answered ---------------------------------------------------------------------

TEST(ThrowingOverrides, ARemovalOfAnOwnerLeavesNoHalfOfTheLink) {
    auto owner = std::make_unique<Unruly<QORClass>>();
    QORAttribute attribute;
    owner->addFeature(&attribute);
    int const failures = failEachOverride([&] { attribute.removeClassifier(); },
                                          [&] {
                                              EXPECT_EQ(nullptr, attribute.getClassifier());
                                              EXPECT_EQ(0, owner->getFeatureCount());
                                              EXPECT_FALSE(attribute.isReferenced());
                                              EXPECT_FALSE(owner->isReferenced());
                                          });
    EXPECT_EQ(1, failures); // nothing is left to do the second time
    // It can go by a removal afterwards as before.
    owner->addFeature(&attribute);
    owner.release();
    EXPECT_TRUE(attribute.removeClassifier());
    EXPECT_EQ(nullptr, attribute.getClassifier());
}

TEST(ThrowingOverrides, ARemovalBetweenTwoUnaryEndsLeavesNoHalfOfTheLink) {
    QORClass object;
    auto const type = std::make_unique<Unruly<QORClassType>>();
    object.addClassType(type.get());
    EXPECT_EQ(1, failEachOverride([&] { object.removeClassType(); },
                                  [&] {
                                      EXPECT_EQ(nullptr, object.getClassType());
                                      EXPECT_EQ(nullptr, type->getAssociatedClass());
                                  }));
}

TEST_F(UnrulyAttributes, ARemovedOneThatDoesNotAnswerLivesOnWithoutTheLink) {
    int cursor = 0;
    EXPECT_THROW(
        {
            FailingOverride const failing(0);
            owner.removeFeature(0);
        },
        OverrideError);
    EXPECT_EQ((Names{"b", "c", "d", "e"}), featuresOf(owner));
    EXPECT_EQ(nullptr, attributes[0]->getClassifier());
    EXPECT_FALSE(attributes[0]->isReferenced());
    delete attributes[0];
    EXPECT_EQ((Names{"b", "c", "d", "e"}), featuresOf(owner));
    failEachOverride([&] { owner.removeFeature("e", &cursor); },
                     [&] {
                         bool const there = attributes[4]->getClassifier() != nullptr;
                         EXPECT_EQ(there ? 4 : 3, owner.getFeatureCount());
                     });
    EXPECT_EQ((Names{"b", "c", "d"}), featuresOf(owner));
    delete attributes[4];
}

TEST_F(UnrulyAttributes, ARemovalOfAllComesToItsEnd) {
    EXPECT_THROW(
        {
            FailingOverride const failing(1);
            owner.removeFeatures();
        },
        OverrideError);
    EXPECT_EQ(0, owner.getFeatureCount());
    EXPECT_FALSE(owner.isReferenced());
    EXPECT_EQ(nullptr, attributes[2]->getClassifier()); // the second that is asked by an override
    EXPECT_TRUE(owner.addFeature(attributes[2]));
    owner.removeFeatures();
    EXPECT_EQ(0, owner.getFeatureCount());
}

TEST_F(UnrulyAttributes, TakingApartComesToItsEndAndCanBeDoneAgain) {
    for (int spared = 0; spared < 4; ++spared) {
        QORClass other;
        std::vector<std::unique_ptr<QORAttribute>> survivors;
        Graph graph;
        for (char const* name : {"a", "b", "c", "d"})
            other.addFeature(unruly<QORAttribute>(name));
        other.addFeature(graph.mortal<QORAttribute>("z"));
        QORAttribute* const failing = static_cast<QORAttribute*>(other.getFeature(spared));
        EXPECT_THROW(
            {
                FailingOverride const failure(spared);
                other.recursiveDelete();
            },
            OverrideError);
        survivors.emplace_back(failing);
        EXPECT_FALSE(other.isReferenced());
        EXPECT_EQ(nullptr, failing->getClassifier());
        EXPECT_EQ(Labels{"z"}, graph.deaths);
        EXPECT_TRUE(other.addFeature(failing));
        EXPECT_TRUE(other.recursiveDelete());
        survivors.back().release();
        EXPECT_FALSE(other.isReferenced());
    }
}

TEST(ThrowingOverrides, WhatIsThrownWhileAnObjectDiesEndsThere) {
    for (int spared = 0; spared < 3; ++spared) {
        QORDesignPackage package;
        auto* const owner = new QORClass;
        std::unique_ptr<QORAttribute> survivor(unruly<QORAttribute>("a"));
        package.addModelElement(owner);
        owner->addFeature(survivor.get());
        Graph graph;
        owner->addFeature(graph.mortal<QORAttribute>("z"));
        {
            FailingOverride const failing(spared);
            delete owner;
        }
        EXPECT_EQ(Labels{"z"}, graph.deaths);
        EXPECT_EQ(0, package.getModelElementCount());
        if (spared == 0)
            EXPECT_EQ(nullptr, survivor->getClassifier());
        else
            survivor.release(); // has died
    }
}

TEST(ThrowingOverrides, AnIsolationComesToItsEnd) {
    QORClass object;
    auto const type = std::make_unique<Unruly<QORClassType>>();
    auto const survivor = std::make_unique<Unruly<QORAttribute>>();
    Graph graph;
    object.addClassType(type.get());
    object.addFeature(survivor.get());
    object.addNote(graph.mortal<QORNote>("note"));
    class Always : public QORNote {
    public:
        bool isReferenced() const override { throw OverrideError(); }
    };
    Always note;
    object.addNote(&note);
    type->addModel(new QORModel);
    std::unique_ptr<QORModel> const model(type->getModel());
    EXPECT_THROW(
        {
            FailingOverride const failing(1);
            object.isolate(true);
        },
        OverrideError);
    EXPECT_FALSE(object.isReferenced());
    EXPECT_EQ(nullptr, note.getElement());
    EXPECT_EQ(nullptr, survivor->getClassifier());
    EXPECT_EQ(Labels{"note"}, graph.deaths);
    type->removeModel(model.get());
}

// ---- assignments ----------------------------------------------------------------------------------------

TEST(ThrowingOverrides, AnAssignmentFromATypeThatDoesNotAnswerChangesNothing) {
    class Source : public QORDerivedType {
    public:
        QORString const& getDataType() const override {
            return FailingOverride::call(), QORDerivedType::getDataType();
        }
        int getScale() const override { return FailingOverride::call(), QORDerivedType::getScale(); }
        QORString const& getInitialValue() const override {
            return FailingOverride::call(), QORDerivedType::getInitialValue();
        }
        bool getUserDefined() const override {
            return FailingOverride::call(), QORDerivedType::getUserDefined();
        }
        QORString const& getNativeLogicalDataType() const override {
            return FailingOverride::call(), QORDerivedType::getNativeLogicalDataType();
        }
        int getTypeValueCount() const override {
            return FailingOverride::call(), QORDerivedType::getTypeValueCount();
        }
    };
    Source source;
    source.setName("source");
    source.setDataType("INT");
    source.setScale(4);
    source.setInitialValue("1");
    source.setUserDefined(true);
    source.setNativeLogicalDataType("number");
    source.addTypeValue(named<QORTypeValue>("value"));
    QORDerivedType target;
    target.setName("target");
    target.addTypeValue(named<QORTypeValue>("own"));
    target.flag1 = true;
    QORDerivedType const before(target);
    EXPECT_EQ(6, failEachOverride([&] { target = source; },
                                  [&] {
                                      EXPECT_TRUE(target.finalEquals(before));
                                      EXPECT_TRUE(target.flag1);
                                  }));
    EXPECT_TRUE(target.finalEquals(source));
}

TEST(ThrowingOverrides, AnAssignmentReplacesTypeValuesAlsoWhereOneDoesNotAnswer) {
    QORDerivedType source, target;
    source.addTypeValue(named<QORTypeValue>("new"));
    auto const survivor = std::make_unique<Unruly<QORTypeValue>>();
    target.addTypeValue(survivor.get());
    EXPECT_THROW(
        {
            FailingOverride const failing(0);
            target = source;
        },
        OverrideError);
    EXPECT_EQ(nullptr, survivor->getDerivedType());
    ASSERT_EQ(1, target.getTypeValueCount());
    EXPECT_STREQ("new", target.getTypeValue(0)->getName().chars);
}

// ---- walks ----------------------------------------------------------------------------------------------

TEST_F(UnrulyAttributes, AWalkThatThrowsLeavesEverythingAsItWas) {
    class Operation : public QORTraversalOperation {
    public:
        bool pre_process(QORObject*, void*&) override {
            FailingOverride::call();
            return true;
        }
        void post_process(QORObject*, void*) override { FailingOverride::call(); }
    };
    Operation operation;
    int const failures = failEachOverride([&] { EXPECT_TRUE(owner.depthTraversal(operation, nullptr)); },
                                          [&] {
                                              EXPECT_EQ((Names{"a", "b", "c", "d", "e"}), featuresOf(owner));
                                          });
    EXPECT_EQ(12, failures);
}

// ---- callers' containers --------------------------------------------------------------------------------

namespace {

/// Sorted by name, where comparing may throw whatever is compared.
class UnrulyTree : public QORNameLinkTree {
public:
    int compare2Object(QORContainerItem const* a, QORContainerItem const* b) const override {
        FailingOverride::call();
        return QORNameLinkTree::compare2Object(a, b);
    }
    QORRBTreeNode* nextNode(QORRBTreeNode const* node) const override {
        FailingOverride::call();
        return QORNameLinkTree::nextNode(node);
    }
    QORRBTreeNode* previousNode(QORRBTreeNode const* node) const override {
        FailingOverride::call();
        return QORNameLinkTree::previousNode(node);
    }
};

/// A caller's class with ends of its own, made by the primitives.
class Peer : public QORObject {
public:
    ~Peer() override {
        while (peers.size)
            unlink(*static_cast<Peer*>(peers[0]));
    }
    bool link(Peer& other) { return _addnn(&peers, &other.peers, &other); }
    bool unlink(Peer& other) { return _removen(&peers, &other) && other._removen(&other.peers, this); }
    bool own(Peer& other) { return _addnu(&children, &other.owner, &other); }

    UnrulyTree peers;
    UnrulyTree children;
    QORObject* owner = nullptr;
};

} // namespace

TEST(ThrowingOverrides, ThePrimitivesOnCallersContainersAreWholeOrNothing) {
    Peer one, other;
    one.setName("one");
    other.setName("other");
    std::vector<std::unique_ptr<Peer>> more;
    for (char const* name : {"a", "o", "p", "z"}) {
        more.push_back(std::make_unique<Peer>());
        more.back()->setName(name);
        one.link(*more.back());
        other.link(*more.back());
        one.own(*more.back());
    }
    for (int times = 0; times < 3; ++times) {
        EXPECT_LT(3, failEachOverride([&] { EXPECT_TRUE(one.link(other)); },
                                      [&] { EXPECT_EQ(8, one.peers.size + other.peers.size); }));
        FailingOverride const failing(times); // once, whether in the one end or the other
        EXPECT_TRUE(one.unlink(other));
        EXPECT_EQ(8, one.peers.size + other.peers.size);
    }
    EXPECT_LT(1, failEachOverride([&] { EXPECT_TRUE(one.own(other)); },
                                  [&] {
                                      EXPECT_EQ(4, one.children.size);
                                      EXPECT_EQ(nullptr, other.owner);
                                  }));
}

TEST(ThrowingOverrides, ACallersTreeStaysReadableWhateverItsStepsThrow) {
    Peer owner;
    std::vector<std::unique_ptr<Peer>> children;
    for (char const* name : {"a", "b", "c", "d", "e", "f"}) {
        children.push_back(std::make_unique<Peer>());
        children.back()->setName(name);
        owner.own(*children.back());
    }
    auto const verify = [&] {
        ASSERT_EQ(static_cast<int>(children.size()), owner.children.size);
        for (int i = owner.children.size; i-- > 0;)
            EXPECT_EQ(children[static_cast<std::size_t>(i)].get(), owner.children[i]);
    };
    QORString const key("e");
    EXPECT_LT(2, failEachOverride([&] { owner.children.findFirstElement(&key); }, verify));
    EXPECT_LT(2, failEachOverride([&] { owner.children.containsElement(children[1].get()); }, verify));
    for (std::size_t cursor : {5U, 0U, 2U}) {
        owner.children[static_cast<int>(cursor)];
        failEachOverride([&] { owner.children.removeElement(static_cast<int>(cursor)); }, verify);
        children.erase(children.begin() + static_cast<std::ptrdiff_t>(cursor));
        verify();
    }
}

TEST(ThrowingOverrides, AnElementThatAnotherTreeCannotCompareStaysInItsOwn) {
    QORPtrLinkTree from;
    UnrulyTree to;
    std::vector<QORObject> objects(7);
    for (QORObject& each : objects)
        each.setName(QORString(static_cast<int>(&each - objects.data())));
    for (QORObject& each : objects)
        from.add(&each, true, nullptr);
    for (QORObject& each : objects) {
        int const left = from.size;
        QORContainerItem* const first = from[0];
        failEachOverride([&] { EXPECT_NE(nullptr, to.adoptItem(from, &each)); },
                         [&] {
                             EXPECT_EQ(left, from.size);
                             EXPECT_EQ(first, from[0]);
                             EXPECT_EQ(7 - left, to.size);
                         });
    }
    EXPECT_EQ(0, from.size);
    for (int i = 0; i < 7; ++i)
        EXPECT_EQ(&objects[static_cast<std::size_t>(i)], to[i]);
}

TEST(ThrowingOverrides, ATableOfNamesTakesAnObjectAsAWholeOrNotAtAll) {
    QORObjectNameHashtable table(3);
    Unruly<QORObject> first, second;
    first.setName("first");
    second.setName("second");
    EXPECT_EQ(2, failEachOverride([&] { EXPECT_TRUE(table.add(&first, true, nullptr)); },
                                  [&] { EXPECT_EQ(0, table.size); }));
    EXPECT_LE(2, failEachOverride([&] { EXPECT_TRUE(table.add(&second, true, nullptr)); },
                                  [&] { EXPECT_EQ(1, table.size); }));
    EXPECT_EQ(&second, table.findFirst("second", nullptr));
}
