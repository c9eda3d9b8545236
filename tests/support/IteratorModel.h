#pragma once

#include <qor/QORContainer.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <iterator>
#include <list>
#include <memory>
#include <random>
#include <vector>

/// How a kind of container behaves where the kinds differ.
struct IteratorRules {
    bool sorted;           ///< elements lie in the order of their addresses, otherwise in that of adding
    bool endGapSeesAppend; ///< a walk whose element was removed as the last one reaches what is added after
    int items = 40;        ///< different ones that come and go, at most `mostItems`
    int phase = 300;       ///< steps for which the container grows, and then shrinks

    static constexpr int mostItems = 200;
};

/// Drives several iterators of one container and the same walks over a std::list, while elements come and go,
/// and compares what they stand on after each step. Items are addresses of characters.
template <class Container>
class IteratorModel {
    using Iterator = typename Container::Iterator;
    using Elements = std::list<char const*>;

    struct Walk {
        std::unique_ptr<Iterator> real;
        bool attached = false; ///< stands on an element or in the gap that one left
        bool gone = false;     ///< the element was removed; `at` is what followed
        Elements::iterator at{};
    };

public:
    IteratorModel(Container& walked, IteratorRules kindRules, unsigned seed)
        : container(walked), rules(kindRules), random(seed), walks(5) {
        for (Walk& walk : walks)
            walk.real = std::make_unique<Iterator>(container, false);
    }

    void run(int steps) {
        for (int i = 0; i < steps && !testing::Test::HasFailure(); ++i) {
            SCOPED_TRACE(testing::Message() << "step " << i);
            growing = i / rules.phase % 2 == 0;
            step();
            compare();
            largest = container.size > largest ? container.size : largest;
        }
        EXPECT_GT(largest, rules.items * 3 / 8) << "the run hasn't come far";
    }

    /// To be called when the container is gone: the walks stand on nothing then.
    void leaveContainer() {
        for (Walk& walk : walks) {
            walk.attached = false;
            EXPECT_EQ(walk.real->get(), nullptr);
            EXPECT_EQ(walk.real->next(1), nullptr);
            EXPECT_EQ(walk.real->previous(1), nullptr);
        }
    }

private:
    int pick(int below) { return std::uniform_int_distribution<int>(0, below - 1)(random); }
    Walk& anyWalk() { return walks[static_cast<std::size_t>(pick(static_cast<int>(walks.size())))]; }
    char const* anyItem() { return &items[pick(rules.items)]; }

    Elements::iterator find(char const* item) {
        auto at = elements.begin();
        while (at != elements.end() && *at != item)
            ++at;
        return at;
    }

    char const* current(Walk const& walk) const { return walk.attached && !walk.gone ? *walk.at : nullptr; }

    void place(Walk& walk, Elements::iterator at) {
        walk.attached = at != elements.end();
        walk.gone = false;
        walk.at = at;
    }

    void advance(Walk& walk, int steps) {
        for (; steps > 0 && walk.attached; --steps)
            place(walk, walk.gone ? walk.at : std::next(walk.at));
        for (; steps < 0 && walk.attached; ++steps) {
            if (walk.at == elements.begin())
                walk.attached = false;
            else
                place(walk, std::prev(walk.at));
        }
    }

    void noteAdded(Elements::iterator added) {
        if (std::next(added) != elements.end())
            return;
        for (Walk& walk : walks) {
            if (!walk.attached || !walk.gone || walk.at != elements.end())
                continue;
            if (rules.endGapSeesAppend) {
                walk.at = added;
            } else { // where the walk would go on is left open, so that it starts anew
                walk.real->moveToFirst();
                place(walk, elements.begin());
            }
        }
    }

    void add() {
        char const* const item = anyItem();
        bool const isNew = find(item) == elements.end();
        Walk* const walk = pick(2) ? &anyWalk() : nullptr;
        ASSERT_EQ(container.add(item, true, walk ? walk->real.get() : nullptr), isNew);
        if (!isNew)
            return;
        auto behind = elements.end();
        if (rules.sorted) {
            behind = elements.begin();
            while (behind != elements.end() && std::less<>()(*behind, item))
                ++behind;
        }
        auto const added = elements.insert(behind, item);
        if (walk)
            place(*walk, added);
        noteAdded(added);
    }

    void erase(Elements::iterator gone) {
        auto const follower = elements.erase(gone);
        for (Walk& walk : walks) {
            if (!walk.attached || walk.at != gone)
                continue;
            walk.gone = true;
            walk.at = follower;
        }
    }

    void removeElsewhere() {
        char const* const item = anyItem();
        Iterator finder;
        auto const at = find(item);
        ASSERT_EQ(container.contains(item, &finder), at != elements.end());
        ASSERT_EQ(container.remove(&finder), at != elements.end());
        if (at == elements.end())
            return;
        auto const follower = std::next(at);
        ASSERT_EQ(finder.get(), follower == elements.end() ? nullptr : *follower);
        erase(at);
    }

    void removeUnder(Walk& walk) {
        bool const stands = current(walk);
        ASSERT_EQ(container.remove(walk.real.get()), stands);
        if (!stands)
            return;
        auto const follower = std::next(walk.at);
        erase(walk.at);
        place(walk, follower);
    }

    void step() {
        Walk& walk = anyWalk();
        int const operation = pick(24);
        if (operation < (growing ? 6 : 3))
            return add();
        if (operation < 8)
            return growing && pick(2) ? void() : removeElsewhere();
        switch (operation) {
        case 8:
        case 9:
            return removeUnder(walk);
        case 10:
            place(walk, elements.begin());
            ASSERT_EQ(walk.real->moveToFirst(), current(walk));
            return;
        case 11:
            place(walk, elements.empty() ? elements.end() : std::prev(elements.end()));
            ASSERT_EQ(walk.real->moveToLast(), current(walk));
            return;
        case 12:
        case 13:
            return copy(walk);
        case 14: {
            char const* const item = anyItem();
            place(walk, find(item));
            ASSERT_EQ(container.contains(item, walk.real.get()), walk.attached);
            return;
        }
        case 15: {
            char const* const item = anyItem();
            place(walk, find(item));
            ASSERT_EQ(container.findFirst(item, walk.real.get()), current(walk));
            return;
        }
        case 16: {
            char const* const item = anyItem();
            place(walk, find(item));
            ASSERT_EQ(pick(2) ? walk.real->findFirst(item) : walk.real->findLast(item), current(walk));
            return;
        }
        case 17:
            if (pick(100) == 0) {
                container.empty();
                while (!elements.empty())
                    erase(elements.begin());
            }
            return;
        default: {
            int const steps = pick(7) - 3;
            advance(walk, steps);
            ASSERT_EQ(pick(2) ? walk.real->next(steps) : walk.real->previous(-steps), current(walk));
        }
        }
    }

    void copy(Walk& walk) {
        Walk const& source = anyWalk();
        if (&source == &walk) {
            Iterator& self = *walk.real;
            *walk.real = self;
            return;
        }
        if (pick(2))
            walk.real = std::make_unique<Iterator>(*source.real);
        else
            *walk.real = *source.real;
        walk.attached = source.attached;
        walk.gone = source.gone;
        walk.at = source.at;
        ASSERT_TRUE(*walk.real == *source.real);
        ASSERT_FALSE(*walk.real != *source.real);
    }

    void compare() {
        ASSERT_EQ(container.size, static_cast<int>(elements.size()));
        Iterator all(container, true);
        for (char const* element : elements) {
            ASSERT_EQ(all.get(), element);
            all.next(1);
        }
        ASSERT_EQ(all.get(), nullptr);
        for (Walk& walk : walks) {
            ASSERT_EQ(walk.real->get(), current(walk));
            ASSERT_EQ(**walk.real, current(walk));
            ASSERT_EQ(walk.real->getContainer(), static_cast<QORContainer*>(&container));
            for (Walk& other : walks)
                if (current(walk) && current(other)) {
                    ASSERT_EQ(*walk.real == *other.real, current(walk) == current(other));
                }
        }
    }

    char const items[IteratorRules::mostItems] = {};
    Container& container;
    IteratorRules rules;
    std::mt19937 random;
    std::vector<Walk> walks;
    Elements elements;
    int largest = 0;
    bool growing = true;
};

/// Runs the model over a container made by `make`, then lets the walks outlive it.
template <class Container>
void compareIteratorsWithModel(std::function<std::unique_ptr<Container>()> const& make, IteratorRules rules,
                               unsigned seed, int steps) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::unique_ptr<Container> container = make();
    IteratorModel<Container> model(*container, rules, seed);
    model.run(steps);
    container.reset();
    model.leaveContainer();
}
