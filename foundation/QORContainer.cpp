#include <qor/QORContainer.h>

#include <climits>
#include <cstdint>

int QORContainer::compareAddresses(void const* a, void const* b) {
    auto const left = reinterpret_cast<std::uintptr_t>(a);
    auto const right = reinterpret_cast<std::uintptr_t>(b);
    constexpr std::uintptr_t limit = INT_MAX;
    if (left >= right) {
        std::uintptr_t const distance = left - right;
        return static_cast<int>(distance < limit ? distance : limit);
    }
    std::uintptr_t const distance = right - left;
    return -static_cast<int>(distance < limit ? distance : limit);
}

QORContainer const* QORContainer::Iterator::getContainer() const {
    return container;
}

int QORContainer::compare2Object(QORContainerItem const* a, QORContainerItem const* b) const {
    return compareAddresses(a, b);
}

int QORContainer::compare2Key(QORContainerItem const* item, QORContainerKey const* key) const {
    return compareAddresses(item, key);
}
