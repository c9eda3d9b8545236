#include <qor/QORNameLinkTree.h>

#include <LinkTreeModel.h>
#include <NamedPool.h>

#include <gtest/gtest.h>

TEST(QORNameLinkTree, RefusesAnyObjectOfTheSameName) {
    TypedObject const first(QORString("same"));
    TypedObject const second(QORString("same"), QORElementType::CLASS);
    TypedObject const unnamed{QORString()};
    TypedObject const alsoUnnamed{QORString()};
    QORNameLinkTree tree;
    EXPECT_TRUE(tree.add(&first, true, nullptr));
    EXPECT_FALSE(tree.add(&second, true, nullptr));
    EXPECT_FALSE(tree.add(&first, true, nullptr));
    EXPECT_TRUE(tree.add(&unnamed, true, nullptr));
    EXPECT_FALSE(tree.add(&alsoUnnamed, true, nullptr));
    EXPECT_EQ(tree.size, 2);
    EXPECT_TRUE(tree.contains(&second, nullptr));
}

TEST(QORNameLinkTree, ComparesNamesAndGivesWhatThatGives) {
    TypedObject const a(QORString("a"));
    TypedObject const alsoA(QORString("a"));
    TypedObject const b(QORString("b"));
    TypedObject const capital(QORString("A"));
    TypedObject const high(QORString("\xC3\xA4"));
    QORNameLinkTree const tree;
    EXPECT_EQ(tree.compare2Object(&a, &alsoA), 0);
    EXPECT_LT(tree.compare2Object(&a, &b), 0);
    EXPECT_GT(tree.compare2Object(&b, &a), 0);
    EXPECT_LT(tree.compare2Object(&capital, &a), 0);
    EXPECT_GT(tree.compare2Object(&high, &b), 0); // bytes compare as unsigned
    QORString const key("a");
    QORString const longer("aa");
    EXPECT_EQ(tree.compare2Key(&a, &key), 0);
    EXPECT_LT(tree.compare2Key(&a, &longer), 0);
    EXPECT_GT(tree.compare2Key(&b, &longer), 0);
}

TEST(QORNameLinkTree, AsksTheObjectForItsName) {
    struct Named : QORObject {
        explicit Named(char const* itsName) : shown(itsName) {}
        QORString const& getName() const override { return shown; }
        QORString shown;
    };
    Named const a("a");
    Named const b("b");
    QORNameLinkTree tree;
    EXPECT_TRUE(tree.add(&b, true, nullptr));
    EXPECT_TRUE(tree.add(&a, true, nullptr));
    EXPECT_EQ(tree[0], &a);
    QORString const key("b");
    EXPECT_EQ(tree.findFirst(&key, nullptr), &b);
}

TEST(QORNameLinkTree, FindsByNameAmongNamesakes) {
    TypedObject const objects[] = {TypedObject(QORString("a")), TypedObject(QORString("b")),
                                   TypedObject(QORString("b")), TypedObject(QORString("b")),
                                   TypedObject(QORString("c"))};
    LinkTreeProbe<QORNameLinkTree> tree;
    for (TypedObject const& object : objects)
        EXPECT_TRUE(tree.add(&object, false, nullptr));
    QORString const b("b");
    EXPECT_EQ(tree.findFirstElement(&b), 1);
    EXPECT_EQ(tree.findNextElement(&b, 1), 2);
    EXPECT_EQ(tree.findNextElement(&b, 2), 3);
    EXPECT_EQ(tree.findNextElement(&b, 3), -1);
    EXPECT_EQ(tree.position, 3);
    EXPECT_EQ(tree.findLastElement(&b), 3);
    EXPECT_EQ(tree.findPreviousElement(&b, 3), 2);
    EXPECT_EQ(tree.findPreviousElement(&b, 2), 1);
    EXPECT_EQ(tree.findPreviousElement(&b, 1), -1);
}

TEST(QORNameLinkTree, LooksOnlyAtTheNeighbourForTheNextMatch) {
    TypedObject const a(QORString("a"));
    TypedObject const b(QORString("b"));
    TypedObject const c(QORString("c"));
    QORNameLinkTree tree;
    for (TypedObject const* object : {&a, &b, &c})
        tree.add(object, true, nullptr);
    QORString const key("c");
    EXPECT_EQ(tree.findNextElement(&key, 0), -1);
    EXPECT_EQ(tree.findNextElement(&key, 1), 2);
}

TEST(QORNameLinkTree, BehavesLikeASortedVectorOverManyRandomOperations) {
    NamedPool const pool;
    LinkTreeRules const rules = pool.rules(nameOrder, false);
    for (unsigned seed : {201U, 202U})
        compareLinkTreeWithModel<QORNameLinkTree>(rules, seed, 20000);
}
