#pragma once

#include <LinkTreeModel.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

/// Objects of a few names and element types, so that many are namesakes, and keys that find them or not.
class NamedPool {
public:
    explicit NamedPool(std::vector<QORElementType> const& types = {QORElementType::OBJECT}) {
        for (std::size_t i = 0; i < 66; ++i)
            objects.push_back(std::make_unique<TypedObject>(nameOf(i * 5 % 23), types[i * 7 % types.size()]));
        for (std::size_t i = 0; i < 26; ++i)
            keys.push_back(nameOf(i));
    }

    /// The rules of a class with that order, tried with what is here.
    LinkTreeRules rules(std::function<int(QORObject const*, QORObject const*)> order, bool scans) const {
        LinkTreeRules result{std::move(order), nameMatches, scans, {}, {}};
        for (auto const& object : objects)
            result.items.push_back(object.get());
        for (QORString const& key : keys)
            result.keys.push_back(&key);
        return result;
    }

private:
    static QORString nameOf(std::size_t number) {
        return number % 11 == 0 ? QORString() : QORString(("name" + std::to_string(number)).c_str());
    }

    std::vector<std::unique_ptr<TypedObject>> objects;
    std::vector<QORString> keys;
};
