#include <qor/QORPropertyType.h>
#include <qor/QORPropertyValue.h>
#include <qor/QORSortedPropertyValuesLinkTree.h>

#include <LinkTreeModel.h>

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace {

class QORSortedPropertyValues : public testing::Test {
protected:
    QORPropertyType& makeType(char const* usage, char const* group, short position, char const* name) {
        types.push_back(std::make_unique<QORPropertyType>());
        QORPropertyType& type = *types.back();
        type.setUsage(QORString(usage));
        type.setGroup(QORString(group));
        type.setPosition(position);
        type.setName(QORString(name));
        return type;
    }
    QORPropertyValue& makeValue(QORPropertyType* type, short position = 0) {
        values.push_back(std::make_unique<QORPropertyValue>());
        QORPropertyValue& value = *values.back();
        value.setPosition(position);
        if (type) {
            EXPECT_TRUE(value.addPropertyType(type));
        }
        return value;
    }
    ~QORSortedPropertyValues() override {
        for (auto const& value : values)
            if (QORPropertyType* const type = value->getPropertyType())
                value->removePropertyType(type); // else the type would go with its last value
    }

    std::vector<std::unique_ptr<QORPropertyType>> types;
    std::vector<std::unique_ptr<QORPropertyValue>> values;
    QORSortedPropertyValuesLinkTree tree;
};

int naiveOrder(QORObject const* left, QORObject const* right) {
    auto const& a = static_cast<QORPropertyValue const&>(*left);
    auto const& b = static_cast<QORPropertyValue const&>(*right);
    QORPropertyType const* const s = a.getPropertyType();
    QORPropertyType const* const t = b.getPropertyType();
    if (s && t) {
        if (int const order = std::strcmp(s->getUsage().chars, t->getUsage().chars))
            return order;
        if (int const order = std::strcmp(s->getGroup().chars, t->getGroup().chars))
            return order;
        if (s->getPosition() != t->getPosition())
            return s->getPosition() - t->getPosition();
        if (int const order = std::strcmp(s->getName().chars, t->getName().chars))
            return order;
    }
    return a.getPosition() != b.getPosition() ? a.getPosition() - b.getPosition() : addressOrder(left, right);
}

} // namespace

TEST_F(QORSortedPropertyValues, ComparesTheTypesFirst) {
    // Each type comes before the next one by one attribute, against all those behind.
    QORPropertyValue* const sorted[] = {
        &makeValue(&makeType("a", "z", 9, "z"), 9), &makeValue(&makeType("b", "a", 9, "z"), 9),
        &makeValue(&makeType("b", "b", -3, "z"), 9), &makeValue(&makeType("b", "b", 2, "a"), 9),
        &makeValue(&makeType("b", "b", 2, "b"), 0)};
    for (int i : {3, 1, 4, 0, 2})
        EXPECT_TRUE(tree.add(sorted[i], true, nullptr));
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(tree[i], static_cast<QORObject*>(sorted[i]));
        for (int j = 0; j < 5; ++j) {
            int const order = tree.compare2Object(sorted[i], sorted[j]);
            EXPECT_EQ(order < 0, i < j);
            EXPECT_EQ(order > 0, i > j);
        }
    }
}

TEST_F(QORSortedPropertyValues, ComparesPositionsWhereTypesAreEqualOrMissing) {
    QORPropertyType& type = makeType("u", "g", 1, "n");
    QORPropertyType& equalType = makeType("u", "g", 1, "n");
    QORPropertyValue const& second = makeValue(&type, 2);
    QORPropertyValue const& first = makeValue(&equalType, 1);
    QORPropertyValue const& untyped = makeValue(nullptr, 7);
    EXPECT_EQ(tree.compare2Object(&second, &first), 1);
    EXPECT_EQ(tree.compare2Object(&first, &second), -1);
    EXPECT_EQ(tree.compare2Object(&first, &untyped), -6);
    EXPECT_EQ(tree.compare2Object(&untyped, &second), 5);
    QORPropertyValue const& lowest = makeValue(nullptr, SHRT_MIN);
    QORPropertyValue const& highest = makeValue(nullptr, SHRT_MAX);
    EXPECT_EQ(tree.compare2Object(&highest, &lowest), SHRT_MAX - SHRT_MIN);
    QORPropertyValue const pair[2];
    EXPECT_EQ(tree.compare2Object(&pair[0], &pair[1]), -static_cast<int>(sizeof(QORPropertyValue)));
    EXPECT_EQ(tree.compare2Object(&pair[0], &pair[0]), 0);
}

TEST_F(QORSortedPropertyValues, TakesEqualValuesAndRefusesTheSameObjectAgain) {
    QORPropertyType& type = makeType("u", "g", 1, "n");
    QORPropertyValue const& a = makeValue(&type, 1);
    QORPropertyValue const& b = makeValue(&type, 1);
    EXPECT_TRUE(tree.add(&a, true, nullptr));
    EXPECT_TRUE(tree.add(&b, true, nullptr));
    EXPECT_FALSE(tree.add(&a, true, nullptr));
    EXPECT_EQ(tree.size, 2);
}

TEST_F(QORSortedPropertyValues, FindsByTheNameOfTheTypeWithAScan) {
    QORPropertyValue const& first = makeValue(&makeType("a", "", 0, "size"));
    makeValue(&makeType("b", "", 0, "colour"));
    QORPropertyValue const& last = makeValue(&makeType("c", "", 0, "size"));
    for (auto const& value : values)
        tree.add(value.get(), true, nullptr);
    QORString const size("size");
    QORString const colour("colour");
    EXPECT_EQ(tree.findFirst(&size, nullptr), static_cast<QORObject const*>(&first));
    EXPECT_EQ(tree.findFirstElement(&colour), 1);
    EXPECT_EQ(tree.findLastElement(&size), 2);
    EXPECT_EQ(tree.findFirstElement(&size), 0);
    EXPECT_EQ(tree.findNextElement(&size, 0), 1); // one further than asked
    EXPECT_EQ(tree[1], static_cast<QORObject const*>(&last));
}

TEST_F(QORSortedPropertyValues, BehavesLikeASortedVectorOverManyRandomOperations) {
    char const* const texts[] = {"", "a", "b"};
    for (int i = 0; i < 24; ++i)
        makeType(texts[i % 3], texts[i * 2 % 3], static_cast<short>(i * 5 % 3),
                 i % 8 == 0 ? "" : std::to_string(i * 3 % 7).c_str());
    std::vector<QORString> keys;
    for (int i = 0; i < 8; ++i)
        keys.emplace_back(i == 7 ? "" : std::to_string(i).c_str());
    LinkTreeRules rules{naiveOrder, nameMatches, true, {}, {}};
    for (std::size_t i = 0; i < 60; ++i)
        rules.items.push_back(&makeValue(types[i % types.size()].get(), static_cast<short>(i % 4)));
    for (QORString const& key : keys)
        rules.keys.push_back(&key);
    compareLinkTreeWithModel<QORSortedPropertyValuesLinkTree>(rules, 901, 20000);
}
