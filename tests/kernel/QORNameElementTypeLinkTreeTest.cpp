#include <qor/QORNameElementTypeLinkTree.h>

#include <LinkTreeModel.h>
#include <NamedPool.h>

#include <gtest/gtest.h>

TEST(QORNameElementTypeLinkTree, RefusesAnObjectOfTheSameNameAndType) {
    TypedObject const first(QORString("p"), QORElementType::CLASS);
    TypedObject const second(QORString("p"), QORElementType::CLASS);
    TypedObject const other(QORString("p"), QORElementType::ASSOCIATION);
    QORNameElementTypeLinkTree tree;
    EXPECT_TRUE(tree.add(&other, true, nullptr));
    EXPECT_TRUE(tree.add(&first, true, nullptr));
    EXPECT_FALSE(tree.add(&second, true, nullptr));
    ASSERT_LT(QORElementType::CLASS, QORElementType::ASSOCIATION);
    EXPECT_EQ(tree[0], &first);
    EXPECT_EQ(tree[1], &other);
    QORString const key("p");
    EXPECT_EQ(tree.findFirstElement(&key), 0); // whatever its type
    EXPECT_EQ(tree.findNextElement(&key, 0), 1);
    EXPECT_EQ(tree.compare2Object(&other, &first), QORElementType::ASSOCIATION - QORElementType::CLASS);
    EXPECT_EQ(tree.compare2Object(&first, &second), 0);
}

TEST(QORNameElementTypeLinkTree, BehavesLikeASortedVectorOverManyRandomOperations) {
    NamedPool const pool({QORElementType::CLASS, QORElementType::OBJECT, QORElementType::JOIN});
    LinkTreeRules const rules = pool.rules(
        [](QORObject const* a, QORObject const* b) {
            int const order = nameOrder(a, b);
            return order ? order : a->getElementType() - b->getElementType();
        },
        false);
    compareLinkTreeWithModel<QORNameElementTypeLinkTree>(rules, 501, 20000);
}
