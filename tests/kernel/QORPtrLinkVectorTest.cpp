#include <qor/QORPtrLinkVector.h>

#include <LinkTreeModel.h>
#include <VectorModel.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

TEST(QORPtrLinkVector, RefusesOnlyTheSameObjectAgainAndKeepsTheOrderOfAdding) {
    TypedObject const b(QORString("b"));
    TypedObject const a(QORString("a"));
    TypedObject const alsoA(QORString("a"));
    QORPtrLinkVector vector;
    EXPECT_EQ(vector.addElement(&b, true), 0);
    EXPECT_EQ(vector.addElement(&a, true), 1);
    EXPECT_EQ(vector.addElement(&alsoA, true), 2);
    EXPECT_EQ(vector.addElement(&a, true), -1);
    EXPECT_EQ(vector[0], &b);
    EXPECT_EQ(vector[1], &a);
    EXPECT_EQ(vector[2], &alsoA);
    EXPECT_EQ(vector.compare2Object(&a, &a), 0);
    EXPECT_NE(vector.compare2Object(&a, &alsoA), 0);
    EXPECT_FALSE(vector.add(&b, true, nullptr));
}

TEST(QORPtrLinkVector, FindsByName) {
    TypedObject const objects[] = {TypedObject(QORString("a")), TypedObject(QORString("b")),
                                   TypedObject(QORString("a"))};
    QORPtrLinkVector vector;
    for (TypedObject const& object : objects)
        vector.add(&object, true, nullptr);
    QORString const a("a");
    QORString const prefix("");
    EXPECT_EQ(vector.compare2Key(&objects[0], &a), 0);
    EXPECT_GT(vector.compare2Key(&objects[1], &a), 0);
    EXPECT_EQ(vector.findFirst(&a, nullptr), &objects[0]);
    EXPECT_EQ(vector.findFirstElement(&a), 0);
    EXPECT_EQ(vector.findNextElement(&a, 0), 2);
    EXPECT_EQ(vector.findLastElement(&a), 2);
    EXPECT_EQ(vector.findPreviousElement(&a, 2), 0);
    EXPECT_EQ(vector.findFirstElement(&prefix), -1);
}

TEST(QORPtrLinkVector, IsSmall) {
    EXPECT_LE(sizeof(QORPtrLinkVector), sizeof(void*) == 8 ? 48U : 24U);
}

TEST(QORPtrLinkVector, BehavesLikeAStandardVectorOverManyRandomOperations) {
    std::vector<std::unique_ptr<TypedObject>> objects;
    std::vector<QORString> keys;
    for (int i = 0; i < 25; ++i)
        keys.emplace_back(std::to_string(i).c_str());
    VectorRules rules{[](void const* a, void const* b) { return a == b; },
                      [](void const* item, void const* key) {
                          return nameMatches(static_cast<QORObject const*>(item), key);
                      },
                      {},
                      {}};
    for (int i = 0; i < 60; ++i) {
        objects.push_back(std::make_unique<TypedObject>(keys[static_cast<std::size_t>(i * 7 % 23)]));
        rules.items.push_back(objects.back().get());
    }
    for (QORString const& key : keys)
        rules.keys.push_back(&key);
    compareVectorWithModel<QORPtrLinkVector>(rules, 1001, 15000);
}
