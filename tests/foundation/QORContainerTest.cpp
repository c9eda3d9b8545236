#include <qor/QORHashtable.h>
#include <qor/QOROrderedVector.h>
#include <qor/QORRBTree.h>

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <memory>
#include <type_traits>

namespace {

void const* address(std::uintptr_t number) {
    return reinterpret_cast<void const*>(number);
}

template <class Container>
std::unique_ptr<Container> make() {
    return std::make_unique<Container>();
}
template <>
std::unique_ptr<QORHashtable> make() {
    return std::make_unique<QORHashtable>(7);
}

template <class Container>
class QORContainerKinds : public testing::Test {
protected:
    std::unique_ptr<Container> const owner = make<Container>();
    QORContainer& container = *owner;
    char const items[3] = {};
};
using Kinds = testing::Types<QORRBTree, QORVector, QOROrderedVector, QORHashtable>;
TYPED_TEST_SUITE(QORContainerKinds, Kinds);

} // namespace

TEST(QORContainer, ComparesObjectsAndKeysByAddress) {
    QORRBTree const tree;
    EXPECT_EQ(tree.compare2Object(address(100), address(100)), 0);
    EXPECT_EQ(tree.compare2Object(address(100), address(107)), -7);
    EXPECT_EQ(tree.compare2Object(address(107), address(100)), 7);
    EXPECT_EQ(tree.compare2Key(address(100), address(100)), 0);
    EXPECT_EQ(tree.compare2Key(address(100), address(107)), -7);
    EXPECT_EQ(tree.compare2Key(address(107), address(100)), 7);
}

TEST(QORContainer, HoldsTheDifferenceOfAddressesToTheRangeOfAnInt) {
    std::uintptr_t const highest = UINTPTR_MAX;
    std::uintptr_t const limit = INT_MAX;
    EXPECT_EQ(QORContainer::compareAddresses(address(limit), address(0)), INT_MAX);
    EXPECT_EQ(QORContainer::compareAddresses(address(limit - 1), address(0)), INT_MAX - 1);
    EXPECT_EQ(QORContainer::compareAddresses(address(limit + 2), address(1)), INT_MAX);
    EXPECT_EQ(QORContainer::compareAddresses(address(limit + 2), address(0)), INT_MAX);
    EXPECT_EQ(QORContainer::compareAddresses(address(highest), address(0)), INT_MAX);
    EXPECT_GT(QORContainer::compareAddresses(address(highest), address(1)), 0);
    EXPECT_EQ(QORContainer::compareAddresses(address(0), address(limit)), -INT_MAX);
    EXPECT_LT(QORContainer::compareAddresses(address(0), address(limit + 2)), -INT_MAX / 2);
    EXPECT_LT(QORContainer::compareAddresses(address(0), address(highest)), -INT_MAX / 2);
    EXPECT_LT(QORContainer::compareAddresses(address(1), address(highest)), -INT_MAX / 2);
}

TEST(QORContainer, SortsAddressesOverTheWholeRange) {
    QORRBTree tree;
    std::uintptr_t const step = UINTPTR_MAX / 5;
    for (std::uintptr_t number : {step * 3, step, step * 5, step * 2, step * 4})
        EXPECT_TRUE(tree.add(address(number), true, nullptr));
    QORRBTree::Iterator iterator(tree, true);
    for (std::uintptr_t i = 1; i <= 5; ++i, iterator.next(1))
        EXPECT_EQ(iterator.get(), address(step * i));
    EXPECT_EQ(iterator.get(), nullptr);
}

TYPED_TEST(QORContainerKinds, ShareTheSizeOfTheVirtualBase) {
    _QORContainer& base = this->container;
    EXPECT_EQ(base.size, 0);
    this->container.add(&this->items[0], true, nullptr);
    EXPECT_EQ(base.size, 1);
    this->container.empty();
    EXPECT_EQ(base.size, 0);
}

TYPED_TEST(QORContainerKinds, RefuseAnEqualItemOnlyIfUniqueIsAskedFor) {
    EXPECT_TRUE(this->container.add(&this->items[0], true, nullptr));
    EXPECT_FALSE(this->container.add(&this->items[0], true, nullptr));
    EXPECT_EQ(this->container.size, 1);
    EXPECT_TRUE(this->container.add(&this->items[0], false, nullptr));
    EXPECT_EQ(this->container.size, 2);
}

TYPED_TEST(QORContainerKinds, LeaveTheIteratorOfARefusedAddAlone) {
    this->container.add(&this->items[0], true, nullptr);
    this->container.add(&this->items[1], true, nullptr);
    QORContainer::Iterator* const iterator = this->container.newIterator(true);
    EXPECT_FALSE(this->container.add(&this->items[1], true, iterator));
    EXPECT_EQ(iterator->get(), &this->items[0]);
    this->container.deleteIterator(iterator);
}

TYPED_TEST(QORContainerKinds, PutTheIteratorOnWhatWasAddedOrFound) {
    QORContainer::Iterator* const iterator = this->container.newIterator(true);
    EXPECT_TRUE(this->container.add(&this->items[0], true, iterator));
    EXPECT_EQ(iterator->get(), &this->items[0]);
    EXPECT_EQ(**iterator, &this->items[0]);
    EXPECT_TRUE(this->container.add(&this->items[2], true, iterator));
    EXPECT_EQ(iterator->get(), &this->items[2]);
    EXPECT_TRUE(this->container.contains(&this->items[0], iterator));
    EXPECT_EQ(iterator->get(), &this->items[0]);
    EXPECT_EQ(this->container.findFirst(&this->items[2], iterator), &this->items[2]);
    EXPECT_EQ(iterator->get(), &this->items[2]);
    EXPECT_FALSE(this->container.contains(&this->items[1], iterator));
    EXPECT_EQ(iterator->get(), nullptr);
    this->container.deleteIterator(iterator);
}

TYPED_TEST(QORContainerKinds, FindWithoutAnIterator) {
    this->container.add(&this->items[0], true, nullptr);
    EXPECT_EQ(this->container.findFirst(&this->items[0], nullptr), &this->items[0]);
    EXPECT_EQ(this->container.findFirst(&this->items[1], nullptr), nullptr);
    EXPECT_TRUE(this->container.contains(&this->items[0], nullptr));
    EXPECT_FALSE(this->container.contains(&this->items[1], nullptr));
}

TYPED_TEST(QORContainerKinds, TakeBackANullIterator) {
    this->container.deleteIterator(nullptr);
    EXPECT_EQ(this->container.size, 0);
}

TYPED_TEST(QORContainerKinds, GiveNullFromAnIteratorOfAnEmptyContainer) {
    QORContainer::Iterator* const iterator = this->container.newIterator(true);
    EXPECT_EQ(iterator->getContainer(), &this->container);
    EXPECT_EQ(iterator->get(), nullptr);
    EXPECT_EQ(**iterator, nullptr);
    EXPECT_EQ(iterator->next(1), nullptr);
    EXPECT_EQ(iterator->previous(1), nullptr);
    EXPECT_EQ(iterator->moveToFirst(), nullptr);
    EXPECT_EQ(iterator->moveToLast(), nullptr);
    EXPECT_EQ(iterator->findFirst(&this->items[0]), nullptr);
    EXPECT_EQ(iterator->findLast(&this->items[0]), nullptr);
    EXPECT_EQ(iterator->findNext(&this->items[0]), nullptr);
    EXPECT_EQ(iterator->findPrevious(&this->items[0]), nullptr);
    EXPECT_FALSE(this->container.remove(iterator));
    this->container.deleteIterator(iterator);
}

TYPED_TEST(QORContainerKinds, LeaveAnIteratorOnNothingIfNotSentToTheFirstElement) {
    this->container.add(&this->items[0], true, nullptr);
    QORContainer::Iterator* const iterator = this->container.newIterator(false);
    EXPECT_EQ(iterator->getContainer(), &this->container);
    EXPECT_EQ(iterator->get(), nullptr);
    EXPECT_EQ(iterator->moveToFirst(), &this->items[0]);
    this->container.deleteIterator(iterator);
}

TYPED_TEST(QORContainerKinds, AttachADefaultIteratorByFindFirst) {
    typename TypeParam::Iterator iterator;
    EXPECT_EQ(iterator.getContainer(), nullptr);
    EXPECT_EQ(iterator.get(), nullptr);
    EXPECT_EQ(*iterator, nullptr);
    EXPECT_EQ(iterator.next(1), nullptr);
    EXPECT_EQ(iterator.previous(1), nullptr);
    EXPECT_EQ(iterator.moveToFirst(), nullptr);
    EXPECT_EQ(iterator.moveToLast(), nullptr);
    EXPECT_EQ(iterator.findFirst(&this->items[0]), nullptr);
    EXPECT_EQ(iterator.findLast(&this->items[0]), nullptr);
    EXPECT_EQ(iterator.findNext(&this->items[0]), nullptr);
    EXPECT_EQ(iterator.findPrevious(&this->items[0]), nullptr);
    this->container.add(&this->items[0], true, nullptr);
    EXPECT_FALSE(this->container.remove(&iterator));
    EXPECT_EQ(this->container.findFirst(&this->items[0], &iterator), &this->items[0]);
    EXPECT_EQ(iterator.getContainer(), &this->container);
    EXPECT_EQ(iterator.get(), &this->items[0]);
}

TYPED_TEST(QORContainerKinds, MoveAnIteratorToAnotherContainer) {
    auto const other = make<TypeParam>();
    this->container.add(&this->items[0], true, nullptr);
    other->add(&this->items[1], true, nullptr);
    typename TypeParam::Iterator iterator(*this->owner, true);
    iterator.moveTo(*other, true);
    EXPECT_EQ(iterator.getContainer(), static_cast<QORContainer*>(other.get()));
    EXPECT_EQ(iterator.get(), &this->items[1]);
    EXPECT_FALSE(this->container.remove(&iterator));
    iterator.moveTo(*this->owner, false);
    EXPECT_EQ(iterator.get(), nullptr);
    EXPECT_EQ(iterator.moveToFirst(), &this->items[0]);
}

TYPED_TEST(QORContainerKinds, RemoveNothingWithoutAnIteratorOrAfterTheElementIsGone) {
    this->container.add(&this->items[0], true, nullptr);
    this->container.add(&this->items[1], true, nullptr);
    typename TypeParam::Iterator first(*this->owner, true);
    typename TypeParam::Iterator second(first);
    EXPECT_FALSE(this->container.remove(nullptr));
    EXPECT_TRUE(this->container.remove(&first));
    EXPECT_FALSE(this->container.remove(&second));
    EXPECT_EQ(this->container.size, 1);
}

TYPED_TEST(QORContainerKinds, CopyTheirItemsAndCountThemOnce) {
    struct Derived : TypeParam {
        using TypeParam::TypeParam;
    };
    std::unique_ptr<Derived> source;
    if constexpr (std::is_same_v<TypeParam, QORHashtable>)
        source = std::make_unique<Derived>(7);
    else
        source = std::make_unique<Derived>();
    source->add(&this->items[0], true, nullptr);
    source->add(&this->items[1], true, nullptr);
    Derived copy(*source);
    EXPECT_EQ(copy.size, 2);
    EXPECT_TRUE(copy == *source);
    Derived other(copy);
    other.add(&this->items[2], true, nullptr);
    EXPECT_TRUE(other != copy);
    copy = other;
    EXPECT_EQ(copy.size, 3);
    EXPECT_TRUE(copy.contains(&this->items[2], nullptr));
    EXPECT_EQ(source->size, 2);
}

TYPED_TEST(QORContainerKinds, StayAsTheyAreOnSelfAssignment) {
    this->container.add(&this->items[0], true, nullptr);
    typename TypeParam::Iterator iterator(*this->owner, true);
    TypeParam& self = *this->owner;
    *this->owner = self;
    EXPECT_EQ(this->container.size, 1);
    EXPECT_EQ(iterator.get(), &this->items[0]);
}

TYPED_TEST(QORContainerKinds, DropTheWalkOfAnAssignedContainerOntoNothing) {
    auto const other = make<TypeParam>();
    this->container.add(&this->items[0], true, nullptr);
    other->add(&this->items[1], true, nullptr);
    typename TypeParam::Iterator iterator(*this->owner, true);
    *this->owner = *other;
    EXPECT_EQ(iterator.get(), nullptr);
    EXPECT_FALSE(this->container.remove(&iterator));
    EXPECT_EQ(iterator.moveToFirst(), &this->items[1]);
    EXPECT_EQ(this->container.size, 1);
}

TYPED_TEST(QORContainerKinds, StayUsableAfterBeingEmptied) {
    this->container.add(&this->items[0], true, nullptr);
    this->container.add(&this->items[1], true, nullptr);
    EXPECT_TRUE(this->container.empty());
    EXPECT_EQ(this->container.size, 0);
    EXPECT_FALSE(this->container.contains(&this->items[0], nullptr));
    EXPECT_TRUE(this->container.add(&this->items[0], true, nullptr));
    typename TypeParam::Iterator iterator(*this->owner, true);
    EXPECT_EQ(iterator.get(), &this->items[0]);
    EXPECT_EQ(iterator.next(1), nullptr);
}

TYPED_TEST(QORContainerKinds, MayDieBeforeTheirIterators) {
    typename TypeParam::Iterator onEmpty;
    typename TypeParam::Iterator unattached;
    {
        auto const shortLived = make<TypeParam>();
        onEmpty.moveTo(*shortLived, true);
        unattached.moveTo(*shortLived, false);
    }
    EXPECT_EQ(onEmpty.get(), nullptr);
    EXPECT_EQ(onEmpty.next(1), nullptr);
    EXPECT_EQ(onEmpty.previous(1), nullptr);
    EXPECT_EQ(unattached.get(), nullptr);
    EXPECT_EQ(unattached.next(1), nullptr);
}
