#include <qor/QORClass.h>
#include <qor/QORObjectNameHashtable.h>

#include <LinkTreeModel.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

TEST(QORObjectNameHashtable, FindsObjectsByTheCharactersOfTheirName) {
    std::vector<std::unique_ptr<TypedObject>> objects;
    QORObjectNameHashtable table(151);
    for (int i = 0; i < 500; ++i) {
        objects.push_back(std::make_unique<TypedObject>(QORString(("object" + std::to_string(i)).c_str())));
        ASSERT_TRUE(table.add(objects.back().get(), true, nullptr));
    }
    EXPECT_EQ(table.size, 500);
    for (int i = 0; i < 500; ++i) {
        std::string const key = "object" + std::to_string(i);
        QORHashtable::Iterator iterator;
        ASSERT_EQ(table.findFirst(key.c_str(), &iterator), objects[static_cast<std::size_t>(i)].get());
        ASSERT_EQ(table.findLast(key.c_str(), nullptr), iterator.get());
    }
    EXPECT_EQ(table.findFirst("object500", nullptr), nullptr);
    EXPECT_EQ(table.findFirst("", nullptr), nullptr);
}

TEST(QORObjectNameHashtable, RefusesAnObjectOfTheSameName) {
    TypedObject const first(QORString("same"));
    QORClass second;
    second.setName(QORString("same"));
    QORObjectNameHashtable table(7);
    EXPECT_TRUE(table.add(&first, true, nullptr));
    EXPECT_FALSE(table.add(&second, true, nullptr));
    EXPECT_TRUE(table.contains(&second, nullptr));
    EXPECT_TRUE(table.add(&second, false, nullptr));
    EXPECT_EQ(table.findFirst("same", nullptr), &first);
    EXPECT_EQ(table.findLast("same", nullptr), static_cast<QORObject*>(&second));
}

TEST(QORObjectNameHashtable, ComparesAndHashesNames) {
    TypedObject const a(QORString("a"));
    TypedObject const alsoA(QORString("a"), QORElementType::CLASS);
    TypedObject const b(QORString("b"));
    QORObjectNameHashtable const table(3);
    EXPECT_EQ(table.compare2Object(&a, &alsoA), 0);
    EXPECT_LT(table.compare2Object(&a, &b), 0);
    EXPECT_GT(table.compare2Object(&b, &a), 0);
    EXPECT_EQ(table.compare2Key(&a, "a"), 0);
    EXPECT_LT(table.compare2Key(&a, "aa"), 0);
    EXPECT_GT(table.compare2Key(&b, "a"), 0);
    EXPECT_EQ(table.hashObject(&a), table.hashObject(&alsoA));
    EXPECT_NE(table.hashObject(&a), table.hashObject(&b));
}

TEST(QORObjectNameHashtable, HashesANameLikeTheKeyOfTheSameText) {
    QORObjectNameHashtable const table(151);
    for (char const* text : {"", "a", "ab", "a name with blanks", "\xC3\xA4\xC3\xB6\xC3\xBC", "\xFF\xFE\x80",
                             "a text that is longer than most of the names that objects bear in practice"}) {
        TypedObject const object{QORString(text)};
        EXPECT_EQ(table.hashObject(&object), table.hashKey(text)) << text;
    }
    TypedObject const object(QORString("counted"));
    EXPECT_EQ(static_cast<int>(table.hashObject(&object)), object.getName().hashCode());
    EXPECT_EQ(static_cast<int>(table.hashKey("counted")), stringHashCode("counted"));
}

TEST(QORObjectNameHashtable, AsksTheObjectForItsName) {
    struct Named : QORObject {
        QORString const& getName() const override { return shown; }
        QORString const shown{"shown"};
    } const object;
    QORObjectNameHashtable table(151);
    EXPECT_TRUE(table.add(&object, true, nullptr));
    EXPECT_EQ(table.findFirst("shown", nullptr), static_cast<QORObject const*>(&object));
}

TEST(QORObjectNameHashtable, OwnsNothing) {
    TypedObject const object(QORString("name"));
    {
        QORObjectNameHashtable table(5);
        table.add(&object, true, nullptr);
        QORObjectNameHashtable copy(table);
        EXPECT_EQ(copy.size, 1);
        table.empty();
        EXPECT_EQ(copy.findFirst("name", nullptr), &object);
    }
    EXPECT_STREQ(object.getName().chars, "name");
}

TEST(QORObjectNameHashtable, TakesObjectsOutAgain) {
    TypedObject const a(QORString("a"));
    TypedObject const b(QORString("b"));
    QORObjectNameHashtable table(1);
    table.add(&a, true, nullptr);
    table.add(&b, true, nullptr);
    QORHashtable::Iterator iterator;
    ASSERT_TRUE(table.contains(&a, &iterator));
    EXPECT_TRUE(table.remove(&iterator));
    EXPECT_EQ(iterator.get(), &b);
    EXPECT_EQ(table.findFirst("a", nullptr), nullptr);
    EXPECT_EQ(table.findFirst("b", nullptr), &b);
    EXPECT_EQ(table.size, 1);
}
