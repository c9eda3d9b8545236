#include <qor/QORPtrLinkTree.h>

#include <LinkTreeModel.h>
#include <NamedPool.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

/// Objects in an array, so that the order of the tree is that of the array.
class QORPtrLinkTreeScan : public testing::Test {
protected:
    QORPtrLinkTreeScan() {
        for (char const* name : {"x", "a", "x", "b", "x", "a", "xx", "", "x", "c"})
            objects.emplace_back(QORString(name));
        for (TypedObject const& object : objects)
            tree.add(&object, true, nullptr);
        tree.resetSteps();
    }
    int findNext(int from, QORString const& key) const { return tree.findNextElement(&key, from); }
    int findPrevious(int from, QORString const& key) const { return tree.findPreviousElement(&key, from); }

    std::vector<TypedObject> objects;
    LinkTreeProbe<QORPtrLinkTree> tree;
    QORString const x{"x"};
    QORString const a{"a"};
    QORString const c{"c"};
};

} // namespace

TEST_F(QORPtrLinkTreeScan, RefusesOnlyTheSameObjectAgain) {
    EXPECT_EQ(tree.size, 10);
    EXPECT_FALSE(tree.add(&objects[3], true, nullptr));
    TypedObject const namesake(x);
    EXPECT_TRUE(tree.add(&namesake, true, nullptr));
    EXPECT_EQ(tree.size, 11);
    EXPECT_TRUE(removeItem(tree, &namesake));
}

TEST_F(QORPtrLinkTreeScan, FindsNodesByNameFromBothEnds) {
    EXPECT_EQ(tree.findFirstNode(&x)->item, &objects[0]);
    EXPECT_EQ(tree.findLastNode(&x)->item, &objects[8]);
    EXPECT_EQ(tree.findFirstNode(&a)->item, &objects[1]);
    EXPECT_EQ(tree.findLastNode(&a)->item, &objects[5]);
    EXPECT_EQ(tree.findFirstNode(&emptyString)->item, &objects[7]);
    EXPECT_EQ(tree.findFirst(&c, nullptr), &objects[9]);
    QORString const missing("y");
    EXPECT_EQ(tree.findFirstNode(&missing), nullptr);
    EXPECT_EQ(tree.findLastNode(&missing), nullptr);
    QORPtrLinkTree const none;
    EXPECT_EQ(none.findFirstNode(&x), nullptr);
    EXPECT_EQ(none.findLastNode(&x), nullptr);
}

TEST_F(QORPtrLinkTreeScan, ScansFromTheNeighbourOfANode) {
    QORRBTreeNode* const first = tree.findFirstNode(&x);
    QORRBTreeNode* const second = tree.findNextNode(&x, first);
    EXPECT_EQ(second->item, &objects[2]);
    EXPECT_EQ(tree.findNextNode(&x, second)->item, &objects[4]);
    EXPECT_EQ(tree.findPreviousNode(&x, second), first);
    EXPECT_EQ(tree.findPreviousNode(&x, first), nullptr);
    EXPECT_EQ(tree.findNextNode(&x, tree.findLastNode(&x)), nullptr);
    EXPECT_EQ(tree.findNextNode(&c, first)->item, &objects[9]);
    tree.resetSteps();
    EXPECT_EQ(tree.findNextNode(&a, second)->item, &objects[5]);
    EXPECT_EQ(tree.ahead, 3);
    EXPECT_EQ(tree.findPreviousNode(&x, tree.nodeAt(8))->item, &objects[4]);
    EXPECT_EQ(tree.back, 4);
}

TEST_F(QORPtrLinkTreeScan, ScansWithAnIteratorAndLeavesTheCursorAlone) {
    ASSERT_EQ(tree[6], &objects[6]);
    QORPtrLinkTree::Iterator iterator(tree, true);
    EXPECT_EQ(iterator.findNext(&x), &objects[2]);
    EXPECT_EQ(iterator.findNext(&c), &objects[9]);
    EXPECT_EQ(iterator.findPrevious(&a), &objects[5]);
    EXPECT_EQ(iterator.findFirst(&a), &objects[1]);
    EXPECT_EQ(iterator.findLast(&x), &objects[8]);
    EXPECT_EQ(iterator.findNext(&x), nullptr);
    EXPECT_EQ(iterator.get(), nullptr);
    EXPECT_EQ(tree.position, 6);
    EXPECT_EQ(tree.current->item, &objects[6]);
}

TEST_F(QORPtrLinkTreeScan, MovesThePositionByOneHoweverFarTheMatchLies) {
    EXPECT_EQ(tree.findFirstElement(&x), 0);
    EXPECT_EQ(findNext(0, x), 1);
    EXPECT_EQ(tree.current->item, &objects[2]);
    EXPECT_EQ(findNext(1, x), 2); // goes on from the node under the cursor
    EXPECT_EQ(tree.current->item, &objects[4]);
    EXPECT_EQ(tree[2], &objects[4]);
    EXPECT_EQ(findNext(2, x), 3);
    EXPECT_EQ(tree.current->item, &objects[8]);
    EXPECT_EQ(findNext(3, x), -1);
    EXPECT_EQ(tree.position, 3);
    EXPECT_EQ(tree.current->item, &objects[8]);
    EXPECT_EQ(tree.findLastElement(&x), 8);
    EXPECT_EQ(findPrevious(8, x), 7);
    EXPECT_EQ(tree.current->item, &objects[4]);
    EXPECT_EQ(findPrevious(7, x), 6);
    EXPECT_EQ(tree.current->item, &objects[2]);
}

TEST_F(QORPtrLinkTreeScan, RecoversTheTruePositionWithTheNextSearchFromAnEnd) {
    EXPECT_EQ(findNext(0, c), 1);
    EXPECT_EQ(tree.current->item, &objects[9]);
    EXPECT_EQ(tree.containsElement(&objects[9]), 9);
    EXPECT_EQ(tree[8], &objects[8]);
    EXPECT_EQ(findNext(0, c), 1);
    EXPECT_EQ(tree.findFirstElement(&a), 1);
    EXPECT_EQ(tree.current->item, &objects[1]);
    EXPECT_EQ(tree[4], &objects[4]);
}

TEST_F(QORPtrLinkTreeScan, ReadsOnWhereTheNodeHasNoNeighbourForThePosition) {
    EXPECT_EQ(findNext(0, c), 1); // the last element, at position 1
    EXPECT_EQ(tree[3], &objects[3]);
    EXPECT_EQ(tree.position, 3);
    EXPECT_EQ(tree.placeOf(tree.current), 3);
    EXPECT_EQ(findPrevious(9, a), 8);
    EXPECT_EQ(tree.current->item, &objects[5]);
    EXPECT_EQ(findPrevious(8, x), 7);
    EXPECT_EQ(findPrevious(7, x), 6);
    EXPECT_EQ(findPrevious(6, x), 5); // the first element, at position 5
    EXPECT_EQ(tree.current->item, &objects[0]);
    EXPECT_EQ(tree[4], &objects[4]);
    EXPECT_EQ(tree.placeOf(tree.current), 4);
}

TEST_F(QORPtrLinkTreeScan, IsUnsetWhenItsNodeLeavesAndHasNoNext) {
    EXPECT_EQ(findNext(0, c), 1);
    EXPECT_EQ(tree.removeElement(1), &objects[9]);
    EXPECT_EQ(tree.position, -1);
    EXPECT_EQ(tree.size, 9);
    EXPECT_EQ(tree[8], &objects[8]);
}

TEST_F(QORPtrLinkTreeScan, IsUnsetWhenItsNodeLeavesAndHasNoPrevious) {
    EXPECT_EQ(findPrevious(3, x), 2);
    EXPECT_EQ(findPrevious(2, x), 1);
    EXPECT_EQ(tree.current->item, &objects[0]);
    for (int i = 9; i >= 2; --i)
        removeItem(tree, &objects[static_cast<std::size_t>(i)]);
    ASSERT_EQ(tree.size, 2);
    ASSERT_EQ(tree.position, 1); // of two, and yet on the first
    EXPECT_EQ(tree.removeElement(1), &objects[0]);
    EXPECT_EQ(tree.position, -1);
    EXPECT_EQ(tree[0], &objects[1]);
}

TEST_F(QORPtrLinkTreeScan, TakesOutAllMatchesInTurn) {
    int removed = 0;
    int position = tree.findFirstElement(&x);
    while (position != -1) {
        QORObject const* const item = static_cast<QORObject*>(tree.removeElement(position));
        ASSERT_NE(item, nullptr);
        EXPECT_STREQ(item->getName().chars, "x");
        ++removed;
        position = position == 0 ? tree.findFirstElement(&x) : findNext(position - 1, x);
    }
    EXPECT_EQ(removed, 4);
    EXPECT_EQ(tree.size, 6);
    EXPECT_EQ(tree.findFirstElement(&x), -1);
}

TEST(QORPtrLinkTree, BehavesLikeASortedVectorOverManyRandomOperations) {
    NamedPool const pool;
    LinkTreeRules const rules = pool.rules(addressOrder, true);
    for (unsigned seed : {101U, 102U})
        compareLinkTreeWithModel<QORPtrLinkTree>(rules, seed, 20000);
}
