#include "postgres/StatementOrder.h"

#include "kit/Text.h"
#include "postgres/SqlNames.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace postgres {
namespace {

class Order {
public:
    Order(std::vector<Creation> const& toOrder, bool ofAnySchema)
        : creations(toOrder), anySchema(ofAnySchema), inCircle(toOrder.size()) {
        for (std::size_t i = 0; i < creations.size(); ++i) {
            makers[keyOf(creations[i].schema, creations[i].name)].push_back(i);
        }
        needed.resize(creations.size());
        states.resize(creations.size());
    }

    void run() {
        for (std::size_t i = 0; i < creations.size(); ++i) {
            place(i);
        }
    }

    std::vector<std::size_t> takeOrder() { return std::move(order); }
    std::vector<bool> const& circles() const { return inCircle; }

private:
    enum class State { UNKNOWN, UNDER_WAY, PLACED };

    /// A statement that is being placed, and how many of those that it needs have been visited.
    struct Step {
        std::size_t creation;
        std::size_t next;
    };

    std::string keyOf(std::string const& schema, std::string const& name) const {
        if (!anySchema) {
            return schema + '\0' + name;
        }
        return kit::lowerCase(name);
    }

    /// Calls `take` with the key of each name in a creation's statement.
    template <class Take>
    void forEachKey(std::size_t creation, Take const& take) const {
        auto const text =
            std::string_view(creations[creation].statement).substr(0, creations[creation].lookedAt);
        forEachName(text, [&](std::vector<std::string> const& parts) {
            if (parts.size() >= 2 || anySchema) {
                take(keyOf(parts[0], parts[anySchema ? parts.size() - 1 : 1]));
            }
        });
    }

    /// A creation doesn't need the name that it introduces.
    void findNeeds(std::size_t creation) {
        std::string const own = keyOf(creations[creation].schema, creations[creation].name);
        bool isIntroduced = false;
        forEachKey(creation, [&](std::string const& key) {
            auto const found = makers.find(key);
            if (key == own && !isIntroduced) {
                isIntroduced = true;
            } else if (found != makers.end()) {
                addNeeds(creation, found->second, key == own);
            }
        });
    }

    void addNeeds(std::size_t creation, std::vector<std::size_t> const& found, bool areNamesakes) {
        for (std::size_t const maker : found) {
            bool const isLater =
                areNamesakes && creations[creation].needsEarlierNamesakes && maker > creation;
            if (!isLater && !(creations[maker].isLast && names(maker, creation))) {
                needed[creation].push_back(maker);
            }
        }
    }

    /// True if one creation names another one.
    bool names(std::size_t creation, std::size_t other) {
        auto const [known, isNew] = named.try_emplace(creation);
        if (isNew) {
            forEachKey(creation, [&keys = known->second](std::string const& key) { keys.insert(key); });
        }
        return known->second.count(keyOf(creations[other].schema, creations[other].name)) > 0;
    }

    /// Descends without recursion: a chain of views can be long.
    void place(std::size_t first) {
        std::vector<Step> way;
        enter(first, way);
        while (!way.empty()) {
            Step& step = way.back();
            if (step.next < needed[step.creation].size()) {
                enter(needed[step.creation][step.next++], way);
            } else {
                states[step.creation] = State::PLACED;
                order.push_back(step.creation);
                way.pop_back();
            }
        }
    }

    void enter(std::size_t creation, std::vector<Step>& way) {
        if (states[creation] == State::UNKNOWN) {
            states[creation] = State::UNDER_WAY;
            findNeeds(creation);
            way.push_back({creation, 0});
        } else if (states[creation] == State::UNDER_WAY) {
            noteCircle(creation, way);
        }
    }

    void noteCircle(std::size_t creation, std::vector<Step> const& way) {
        if (way.empty() || way.back().creation == creation) {
            return;
        }
        for (auto step = way.rbegin(); step != way.rend(); ++step) {
            inCircle[step->creation] = true;
            if (step->creation == creation) {
                return;
            }
        }
    }

    std::vector<Creation> const& creations;
    bool anySchema;
    std::unordered_map<std::string, std::vector<std::size_t>> makers;
    std::vector<std::vector<std::size_t>> needed;
    std::vector<State> states;
    std::unordered_map<std::size_t, std::unordered_set<std::string>> named; ///< by those that are last
    std::vector<bool> inCircle;
    std::vector<std::size_t> order;
};

} // namespace

std::vector<std::size_t> orderByNeeds(std::vector<Creation> const& creations, bool anySchema) {
    Order order(creations, anySchema);
    order.run();
    return order.takeOrder();
}

void splitCircles(std::vector<Creation>& creations, bool anySchema) {
    for (bool isSplit = true; isSplit;) {
        Order order(creations, anySchema);
        order.run();
        std::vector<bool> const inCircle = order.circles();
        isSplit = false;
        for (std::size_t i = 0; i < inCircle.size(); ++i) {
            if (inCircle[i] && !creations[i].rest.empty()) {
                creations[i].statement = std::exchange(creations[i].bare, "");
                creations.push_back({"", "", std::exchange(creations[i].rest, "")});
                isSplit = true;
            }
        }
    }
}

} // namespace postgres
