#include <qor/QORVector.h>

#include "QORVectorIndex.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>

/// The memory of a vector. The items stand in the slots from `first` to `end`, so that taking the first one
/// is cheap. With an index, slots in between may be empty; without one, none is.
struct QORVector::Block {
    int capacity;
    int first = 0;
    int end = 0;
    int live = 0;                  ///< items that stand here; `size` counts drained ones too
    Iterator* iterators = nullptr; ///< the walks to be kept in step
    std::unique_ptr<QORVectorIndex> index{};

    explicit Block(int slots) : capacity(slots) {}

    QORContainerItem** slots() { return reinterpret_cast<QORContainerItem**>(this + 1); }

    int slotAt(int position) const {
        return end - first == live ? first + position : index->slotAt(position);
    }

    /// Moves the items to the slots from 0 on, with no empty one in between.
    void compact() {
        QORContainerItem** const to = slots();
        if (!index) {
            std::memmove(to, to + first, sizeof(*to) * static_cast<unsigned>(live));
        } else {
            std::remove(to + first, to + end, nullptr);
            std::memmove(to, to + first, sizeof(*to) * static_cast<unsigned>(live));
            index->assign(to, live);
        }
        first = 0;
        end = live;
    }

    /// Goes on without an index.
    void dropIndex() {
        if (end - first != live)
            compact();
        index.reset();
    }

    static Block* allocate(int capacity) {
        static_assert(sizeof(Block) % alignof(QORContainerItem*) == 0,
                      "the slots stand right behind the block");
        std::size_t const bytes =
            sizeof(Block) + sizeof(QORContainerItem*) * static_cast<std::size_t>(capacity);
        return new (::operator new(bytes)) Block(capacity);
    }

    static void free(Block* block) {
        block->~Block();
        ::operator delete(block);
    }
};

int QORVector::live() const {
    return block ? block->live : 0;
}

QORContainerItem*& QORVector::item(int index) const {
    return block->slots()[block->slotAt(index)];
}

void QORVector::growTo(int capacity) {
    Block* const bigger = Block::allocate(capacity);
    if (block) {
        if (block->end - block->first != block->live)
            block->compact();
        std::memcpy(bigger->slots(), block->slots() + block->first,
                    sizeof(QORContainerItem*) * static_cast<unsigned>(block->live));
        bigger->live = block->live;
        bigger->end = block->live;
        if (block->index)
            bigger->index = QORVectorIndex::make(bigger->slots(), bigger->live, capacity);
        bigger->iterators = block->iterators;
        if (bigger->iterators)
            bigger->iterators->linkToThis = &bigger->iterators;
        Block::free(block);
    }
    block = bigger;
}

void QORVector::reserve(int count) {
    if (count > (block ? block->capacity - block->first : 0))
        growTo(count);
}

void QORVector::buildIndex() {
    constexpr int worthwhile = 64; // items; below that, a scan is as quick
    if (!block || block->index || block->live < worthwhile)
        return;
    block->compact();
    block->index = QORVectorIndex::make(block->slots(), block->live, block->capacity);
}

/// Makes room for one more item behind the last one.
void QORVector::makeRoom() {
    if (!block) {
        growTo(4);
    } else if (block->end == block->capacity) {
        if (block->live <= block->capacity / 4 * 3) {
            block->compact();
        } else {
            if (block->live > INT_MAX / 2)
                throw std::bad_alloc();
            growTo(block->live * 2);
        }
    }
}

void QORVector::insertAt(QORContainerItem const* inserted, int index) {
    makeRoom();
    int const count = block->live;
    auto* const added = const_cast<QORContainerItem*>(inserted);
    if (block->index && (index != count || !added || block->index->slotOf(added) >= 0))
        block->dropIndex(); // it holds each item once, and in the order of adding
    if (index == count) {
        block->slots()[block->end] = added;
        if (block->index)
            block->index->insert(added, block->end);
    } else {
        QORContainerItem** const items = block->slots() + block->first;
        std::memmove(items + index + 1, items + index, sizeof(*items) * static_cast<unsigned>(count - index));
        items[index] = added;
    }
    ++block->end;
    ++block->live;
    ++size;
    for (Iterator* walk = block->iterators; walk; walk = walk->nextOfVector)
        if (walk->index >= index && !(walk->index == index && index == count))
            ++walk->index;
}

QORContainerItem* QORVector::removeAt(int index) {
    int const slot = block->slotAt(index);
    QORContainerItem*& place = block->slots()[slot];
    QORContainerItem* const removed = place;
    --block->live;
    if (block->index) {
        block->index->erase(removed, slot);
        place = nullptr;
        if (slot == block->first)
            ++block->first;
        else if (slot == block->end - 1)
            --block->end;
        if (block->live < (block->end - block->first) / 2)
            block->compact();
    } else if (index == 0) {
        ++block->first;
    } else {
        std::memmove(&place, &place + 1, sizeof(place) * static_cast<unsigned>(block->live - index));
        --block->end;
    }
    if (block->live == 0) {
        block->first = 0;
        block->end = 0;
    }
    for (Iterator* walk = block->iterators; walk; walk = walk->nextOfVector) {
        if (walk->index > index)
            --walk->index;
        else if (walk->index == index)
            walk->gone = true;
    }
    return removed;
}

QORVector::QORVector(QORVector const& other) : _QORContainer(), QORContainer(), QORArrayInterface() {
    copyItems(other);
}

/// Takes over the items of another vector into this one, which is empty.
void QORVector::copyItems(QORVector const& other) {
    int const count = other.live();
    if (count > (block ? block->capacity : 0))
        growTo(count);
    for (int i = 0; i < count; ++i)
        block->slots()[i] = other.item(i);
    if (block) {
        block->live = count;
        block->end = count;
    }
    size = count;
}

QORVector::~QORVector() {
    QORVector::empty();
    releaseMemory();
}

void QORVector::releaseMemory() {
    if (!block || block->live)
        return;
    while (block->iterators)
        block->iterators->detach();
    Block::free(block);
    block = nullptr;
}

bool QORVector::empty() {
    size = 0;
    if (!block)
        return true;
    block->index.reset();
    block->live = 0;
    block->first = 0;
    block->end = 0;
    for (Iterator* walk = block->iterators; walk; walk = walk->nextOfVector) {
        if (walk->index < 0)
            continue;
        walk->index = 0;
        walk->gone = true;
    }
    return true;
}

bool QORVector::add(QORContainerItem const* added, bool unique, QORContainer::Iterator* iterator) {
    int const index = QORVector::addElement(added, unique);
    if (index < 0)
        return false;
    if (auto* const walk = static_cast<Iterator*>(iterator)) {
        walk->attach(this);
        walk->place(index);
    }
    return true;
}

bool QORVector::contains(QORContainerItem const* wanted, QORContainer::Iterator* iterator) const {
    int const index = QORVector::containsElement(wanted);
    if (auto* const walk = static_cast<Iterator*>(iterator)) {
        walk->attach(this);
        walk->place(index);
    }
    return index >= 0;
}

QORContainerItem* QORVector::findFirst(QORContainerKey const* key, QORContainer::Iterator* iterator) const {
    int const index = QORVector::findFirstElement(key);
    if (auto* const walk = static_cast<Iterator*>(iterator)) {
        walk->attach(this);
        walk->place(index);
    }
    return index >= 0 ? item(index) : nullptr;
}

bool QORVector::remove(QORContainer::Iterator* iterator) {
    auto* const walk = static_cast<Iterator*>(iterator);
    if (!walk || walk->container != this || !walk->get())
        return false;
    removeElement(walk->index);
    walk->place(walk->index);
    return true;
}

QORVector& QORVector::operator=(QORVector const& other) {
    if (this == &other)
        return *this;
    if (other.live() > (block ? block->capacity : 0))
        growTo(other.live());
    QORVector::empty();
    copyItems(other);
    return *this;
}

bool QORVector::operator==(QORVector const& other) const {
    if (this == &other)
        return true;
    if (size != other.size)
        return false;
    for (int i = 0; i < live(); ++i)
        if (compare2Object(this->item(i), other.item(i)) != 0)
            return false;
    return true;
}

bool QORVector::operator!=(QORVector const& other) const {
    return !operator==(other);
}

int QORVector::addElement(QORContainerItem const* added, bool unique) {
    if (unique && QORVector::containsElement(added) >= 0)
        return -1;
    int const index = live();
    insertAt(added, index);
    return index;
}

int QORVector::containsElement(QORContainerItem const* wanted) const {
    if (block && block->index)
        return positionOf(wanted);
    for (int i = 0, count = live(); i < count; ++i)
        if (compare2Object(item(i), wanted) == 0)
            return i;
    return -1;
}

/// The position of this very item, or -1.
int QORVector::positionOf(QORContainerItem const* wanted) const {
    if (block && block->index) {
        int const slot = block->index->slotOf(wanted);
        return slot < 0 ? -1 : block->index->itemsBefore(slot);
    }
    for (int i = 0, count = live(); i < count; ++i)
        if (item(i) == wanted)
            return i;
    return -1;
}

QORContainerItem* QORVector::operator[](int index) const {
    return index >= 0 && index < live() ? item(index) : nullptr;
}

int QORVector::findFirstElement(QORContainerKey const* key) const {
    return QORVector::findNextElement(key, -1);
}

int QORVector::findLastElement(QORContainerKey const* key) const {
    return QORVector::findPreviousElement(key, live());
}

int QORVector::findNextElement(QORContainerKey const* key, int from) const {
    for (int i = std::clamp(from, -1, live()) + 1, count = live(); i < count; ++i)
        if (compare2Key(item(i), key) == 0)
            return i;
    return -1;
}

int QORVector::findPreviousElement(QORContainerKey const* key, int from) const {
    for (int i = std::clamp(from, 0, live()) - 1; i >= 0; --i)
        if (compare2Key(item(i), key) == 0)
            return i;
    return -1;
}

QORContainerItem* QORVector::removeElement(int index) {
    if (index < 0 || index >= live())
        return nullptr;
    --size;
    return removeAt(index);
}

bool QORVector::removeItem(QORContainerItem const* wanted) {
    int const index = positionOf(wanted);
    if (index < 0)
        return false;
    --size;
    removeAt(index);
    return true;
}

bool QORVector::moveToEnd(QORContainerItem const* moved) {
    int const index = positionOf(moved);
    if (index < 0)
        return false;
    --size;
    removeAt(index);
    if (block->end == block->capacity)
        block->compact();
    insertAt(moved, block->live);
    return true;
}

QORContainerItem* QORVector::drainFirst() {
    return live() ? removeAt(0) : nullptr;
}

void QORVector::endDraining() {
    if (live() == 0)
        size = 0;
}

// ---- iterator -------------------------------------------------------------------------------------------

QORVector::Iterator::Iterator(QORVector const& vector, bool toFirst) {
    attach(&vector);
    if (toFirst)
        moveToFirst();
}

QORVector::Iterator::Iterator(Iterator const& other) : QORContainer::Iterator() {
    copyFrom(other);
}

QORVector::Iterator::~Iterator() {
    detach();
}

QORVector const* QORVector::Iterator::vector() const {
    return static_cast<QORVector const*>(container);
}

void QORVector::Iterator::attach(QORVector const* vector) {
    if (linkToThis && vector == container)
        return;
    detach();
    container = vector;
}

void QORVector::Iterator::detach() {
    if (linkToThis) {
        *linkToThis = nextOfVector;
        if (nextOfVector)
            nextOfVector->linkToThis = linkToThis;
        linkToThis = nullptr;
        nextOfVector = nullptr;
    }
    container = nullptr;
    index = -1;
    gone = false;
}

/// Enters the vector's list of iterators, so that changes of the vector reach this one.
void QORVector::Iterator::enlist() {
    if (linkToThis)
        return;
    Iterator*& first = vector()->block->iterators;
    nextOfVector = first;
    if (nextOfVector)
        nextOfVector->linkToThis = &nextOfVector;
    first = this;
    linkToThis = &first;
}

void QORVector::Iterator::copyFrom(Iterator const& other) {
    attach(other.vector());
    index = other.index;
    gone = other.gone;
    if (index >= 0)
        enlist();
}

/// Stands on a position, or on nothing if there is no such one.
QORContainerItem* QORVector::Iterator::place(int position) {
    index = container && position >= 0 && position < vector()->live() ? position : -1;
    gone = false;
    if (index >= 0)
        enlist();
    return get();
}

QORContainerItem* QORVector::Iterator::operator*() const {
    return get();
}

QORContainerItem* QORVector::Iterator::get() const {
    return index >= 0 && !gone ? vector()->QORVector::operator[](index) : nullptr;
}

QORContainerItem* QORVector::Iterator::ahead(int steps) const {
    return index >= 0 && !gone ? vector()->QORVector::operator[](index + steps) : nullptr;
}

QORContainerItem* QORVector::Iterator::moveToFirst() {
    return place(0);
}

QORContainerItem* QORVector::Iterator::moveToLast() {
    return place(container ? vector()->live() - 1 : -1);
}

QORContainerItem* QORVector::Iterator::next(int steps) {
    if (steps < 0)
        return steps == INT_MIN ? place(-1) : previous(-steps);
    if (index < 0 || steps == 0)
        return get();
    int const from = gone ? index - 1 : index;
    return place(steps < vector()->live() - from ? from + steps : -1);
}

QORContainerItem* QORVector::Iterator::previous(int steps) {
    if (steps < 0)
        return steps == INT_MIN ? place(-1) : next(-steps);
    if (index < 0 || steps == 0)
        return get();
    return place(steps <= index ? index - steps : -1);
}

QORContainerItem* QORVector::Iterator::findFirst(QORContainerKey const* key) {
    return place(container ? vector()->findFirstElement(key) : -1);
}

QORContainerItem* QORVector::Iterator::findLast(QORContainerKey const* key) {
    return place(container ? vector()->findLastElement(key) : -1);
}

QORContainerItem* QORVector::Iterator::findNext(QORContainerKey const* key) {
    return place(get() ? vector()->findNextElement(key, index) : -1);
}

QORContainerItem* QORVector::Iterator::findPrevious(QORContainerKey const* key) {
    return place(get() ? vector()->findPreviousElement(key, index) : -1);
}

bool QORVector::Iterator::operator==(Iterator const& other) const {
    return container == other.container && index == other.index && gone == other.gone;
}

bool QORVector::Iterator::operator!=(Iterator const& other) const {
    return !operator==(other);
}

QORVector::Iterator& QORVector::Iterator::operator=(Iterator const& other) {
    if (this != &other)
        copyFrom(other);
    return *this;
}

void QORVector::Iterator::moveTo(QORVector& vector, bool toFirst) {
    attach(&vector);
    place(toFirst ? 0 : -1);
}

QORContainerItem* QORVector::Iterator::moveTo(int position) {
    return place(position);
}
