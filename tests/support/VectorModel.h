#pragma once

#include <qor/QORVector.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <memory>
#include <random>
#include <vector>

/// What a class of vectors is told to do, and what it is tried with.
struct VectorRules {
    std::function<bool(void const*, void const*)> equal;
    std::function<bool(void const*, void const*)> matches; ///< item and key
    std::vector<void const*> items;
    std::vector<void const*> keys;
    bool distinct = false; ///< only unique adds
    int phase = 400;       ///< steps for which the vector grows, and then shrinks
};

/// Runs random operations on a vector and on a std::vector and compares results and elements after each.
template <class Vector>
class VectorModel {
public:
    VectorModel(VectorRules const& classRules, unsigned seed)
        : rules(classRules), random(seed), vector(std::make_unique<Vector>()) {}

    void run(int steps) {
        for (int i = 0; i < steps && !testing::Test::HasFailure(); ++i) {
            growing = i / rules.phase % 2 == 0;
            int const operation = pick(20);
            SCOPED_TRACE(testing::Message() << "step " << i << ", operation " << operation);
            step(operation);
            compare();
        }
        EXPECT_GT(largest, rules.phase / 20) << "the run hasn't come far";
    }

private:
    int pick(int below) { return std::uniform_int_distribution<int>(0, below - 1)(random); }
    void const* any(std::vector<void const*> const& entries) {
        return entries[static_cast<std::size_t>(pick(static_cast<int>(entries.size())))];
    }
    int count() const { return static_cast<int>(elements.size()); }
    void const* at(int index) const {
        return index >= 0 && index < count() ? elements[static_cast<std::size_t>(index)] : nullptr;
    }
    /// The first index from `from` on, in steps of `step`, whose element is wanted; -1 if none is.
    int scan(int from, int step, std::function<bool(void const*)> const& wanted) const {
        for (int i = from; i >= 0 && i < count(); i += step)
            if (wanted(at(i)))
                return i;
        return -1;
    }
    int scanForKey(int from, int step, void const* key) const {
        return scan(from, step, [&](void const* item) { return rules.matches(item, key); });
    }
    int scanForEqual(void const* item) const {
        return scan(0, 1, [&](void const* each) { return rules.equal(each, item); });
    }

    void add() {
        void const* const item = any(rules.items);
        bool const unique = rules.distinct || pick(2) == 0;
        bool const refused = unique && scanForEqual(item) != -1;
        if (pick(2)) {
            ASSERT_EQ(vector->addElement(item, unique), refused ? -1 : count());
        } else {
            typename Vector::Iterator iterator;
            ASSERT_EQ(vector->add(item, unique, pick(2) ? &iterator : nullptr), !refused);
            if (iterator.getContainer()) {
                ASSERT_EQ(iterator.get(), refused ? nullptr : item);
            }
        }
        if (!refused)
            elements.push_back(item);
    }

    void remove(int how) {
        void const* const item = any(rules.items);
        int index = -1;
        if (how == 0) {
            index = pick(count() + 4) - 2;
            ASSERT_EQ(vector->removeElement(index), at(index));
        } else if (how == 1) {
            typename Vector::Iterator iterator;
            index = scanForEqual(item);
            ASSERT_EQ(vector->contains(item, &iterator), index != -1);
            ASSERT_EQ(iterator.get(), at(index));
            ASSERT_EQ(vector->remove(&iterator), index != -1);
            ASSERT_EQ(iterator.get(), index == -1 ? nullptr : at(index + 1));
        } else {
            index = scan(0, 1, [&](void const* each) { return each == item; });
            if (pick(4) == 0) {
                ASSERT_EQ(vector->moveToEnd(item), index != -1);
                if (index != -1)
                    std::rotate(elements.begin() + index, elements.begin() + index + 1, elements.end());
                return;
            }
            ASSERT_EQ(vector->removeItem(item), index != -1);
        }
        if (index >= 0 && index < count())
            elements.erase(elements.begin() + index);
    }

    void find(int how) {
        void const* const key = any(rules.keys);
        int const from = pick(count() + 4) - 2;
        switch (how) {
        case 0: {
            int const first = scanForKey(0, 1, key);
            ASSERT_EQ(vector->findFirstElement(key), first);
            typename Vector::Iterator iterator;
            ASSERT_EQ(vector->findFirst(key, &iterator), at(first));
            ASSERT_EQ(vector->findFirst(key, nullptr), at(first));
            ASSERT_EQ(iterator.get(), at(first));
            ASSERT_EQ(iterator.findNext(key), first == -1 ? nullptr : at(scanForKey(first + 1, 1, key)));
            return;
        }
        case 1: {
            int const last = scanForKey(count() - 1, -1, key);
            ASSERT_EQ(vector->findLastElement(key), last);
            typename Vector::Iterator iterator(*vector, false);
            ASSERT_EQ(iterator.findLast(key), at(last));
            ASSERT_EQ(iterator.findPrevious(key), at(scanForKey(last - 1, -1, key)));
            return;
        }
        case 2:
            ASSERT_EQ(vector->findNextElement(key, from), scanForKey(std::max(from + 1, 0), 1, key));
            return;
        default:
            ASSERT_EQ(vector->findPreviousElement(key, from),
                      scanForKey(std::min(from, count()) - 1, -1, key));
        }
    }

    void replace(int how) {
        Vector& self = *vector;
        if (how == 0) {
            elements.clear();
            ASSERT_TRUE(vector->empty());
        } else if (how == 1) {
            vector = std::make_unique<Vector>(self);
        } else if (how == 2) {
            auto target = std::make_unique<Vector>();
            for (int i = pick(60); i > 0; --i)
                target->addElement(any(rules.items), rules.distinct);
            *target = self;
            ASSERT_TRUE(*target == self);
            ASSERT_FALSE(*target != self);
            vector = std::move(target);
        } else {
            *vector = self;
        }
    }

    void step(int operation) {
        if (operation < (growing ? 7 : 3))
            return add();
        if (operation < 10)
            return remove(operation % 3);
        if (operation < 18)
            return find(operation % 4);
        if (operation == 18 && pick(20) == 0)
            return replace(pick(6) == 0 ? 0 : 1 + pick(3));
        void const* const item = any(rules.items);
        ASSERT_EQ(vector->containsElement(item), scanForEqual(item));
        ASSERT_EQ(vector->contains(item, nullptr), scanForEqual(item) != -1);
    }

    void compare() {
        largest = std::max(largest, count());
        ASSERT_EQ(vector->size, count());
        for (int i = -1; i <= count(); ++i)
            ASSERT_EQ((*vector)[i], at(i));
    }

    VectorRules const& rules;
    std::mt19937 random;
    std::unique_ptr<Vector> vector;
    std::vector<void const*> elements;
    int largest = 0;
    bool growing = true;
};

/// Compares a class of vectors with its rules over a fixed series of random operations.
template <class Vector>
void compareVectorWithModel(VectorRules const& rules, unsigned seed, int steps) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    VectorModel<Vector>(rules, seed).run(steps);
}
