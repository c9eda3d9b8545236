#pragma once

#include <qor/QORLinkTree.h>
#include <qor/QORObject.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <functional>
#include <memory>
#include <random>
#include <utility>
#include <vector>

/// Removes this very item, wherever it stands; returns whether it was there.
inline bool removeItem(QORLinkTree& tree, QORContainerItem const* item) {
    QORRBTreeNode* const node = tree.nodeOfItem(item);
    return node && tree.removeNode(node) == item;
}

/// A link tree with its cursor in the open, which counts the steps that it walks.
template <class Tree>
class LinkTreeProbe : public Tree {
public:
    using Tree::_first;
    using Tree::current;
    using Tree::position;
    using Tree::root;

    QORRBTreeNode* nextNode(QORRBTreeNode const* node) const override {
        ++ahead;
        return Tree::nextNode(node);
    }
    QORRBTreeNode* previousNode(QORRBTreeNode const* node) const override {
        ++back;
        return Tree::previousNode(node);
    }
    void resetSteps() const {
        ahead = 0;
        back = 0;
    }

    /// Place of a node, counted from the beginning; -1 if it isn't in the tree.
    int placeOf(QORRBTreeNode const* node) const {
        int place = 0;
        for (QORRBTreeNode const* each = _first; each; each = Tree::nextNode(each), ++place)
            if (each == node)
                return place;
        return -1;
    }
    QORRBTreeNode* nodeAt(int place) const {
        QORRBTreeNode* node = _first;
        for (; node && place > 0; --place)
            node = Tree::nextNode(node);
        return node;
    }

    mutable int ahead = 0;
    mutable int back = 0;
};

/// An object of any element type.
class TypedObject : public QORObject {
public:
    explicit TypedObject(QORString const& itsName, QORElementType type = QORElementType::OBJECT) {
        elementType = type;
        name = itsName;
    }
};

/// The difference of two addresses tells only a sign here.
inline int addressOrder(void const* a, void const* b) {
    return std::less<>()(a, b) ? -1 : std::less<>()(b, a) ? 1 : 0;
}
inline int nameOrder(QORObject const* a, QORObject const* b) {
    return std::strcmp(a->getName().chars, b->getName().chars);
}
inline bool nameMatches(QORObject const* item, void const* key) {
    return std::strcmp(item->getName().chars, static_cast<QORString const*>(key)->chars) == 0;
}

/// What a class of link trees is told to do, and what it is tried with.
struct LinkTreeRules {
    std::function<int(QORObject const*, QORObject const*)> order;
    std::function<bool(QORObject const*, void const*)> matches;
    bool scans; ///< the next match is searched for, otherwise only the neighbour is looked at
    std::vector<QORObject*> items;
    std::vector<void const*> keys;
};

/// A link tree of any class and what stands behind its interface.
class LinkTreeAccess {
public:
    virtual ~LinkTreeAccess() = default;
    virtual QORLinkTree& tree() = 0;
    virtual QORRBTreeNode const* first() const = 0;
    virtual QORRBTreeNode const* current() const = 0;
    virtual int position() const = 0;
    virtual int placeOf(QORRBTreeNode const* node) const = 0;
    virtual QORRBTreeNode* nodeAt(int place) const = 0;
    /// An empty tree of the same class.
    virtual std::unique_ptr<LinkTreeAccess> make() const = 0;
    virtual std::unique_ptr<LinkTreeAccess> copy() const = 0;
    /// Assigns a tree of the same class.
    virtual void assign(LinkTreeAccess const& other) = 0;
};

template <class Tree>
class LinkTreeAccessTo : public LinkTreeAccess {
public:
    QORLinkTree& tree() override { return probe; }
    QORRBTreeNode const* first() const override { return probe._first; }
    QORRBTreeNode const* current() const override { return probe.current; }
    int position() const override { return probe.position; }
    int placeOf(QORRBTreeNode const* node) const override { return probe.placeOf(node); }
    QORRBTreeNode* nodeAt(int place) const override { return probe.nodeAt(place); }
    std::unique_ptr<LinkTreeAccess> make() const override { return std::make_unique<LinkTreeAccessTo>(); }
    std::unique_ptr<LinkTreeAccess> copy() const override {
        return std::make_unique<LinkTreeAccessTo>(*this);
    }
    void assign(LinkTreeAccess const& other) override {
        probe = static_cast<LinkTreeAccessTo const&>(other).probe;
    }

private:
    LinkTreeProbe<Tree> probe;
};

/// Runs random operations on a link tree and on a sorted std::vector with a cursor that follows the rules
/// naively, and compares results, order and cursor after each.
class LinkTreeModel {
public:
    LinkTreeModel(LinkTreeRules const& classRules, std::unique_ptr<LinkTreeAccess> emptyTree, unsigned seed)
        : rules(classRules), random(seed), access(std::move(emptyTree)), tree(&access->tree()) {}

    void run(int steps) {
        for (int i = 0; i < steps && !testing::Test::HasFailure(); ++i) {
            growing = i / 500 % 2 == 0;
            int const operation = pick(28);
            SCOPED_TRACE(testing::Message() << "step " << i << ", operation " << operation);
            step(operation);
            compare();
        }
        EXPECT_GT(largest, 20) << "the run hasn't come far";
        EXPECT_EQ(lagged, rules.scans) << "whether the cursor ever lagged behind its node";
    }

private:
    using Elements = std::vector<QORObject*>;

    int pick(int below) { return std::uniform_int_distribution<int>(0, below - 1)(random); }
    template <class Entry>
    Entry any(std::vector<Entry> const& entries) {
        return entries[static_cast<std::size_t>(pick(static_cast<int>(entries.size())))];
    }
    int count() const { return static_cast<int>(elements.size()); }
    QORObject* at(int index) const { return elements[static_cast<std::size_t>(index)]; }
    bool matches(int index, void const* key) const { return rules.matches(at(index), key); }

    /// Negative if `a` lies before `b`: among equals, the address decides.
    int fullOrder(QORObject const* a, QORObject const* b) const {
        int const order = rules.order(a, b);
        return order ? order : addressOrder(a, b);
    }

    // ---- the cursor ----

    void setCursor(int index) {
        position = index;
        place = index;
    }

    /// Index of the element at a position; -1 if there is none.
    int moveTo(int index) {
        if (index < 0 || index >= count())
            return -1;
        if (position == -1)
            setCursor(0);
        if (index == position)
            return place;
        bool const fromAnEnd =
            index > position ? index - position >= count() - index + 9 : position - index >= index;
        int const walked = fromAnEnd ? index : place + index - position;
        place = walked >= 0 && walked < count() ? walked : index;
        position = index;
        return place;
    }

    void noteAdded(int index) {
        if (position == -1)
            return;
        QORObject* const before = at(place < index ? place : place + 1);
        bool const wasFirst = place == 0;
        if (index <= place)
            ++place;
        if (index == 0)
            ++position;
        else if (!wasFirst && at(index) == before)
            position = -1;
        else if (!wasFirst && fullOrder(at(index), before) < 0)
            ++position;
    }

    void erase(int index) {
        QORObject* const item = at(index);
        if (position != -1 && index == place) {
            if (position == count() - 1) {
                --position;
                --place;
            } else if (place == count() - 1) {
                place = -1;
            }
            if (place == -1)
                position = -1;
        } else if (position != -1) {
            if (item == at(place))
                position = -1;
            else if (fullOrder(item, at(place)) < 0)
                --position;
            if (index < place)
                --place;
        }
        elements.erase(elements.begin() + index);
    }

    // ---- operations ----

    void add() {
        QORObject* const item = any(rules.items);
        bool const unique = pick(4) != 0;
        bool const refused = unique && std::any_of(elements.begin(), elements.end(), [&](QORObject* each) {
                                 return rules.order(item, each) == 0;
                             });
        auto const behind = std::find_if(elements.begin(), elements.end(),
                                         [&](QORObject* each) { return fullOrder(item, each) < 0; });
        int const index = static_cast<int>(behind - elements.begin());
        if (!refused) {
            elements.insert(behind, item);
            noteAdded(index);
        }
        switch (pick(3)) {
        case 0: {
            QORRBTreeNode* const node = tree->addNode(item, unique);
            ASSERT_EQ(node == nullptr, refused);
            if (node) {
                ASSERT_EQ(node->item, item);
            }
            return;
        }
        case 1: {
            QORLinkTree::Iterator iterator;
            ASSERT_EQ(tree->add(item, unique, &iterator), !refused);
            ASSERT_EQ(iterator.get(), refused ? nullptr : item);
            return;
        }
        default:
            setCursor(refused ? -1 : index);
            ASSERT_EQ(tree->addElement(item, unique), position);
        }
    }

    /// Index of the node that stands for an item: that of the item itself, or of one that equals it.
    int indexOfNode(QORObject* item, QORRBTreeNode const* node) const {
        bool const there = std::find(elements.begin(), elements.end(), item) != elements.end();
        bool const equal = std::any_of(elements.begin(), elements.end(),
                                       [&](QORObject* each) { return rules.order(each, item) == 0; });
        EXPECT_EQ(node != nullptr, equal);
        if (!node)
            return -1;
        if (there) {
            EXPECT_EQ(node->item, item);
        } else {
            EXPECT_EQ(rules.order(static_cast<QORObject*>(node->item), item), 0);
        }
        return access->placeOf(node);
    }

    void remove(int how) {
        QORObject* const item = any(rules.items);
        bool const there = std::find(elements.begin(), elements.end(), item) != elements.end();
        switch (how) {
        case 0: {
            if (elements.empty())
                return;
            int const index = pick(count());
            ASSERT_EQ(tree->removeNode(access->nodeAt(index)), at(index));
            return erase(index);
        }
        case 1: {
            int index = pick(count() + 4) - 2;
            if (index == -1 && position == -1)
                return; // no valid argument
            moveTo(index);
            QORObject* const expected = index == position ? at(place) : nullptr;
            ASSERT_EQ(tree->removeElement(index), expected);
            if (expected)
                erase(place);
            return;
        }
        case 2: {
            QORLinkTree::Iterator iterator;
            int const index = indexOfNode(item, tree->getNode(item));
            ASSERT_EQ(tree->contains(item, &iterator), index != -1);
            ASSERT_EQ(tree->remove(&iterator), index != -1);
            if (index == -1)
                return;
            erase(index);
            ASSERT_EQ(iterator.get(), index < count() ? at(index) : nullptr);
            return;
        }
        default: {
            int const index = there ? access->placeOf(tree->getNode(item)) : -1;
            ASSERT_EQ(removeItem(*tree, item), there);
            if (there)
                erase(index);
        }
        }
    }

    void findFromAnEnd(bool first) {
        void const* const key = any(rules.keys);
        int index = first ? 0 : count() - 1;
        while (index >= 0 && index < count() && !matches(index, key))
            index += first ? 1 : -1;
        if (index == count())
            index = -1;
        QORRBTreeNode* const node = first ? tree->findFirstNode(key) : tree->findLastNode(key);
        ASSERT_EQ(node ? access->placeOf(node) : -1, index);
        if (first) {
            ASSERT_EQ(tree->findFirst(key, nullptr), node ? node->item : nullptr);
        }
        setCursor(index);
        ASSERT_EQ(first ? tree->findFirstElement(key) : tree->findLastElement(key), index);
    }

    void findFrom(bool next) {
        void const* const key = any(rules.keys);
        int const from = pick(count() + 4) - 2;
        int const direction = next ? 1 : -1;
        int const start = moveTo(from);
        int found = -1;
        for (int index = start + direction; start != -1 && index >= 0 && index < count();
             index += direction) {
            if (matches(index, key)) {
                found = index;
                break;
            }
            if (!rules.scans)
                break;
        }
        if (found != -1) {
            position += direction;
            place = found;
        }
        int const expected = found == -1 ? -1 : position;
        ASSERT_EQ(next ? tree->findNextElement(key, from) : tree->findPreviousElement(key, from), expected);
    }

    void read() {
        int const index = pick(count() + 4) - 2;
        if (index == -1 && position == -1)
            return; // no valid argument
        moveTo(index);
        QORObject* const expected = index == position ? at(place) : nullptr;
        ASSERT_EQ((*tree)[index], expected);
    }

    void use(std::unique_ptr<LinkTreeAccess> other) {
        access = std::move(other);
        tree = &access->tree();
    }

    void replace(int how) {
        if (how == 0) {
            elements.clear();
            position = -1;
            ASSERT_TRUE(tree->empty());
            return;
        }
        if (how == 1) { // a copy takes the place of its source
            use(access->copy());
        } else if (how == 2) {
            std::unique_ptr<LinkTreeAccess> target = access->make();
            for (int i = 0; i < 5; ++i)
                target->tree().addElement(any(rules.items), false);
            target->assign(*access);
            ASSERT_TRUE(target->tree() == *tree);
            ASSERT_FALSE(target->tree() != *tree);
            use(std::move(target));
        } else {
            access->assign(*access);
            return;
        }
        position = -1;
    }

    void step(int operation) {
        if (operation < (growing ? 10 : 4))
            return add();
        if (operation < 12)
            return remove(operation % 4);
        switch (operation) {
        case 12:
        case 13:
            return findFromAnEnd(true);
        case 14:
        case 15:
            return findFromAnEnd(false);
        case 16:
        case 17:
        case 18:
            return findFrom(true);
        case 19:
        case 20:
            return findFrom(false);
        case 21: {
            QORObject* const item = any(rules.items);
            int const index = indexOfNode(item, tree->getNode(item));
            setCursor(index);
            ASSERT_EQ(tree->containsElement(item), index);
            return;
        }
        case 22:
            if (pick(20) == 0)
                replace(pick(8) == 0 ? 0 : 1 + pick(3));
            return;
        default:
            return read();
        }
    }

    void compare() {
        largest = std::max(largest, count());
        ASSERT_EQ(tree->size, count());
        QORRBTreeNode const* node = access->first();
        for (QORObject* element : elements) {
            ASSERT_NE(node, nullptr);
            ASSERT_EQ(node->item, element);
            node = tree->QORRBTree::nextNode(node);
        }
        ASSERT_EQ(node, nullptr);
        ASSERT_EQ(access->position(), position);
        if (position == -1)
            return;
        ASSERT_EQ(access->placeOf(access->current()), place);
        if (!rules.scans) {
            ASSERT_EQ(place, position);
        }
        lagged |= place != position;
    }

    LinkTreeRules const& rules;
    std::mt19937 random;
    std::unique_ptr<LinkTreeAccess> access;
    QORLinkTree* tree; ///< that of `access`
    Elements elements;
    int position = -1; ///< what the tree's cursor says
    int place = -1;    ///< where its node really lies
    int largest = 0;
    bool growing = true;
    bool lagged = false;
};

/// Compares a class of link trees with its rules over a fixed series of random operations.
template <class Tree>
void compareLinkTreeWithModel(LinkTreeRules const& rules, unsigned seed, int steps) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    LinkTreeModel(rules, std::make_unique<LinkTreeAccessTo<Tree>>(), seed).run(steps);
}
