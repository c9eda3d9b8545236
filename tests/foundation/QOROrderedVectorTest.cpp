#include <qor/QOROrderedVector.h>

#include <AllocationControl.h>
#include <IteratorModel.h>
#include <VectorModel.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <vector>

namespace {

std::vector<void const*> itemsOf(QORVector const& vector) {
    std::vector<void const*> items;
    for (int i = 0; i < vector.size; ++i)
        items.push_back(vector[i]);
    return items;
}

} // namespace

TEST(QOROrderedVector, BehavesLikeAStandardVectorOverManyRandomOperations) {
    char const items[60] = {};
    VectorRules rules{[](void const* a, void const* b) { return a == b; }, {}, {}, {}};
    rules.matches = rules.equal;
    for (char const& item : items) {
        rules.items.push_back(&item);
        rules.keys.push_back(&item);
    }
    compareVectorWithModel<QOROrderedVector>(rules, 5, 15000);
}

TEST(QOROrderedVector, KeepsItsIteratorsInStepOverManyRandomOperations) {
    compareIteratorsWithModel<QOROrderedVector>([] { return std::make_unique<QOROrderedVector>(); },
                                                {false, true}, 9, 20000);
}

TEST(QOROrderedVector, KeepsTheOrderOfWhatRemains) {
    char const items[6] = {};
    QOROrderedVector vector;
    for (char const& item : items)
        vector.add(&item, true, nullptr);
    QOROrderedVector::Iterator iterator(vector, true);
    iterator.next(2);
    EXPECT_TRUE(vector.remove(&iterator));
    EXPECT_EQ(iterator.get(), &items[3]);
    EXPECT_EQ(vector.removeElement(0), &items[0]);
    EXPECT_EQ(vector.removeElement(3), &items[5]);
    EXPECT_EQ(itemsOf(vector), (std::vector<void const*>{&items[1], &items[3], &items[4]}));
}

TEST(QOROrderedVector, InsertsBeforeAnyPosition) {
    char const items[6] = {};
    QOROrderedVector vector;
    vector.insertElement(&items[2], 0);
    vector.insertElement(&items[0], 0);
    vector.insertElement(&items[1], 1);
    vector.insertElement(&items[3], 3);
    vector.insertElement(&items[4], 99);
    vector.insertElement(&items[5], -7);
    EXPECT_EQ(itemsOf(vector),
              (std::vector<void const*>{&items[5], &items[0], &items[1], &items[2], &items[3], &items[4]}));
}

TEST(QOROrderedVector, InsertsLikeAStandardVectorOverManyRandomOperations) {
    char const items[50] = {};
    std::mt19937 random(11);
    auto const pick = [&](int below) { return std::uniform_int_distribution<int>(0, below - 1)(random); };
    QOROrderedVector vector;
    std::vector<void const*> expected;
    for (int i = 0; i < 20000; ++i) {
        int const count = static_cast<int>(expected.size());
        if (pick(2) == 0 && count < 100) {
            int const position = pick(count + 1);
            void const* const item = &items[pick(50)];
            vector.insertElement(item, position);
            expected.insert(expected.begin() + position, item);
        } else if (count > 0) {
            int const position = pick(3) ? 0 : pick(count); // leaves room at the front
            ASSERT_EQ(vector.removeElement(position), expected[static_cast<std::size_t>(position)]);
            expected.erase(expected.begin() + position);
        }
        ASSERT_EQ(itemsOf(vector), expected) << "step " << i;
    }
}

TEST(QOROrderedVector, KeepsWalksOnTheirElementsWhenItemsAreInserted) {
    char const items[5] = {};
    QOROrderedVector vector;
    vector.addElement(&items[0], true);
    vector.addElement(&items[1], true);
    QOROrderedVector::Iterator first(vector, true);
    QOROrderedVector::Iterator second(vector, true);
    second.next(1);
    vector.insertElement(&items[2], 1);
    EXPECT_EQ(first.get(), &items[0]);
    EXPECT_EQ(second.get(), &items[1]);
    vector.insertElement(&items[3], 0);
    EXPECT_EQ(first.get(), &items[0]);
    EXPECT_EQ(first.previous(1), &items[3]);
    EXPECT_EQ(second.previous(1), &items[2]);
    vector.removeItem(&items[2]);
    vector.insertElement(&items[4], 2);
    EXPECT_EQ(second.get(), nullptr);
    EXPECT_EQ(second.next(1), &items[1]);
}

TEST(QOROrderedVector, LosesNothingWhenAnInsertionFails) {
    char const items[40] = {};
    QOROrderedVector vector;
    int failures = 0;
    for (char const& item : items) {
        auto const before = itemsOf(vector);
        long const live = liveAllocations();
        failures += failEachAllocation([&] { vector.insertElement(&item, vector.size / 2); },
                                       [&] {
                                           EXPECT_EQ(liveAllocations(), live);
                                           EXPECT_EQ(itemsOf(vector), before);
                                       });
    }
    EXPECT_GT(failures, 2);
    EXPECT_EQ(vector.size, 40);
}
