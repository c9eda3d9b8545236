#pragma once

#include <qor/QORContainer.h>

#include <memory>

/// What makes a large vector of distinct items quick: the slot of each item by hash, and the number of items
/// before each slot. A removed item leaves its slot empty, so that nothing has to move.
///
/// Slots are counted from 0 to the capacity that the index was made for; positions count the items only.
class QORVectorIndex {
public:
    /// An index for `capacity` slots; null if there isn't the memory or an item stands twice.
    static std::unique_ptr<QORVectorIndex> make(QORContainerItem* const* items, int count,
                                                int capacity) noexcept;

    /// The slot of an item, or -1.
    int slotOf(QORContainerItem const* item) const;
    /// The slot of the item at a position that exists.
    int slotAt(int position) const;
    /// The number of items before a slot.
    int itemsBefore(int slot) const;
    /// Notes that an item now stands in an empty slot.
    void insert(QORContainerItem const* item, int slot);
    /// Notes that an item has left its slot.
    void erase(QORContainerItem const* item, int slot);
    /// Notes that exactly these items now stand in the slots from 0 on.
    void assign(QORContainerItem* const* items, int count);

private:
    struct Entry {
        QORContainerItem const* item;
        int slot;
    };

    unsigned home(QORContainerItem const* item) const;
    unsigned find(QORContainerItem const* item) const;

    int slotCount = 0;
    unsigned mask = 0;
    std::unique_ptr<Entry[]> entries; ///< open addressing; a null item marks a free entry
    std::unique_ptr<int[]> sums;      ///< a binary indexed tree (Fenwick 1994) over the slots, from 1 on
};
