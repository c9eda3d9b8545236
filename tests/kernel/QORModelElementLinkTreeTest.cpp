#include <qor/QORAssociation.h>
#include <qor/QORClass.h>
#include <qor/QORModelElementLinkTree.h>
#include <qor/QORSQLViewEntity.h>

#include <LinkTreeModel.h>
#include <NamedPool.h>

#include <gtest/gtest.h>

#include <algorithm>

namespace {

constexpr QORElementType relationships[] = {QORElementType::GENERALIZATION,       QORElementType::ASSOCIATION,
                                            QORElementType::SQL_VIEW_ASSOCIATION, QORElementType::DEPENDENCY,
                                            QORElementType::REALIZATION,          QORElementType::JOIN};

int typeOf(QORObject const* object) {
    return object->getElementType() == QORElementType::SQL_VIEW_ENTITY ? QORElementType::CLASS
                                                                       : object->getElementType();
}

} // namespace

TEST(QORModelElementLinkTree, LetsAViewCollideWithAClassOfItsName) {
    QORClass table;
    QORSQLViewEntity view;
    table.setName(QORString("orders"));
    view.setName(QORString("orders"));
    QORModelElementLinkTree tree;
    EXPECT_EQ(tree.compare2Object(&table, &view), 0);
    EXPECT_EQ(tree.compare2Object(&view, &table), 0);
    EXPECT_TRUE(tree.add(&view, true, nullptr));
    EXPECT_FALSE(tree.add(&table, true, nullptr));
    tree.empty();
    EXPECT_TRUE(tree.add(&table, true, nullptr));
    EXPECT_FALSE(tree.add(&view, true, nullptr));
}

TEST(QORModelElementLinkTree, TakesAssociationsOfTheSameName) {
    QORAssociation associations[2];
    QORClass table;
    for (QORAssociation& association : associations)
        association.setName(QORString("same"));
    table.setName(QORString("same"));
    QORModelElementLinkTree tree;
    EXPECT_TRUE(tree.add(&associations[1], true, nullptr));
    EXPECT_TRUE(tree.add(&associations[0], true, nullptr));
    EXPECT_FALSE(tree.add(&associations[0], true, nullptr));
    EXPECT_TRUE(tree.add(&table, true, nullptr));
    EXPECT_EQ(tree.size, 3);
    EXPECT_EQ(tree[0], static_cast<QORObject*>(&table)); // 13 before 17
    EXPECT_EQ(tree[1], static_cast<QORObject*>(&associations[0]));
    EXPECT_EQ(tree[2], static_cast<QORObject*>(&associations[1]));
}

TEST(QORModelElementLinkTree, LetsOnlyRelationshipsShareNameAndType) {
    QORModelElementLinkTree const tree;
    int sharing = 0;
    for (int number = 0; number < 200; ++number) {
        auto const type = static_cast<QORElementType>(number);
        bool const isRelationship =
            std::find(std::begin(relationships), std::end(relationships), type) != std::end(relationships);
        TypedObject const pair[2] = {TypedObject(QORString("e"), type), TypedObject(QORString("e"), type)};
        int const expected = isRelationship ? static_cast<int>(sizeof(TypedObject)) : 0;
        EXPECT_EQ(tree.compare2Object(&pair[1], &pair[0]), expected) << number;
        EXPECT_EQ(tree.compare2Object(&pair[0], &pair[1]), -expected) << number;
        EXPECT_EQ(tree.compare2Object(&pair[0], &pair[0]), 0);
        sharing += isRelationship;
    }
    EXPECT_EQ(sharing, 6);
}

TEST(QORModelElementLinkTree, ComparesNamesThenTypes) {
    TypedObject const classA(QORString("a"), QORElementType::CLASS);
    TypedObject const objectA(QORString("a"), QORElementType::OBJECT);
    TypedObject const viewA(QORString("a"), QORElementType::SQL_VIEW_ENTITY);
    TypedObject const classB(QORString("b"), QORElementType::CLASS);
    QORModelElementLinkTree const tree;
    EXPECT_LT(tree.compare2Object(&objectA, &classB), 0);
    EXPECT_EQ(tree.compare2Object(&objectA, &classA), QORElementType::OBJECT - QORElementType::CLASS);
    EXPECT_EQ(tree.compare2Object(&objectA, &viewA), QORElementType::OBJECT - QORElementType::CLASS);
    EXPECT_EQ(tree.compare2Object(&viewA, &objectA), QORElementType::CLASS - QORElementType::OBJECT);
    QORString const key("a");
    EXPECT_EQ(tree.compare2Key(&viewA, &key), 0);
    EXPECT_GT(tree.compare2Key(&classB, &key), 0);
}

TEST(QORModelElementLinkTree, BehavesLikeASortedVectorOverManyRandomOperations) {
    NamedPool const pool({QORElementType::CLASS, QORElementType::SQL_VIEW_ENTITY, QORElementType::ASSOCIATION,
                          QORElementType::JOIN});
    LinkTreeRules const rules = pool.rules(
        [](QORObject const* a, QORObject const* b) {
            if (int const order = nameOrder(a, b))
                return order;
            if (int const order = typeOf(a) - typeOf(b))
                return order;
            return typeOf(a) == QORElementType::CLASS ? 0 : addressOrder(a, b);
        },
        true);
    for (unsigned seed : {701U, 702U})
        compareLinkTreeWithModel<QORModelElementLinkTree>(rules, seed, 20000);
}
