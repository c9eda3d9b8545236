#include <qor/QORRBTree.h>

#include <AllocationControl.h>
#include <IteratorModel.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cmath>
#include <memory>
#include <random>
#include <vector>

namespace {

/// Nodes come from a pool of their own, unless it is bypassed.
int allocationsOfANode() {
#ifdef __SANITIZE_ADDRESS__
    return 1;
#else
    return poolIsBypassed() ? 1 : 0;
#endif
}

struct Number {
    int value;
};

/// Numbers in ascending order; a key is a `int const*`.
class NumberTree : public QORRBTree {
public:
    using QORRBTree::_first;
    using QORRBTree::root;

    int compare2Object(void const* a, void const* b) const override {
        ++comparisons;
        return static_cast<Number const*>(a)->value - static_cast<Number const*>(b)->value;
    }
    int compare2Key(void const* item, void const* key) const override {
        ++comparisons;
        return static_cast<Number const*>(item)->value - *static_cast<int const*>(key);
    }
    int placeOf(QORRBTreeNode const* node) const {
        int place = 0;
        for (QORRBTreeNode const* each = _first; each; each = nextNode(each), ++place)
            if (each == node)
                return place;
        return -1;
    }
    int takeComparisons() const {
        int const made = comparisons;
        comparisons = 0;
        return made;
    }

private:
    mutable int comparisons = 0;
};

/// The depth that a red-black tree of that size can reach at most, and one more for the last comparison.
int mostComparisons(int size) {
    return static_cast<int>(2 * std::log2(size + 1.0)) + 2;
}

std::vector<Number const*> itemsOf(QORRBTree const& tree) {
    std::vector<Number const*> items;
    for (QORRBTreeNode const* node = tree.firstNode(); node; node = tree.nextNode(node))
        items.push_back(static_cast<Number const*>(node->item));
    return items;
}

/// A NumberTree and a sorted std::vector, driven alike.
class Differential {
public:
    explicit Differential(unsigned seed) : random(seed), tree(std::make_unique<NumberTree>()) {
        for (int i = 0; i < static_cast<int>(numbers.size()); ++i)
            numbers[static_cast<std::size_t>(i)].value = i * 7 % 60; // some are equal
    }

    void run(int steps) {
        for (int i = 0; i < steps && !testing::Test::HasFailure(); ++i) {
            SCOPED_TRACE(testing::Message() << "step " << i);
            growing = i / 600 % 2 == 0;
            step(pick(16));
            compare();
        }
        EXPECT_GT(largest, 60U) << "the run hasn't come far";
    }

private:
    using Elements = std::vector<Number const*>;

    int pick(int below) { return std::uniform_int_distribution<int>(0, below - 1)(random); }
    Number const* anyNumber() { return &numbers[static_cast<std::size_t>(pick(int(numbers.size())))]; }
    int count() const { return static_cast<int>(elements.size()); }
    Number const* at(int index) const {
        return index >= 0 && index < count() ? elements[static_cast<std::size_t>(index)] : nullptr;
    }
    static Number const* itemOf(QORRBTreeNode const* node) {
        return node ? static_cast<Number const*>(node->item) : nullptr;
    }
    static bool before(Number const* a, Number const* b) {
        return a->value != b->value ? a->value < b->value : a < b;
    }

    void add() {
        Number const* const item = anyNumber();
        bool const unique = pick(3) != 0;
        bool const refused = unique && std::any_of(elements.begin(), elements.end(), [&](Number const* each) {
                                 return each->value == item->value;
                             });
        tree->takeComparisons();
        QORRBTreeNode* const node = tree->addNode(item, unique);
        EXPECT_LE(tree->takeComparisons(), mostComparisons(count()));
        ASSERT_EQ(itemOf(node), refused ? nullptr : item);
        if (!refused)
            elements.insert(std::upper_bound(elements.begin(), elements.end(), item, before), item);
    }

    void remove(bool byIterator) {
        if (elements.empty())
            return;
        int const index = pick(count());
        QORRBTree::Iterator iterator(*tree, true);
        iterator.next(index);
        ASSERT_EQ(iterator.get(), at(index));
        if (byIterator) {
            ASSERT_TRUE(tree->remove(&iterator));
            ASSERT_EQ(iterator.get(), at(index + 1));
        } else {
            QORRBTreeNode* node = tree->firstNode();
            for (int i = 0; i < index; ++i)
                node = tree->nextNode(node);
            ASSERT_EQ(tree->removeNode(node), at(index));
            ASSERT_EQ(iterator.get(), nullptr);
        }
        elements.erase(elements.begin() + index);
    }

    void find() {
        int const key = pick(64) - 2;
        auto const first =
            std::find_if(elements.begin(), elements.end(), [&](Number const* n) { return n->value == key; });
        auto last = first;
        while (last != elements.end() && std::next(last) != elements.end() &&
               (*std::next(last))->value == key)
            ++last;
        Number const* const firstItem = first == elements.end() ? nullptr : *first;
        Number const* const lastItem = last == elements.end() ? nullptr : *last;
        tree->takeComparisons();
        QORRBTreeNode* const firstNode = tree->findFirstNode(&key);
        QORRBTreeNode* const lastNode = tree->findLastNode(&key);
        EXPECT_LE(tree->takeComparisons(), 2 * mostComparisons(count()));
        ASSERT_EQ(itemOf(firstNode), firstItem);
        ASSERT_EQ(itemOf(lastNode), lastItem);
        ASSERT_EQ(tree->findFirst(&key, nullptr), firstItem);
        if (!firstNode)
            return;
        ASSERT_EQ(tree->placeOf(firstNode), first - elements.begin());
        ASSERT_EQ(tree->placeOf(lastNode), last - elements.begin());
        int found = 1;
        for (QORRBTreeNode* node = firstNode; (node = tree->findNextNode(&key, node)) != nullptr;)
            ++found;
        ASSERT_EQ(found, last - first + 1);
        for (QORRBTreeNode* node = lastNode; (node = tree->findPreviousNode(&key, node)) != nullptr;)
            --found;
        ASSERT_EQ(found, 1);
    }

    void get() {
        Number const* const item = anyNumber();
        tree->takeComparisons();
        QORRBTreeNode* const node = tree->getNode(item);
        EXPECT_LE(tree->takeComparisons(), mostComparisons(count()));
        bool const there = std::find(elements.begin(), elements.end(), item) != elements.end();
        bool const equal = std::any_of(elements.begin(), elements.end(),
                                       [&](Number const* each) { return each->value == item->value; });
        ASSERT_EQ(node != nullptr, equal);
        if (there) {
            ASSERT_EQ(itemOf(node), item);
        } else if (node) {
            ASSERT_EQ(itemOf(node)->value, item->value);
        }
        ASSERT_EQ(itemOf(tree->nodeOfItem(item)), there ? item : nullptr);
        ASSERT_EQ(tree->contains(item, nullptr), equal);
    }

    void replace() {
        NumberTree& self = *tree;
        switch (pick(5)) {
        case 0:
            elements.clear();
            ASSERT_TRUE(tree->empty());
            return;
        case 1:
        case 2:
            tree = std::make_unique<NumberTree>(self);
            return;
        default: {
            auto target = std::make_unique<NumberTree>();
            target->add(anyNumber(), false, nullptr);
            *target = self;
            ASSERT_TRUE(*target == self);
            tree = std::move(target);
        }
        }
    }

    void step(int operation) {
        if (operation < (growing ? 8 : 4))
            return add();
        if (operation < 11)
            return remove(operation % 2 == 0);
        if (operation < 13)
            return find();
        if (operation == 15 && pick(30) == 0)
            return replace();
        get();
    }

    void compare() {
        largest = std::max(largest, elements.size());
        ASSERT_EQ(tree->size, count());
        ASSERT_EQ(itemsOf(*tree), elements);
        ASSERT_EQ(tree->_first, tree->firstNode());
        ASSERT_EQ(itemOf(tree->firstNode()), at(0));
        ASSERT_EQ(itemOf(tree->lastNode()), at(count() - 1));
        int index = count();
        for (QORRBTreeNode* node = tree->lastNode(); node; node = tree->previousNode(node))
            ASSERT_EQ(itemOf(node), at(--index));
        ASSERT_EQ(index, 0);
    }

    std::mt19937 random;
    std::array<Number, 200> numbers{};
    std::unique_ptr<NumberTree> tree;
    Elements elements;
    std::size_t largest = 0;
    bool growing = true;
};

} // namespace

TEST(QORRBTree, BehavesLikeASortedVectorOverManyRandomOperations) {
    for (unsigned seed : {1U, 20U, 300U}) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        Differential(seed).run(20000);
    }
}

TEST(QORRBTree, KeepsItsIteratorsInStepOverManyRandomOperations) {
    for (unsigned seed : {7U, 77U, 777U})
        compareIteratorsWithModel<QORRBTree>([] { return std::make_unique<QORRBTree>(); }, {true, false},
                                             seed, 15000);
}

TEST(QORRBTree, StaysShallowInWhateverOrderItemsComeAndGo) {
    constexpr int count = 4000;
    std::vector<Number> numbers(count);
    for (int i = 0; i < count; ++i)
        numbers[static_cast<std::size_t>(i)].value = i;
    std::vector<Number const*> ascending;
    for (Number const& number : numbers)
        ascending.push_back(&number);
    std::vector<Number const*> descending(ascending.rbegin(), ascending.rend());
    std::vector<Number const*> shuffled = ascending;
    std::shuffle(shuffled.begin(), shuffled.end(), std::mt19937(5));
    for (auto const& order : {ascending, descending, shuffled}) {
        NumberTree tree;
        for (Number const* number : order) {
            tree.takeComparisons();
            ASSERT_TRUE(tree.add(number, true, nullptr));
            ASSERT_LE(tree.takeComparisons(), mostComparisons(tree.size - 1));
        }
        for (int i = 0; i < count; i += i % 3 == 0 ? 1 : 2)
            tree.removeNode(tree.nodeOfItem(order[static_cast<std::size_t>(i)]));
        ASSERT_GT(tree.size, count / 4);
        for (Number const* number : itemsOf(tree)) {
            tree.takeComparisons();
            ASSERT_EQ(tree.getNode(number)->item, number);
            ASSERT_LE(tree.takeComparisons(), mostComparisons(tree.size));
        }
    }
}

TEST(QORRBTree, PutsEqualItemsInTheOrderOfTheirAddresses) {
    Number const numbers[] = {{1}, {1}, {1}, {1}, {0}};
    NumberTree tree;
    for (int i : {2, 0, 4, 3, 1})
        EXPECT_NE(tree.addNode(&numbers[i], false), nullptr);
    EXPECT_EQ(itemsOf(tree),
              (std::vector<Number const*>{&numbers[4], &numbers[0], &numbers[1], &numbers[2], &numbers[3]}));
    EXPECT_EQ(tree.addNode(&numbers[2], true), nullptr);
    EXPECT_EQ(tree.size, 5);
    int const one = 1;
    EXPECT_EQ(tree.findFirstNode(&one)->item, &numbers[0]);
    EXPECT_EQ(tree.findLastNode(&one)->item, &numbers[3]);
    for (Number const& number : numbers)
        EXPECT_EQ(tree.getNode(&number)->item, &number);
}

TEST(QORRBTree, LooksAtTheNeighbourAloneForTheNextMatch) {
    Number const numbers[] = {{1}, {1}, {2}};
    NumberTree tree;
    for (Number const& number : numbers)
        tree.addNode(&number, false);
    int const one = 1;
    int const two = 2;
    QORRBTreeNode* const first = tree.firstNode();
    QORRBTreeNode* const second = tree.nextNode(first);
    EXPECT_EQ(tree.findNextNode(&one, first), second);
    EXPECT_EQ(tree.findNextNode(&one, second), nullptr);
    EXPECT_EQ(tree.findNextNode(&two, first), nullptr);
    EXPECT_EQ(tree.findNextNode(&two, tree.lastNode()), nullptr);
    EXPECT_EQ(tree.findPreviousNode(&one, second), first);
    EXPECT_EQ(tree.findPreviousNode(&one, first), nullptr);
    EXPECT_EQ(tree.findPreviousNode(&two, tree.lastNode()), nullptr);
}

TEST(QORRBTree, GivesNullPastTheEnds) {
    NumberTree tree;
    EXPECT_EQ(tree.firstNode(), nullptr);
    EXPECT_EQ(tree.lastNode(), nullptr);
    EXPECT_EQ(tree.root, nullptr);
    EXPECT_EQ(tree._first, nullptr);
    int const key = 1;
    EXPECT_EQ(tree.findFirstNode(&key), nullptr);
    EXPECT_EQ(tree.findLastNode(&key), nullptr);
    EXPECT_EQ(tree.removeNode(nullptr), nullptr);
    Number const number{1};
    QORRBTreeNode* const node = tree.addNode(&number, true);
    EXPECT_EQ(tree.root, node);
    EXPECT_EQ(tree.nextNode(node), nullptr);
    EXPECT_EQ(tree.previousNode(node), nullptr);
    EXPECT_EQ(tree.nextNode(nullptr), nullptr);
    EXPECT_EQ(tree.previousNode(nullptr), nullptr);
}

TEST(QORRBTree, TakesNoNodeOutTwice) {
    Number const numbers[] = {{1}, {2}, {3}};
    NumberTree tree;
    for (Number const& number : numbers)
        tree.add(&number, true, nullptr);
    QORRBTreeNode* const node = tree.getNode(&numbers[1]);
    QORRBTree::Iterator standing;
    tree.contains(&numbers[1], &standing);
    EXPECT_EQ(tree.removeNode(node), &numbers[1]);
    EXPECT_EQ(tree.removeNode(node), nullptr);
    EXPECT_FALSE(tree.remove(&standing));
    int const two = 2;
    EXPECT_EQ(standing.findNext(&two), nullptr);
    EXPECT_EQ(tree.size, 2);
    tree.contains(&numbers[0], &standing);
    tree.removeNode(tree.getNode(&numbers[0]));
    EXPECT_EQ(standing.findPrevious(&two), nullptr);
    EXPECT_EQ(tree.size, 1);
}

TEST(QORRBTree, TellsIteratorsOfTwoTreesApart) {
    NumberTree const a;
    NumberTree const b;
    EXPECT_TRUE(QORRBTree::Iterator(a, true) == QORRBTree::Iterator(a, true));
    EXPECT_TRUE(QORRBTree::Iterator(a, true) != QORRBTree::Iterator(b, true));
}

TEST(QORRBTree, ComparesItemsInPairs) {
    Number const numbers[] = {{1}, {2}, {1}, {3}};
    NumberTree a;
    NumberTree b;
    EXPECT_TRUE(a == b);
    a.add(&numbers[0], true, nullptr);
    EXPECT_FALSE(a == b);
    b.add(&numbers[2], true, nullptr);
    EXPECT_TRUE(a == b);
    a.add(&numbers[1], true, nullptr);
    b.add(&numbers[3], true, nullptr);
    EXPECT_FALSE(a == b);
    EXPECT_TRUE(a != b);
    EXPECT_TRUE(a == a);
}

TEST(QORRBTree, GoesThroughTheVirtualNodeOperations) {
    struct Routed : QORRBTree {
        QORRBTreeNode* addNode(void const* item, bool unique) override {
            ++added;
            return refuses ? nullptr : QORRBTree::addNode(item, unique);
        }
        void* removeNode(QORRBTreeNode* node) override {
            ++removed;
            return QORRBTree::removeNode(node);
        }
        QORRBTreeNode* getNode(void const* item) const override {
            ++got;
            return QORRBTree::getNode(item);
        }
        QORRBTreeNode* findFirstNode(void const* key) const override {
            ++found;
            return QORRBTree::findFirstNode(key);
        }
        bool refuses = false;
        int added = 0;
        int removed = 0;
        mutable int got = 0;
        mutable int found = 0;
    } tree;
    char const items[2] = {};
    QORRBTree::Iterator iterator;
    EXPECT_TRUE(tree.add(&items[0], true, &iterator));
    EXPECT_EQ(tree.added, 1);
    tree.refuses = true;
    EXPECT_FALSE(tree.add(&items[1], false, nullptr));
    EXPECT_EQ(tree.added, 2);
    EXPECT_TRUE(tree.contains(&items[0], nullptr));
    EXPECT_EQ(tree.got, 1);
    EXPECT_EQ(tree.findFirst(&items[0], nullptr), &items[0]);
    EXPECT_EQ(tree.found, 1);
    EXPECT_TRUE(tree.remove(&iterator));
    EXPECT_EQ(tree.removed, 1);
    EXPECT_EQ(tree.size, 0);
}

TEST(QORRBTree, LeavesItemsAliveWhenEmptied) {
    auto const number = std::make_unique<Number>(Number{5});
    {
        NumberTree tree;
        tree.add(number.get(), true, nullptr);
        EXPECT_TRUE(tree.empty());
        EXPECT_EQ(tree.size, 0);
        EXPECT_EQ(tree.root, nullptr);
        EXPECT_EQ(tree._first, nullptr);
        EXPECT_EQ(number->value, 5);
        tree.add(number.get(), true, nullptr);
    }
    EXPECT_EQ(number->value, 5);
}

TEST(QORRBTree, KeepsAnItemFindableByIdentityWhereTheOrderNoLongerHolds) {
    std::vector<Number> numbers(50);
    NumberTree tree;
    for (int i = 0; i < 50; ++i) {
        numbers[static_cast<std::size_t>(i)].value = i;
        tree.addNode(&numbers[static_cast<std::size_t>(i)], true);
    }
    for (Number& number : numbers)
        number.value = 50 - number.value;
    for (Number const& number : numbers)
        EXPECT_EQ(tree.nodeOfItem(&number)->item, &number);
    Number const stranger{10};
    EXPECT_EQ(tree.nodeOfItem(&stranger), nullptr);
}

TEST(QORRBTree, DrainsFromTheFrontWhileItsSizeStays) {
    char const items[5] = {};
    QORRBTree tree;
    for (char const& item : items)
        tree.add(&item, true, nullptr);
    long const before = madeAllocations();
    bool inOrder = true;
    for (char const& item : items)
        inOrder &= tree.drainFirst() == &item && tree.size == 5;
    bool const atEnd = tree.drainFirst() == nullptr;
    tree.endDraining();
    EXPECT_EQ(madeAllocations(), before);
    EXPECT_TRUE(inOrder);
    EXPECT_TRUE(atEnd);
    EXPECT_EQ(tree.size, 0);
    EXPECT_TRUE(tree.add(&items[2], true, nullptr));
    EXPECT_EQ(tree.size, 1);
}

TEST(QORRBTree, LeadsTheWalksOnFromWhatIsDrained) {
    char const items[3] = {};
    QORRBTree tree;
    for (char const& item : items)
        tree.add(&item, true, nullptr);
    QORRBTree::Iterator onwards(tree, true);
    QORRBTree::Iterator back(tree, true);
    tree.drainFirst();
    EXPECT_EQ(onwards.get(), nullptr);
    EXPECT_EQ(onwards.next(1), &items[1]);
    EXPECT_EQ(back.previous(1), nullptr);
    tree.drainFirst();
    EXPECT_EQ(onwards.next(1), &items[2]);
    tree.drainFirst();
    EXPECT_EQ(onwards.next(1), nullptr);
    tree.endDraining();
    EXPECT_EQ(tree.size, 0);
}

TEST(QORRBTree, LosesAndLeaksNothingWhenAnAllocationFails) {
    Number const numbers[] = {{4}, {2}, {6}, {5}};
    NumberTree tree;
    for (int i = 0; i < 3; ++i)
        tree.add(&numbers[i], true, nullptr);
    auto const before = itemsOf(tree);
    long live = liveAllocations();
    int failures = failEachAllocation([&] { tree.add(&numbers[3], true, nullptr); },
                                      [&] {
                                          EXPECT_EQ(liveAllocations(), live);
                                          EXPECT_EQ(itemsOf(tree), before);
                                          EXPECT_EQ(tree.size, 3);
                                      });
    EXPECT_EQ(failures, allocationsOfANode());
    EXPECT_EQ(tree.size, 4);
    NumberTree target;
    target.add(&numbers[0], true, nullptr);
    live = liveAllocations();
    failures = failEachAllocation([&] { target = tree; },
                                  [&] {
                                      EXPECT_EQ(liveAllocations(), live);
                                      EXPECT_EQ(itemsOf(target), std::vector<Number const*>{&numbers[0]});
                                      EXPECT_EQ(target.size, 1);
                                  });
    EXPECT_EQ(failures, 4 * allocationsOfANode());
    EXPECT_EQ(itemsOf(target), itemsOf(tree));
    live = liveAllocations();
    failures = failEachAllocation(
        [&] {
            NumberTree const copy(tree);
            EXPECT_EQ(copy.size, 4);
        },
        [&] { EXPECT_EQ(liveAllocations(), live); });
    EXPECT_EQ(failures, 4 * allocationsOfANode());
}

TEST(QORRBTree, AllocatesNothingWhenItemsLeave) {
    char const items[20] = {};
    QORRBTree tree;
    for (char const& item : items)
        tree.add(&item, true, nullptr);
    QORRBTree::Iterator iterator(tree, true);
    QORRBTree::Iterator const witness(tree, true);
    long const before = madeAllocations();
    tree.remove(&iterator);
    tree.removeNode(tree.lastNode());
    tree.removeNode(tree.getNode(&items[10]));
    tree.empty();
    EXPECT_EQ(madeAllocations(), before);
    EXPECT_EQ(tree.size, 0);
}

TEST(QORRBTree, GoesOnWhenTheElementUnderAWalkIsRemovedByOthers) {
    char const items[6] = {};
    QORRBTree tree;
    for (char const& item : items)
        tree.add(&item, true, nullptr);
    QORRBTree::Iterator iterator(tree, true);
    for (char const& item : items) {
        EXPECT_EQ(iterator.get(), &item);
        tree.removeNode(tree.getNode(&item));
        EXPECT_EQ(iterator.get(), nullptr);
        iterator.next(1);
    }
    EXPECT_EQ(iterator.get(), nullptr);
    EXPECT_EQ(tree.size, 0);
}

TEST(QORRBTree, GoesOnBackwardsWhenTheElementUnderAWalkIsRemovedByOthers) {
    char const items[6] = {};
    QORRBTree tree;
    for (char const& item : items)
        tree.add(&item, true, nullptr);
    QORRBTree::Iterator iterator(tree, false);
    iterator.moveToLast();
    for (int i = 5; i >= 0; --i) {
        EXPECT_EQ(iterator.get(), &items[i]);
        tree.removeNode(tree.getNode(&items[i]));
        EXPECT_EQ(iterator.get(), nullptr);
        iterator.previous(1);
    }
    EXPECT_EQ(iterator.get(), nullptr);
    EXPECT_EQ(tree.size, 0);
}

TEST(QORRBTree, SkipsAChainOfRemovedFollowers) {
    char const items[8] = {};
    QORRBTree tree;
    for (char const& item : items)
        tree.add(&item, true, nullptr);
    QORRBTree::Iterator forwards(tree, true);
    forwards.next(2);
    QORRBTree::Iterator backwards(forwards);
    for (int i = 2; i < 6; ++i)
        tree.removeNode(tree.getNode(&items[i]));
    QORRBTree::Iterator const onRemoved(forwards);
    EXPECT_EQ(onRemoved.get(), nullptr);
    EXPECT_TRUE(onRemoved == backwards);
    EXPECT_EQ(forwards.next(0), nullptr);
    EXPECT_EQ(forwards.next(1), &items[6]);
    EXPECT_EQ(backwards.previous(1), &items[1]);
    backwards = onRemoved;
    EXPECT_EQ(backwards.next(2), &items[7]);
    for (int i : {7, 6, 1})
        tree.removeNode(tree.getNode(&items[i]));
    QORRBTree::Iterator atEnd(onRemoved);
    EXPECT_EQ(atEnd.next(1), nullptr);
    QORRBTree::Iterator back(onRemoved);
    EXPECT_EQ(back.previous(1), &items[0]);
}

TEST(QORRBTree, MovesAnIteratorBySeveralStepsAndStopsAtTheEnds) {
    char const items[5] = {};
    QORRBTree tree;
    for (char const& item : items)
        tree.add(&item, true, nullptr);
    QORRBTree::Iterator iterator(tree, true);
    EXPECT_EQ(iterator.next(3), &items[3]);
    EXPECT_EQ(iterator.next(0), &items[3]);
    EXPECT_EQ(iterator.previous(0), &items[3]);
    EXPECT_EQ(iterator.previous(2), &items[1]);
    EXPECT_EQ(iterator.next(4), nullptr);
    EXPECT_EQ(iterator.get(), nullptr);
    EXPECT_EQ(iterator.next(1), nullptr);
    EXPECT_EQ(iterator.previous(1), nullptr);
    EXPECT_EQ(iterator.moveToLast(), &items[4]);
    EXPECT_EQ(iterator.previous(5), nullptr);
    EXPECT_EQ(iterator.next(1), nullptr);
    EXPECT_EQ(iterator.moveToLast(), &items[4]);
    EXPECT_EQ(iterator.next(INT_MIN), nullptr);
    EXPECT_EQ(iterator.moveToFirst(), &items[0]);
    EXPECT_EQ(iterator.previous(INT_MIN), nullptr);
}

TEST(QORRBTree, FindsMatchesWithAnIterator) {
    Number const numbers[] = {{1}, {2}, {2}, {2}, {3}};
    NumberTree tree;
    for (Number const& number : numbers)
        tree.addNode(&number, false);
    int const two = 2;
    int const nine = 9;
    QORRBTree::Iterator iterator(tree, true);
    EXPECT_EQ(iterator.findFirst(&two), &numbers[1]);
    EXPECT_EQ(iterator.findNext(&two), &numbers[2]);
    EXPECT_EQ(iterator.findNext(&two), &numbers[3]);
    EXPECT_EQ(iterator.findNext(&two), nullptr);
    EXPECT_EQ(iterator.findLast(&two), &numbers[3]);
    EXPECT_EQ(iterator.findPrevious(&two), &numbers[2]);
    EXPECT_EQ(iterator.findPrevious(&two), &numbers[1]);
    EXPECT_EQ(iterator.findPrevious(&two), nullptr);
    EXPECT_EQ(iterator.findFirst(&nine), nullptr);
    EXPECT_EQ(iterator.findLast(&nine), nullptr);
}

TEST(QORRBTree, ReachesAnItemThatIsAddedAheadOfAWalk) {
    char const items[5] = {};
    QORRBTree tree;
    tree.add(&items[0], true, nullptr);
    tree.add(&items[4], true, nullptr);
    QORRBTree::Iterator iterator(tree, true);
    tree.add(&items[2], true, nullptr);
    EXPECT_EQ(iterator.next(1), &items[2]);
    tree.add(&items[1], true, nullptr);
    EXPECT_EQ(iterator.next(1), &items[4]);
    EXPECT_EQ(iterator.previous(2), &items[1]);
}

TEST(QORRBTree, KeepsItsNodeSmall) {
    EXPECT_LE(sizeof(QORRBTreeNode), sizeof(void*) == 8 ? 40U : 24U);
}
