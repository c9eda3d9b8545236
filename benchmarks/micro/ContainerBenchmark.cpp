// Each container class by its number of elements. The elements are handed over in random order.

#include "PerItem.h"

#include <qor/QOR.h>

#include <algorithm>
#include <memory>
#include <random>
#include <type_traits>
#include <vector>

namespace {

/// The class of the elements that a container's order asks for; where it looks at names alone, the lightest
/// one.
template <class Container>
struct ElementOf {
    using Type = QORObject;
};
template <>
struct ElementOf<QORNoteByPosition> {
    using Type = QORNote;
};
template <>
struct ElementOf<QORSortedPropertyValuesLinkTree> {
    using Type = QORPropertyValue;
};

/// How many operations one iteration does where each of them looks at all elements.
constexpr std::size_t scanSample = 64;

/// Named objects in random order, the same ones for each run.
template <class Container>
class Elements {
public:
    using Type = typename ElementOf<Container>::Type;

    explicit Elements(benchmark::State const& state) {
        auto const count = static_cast<std::size_t>(state.range(0));
        owned.reserve(count);
        for (std::size_t i = 0; i < count; ++i) {
            owned.push_back(std::make_unique<Type>());
            Type& element = *owned.back();
            if constexpr (!std::is_same_v<Type, QORPropertyValue>) // which refuses names
                element.setName(QORString("element_") + QORString(static_cast<int>(i)));
            if constexpr (!std::is_same_v<Type, QORObject>)
                element.setPosition(static_cast<short>(i % 30000));
            order.push_back(&element);
        }
        std::shuffle(order.begin(), order.end(), std::mt19937(12345));
    }

    std::vector<QORObject*> const& items() const { return order; }

    /// At most `scanSample` of the elements, spread over the order of adding.
    std::vector<QORObject*> sample() const {
        std::vector<QORObject*> chosen;
        std::size_t const step = std::max<std::size_t>(1, order.size() / scanSample);
        for (std::size_t at = 0; at < order.size() && chosen.size() < scanSample; at += step)
            chosen.push_back(order[at]);
        return chosen;
    }

private:
    std::vector<std::unique_ptr<Type>> owned;
    std::vector<QORObject*> order;
};

template <class Container>
std::unique_ptr<Container> emptyContainer(std::size_t expected) {
    if constexpr (std::is_base_of_v<QORHashtable, Container>)
        return std::make_unique<Container>(static_cast<int>(expected));
    else
        return std::make_unique<Container>();
}

template <class Container>
constexpr bool isVector = std::is_base_of_v<QORVector, Container>;

// The tests for a duplicate cost a vector a scan of all elements; its owners make them with an index of their
// own.
template <class Container>
void addAll(Container& container, std::vector<QORObject*> const& items) {
    for (QORObject* const item : items)
        container.add(item, !isVector<Container>, nullptr);
}

template <class Container>
std::unique_ptr<Container> filledContainer(std::vector<QORObject*> const& items) {
    std::unique_ptr<Container> container = emptyContainer<Container>(items.size());
    addAll(*container, items);
    return container;
}

/// The key of an element: its position, its characters, its name or its address.
template <class Container>
QORContainerKey const* keyOf(QORObject const& item) {
    if constexpr (std::is_same_v<Container, QORNoteByPosition>)
        return reinterpret_cast<QORContainerKey const*>(
            static_cast<std::intptr_t>(static_cast<QORNote const&>(item).getPosition()));
    else if constexpr (std::is_same_v<Container, QORObjectNameHashtable>)
        return item.getName().chars;
    else if constexpr (std::is_same_v<Container, QORVector> || std::is_same_v<Container, QOROrderedVector> ||
                       std::is_same_v<Container, QORLinkTree> || std::is_same_v<Container, QORHashtable>)
        return &item;
    else
        return &item.getName();
}

/// Whether finding by key looks at the elements one after the other.
template <class Container>
constexpr bool findsByScan = isVector<Container> || std::is_base_of_v<QORPtrLinkTree, Container>;

template <class Container>
void add(benchmark::State& state) {
    Elements<Container> const elements(state);
    for (auto _ : state) {
        std::unique_ptr<Container> const container = emptyContainer<Container>(elements.items().size());
        timeIteration(state, [&] { addAll(*container, elements.items()); });
    }
    reportPerItem(state, static_cast<double>(elements.items().size()));
}

template <class Container>
void find(benchmark::State& state) {
    Elements<Container> const elements(state);
    auto const container = filledContainer<Container>(elements.items());
    std::vector<QORObject*> const wanted = findsByScan<Container> ? elements.sample() : elements.items();
    for (auto _ : state) {
        for (QORObject const* const item : wanted)
            benchmark::DoNotOptimize(container->findFirst(keyOf<Container>(*item), nullptr));
    }
    reportPerItem(state, static_cast<double>(wanted.size()));
}

template <class Container>
void iterate(benchmark::State& state) {
    Elements<Container> const elements(state);
    auto const container = filledContainer<Container>(elements.items());
    for (auto _ : state) {
        typename Container::Iterator walk(*container, true);
        for (QORContainerItem const* item = walk.get(); item; item = walk.next())
            benchmark::DoNotOptimize(item);
    }
    reportPerItem(state, static_cast<double>(elements.items().size()));
}

template <class Container>
void position(benchmark::State& state) {
    Elements<Container> const elements(state);
    auto const container = filledContainer<Container>(elements.items());
    for (auto _ : state) {
        for (int at = 0; at < container->size; ++at)
            benchmark::DoNotOptimize((*container)[at]);
    }
    reportPerItem(state, static_cast<double>(elements.items().size()));
}

template <class Container>
void removeItems(Container& container, std::vector<QORObject*> const& items) {
    if constexpr (std::is_base_of_v<QORHashtable, Container>) {
        typename Container::Iterator walk;
        for (QORObject* const item : items) {
            container.contains(item, &walk);
            container.remove(&walk);
        }
    } else if constexpr (std::is_base_of_v<QORRBTree, Container>) {
        for (QORObject* const item : items)
            container.removeNode(container.nodeOfItem(item));
    } else {
        for (QORObject* const item : items)
            container.removeItem(item);
    }
}

template <class Container>
void remove(benchmark::State& state) {
    Elements<Container> const elements(state);
    std::vector<QORObject*> const leaving = isVector<Container> ? elements.sample() : elements.items();
    for (auto _ : state) {
        auto const container = filledContainer<Container>(elements.items());
        timeIteration(state, [&] { removeItems(*container, leaving); });
    }
    reportPerItem(state, static_cast<double>(leaving.size()));
}

#define QOR_SIZES Arg(10)->Arg(1000)->Arg(100000)
#define QOR_CONTAINER(type)                                                                                  \
    BENCHMARK_TEMPLATE(add, type)->QOR_SIZES->UseManualTime();                                               \
    BENCHMARK_TEMPLATE(iterate, type)->QOR_SIZES;                                                            \
    BENCHMARK_TEMPLATE(remove, type)->QOR_SIZES->UseManualTime()
#define QOR_ARRAY(type)                                                                                      \
    QOR_CONTAINER(type);                                                                                     \
    BENCHMARK_TEMPLATE(find, type)->QOR_SIZES;                                                               \
    BENCHMARK_TEMPLATE(position, type)->QOR_SIZES
#define QOR_HASHTABLE(type)                                                                                  \
    QOR_CONTAINER(type);                                                                                     \
    BENCHMARK_TEMPLATE(find, type)->QOR_SIZES

QOR_ARRAY(QORLinkTree);
QOR_ARRAY(QORPtrLinkTree);
QOR_ARRAY(QORNameLinkTree);
QOR_ARRAY(QORNamePtrLinkTree);
QOR_ARRAY(QORNameElementTypeLinkTree);
QOR_ARRAY(QOROptionalNameLinkTree);
QOR_ARRAY(QORModelElementLinkTree);
QOR_ARRAY(QORFormatLinkTree);
QOR_ARRAY(QORTypeValueLinkTree);
QOR_CONTAINER(QORSortedPropertyValuesLinkTree);
BENCHMARK_TEMPLATE(position, QORSortedPropertyValuesLinkTree)->QOR_SIZES;
QOR_ARRAY(QORNoteByPosition);
QOR_ARRAY(QORVector);
QOR_ARRAY(QOROrderedVector);
QOR_ARRAY(QORPtrLinkVector);
QOR_ARRAY(QORNameLinkVector);
QOR_HASHTABLE(QORHashtable);
QOR_HASHTABLE(QORObjectNameHashtable);

} // namespace
