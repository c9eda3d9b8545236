#include <qor/QORLinkTree.h>

#include "QORAssert.h"

#include <exception>

// ---- the cursor's invariant -----------------------------------------------------------------------------

namespace {

// The expression and the file are part of the message that users know.
constexpr char const* invariant =
    "( ( (this)->position==-1 ) || ( ((this)->position==0) && ((this)->current==(this)->_first) ) || ( "
    "((this)->position==(this)->size-1) && ((this)->current==lastNode()) ) || ( ((this)->position!=-1) && "
    "((this)->current!=__null) ) )";

void require(bool holds, unsigned line, char const* function) {
    if (!holds)
        qorAssertionFailed(invariant, "QORNaryLink.cpp", line, function);
}

} // namespace

/// The middle clauses of the invariant are special cases of the last one, but for the node of an empty end.
bool QORLinkTree::cursorHolds() const {
    return position == -1 || current || (position == 0 && !_first) || (position == size - 1 && !root);
}

// ---- QORLinkTree ----------------------------------------------------------------------------------------

QORLinkTree::QORLinkTree(QORLinkTree const& other) : _QORContainer(), QORRBTree(other), QORArrayInterface() {}

QORLinkTree& QORLinkTree::operator=(QORLinkTree const& other) {
    QORLinkTree::operator=(static_cast<QORRBTree const&>(other));
    return *this;
}

QORRBTree& QORLinkTree::operator=(QORRBTree const& other) {
    return QORRBTree::operator=(other); // which empties this end, and so unsets the cursor
}

void QORLinkTree::unsetCursor() const {
    position = -1;
    current = nullptr;
}

bool QORLinkTree::empty() {
    unsetCursor();
    return QORRBTree::empty();
}

std::type_info const& QORLinkTree::countedAs() const {
    return typeid(QORLinkTree);
}

/// Whether places can be had without a walk.
bool QORLinkTree::hasPlaces() const {
    return typeid(*this) == countedAs() && isCounted();
}

/// Up to here, walking from node to node is as quick as going by counts.
constexpr int fewSteps = 32;

int QORLinkTree::_moveTo(QORRBTreeNode const* node) const {
    if (!node) {
        unsetCursor();
        return -1;
    }
    QORRBTreeNode const* at = node;
    int place;
    if (size > fewSteps && hasPlaces()) {
        place = placeOf(at);
    } else if (compare2Object(at->item, root->item) < 0) {
        place = 0;
        while ((at = previousNode(at)))
            ++place;
    } else {
        place = size - 1;
        while ((at = nextNode(at)))
            --place;
    }
    current = const_cast<QORRBTreeNode*>(node); // not before comparing, which may throw
    return position = place;
}

/// Steps over `steps` nodes, ahead if positive. Returns null when the tree ends earlier.
QORRBTreeNode* QORLinkTree::walk(QORRBTreeNode* from, int steps) const {
    if (from && (steps > fewSteps || steps < -fewSteps) && hasPlaces())
        return nodeAt(placeOf(from) + steps);
    for (; from && steps > 0; --steps)
        from = nextNode(from);
    for (; from && steps < 0; ++steps)
        from = previousNode(from);
    return from;
}

QORRBTreeNode* QORLinkTree::_moveTo(int index) const {
    if (index < 0 || index >= size || !_first)
        return nullptr;
    if (position == -1) {
        position = 0;
        current = _first;
    }
    if (index == position)
        return current;
    if (index > position) {
        // The walk ahead from the cursor is favoured over the jump to the end.
        constexpr int bias = 9;
        int const ahead = index - position;
        current = ahead >= size - index + bias ? walk(lastNode(), index - (size - 1)) : walk(current, ahead);
    } else {
        int const back = position - index;
        current = back >= index ? walk(_first, index) : walk(current, -back);
    }
    // A search by scan may have left the cursor's node further along than its position says; a walk from
    // there can miss, a walk from the beginning can't.
    if (!current)
        current = walk(_first, index);
    position = current ? index : -1;
    return current;
}

/// Brings the cursor's position up to date after `node` has been added. The tree's shape shows the order, so
/// that this holds too where keys have changed since elements were added.
void QORLinkTree::noteAdded(QORRBTreeNode* node) {
    if (position == -1)
        unsetCursor(); // the last node may be another one now
    else if (node == _first)
        ++position;
    else if (current != _first) {
        if (node->item == current->item)
            unsetCursor();
        else if (liesBefore(node, current))
            ++position;
    }
}

QORRBTreeNode* QORLinkTree::addNode(QORContainerItem const* item, bool unique) {
    return addNode(item, unique, false, nullptr);
}

QORRBTreeNode* QORLinkTree::addLinked(QORContainerItem const* item, bool owned, bool byAddress) {
    QORRBTreeNode* last = byAddress && position == -1 ? lastKnown() : nullptr;
    QORRBTreeNode* const node = addNode(item, true, owned, byAddress ? &last : nullptr);
    if (position == -1)
        lastKnown() = last;
    return node;
}

QORRBTreeNode* QORLinkTree::addNode(QORContainerItem const* item, bool unique, bool owned,
                                    QORRBTreeNode** last) {
    constexpr char const* function =
        "virtual QORRBTreeNode* QORLinkTree::addNode(const QORContainerItem*, bool)";
    require(cursorHolds(), __LINE__, function);
    QORRBTreeNode* const node = makeNode(item, unique, owned, last);
    if (!node)
        return nullptr;
    noteAdded(node);
    require(cursorHolds(), __LINE__, function);
    return node;
}

/// Moves the cursor off a node that is about to leave, or counts the node off the cursor's position.
void QORLinkTree::leaveNode(QORRBTreeNode* node) {
    if (position == -1) {
        if (node == lastKnown())
            lastKnown() = nullptr;
        return;
    }
    if (node == current) {
        bool const isLast = position == size - 1;
        current = isLast ? previousNode(node) : nextNode(node);
        if (isLast)
            --position;
        // After a search by scan, the node may have been the last one without its position saying so.
        if (!current)
            position = -1;
    } else if (node->item == current->item) {
        unsetCursor();
    } else if (liesBefore(node, current) && --position == -1) {
        unsetCursor(); // as above, the position may have said less
    }
}

QORContainerItem* QORLinkTree::removeNode(QORRBTreeNode* node) {
    constexpr char const* function = "virtual QORContainerItem* QORLinkTree::removeNode(QORRBTreeNode*)";
    require(cursorHolds(), __LINE__, function);
    if (!node)
        return nullptr;
    leaveNode(node);
    QORContainerItem* const item = QORRBTree::removeNode(node);
    require(cursorHolds(), __LINE__, function);
    return item;
}

int QORLinkTree::addElement(QORContainerItem const* item, bool unique) {
    return _moveTo(addNode(item, unique));
}

int QORLinkTree::containsElement(QORContainerItem const* item) const {
    return _moveTo(getNode(item));
}

QORContainerItem* QORLinkTree::operator[](int index) const {
    if (index != position && !_moveTo(index))
        return nullptr;
    return index >= 0 && current ? current->item : nullptr;
}

int QORLinkTree::findFirstElement(QORContainerKey const* key) const {
    require(cursorHolds(), __LINE__,
            "virtual int QORLinkTree::findFirstElement(const QORContainerKey*) const");
    return _moveTo(findFirstNode(key));
}

int QORLinkTree::findLastElement(QORContainerKey const* key) const {
    require(cursorHolds(), __LINE__,
            "virtual int QORLinkTree::findLastElement(const QORContainerKey*) const");
    return _moveTo(findLastNode(key));
}

int QORLinkTree::findNextElement(QORContainerKey const* key, int from) const {
    require(cursorHolds(), __LINE__,
            "virtual int QORLinkTree::findNextElement(const QORContainerKey*, int) const");
    QORRBTreeNode* const node = _moveTo(from);
    if (!node)
        return -1;
    QORRBTreeNode* const found = findNextNode(key, node);
    if (!found)
        return -1;
    current = found;
    return ++position; // by one even where a scan has found a match further along
}

int QORLinkTree::findPreviousElement(QORContainerKey const* key, int from) const {
    require(cursorHolds(), __LINE__,
            "virtual int QORLinkTree::findPreviousElement(const QORContainerKey*, int) const");
    QORRBTreeNode* const node = _moveTo(from);
    if (!node)
        return -1;
    QORRBTreeNode* const found = findPreviousNode(key, node);
    if (!found)
        return -1;
    current = found;
    if (--position == -1)
        unsetCursor(); // after a search by scan, the node may lie further along than its position says
    return position;
}

QORContainerItem* QORLinkTree::removeElement(int index) {
    require(cursorHolds(), __LINE__, "virtual QORContainerItem* QORLinkTree::removeElement(int)");
    if (index != position && !_moveTo(index))
        return nullptr;
    return index >= 0 ? removeNode(current) : nullptr;
}

bool QORLinkTree::rekeyNode(QORRBTreeNode* node, void (*change)(void*), void* context) {
    if (!node) {
        change(context);
        return true;
    }
    QORRBTreeNode* const follower = following(node);
    leaveNode(node);
    unlinkNode(node);
    change(context);
    /// Restores what wasn't taken, also where a caller's comparison throws.
    struct Settling {
        QORLinkTree& tree;
        QORRBTreeNode* node;
        QORRBTreeNode* follower;
        void (*change)(void*);
        void* context;
        bool taken = false;

        ~Settling() {
            if (!taken) {
                change(context);
                tree.relinkNodeBefore(node, follower);
            }
            tree.noteAdded(node);
        }
    } settling{*this, node, follower, change, context};
    return settling.taken = relinkNode(node, true);
}

QORRBTreeNode* QORLinkTree::adoptItem(QORLinkTree& other, QORContainerItem const* item) {
    QORRBTreeNode* const node = other.nodeOfItem(item);
    if (!node)
        return nullptr;
    QORRBTreeNode* const follower = following(node);
    other.leaveNode(node);
    other.unlinkNode(node);
    std::exception_ptr thrown; // by a caller's comparison
    try {
        if (relinkNode(node, true)) {
            noteAdded(node);
            return node;
        }
    } catch (...) {
        thrown = std::current_exception();
    }
    other.relinkNodeBefore(node, follower);
    other.noteAdded(node);
    if (thrown)
        std::rethrow_exception(thrown);
    return nullptr;
}

QORContainerItem* QORLinkTree::drainFirst() {
    unsetCursor();
    return QORRBTree::drainFirst();
}
