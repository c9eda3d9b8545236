#include <qor/QORStringList.h>

#include <gtest/gtest.h>

namespace {

QORString const& textAt(QORStringList const& list, int position) {
    return *static_cast<QORString const*>(list[position]);
}

} // namespace

TEST(QORStringList, ComparesTheTextsOfItemsAndKeys) {
    QORStringList const list;
    QORString const a("a");
    QORString const sameAsA("a");
    QORString const b("b");
    EXPECT_EQ(list.compare2Object(&a, &sameAsA), 0);
    EXPECT_LT(list.compare2Object(&a, &b), 0);
    EXPECT_GT(list.compare2Object(&b, &a), 0);
    EXPECT_EQ(list.compare2Key(&a, &sameAsA), 0);
    EXPECT_LT(list.compare2Key(&a, &b), 0);
    EXPECT_GT(list.compare2Key(&b, &a), 0);
    EXPECT_EQ(list.compare2Object(&emptyString, &emptyString), 0);
}

TEST(QORStringList, FindsByTextAndRefusesEqualTextsOnRequest) {
    QORStringList list;
    QORString const first("first");
    QORString const second("second");
    QORString const again("first");
    EXPECT_TRUE(list.add(&first, true, nullptr));
    EXPECT_TRUE(list.add(&second, true, nullptr));
    EXPECT_FALSE(list.add(&again, true, nullptr));
    EXPECT_EQ(list.size, 2);
    EXPECT_TRUE(list.add(&again, false, nullptr));
    EXPECT_EQ(list.size, 3);
    QORString const key("second");
    QORString const missing("third");
    EXPECT_EQ(list.findFirst(&key, nullptr), &second);
    EXPECT_EQ(list.findFirst(&missing, nullptr), nullptr);
    EXPECT_TRUE(list.contains(&key, nullptr));
}

TEST(QORStringList, KeepsTheOrderOfWhatRemains) {
    QORStringList list;
    QORString const texts[] = {"d", "a", "c", "b"};
    for (QORString const& text : texts) {
        list.add(&text, false, nullptr);
    }
    EXPECT_EQ(list.removeElement(1), &texts[1]);
    ASSERT_EQ(list.size, 3);
    EXPECT_STREQ(textAt(list, 0).chars, "d");
    EXPECT_STREQ(textAt(list, 1).chars, "c");
    EXPECT_STREQ(textAt(list, 2).chars, "b");
    list.insertElement(&texts[1], 1);
    EXPECT_STREQ(textAt(list, 1).chars, "a");
    EXPECT_STREQ(textAt(list, 3).chars, "b");
}
