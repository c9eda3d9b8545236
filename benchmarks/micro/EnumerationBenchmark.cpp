// Enumerations, from value to text and back. The time is per value.

#include "PerItem.h"

#include <qor/QOR.h>

namespace {

template <class Enumeration>
void textOf(benchmark::State& state, char const* const* texts, char const* (*nameOf)(Enumeration)) {
    int count = 0;
    while (texts[count])
        ++count;
    for (auto _ : state) {
        for (int value = 0; value < count; ++value)
            benchmark::DoNotOptimize(nameOf(static_cast<Enumeration>(value)));
    }
    reportPerItem(state, count);
}

template <class Enumeration>
void valueOf(benchmark::State& state, char const* const* texts, Enumeration (*byName)(char const*)) {
    int count = 0;
    while (texts[count])
        ++count;
    for (auto _ : state) {
        for (int value = 0; value < count; ++value)
            benchmark::DoNotOptimize(byName(texts[value]));
    }
    reportPerItem(state, count);
}

#define QOR_ENUMERATION(name)                                                                                \
    BENCHMARK_CAPTURE(textOf, name, Qor##name##StringArray, get##name##Name);                                \
    BENCHMARK_CAPTURE(valueOf, name, Qor##name##StringArray, get##name##ByName)

QOR_ENUMERATION(VisibilityType);
QOR_ENUMERATION(ElementType);
QOR_ENUMERATION(AttributeType);
QOR_ENUMERATION(AssociationType);

} // namespace
