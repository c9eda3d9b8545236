#include "QORVectorIndex.h"

#include <algorithm>
#include <cstdint>
#include <new>

std::unique_ptr<QORVectorIndex> QORVectorIndex::make(QORContainerItem* const* items, int count,
                                                     int capacity) noexcept {
    std::unique_ptr<QORVectorIndex> index(new (std::nothrow) QORVectorIndex);
    if (!index)
        return nullptr;
    unsigned entryCount = 16;
    while (entryCount < static_cast<unsigned>(capacity) * 2)
        entryCount *= 2;
    index->slotCount = capacity;
    index->mask = entryCount - 1;
    index->entries.reset(new (std::nothrow) Entry[entryCount]);
    index->sums.reset(new (std::nothrow) int[static_cast<unsigned>(capacity) + 1]);
    if (!index->entries || !index->sums)
        return nullptr;
    index->assign(items, count);
    for (int slot = 0; slot < count; ++slot)
        if (!items[slot] || index->slotOf(items[slot]) != slot)
            return nullptr;
    return index;
}

unsigned QORVectorIndex::home(QORContainerItem const* item) const {
    auto const bits = static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(item));
    return static_cast<unsigned>(bits * 0x9E3779B97F4A7C15U >> 32) & mask;
}

unsigned QORVectorIndex::find(QORContainerItem const* item) const {
    unsigned at = home(item);
    while (entries[at].item && entries[at].item != item)
        at = (at + 1) & mask;
    return at;
}

int QORVectorIndex::slotOf(QORContainerItem const* item) const {
    Entry const& entry = entries[find(item)];
    return entry.item ? entry.slot : -1;
}

int QORVectorIndex::slotAt(int position) const {
    int step = 1;
    while (step * 2 <= slotCount)
        step *= 2;
    int slot = 0;
    for (int left = position; step; step /= 2) {
        if (slot + step <= slotCount && sums[static_cast<unsigned>(slot + step)] <= left) {
            slot += step;
            left -= sums[static_cast<unsigned>(slot)];
        }
    }
    return slot;
}

int QORVectorIndex::itemsBefore(int slot) const {
    int count = 0;
    for (int at = slot; at > 0; at &= at - 1)
        count += sums[static_cast<unsigned>(at)];
    return count;
}

void QORVectorIndex::insert(QORContainerItem const* item, int slot) {
    entries[find(item)] = {item, slot};
    for (int at = slot + 1; at <= slotCount; at += at & -at)
        ++sums[static_cast<unsigned>(at)];
}

void QORVectorIndex::erase(QORContainerItem const* item, int slot) {
    for (int at = slot + 1; at <= slotCount; at += at & -at)
        --sums[static_cast<unsigned>(at)];
    // The entries behind move up, so that no search ends at the gap.
    unsigned gap = find(item);
    for (unsigned at = (gap + 1) & mask; entries[at].item; at = (at + 1) & mask) {
        unsigned const wanted = home(entries[at].item);
        if (((at - wanted) & mask) >= ((at - gap) & mask)) {
            entries[gap] = entries[at];
            gap = at;
        }
    }
    entries[gap].item = nullptr;
}

void QORVectorIndex::assign(QORContainerItem* const* items, int count) {
    std::fill_n(entries.get(), mask + 1, Entry{nullptr, 0});
    for (int slot = 0; slot < count; ++slot)
        entries[find(items[slot])] = {items[slot], slot};
    for (int at = 0; at <= slotCount; ++at)
        sums[static_cast<unsigned>(at)] = at > 0 && at <= count;
    for (int at = 1; at <= slotCount; ++at) {
        int const above = at + (at & -at);
        if (above <= slotCount)
            sums[static_cast<unsigned>(above)] += sums[static_cast<unsigned>(at)];
    }
}
