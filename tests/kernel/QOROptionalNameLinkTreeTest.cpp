#include <qor/QORArgument.h>
#include <qor/QOROptionalNameLinkTree.h>

#include <LinkTreeModel.h>
#include <NamedPool.h>

#include <gtest/gtest.h>

TEST(QOROptionalNameLinkTree, TakesAnyNumberOfUnnamedObjectsAndOneOfEachName) {
    QORArgument unnamed[3];
    QORArgument named[2];
    for (QORArgument& argument : named)
        argument.setName(QORString("a"));
    QOROptionalNameLinkTree tree;
    EXPECT_TRUE(tree.add(&unnamed[1], true, nullptr));
    EXPECT_TRUE(tree.add(&named[0], true, nullptr));
    EXPECT_TRUE(tree.add(&unnamed[0], true, nullptr));
    EXPECT_TRUE(tree.add(&unnamed[2], true, nullptr));
    EXPECT_FALSE(tree.add(&unnamed[2], true, nullptr));
    EXPECT_FALSE(tree.add(&named[1], true, nullptr));
    EXPECT_EQ(tree.size, 4);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(tree[i], static_cast<QORObject*>(&unnamed[i]));
    EXPECT_EQ(tree[3], static_cast<QORObject*>(&named[0]));
    EXPECT_EQ(tree.findFirstElement(&emptyString), 0);
    EXPECT_EQ(tree.findLastElement(&emptyString), 2);
    EXPECT_EQ(tree.containsElement(&unnamed[1]), 1);
    EXPECT_EQ(tree.containsElement(&named[1]), 3); // goes by comparison
}

TEST(QOROptionalNameLinkTree, ComparesAddressesOfUnnamedObjectsOnly) {
    TypedObject const unnamed[2] = {TypedObject(QORString()), TypedObject(QORString())};
    TypedObject const named[2] = {TypedObject(QORString("a")), TypedObject(QORString("a"))};
    QOROptionalNameLinkTree const tree;
    EXPECT_EQ(tree.compare2Object(&named[0], &named[1]), 0);
    EXPECT_EQ(tree.compare2Object(&unnamed[0], &unnamed[1]), -static_cast<int>(sizeof(TypedObject)));
    EXPECT_EQ(tree.compare2Object(&unnamed[1], &unnamed[0]), static_cast<int>(sizeof(TypedObject)));
    EXPECT_EQ(tree.compare2Object(&unnamed[0], &unnamed[0]), 0);
    EXPECT_LT(tree.compare2Object(&unnamed[1], &named[0]), 0);
}

TEST(QOROptionalNameLinkTree, BehavesLikeASortedVectorOverManyRandomOperations) {
    NamedPool const pool;
    LinkTreeRules const rules = pool.rules(
        [](QORObject const* a, QORObject const* b) {
            int const order = nameOrder(a, b);
            return order || a->getName().length ? order : addressOrder(a, b);
        },
        false);
    compareLinkTreeWithModel<QOROptionalNameLinkTree>(rules, 301, 20000);
}
