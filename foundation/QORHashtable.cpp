#include <qor/QORHashtable.h>

#include <climits>
#include <cstdint>
#include <utility>

struct QORHashtable::Node {
    QORContainerItem* item;
    unsigned long hash;
    Node* nextInBucket;
    Node* next;     ///< of a removed node: the node that followed it, or null
    Node* previous; ///< of a node removed as the last one: the node before it, or null
    int pins;
    bool removed;
};

void QORHashtable::pin(Node* node) {
    if (node)
        ++node->pins;
}

void QORHashtable::unpin(Node* node) {
    while (node && --node->pins == 0 && node->removed) {
        Node* const way = node->next ? node->next : node->previous;
        delete node;
        node = way;
    }
}

QORHashtable::QORHashtable(int count)
    : buckets(new Node*[static_cast<unsigned>(count < 1 ? 1 : count)]()), bucketCount(count < 1 ? 1 : count) {
}

QORHashtable::QORHashtable(QORHashtable const& other)
    : _QORContainer(), QORContainer(), buckets(new Node*[static_cast<unsigned>(other.bucketCount)]()),
      bucketCount(other.bucketCount) {
    try {
        for (Node const* node = other.first; node; node = node->next) {
            auto* const copy = new Node{node->item, node->hash, nullptr, nullptr, last, 0, false};
            (last ? last->next : first) = copy;
            last = copy;
            chain(copy);
            ++size;
        }
    } catch (...) {
        QORHashtable::empty();
        delete[] buckets;
        throw;
    }
}

QORHashtable::~QORHashtable() {
    QORHashtable::empty();
    delete[] buckets;
}

QORHashtable::Node*& QORHashtable::bucketOf(unsigned long hash) const {
    return buckets[hash % static_cast<unsigned long>(bucketCount)];
}

/// Puts a node behind those that its bucket holds already, so that equal ones stay in the order of adding.
void QORHashtable::chain(Node* node) const {
    Node** end = &bucketOf(node->hash);
    while (*end)
        end = &(*end)->nextInBucket;
    node->nextInBucket = nullptr;
    *end = node;
}

QORHashtable::Node* QORHashtable::nodeOf(QORContainerItem const* item) const {
    for (Node* node = bucketOf(hashObject(item)); node; node = node->nextInBucket)
        if (compare2Object(node->item, item) == 0)
            return node;
    return nullptr;
}

QORHashtable::Node* QORHashtable::firstWith(QORContainerKey const* key) const {
    for (Node* node = bucketOf(hashKey(key)); node; node = node->nextInBucket)
        if (compare2Key(node->item, key) == 0)
            return node;
    return nullptr;
}

QORHashtable::Node* QORHashtable::lastWith(QORContainerKey const* key) const {
    Node* found = nullptr;
    for (Node* node = bucketOf(hashKey(key)); node; node = node->nextInBucket)
        if (compare2Key(node->item, key) == 0)
            found = node;
    return found;
}

bool QORHashtable::empty() {
    Node* node = first;
    first = nullptr;
    last = nullptr;
    size = 0;
    for (int i = 0; i < bucketCount; ++i)
        buckets[i] = nullptr;
    while (node) {
        Node* const follower = node->next;
        node->next = nullptr;
        node->previous = nullptr;
        node->removed = true;
        if (node->pins == 0)
            delete node;
        node = follower;
    }
    return true;
}

bool QORHashtable::add(QORContainerItem const* item, bool unique, QORContainer::Iterator* iterator) {
    if (unique && nodeOf(item))
        return false;
    auto* const node =
        new Node{const_cast<QORContainerItem*>(item), hashObject(item), nullptr, nullptr, last, 0, false};
    (last ? last->next : first) = node;
    last = node;
    chain(node);
    ++size;
    if (auto* const walk = static_cast<Iterator*>(iterator)) {
        walk->container = this;
        walk->place(node);
    }
    return true;
}

bool QORHashtable::contains(QORContainerItem const* item, QORContainer::Iterator* iterator) const {
    Node* const node = nodeOf(item);
    if (auto* const walk = static_cast<Iterator*>(iterator)) {
        walk->container = this;
        walk->place(node);
    }
    return node != nullptr;
}

QORContainerItem* QORHashtable::findFirst(QORContainerKey const* key,
                                          QORContainer::Iterator* iterator) const {
    Node* const node = firstWith(key);
    if (auto* const walk = static_cast<Iterator*>(iterator)) {
        walk->container = this;
        walk->place(node);
    }
    return node ? node->item : nullptr;
}

QORContainerItem* QORHashtable::findLast(QORContainerKey const* key, QORContainer::Iterator* iterator) const {
    Node* const node = lastWith(key);
    if (auto* const walk = static_cast<Iterator*>(iterator)) {
        walk->container = this;
        walk->place(node);
    }
    return node ? node->item : nullptr;
}

bool QORHashtable::remove(QORContainer::Iterator* iterator) {
    auto* const walk = static_cast<Iterator*>(iterator);
    if (!walk || walk->container != this || !walk->node || walk->node->removed)
        return false;
    Node* const node = walk->node;
    Node** link = &bucketOf(node->hash);
    while (*link != node)
        link = &(*link)->nextInBucket;
    *link = node->nextInBucket;
    (node->previous ? node->previous->next : first) = node->next;
    (node->next ? node->next->previous : last) = node->previous;
    --size;
    node->removed = true;
    if (node->next)
        node->previous = nullptr;
    pin(node->next ? node->next : node->previous);
    walk->place(walk->step(true));
    return true;
}

void QORHashtable::swapWith(QORHashtable& other) {
    std::swap(buckets, other.buckets);
    std::swap(bucketCount, other.bucketCount);
    std::swap(first, other.first);
    std::swap(last, other.last);
    std::swap(size, other.size);
}

QORHashtable& QORHashtable::operator=(QORHashtable const& other) {
    if (this != &other) {
        QORHashtable copy(other);
        swapWith(copy);
    }
    return *this;
}

bool QORHashtable::operator==(QORHashtable const& other) const {
    if (this == &other)
        return true;
    if (size != other.size)
        return false;
    for (Node const* node = first; node; node = node->next)
        if (!other.nodeOf(node->item))
            return false;
    return true;
}

bool QORHashtable::operator!=(QORHashtable const& other) const {
    return !operator==(other);
}

void QORHashtable::resize(int count) {
    count = count < 1 ? 1 : count;
    auto* const fresh = new Node*[static_cast<unsigned>(count)]();
    delete[] buckets;
    buckets = fresh;
    bucketCount = count;
    for (Node* node = first; node; node = node->next)
        chain(node);
}

unsigned long QORHashtable::hashObject(QORContainerItem const* item) const {
    return reinterpret_cast<std::uintptr_t>(item);
}

unsigned long QORHashtable::hashKey(QORContainerKey const* key) const {
    return reinterpret_cast<std::uintptr_t>(key);
}

// ---- iterator -------------------------------------------------------------------------------------------

QORHashtable::Iterator::Iterator(QORHashtable const& table, bool toFirst) : QORContainer::Iterator(&table) {
    if (toFirst)
        place(table.first);
}

QORHashtable::Iterator::Iterator(Iterator const& other) : QORContainer::Iterator(other) {
    place(other.node);
}

QORHashtable::Iterator::~Iterator() {
    unpin(node);
}

QORHashtable const* QORHashtable::Iterator::table() const {
    return static_cast<QORHashtable const*>(container);
}

QORContainerItem* QORHashtable::Iterator::place(Node* onto) {
    pin(onto);
    unpin(node);
    node = onto;
    return get();
}

/// The node one step on or back; from a removed node, the way goes through the node that followed it, or back
/// from the end through the node before it.
QORHashtable::Node* QORHashtable::Iterator::step(bool forward) const {
    if (!node)
        return nullptr;
    if (!node->removed)
        return forward ? node->next : node->previous;
    Node* way = node;
    bool behind = true; // whether `way` lies behind the gap that is stepped out of
    while (way && way->removed) {
        behind = way->next != nullptr;
        if (forward && !behind)
            return nullptr;
        way = behind ? way->next : way->previous;
    }
    return way && behind && !forward ? way->previous : way;
}

QORContainerItem* QORHashtable::Iterator::operator*() const {
    return get();
}

QORContainerItem* QORHashtable::Iterator::get() const {
    return node && !node->removed ? node->item : nullptr;
}

QORContainerItem* QORHashtable::Iterator::moveToFirst() {
    return place(container ? table()->first : nullptr);
}

QORContainerItem* QORHashtable::Iterator::moveToLast() {
    return place(container ? table()->last : nullptr);
}

QORContainerItem* QORHashtable::Iterator::next(int steps) {
    if (steps < 0)
        return steps == INT_MIN ? place(nullptr) : previous(-steps);
    for (; steps > 0 && node; --steps)
        place(step(true));
    return get();
}

QORContainerItem* QORHashtable::Iterator::previous(int steps) {
    if (steps < 0)
        return steps == INT_MIN ? place(nullptr) : next(-steps);
    for (; steps > 0 && node; --steps)
        place(step(false));
    return get();
}

QORContainerItem* QORHashtable::Iterator::findFirst(QORContainerKey const* key) {
    return place(container ? table()->firstWith(key) : nullptr);
}

QORContainerItem* QORHashtable::Iterator::findLast(QORContainerKey const* key) {
    return place(container ? table()->lastWith(key) : nullptr);
}

QORContainerItem* QORHashtable::Iterator::findNext(QORContainerKey const* key) {
    Node* found = get() ? node->next : nullptr;
    while (found && table()->compare2Key(found->item, key) != 0)
        found = found->next;
    return place(found);
}

QORContainerItem* QORHashtable::Iterator::findPrevious(QORContainerKey const* key) {
    Node* found = get() ? node->previous : nullptr;
    while (found && table()->compare2Key(found->item, key) != 0)
        found = found->previous;
    return place(found);
}

bool QORHashtable::Iterator::operator==(Iterator const& other) const {
    return container == other.container && node == other.node;
}

bool QORHashtable::Iterator::operator!=(Iterator const& other) const {
    return !operator==(other);
}

QORHashtable::Iterator& QORHashtable::Iterator::operator=(Iterator const& other) {
    container = other.container;
    place(other.node);
    return *this;
}

void QORHashtable::Iterator::moveTo(QORHashtable& table, bool toFirst) {
    container = &table;
    place(toFirst ? table.first : nullptr);
}
