#pragma once

#include <qor/QORContainer.h>
#include <qor/QORObject.h>

#include <cstdint>
#include <cstring>

/// The order of a view by position: position, then name, then address, so that no two objects compare equal.
template <class Element>
int qorComparePositions(QORContainerItem const* a, QORContainerItem const* b) {
    auto const& left = static_cast<Element const&>(*static_cast<QORObject const*>(a));
    auto const& right = static_cast<Element const&>(*static_cast<QORObject const*>(b));
    if (int const order = left.getPosition() - right.getPosition())
        return order;
    int const order = std::strcmp(left.getName().chars, right.getName().chars);
    return order ? order : QORContainer::compareAddresses(a, b);
}

/// The key of a view by position is the position itself, carried as an integer in the pointer.
template <class Element>
int qorComparePositionWithKey(QORContainerItem const* item, QORContainerKey const* key) {
    auto const& element = static_cast<Element const&>(*static_cast<QORObject const*>(item));
    return element.getPosition() - static_cast<int>(reinterpret_cast<std::intptr_t>(key));
}
