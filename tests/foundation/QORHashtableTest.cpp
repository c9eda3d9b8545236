#include <qor/QORHashtable.h>

#include <AllocationControl.h>
#include <IteratorModel.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <memory>
#include <random>
#include <vector>

namespace {

struct Number {
    int value;
};

/// Numbers by value; a key is an `int const*`. Hashes are small, so that buckets are shared.
class NumberTable : public QORHashtable {
public:
    using QORHashtable::QORHashtable;

    int compare2Object(void const* a, void const* b) const override {
        return static_cast<Number const*>(a)->value - static_cast<Number const*>(b)->value;
    }
    int compare2Key(void const* item, void const* key) const override {
        return static_cast<Number const*>(item)->value - *static_cast<int const*>(key);
    }
    unsigned long hashObject(void const* item) const override {
        ++hashedObjects;
        return static_cast<unsigned long>(static_cast<Number const*>(item)->value % 10);
    }
    unsigned long hashKey(void const* key) const override {
        ++hashedKeys;
        return static_cast<unsigned long>(*static_cast<int const*>(key) % 10);
    }
    mutable int hashedObjects = 0;
    mutable int hashedKeys = 0;
};

std::vector<Number const*> itemsOf(QORHashtable const& table) {
    std::vector<Number const*> items;
    QORHashtable::Iterator iterator(table, true);
    for (void* item = iterator.get(); item; item = iterator.next(1))
        items.push_back(static_cast<Number const*>(item));
    return items;
}

} // namespace

TEST(QORHashtable, HashesThePointerByDefault) {
    QORHashtable const table(3);
    char const items[2] = {};
    EXPECT_EQ(table.hashObject(&items[0]), reinterpret_cast<std::uintptr_t>(&items[0]));
    EXPECT_EQ(table.hashKey(&items[1]), reinterpret_cast<std::uintptr_t>(&items[1]));
    EXPECT_EQ(table.hashObject(nullptr), 0U);
}

TEST(QORHashtable, BehavesLikeAListOverManyRandomOperations) {
    std::vector<Number> numbers(60);
    for (int i = 0; i < 60; ++i)
        numbers[static_cast<std::size_t>(i)].value = i * 7 % 40; // some are equal
    std::mt19937 random(12);
    auto const pick = [&](int below) { return std::uniform_int_distribution<int>(0, below - 1)(random); };
    auto table = std::make_unique<NumberTable>(7);
    std::vector<Number const*> expected;
    std::size_t largest = 0;
    for (int i = 0; i < 30000; ++i) {
        SCOPED_TRACE(testing::Message() << "seed 12, step " << i);
        Number const* const item = &numbers[static_cast<std::size_t>(pick(60))];
        int const key = item->value;
        auto const equal = [&](Number const* each) { return each->value == key; };
        auto const first = std::find_if(expected.begin(), expected.end(), equal);
        auto const last = std::find_if(expected.rbegin(), expected.rend(), equal);
        QORHashtable::Iterator iterator;
        int const operation = pick(i / 500 % 2 ? 9 : 12);
        if (operation < 3) {
            ASSERT_EQ(table->contains(item, &iterator), first != expected.end());
            ASSERT_EQ(iterator.get(), first == expected.end() ? nullptr : *first);
            ASSERT_EQ(table->remove(&iterator), first != expected.end());
            if (first != expected.end())
                expected.erase(first);
        } else if (operation == 3) {
            ASSERT_EQ(table->findFirst(&key, &iterator), first == expected.end() ? nullptr : *first);
            ASSERT_EQ(iterator.get(), first == expected.end() ? nullptr : *first);
            ASSERT_EQ(table->findFirst(&key, nullptr), iterator.get());
        } else if (operation == 4) {
            ASSERT_EQ(table->findLast(&key, &iterator), last == expected.rend() ? nullptr : *last);
            ASSERT_EQ(iterator.get(), last == expected.rend() ? nullptr : *last);
            ASSERT_EQ(table->findLast(&key, nullptr), iterator.get());
        } else if (operation == 5 && pick(40) == 0) {
            int const kind = pick(4);
            if (kind == 0) {
                table->empty();
                expected.clear();
            } else if (kind == 1) {
                table->resize(1 + pick(30));
            } else if (kind == 2) {
                table = std::make_unique<NumberTable>(*table);
            } else {
                auto target = std::make_unique<NumberTable>(3);
                target->add(item, true, nullptr);
                *target = *table;
                ASSERT_TRUE(*target == *table);
                table = std::move(target);
            }
        } else {
            bool const unique = pick(3) != 0;
            bool const refused = unique && first != expected.end();
            ASSERT_EQ(table->add(item, unique, &iterator), !refused);
            ASSERT_EQ(iterator.get(), refused ? nullptr : item);
            if (!refused)
                expected.push_back(item);
        }
        ASSERT_EQ(table->size, static_cast<int>(expected.size()));
        ASSERT_EQ(itemsOf(*table), expected);
        largest = std::max(largest, expected.size());
    }
    EXPECT_GT(largest, 40U);
}

TEST(QORHashtable, KeepsItsIteratorsInStepOverManyRandomOperations) {
    for (int buckets : {1, 5, 151})
        compareIteratorsWithModel<QORHashtable>([buckets] { return std::make_unique<QORHashtable>(buckets); },
                                                {false, false}, 10, 15000);
}

TEST(QORHashtable, PicksBucketsByTheVirtualHashes) {
    Number const number{7};
    NumberTable table(151);
    table.add(&number, true, nullptr);
    EXPECT_GT(table.hashedObjects, 0);
    EXPECT_EQ(table.hashedKeys, 0);
    table.hashedObjects = 0;
    int const key = 7;
    EXPECT_EQ(table.findFirst(&key, nullptr), &number);
    EXPECT_EQ(table.findLast(&key, nullptr), &number);
    EXPECT_EQ(table.hashedKeys, 2);
    EXPECT_EQ(table.hashedObjects, 0);
    EXPECT_TRUE(table.contains(&number, nullptr));
    EXPECT_EQ(table.hashedObjects, 1);
}

TEST(QORHashtable, TellsItemsOfOneBucketApart) {
    Number const numbers[] = {{1}, {11}, {21}};
    NumberTable table(151);
    for (Number const& number : numbers)
        EXPECT_TRUE(table.add(&number, true, nullptr));
    for (Number const& number : numbers)
        EXPECT_EQ(table.findFirst(&number.value, nullptr), &number);
    int const missing = 31;
    EXPECT_EQ(table.findFirst(&missing, nullptr), nullptr);
    EXPECT_EQ(table.findLast(&missing, nullptr), nullptr);
}

TEST(QORHashtable, FindsFirstAndLastOfEqualItems) {
    Number const numbers[] = {{4}, {14}, {4}, {5}, {4}};
    NumberTable table(3);
    for (Number const& number : numbers)
        EXPECT_TRUE(table.add(&number, false, nullptr));
    EXPECT_FALSE(table.add(&numbers[2], true, nullptr));
    int const four = 4;
    int const five = 5;
    EXPECT_EQ(table.findFirst(&four, nullptr), &numbers[0]);
    EXPECT_EQ(table.findLast(&four, nullptr), &numbers[4]);
    QORHashtable::Iterator iterator(table, false);
    EXPECT_EQ(iterator.findFirst(&four), &numbers[0]);
    EXPECT_EQ(iterator.findNext(&four), &numbers[2]);
    EXPECT_EQ(iterator.findNext(&four), &numbers[4]);
    EXPECT_EQ(iterator.findNext(&four), nullptr);
    EXPECT_EQ(iterator.findLast(&four), &numbers[4]);
    EXPECT_EQ(iterator.findPrevious(&five), &numbers[3]);
    EXPECT_EQ(iterator.findPrevious(&four), &numbers[2]);
    EXPECT_EQ(iterator.findNext(&five), &numbers[3]);
    EXPECT_EQ(iterator.findPrevious(&five), nullptr);
}

TEST(QORHashtable, FindsEverythingAfterResizing) {
    std::vector<Number> numbers(100);
    NumberTable table(151);
    for (int i = 0; i < 100; ++i) {
        numbers[static_cast<std::size_t>(i)].value = i;
        table.add(&numbers[static_cast<std::size_t>(i)], true, nullptr);
    }
    for (int buckets : {3, 500, 1, 0, -4}) {
        table.resize(buckets);
        EXPECT_EQ(table.size, 100);
        for (Number const& number : numbers)
            ASSERT_EQ(table.findFirst(&number.value, nullptr), &number);
    }
}

TEST(QORHashtable, ComparesItemsWhateverTheirOrder) {
    Number const numbers[] = {{1}, {2}, {3}};
    NumberTable a(3);
    NumberTable b(7);
    EXPECT_TRUE(a == b);
    for (int i : {0, 1})
        a.add(&numbers[i], true, nullptr);
    EXPECT_TRUE(a != b);
    for (int i : {1, 0})
        b.add(&numbers[i], true, nullptr);
    EXPECT_TRUE(a == b);
    EXPECT_FALSE(a != b);
    QORHashtable::Iterator iterator(b, true);
    b.remove(&iterator);
    b.add(&numbers[2], true, nullptr);
    EXPECT_FALSE(a == b);
    EXPECT_TRUE(a == a);
}

TEST(QORHashtable, LosesAndLeaksNothingWhenAnAllocationFails) {
    Number const numbers[] = {{1}, {2}, {3}};
    NumberTable table(5);
    for (int i : {0, 1})
        table.add(&numbers[i], true, nullptr);
    auto const before = itemsOf(table);
    long live = liveAllocations();
    EXPECT_EQ(failEachAllocation([&] { table.add(&numbers[2], true, nullptr); },
                                 [&] {
                                     EXPECT_EQ(liveAllocations(), live);
                                     EXPECT_EQ(itemsOf(table), before);
                                     EXPECT_EQ(table.size, 2);
                                     EXPECT_FALSE(table.contains(&numbers[2], nullptr));
                                 }),
              1);
    NumberTable target(2);
    target.add(&numbers[1], true, nullptr);
    live = liveAllocations();
    EXPECT_EQ(failEachAllocation([&] { target = table; },
                                 [&] {
                                     EXPECT_EQ(liveAllocations(), live);
                                     EXPECT_EQ(itemsOf(target), std::vector<Number const*>{&numbers[1]});
                                 }),
              4); // the buckets and three items
    EXPECT_EQ(itemsOf(target), itemsOf(table));
    live = liveAllocations();
    EXPECT_EQ(failEachAllocation([&] { table.resize(9); },
                                 [&] {
                                     EXPECT_EQ(liveAllocations(), live);
                                     EXPECT_EQ(table.findFirst(&numbers[2].value, nullptr), &numbers[2]);
                                 }),
              1);
}

TEST(QORHashtable, AllocatesNothingWhenItemsLeave) {
    Number const numbers[] = {{1}, {2}, {3}};
    NumberTable table(5);
    for (Number const& number : numbers)
        table.add(&number, true, nullptr);
    QORHashtable::Iterator iterator(table, true);
    QORHashtable::Iterator const witness(table, true);
    long const before = madeAllocations();
    table.remove(&iterator);
    int const left = table.size;
    table.empty();
    EXPECT_EQ(madeAllocations(), before);
    EXPECT_EQ(left, 2);
    EXPECT_EQ(table.size, 0);
}

TEST(QORHashtable, GoesOnWhenTheElementUnderAWalkIsRemovedByOthers) {
    Number const numbers[] = {{1}, {2}, {3}, {4}, {5}};
    NumberTable table(3);
    auto const removeNumber = [&](Number const& number) {
        QORHashtable::Iterator finder;
        table.contains(&number, &finder);
        return table.remove(&finder);
    };
    for (Number const& number : numbers)
        table.add(&number, true, nullptr);
    QORHashtable::Iterator iterator(table, true);
    for (Number const& number : numbers) {
        EXPECT_EQ(iterator.get(), &number);
        EXPECT_TRUE(removeNumber(number));
        EXPECT_EQ(iterator.get(), nullptr);
        iterator.next(1);
    }
    EXPECT_EQ(iterator.get(), nullptr);
    for (Number const& number : numbers)
        table.add(&number, true, nullptr);
    iterator.moveToLast();
    for (int i = 4; i >= 0; --i) {
        EXPECT_EQ(iterator.get(), &numbers[i]);
        EXPECT_TRUE(removeNumber(numbers[i]));
        iterator.previous(1);
    }
    EXPECT_EQ(iterator.get(), nullptr);
    EXPECT_EQ(table.size, 0);
}

TEST(QORHashtable, SkipsAChainOfRemovedFollowersAndMayDieBeforeItsIterators) {
    Number const numbers[] = {{0}, {1}, {2}, {3}, {4}};
    QORHashtable::Iterator standing;
    QORHashtable::Iterator copy;
    {
        NumberTable table(3);
        for (Number const& number : numbers)
            table.add(&number, true, nullptr);
        table.contains(&numbers[1], &standing);
        copy = standing;
        for (int i : {1, 2, 3}) {
            QORHashtable::Iterator finder;
            table.contains(&numbers[i], &finder);
            table.remove(&finder);
        }
        EXPECT_EQ(standing.get(), nullptr);
        EXPECT_TRUE(standing == copy);
        EXPECT_EQ(standing.next(1), &numbers[4]);
        EXPECT_EQ(copy.previous(1), &numbers[0]);
        EXPECT_EQ(copy.next(7), nullptr);
        copy = standing;
    }
    EXPECT_EQ(standing.get(), nullptr);
    EXPECT_EQ(copy.next(1), nullptr);
}

TEST(QORHashtable, LeavesAnIteratorOnNothingForTheLowestNumberOfSteps) {
    Number const number{1};
    NumberTable table(3);
    table.add(&number, true, nullptr);
    QORHashtable::Iterator iterator(table, true);
    EXPECT_EQ(iterator.next(INT_MIN), nullptr);
    EXPECT_EQ(iterator.get(), nullptr);
    EXPECT_EQ(iterator.moveToFirst(), &number);
    EXPECT_EQ(iterator.previous(INT_MIN), nullptr);
    EXPECT_EQ(iterator.get(), nullptr);
}

TEST(QORHashtable, TellsIteratorsOfTwoTablesApart) {
    NumberTable const a(3);
    NumberTable const b(3);
    EXPECT_TRUE(QORHashtable::Iterator(a, true) == QORHashtable::Iterator(a, true));
    EXPECT_TRUE(QORHashtable::Iterator(a, true) != QORHashtable::Iterator(b, true));
}
