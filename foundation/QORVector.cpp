#include <qor/QORVector.h>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <new>

/// The memory of a vector: the items stand from `first` on, so that taking the first one is cheap.
struct QORVector::Block {
    int capacity;
    int first;
    int live;            ///< items that stand here; `size` counts drained ones too
    Iterator* iterators; ///< the walks to be kept in step

    QORContainerItem** items() { return reinterpret_cast<QORContainerItem**>(this + 1) + first; }

    static Block* allocate(int capacity) {
        static_assert(sizeof(Block) % alignof(QORContainerItem*) == 0, "items stand right behind the block");
        std::size_t const bytes =
            sizeof(Block) + sizeof(QORContainerItem*) * static_cast<std::size_t>(capacity);
        return new (::operator new(bytes)) Block{capacity, 0, 0, nullptr};
    }
};

int QORVector::live() const {
    return block ? block->live : 0;
}

void QORVector::growTo(int capacity) {
    Block* const bigger = Block::allocate(capacity);
    if (block) {
        std::memcpy(bigger->items(), block->items(),
                    sizeof(QORContainerItem*) * static_cast<unsigned>(block->live));
        bigger->live = block->live;
        bigger->iterators = block->iterators;
        if (bigger->iterators)
            bigger->iterators->linkToThis = &bigger->iterators;
        ::operator delete(block);
    }
    block = bigger;
}

void QORVector::reserve(int count) {
    if (count > (block ? block->capacity - block->first : 0))
        growTo(count);
}

void QORVector::insertAt(QORContainerItem const* item, int position) {
    int const count = live();
    if (!block) {
        growTo(4);
    } else if (block->first + count == block->capacity) {
        if (block->first > count / 2) {
            QORContainerItem** const from = block->items();
            block->first = 0;
            std::memmove(block->items(), from, sizeof(*from) * static_cast<unsigned>(count));
        } else {
            if (count > INT_MAX / 2)
                throw std::bad_alloc();
            growTo(count < 4 ? 4 : count * 2);
        }
    }
    QORContainerItem** const items = block->items();
    std::memmove(items + position + 1, items + position,
                 sizeof(*items) * static_cast<unsigned>(count - position));
    items[position] = const_cast<QORContainerItem*>(item);
    ++block->live;
    ++size;
    for (Iterator* walk = block->iterators; walk; walk = walk->nextOfVector)
        if (walk->index >= position && !(walk->index == position && position == count))
            ++walk->index;
}

QORContainerItem* QORVector::removeAt(int position) {
    QORContainerItem** const items = block->items();
    QORContainerItem* const item = items[position];
    --block->live;
    if (position == 0)
        ++block->first;
    else
        std::memmove(items + position, items + position + 1,
                     sizeof(*items) * static_cast<unsigned>(block->live - position));
    if (block->live == 0)
        block->first = 0;
    for (Iterator* walk = block->iterators; walk; walk = walk->nextOfVector) {
        if (walk->index > position)
            --walk->index;
        else if (walk->index == position)
            walk->gone = true;
    }
    return item;
}

QORVector::QORVector(QORVector const& other) : _QORContainer(), QORContainer(), QORArrayInterface() {
    if (int const count = other.live()) {
        growTo(count);
        std::memcpy(block->items(), other.block->items(),
                    sizeof(QORContainerItem*) * static_cast<unsigned>(count));
        block->live = count;
        size = count;
    }
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
    ::operator delete(block);
    block = nullptr;
}

bool QORVector::empty() {
    size = 0;
    if (!block)
        return true;
    block->live = 0;
    block->first = 0;
    for (Iterator* walk = block->iterators; walk; walk = walk->nextOfVector) {
        if (walk->index < 0)
            continue;
        walk->index = 0;
        walk->gone = true;
    }
    return true;
}

bool QORVector::add(QORContainerItem const* item, bool unique, QORContainer::Iterator* iterator) {
    int const position = QORVector::addElement(item, unique);
    if (position < 0)
        return false;
    if (auto* const walk = static_cast<Iterator*>(iterator)) {
        walk->attach(this);
        walk->place(position);
    }
    return true;
}

bool QORVector::contains(QORContainerItem const* item, QORContainer::Iterator* iterator) const {
    int const position = QORVector::containsElement(item);
    if (auto* const walk = static_cast<Iterator*>(iterator)) {
        walk->attach(this);
        walk->place(position);
    }
    return position >= 0;
}

QORContainerItem* QORVector::findFirst(QORContainerKey const* key, QORContainer::Iterator* iterator) const {
    int const position = QORVector::findFirstElement(key);
    if (auto* const walk = static_cast<Iterator*>(iterator)) {
        walk->attach(this);
        walk->place(position);
    }
    return position >= 0 ? block->items()[position] : nullptr;
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
    int const count = other.live();
    if (count > (block ? block->capacity : 0))
        growTo(count);
    QORVector::empty();
    if (count)
        std::memcpy(block->items(), other.block->items(),
                    sizeof(QORContainerItem*) * static_cast<unsigned>(count));
    if (block)
        block->live = count;
    size = count;
    return *this;
}

bool QORVector::operator==(QORVector const& other) const {
    if (this == &other)
        return true;
    if (size != other.size)
        return false;
    for (int i = 0; i < live(); ++i)
        if (compare2Object(block->items()[i], other.block->items()[i]) != 0)
            return false;
    return true;
}

bool QORVector::operator!=(QORVector const& other) const {
    return !operator==(other);
}

int QORVector::addElement(QORContainerItem const* item, bool unique) {
    if (unique && QORVector::containsElement(item) >= 0)
        return -1;
    int const position = live();
    insertAt(item, position);
    return position;
}

int QORVector::containsElement(QORContainerItem const* item) const {
    for (int i = 0, count = live(); i < count; ++i)
        if (compare2Object(block->items()[i], item) == 0)
            return i;
    return -1;
}

QORContainerItem* QORVector::operator[](int position) const {
    return position >= 0 && position < live() ? block->items()[position] : nullptr;
}

int QORVector::findFirstElement(QORContainerKey const* key) const {
    return QORVector::findNextElement(key, -1);
}

int QORVector::findLastElement(QORContainerKey const* key) const {
    return QORVector::findPreviousElement(key, live());
}

int QORVector::findNextElement(QORContainerKey const* key, int from) const {
    for (int i = std::max(from, -1) + 1, count = live(); i < count; ++i)
        if (compare2Key(block->items()[i], key) == 0)
            return i;
    return -1;
}

int QORVector::findPreviousElement(QORContainerKey const* key, int from) const {
    for (int i = std::min(from, live()) - 1; i >= 0; --i)
        if (compare2Key(block->items()[i], key) == 0)
            return i;
    return -1;
}

QORContainerItem* QORVector::removeElement(int position) {
    if (position < 0 || position >= live())
        return nullptr;
    --size;
    return removeAt(position);
}

bool QORVector::removeItem(QORContainerItem const* item) {
    for (int i = 0, count = live(); i < count; ++i) {
        if (block->items()[i] != item)
            continue;
        --size;
        removeAt(i);
        return true;
    }
    return false;
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
    Block* const block = vector()->block;
    nextOfVector = block->iterators;
    if (nextOfVector)
        nextOfVector->linkToThis = &nextOfVector;
    block->iterators = this;
    linkToThis = &block->iterators;
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
