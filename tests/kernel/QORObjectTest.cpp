#include <qor/QORObject.h>

#include <qor/QOREncodingConverter.h>
#include <qor/QORException.h>
#include <qor/QORMetaClass.h>
#include <qor/QORNameLinkTree.h>
#include <qor/QORNamePtrLinkTree.h>
#include <qor/QORNote.h>
#include <qor/QORPtrLinkTree.h>
#include <qor/QORPtrLinkVector.h>

#include "Graph.h"

#include <gtest/gtest.h>

#include <iterator>
#include <limits>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

namespace {

/// A link container that counts the iterators that it lends, and that fails an add on demand.
template <class Tree>
class CountingEnd : public Tree {
public:
    QORRBTree::Iterator* newIterator(bool toFirst) const override {
        ++lent;
        allToFirst = allToFirst && toFirst;
        return Tree::newIterator(toFirst);
    }
    void deleteIterator(QORContainer::Iterator* iterator) const override {
        ++returned;
        Tree::deleteIterator(iterator);
    }
    bool add(QORContainerItem const* item, bool unique, QORContainer::Iterator* iterator) override {
        ++adds;
        if (throwing)
            throw std::runtime_error("add");
        return Tree::add(item, unique, iterator);
    }

    mutable int lent = 0;
    mutable int returned = 0;
    mutable bool allToFirst = true;
    int adds = 0;
    bool throwing = false;
};

/// An object of a caller's own class with ends of all shapes.
class Node : public QORObject {
public:
    Node() = default;
    explicit Node(char const* title) { name = title; }

    using QORObject::_addnn;
    using QORObject::_addnu;
    using QORObject::_adduu;
    using QORObject::_getn;
    using QORObject::_removen;

    bool addFar(Node& far) { return _addnn(&byName, &far.byName, &far); }
    bool addChild(Node& child) { return _addnu(&byName, &child.unary, &child); }

    CountingEnd<QORNameLinkTree> byName;
    CountingEnd<QORPtrLinkTree> byAddress;
    QORNamePtrLinkTree namesakes;
    QORPtrLinkVector vector;
    QORObject* unary = nullptr;
};

} // namespace

// ---- the root's state -----------------------------------------------------------------------------------

TEST(QORObject, NewObjectHasNoNameIdZeroAndClearScratchState) {
    QORObject const object;
    EXPECT_EQ(0, object.getName().length);
    EXPECT_STREQ("", object.getName().chars);
    EXPECT_EQ(0, object.getID());
    EXPECT_FALSE(object.flag1);
    EXPECT_FALSE(object.flag2);
    EXPECT_FALSE(object.flag3);
    EXPECT_EQ(nullptr, object.generalPointer);
}

TEST(QORObject, IdIsTheCallersWholeLong) {
    QORObject object;
    object.setID(-7);
    EXPECT_EQ(-7, object.getID());
    object.setID(std::numeric_limits<long>::max());
    EXPECT_EQ(std::numeric_limits<long>::max(), object.getID());
    static_assert(std::is_same<long, decltype(object.getID())>::value, "id is a long");
}

TEST(QORObject, CopyTakesTheNameOnly) {
    QORObject source;
    source.setName("a");
    source.setID(5);
    source.flag1 = source.flag2 = source.flag3 = true;
    source.generalPointer = &source;
    QORObject const copy(source);
    EXPECT_STREQ("a", copy.getName().chars);
    EXPECT_EQ(0, copy.getID());
    EXPECT_FALSE(copy.flag1 || copy.flag2 || copy.flag3);
    EXPECT_EQ(nullptr, copy.generalPointer);
    EXPECT_EQ(5, source.getID());
    EXPECT_TRUE(source.flag1);
}

TEST(QORObject, AssignmentTakesTheNameKeepsTheIdAndClearsTheScratchState) {
    QORObject source;
    source.setName("a");
    source.setID(5);
    source.flag1 = source.flag2 = source.flag3 = true;
    source.generalPointer = &source;
    QORObject target;
    target.setID(9);
    target.flag1 = target.flag2 = target.flag3 = true;
    target.generalPointer = &target;
    EXPECT_EQ(&target, &(target = source));
    EXPECT_STREQ("a", target.getName().chars);
    EXPECT_EQ(9, target.getID());
    EXPECT_FALSE(target.flag1 || target.flag2 || target.flag3);
    EXPECT_EQ(nullptr, target.generalPointer);
    EXPECT_TRUE(source.flag1 && source.flag2 && source.flag3);
    EXPECT_EQ(&source, source.generalPointer);
}

TEST(QORObject, SelfAssignmentLeavesTheObjectAsItIs) {
    QORObject object;
    object.setName("a");
    object.flag2 = true;
    object.generalPointer = &object;
    QORObject const& same = object;
    object = same;
    EXPECT_STREQ("a", object.getName().chars);
    EXPECT_TRUE(object.flag2);
    EXPECT_EQ(&object, object.generalPointer);
}

TEST(QORObject, AssignmentKeepsTheElementType) {
    QORNote note;
    QORObject other;
    other.setName("x");
    note.QORObject::operator=(other);
    EXPECT_EQ(QORElementType::NOTE, note.getElementType());
    EXPECT_STREQ("x", note.getName().chars);
}

TEST(QORObject, SetFromAssignsAtItsOwnLevel) {
    QORObject source;
    source.setName("a");
    QORObject target;
    target.setID(3);
    target.flag3 = true;
    EXPECT_EQ(&target, &target.setFrom(source));
    EXPECT_STREQ("a", target.getName().chars);
    EXPECT_EQ(3, target.getID());
    EXPECT_FALSE(target.flag3);
}

TEST(QORObject, CopyAndAssignmentCarryNoLinks) {
    Node owner("o");
    Node child("c");
    ASSERT_TRUE(owner.addChild(child));
    QORObject const copy(owner);
    QORObject assigned;
    assigned = owner;
    EXPECT_EQ(1, owner.byName.size);
    EXPECT_EQ(&owner, child.unary);
    EXPECT_FALSE(copy.isReferenced());
    EXPECT_FALSE(assigned.isReferenced());
}

TEST(QORObject, RootAnswersOfTheVirtualOperations) {
    QORObject object;
    object.setName("n");
    EXPECT_EQ(nullptr, object.removeAggregationAssembly());
    EXPECT_TRUE(object.recursiveDelete());
    EXPECT_EQ(&object, object.isolate(true));
    EXPECT_EQ(&object, object.isolate(false));
    EXPECT_EQ(nullptr, object.getParent());
    EXPECT_EQ(0, object.getParentCount());
    EXPECT_FALSE(object.isReferenced());
    EXPECT_STREQ("n", object.getDisplayName().chars);
    EXPECT_EQ(QORObject::getStaticMetaClass(), object.getMetaClass());
}

TEST(QORObject, IsInstanceOfObjectOnly) {
    QORObject const object;
    for (int type = -1; type <= static_cast<int>(std::size(QorElementTypeStringArray)); ++type)
        EXPECT_EQ(type == QORElementType::OBJECT, object.isInstanceOf(static_cast<QORElementType>(type)))
            << type;
}

TEST(QORObject, MetaClassIsTheRootOfAll) {
    QORMetaClass const* const meta = QORObject::getStaticMetaClass();
    EXPECT_EQ(QORElementType::OBJECT, meta->getId());
    EXPECT_STREQ("Object", meta->getDisplayName().chars);
    EXPECT_EQ(nullptr, meta->getParent());
    EXPECT_EQ(2, meta->getMetaAttributes().size);
}

// ---- equality -------------------------------------------------------------------------------------------

TEST(QORObject, EqualityOfTheRootIsThatOfTheNames) {
    QORObject a;
    QORObject b;
    EXPECT_TRUE(a == b);
    a.setName("x");
    EXPECT_FALSE(a == b);
    EXPECT_TRUE(a != b);
    b.setName("x");
    b.setID(4);
    b.flag1 = true;
    EXPECT_TRUE(a == b);
    EXPECT_FALSE(a != b);
    EXPECT_TRUE(a.equals(b));
    b.setName("xy");
    EXPECT_FALSE(a.equals(b));
    b.setName("y");
    EXPECT_FALSE(a.equals(b));
}

TEST(QORObject, FinalEqualsIgnoresTheClass) {
    QORObject object;
    QORNote note;
    object.setName("x");
    note.setName("x");
    EXPECT_TRUE(object.finalEquals(note));
    EXPECT_TRUE(object.equals(note));
    EXPECT_FALSE(note.equals(object));
}

namespace {

class Alias : public QORObject {
public:
    explicit Alias(char const* text) : shown(text) {}
    QORString const& getName() const override { return shown; }

private:
    QORString shown;
};

class Contrary : public QORObject {
public:
    bool equals(QORObject const& other) const override { return !QORObject::equals(other); }
};

} // namespace

TEST(QORObject, FinalEqualsAsksTheVirtualNameOfBoth) {
    Alias a("shown");
    QORObject b;
    b.setName("shown");
    EXPECT_TRUE(a.finalEquals(b));
    EXPECT_TRUE(b.finalEquals(a));
    a.QORObject::setName("other");
    EXPECT_TRUE(b.finalEquals(a));
}

TEST(QORObject, ComparisonOperatorsAskTheVirtualEquals) {
    Contrary a;
    QORObject b;
    EXPECT_FALSE(a == b);
    EXPECT_TRUE(a != b);
    b.setName("x");
    EXPECT_TRUE(a == b);
    EXPECT_FALSE(a != b);
}

TEST(QORObject, DisplayNameIsACopyOfTheName) {
    QORObject object;
    object.setName("before");
    QORString const shown = object.getDisplayName();
    object.setName("after");
    EXPECT_STREQ("before", shown.chars);
}

TEST(QORObject, SetNameTakesItsOwnNameAsArgument) {
    QORObject object;
    object.setName("a name that is too long for any short-string place");
    object.setName(object.getName());
    EXPECT_STREQ("a name that is too long for any short-string place", object.getName().chars);
}

// ---- _addnn ---------------------------------------------------------------------------------------------

TEST(QORObjectAddnn, LinksBothEndsAndGivesTheIteratorBack) {
    Node a("a");
    Node b("b");
    EXPECT_TRUE(a.addFar(b));
    EXPECT_EQ((Objects{&b}), listOf(a.byName));
    EXPECT_EQ((Objects{&a}), listOf(b.byName));
    EXPECT_EQ(1, a.byName.lent);
    EXPECT_EQ(1, a.byName.returned);
    EXPECT_TRUE(a.byName.allToFirst);
    EXPECT_EQ(b.byName.lent, b.byName.returned);
}

TEST(QORObjectAddnn, SelfLinkIsRefusedAndChangesNothing) {
    Node a("a");
    EXPECT_FALSE(a._addnn(&a.byName, &a.byAddress, &a));
    EXPECT_EQ(0, a.byName.size);
    EXPECT_EQ(0, a.byAddress.size);
    EXPECT_EQ(0, a.byName.adds);
    EXPECT_EQ(0, a.byAddress.adds);
    EXPECT_EQ(a.byName.lent, a.byName.returned);
}

TEST(QORObjectAddnn, DuplicateInTheOwnEndIsRefusedBeforeTheFarEndIsTouched) {
    Node a("a");
    Node b("b");
    ASSERT_TRUE(a.addFar(b));
    ASSERT_TRUE(b._removen(&b.byName, &a));
    EXPECT_FALSE(a.addFar(b));
    EXPECT_EQ((Objects{&b}), listOf(a.byName));
    EXPECT_EQ(0, b.byName.size);
    EXPECT_EQ(1, b.byName.adds);
    EXPECT_EQ(2, a.byName.lent);
    EXPECT_EQ(2, a.byName.returned);
}

TEST(QORObjectAddnn, NamesakeInTheOwnEndIsRefused) {
    Node a("a");
    Node b("b");
    Node namesake("b");
    ASSERT_TRUE(a.addFar(b));
    EXPECT_FALSE(a.addFar(namesake));
    EXPECT_EQ((Objects{&b}), listOf(a.byName));
    EXPECT_EQ(0, namesake.byName.size);
    EXPECT_EQ(a.byName.lent, a.byName.returned);
}

TEST(QORObjectAddnn, DuplicateInTheFarEndRollsTheOwnEndBack) {
    Node a("a");
    Node first("f");
    Node last("z");
    Node b("m");
    ASSERT_TRUE(a.addFar(first));
    ASSERT_TRUE(a.addFar(last));
    Node namesake("a");
    ASSERT_TRUE(namesake.addFar(b));
    int const lent = a.byName.lent;
    EXPECT_FALSE(a.addFar(b));
    EXPECT_EQ((Objects{&first, &last}), listOf(a.byName));
    EXPECT_EQ((Objects{&namesake}), listOf(b.byName));
    EXPECT_EQ(lent + 1, a.byName.lent);
    EXPECT_EQ(a.byName.lent, a.byName.returned);
}

TEST(QORObjectAddnn, RollBackInAVectorTakesTheLastElementOnly) {
    Node a("a");
    Node x("x");
    Node b("b");
    Node namesake("a");
    ASSERT_TRUE(a._addnn(&a.vector, &x.byName, &x));
    ASSERT_TRUE(namesake.addFar(b));
    EXPECT_FALSE(a._addnn(&a.vector, &b.byName, &b));
    EXPECT_EQ((Objects{&x}), listOf(a.vector));
    EXPECT_EQ((Objects{&namesake}), listOf(b.byName));
}

TEST(QORObjectAddnn, OwnEndIsWrittenFirst) {
    Node a("a");
    Node b("b");
    Node namesake("b");
    ASSERT_TRUE(a.addFar(namesake));
    b.byName.throwing = true;
    EXPECT_FALSE(a.addFar(b)); // refused by the own end; the far one isn't asked
    EXPECT_EQ(0, b.byName.adds);
}

TEST(QORObjectAddnn, AnExceptionOfTheFarEndLeavesBothEndsAndNoIteratorBehind) {
    Node a("a");
    Node b("b");
    b.byName.throwing = true;
    EXPECT_THROW(a.addFar(b), std::runtime_error);
    EXPECT_EQ(0, a.byName.size);
    EXPECT_EQ(0, b.byName.size);
    EXPECT_EQ(1, a.byName.lent);
    EXPECT_EQ(1, a.byName.returned);
}

TEST(QORObjectAddnn, AnExceptionOfTheOwnEndGivesTheIteratorBack) {
    Node a("a");
    Node b("b");
    a.byName.throwing = true;
    EXPECT_THROW(a.addFar(b), std::runtime_error);
    EXPECT_EQ(0, b.byName.adds);
    EXPECT_EQ(1, a.byName.lent);
    EXPECT_EQ(1, a.byName.returned);
}

// ---- _addnu ---------------------------------------------------------------------------------------------

TEST(QORObjectAddnu, LinksBothEnds) {
    Node owner("o");
    Node child("c");
    EXPECT_TRUE(owner.addChild(child));
    EXPECT_EQ((Objects{&child}), listOf(owner.byName));
    EXPECT_EQ(&owner, child.unary);
}

TEST(QORObjectAddnu, TakenFarEndIsRefusedWithoutTouchingTheContainer) {
    Node owner("o");
    Node other("p");
    Node child("c");
    ASSERT_TRUE(owner.addChild(child));
    EXPECT_FALSE(other.addChild(child));
    EXPECT_EQ(0, other.byName.adds);
    EXPECT_EQ(&owner, child.unary);
    EXPECT_FALSE(owner.addChild(child));
    EXPECT_EQ(1, owner.byName.adds);
}

TEST(QORObjectAddnu, RefusingContainerLeavesTheFarEndUnset) {
    Node owner("o");
    Node child("c");
    Node namesake("c");
    ASSERT_TRUE(owner.addChild(child));
    EXPECT_FALSE(owner.addChild(namesake));
    EXPECT_EQ(nullptr, namesake.unary);
    EXPECT_EQ((Objects{&child}), listOf(owner.byName));
}

TEST(QORObjectAddnu, SelfLinkIsRefusedAndYetLeavesTheObjectInItsOwnEnd) {
    Node a("a");
    EXPECT_FALSE(a.addChild(a));
    EXPECT_EQ((Objects{&a}), listOf(a.byName));
    EXPECT_EQ(nullptr, a.unary);
    EXPECT_FALSE(a.addChild(a)); // by now it is a duplicate
    EXPECT_EQ(1, a.byName.size);
}

TEST(QORObjectAddnu, SelfLinkWithATakenUnaryEndDoesNotTouchTheContainer) {
    Node owner("o");
    Node a("a");
    ASSERT_TRUE(owner.addChild(a));
    EXPECT_FALSE(a.addChild(a));
    EXPECT_EQ(0, a.byName.size);
}

// ---- _adduu ---------------------------------------------------------------------------------------------

TEST(QORObjectAdduu, LinksBothEnds) {
    Node a;
    Node b;
    EXPECT_TRUE(a._adduu(&a.unary, &b.unary, &b));
    EXPECT_EQ(&b, a.unary);
    EXPECT_EQ(&a, b.unary);
}

TEST(QORObjectAdduu, RefusesWhenEitherEndIsTaken) {
    Node a;
    Node b;
    Node c;
    ASSERT_TRUE(a._adduu(&a.unary, &b.unary, &b));
    EXPECT_FALSE(a._adduu(&a.unary, &c.unary, &c));
    EXPECT_FALSE(c._adduu(&c.unary, &b.unary, &b));
    EXPECT_EQ(&b, a.unary);
    EXPECT_EQ(&a, b.unary);
    EXPECT_EQ(nullptr, c.unary);
}

TEST(QORObjectAdduu, SelfLinkIsRefusedAndChangesNothing) {
    Node a;
    QORObject* second = nullptr;
    EXPECT_FALSE(a._adduu(&a.unary, &second, &a));
    EXPECT_EQ(nullptr, a.unary);
    EXPECT_EQ(nullptr, second);
}

// ---- _getn and _removen ---------------------------------------------------------------------------------

namespace {

/// An owner whose end holds a, b, b, b, c, the three namesakes in the order of their addresses.
class Namesakes : public ::testing::Test {
protected:
    void SetUp() override {
        for (char const* title : {"c", "b", "a", "b", "b"}) {
            nodes.push_back(std::make_unique<Node>(title));
            owner.namesakes.add(nodes.back().get(), true, nullptr);
            owner.vector.add(nodes.back().get(), true, nullptr);
        }
        for (int i = 1; i < 4; ++i)
            b.push_back(static_cast<Node*>(owner.namesakes[i]));
    }

    Node owner;
    std::vector<std::unique_ptr<Node>> nodes;
    std::vector<Node*> b;
};

} // namespace

TEST_F(Namesakes, GetStoresThePositionOfTheMatchItself) {
    int cursor = 0;
    EXPECT_EQ(b[0], owner._getn(&owner.namesakes, "b", &cursor));
    EXPECT_EQ(1, cursor);
}

TEST_F(Namesakes, GetWithTheStoredCursorFindsTheSameElementAgain) {
    int cursor = 0;
    owner._getn(&owner.namesakes, "b", &cursor);
    EXPECT_EQ(b[0], owner._getn(&owner.namesakes, "b", &cursor));
    EXPECT_EQ(1, cursor);
}

TEST_F(Namesakes, GetWithTheCursorAdvancedByOneWalksAllMatches) {
    std::vector<QORObject*> found;
    int cursor = 0;
    while (QORObject* const object = owner._getn(&owner.namesakes, "b", &cursor)) {
        found.push_back(object);
        ++cursor;
    }
    EXPECT_EQ((Objects{b[0], b[1], b[2]}), found);
    EXPECT_EQ(4, cursor); // a miss leaves it alone
}

TEST_F(Namesakes, GetWithoutAMatchLeavesTheCursorAlone) {
    int cursor = 0;
    EXPECT_EQ(nullptr, owner._getn(&owner.namesakes, "x", &cursor));
    EXPECT_EQ(0, cursor);
    cursor = 3;
    EXPECT_EQ(nullptr, owner._getn(&owner.namesakes, "a", &cursor));
    EXPECT_EQ(3, cursor);
    cursor = 99;
    EXPECT_EQ(nullptr, owner._getn(&owner.namesakes, "b", &cursor));
    EXPECT_EQ(99, cursor);
}

TEST_F(Namesakes, GetAtPositionZeroStoresZeroSoThatTheSearchStartsAgain) {
    int cursor = 0;
    QORObject* const a = owner._getn(&owner.namesakes, "a", &cursor);
    ASSERT_NE(nullptr, a);
    EXPECT_EQ(0, cursor);
    EXPECT_EQ(a, owner._getn(&owner.namesakes, "a", &cursor));
    EXPECT_EQ(0, cursor);
}

TEST_F(Namesakes, GetInAVectorGoesByThePlaceOfAdding) {
    int cursor = 0;
    EXPECT_EQ(nodes[1].get(), owner._getn(&owner.vector, "b", &cursor));
    EXPECT_EQ(1, cursor);
    ++cursor;
    EXPECT_EQ(nodes[3].get(), owner._getn(&owner.vector, "b", &cursor));
    EXPECT_EQ(3, cursor);
}

TEST_F(Namesakes, RemoveByNameRepeatedWithTheStoredCursorTakesAllMatchesInTurn) {
    std::vector<QORObject*> removed;
    int cursor = 0;
    while (QORObject* const object = owner._removen(&owner.namesakes, "b", &cursor)) {
        removed.push_back(object);
        EXPECT_EQ(1, cursor);
    }
    EXPECT_EQ((Objects{b[0], b[1], b[2]}), removed);
    EXPECT_EQ((Objects{nodes[2].get(), nodes[0].get()}), listOf(owner.namesakes));
}

TEST_F(Namesakes, RemoveByNameInAVectorTakesAllMatchesInTurn) {
    std::vector<QORObject*> removed;
    int cursor = 0;
    while (QORObject* const object = owner._removen(&owner.vector, "b", &cursor))
        removed.push_back(object);
    EXPECT_EQ((Objects{nodes[1].get(), nodes[3].get(), nodes[4].get()}), removed);
    EXPECT_EQ((Objects{nodes[0].get(), nodes[2].get()}), listOf(owner.vector));
}

TEST_F(Namesakes, RemoveByObjectTakesThatVeryObject) {
    EXPECT_TRUE(owner._removen(&owner.namesakes, b[1]));
    EXPECT_EQ((Objects{nodes[2].get(), b[0], b[2], nodes[0].get()}), listOf(owner.namesakes));
    EXPECT_FALSE(owner._removen(&owner.namesakes, b[1]));
}

TEST(QORObjectRemoven, RemoveByObjectNeverTakesANamesake) {
    Node owner;
    Node inside("x");
    Node outside("x");
    ASSERT_TRUE(owner.addChild(inside));
    EXPECT_FALSE(owner._removen(&owner.byName, &outside));
    EXPECT_EQ((Objects{&inside}), listOf(owner.byName));
}

TEST(QORObjectRemoven, RemoveByObjectGivesItsIteratorsBack) {
    Node owner;
    Node inside("x");
    Node outside("y");
    ASSERT_TRUE(owner.addChild(inside));
    EXPECT_FALSE(owner._removen(&owner.byName, &outside));
    EXPECT_EQ(1, owner.byName.lent);
    EXPECT_EQ(1, owner.byName.returned);
    EXPECT_TRUE(owner._removen(&owner.byName, &inside));
    EXPECT_EQ(2, owner.byName.lent);
    EXPECT_EQ(2, owner.byName.returned);
    EXPECT_TRUE(owner.byName.allToFirst);
}

TEST(QORObjectRemoven, RemoveByObjectFromAnEmptyEndIsFalse) {
    Node owner;
    Node other;
    EXPECT_FALSE(owner._removen(&owner.byName, &other));
    EXPECT_FALSE(owner._removen(&owner.vector, &other));
}

TEST(QORObjectRemoven, RemoveByObjectFindsAnElementWhoseNameHasChangedSince) {
    Node owner;
    Node a("a");
    Node b("b");
    Node c("c");
    for (Node* node : {&a, &b, &c})
        ASSERT_TRUE(owner.addChild(*node));
    a.setName("z"); // a caller's class doesn't re-key by itself
    EXPECT_TRUE(owner._removen(&owner.byName, &a));
    EXPECT_EQ((Objects{&b, &c}), listOf(owner.byName));
}

// ---- unique names ---------------------------------------------------------------------------------------

namespace {

/// Refuses the first names that it is given, each time with the next kind of exception, and notes them all.
class Choosy : public QORObject {
public:
    explicit Choosy(int refused) : left(refused) {}

    void setName(QORString const& wanted) override {
        tried.push_back(wanted.chars);
        switch (left-- > 0 ? left % 4 : -1) {
        case 0:
            throw 1;
        case 1:
            throw QORException("taken");
        case 2:
            throw std::string("taken");
        case 3:
            throw std::runtime_error("taken");
        default:
            QORObject::setName(wanted);
        }
    }

    Labels tried;

private:
    int left;
};

} // namespace

TEST(QORObjectSetUniqueName, AFreeNameStillGetsItsNumber) {
    QORObject object;
    object.setUniqueName("x", '_');
    EXPECT_STREQ("x_1", object.getName().chars);
}

TEST(QORObjectSetUniqueName, TriesNumbersThroughExceptionsOfAnyTypeAndNeverTheBareName) {
    Choosy object(4);
    object.setUniqueName("x", '-');
    EXPECT_EQ((Labels{"x-1", "x-2", "x-3", "x-4", "x-5"}), object.tried);
    EXPECT_STREQ("x-5", object.getName().chars);
}

TEST(QORObjectSetUniqueName, NumbersGrowBeyondOneDigit) {
    Choosy object(10);
    object.setUniqueName("x", '/');
    EXPECT_STREQ("x/11", object.getName().chars);
    EXPECT_EQ(11U, object.tried.size());
}

TEST(QORObjectSetUniqueName, AnEmptyBaseIsTakenAsItIs) {
    QORObject object;
    object.setUniqueName("", '_');
    EXPECT_STREQ("_1", object.getName().chars);
}

TEST(QORObjectSetUniqueName, TheObjectsOwnNameServesAsBase) {
    QORObject object;
    object.setName("base");
    object.setUniqueName(object.getName(), '_');
    EXPECT_STREQ("base_1", object.getName().chars);
}

namespace {

/// Runs out of memory at its first renaming.
class OutOfMemoryOnce : public QORObject {
public:
    void setName(QORString const& wanted) override {
        if (first) {
            first = false;
            throw std::bad_alloc();
        }
        QORObject::setName(wanted);
    }

private:
    bool first = true;
};

} // namespace

TEST(QORObjectSetUniqueName, AFailureOfMemoryInSetNameMeansTheNextNumberToo) {
    OutOfMemoryOnce object;
    EXPECT_NO_THROW(object.setUniqueName("x", '_'));
    EXPECT_STREQ("x_2", object.getName().chars);
}

namespace {

/// Accepts a link from the given attempt on; notes the far object's name at each attempt.
class Host : public QORObject {
public:
    explicit Host(int refused) : left(refused) {}

    bool attach(QORObject* other) {
        offered.push_back(other->getName().chars);
        if (throwing)
            throw 7;
        return left-- <= 0;
    }
    static bool (QORObject::*adder())(QORObject*) {
        return static_cast<bool (QORObject::*)(QORObject*)>(&Host::attach);
    }

    Labels offered;
    bool throwing = false;

private:
    int left;
};

} // namespace

TEST(QORObjectAddLinkUniqueName, NeverTriesTheBareName) {
    Host host(0);
    QORObject other;
    other.setName("A");
    host.addLinkUniqueName(Host::adder(), &other, '_');
    EXPECT_EQ(Labels{"A_1"}, host.offered);
    EXPECT_STREQ("A_1", other.getName().chars);
}

TEST(QORObjectAddLinkUniqueName, SuffixesAccumulate) {
    Host host(2);
    QORObject other;
    other.setName("A");
    host.addLinkUniqueName(Host::adder(), &other, '_');
    EXPECT_EQ((Labels{"A_1", "A_1_2", "A_1_2_3"}), host.offered);
    EXPECT_STREQ("A_1_2_3", other.getName().chars);
}

TEST(QORObjectAddLinkUniqueName, AnExceptionOfTheAddKeepsTheNameOfThatPass) {
    Host host(0);
    host.throwing = true;
    QORObject other;
    other.setName("A");
    EXPECT_THROW(host.addLinkUniqueName(Host::adder(), &other, '/'), int);
    EXPECT_STREQ("A/1", other.getName().chars);
}

TEST(QORObjectAddLinkUniqueName, AnExceptionOfSetNamePasses) {
    Host host(0);
    Choosy other(1);
    other.QORObject::setName("A");
    EXPECT_THROW(host.addLinkUniqueName(Host::adder(), &other, '_'), int);
    EXPECT_TRUE(host.offered.empty());
    EXPECT_STREQ("A", other.getName().chars);
}

// ---- transcode ------------------------------------------------------------------------------------------

namespace {

class Transcoding : public ::testing::Test {
protected:
    std::unique_ptr<QOREncodingConverter> latin{QOREncodingConverter::create("ISO-8859-1")};
    std::unique_ptr<QOREncodingConverter> utf8{QOREncodingConverter::create("UTF-8")};
    int converted = 0;
    int failed = 0;
};

using QORObjectTranscode = Transcoding;

} // namespace

TEST_F(QORObjectTranscode, ConvertsTheName) {
    QORObject object;
    object.setName("caf\xE9");
    object.transcode(latin.get(), utf8.get(), converted, failed);
    EXPECT_STREQ("caf\xC3\xA9", object.getName().chars);
    EXPECT_EQ(1, converted);
    EXPECT_EQ(0, failed);
}

TEST_F(QORObjectTranscode, AnEmptyNameLeavesBothCountersAlone) {
    converted = 3;
    failed = 4;
    Choosy object(0);
    object.transcode(latin.get(), utf8.get(), converted, failed);
    EXPECT_EQ(3, converted);
    EXPECT_EQ(4, failed);
    EXPECT_TRUE(object.tried.empty());
}

TEST_F(QORObjectTranscode, AFailedConversionLeavesTheNameAndDoesNotCallSetName) {
    Choosy object(0);
    object.QORObject::setName("\xFF");
    failed = 2;
    object.transcode(utf8.get(), latin.get(), converted, failed);
    EXPECT_STREQ("\xFF", object.getName().chars);
    EXPECT_EQ(0, converted);
    EXPECT_EQ(3, failed);
    EXPECT_TRUE(object.tried.empty());
}

TEST_F(QORObjectTranscode, SetsTheNameVirtually) {
    Choosy object(0);
    object.QORObject::setName("\xE9");
    object.transcode(latin.get(), utf8.get(), converted, failed);
    EXPECT_EQ(Labels{"\xC3\xA9"}, object.tried);
}

TEST_F(QORObjectTranscode, ARefusedNameGetsASlashAndANumber) {
    for (int refused = 1; refused <= 4; ++refused) { // each kind of exception in turn as the first one
        Choosy object(refused);
        object.QORObject::setName("\xE9");
        object.transcode(latin.get(), utf8.get(), converted, failed);
        EXPECT_EQ(std::string("\xC3\xA9/") + std::to_string(refused), object.getName().chars);
        EXPECT_EQ("\xC3\xA9", object.tried[0]);
        EXPECT_EQ("\xC3\xA9/1", object.tried[1]);
    }
    EXPECT_EQ(4, converted);
    EXPECT_EQ(0, failed);
}

TEST_F(QORObjectTranscode, AFailureOfMemoryInSetNameCountsAsARefusal) {
    OutOfMemoryOnce object;
    object.QORObject::setName("\xE9");
    EXPECT_NO_THROW(object.transcode(latin.get(), utf8.get(), converted, failed));
    EXPECT_STREQ("\xC3\xA9/1", object.getName().chars);
}

TEST_F(QORObjectTranscode, WithoutConvertersTheNameIsSetToItselfAndNothingIsCounted) {
    Choosy object(0);
    object.QORObject::setName("\xE9");
    object.transcode(nullptr, nullptr, converted, failed);
    EXPECT_EQ(Labels{"\xE9"}, object.tried);
    EXPECT_EQ(0, converted);
    EXPECT_EQ(0, failed);
}

TEST_F(QORObjectTranscode, TestsTheNameFieldNotTheShownName) {
    Alias object("shown");
    object.transcode(latin.get(), utf8.get(), converted, failed);
    EXPECT_EQ(0, converted);
    object.QORObject::setName("\xE9");
    object.transcode(latin.get(), utf8.get(), converted, failed);
    EXPECT_EQ(1, converted);
}
