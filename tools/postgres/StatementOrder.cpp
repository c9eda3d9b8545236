#include "postgres/StatementOrder.h"

#include "postgres/SqlNames.h"

#include <algorithm>
#include <cctype>
#include <string_view>
#include <unordered_map>

namespace postgres {
namespace {

class Order {
public:
    Order(std::vector<Creation> const& toOrder, bool ofAnySchema)
        : creations(toOrder), anySchema(ofAnySchema) {
        for (std::size_t i = 0; i < creations.size(); ++i) {
            makers[keyOf(creations[i].schema, creations[i].name)].push_back(i);
        }
        needed.resize(creations.size());
        placed.resize(creations.size());
    }

    std::vector<std::size_t> run() {
        for (std::size_t i = 0; i < creations.size(); ++i) {
            place(i);
        }
        return std::move(order);
    }

private:
    /// A statement on the way to its place, and how many of those that it needs were looked at.
    struct Step {
        std::size_t creation;
        std::size_t next;
    };

    std::string keyOf(std::string const& schema, std::string const& name) const {
        if (!anySchema) {
            return schema + '\0' + name;
        }
        std::string key = name;
        std::transform(key.begin(), key.end(), key.begin(),
                       [](unsigned char character) { return static_cast<char>(std::tolower(character)); });
        return key;
    }

    void findNeeds(std::size_t creation) {
        auto const text =
            std::string_view(creations[creation].statement).substr(0, creations[creation].lookedAt);
        forEachName(text, [&](std::vector<std::string> const& parts) {
            if (parts.size() < 2 && !anySchema) {
                return;
            }
            auto const found = makers.find(keyOf(parts[0], parts[anySchema ? parts.size() - 1 : 1]));
            if (found != makers.end()) {
                auto& needs = needed[creation];
                needs.insert(needs.end(), found->second.begin(), found->second.end());
            }
        });
    }

    /// Goes down without recursion: a chain of views can be long.
    void place(std::size_t first) {
        std::vector<Step> way;
        enter(first, way);
        while (!way.empty()) {
            Step& step = way.back();
            if (step.next < needed[step.creation].size()) {
                enter(needed[step.creation][step.next++], way);
            } else {
                order.push_back(step.creation);
                way.pop_back();
            }
        }
    }

    void enter(std::size_t creation, std::vector<Step>& way) {
        if (!placed[creation]) {
            placed[creation] = true;
            findNeeds(creation);
            way.push_back({creation, 0});
        }
    }

    std::vector<Creation> const& creations;
    bool anySchema;
    std::unordered_map<std::string, std::vector<std::size_t>> makers;
    std::vector<std::vector<std::size_t>> needed;
    std::vector<bool> placed;
    std::vector<std::size_t> order;
};

} // namespace

std::vector<std::size_t> orderByNeeds(std::vector<Creation> const& creations, bool anySchema) {
    return Order(creations, anySchema).run();
}

} // namespace postgres
