#include <qor/QORAttribute.h>
#include <qor/QORClass.h>
#include <qor/QORCondition.h>
#include <qor/QORConstantNode.h>
#include <qor/QORDesignPackage.h>
#include <qor/QORGrouping.h>
#include <qor/QORNote.h>
#include <qor/QOROperatorNode.h>
#include <qor/QORReportText.h>
#include <qor/QORTraversalDelete.h>
#include <qor/QORTraversalOperation.h>

#include "AllocationControl.h"
#include "Graph.h"

#include <gtest/gtest.h>

#include <pthread.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace {

#ifdef __SANITIZE_ADDRESS__
constexpr int length = 50000; // memory is dearer here
#else
constexpr int length = sizeof(void*) == 8 ? 1000000 : 200000;
#endif

/// Runs the function on a stack of 256 KiB.
void onSmallStack(std::function<void()> const& function) {
    pthread_attr_t attributes;
    ASSERT_EQ(0, pthread_attr_init(&attributes));
    ASSERT_EQ(0, pthread_attr_setstacksize(&attributes, 256 * 1024));
    pthread_t thread;
    auto const run = [](void* argument) -> void* {
        (*static_cast<std::function<void()> const*>(argument))();
        return nullptr;
    };
    ASSERT_EQ(
        0, pthread_create(&thread, &attributes, run, const_cast<void*>(static_cast<void const*>(&function))));
    ASSERT_EQ(0, pthread_join(thread, nullptr));
    pthread_attr_destroy(&attributes);
}

// The ends that chains are made of: a tree by name, a vector, a tree by address, a pointer.
struct Packages {
    using Link = QORDesignPackage;
    using Last = QORClass;
    static bool put(Link& owner, QORPackage* child) { return owner.addChildPackage(child); }
    static bool close(Link& owner, Last* last) { return owner.addModelElement(last); }
};
struct Groupings {
    using Link = QORGrouping;
    using Last = QORAttribute;
    static bool put(Link& owner, Link* child) { return owner.addChildGrouping(child); }
    static bool close(Link& owner, Last* last) { return owner.addLeafAttribute(last); }
};
struct ReportItems {
    using Link = QORReportText;
    using Last = QORCondition;
    static bool put(Link& owner, Link* child) { return owner.addChildReportItem(child); }
    static bool close(Link& owner, Last* last) { return owner.addCondition(last); }
};
struct OperatorNodes {
    using Link = QOROperatorNode;
    using Last = QORConstantNode;
    static bool put(Link& owner, Link* child) { return owner.addLeftExpressionNode(child); }
    static bool close(Link& owner, Last* last) { return owner.addRightExpressionNode(last); }
};

template <class Kind>
class Depth : public ::testing::Test {
protected:
    using Link = typename Kind::Link;

    /// A chain of so many objects, each the owner of the next one, with a note that tells the death of the
    /// last one.
    static std::unique_ptr<Link> chain(Graph& graph, int count = length) {
        bool linked = true;
        std::unique_ptr<Link> top(named<Link>("\xE9"));
        EXPECT_TRUE(top->addNote(graph.mortal<QORNote>("deepest")));
        for (int i = 1; i < count; ++i) {
            std::unique_ptr<Link> owner(named<Link>("\xE9"));
            linked = Kind::put(*owner, top.release()) && linked;
            top = std::move(owner);
        }
        EXPECT_TRUE(linked);
        return top;
    }

    static void walk(Link& top) {
        class Counting : public QORTraversalOperation {
        public:
            bool pre_process(QORObject*, void*& data) override {
                ++entered;
                deepest = std::max(deepest, ++depth);
                nested = nested && reinterpret_cast<std::intptr_t>(data) + 1 == depth;
                data = reinterpret_cast<void*>(static_cast<std::intptr_t>(depth));
                return true;
            }
            void post_process(QORObject*, void* data) override {
                ++left;
                nested = nested && reinterpret_cast<std::intptr_t>(data) == depth;
                --depth;
            }
            int entered = 0;
            int left = 0;
            int depth = 0;
            int deepest = 0;
            bool nested = true;
        } operation;
        EXPECT_TRUE(top.depthTraversal(operation, nullptr));
        EXPECT_EQ(length + 1, operation.entered);
        EXPECT_EQ(length + 1, operation.left);
        EXPECT_EQ(length + 1, operation.deepest);
        EXPECT_TRUE(operation.nested);
    }

    static void transcode(Link& top) {
        class Converted : public QORTraversalOperation {
        public:
            bool pre_process(QORObject* object, void*&) override {
                count += object->getName().length == 2 ? 1 : 0;
                return true;
            }
            int count = 0;
        } operation;
        Recoding recode("ISO-8859-1", "UTF-8");
        recode(top);
        EXPECT_EQ(0, recode.errors);
        EXPECT_LE(length + 1, recode.converted);
        top.depthTraversal(operation, nullptr);
        EXPECT_EQ(length, operation.count); // all but the note
    }

    static void walkTranscodeAndDelete() {
        long const live = liveAllocations();
        {
            Graph graph;
            graph.deaths.reserve(1);
            auto top = chain(graph);
            walk(*top);
            transcode(*top);
            EXPECT_TRUE(graph.deaths.empty());
            long const made = madeAllocations();
            top.reset();
            EXPECT_EQ(made, madeAllocations());
            EXPECT_EQ(Labels{"deepest"}, graph.deaths);
        }
        EXPECT_EQ(live, liveAllocations());
    }

    static void takeApartAll() {
        Graph graph;
        auto const top = chain(graph, length / 10);
        EXPECT_TRUE(top->recursiveDelete());
        EXPECT_EQ(Labels{"deepest"}, graph.deaths);
        EXPECT_FALSE(top->isReferenced());
    }

    static void deleteUnderAnOwner() {
        Graph graph;
        auto const top = chain(graph, 1);
        Link* const lower = chain(graph, length / 10).release();
        ASSERT_TRUE(Kind::put(*top, lower));
        delete lower;
        EXPECT_EQ(Labels{"deepest"}, graph.deaths);
        EXPECT_EQ(1, top->getNoteCount());
        top->removeNotes();
        EXPECT_FALSE(top->isReferenced());
    }

    static void deleteByWalking() {
        Graph graph;
        auto const top = chain(graph, length / 10);
        QORTraversalDelete operation;
        top->depthTraversal(operation, top.get());
        EXPECT_EQ(Labels{"deepest"}, graph.deaths);
        EXPECT_FALSE(top->isReferenced());
    }

    static void deleteWithCallersClassesBetween() {
        Graph graph;
        std::unique_ptr<Link> top(named<Link>("x"));
        for (int i = 1; i < length / 10; ++i) {
            std::unique_ptr<Link> owner(i % (length / 100) ? named<Link>("x") : graph.mortal<Link>("m"));
            Kind::put(*owner, top.release());
            top = std::move(owner);
        }
        top.reset();
        EXPECT_EQ(9U, graph.deaths.size());
    }
};

using Kinds = ::testing::Types<Packages, Groupings, ReportItems, OperatorNodes>;

} // namespace

TYPED_TEST_SUITE(Depth, Kinds);

TYPED_TEST(Depth, IsWalkedTranscodedAndDeletedOnTheDefaultStackTheLastWithoutAllocating) {
    this->walkTranscodeAndDelete();
}

TYPED_TEST(Depth, IsWalkedTranscodedAndDeletedOnASmallStackTheLastWithoutAllocating) {
    onSmallStack([] { TestFixture::walkTranscodeAndDelete(); });
}

TYPED_TEST(Depth, IsTakenApartOnASmallStack) {
    onSmallStack([] { TestFixture::takeApartAll(); });
}

TYPED_TEST(Depth, IsDeletedUnderItsOwnerOnASmallStack) {
    onSmallStack([] { TestFixture::deleteUnderAnOwner(); });
}

TYPED_TEST(Depth, IsDeletedByAWalkOnASmallStack) {
    onSmallStack([] { TestFixture::deleteByWalking(); });
}

TYPED_TEST(Depth, IsDeletedOnASmallStackWithAFewObjectsOfACallersClassInBetween) {
    onSmallStack([] { TestFixture::deleteWithCallersClassesBetween(); });
}

namespace {

/// A short chain with a note above and something on the last level below on each object, all of them telling
/// their death. With `recursive`, the chain's objects are of a caller's class, which the library takes apart
/// by recursion.
template <class Kind>
std::unique_ptr<typename Kind::Link> loggedChain(Graph& graph, Graph& links, bool recursive) {
    using Link = typename Kind::Link;
    std::unique_ptr<Link> top;
    for (int i = 4; i >= 0; --i) {
        std::unique_ptr<Link> owner(recursive ? links.mortal<Link>("link") : named<Link>("link"));
        EXPECT_TRUE(
            Kind::close(*owner, graph.mortal<typename Kind::Last>(("last" + std::to_string(i)).c_str())));
        EXPECT_TRUE(owner->addNote(graph.mortal<QORNote>(("note" + std::to_string(i)).c_str())));
        if (top) {
            EXPECT_TRUE(Kind::put(*owner, top.release()));
        }
        top = std::move(owner);
    }
    return top;
}

} // namespace

TYPED_TEST(Depth, GoesInTheOrderOfARecursion) {
    Labels expected;
    for (int i = 0; i < 5; ++i)
        expected.push_back("note" + std::to_string(i));
    for (int i = 4; i >= 0; --i)
        expected.push_back("last" + std::to_string(i));
    for (bool const recursive : {false, true}) {
        Graph graph;
        Graph links;
        loggedChain<TypeParam>(graph, links, recursive).reset();
        EXPECT_EQ(expected, graph.deaths) << recursive;
        EXPECT_EQ(recursive ? 5U : 0U, links.deaths.size());
    }
}

TYPED_TEST(Depth, WalksInTheOrderOfARecursion) {
    class Order : public QORTraversalOperation {
    public:
        bool pre_process(QORObject* object, void*&) override {
            log.push_back(std::string("+") + object->getName().chars);
            return true;
        }
        void post_process(QORObject* object, void*) override {
            log.push_back(std::string("-") + object->getName().chars);
        }
        Labels log;
    };
    Graph graph;
    Graph links;
    Order exact;
    Order recursive;
    loggedChain<TypeParam>(graph, links, false)->depthTraversal(exact, nullptr);
    loggedChain<TypeParam>(graph, links, true)->depthTraversal(recursive, nullptr);
    EXPECT_EQ(recursive.log, exact.log);
    EXPECT_LE(20U, exact.log.size());
}

// ---- wide graphs ----------------------------------------------------------------------------------------

TEST(Deletion, OfAMixedGraphAllocatesNothing) {
    auto* const root = named<QORDesignPackage>("root");
    std::vector<QORClass*> classes;
    for (int i = 0; i < 300; ++i) {
        classes.push_back(named<QORClass>(("class" + std::to_string(i)).c_str()));
        root->addModelElement(classes.back());
        root->addImportedModelObject(classes.back());
        classes.back()->addFeature(named<QORAttribute>("a"));
        classes.back()->addFeature(named<QORAttribute>("b"));
        auto* const grouping = named<QORGrouping>("g");
        classes.back()->addGrouping(grouping);
        grouping->addLeafAttribute(static_cast<QORAttribute*>(classes.back()->getFeature(0)));
    }
    QORDesignPackage importer;
    importer.addNote(new QORNote);
    for (QORClass* const each : classes)
        importer.addImportedModelObject(each);
    long const made = madeAllocations();
    delete classes[150];
    delete classes[7];
    delete classes[299];
    EXPECT_EQ(made, madeAllocations());
    EXPECT_EQ(297, importer.getImportedModelObjectCount());
    delete root;
    EXPECT_EQ(made, madeAllocations());
    EXPECT_EQ(0, importer.getImportedModelObjectCount());
}

TEST(Deletion, OfElementsOfALargeVectorAllocatesNothingInWhateverOrder) {
    QORDesignPackage importer;
    importer.addNote(new QORNote);
    std::vector<QORClass*> classes;
    for (int i = 0; i < 5000; ++i) {
        classes.push_back(new QORClass);
        importer.addImportedModelObject(classes.back());
    }
    std::vector<QORClass*> order;
    for (std::size_t i = 0; i < classes.size(); ++i)
        order.push_back(classes[i * 2357 % classes.size()]);
    long const made = madeAllocations();
    for (std::size_t i = 0; i < order.size() / 2; ++i)
        delete order[i];
    EXPECT_EQ(made, madeAllocations());
    EXPECT_EQ(2500, importer.getImportedModelObjectCount());
    importer.removeImportedModelObjects();
    EXPECT_EQ(made, madeAllocations());
    EXPECT_EQ(0, importer.getImportedModelObjectCount());
}
