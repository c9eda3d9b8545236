#include "kit/GraphOrder.h"

#include "kit/Reflection.h"

#include <qor/QORTraversalOperation.h>

#include <algorithm>
#include <cstdlib>
#include <tuple>

namespace kit {
namespace {

/// What decides in nearly all cases, read once for each element.
struct SortKey {
    int position;
    std::string_view name;
    std::string_view className;
    QORObject* object;

    auto tie() const { return std::tie(position, name, className); }
};

int positionOf(QORObject& object) {
    QORMetaAttribute const* const attribute =
        object.getMetaClass()->getMetaAttributeByDisplayName("position");
    return attribute ? std::atoi(attribute->getValue(&object).chars) : 0;
}

SortKey sortKeyOf(QORObject& object) {
    return {positionOf(object), view(object.getName()), view(object.getMetaClass()->getDisplayName()),
            &object};
}

/// FNV-1a, which gives the same number in every process. The NUL behind each text keeps neighbours apart.
void mix(std::uint64_t& hash, std::string_view text) {
    constexpr std::uint64_t prime = 1099511628211u;
    for (char const character : text) {
        hash = (hash ^ static_cast<unsigned char>(character)) * prime;
    }
    hash *= prime;
}

void mix(std::uint64_t& hash, std::uint64_t number) {
    mix(hash, {reinterpret_cast<char const*>(&number), sizeof number});
}

void mixAttributes(std::uint64_t& hash, QORObject& object) {
    mix(hash, view(object.getMetaClass()->getDisplayName()));
    QORString room;
    for (QORMetaAttribute const* attribute : attributesOf(object)) {
        mix(hash, view(attribute->getValue(&object, room)));
    }
}

void mixNames(std::uint64_t& hash, std::vector<QORObject*> const& objects) {
    std::vector<std::string_view> names;
    for (QORObject const* object : objects) {
        names.push_back(view(object->getName()));
    }
    std::sort(names.begin(), names.end());
    for (std::string_view name : names) {
        mix(hash, name);
    }
}

} // namespace

std::vector<QORObject*> elementsOf(QORObject& object, QORMetaLink const& link) {
    std::vector<QORObject*> elements;
    int const count = link.isUnary() ? 1 : link.getLinkCount(&object);
    elements.reserve(static_cast<std::size_t>(std::max(count, 0)));
    for (int i = 0; i < count; ++i) {
        if (QORObject* element = link.getLink(&object, i)) {
            elements.push_back(element);
        }
    }
    return elements;
}

/// Signs objects children first, so that an object's signature covers all that it owns: its class and
/// attributes, the names of what it refers to, and the signatures of its children in whatever order they
/// come.
class GraphOrder::Signing : public QORTraversalOperation {
public:
    explicit Signing(std::unordered_map<QORObject const*, std::uint64_t>& kept) : signatures(kept) {}

    /// Cuts off what is signed already, and so a ring of owners too.
    bool pre_process(QORObject* object, void*&) override { return signatures.emplace(object, 0).second; }

    void post_process(QORObject* object, void*) override {
        std::uint64_t hash = 14695981039346656037u;
        mixAttributes(hash, *object);
        for (QORMetaLink const* link : linksOf(*object)) {
            mix(hash, view(link->getRoleName()));
            if (link->getType() == QORMetaLinkType::CHILD) {
                mixSignatures(hash, elementsOf(*object, *link));
            } else if (link->getType() != QORMetaLinkType::PARENT) {
                mixNames(hash, elementsOf(*object, *link));
            }
        }
        signatures[object] = hash;
    }

private:
    void mixSignatures(std::uint64_t& hash, std::vector<QORObject*> const& children) const {
        std::vector<std::uint64_t> numbers;
        for (QORObject const* child : children) {
            auto const known = signatures.find(child);
            numbers.push_back(known == signatures.end() ? 0 : known->second);
        }
        std::sort(numbers.begin(), numbers.end());
        for (std::uint64_t number : numbers) {
            mix(hash, number);
        }
    }

    std::unordered_map<QORObject const*, std::uint64_t>& signatures;
};

std::uint64_t GraphOrder::signatureOf(QORObject& object) {
    auto const known = signatures.find(&object);
    if (known != signatures.end()) {
        return known->second;
    }
    Signing signing(signatures);
    object.depthTraversal(signing, nullptr);
    return signatures[&object];
}

std::vector<QORObject*> GraphOrder::elements(QORObject& object, QORMetaLink const& link) {
    std::vector<SortKey> keys;
    for (QORObject* element : elementsOf(object, link)) {
        keys.push_back(sortKeyOf(*element));
    }
    std::stable_sort(keys.begin(), keys.end(), [this](SortKey const& a, SortKey const& b) {
        if (a.tie() != b.tie()) {
            return a.tie() < b.tie();
        }
        return a.object != b.object && signatureOf(*a.object) < signatureOf(*b.object);
    });

    std::vector<QORObject*> sorted;
    sorted.reserve(keys.size());
    for (SortKey const& key : keys) {
        sorted.push_back(key.object);
    }
    return sorted;
}

std::vector<QORObject*> GraphOrder::children(QORObject& object) {
    std::vector<QORObject*> all;
    for (QORMetaLink const* link : linksOf(object)) {
        if (link->getType() == QORMetaLinkType::CHILD) {
            std::vector<QORObject*> const ofEnd = elements(object, *link);
            all.insert(all.end(), ofEnd.begin(), ofEnd.end());
        }
    }
    return all;
}

} // namespace kit
