#include <qor/QORRBTree.h>

#include "QORPrefetch.h"

#include <climits>

// ---- links between nodes --------------------------------------------------------------------------------

QORRBTreeNode* QORRBTree::following(QORRBTreeNode const* node) {
    if (node->right) {
        QORRBTreeNode* below = node->right;
        while (below->left)
            below = below->left;
        return below;
    }
    QORRBTreeNode* above = node->parent;
    while (above && above->right == node) {
        node = above;
        above = above->parent;
    }
    return above;
}

QORRBTreeNode* QORRBTree::preceding(QORRBTreeNode const* node) {
    if (node->left) {
        QORRBTreeNode* below = node->left;
        while (below->right)
            below = below->right;
        return below;
    }
    QORRBTreeNode* above = node->parent;
    while (above && above->left == node) {
        node = above;
        above = above->parent;
    }
    return above;
}

bool QORRBTree::liesBefore(QORRBTreeNode const* a, QORRBTreeNode const* b) {
    if (a == b)
        return false;
    int depthA = 0;
    int depthB = 0;
    for (QORRBTreeNode const* up = a->parent; up; up = up->parent)
        ++depthA;
    for (QORRBTreeNode const* up = b->parent; up; up = up->parent)
        ++depthB;
    QORRBTreeNode const* belowA = nullptr;
    QORRBTreeNode const* belowB = nullptr;
    for (; depthA > depthB; --depthA) {
        belowA = a;
        a = a->parent;
    }
    for (; depthB > depthA; --depthB) {
        belowB = b;
        b = b->parent;
    }
    while (a != b) {
        belowA = a;
        belowB = b;
        a = a->parent;
        b = b->parent;
    }
    // `a` is now the lowest common node; the side on which each one hangs is the order.
    if (!belowA)
        return b->right == belowB;
    return a->left == belowA;
}

void QORRBTree::replaceChild(QORRBTreeNode* parent, QORRBTreeNode* from, QORRBTreeNode* to) {
    if (!parent)
        root = to;
    else if (parent->left == from)
        parent->left = to;
    else
        parent->right = to;
    if (to)
        to->parent = parent;
}

void QORRBTree::rotate(QORRBTreeNode* node, bool left) {
    QORRBTreeNode* const up = left ? node->right : node->left;
    QORRBTreeNode* const moved = left ? up->left : up->right;
    replaceChild(node->parent, node, up);
    if (left) {
        up->left = node;
        node->right = moved;
    } else {
        up->right = node;
        node->left = moved;
    }
    node->parent = up;
    if (moved)
        moved->parent = node;
    if (node->count) {
        up->count = node->count;
        node->addUp();
    }
}

void QORRBTree::insertNode(QORRBTreeNode* node, QORRBTreeNode* parent, bool left) {
    node->left = nullptr;
    node->right = nullptr;
    node->parent = parent;
    node->red = 1;
    if (!parent)
        root = node;
    else if (left)
        parent->left = node;
    else
        parent->right = node;
    if (!_first || (left && parent == _first))
        _first = node;
    ++size;
    node->count = parent && parent->count ? 1 : 0;
    if (node->count)
        for (; parent; parent = parent->parent)
            ++parent->count;
    repairInsert(node);
}

void QORRBTree::repairInsert(QORRBTreeNode* node) {
    while (node->parent && node->parent->red) {
        QORRBTreeNode* parent = node->parent;
        QORRBTreeNode* const top = parent->parent;
        bool const onLeft = parent == top->left;
        QORRBTreeNode* const uncle = onLeft ? top->right : top->left;
        if (uncle && uncle->red) {
            parent->red = 0;
            uncle->red = 0;
            top->red = 1;
            node = top;
            continue;
        }
        if (node == (onLeft ? parent->right : parent->left)) {
            rotate(parent, onLeft);
            parent = node;
        }
        parent->red = 0;
        top->red = 1;
        rotate(top, !onLeft);
        break;
    }
    root->red = 0;
}

void QORRBTree::eraseNode(QORRBTreeNode* node) {
    if (node == _first)
        _first = following(node);
    QORRBTreeNode* child;  // what moves up into the gap, perhaps null
    QORRBTreeNode* parent; // where the gap hangs
    bool blackLost;
    if (node->left && node->right) {
        QORRBTreeNode* const heir = following(node);
        blackLost = !heir->red;
        child = heir->right;
        if (heir->parent == node) {
            parent = heir;
        } else {
            parent = heir->parent;
            replaceChild(parent, heir, child);
            heir->right = node->right;
            heir->right->parent = heir;
        }
        replaceChild(node->parent, node, heir);
        heir->left = node->left;
        heir->left->parent = heir;
        heir->red = node->red;
        heir->count = node->count;
    } else {
        blackLost = !node->red;
        child = node->left ? node->left : node->right;
        parent = node->parent;
        replaceChild(parent, node, child);
    }
    if (node->count)
        for (QORRBTreeNode* up = parent; up; up = up->parent)
            --up->count;
    if (blackLost)
        repairErase(child, parent);
}

void QORRBTree::repairErase(QORRBTreeNode* node, QORRBTreeNode* parent) {
    while (parent && !(node && node->red)) {
        bool const onLeft = parent->left == node;
        QORRBTreeNode* sibling = onLeft ? parent->right : parent->left;
        if (sibling->red) {
            sibling->red = 0;
            parent->red = 1;
            rotate(parent, onLeft);
            sibling = onLeft ? parent->right : parent->left;
        }
        QORRBTreeNode* const near = onLeft ? sibling->left : sibling->right;
        QORRBTreeNode* far = onLeft ? sibling->right : sibling->left;
        if (!(near && near->red) && !(far && far->red)) {
            sibling->red = 1;
            node = parent;
            parent = node->parent;
            continue;
        }
        if (!(far && far->red)) {
            near->red = 0;
            sibling->red = 1;
            rotate(sibling, !onLeft);
            far = sibling;
            sibling = near;
        }
        sibling->red = parent->red;
        parent->red = 0;
        far->red = 0;
        rotate(parent, onLeft);
        node = root;
        break;
    }
    if (node)
        node->red = 0;
}

// ---- places ---------------------------------------------------------------------------------------------

bool QORRBTree::isCounted() const {
    auto const deepest = [](QORRBTreeNode* node) {
        while (node->left || node->right)
            node = node->left ? node->left : node->right;
        return node;
    };
    if (root->count == 0) {
        // Each node comes after those that hang on it.
        for (QORRBTreeNode* node = deepest(root); node;) {
            node->addUp();
            QORRBTreeNode* const above = node->parent;
            node = above && above->right && above->right != node ? deepest(above->right) : above;
        }
    }
    return root->count == size;
}

int QORRBTree::placeOf(QORRBTreeNode const* node) {
    int place = QORRBTreeNode::countOf(node->left);
    for (; node->parent; node = node->parent)
        if (node == node->parent->right)
            place += QORRBTreeNode::countOf(node->parent->left) + 1;
    return place;
}

QORRBTreeNode* QORRBTree::nodeAt(int place) const {
    if (place < 0)
        return nullptr;
    QORRBTreeNode* node = root;
    while (node) {
        int const before = QORRBTreeNode::countOf(node->left);
        if (place == before)
            return node;
        if (place < before) {
            node = node->left;
        } else {
            place -= before + 1;
            node = node->right;
        }
    }
    return nullptr;
}

// ---- lifetime of nodes ----------------------------------------------------------------------------------

void QORRBTree::pin(QORRBTreeNode* node) {
    if (node)
        ++node->pins;
}

void QORRBTree::unpin(QORRBTreeNode* node) {
    while (node && --node->pins == 0 && node->removed) {
        QORRBTreeNode* const way = node->right ? node->right : node->left;
        delete node;
        node = way;
    }
}

/// Frees a node that has left the tree, or keeps it for the iterators on it, with their way on: the node that
/// followed, or, if it was the last one, the node before it.
void QORRBTree::retire(QORRBTreeNode* node, QORRBTreeNode* follower, QORRBTreeNode* predecessor) {
    if (node->pins == 0) {
        delete node;
        return;
    }
    node->removed = 1;
    node->left = follower ? nullptr : predecessor;
    node->parent = nullptr;
    node->right = follower;
    pin(follower ? follower : predecessor);
}

void QORRBTree::freeNodes(QORRBTreeNode* top) {
    QORRBTreeNode* node = top;
    while (node) {
        if (node->left) {
            node = node->left;
        } else if (node->right) {
            node = node->right;
        } else {
            QORRBTreeNode* const above = node->parent;
            if (above && above->left == node)
                above->left = nullptr;
            else if (above)
                above->right = nullptr;
            retire(node, nullptr, nullptr);
            node = above;
        }
    }
}

void QORRBTree::cloneFrom(QORRBTree const& other) {
    QORRBTreeNode* previous = nullptr;
    try {
        for (QORRBTreeNode* node = other._first; node; node = following(node)) {
            auto* const copy = new (false) QORRBTreeNode(node->item);
            insertNode(copy, previous, false);
            previous = copy;
        }
    } catch (...) {
        QORRBTree::empty();
        throw;
    }
}

QORRBTree::QORRBTree(QORRBTree const& other) : _QORContainer(), QORContainer() {
    cloneFrom(other);
}

QORRBTree::~QORRBTree() {
    freeNodes(root);
}

// ---- operations -----------------------------------------------------------------------------------------

bool QORRBTree::empty() {
    QORRBTreeNode* const top = root;
    root = nullptr;
    _first = nullptr;
    size = 0;
    freeNodes(top);
    return true;
}

bool QORRBTree::add(QORContainerItem const* item, bool unique, QORContainer::Iterator* iterator) {
    QORRBTreeNode* const node = addNode(item, unique);
    if (!node)
        return false;
    if (auto* const walk = static_cast<Iterator*>(iterator)) {
        walk->container = this;
        walk->place(node);
    }
    return true;
}

bool QORRBTree::contains(QORContainerItem const* item, QORContainer::Iterator* iterator) const {
    QORRBTreeNode* const node = getNode(item);
    if (auto* const walk = static_cast<Iterator*>(iterator)) {
        walk->container = this;
        walk->place(node);
    }
    return node != nullptr;
}

QORContainerItem* QORRBTree::findFirst(QORContainerKey const* key, QORContainer::Iterator* iterator) const {
    QORRBTreeNode* const node = findFirstNode(key);
    if (auto* const walk = static_cast<Iterator*>(iterator)) {
        walk->container = this;
        walk->place(node);
    }
    return node ? node->item : nullptr;
}

bool QORRBTree::remove(QORContainer::Iterator* iterator) {
    auto* const walk = static_cast<Iterator*>(iterator);
    if (!walk || walk->container != this || !walk->node || walk->node->removed)
        return false;
    removeNode(walk->node);
    walk->place(walk->step(true));
    return true;
}

QORRBTree& QORRBTree::operator=(QORRBTree const& other) {
    if (this == &other)
        return *this;
    QORRBTree copy(other);
    empty();
    root = copy.root;
    _first = copy._first;
    size = copy.size;
    copy.root = nullptr;
    return *this;
}

bool QORRBTree::operator==(QORRBTree const& other) const {
    if (this == &other)
        return true;
    if (size != other.size)
        return false;
    QORRBTreeNode* mine = _first;
    QORRBTreeNode* theirs = other._first;
    for (; mine && theirs; mine = following(mine), theirs = following(theirs))
        if (compare2Object(mine->item, theirs->item) != 0)
            return false;
    return !mine && !theirs;
}

bool QORRBTree::operator!=(QORRBTree const& other) const {
    return !operator==(other);
}

QORRBTree::Place QORRBTree::placeFor(QORContainerItem const* item, bool unique) const {
    Place place{nullptr, true, false, true};
    for (QORRBTreeNode* node = root; node;) {
        int order = compare2Object(item, node->item);
        if (order == 0) {
            if (unique)
                return {node, false, true, false};
            order = compareAddresses(item, node->item);
        }
        place = {node, order < 0, false, place.atEnd && order > 0};
        node = order < 0 ? node->left : node->right;
    }
    return place;
}

QORRBTreeNode* QORRBTree::addNode(QORContainerItem const* item, bool unique) {
    return makeNode(item, unique, false, nullptr);
}

QORRBTreeNode* QORRBTree::makeNode(QORContainerItem const* item, bool unique, bool apart,
                                   QORRBTreeNode** last) {
    bool const behindLast = last && *last && compare2Object(item, (*last)->item) > 0;
    Place const place = behindLast ? Place{*last, false, false, true} : placeFor(item, unique);
    if (place.taken)
        return nullptr;
    auto* const node = new (apart) QORRBTreeNode(item);
    insertNode(node, place.parent, place.left);
    if (last && place.atEnd)
        *last = node;
    return node;
}

QORRBTreeNode* QORRBTree::getNode(QORContainerItem const* item) const {
    QORRBTreeNode* equal = nullptr;
    for (QORRBTreeNode* node = root; node;) {
        if (node->item == item)
            return node;
        int order = compare2Object(item, node->item);
        if (order == 0) {
            equal = node;
            order = compareAddresses(item, node->item);
        }
        node = order < 0 ? node->left : node->right;
    }
    return equal;
}

QORRBTreeNode* QORRBTree::firstNode() const {
    return _first;
}

QORRBTreeNode* QORRBTree::lastNode() const {
    QORRBTreeNode* node = root;
    while (node && node->right)
        node = node->right;
    return node;
}

QORRBTreeNode* QORRBTree::nextNode(QORRBTreeNode const* node) const {
    return node ? following(node) : nullptr;
}

QORRBTreeNode* QORRBTree::previousNode(QORRBTreeNode const* node) const {
    return node ? preceding(node) : nullptr;
}

QORRBTreeNode* QORRBTree::findFirstNode(QORContainerKey const* key) const {
    QORRBTreeNode* found = nullptr;
    for (QORRBTreeNode* node = root; node;) {
        prefetchChildren(node);
        int const order = compare2Key(node->item, key);
        if (order == 0)
            found = node;
        node = order >= 0 ? node->left : node->right;
    }
    return found;
}

QORRBTreeNode* QORRBTree::findLastNode(QORContainerKey const* key) const {
    QORRBTreeNode* found = nullptr;
    for (QORRBTreeNode* node = root; node;) {
        int const order = compare2Key(node->item, key);
        if (order == 0)
            found = node;
        node = order > 0 ? node->left : node->right;
    }
    return found;
}

QORRBTreeNode* QORRBTree::findNextNode(QORContainerKey const* key, QORRBTreeNode const* node) const {
    QORRBTreeNode* const next = nextNode(node);
    return next && compare2Key(next->item, key) == 0 ? next : nullptr;
}

QORRBTreeNode* QORRBTree::findPreviousNode(QORContainerKey const* key, QORRBTreeNode const* node) const {
    QORRBTreeNode* const previous = previousNode(node);
    return previous && compare2Key(previous->item, key) == 0 ? previous : nullptr;
}

QORContainerItem* QORRBTree::removeNode(QORRBTreeNode* node) {
    if (!node || node->removed)
        return nullptr;
    QORContainerItem* const item = node->item;
    QORRBTreeNode* const follower = node->pins ? following(node) : nullptr;
    QORRBTreeNode* const predecessor = node->pins ? preceding(node) : nullptr;
    unlinkNode(node);
    retire(node, follower, predecessor);
    return item;
}

// ---- what the link containers need ----------------------------------------------------------------------

QORRBTreeNode* QORRBTree::nodeOfItem(QORContainerItem const* item) const {
    try {
        QORRBTreeNode* const node = getNode(item);
        if (node && node->item == item)
            return node;
    } catch (...) { // a caller's comparison; the scan needs none
    }
    for (QORRBTreeNode* each = _first; each; each = following(each))
        if (each->item == item)
            return each;
    return nullptr;
}

QORContainerItem* QORRBTree::drainFirst() {
    QORRBTreeNode* const node = _first;
    if (!node)
        return nullptr;
    QORContainerItem* const item = node->item;
    QORRBTreeNode* const follower = following(node);
    eraseNode(node);
    retire(node, follower, nullptr);
    return item;
}

void QORRBTree::endDraining() {
    if (!root)
        size = 0;
}

void QORRBTree::unlinkNode(QORRBTreeNode* node) {
    eraseNode(node);
    --size;
}

bool QORRBTree::relinkNode(QORRBTreeNode* node, bool unique) {
    Place const place = placeFor(node->item, unique);
    if (place.taken)
        return false;
    insertNode(node, place.parent, place.left);
    return true;
}

void QORRBTree::relinkNodeBefore(QORRBTreeNode* node, QORRBTreeNode* follower) {
    if (!follower) {
        insertNode(node, QORRBTree::lastNode(), false);
    } else if (!follower->left) {
        insertNode(node, follower, true);
    } else {
        insertNode(node, preceding(follower), false);
    }
}

void QORRBTree::prefetchChildren(QORRBTreeNode const* node) {
    // No branch: the processor can't predict which children there are.
    qorPrefetch((node->left ? node->left : node)->item);
    qorPrefetch((node->right ? node->right : node)->item);
}

QORContainerItem* QORRBTree::Iterator::ahead(int steps) const {
    if (!node || node->removed)
        return nullptr;
    QORRBTreeNode const* there = node;
    while (there && steps-- > 0)
        there = following(there);
    return there ? there->item : nullptr;
}

// ---- iterator -------------------------------------------------------------------------------------------

QORRBTree::Iterator::Iterator(QORRBTree const& tree, bool toFirst) : QORContainer::Iterator(&tree) {
    if (toFirst)
        place(tree._first);
}

QORRBTree::Iterator::Iterator(Iterator const& other) : QORContainer::Iterator(other) {
    place(other.node);
}

QORRBTree::Iterator::~Iterator() {
    unpin(node);
}

QORRBTree const* QORRBTree::Iterator::tree() const {
    return static_cast<QORRBTree const*>(container);
}

QORContainerItem* QORRBTree::Iterator::place(QORRBTreeNode* onto) {
    pin(onto);
    unpin(node);
    node = onto;
    return get();
}

/// The node one step on or back; from a removed node, the way goes through the node that followed it, or back
/// from the end through the node before it.
QORRBTreeNode* QORRBTree::Iterator::step(bool forward) const {
    if (!node)
        return nullptr;
    if (!node->removed)
        return forward ? following(node) : preceding(node);
    QORRBTreeNode* way = node;
    bool behind = true; // whether `way` lies behind the gap that is stepped out of
    while (way && way->removed) {
        behind = way->right != nullptr;
        if (forward && !behind)
            return nullptr;
        way = behind ? way->right : way->left;
    }
    return way && behind && !forward ? preceding(way) : way;
}

QORContainerItem* QORRBTree::Iterator::operator*() const {
    return get();
}

QORContainerItem* QORRBTree::Iterator::get() const {
    return node && !node->removed ? node->item : nullptr;
}

QORContainerItem* QORRBTree::Iterator::moveToFirst() {
    return place(container ? tree()->firstNode() : nullptr);
}

QORContainerItem* QORRBTree::Iterator::moveToLast() {
    return place(container ? tree()->lastNode() : nullptr);
}

QORContainerItem* QORRBTree::Iterator::next(int steps) {
    if (steps == 1 && node && !node->removed) { // the step of most walks
        --node->pins;
        node = following(node);
        if (!node)
            return nullptr;
        ++node->pins;
        return node->item;
    }
    if (steps < 0)
        return steps == INT_MIN ? place(nullptr) : previous(-steps);
    for (; steps > 0 && node; --steps)
        place(step(true));
    return get();
}

QORContainerItem* QORRBTree::Iterator::previous(int steps) {
    if (steps < 0)
        return steps == INT_MIN ? place(nullptr) : next(-steps);
    for (; steps > 0 && node; --steps)
        place(step(false));
    return get();
}

QORContainerItem* QORRBTree::Iterator::findFirst(QORContainerKey const* key) {
    return place(container ? tree()->findFirstNode(key) : nullptr);
}

QORContainerItem* QORRBTree::Iterator::findLast(QORContainerKey const* key) {
    return place(container ? tree()->findLastNode(key) : nullptr);
}

QORContainerItem* QORRBTree::Iterator::findNext(QORContainerKey const* key) {
    return place(node && !node->removed ? tree()->findNextNode(key, node) : nullptr);
}

QORContainerItem* QORRBTree::Iterator::findPrevious(QORContainerKey const* key) {
    return place(node && !node->removed ? tree()->findPreviousNode(key, node) : nullptr);
}

bool QORRBTree::Iterator::operator==(Iterator const& other) const {
    return container == other.container && node == other.node;
}

bool QORRBTree::Iterator::operator!=(Iterator const& other) const {
    return !operator==(other);
}

QORRBTree::Iterator& QORRBTree::Iterator::operator=(Iterator const& other) {
    container = other.container;
    place(other.node);
    return *this;
}

void QORRBTree::Iterator::moveTo(QORRBTree& tree, bool toFirst) {
    container = &tree;
    place(toFirst ? tree.firstNode() : nullptr);
}
