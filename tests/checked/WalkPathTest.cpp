#include <qor/QORClass.h>
#include <qor/QORDesignPackage.h>
#include <qor/QOREncodingConverter.h>
#include <qor/QORGrouping.h>
#include <qor/QORTraversalOperation.h>

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

namespace {

char const* const goesRound = "Assertion `no object owns itself, directly or through others' failed";

class Counting : public QORTraversalOperation {
public:
    bool pre_process(QORObject*, void*&) override {
        ++visited;
        return true;
    }

    int visited = 0;
};

int walk(QORObject& object) {
    Counting operation;
    object.depthTraversal(operation, nullptr);
    return operation.visited;
}

void transcode(QORObject& object) {
    std::unique_ptr<QOREncodingConverter> const from(QOREncodingConverter::create("ISO-8859-1"));
    std::unique_ptr<QOREncodingConverter> const to(QOREncodingConverter::create("UTF-8"));
    int first = 0;
    int errors = 0;
    object.transcode(from.get(), to.get(), first, errors);
}

/// A caller's class: walks pass through its virtual operations.
class CallersPackage : public QORDesignPackage {};

/// One that goes over its children itself.
class WalkingPackage : public QORDesignPackage {
public:
    void _depthTraversal(QORTraversalOperation& operation, void* data) override {
        for (int i = 0; i < getChildPackageCount(); ++i)
            getChildPackage(i)->depthTraversal(operation, data);
    }
};

/// Packages that own each other in a ring, of one class or of two in turn; a way in leads to the first.
template <class Even, class Odd>
class Ring {
public:
    explicit Ring(int count) {
        for (int i = 0; i < count; ++i)
            packages.push_back(i % 2 ? std::unique_ptr<QORDesignPackage>(new Odd)
                                     : std::unique_ptr<QORDesignPackage>(new Even));
        for (std::size_t i = 0; i < packages.size(); ++i) {
            packages[i]->setName(static_cast<int>(i));
            packages[i]->addChildPackage(packages[(i + 1) % packages.size()].get());
        }
    }
    ~Ring() {
        for (auto const& package : packages)
            package->isolate(false);
    }

    QORDesignPackage& first() { return *packages.front(); }

private:
    std::vector<std::unique_ptr<QORDesignPackage>> packages;
};

template <class Rings>
class Cycle : public testing::Test {};

using Rings = testing::Types<Ring<QORDesignPackage, QORDesignPackage>, Ring<QORDesignPackage, CallersPackage>,
                             Ring<CallersPackage, CallersPackage>, Ring<WalkingPackage, WalkingPackage>,
                             Ring<QORDesignPackage, WalkingPackage>>;
TYPED_TEST_SUITE(Cycle, Rings);

} // namespace

TYPED_TEST(Cycle, EndsAWalkByAnAssertion) {
    for (int const count : {1, 2, 3, 40}) {
        TypeParam ring(count);
        EXPECT_DEATH(walk(ring.first()), goesRound) << count;
    }
}

TYPED_TEST(Cycle, EndsTranscodingByAnAssertion) {
    for (int const count : {1, 2, 3, 40}) {
        TypeParam ring(count);
        EXPECT_DEATH(transcode(ring.first()), goesRound) << count;
    }
}

TYPED_TEST(Cycle, DoesNotDisturbAnOperationThatStopsByItself) {
    class Once : public Counting {
    public:
        bool pre_process(QORObject* object, void*& data) override {
            bool const isNew = !object->flag1;
            object->flag1 = true;
            return isNew && Counting::pre_process(object, data);
        }
    };
    TypeParam ring(4);
    Once operation;
    EXPECT_TRUE(ring.first().depthTraversal(operation, nullptr));
    EXPECT_EQ(4, operation.visited);
}

TEST(WalkPath, ACycleBelowTheTopIsFound) {
    QORClass top;
    auto* const first = new QORGrouping;
    auto* const second = new QORGrouping;
    top.addGrouping(first);
    first->addChildGrouping(second);
    second->addChildGrouping(first);
    EXPECT_DEATH(walk(top), goesRound);
    EXPECT_DEATH(transcode(top), goesRound);
    second->removeChildGrouping(first);
    EXPECT_EQ(3, walk(top));
}

TEST(WalkPath, DeepGraphsWithoutCyclesAreWalkedAndTranscoded) {
    constexpr int depth = 100000;
    QORGrouping top;
    QORGrouping* last = &top;
    for (int i = 1; i < depth; ++i) {
        auto* const next = new QORGrouping;
        last->addChildGrouping(next);
        last = next;
    }
    EXPECT_EQ(depth, walk(top));
    transcode(top);
}

TEST(WalkPath, AnObjectWithTwoOwnersIsVisitedFromEach) {
    QORDesignPackage top;
    auto* const left = new QORDesignPackage;
    left->setName("left");
    auto* const right = new QORClass;
    right->setName("right");
    top.addChildPackage(left);
    top.addModelElement(right);
    auto* const shared = new QORGrouping;
    auto* const below = new QORGrouping;
    shared->addChildGrouping(below);
    right->addGrouping(shared);
    auto* const owner = new QORGrouping;
    ASSERT_TRUE(owner->addChildGrouping(shared));
    auto* const other = new QORClass;
    other->setName("other");
    other->addGrouping(owner);
    top.addModelElement(other);
    EXPECT_EQ(9, walk(top));
    transcode(top);
}

TEST(WalkPath, AnotherWalkMayStartFromWithinOne) {
    class Nested : public Counting {
    public:
        explicit Nested(QORObject& object) : top(object) {}
        bool pre_process(QORObject* object, void*& data) override {
            below += walk(top);
            transcode(top);
            return Counting::pre_process(object, data);
        }

        int below = 0;

    private:
        QORObject& top;
    };
    QORDesignPackage top;
    auto* const child = new CallersPackage;
    child->addChildPackage(new QORDesignPackage);
    top.addChildPackage(child);
    Nested operation(top);
    EXPECT_TRUE(top.depthTraversal(operation, nullptr));
    EXPECT_EQ(3, operation.visited);
    EXPECT_EQ(9, operation.below);
}

TEST(WalkPath, AWalkThatAnExceptionEndedLeavesNothingBehind) {
    class Throwing : public Counting {
    public:
        bool pre_process(QORObject* object, void*& data) override {
            Counting::pre_process(object, data);
            if (visited == 4)
                throw std::runtime_error("from the operation");
            return true;
        }
    };
    QORDesignPackage top;
    auto* const child = new CallersPackage;
    auto* const below = new QORDesignPackage;
    top.addChildPackage(child);
    child->addChildPackage(below);
    below->addChildPackage(new QORDesignPackage);
    Throwing operation;
    EXPECT_THROW(top.depthTraversal(operation, nullptr), std::runtime_error);
    operation.visited = 10;
    EXPECT_TRUE(top.depthTraversal(operation, nullptr));
    EXPECT_EQ(14, operation.visited);
}

TEST(WalkPath, AnObjectMayBeDeletedAfterItsVisit) {
    class Deleting : public Counting {
    public:
        void post_process(QORObject* object, void* top) override {
            if (object != top)
                delete object;
        }
    };
    QORDesignPackage top;
    auto* const child = new QORDesignPackage;
    child->addChildPackage(new CallersPackage);
    top.addChildPackage(child);
    Deleting operation;
    EXPECT_TRUE(top.depthTraversal(operation, &top));
    EXPECT_EQ(3, operation.visited);
    EXPECT_EQ(1, walk(top));
}

TEST(WalkPath, ThreadsWalkAtOnce) {
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([] {
            QORDesignPackage top;
            top.addChildPackage(new CallersPackage);
            for (int round = 0; round < 200; ++round)
                EXPECT_EQ(2, walk(top));
        });
    for (std::thread& thread : threads)
        thread.join();
}
