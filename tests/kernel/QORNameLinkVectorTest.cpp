#include <qor/QORNameLinkVector.h>

#include <LinkTreeModel.h>
#include <VectorModel.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

TEST(QORNameLinkVector, RefusesAnyObjectOfTheSameNameAndKeepsTheOrderOfAdding) {
    TypedObject const b(QORString("b"));
    TypedObject const a(QORString("a"));
    TypedObject const alsoA(QORString("a"), QORElementType::CLASS);
    QORNameLinkVector vector;
    EXPECT_EQ(vector.addElement(&b, true), 0);
    EXPECT_EQ(vector.addElement(&a, true), 1);
    EXPECT_EQ(vector.addElement(&alsoA, true), -1);
    EXPECT_EQ(vector[0], &b);
    EXPECT_EQ(vector[1], &a);
    EXPECT_EQ(vector.compare2Object(&a, &alsoA), 0);
    EXPECT_LT(vector.compare2Object(&a, &b), 0);
    EXPECT_EQ(vector.containsElement(&alsoA), 1);
    EXPECT_FALSE(vector.removeItem(&alsoA)); // never the namesake
    EXPECT_EQ(vector.size, 2);
}

TEST(QORNameLinkVector, FindsByName) {
    TypedObject const a(QORString("a"));
    TypedObject const b(QORString("b"));
    QORNameLinkVector vector;
    vector.add(&b, true, nullptr);
    vector.add(&a, true, nullptr);
    QORString const key("a");
    EXPECT_EQ(vector.findFirst(&key, nullptr), &a);
    EXPECT_EQ(vector.findFirstElement(&key), 1);
    EXPECT_EQ(vector.compare2Key(&a, &key), 0);
    EXPECT_GT(vector.compare2Key(&b, &key), 0);
}

TEST(QORNameLinkVector, IsSmall) {
    EXPECT_LE(sizeof(QORNameLinkVector), sizeof(void*) == 8 ? 48U : 24U);
}

TEST(QORNameLinkVector, BehavesLikeAStandardVectorOverManyRandomOperations) {
    std::vector<std::unique_ptr<TypedObject>> objects;
    std::vector<QORString> keys;
    for (int i = 0; i < 50; ++i)
        keys.emplace_back(std::to_string(i).c_str());
    VectorRules rules{[](void const* a, void const* b) {
                          return nameOrder(static_cast<QORObject const*>(a),
                                           static_cast<QORObject const*>(b)) == 0;
                      },
                      [](void const* item, void const* key) {
                          return nameMatches(static_cast<QORObject const*>(item), key);
                      },
                      {},
                      {}};
    for (int i = 0; i < 60; ++i) {
        objects.push_back(std::make_unique<TypedObject>(keys[static_cast<std::size_t>(i * 7 % 47)]));
        rules.items.push_back(objects.back().get());
    }
    for (QORString const& key : keys)
        rules.keys.push_back(&key);
    compareVectorWithModel<QORNameLinkVector>(rules, 1101, 15000);
}
