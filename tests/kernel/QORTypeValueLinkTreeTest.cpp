#include <qor/QORTypeValue.h>
#include <qor/QORTypeValueLinkTree.h>

#include <LinkTreeModel.h>

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace {

std::unique_ptr<QORTypeValue> makeValue(char const* name, char const* value) {
    auto result = std::make_unique<QORTypeValue>();
    result->setName(QORString(name));
    result->setValue(QORString(value));
    return result;
}

} // namespace

TEST(QORTypeValueLinkTree, RefusesTheSameNameAndAmongUnnamedOnesTheSameValue) {
    auto const red = makeValue("red", "1");
    auto const alsoRed = makeValue("red", "2");
    auto const green = makeValue("green", "1");
    auto const one = makeValue("", "1");
    auto const alsoOne = makeValue("", "1");
    auto const two = makeValue("", "2");
    auto const nothing = makeValue("", "");
    QORTypeValueLinkTree tree;
    EXPECT_TRUE(tree.add(red.get(), true, nullptr));
    EXPECT_FALSE(tree.add(alsoRed.get(), true, nullptr));
    EXPECT_TRUE(tree.add(green.get(), true, nullptr));
    EXPECT_TRUE(tree.add(two.get(), true, nullptr));
    EXPECT_TRUE(tree.add(one.get(), true, nullptr));
    EXPECT_FALSE(tree.add(alsoOne.get(), true, nullptr));
    EXPECT_TRUE(tree.add(nothing.get(), true, nullptr));
    QORTypeValue* const expected[] = {nothing.get(), one.get(), two.get(), green.get(), red.get()};
    ASSERT_EQ(tree.size, 5);
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(tree[i], static_cast<QORObject*>(expected[i]));
    EXPECT_EQ(tree.compare2Object(red.get(), alsoRed.get()), 0);
    EXPECT_LT(tree.compare2Object(one.get(), two.get()), 0);
    EXPECT_LT(tree.compare2Object(two.get(), green.get()), 0);
}

TEST(QORTypeValueLinkTree, FindsByName) {
    auto const red = makeValue("red", "1");
    auto const one = makeValue("", "1");
    auto const two = makeValue("", "2");
    QORTypeValueLinkTree tree;
    for (auto const* value : {&red, &one, &two})
        tree.add(value->get(), true, nullptr);
    QORString const key("red");
    QORString const value("1");
    EXPECT_EQ(tree.findFirstElement(&key), 2);
    EXPECT_EQ(tree.findFirstElement(&value), -1);
    EXPECT_EQ(tree.findFirstElement(&emptyString), 0);
    EXPECT_EQ(tree.findNextElement(&emptyString, 0), 1);
    EXPECT_EQ(tree.findNextElement(&emptyString, 1), -1);
    EXPECT_EQ(tree.findLastElement(&emptyString), 1);
    EXPECT_EQ(tree.compare2Key(red.get(), &key), 0);
    EXPECT_LT(tree.compare2Key(one.get(), &key), 0);
}

TEST(QORTypeValueLinkTree, BehavesLikeASortedVectorOverManyRandomOperations) {
    std::vector<std::unique_ptr<QORTypeValue>> values;
    std::vector<QORString> keys;
    for (int i = 0; i < 66; ++i)
        values.push_back(makeValue(i % 3 == 0 ? "" : std::to_string(i * 5 % 29).c_str(),
                                   std::to_string(i * 7 % 31).c_str()));
    for (int i = 0; i < 32; ++i)
        keys.emplace_back(i == 0 ? "" : std::to_string(i).c_str());
    LinkTreeRules rules{[](QORObject const* a, QORObject const* b) {
                            int const order = nameOrder(a, b);
                            if (order || a->getName().length)
                                return order;
                            return std::strcmp(static_cast<QORTypeValue const*>(a)->getValue().chars,
                                               static_cast<QORTypeValue const*>(b)->getValue().chars);
                        },
                        nameMatches,
                        false,
                        {},
                        {}};
    for (auto const& value : values)
        rules.items.push_back(value.get());
    for (QORString const& key : keys)
        rules.keys.push_back(&key);
    compareLinkTreeWithModel<QORTypeValueLinkTree>(rules, 801, 20000);
}
