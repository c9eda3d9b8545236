#include <qor/QORNamePtrLinkTree.h>

#include <LinkTreeModel.h>
#include <NamedPool.h>

#include <gtest/gtest.h>

TEST(QORNamePtrLinkTree, TakesNamesakesAndFindsTheOneOfTheLowerAddressFirst) {
    TypedObject const objects[2] = {TypedObject(QORString("same")), TypedObject(QORString("same"))};
    TypedObject const before(QORString("a"));
    QORNamePtrLinkTree tree;
    EXPECT_TRUE(tree.add(&objects[1], true, nullptr));
    EXPECT_TRUE(tree.add(&objects[0], true, nullptr));
    EXPECT_TRUE(tree.add(&before, true, nullptr));
    EXPECT_FALSE(tree.add(&objects[0], true, nullptr));
    EXPECT_EQ(tree.size, 3);
    QORString const key("same");
    EXPECT_EQ(tree.findFirstElement(&key), 1);
    EXPECT_EQ(tree[1], &objects[0]);
    EXPECT_EQ(tree.findNextElement(&key, 1), 2);
    EXPECT_EQ(tree[2], &objects[1]);
    EXPECT_EQ(tree.findLastElement(&key), 2);
    EXPECT_TRUE(removeItem(tree, &objects[0]));
    EXPECT_FALSE(tree.contains(&objects[0], nullptr)); // no two objects are equal here
    EXPECT_TRUE(tree.contains(&objects[1], nullptr));
}

TEST(QORNamePtrLinkTree, ComparesNamesThenAddresses) {
    TypedObject const same[2] = {TypedObject(QORString("b")), TypedObject(QORString("b"))};
    TypedObject const a(QORString("a"));
    QORNamePtrLinkTree const tree;
    EXPECT_EQ(tree.compare2Object(&same[0], &same[1]), -static_cast<int>(sizeof(TypedObject)));
    EXPECT_EQ(tree.compare2Object(&same[1], &same[0]), static_cast<int>(sizeof(TypedObject)));
    EXPECT_LT(tree.compare2Object(&a, &same[0]), 0);
    EXPECT_GT(tree.compare2Object(&same[1], &a), 0);
}

TEST(QORNamePtrLinkTree, BehavesLikeASortedVectorOverManyRandomOperations) {
    NamedPool const pool;
    LinkTreeRules const rules = pool.rules(
        [](QORObject const* a, QORObject const* b) {
            int const order = nameOrder(a, b);
            return order ? order : addressOrder(a, b);
        },
        false);
    compareLinkTreeWithModel<QORNamePtrLinkTree>(rules, 401, 20000);
}
