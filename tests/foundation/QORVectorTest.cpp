#include <qor/QORVector.h>

#include <AllocationControl.h>
#include <IteratorModel.h>
#include <VectorModel.h>

#include <gtest/gtest.h>

#include <climits>
#include <memory>
#include <vector>

namespace {

/// Compares numbers, so that equal items needn't be the same.
class NumberVector : public QORVector {
public:
    int compare2Object(void const* a, void const* b) const override { return compare2Key(a, b); }
    int compare2Key(void const* item, void const* key) const override {
        return *static_cast<int const*>(item) - *static_cast<int const*>(key);
    }
};

std::vector<void const*> itemsOf(QORVector const& vector) {
    std::vector<void const*> items;
    for (int i = 0; i < vector.size; ++i)
        items.push_back(vector[i]);
    return items;
}

template <int count>
void fill(QORVector& vector, char const (&items)[count]) {
    for (char const& item : items)
        vector.add(&item, false, nullptr);
}

} // namespace

TEST(QORVector, BehavesLikeAStandardVectorOverManyRandomOperations) {
    int numbers[80] = {};
    VectorRules rules{[](void const* a, void const* b) {
                          return *static_cast<int const*>(a) == *static_cast<int const*>(b);
                      },
                      {},
                      {},
                      {}};
    rules.matches = rules.equal;
    for (int i = 0; i < 80; ++i) {
        numbers[i] = i * 7 % 50; // some are equal
        rules.items.push_back(&numbers[i]);
        rules.keys.push_back(&numbers[i]);
    }
    for (unsigned seed : {3U, 33U})
        compareVectorWithModel<NumberVector>(rules, seed, 15000);
}

TEST(QORVector, ComparesByAddressOverManyRandomOperations) {
    char const items[60] = {};
    VectorRules rules{[](void const* a, void const* b) { return a == b; }, {}, {}, {}};
    rules.matches = rules.equal;
    for (char const& item : items) {
        rules.items.push_back(&item);
        rules.keys.push_back(&item);
    }
    compareVectorWithModel<QORVector>(rules, 4, 15000);
}

TEST(QORVector, KeepsItsIteratorsInStepOverManyRandomOperations) {
    for (unsigned seed : {8U, 88U, 888U})
        compareIteratorsWithModel<QORVector>([] { return std::make_unique<QORVector>(); }, {false, true},
                                             seed, 20000);
}

TEST(QORVector, AppendsAtTheEndInTheOrderOfAdding) {
    char const items[3] = {};
    QORVector vector;
    EXPECT_EQ(vector.addElement(&items[2], true), 0);
    EXPECT_EQ(vector.addElement(&items[0], true), 1);
    EXPECT_EQ(vector.addElement(&items[2], true), -1);
    EXPECT_EQ(vector.addElement(&items[2], false), 2);
    EXPECT_EQ(vector.addElement(&items[1], false), 3);
    EXPECT_EQ(itemsOf(vector), (std::vector<void const*>{&items[2], &items[0], &items[2], &items[1]}));
    EXPECT_EQ(vector.containsElement(&items[2]), 0);
    EXPECT_EQ(vector.containsElement(&items[1]), 3);
}

TEST(QORVector, SearchesInTheDirectionThatTheNameSays) {
    int const numbers[] = {5, 1, 5, 2, 5};
    NumberVector vector;
    for (int const& number : numbers)
        vector.add(&number, false, nullptr);
    int const five = 5;
    int const nine = 9;
    EXPECT_EQ(vector.findFirstElement(&five), 0);
    EXPECT_EQ(vector.findLastElement(&five), 4);
    EXPECT_EQ(vector.findNextElement(&five, -1), 0);
    EXPECT_EQ(vector.findNextElement(&five, 0), 2);
    EXPECT_EQ(vector.findNextElement(&five, 2), 4);
    EXPECT_EQ(vector.findNextElement(&five, 4), -1);
    EXPECT_EQ(vector.findNextElement(&five, INT_MAX), -1);
    EXPECT_EQ(vector.findPreviousElement(&five, 5), 4);
    EXPECT_EQ(vector.findPreviousElement(&five, 4), 2);
    EXPECT_EQ(vector.findPreviousElement(&five, 1), 0);
    EXPECT_EQ(vector.findPreviousElement(&five, 0), -1);
    EXPECT_EQ(vector.findPreviousElement(&five, INT_MIN), -1);
    EXPECT_EQ(vector.findFirstElement(&nine), -1);
    EXPECT_EQ(vector.findLastElement(&nine), -1);
}

TEST(QORVector, GivesNullOutOfRange) {
    char const items[2] = {};
    QORVector vector;
    EXPECT_EQ(vector[0], nullptr);
    EXPECT_EQ(vector.removeElement(0), nullptr);
    EXPECT_EQ(vector.findFirstElement(&items[0]), -1);
    EXPECT_EQ(vector.findNextElement(&items[0], 0), -1);
    EXPECT_EQ(vector.findPreviousElement(&items[0], 3), -1);
    fill(vector, items);
    for (int position : {-1, 2, INT_MAX, INT_MIN}) {
        EXPECT_EQ(vector[position], nullptr);
        EXPECT_EQ(vector.removeElement(position), nullptr);
    }
    EXPECT_EQ(vector.size, 2);
}

TEST(QORVector, ComparesItemsInPairs) {
    int const numbers[] = {1, 2, 1, 3};
    NumberVector a;
    NumberVector b;
    EXPECT_TRUE(a == b);
    a.add(&numbers[0], true, nullptr);
    EXPECT_TRUE(a != b);
    b.add(&numbers[2], true, nullptr);
    EXPECT_TRUE(a == b);
    a.add(&numbers[1], true, nullptr);
    b.add(&numbers[3], true, nullptr);
    EXPECT_FALSE(a == b);
    EXPECT_TRUE(a == a);
}

TEST(QORVector, RemovesTheVeryItemWhateverComparesEqualToIt) {
    int const numbers[] = {1, 1, 1};
    NumberVector vector;
    for (int const& number : numbers)
        vector.add(&number, false, nullptr);
    int const stranger = 1;
    EXPECT_FALSE(vector.removeItem(&stranger));
    EXPECT_TRUE(vector.removeItem(&numbers[1]));
    EXPECT_EQ(itemsOf(vector), (std::vector<void const*>{&numbers[0], &numbers[2]}));
}

TEST(QORVector, DrainsFromTheFrontWhileItsSizeStays) {
    char const items[5] = {};
    QORVector vector;
    fill(vector, items);
    long const before = madeAllocations();
    bool inOrder = true;
    for (char const& item : items)
        inOrder &= vector.drainFirst() == &item && vector.size == 5;
    bool const atEnd = vector.drainFirst() == nullptr;
    vector.endDraining();
    EXPECT_EQ(madeAllocations(), before);
    EXPECT_TRUE(inOrder);
    EXPECT_TRUE(atEnd);
    EXPECT_EQ(vector.size, 0);
    EXPECT_EQ(vector.addElement(&items[2], true), 0);
}

TEST(QORVector, LeadsTheWalksOnFromWhatIsDrained) {
    char const items[3] = {};
    QORVector vector;
    fill(vector, items);
    QORVector::Iterator onwards(vector, true);
    QORVector::Iterator back(vector, true);
    vector.drainFirst();
    EXPECT_EQ(onwards.get(), nullptr);
    EXPECT_EQ(onwards.next(1), &items[1]);
    EXPECT_EQ(back.previous(1), nullptr);
    vector.drainFirst();
    EXPECT_EQ(onwards.next(1), &items[2]);
    vector.drainFirst();
    EXPECT_EQ(onwards.next(1), nullptr);
    vector.endDraining();
    EXPECT_EQ(vector.size, 0);
}

TEST(QORVector, AllocatesNothingWhenItemsLeave) {
    char const items[20] = {};
    QORVector vector;
    fill(vector, items);
    QORVector::Iterator iterator(vector, true);
    QORVector::Iterator const witness(vector, true);
    long const before = madeAllocations();
    vector.remove(&iterator);
    vector.removeElement(4);
    vector.removeItem(&items[15]);
    int const left = vector.size;
    vector.empty();
    EXPECT_EQ(madeAllocations(), before);
    EXPECT_EQ(left, 17);
    EXPECT_EQ(vector.size, 0);
}

TEST(QORVector, LosesAndLeaksNothingWhenAnAllocationFails) {
    char const items[70] = {};
    QORVector vector;
    QORVector::Iterator witness;
    int failures = 0;
    for (int i = 0; i < 70; ++i) {
        auto const before = itemsOf(vector);
        long const live = liveAllocations();
        failures += failEachAllocation([&] { vector.add(&items[i], true, nullptr); },
                                       [&] {
                                           EXPECT_EQ(liveAllocations(), live);
                                           EXPECT_EQ(itemsOf(vector), before);
                                           if (i > 0) {
                                               EXPECT_EQ(witness.get(), &items[0]);
                                           }
                                       });
        EXPECT_EQ(vector.size, i + 1);
        witness.moveTo(vector, true);
    }
    EXPECT_GT(failures, 3);
    char const other[2] = {};
    QORVector target;
    fill(target, other);
    auto const before = itemsOf(target);
    long const live = liveAllocations();
    failures = failEachAllocation([&] { target = vector; },
                                  [&] {
                                      EXPECT_EQ(liveAllocations(), live);
                                      EXPECT_EQ(itemsOf(target), before);
                                  });
    EXPECT_GT(failures, 0);
    EXPECT_EQ(itemsOf(target), itemsOf(vector));
}

TEST(QORVector, GrowsRarely) {
    char const item = 0;
    QORVector vector;
    long const before = madeAllocations();
    for (int i = 0; i < 100000; ++i)
        vector.add(&item, false, nullptr);
    EXPECT_LT(madeAllocations() - before, 40);
}

TEST(QORVector, HasRoomForWhatWasReserved) {
    char const items[30] = {};
    QORVector vector;
    vector.addElement(&items[0], true);
    vector.reserve(30);
    vector.reserve(3);
    long const before = madeAllocations();
    for (int i = 1; i < 30; ++i)
        vector.addElement(&items[i], true);
    EXPECT_EQ(madeAllocations(), before);
    EXPECT_EQ(vector.size, 30);
    EXPECT_EQ(vector[29], &items[29]);
}

TEST(QORVector, MovesAnItemToTheEndWithoutAnyMemory) {
    char const items[200] = {};
    char const stranger = 0;
    for (int count = 1; count <= 200; ++count) {
        QORVector vector;
        std::vector<void const*> expected;
        for (int i = 0; i < count; ++i) {
            vector.addElement(&items[i], true);
            expected.push_back(&items[i]);
        }
        if (count % 2 == 0)
            vector.buildIndex();
        for (int from : {0, count / 2, count - 1, 0, 0, count / 3, 0}) {
            void const* const item = expected[static_cast<std::size_t>(from)];
            expected.erase(expected.begin() + from);
            expected.push_back(item);
            long const before = madeAllocations();
            bool const moved = vector.moveToEnd(item);
            ASSERT_EQ(madeAllocations(), before) << count << " items, from " << from;
            ASSERT_TRUE(moved);
            ASSERT_EQ(itemsOf(vector), expected);
        }
        ASSERT_FALSE(vector.moveToEnd(&stranger));
        ASSERT_EQ(vector.size, count);
    }
}

TEST(QORVector, KeepsItsOrderAndItsIteratorsWithAnIndex) {
    char const items[300] = {};
    VectorRules rules{[](void const* a, void const* b) { return a == b; }, {}, {}, {}};
    rules.matches = rules.equal;
    for (char const& item : items) {
        rules.items.push_back(&item);
        rules.keys.push_back(&item);
    }
    rules.distinct = true;
    rules.phase = 1500;
    struct Indexed : QORVector {
        bool add(void const* item, bool unique, QORContainer::Iterator* iterator) override {
            bool const added = QORVector::add(item, unique, iterator);
            buildIndex();
            return added;
        }
        int addElement(void const* item, bool unique) override {
            int const place = QORVector::addElement(item, unique);
            buildIndex();
            return place;
        }
    };
    compareVectorWithModel<Indexed>(rules, 6, 6000);
    compareIteratorsWithModel<Indexed>([] { return std::make_unique<Indexed>(); }, {false, true, 200, 2500},
                                       14, 20000);
}

TEST(QORVector, DropsItsIndexForAnItemThatStandsInItTwice) {
    char const items[100] = {};
    for (bool unique : {true, false}) {
        QORVector vector;
        std::vector<void const*> expected;
        for (char const& item : items) {
            vector.addElement(&item, true);
            expected.push_back(&item);
        }
        vector.buildIndex();
        for (int position : {70, 40, 30, 0}) {
            EXPECT_EQ(vector.removeElement(position), expected[static_cast<std::size_t>(position)]);
            expected.erase(expected.begin() + position);
        }
        EXPECT_EQ(vector.addElement(&items[50], unique), unique ? -1 : 96);
        if (!unique)
            expected.push_back(&items[50]);
        EXPECT_EQ(itemsOf(vector), expected);
        vector.addElement(nullptr, false);
        expected.push_back(nullptr);
        EXPECT_EQ(itemsOf(vector), expected);
        EXPECT_EQ(vector.containsElement(&items[50]), 47);
        EXPECT_TRUE(vector.removeItem(&items[50]));
        EXPECT_EQ(vector.containsElement(&items[50]), unique ? -1 : 95);
    }
}

TEST(QORVector, FindsTheFirstOfTwoPlacesOfAnItemOnceItHadAnIndex) {
    char const items[100] = {};
    QORVector vector;
    fill(vector, items);
    vector.buildIndex();
    EXPECT_EQ(vector.addElement(&items[50], false), 100);
    EXPECT_EQ(vector.containsElement(&items[50]), 50);
    EXPECT_TRUE(vector.removeItem(&items[50]));
    EXPECT_EQ(vector.containsElement(&items[50]), 99);
    EXPECT_EQ(vector.containsElement(&items[51]), 50);
    EXPECT_TRUE(vector.removeItem(&items[50]));
    EXPECT_EQ(vector.containsElement(&items[50]), -1);
}

TEST(QORVector, BuildsNoIndexOverItemsThatOneCannotHold) {
    char const items[100] = {};
    for (char const* odd : {static_cast<char const*>(nullptr), &items[3]}) {
        QORVector vector;
        vector.buildIndex();
        EXPECT_EQ(vector.size, 0);
        fill(vector, items);
        vector.addElement(odd, false);
        vector.buildIndex();
        EXPECT_EQ(vector.containsElement(odd), odd ? 3 : 100);
        EXPECT_TRUE(vector.removeItem(odd));
        EXPECT_EQ(vector.containsElement(odd), odd ? 99 : -1);
        EXPECT_EQ(vector.size, 100);
    }
}

TEST(QORVector, ReservesRoomForAVectorThatHasNone) {
    char const items[30] = {};
    QORVector vector;
    vector.reserve(0);
    vector.reserve(30);
    long const before = madeAllocations();
    for (char const& item : items)
        vector.addElement(&item, false);
    EXPECT_EQ(madeAllocations(), before);
    EXPECT_EQ(vector.size, 30);
}

TEST(QORVector, GoesOnWithoutAnIndexWhereMemoryIsShort) {
    char const items[100] = {};
    QORVector vector;
    fill(vector, items);
    auto const before = itemsOf(vector);
    long const live = liveAllocations();
    for (long spared : {0, 1, 2}) {
        FailingAllocation const failing(spared);
        vector.buildIndex();
    }
    EXPECT_EQ(liveAllocations(), live);
    EXPECT_EQ(itemsOf(vector), before);
    EXPECT_EQ(vector.containsElement(&items[77]), 77);
    EXPECT_EQ(vector.removeElement(50), &items[50]);
    EXPECT_EQ(vector.containsElement(&items[77]), 76);
}

TEST(QORVector, GivesItsMemoryBackWhenEmpty) {
    char const items[10] = {};
    long const before = liveAllocations();
    QORVector vector;
    fill(vector, items);
    QORVector::Iterator iterator(vector, true);
    vector.releaseMemory();
    EXPECT_EQ(vector.size, 10);
    EXPECT_EQ(iterator.get(), &items[0]);
    vector.empty();
    vector.releaseMemory();
    EXPECT_EQ(liveAllocations(), before);
    EXPECT_EQ(iterator.getContainer(), nullptr);
    EXPECT_EQ(iterator.next(1), nullptr);
    vector.releaseMemory();
    fill(vector, items);
    EXPECT_EQ(vector.size, 10);
}

TEST(QORVector, GoesOnWhenTheElementUnderAWalkIsRemovedByOthers) {
    char const items[6] = {};
    QORVector vector;
    fill(vector, items);
    QORVector::Iterator iterator(vector, true);
    for (char const& item : items) {
        EXPECT_EQ(iterator.get(), &item);
        vector.removeItem(&item);
        EXPECT_EQ(iterator.get(), nullptr);
        iterator.next(1);
    }
    EXPECT_EQ(iterator.get(), nullptr);
    fill(vector, items);
    iterator.moveToLast();
    for (int i = 5; i >= 0; --i) {
        EXPECT_EQ(iterator.get(), &items[i]);
        vector.removeItem(&items[i]);
        EXPECT_EQ(iterator.get(), nullptr);
        iterator.previous(1);
    }
    EXPECT_EQ(iterator.get(), nullptr);
    EXPECT_EQ(vector.size, 0);
}

TEST(QORVector, SkipsAChainOfRemovedFollowers) {
    char const items[8] = {};
    QORVector vector;
    fill(vector, items);
    QORVector::Iterator forwards(vector, true);
    forwards.next(2);
    QORVector::Iterator backwards(forwards);
    for (int i = 2; i < 6; ++i)
        vector.removeItem(&items[i]);
    QORVector::Iterator const onRemoved(forwards);
    EXPECT_EQ(onRemoved.get(), nullptr);
    EXPECT_TRUE(onRemoved == backwards);
    EXPECT_EQ(forwards.next(0), nullptr);
    EXPECT_EQ(forwards.next(1), &items[6]);
    EXPECT_FALSE(onRemoved == forwards);
    EXPECT_EQ(backwards.previous(1), &items[1]);
    backwards = onRemoved;
    EXPECT_EQ(backwards.next(2), &items[7]);
    for (int i : {7, 6, 1})
        vector.removeItem(&items[i]);
    QORVector::Iterator atEnd(onRemoved);
    EXPECT_EQ(atEnd.next(1), nullptr);
    QORVector::Iterator back(onRemoved);
    EXPECT_EQ(back.previous(1), &items[0]);
}

TEST(QORVector, MovesAnIteratorBySeveralStepsAndStopsAtTheEnds) {
    char const items[5] = {};
    QORVector vector;
    fill(vector, items);
    QORVector::Iterator iterator(vector, true);
    EXPECT_EQ(iterator.next(3), &items[3]);
    EXPECT_EQ(iterator.next(0), &items[3]);
    EXPECT_EQ(iterator.previous(2), &items[1]);
    EXPECT_EQ(iterator.previous(0), &items[1]);
    EXPECT_EQ(iterator.next(INT_MAX), nullptr);
    EXPECT_EQ(iterator.get(), nullptr);
    EXPECT_EQ(iterator.next(1), nullptr);
    EXPECT_EQ(iterator.previous(1), nullptr);
    EXPECT_EQ(iterator.moveToLast(), &items[4]);
    EXPECT_EQ(iterator.previous(INT_MAX), nullptr);
    EXPECT_EQ(iterator.next(1), nullptr);
    EXPECT_EQ(iterator.moveToFirst(), &items[0]);
    EXPECT_EQ(iterator.next(-1), nullptr);
    iterator.moveToFirst();
    EXPECT_EQ(iterator.next(INT_MIN), nullptr);
    iterator.moveToFirst();
    EXPECT_EQ(iterator.previous(INT_MIN), nullptr);
}

TEST(QORVector, MovesAnIteratorToAPosition) {
    char const items[3] = {};
    QORVector vector;
    fill(vector, items);
    QORVector::Iterator iterator(vector, false);
    EXPECT_EQ(iterator.moveTo(1), &items[1]);
    EXPECT_EQ(iterator.next(1), &items[2]);
    EXPECT_EQ(iterator.moveTo(3), nullptr);
    EXPECT_EQ(iterator.moveTo(0), &items[0]);
    EXPECT_EQ(iterator.moveTo(-1), nullptr);
    EXPECT_EQ(iterator.next(1), nullptr);
    QORVector::Iterator unattached;
    EXPECT_EQ(unattached.moveTo(0), nullptr);
}

TEST(QORVector, LeavesAWalkThatHasEndedOnNothing) {
    char const items[3] = {};
    QORVector vector;
    QORVector::Iterator ofEmpty(vector, true);
    vector.addElement(&items[0], true);
    EXPECT_EQ(ofEmpty.get(), nullptr);
    QORVector::Iterator ended(vector, true);
    ended.next(1);
    vector.addElement(&items[1], true);
    EXPECT_EQ(ended.get(), nullptr);
    vector.empty();
    vector.addElement(&items[2], true);
    EXPECT_EQ(ended.next(1), nullptr);
    EXPECT_EQ(ended.get(), nullptr);
}

TEST(QORVector, ReachesAnItemThatIsAddedAheadOfAWalk) {
    char const items[40] = {};
    QORVector vector;
    vector.addElement(&items[0], true);
    QORVector::Iterator iterator(vector, true);
    for (int i = 1; i < 40; ++i) { // the vector grows several times meanwhile
        vector.addElement(&items[i], true);
        EXPECT_EQ(iterator.next(1), &items[i]);
    }
    EXPECT_EQ(iterator.next(1), nullptr);
}

TEST(QORVector, FreesItsIteratorsWhenItDies) {
    char const items[2] = {};
    auto vector = std::make_unique<QORVector>();
    fill(*vector, items);
    QORVector::Iterator first(*vector, true);
    QORVector::Iterator onRemoved(*vector, true);
    vector->removeElement(0);
    QORVector::Iterator second(*vector, true);
    vector.reset();
    for (QORVector::Iterator* iterator : {&first, &onRemoved, &second}) {
        EXPECT_EQ(iterator->getContainer(), nullptr);
        EXPECT_EQ(iterator->get(), nullptr);
        EXPECT_EQ(iterator->next(1), nullptr);
        EXPECT_EQ(iterator->moveToFirst(), nullptr);
    }
    QORVector other;
    fill(other, items);
    first.moveTo(other, true);
    EXPECT_EQ(first.get(), &items[0]);
}

TEST(QORVector, TellsIteratorsOfTwoVectorsApart) {
    QORVector const a;
    QORVector const b;
    EXPECT_TRUE(QORVector::Iterator(a, true) == QORVector::Iterator(a, true));
    EXPECT_TRUE(QORVector::Iterator(a, true) != QORVector::Iterator(b, true));
}
