#include <qor/QORModelElementLinkTree.h>
#include <qor/QORNoDestructor.h>
#include <qor/QORPtrLinkTree.h>
#include <qor/QORPtrLinkVector.h>

#include <gtest/gtest.h>

#include <memory>
#include <type_traits>

namespace {

struct Counting {
    Counting() { ++made; }
    ~Counting() { ++destroyed; }

    int size = 7;
    static inline int made = 0;
    static inline int destroyed = 0;
};

static_assert(sizeof(QORNoDestructor<QORPtrLinkTree>) == sizeof(QORPtrLinkTree));
static_assert(sizeof(QORNoDestructor<QORPtrLinkVector>) == sizeof(QORPtrLinkVector));
static_assert(alignof(QORNoDestructor<QORModelElementLinkTree>) == alignof(QORModelElementLinkTree));
static_assert(!std::is_copy_constructible_v<QORNoDestructor<QORPtrLinkTree>>);
static_assert(!std::is_copy_assignable_v<QORNoDestructor<QORPtrLinkTree>>);

} // namespace

TEST(QORNoDestructor, MakesItsContainerAndNeverDestroysIt) {
    int const made = Counting::made;
    int const destroyed = Counting::destroyed;
    { QORNoDestructor<Counting> const field; }
    EXPECT_EQ(Counting::made, made + 1);
    EXPECT_EQ(Counting::destroyed, destroyed);
}

TEST(QORNoDestructor, LiesWhereItsContainerLies) {
    QORNoDestructor<QORPtrLinkTree> field;
    void const* const place = std::addressof(field);
    QORPtrLinkTree* const address = &field;
    EXPECT_EQ(address, place);
    EXPECT_EQ(field.operator->(), address);
    EXPECT_EQ(&*field, address);
    QORPtrLinkTree& converted = field;
    EXPECT_EQ(&converted, address);
}

TEST(QORNoDestructor, OfAConstObjectLeadsToAConstContainer) {
    QORNoDestructor<Counting> const field;
    static_assert(std::is_same_v<decltype(&field), Counting const*>);
    static_assert(std::is_same_v<decltype(*field), Counting const&>);
    Counting const& converted = field;
    EXPECT_EQ(&converted, &field);
    EXPECT_EQ(field->size, 7);
}
