#pragma once

#include <cstring>

/// The element with the lowest position among `count` ones, `at(i)` giving them; of several, the one with the
/// lowest name, and of these the earliest. Null if there is none.
template <class At>
auto qorFirstByPosition(int count, At at) -> decltype(at(0)) {
    decltype(at(0)) first = nullptr;
    for (int i = 0; i < count; ++i) {
        auto const each = at(i);
        bool const lower = !first || each->getPosition() < first->getPosition() ||
                           (each->getPosition() == first->getPosition() &&
                            std::strcmp(each->getName().chars, first->getName().chars) < 0);
        if (lower)
            first = each;
    }
    return first;
}
