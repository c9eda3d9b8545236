#include <qor/QORFormatLinkTree.h>

#include <LinkTreeModel.h>
#include <NamedPool.h>

#include <gtest/gtest.h>

TEST(QORFormatLinkTree, RefusesAnObjectOfTheSameTypeAndName) {
    TypedObject const first(QORString("f"), QORElementType::CLASS);
    TypedObject const second(QORString("f"), QORElementType::CLASS);
    TypedObject const other(QORString("f"), QORElementType::OBJECT);
    QORFormatLinkTree tree;
    EXPECT_TRUE(tree.add(&first, true, nullptr));
    EXPECT_FALSE(tree.add(&second, true, nullptr));
    EXPECT_TRUE(tree.add(&other, true, nullptr));
    EXPECT_EQ(tree.size, 2);
}

TEST(QORFormatLinkTree, SortsByTypeBeforeName) {
    ASSERT_LT(QORElementType::CLASS, QORElementType::OBJECT);
    TypedObject const z(QORString("z"), QORElementType::CLASS);
    TypedObject const a(QORString("a"), QORElementType::OBJECT);
    TypedObject const b(QORString("b"), QORElementType::OBJECT);
    QORFormatLinkTree tree;
    for (TypedObject const* object : {&b, &z, &a})
        EXPECT_TRUE(tree.add(object, true, nullptr));
    EXPECT_EQ(tree[0], &z);
    EXPECT_EQ(tree[1], &a);
    EXPECT_EQ(tree[2], &b);
    EXPECT_EQ(tree.compare2Object(&a, &z), QORElementType::OBJECT - QORElementType::CLASS);
    EXPECT_LT(tree.compare2Object(&a, &b), 0);
    QORString const key("a");
    EXPECT_EQ(tree.compare2Key(&a, &key), 0);
    EXPECT_GT(tree.compare2Key(&z, &key), 0);
}

TEST(QORFormatLinkTree, FindsByNameWithAScan) {
    TypedObject const objects[] = {TypedObject(QORString("m"), QORElementType::CLASS),
                                   TypedObject(QORString("a"), QORElementType::OBJECT),
                                   TypedObject(QORString("b"), QORElementType::OBJECT),
                                   TypedObject(QORString("m"), QORElementType::OBJECT)};
    LinkTreeProbe<QORFormatLinkTree> tree;
    for (TypedObject const& object : objects)
        EXPECT_TRUE(tree.add(&object, true, nullptr));
    QORString const m("m");
    QORString const a("a");
    EXPECT_EQ(tree.findFirstElement(&a), 1);
    EXPECT_EQ(tree.findFirstElement(&m), 0);
    EXPECT_EQ(tree.findNextElement(&m, 0), 1); // one further than asked
    EXPECT_EQ(tree.current->item, &objects[3]);
    EXPECT_EQ(tree.findLastElement(&m), 3);
}

TEST(QORFormatLinkTree, BehavesLikeASortedVectorOverManyRandomOperations) {
    NamedPool const pool({QORElementType::CLASS, QORElementType::OBJECT, QORElementType::JOIN});
    LinkTreeRules const rules = pool.rules(
        [](QORObject const* a, QORObject const* b) {
            int const order = a->getElementType() - b->getElementType();
            return order ? order : nameOrder(a, b);
        },
        true);
    compareLinkTreeWithModel<QORFormatLinkTree>(rules, 601, 20000);
}
