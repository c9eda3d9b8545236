#include <qor/QORFormatLinkTree.h>
#include <qor/QORLinkTree.h>
#include <qor/QORModelElementLinkTree.h>
#include <qor/QORNameElementTypeLinkTree.h>
#include <qor/QORNameLinkTree.h>
#include <qor/QORNamePtrLinkTree.h>
#include <qor/QOROptionalNameLinkTree.h>
#include <qor/QORPropertyValue.h>
#include <qor/QORPtrLinkTree.h>
#include <qor/QORSortedPropertyValuesLinkTree.h>
#include <qor/QORTypeValue.h>
#include <qor/QORTypeValueLinkTree.h>

#include <AllocationControl.h>
#include <IteratorModel.h>
#include <LinkTreeModel.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <vector>

namespace {

#ifdef __SANITIZE_ADDRESS__
constexpr int allocationsOfANode = 1;
#else
constexpr int allocationsOfANode = 0; // nodes come from a pool of their own
#endif

// ---- a tree of addresses, so that a position is the index of an item ----

class QORLinkTreeCursor : public testing::Test {
protected:
    void fill(int count) {
        for (int i = 0; i < count; ++i)
            tree.add(&items[i], true, nullptr);
        tree.resetSteps();
    }
    /// Puts the cursor on a position and starts counting.
    void moveTo(int position) {
        ASSERT_EQ(tree[position], &items[position]);
        ASSERT_EQ(tree.position, position);
        tree.resetSteps();
    }
    void expectSteps(int ahead, int back) const {
        EXPECT_EQ(tree.ahead, ahead);
        EXPECT_EQ(tree.back, back);
    }
    void expectCursorOn(int position, void const* item) const {
        EXPECT_EQ(tree.position, position);
        ASSERT_NE(tree.current, nullptr);
        EXPECT_EQ(tree.current->item, item);
        EXPECT_EQ(tree.placeOf(tree.current), position);
    }

    char const items[200] = {};
    LinkTreeProbe<QORLinkTree> tree;
};

// ---- all classes ----

template <class Tree>
struct ElementOf {
    using Type = TypedObject;
    static std::unique_ptr<Type> make(QORString const& name) { return std::make_unique<Type>(name); }
};
template <>
struct ElementOf<QORTypeValueLinkTree> {
    using Type = QORTypeValue;
    static std::unique_ptr<Type> make(QORString const& name) {
        auto value = std::make_unique<Type>();
        value->setName(name);
        return value;
    }
};
template <>
struct ElementOf<QORSortedPropertyValuesLinkTree> {
    using Type = QORPropertyValue;
    static std::unique_ptr<Type> make(QORString const&) { return std::make_unique<Type>(); }
};

template <class Tree>
class LinkTreeClasses : public testing::Test {
protected:
    /// Objects of different names, which every class takes.
    void SetUp() override {
        for (int i = 0; i < 20; ++i)
            objects.push_back(ElementOf<Tree>::make(QORString(('a' + std::to_string(i)).c_str())));
    }
    void fill(Tree& tree, int count) {
        for (int i = 0; i < count; ++i)
            ASSERT_TRUE(tree.add(item(i), true, nullptr));
    }
    QORObject* item(int index) const { return objects[static_cast<std::size_t>(index)].get(); }
    static std::vector<void*> itemsOf(Tree const& tree) {
        std::vector<void*> items;
        for (QORRBTreeNode const* node = tree.firstNode(); node; node = tree.nextNode(node))
            items.push_back(node->item);
        return items;
    }

    std::vector<std::unique_ptr<typename ElementOf<Tree>::Type>> objects;
};
using AllTrees = testing::Types<QORLinkTree, QORPtrLinkTree, QORNameLinkTree, QOROptionalNameLinkTree,
                                QORNamePtrLinkTree, QORNameElementTypeLinkTree, QORModelElementLinkTree,
                                QORFormatLinkTree, QORTypeValueLinkTree, QORSortedPropertyValuesLinkTree>;
TYPED_TEST_SUITE(LinkTreeClasses, AllTrees);

TYPED_TEST(LinkTreeClasses, CountNodesWhereTheClassIsExactlyTheirs) {
    struct Open : TypeParam {
        using TypeParam::countedAs;
    };
    EXPECT_EQ(typeid(TypeParam), Open().countedAs());
}

// ---- trees whose order depends on a name ----

/// An object with a second name, which it takes on without any memory.
class Renamable : public QORObject {
public:
    Renamable(std::string const& first, std::string const& second)
        : names{QORString(first.c_str()), QORString(second.c_str())} {}

    QORString const& getName() const override { return names[turned]; }
    void turn() {
        turned = !turned;
        ++turns;
    }
    static void turn(void* object) { static_cast<Renamable*>(object)->turn(); }

    int turns = 0;

private:
    QORString const names[2];
    bool turned = false;
};

template <class Tree>
class NameSortedTrees : public testing::Test {};
using NameTrees = testing::Types<QORNameLinkTree, QOROptionalNameLinkTree, QORNamePtrLinkTree,
                                 QORNameElementTypeLinkTree, QORModelElementLinkTree, QORFormatLinkTree>;
TYPED_TEST_SUITE(NameSortedTrees, NameTrees);

template <class Tree>
std::vector<QORObject*> objectsOf(LinkTreeProbe<Tree> const& tree) {
    std::vector<QORObject*> objects;
    for (QORRBTreeNode const* node = tree._first; node; node = tree.Tree::nextNode(node))
        objects.push_back(static_cast<QORObject*>(node->item));
    return objects;
}

template <class Tree>
void expectCursorHolds(LinkTreeProbe<Tree> const& tree) {
    if (tree.position != -1) {
        ASSERT_EQ(tree.placeOf(tree.current), tree.position);
    }
}

using testing::HasSubstr;

/// A tree of three elements whose cursor has a position but no node.
struct BrokenTree : LinkTreeProbe<QORLinkTree> {
    BrokenTree() {
        for (char const& item : items)
            add(&item, true, nullptr);
        position = 1;
        current = nullptr;
    }
    char const items[3] = {};
    char const other = 0;
};

auto diesOfTheInvariantIn(std::string const& function) {
    return testing::AllOf(
        HasSubstr("QORNaryLink.cpp:"),
        HasSubstr(
            ": " + function +
            ": Assertion `( ( (this)->position==-1 ) || ( ((this)->position==0) && "
            "((this)->current==(this)->_first) ) || ( ((this)->position==(this)->size-1) && "
            "((this)->current==lastNode()) ) || ( ((this)->position!=-1) && ((this)->current!=__null) ) "
            ")' failed."));
}

} // namespace

// ---- the walk to a position ----

TEST_F(QORLinkTreeCursor, IsUnsetInANewTree) {
    EXPECT_EQ(tree.position, -1);
    fill(3);
    EXPECT_EQ(tree.position, -1);
}

TEST_F(QORLinkTreeCursor, StartsAtTheBeginning) {
    fill(20);
    EXPECT_EQ(tree[0], &items[0]);
    expectSteps(0, 0);
    expectCursorOn(0, &items[0]);
    tree.position = -1;
    EXPECT_EQ(tree[7], &items[7]);
    expectSteps(7, 0);
    expectCursorOn(7, &items[7]);
}

TEST_F(QORLinkTreeCursor, CostsOneStepAnElementInAWalkByAscendingPositions) {
    fill(200);
    for (int i = 0; i < 200; ++i)
        ASSERT_EQ(tree[i], &items[i]);
    expectSteps(199, 0);
}

TEST_F(QORLinkTreeCursor, CostsOneStepAnElementInAWalkBackFromTheEnd) {
    fill(100);
    EXPECT_EQ(tree[99], &items[99]);
    expectSteps(0, 0); // the end itself
    for (int i = 98; i >= 50; --i)
        ASSERT_EQ(tree[i], &items[i]);
    expectSteps(0, 49);
}

TEST_F(QORLinkTreeCursor, CostsNothingToReadWhereItStands) {
    fill(50);
    moveTo(30);
    EXPECT_EQ(tree[30], &items[30]);
    expectSteps(0, 0);
}

TEST_F(QORLinkTreeCursor, WalksAheadOrJumpsToTheEndWithABiasOfNine) {
    fill(101);
    struct {
        int to, ahead, back;
    } const cases[] = {{50, 50, 0}, {54, 54, 0}, {55, 0, 45}, {60, 0, 40}, {100, 0, 0}, {99, 0, 1}};
    for (auto const& [to, ahead, back] : cases) {
        SCOPED_TRACE(to);
        moveTo(0);
        EXPECT_EQ(tree[to], &items[to]);
        expectSteps(ahead, back);
        expectCursorOn(to, &items[to]);
    }
}

TEST_F(QORLinkTreeCursor, ComparesTheDistanceAheadWithThatToTheEnd) {
    fill(101);
    moveTo(80);
    EXPECT_EQ(tree[94], &items[94]); // 14 ahead, 7 + 9 from the end
    expectSteps(14, 0);
    moveTo(80);
    EXPECT_EQ(tree[95], &items[95]); // 15 ahead, 6 + 9 from the end: a tie goes to the end
    expectSteps(0, 5);
    moveTo(95);
    EXPECT_EQ(tree[100], &items[100]);
    expectSteps(5, 0);
}

TEST_F(QORLinkTreeCursor, WalksBackOrJumpsToTheStartWithoutABias) {
    fill(101);
    struct {
        int to, ahead, back;
    } const cases[] = {{99, 0, 1}, {51, 0, 49}, {50, 50, 0}, {49, 49, 0}, {1, 1, 0}, {0, 0, 0}};
    for (auto const& [to, ahead, back] : cases) {
        SCOPED_TRACE(to);
        moveTo(100);
        EXPECT_EQ(tree[to], &items[to]);
        expectSteps(ahead, back);
        expectCursorOn(to, &items[to]);
    }
}

TEST_F(QORLinkTreeCursor, StaysWhereItIsForAPositionOutOfRange) {
    fill(10);
    moveTo(4);
    for (int position : {-1, -7, 10, 11, 1000}) {
        EXPECT_EQ(tree[position], nullptr);
        EXPECT_EQ(tree.removeElement(position), nullptr);
    }
    expectSteps(0, 0);
    expectCursorOn(4, &items[4]);
    EXPECT_EQ(tree.size, 10);
}

TEST_F(QORLinkTreeCursor, FindsItsWayFromTheBeginningWhereItHasLostItsNode) {
    fill(200);
    tree.position = 150;
    tree.current = nullptr;
    EXPECT_EQ(tree[100], &items[100]);
    expectCursorOn(100, &items[100]);
}

TEST_F(QORLinkTreeCursor, GivesNothingOnAnEmptyTree) {
    EXPECT_EQ(tree[0], nullptr);
    EXPECT_EQ(tree.removeElement(0), nullptr);
    EXPECT_EQ(tree.findFirstElement(&items[0]), -1);
    EXPECT_EQ(tree.findLastElement(&items[0]), -1);
    EXPECT_EQ(tree.findNextElement(&items[0], 0), -1);
    EXPECT_EQ(tree.findNextElement(&items[0], -1), -1);
    EXPECT_EQ(tree.findPreviousElement(&items[0], 0), -1);
    EXPECT_EQ(tree.containsElement(&items[0]), -1);
    EXPECT_EQ(tree.position, -1);
}

// ---- from a node to its position ----

TEST_F(QORLinkTreeCursor, CountsANodeFromTheEndOnItsSideOfTheRoot) {
    fill(100);
    int const root = tree.placeOf(tree.root);
    ASSERT_GT(root, 5);
    ASSERT_LT(root, 95);
    for (int place = 0; place < 100; ++place) {
        SCOPED_TRACE(place);
        tree.resetSteps();
        EXPECT_EQ(tree.containsElement(&items[place]), place);
        if (place < root)
            expectSteps(0, place + 1);
        else
            expectSteps(100 - place, 0);
        expectCursorOn(place, &items[place]);
    }
}

TEST_F(QORLinkTreeCursor, MovesOntoWhatIsFoundAndIsClearedByAFailure) {
    fill(20);
    EXPECT_EQ(tree.findFirstElement(&items[6]), 6);
    expectCursorOn(6, &items[6]);
    EXPECT_EQ(tree.findLastElement(&items[17]), 17);
    expectCursorOn(17, &items[17]);
    EXPECT_EQ(tree.findFirstElement(&items[90]), -1);
    EXPECT_EQ(tree.position, -1);
    moveTo(3);
    EXPECT_EQ(tree.findLastElement(&items[90]), -1);
    EXPECT_EQ(tree.position, -1);
    moveTo(3);
    EXPECT_EQ(tree.containsElement(&items[90]), -1);
    EXPECT_EQ(tree.position, -1);
}

TEST_F(QORLinkTreeCursor, StaysForTheSearchesOfTheTree) {
    fill(20);
    moveTo(5);
    EXPECT_TRUE(tree.contains(&items[10], nullptr));
    EXPECT_FALSE(tree.contains(&items[90], nullptr));
    EXPECT_EQ(tree.findFirst(&items[90], nullptr), nullptr);
    EXPECT_EQ(tree.getNode(&items[10])->item, &items[10]);
    expectCursorOn(5, &items[5]);
}

TEST_F(QORLinkTreeCursor, TakesOneStepToTheNextMatch) {
    fill(20);
    moveTo(5);
    EXPECT_EQ(tree.findNextElement(&items[6], 5), 6);
    expectSteps(1, 0);
    expectCursorOn(6, &items[6]);
    tree.resetSteps();
    EXPECT_EQ(tree.findPreviousElement(&items[5], 6), 5);
    expectSteps(0, 1);
    expectCursorOn(5, &items[5]);
    tree.resetSteps();
    EXPECT_EQ(tree.findNextElement(&items[9], 8), 9); // three to 8, one on
    expectSteps(4, 0);
    EXPECT_EQ(tree.findNextElement(&items[15], 2), -1);
    expectCursorOn(2, &items[2]);
    EXPECT_EQ(tree.findPreviousElement(&items[15], 4), -1);
    expectCursorOn(4, &items[4]);
    EXPECT_EQ(tree.findNextElement(&items[15], 19), -1);
    expectCursorOn(19, &items[19]);
    EXPECT_EQ(tree.findPreviousElement(&items[15], 0), -1);
    expectCursorOn(0, &items[0]);
    for (int from : {-1, 20}) {
        EXPECT_EQ(tree.findNextElement(&items[0], from), -1);
        EXPECT_EQ(tree.findPreviousElement(&items[19], from), -1);
        expectCursorOn(0, &items[0]);
    }
}

// ---- adding ----

TEST_F(QORLinkTreeCursor, MovesUpWithItsNodeWhenAnElementIsAddedBefore) {
    for (int i = 10; i < 20; ++i)
        tree.add(&items[i], true, nullptr);
    ASSERT_EQ(tree[4], &items[14]);
    tree.add(&items[2], true, nullptr); // a new first element
    expectCursorOn(5, &items[14]);
    tree.add(&items[5], true, nullptr);
    expectCursorOn(6, &items[14]);
    tree.add(&items[50], true, nullptr);
    expectCursorOn(6, &items[14]);
    tree.resetSteps();
    tree.add(&items[30], true, nullptr);
    expectSteps(0, 0);
    EXPECT_EQ(tree[6], &items[14]);
    expectSteps(0, 0);
}

TEST_F(QORLinkTreeCursor, MovesFromTheFirstPlaceOnlyForANewFirstElement) {
    tree.add(&items[10], true, nullptr);
    tree.add(&items[20], true, nullptr);
    ASSERT_EQ(tree[0], &items[10]);
    tree.add(&items[15], true, nullptr);
    expectCursorOn(0, &items[10]);
    tree.add(&items[5], true, nullptr);
    expectCursorOn(1, &items[10]);
}

TEST_F(QORLinkTreeCursor, IsLeftAloneByARefusedAddAndClearedByARefusedAddElement) {
    fill(10);
    moveTo(6);
    EXPECT_EQ(tree.addNode(&items[3], true), nullptr);
    EXPECT_FALSE(tree.add(&items[6], true, nullptr));
    expectCursorOn(6, &items[6]);
    EXPECT_EQ(tree.addElement(&items[3], true), -1);
    EXPECT_EQ(tree.position, -1);
    EXPECT_EQ(tree.size, 10);
}

TEST_F(QORLinkTreeCursor, MovesOntoWhatAddElementAdds) {
    EXPECT_EQ(tree.addElement(&items[10], true), 0);
    expectCursorOn(0, &items[10]);
    EXPECT_EQ(tree.addElement(&items[5], true), 0);
    expectCursorOn(0, &items[5]);
    EXPECT_EQ(tree.addElement(&items[7], true), 1);
    expectCursorOn(1, &items[7]);
    EXPECT_EQ(tree.addElement(&items[20], true), 3);
    expectCursorOn(3, &items[20]);
}

TEST_F(QORLinkTreeCursor, IsClearedWhenItsOwnItemIsAddedAgainElsewhereThanFirst) {
    fill(5);
    moveTo(3);
    EXPECT_NE(tree.addNode(&items[3], false), nullptr);
    EXPECT_EQ(tree.position, -1);
    EXPECT_EQ(tree.size, 6);
    ASSERT_EQ(tree[0], &items[0]);
    EXPECT_NE(tree.addNode(&items[0], false), nullptr); // the cursor is on the first node, which stays so
    expectCursorOn(0, &items[0]);
}

TEST_F(QORLinkTreeCursor, CountsAnEqualItemOfALowerAddressAmongThoseBefore) {
    LinkTreeProbe<QORNameLinkTree> names;
    TypedObject objects[5] = {TypedObject("a"), TypedObject("b"), TypedObject("b"), TypedObject("b"),
                              TypedObject("c")};
    for (int i : {0, 2, 4})
        names.addNode(&objects[i], false);
    ASSERT_EQ(names[1], &objects[2]);
    names.addNode(&objects[3], false);
    EXPECT_EQ(names.position, 1);
    names.addNode(&objects[1], false);
    EXPECT_EQ(names.position, 2);
    EXPECT_EQ(names.placeOf(names.current), 2);
    names.removeNode(names.nodeAt(3));
    EXPECT_EQ(names.position, 2);
    names.removeNode(names.nodeAt(1));
    EXPECT_EQ(names.position, 1);
    EXPECT_EQ(names.current->item, &objects[2]);
}

// ---- removing ----

TEST_F(QORLinkTreeCursor, MovesOntoTheFollowerOfItsRemovedNode) {
    fill(5);
    moveTo(2);
    EXPECT_EQ(tree.removeElement(2), &items[2]);
    expectSteps(1, 0);
    expectCursorOn(2, &items[3]);
    EXPECT_EQ(tree.removeNode(tree.current), &items[3]);
    expectCursorOn(2, &items[4]);
}

TEST_F(QORLinkTreeCursor, MovesOntoTheNewLastElementWhenItsLastOneIsRemoved) {
    fill(5);
    moveTo(4);
    EXPECT_EQ(tree.removeElement(4), &items[4]);
    expectSteps(0, 1);
    expectCursorOn(3, &items[3]);
}

TEST_F(QORLinkTreeCursor, IsUnsetByTheRemovalOfTheOnlyElement) {
    fill(1);
    moveTo(0);
    EXPECT_EQ(tree.removeElement(0), &items[0]);
    EXPECT_EQ(tree.position, -1);
    EXPECT_EQ(tree.size, 0);
    EXPECT_EQ(tree._first, nullptr);
    EXPECT_EQ(tree[0], nullptr);
}

TEST_F(QORLinkTreeCursor, MovesDownWithItsNodeWhenAnElementBeforeIsRemoved) {
    fill(10);
    moveTo(5);
    tree.removeNode(tree.nodeAt(0));
    expectCursorOn(4, &items[5]);
    tree.removeNode(tree.nodeAt(3));
    expectCursorOn(3, &items[5]);
    tree.removeNode(tree.nodeAt(7));
    expectCursorOn(3, &items[5]);
    QORLinkTree::Iterator iterator(tree, true);
    EXPECT_TRUE(tree.remove(&iterator));
    expectCursorOn(2, &items[5]);
    expectSteps(0, 0);
}

TEST_F(QORLinkTreeCursor, IsClearedWhenItsItemIsRemovedByAnotherNode) {
    fill(3);
    QORRBTreeNode* const again = tree.addNode(&items[1], false);
    moveTo(1);
    ASSERT_NE(tree.current, again);
    EXPECT_EQ(tree.removeNode(again), &items[1]);
    EXPECT_EQ(tree.position, -1);
    EXPECT_EQ(tree.size, 3);
}

TEST_F(QORLinkTreeCursor, StaysForTheRemovalOfNothing) {
    fill(3);
    moveTo(1);
    EXPECT_EQ(tree.removeNode(nullptr), nullptr);
    expectCursorOn(1, &items[1]);
}

TEST_F(QORLinkTreeCursor, SurvivesAWalkThatRemovesAsItGoes) {
    fill(100);
    int index = 0;
    for (int i = 0; i < 100; ++i) {
        if (i % 3 == 0) {
            ASSERT_EQ(tree.removeElement(index), &items[i]);
        } else {
            ASSERT_EQ(tree[index], &items[i]);
            ++index;
        }
    }
    EXPECT_EQ(tree.size, 66);
    EXPECT_LE(tree.ahead + tree.back, 101); // one step an element
}

TEST_F(QORLinkTreeCursor, IsUnsetWhenTheTreeIsEmptied) {
    fill(5);
    moveTo(3);
    EXPECT_TRUE(tree.empty());
    EXPECT_EQ(tree.position, -1);
    EXPECT_EQ(tree.size, 0);
    EXPECT_EQ(tree.addElement(&items[8], true), 0);
}

TEST_F(QORLinkTreeCursor, ToleratesTheMinusOneThatIsNoValidPosition) {
    fill(3);
    EXPECT_EQ(tree[-1], nullptr);
    EXPECT_EQ(tree.removeElement(-1), nullptr);
    EXPECT_EQ(tree.size, 3);
    moveTo(2);
    tree.containsElement(&items[99]); // unset again
    EXPECT_EQ(tree[-1], nullptr);
    EXPECT_EQ(tree.removeElement(-1), nullptr);
    EXPECT_EQ(tree.size, 3);
    moveTo(2);
    tree.addNode(&items[2], false); // unset, with a node from before
    ASSERT_EQ(tree.position, -1);
    EXPECT_EQ(tree[-1], nullptr);
    EXPECT_EQ(tree.removeElement(-1), nullptr);
    EXPECT_EQ(tree.size, 4);
    moveTo(2);
    tree.empty();
    EXPECT_EQ(tree[-1], nullptr);
    EXPECT_EQ(tree.removeElement(-1), nullptr);
}

// ---- the invariant ----

TEST(QORLinkTreeDeathTest, ChecksItsCursorOnEntry) {
    BrokenTree tree;
    EXPECT_DEATH(
        tree.addNode(&tree.other, true),
        diesOfTheInvariantIn("virtual QORRBTreeNode* QORLinkTree::addNode(const QORContainerItem*, bool)"));
    EXPECT_DEATH(
        tree.add(&tree.other, true, nullptr),
        diesOfTheInvariantIn("virtual QORRBTreeNode* QORLinkTree::addNode(const QORContainerItem*, bool)"));
    EXPECT_DEATH(tree.removeNode(tree.nodeAt(0)),
                 diesOfTheInvariantIn("virtual QORContainerItem* QORLinkTree::removeNode(QORRBTreeNode*)"));
    EXPECT_DEATH(
        tree.findFirstElement(&tree.other),
        diesOfTheInvariantIn("virtual int QORLinkTree::findFirstElement(const QORContainerKey*) const"));
    EXPECT_DEATH(
        tree.findLastElement(&tree.other),
        diesOfTheInvariantIn("virtual int QORLinkTree::findLastElement(const QORContainerKey*) const"));
    EXPECT_DEATH(
        tree.findNextElement(&tree.other, 0),
        diesOfTheInvariantIn("virtual int QORLinkTree::findNextElement(const QORContainerKey*, int) const"));
    EXPECT_DEATH(tree.findPreviousElement(&tree.other, 0),
                 diesOfTheInvariantIn(
                     "virtual int QORLinkTree::findPreviousElement(const QORContainerKey*, int) const"));
    EXPECT_DEATH(tree.removeElement(0),
                 diesOfTheInvariantIn("virtual QORContainerItem* QORLinkTree::removeElement(int)"));
}

TEST(QORLinkTreeDeathTest, ChecksItsCursorOnTheWayOutOfAddNode) {
    LinkTreeProbe<QORLinkTree> tree;
    tree.position = 0; // right for an empty tree, whose first node is null, and wrong once it has one
    tree.current = nullptr;
    char const items[1] = {};
    EXPECT_EQ(tree.findNextElement(&items[0], 0), -1); // passes the check
    EXPECT_DEATH(
        tree.addNode(&items[0], true),
        diesOfTheInvariantIn("virtual QORRBTreeNode* QORLinkTree::addNode(const QORContainerItem*, bool)"));
}

TEST(QORLinkTreeDeathTest, LetsEachClauseOfTheInvariantPass) {
    char const items[3] = {};
    LinkTreeProbe<QORLinkTree> tree;
    tree.position = 0; // and the first node is null
    EXPECT_EQ(tree.findLastElement(&items[0]), -1);
    tree.position = tree.size - 1;
    EXPECT_EQ(tree.findLastElement(&items[0]), -1);
    for (char const& item : items)
        tree.add(&item, true, nullptr);
    tree.position = -1;
    tree.current = nullptr;
    EXPECT_EQ(tree.findPreviousElement(&items[1], 2), 1);
    tree.position = 2; // any node will do
    tree.current = tree._first;
    EXPECT_EQ(tree.findFirstElement(&items[1]), 1);
}

// ---- all classes ----

TYPED_TEST(LinkTreeClasses, AreSmall) {
    EXPECT_LE(sizeof(TypeParam), sizeof(void*) == 8 ? 64U : 32U);
}

TYPED_TEST(LinkTreeClasses, OwnNothing) {
    {
        TypeParam tree;
        this->fill(tree, 10);
        tree.empty();
        this->fill(tree, 10);
    }
    EXPECT_EQ(this->item(9)->getElementType(), ElementOf<TypeParam>::make("x")->getElementType());
}

TYPED_TEST(LinkTreeClasses, CopyTheirElementsWithAnUnsetCursor) {
    LinkTreeProbe<TypeParam> tree;
    this->fill(tree, 10);
    ASSERT_NE(tree[4], nullptr);
    LinkTreeProbe<TypeParam> copy(tree);
    EXPECT_EQ(copy.position, -1);
    EXPECT_EQ(copy.size, 10);
    EXPECT_EQ(this->itemsOf(copy), this->itemsOf(tree));
    EXPECT_TRUE(copy == tree);
    copy.addElement(this->item(15), true);
    EXPECT_EQ(tree.size, 10);
    EXPECT_TRUE(copy != tree);
    tree = copy;
    EXPECT_EQ(tree.position, -1);
    EXPECT_EQ(tree.size, 11);
    EXPECT_EQ(this->itemsOf(copy), this->itemsOf(tree));
    ASSERT_NE(tree[4], nullptr);
    static_cast<QORRBTree&>(tree) = TypeParam();
    EXPECT_EQ(tree.position, -1);
    EXPECT_EQ(tree.size, 0);
}

TYPED_TEST(LinkTreeClasses, LoseAndLeakNothingWhenAnAllocationFails) {
    LinkTreeProbe<TypeParam> tree;
    this->fill(tree, 10);
    ASSERT_NE(tree[4], nullptr);
    void const* const under = tree.current;
    auto const before = this->itemsOf(tree);
    QORObject* const added = this->item(12);
    long live = liveAllocations();
    int failures = failEachAllocation([&] { tree.add(added, true, nullptr); },
                                      [&] {
                                          EXPECT_EQ(liveAllocations(), live);
                                          EXPECT_EQ(this->itemsOf(tree), before);
                                          EXPECT_EQ(tree.size, 10);
                                          EXPECT_EQ(tree.position, 4);
                                          EXPECT_EQ(tree.current, under);
                                      });
    EXPECT_EQ(failures, allocationsOfANode);
    EXPECT_EQ(tree.size, 11);
    LinkTreeProbe<TypeParam> target;
    this->fill(target, 3);
    ASSERT_NE(target[1], nullptr);
    auto const ofTarget = this->itemsOf(target);
    live = liveAllocations();
    failures = failEachAllocation([&] { target = tree; },
                                  [&] {
                                      EXPECT_EQ(liveAllocations(), live);
                                      EXPECT_EQ(this->itemsOf(target), ofTarget);
                                      EXPECT_EQ(target.position, 1);
                                      EXPECT_NE(target[1], nullptr);
                                  });
    EXPECT_EQ(failures, 11 * allocationsOfANode);
    EXPECT_EQ(target.size, 11);
}

TYPED_TEST(LinkTreeClasses, AllocateNothingWhenElementsLeave) {
    LinkTreeProbe<TypeParam> tree;
    this->fill(tree, 20);
    typename TypeParam::Iterator iterator(tree, true);
    typename TypeParam::Iterator const witness(tree, true);
    QORObject* const item = this->item(11);
    auto const nothing = [](void*) {};
    long const before = madeAllocations();
    tree.rekeyNode(tree.nodeOfItem(item), nothing, nullptr);
    tree.remove(&iterator);
    tree.removeElement(7);
    removeItem(tree, item);
    tree.drainFirst();
    int const counted = tree.size;
    tree.empty();
    EXPECT_EQ(madeAllocations(), before);
    EXPECT_GE(counted, 17);
    EXPECT_EQ(tree.size, 0);
}

TYPED_TEST(LinkTreeClasses, DrainInTreeOrderWhileTheirSizeStays) {
    LinkTreeProbe<TypeParam> tree;
    this->fill(tree, 8);
    ASSERT_NE(tree[5], nullptr);
    for (void* item : this->itemsOf(tree)) {
        EXPECT_EQ(tree.drainFirst(), item);
        EXPECT_EQ(tree.size, 8);
        EXPECT_EQ(tree.position, -1);
    }
    EXPECT_EQ(tree.drainFirst(), nullptr);
    EXPECT_EQ(tree[0], nullptr);
    tree.endDraining();
    EXPECT_EQ(tree.size, 0);
}

TYPED_TEST(LinkTreeClasses, GiveTheirElementsToAnotherTreeWithoutAnyMemory) {
    LinkTreeProbe<TypeParam> from;
    LinkTreeProbe<TypeParam> to;
    this->fill(from, 12);
    to.add(this->item(15), true, nullptr);
    std::mt19937 random(31);
    long const before = madeAllocations();
    bool right = true;
    while (from.size > 0) {
        from[static_cast<int>(random() % static_cast<unsigned>(from.size))];
        to[static_cast<int>(random() % static_cast<unsigned>(to.size))];
        QORObject* const item = static_cast<QORObject*>(
            from.nodeAt(static_cast<int>(random() % static_cast<unsigned>(from.size)))->item);
        int const size = from.size;
        right &= to.adoptItem(from, item) != nullptr && from.size == size - 1 && to.size == 14 - size;
        right &= !to.adoptItem(from, item);
        right &= from.position == -1 || from.placeOf(from.current) == from.position;
        right &= to.position == -1 || to.placeOf(to.current) == to.position;
    }
    EXPECT_EQ(madeAllocations(), before);
    EXPECT_TRUE(right);
    LinkTreeProbe<TypeParam> expected;
    this->fill(expected, 12);
    expected.add(this->item(15), true, nullptr);
    EXPECT_EQ(this->itemsOf(to), this->itemsOf(expected));
    from.add(this->item(15), true, nullptr);
    EXPECT_FALSE(to.adoptItem(from, this->item(15)));
    EXPECT_EQ(from.size, 1);
    EXPECT_EQ(to.size, 13);
    EXPECT_EQ(from[0], this->item(15));
    for (int i : {12, 13, 14, 16, 17})
        from.add(this->item(i), true, nullptr);
    auto const kept = this->itemsOf(from);
    for (int place = 0; place < 6; ++place) {
        from[place];
        EXPECT_FALSE(to.adoptItem(from, this->item(15)));
        EXPECT_EQ(from.placeOf(from.current), from.position);
        EXPECT_EQ(this->itemsOf(from), kept);
    }
}

TEST(QORLinkTree, BehavesLikeASortedVectorOverManyRandomOperations) {
    std::vector<std::unique_ptr<QORObject>> objects;
    LinkTreeRules rules{[](QORObject const* a, QORObject const* b) { return addressOrder(a, b); },
                        [](QORObject const* item, void const* key) { return item == key; },
                        false,
                        {},
                        {}};
    for (int i = 0; i < 60; ++i) {
        objects.push_back(std::make_unique<QORObject>());
        rules.items.push_back(objects.back().get());
        rules.keys.push_back(objects.back().get());
    }
    for (unsigned seed : {2U, 22U})
        compareLinkTreeWithModel<QORLinkTree>(rules, seed, 20000);
}

TEST(QORLinkTree, KeepsItsIteratorsInStepOverManyRandomOperations) {
    compareIteratorsWithModel<QORLinkTree>([] { return std::make_unique<QORLinkTree>(); }, {true, false}, 13,
                                           20000);
}

// ---- places without a walk ----

/// Two trees of one class go through the same operations: one finds places by counts and may know its last
/// node, the other one is of a caller's class and walks.
template <class Tree>
class LinkTreePlaces : public LinkTreeClasses<Tree> {
protected:
    static constexpr int itemCount = 400;

    void SetUp() override {
        while (static_cast<int>(this->objects.size()) < itemCount)
            this->objects.push_back(ElementOf<Tree>::make(QORString(std::to_string(pick(250)).c_str())));
    }

    int pick(int below) { return static_cast<int>(random() % static_cast<unsigned>(below)); }
    QORObject* any() { return this->item(pick(itemCount)); }
    int anyPlace() { return pick(walking.size + 3) - 1; }

    void step(bool draining) {
        QORObject* const item = any();
        QORString const& name = item->getName();
        int const place = anyPlace();
        switch (pick(draining ? 9 : 12)) {
        case 0:
        case 1:
            ASSERT_EQ(counting[place], walking[place]);
            break;
        case 2:
            ASSERT_EQ(counting.findFirstElement(&name), walking.findFirstElement(&name));
            break;
        case 3:
            ASSERT_EQ(counting.findLastElement(&name), walking.findLastElement(&name));
            break;
        case 4:
            ASSERT_EQ(counting.findNextElement(&name, place), walking.findNextElement(&name, place));
            break;
        case 5:
            ASSERT_EQ(counting.findPreviousElement(&name, place), walking.findPreviousElement(&name, place));
            break;
        case 6:
            ASSERT_EQ(counting.containsElement(item), walking.containsElement(item));
            break;
        case 7:
            ASSERT_EQ(counting.removeElement(place), walking.removeElement(place));
            break;
        case 8:
            ASSERT_EQ(removeItem(counting, item), removeItem(walking, item));
            break;
        default:
            ASSERT_EQ(counting.addElement(item, true), walking.addElement(item, true));
        }
        ASSERT_EQ(counting.size, walking.size);
    }

    void expectSameItems() { ASSERT_EQ(this->itemsOf(counting), this->itemsOf(walking)); }

    std::mt19937 random{41};
    Tree counting;
    LinkTreeProbe<Tree> walking;
};
TYPED_TEST_SUITE(LinkTreePlaces, AllTrees);

TYPED_TEST(LinkTreePlaces, AreThoseOfAWalkOverManyRandomOperations) {
    for (int round = 0; round < 20 && !this->HasFatalFailure(); ++round) {
        SCOPED_TRACE(round);
        for (int i = 0; i < this->itemCount / 2; ++i) {
            QORObject* const item = this->any();
            ASSERT_EQ(this->counting.add(item, true, nullptr), this->walking.add(item, true, nullptr));
        }
        for (int i = 0; i < 300 && !this->HasFatalFailure(); ++i)
            this->step(false);
        this->expectSameItems();
        if (round % 3 == 0) {
            for (int i = 0; i < 60 && !this->HasFatalFailure(); ++i) {
                ASSERT_EQ(this->counting.drainFirst(), this->walking.drainFirst());
                this->step(true);
            }
            while (void* const item = this->walking.drainFirst())
                ASSERT_EQ(this->counting.drainFirst(), item);
            ASSERT_EQ(this->counting.drainFirst(), nullptr);
            this->counting.endDraining();
            this->walking.endDraining();
        } else if (round % 3 == 1) {
            this->counting.empty();
            this->walking.empty();
        }
        ASSERT_EQ(this->counting.size, this->walking.size);
    }
}

TYPED_TEST(LinkTreePlaces, SurviveNewKeysAndATakeover) {
    auto const nothing = [](void*) {};
    TypeParam other;
    LinkTreeProbe<TypeParam> otherWalking;
    for (QORObject* const item : {this->item(0), this->item(9), this->item(5)}) {
        other.add(item, true, nullptr);
        otherWalking.add(item, true, nullptr);
    }
    for (int i = 20; i < this->itemCount; ++i) {
        this->counting.add(this->item(i), true, nullptr);
        this->walking.add(this->item(i), true, nullptr);
    }
    for (int i = 0; i < 2000 && !this->HasFatalFailure(); ++i) {
        QORObject* const item = this->any();
        switch (this->pick(4)) {
        case 0:
            ASSERT_EQ(this->counting.rekeyNode(this->counting.nodeOfItem(item), nothing, nullptr),
                      this->walking.rekeyNode(this->walking.nodeOfItem(item), nothing, nullptr));
            break;
        case 1:
            ASSERT_EQ(this->counting.adoptItem(other, item) != nullptr,
                      this->walking.adoptItem(otherWalking, item) != nullptr);
            break;
        case 2:
            ASSERT_EQ(other.adoptItem(this->counting, item) != nullptr,
                      otherWalking.adoptItem(this->walking, item) != nullptr);
            break;
        default:
            this->step(false);
            int const place = this->pick(200);
            ASSERT_EQ(other[place], otherWalking[place]); // which makes it count, too
        }
        ASSERT_EQ(other.size, otherWalking.size);
    }
    this->expectSameItems();
    ASSERT_EQ(this->itemsOf(other), this->itemsOf(otherWalking));
}

TEST(QORLinkTree, KnowsNoLastElementAfterASearchHasLedThePositionBeforeTheFirst) {
    TypedObject const objects[] = {TypedObject("a"), TypedObject("b"), TypedObject("c"), TypedObject("d"),
                                   TypedObject("e")};
    for (bool const removes : {false, true}) {
        QORPtrLinkTree tree;
        for (TypedObject const& object : objects)
            ASSERT_NE(tree.addLinked(&object, false, true), nullptr);
        QORString const b("b");
        QORString const c("c");
        QORString const d("d");
        // Each match moves the position by one, however far it lies.
        ASSERT_EQ(tree.findNextElement(&d, 0), 1);
        ASSERT_EQ(tree.findPreviousElement(&c, 1), 0);
        if (removes)
            ASSERT_TRUE(removeItem(tree, &objects[0]));
        else
            ASSERT_EQ(tree.findPreviousElement(&b, 0), -1);
        TypedObject const* const more = objects + 5; // only its address is asked for
        ASSERT_NE(tree.addLinked(more, false, true), nullptr);
        int const size = tree.size;
        ASSERT_EQ(tree[size - 1], more);
        ASSERT_EQ(tree[size - 2], &objects[4]);
    }
}

TEST(QORLinkTree, AddsBehindItsLastElementAsAnywhereElse) {
    std::mt19937 random(43);
    auto const pick = [&](int below) { return static_cast<int>(random() % static_cast<unsigned>(below)); };
    char const items[500] = {};
    int refused = 0;
    for (int round = 0; round < 40; ++round) {
        QORPtrLinkTree knowing;
        QORPtrLinkTree plain;
        QORPtrLinkTree otherOfKnowing;
        QORPtrLinkTree otherOfPlain;
        for (int i = 0, next = 0; i < 600; ++i) {
            void const* const item = &items[pick(3) ? next++ % 500 : pick(500)];
            int const place = pick(plain.size + 1);
            int const last = plain.size - 1;
            switch (pick(12)) {
            case 0:
                ASSERT_EQ(removeItem(knowing, item), removeItem(plain, item));
                break;
            case 1:
                ASSERT_EQ(knowing.removeElement(last), plain.removeElement(last));
                break;
            case 2:
                ASSERT_EQ(knowing[place], plain[place]);
                break;
            case 3: // which leaves the cursor unset
                ASSERT_EQ(knowing.containsElement(&random), -1);
                ASSERT_EQ(plain.containsElement(&random), -1);
                break;
            case 4:
                ASSERT_EQ(knowing.addNode(item, true) == nullptr, plain.addNode(item, true) == nullptr);
                break;
            case 5:
                ASSERT_EQ(otherOfKnowing.adoptItem(knowing, item) == nullptr,
                          otherOfPlain.adoptItem(plain, item) == nullptr);
                break;
            case 6:
                ASSERT_EQ(knowing.adoptItem(otherOfKnowing, item) == nullptr,
                          plain.adoptItem(otherOfPlain, item) == nullptr);
                break;
            default: {
                QORRBTreeNode const* const made = knowing.addLinked(item, pick(2) == 0, true);
                QORRBTreeNode const* const expected = plain.addNode(item, true);
                ASSERT_EQ(made == nullptr, expected == nullptr);
                ASSERT_TRUE(!made || made->item == item);
                refused += made == nullptr;
            }
            }
            ASSERT_EQ(knowing.size, plain.size);
        }
        ASSERT_TRUE(knowing == plain);
        for (int i = 0; i < 20; ++i)
            ASSERT_EQ(knowing.drainFirst(), plain.drainFirst());
        knowing.endDraining();
        plain.endDraining();
        knowing.empty();
        ASSERT_NE(knowing.addLinked(&items[3], false, true), nullptr);
        ASSERT_NE(knowing.addLinked(&items[4], false, true), nullptr);
        ASSERT_EQ(knowing[1], &items[4]);
    }
    EXPECT_GT(refused, 100);
}

// ---- out of order ----

TYPED_TEST(NameSortedTrees, GiveElementsBackByIdentityWhereTheyAreOutOfOrder) {
    std::mt19937 random(17);
    auto const pick = [&](int below) { return std::uniform_int_distribution<int>(0, below - 1)(random); };
    auto const someName = [&] { return 'n' + std::to_string(pick(12)); };
    int removed = 0;
    for (int round = 0; round < 250 && !this->HasFatalFailure(); ++round) {
        SCOPED_TRACE(testing::Message() << "seed 17, round " << round);
        std::vector<std::unique_ptr<Renamable>> objects;
        LinkTreeProbe<TypeParam> tree;
        int const count = 1 + pick(40);
        for (int i = 0; i < count; ++i) {
            objects.push_back(std::make_unique<Renamable>('a' + std::to_string(i), someName()));
            ASSERT_TRUE(tree.add(objects.back().get(), true, nullptr));
        }
        Renamable stranger(someName(), "");
        std::vector<QORObject*> expected = objectsOf(tree);
        if (pick(2))
            tree[pick(count)];
        for (auto const& object : objects)
            if (pick(3))
                object->turn();
        while (!expected.empty()) {
            int const index = pick(static_cast<int>(expected.size()));
            QORObject* const item = expected[static_cast<std::size_t>(index)];
            switch (pick(6)) {
            case 0:
                ASSERT_EQ(tree.removeElement(index), item);
                break;
            case 1:
                ASSERT_EQ(tree.removeNode(tree.nodeAt(index)), item);
                break;
            case 2:
                ASSERT_EQ(tree[index], item);
                ASSERT_FALSE(removeItem(tree, &stranger)); // whatever shares its name
                ASSERT_EQ(objectsOf(tree), expected);
                expectCursorHolds(tree);
                continue;
            case 3: { // what is added lands somewhere, and nothing else moves
                objects.push_back(std::make_unique<Renamable>(someName(), someName()));
                QORObject* const added = objects.back().get();
                ASSERT_NE(tree.addNode(added, false), nullptr);
                expectCursorHolds(tree);
                std::vector<QORObject*> now = objectsOf(tree);
                auto const at = std::find(now.begin(), now.end(), added);
                ASSERT_NE(at, now.end());
                if (pick(3) == 0) {
                    expected = now;
                    continue;
                }
                now.erase(at);
                ASSERT_EQ(now, expected);
                ASSERT_TRUE(removeItem(tree, added));
                ASSERT_EQ(objectsOf(tree), expected);
                expectCursorHolds(tree);
                continue;
            }
            default:
                ASSERT_TRUE(removeItem(tree, item));
                ASSERT_FALSE(removeItem(tree, item));
            }
            ++removed;
            expected.erase(expected.begin() + index);
            ASSERT_EQ(objectsOf(tree), expected);
            ASSERT_EQ(tree.size, static_cast<int>(expected.size()));
            expectCursorHolds(tree);
        }
        ASSERT_EQ(tree.position, -1);
        ASSERT_EQ(tree.root, nullptr);
    }
    EXPECT_GT(removed, 2000);
}

TYPED_TEST(NameSortedTrees, TakeOutTheElementMeantAndNeverItsNamesake) {
    Renamable a("a", "same");
    Renamable b("b", "same");
    Renamable c("c", "same");
    for (Renamable* meant : {&a, &b, &c}) {
        LinkTreeProbe<TypeParam> tree;
        for (Renamable* each : {&a, &b, &c})
            ASSERT_TRUE(tree.add(each, true, nullptr));
        for (Renamable* each : {&a, &b, &c})
            each->turn();
        EXPECT_TRUE(removeItem(tree, meant));
        EXPECT_EQ(tree.size, 2);
        auto const left = objectsOf(tree);
        EXPECT_THAT(left, testing::Not(testing::Contains(meant)));
        EXPECT_FALSE(removeItem(tree, meant));
        EXPECT_EQ(tree.size, 2);
        for (Renamable* each : {&a, &b, &c})
            each->turn();
    }
}

TYPED_TEST(NameSortedTrees, SortAnElementAnewUnderItsNewName) {
    std::mt19937 random(19);
    auto const pick = [&](int below) { return std::uniform_int_distribution<int>(0, below - 1)(random); };
    auto const someName = [&] { return 'n' + std::to_string(pick(60)); };
    int refusals = 0;
    int successes = 0;
    for (int round = 0; round < 60 && !this->HasFatalFailure(); ++round) {
        SCOPED_TRACE(testing::Message() << "seed 19, round " << round);
        std::vector<std::unique_ptr<Renamable>> objects;
        LinkTreeProbe<TypeParam> tree;
        for (int i = 0; i < 30; ++i) {
            objects.push_back(std::make_unique<Renamable>(someName(), someName()));
            tree.add(objects.back().get(), true, nullptr);
        }
        for (int i = 0; i < 60; ++i) {
            if (pick(4))
                tree[pick(tree.size)];
            std::vector<QORObject*> const before = objectsOf(tree);
            auto* const renamed = static_cast<Renamable*>(before[static_cast<std::size_t>(pick(tree.size))]);
            typename TypeParam::Iterator iterator;
            tree.contains(renamed, &iterator);
            renamed->turns = 0;
            if (tree.rekeyNode(tree.nodeOfItem(renamed), &Renamable::turn, renamed)) {
                ASSERT_EQ(renamed->turns, 1);
                ++successes;
            } else {
                ASSERT_EQ(renamed->turns, 2); // the old name is back
                ASSERT_EQ(objectsOf(tree), before);
                ++refusals;
            }
            ASSERT_EQ(tree.size, static_cast<int>(before.size()));
            ASSERT_EQ(iterator.get(), renamed); // on the same node
            expectCursorHolds(tree);
            TypeParam sorted;
            for (QORObject* each : before)
                ASSERT_TRUE(sorted.add(each, true, nullptr));
            ASSERT_TRUE(sorted == tree);
            int place = 0;
            for (QORRBTreeNode* node = sorted.firstNode(); node; node = sorted.nextNode(node), ++place)
                ASSERT_EQ(tree.nodeAt(place)->item, node->item);
        }
    }
    EXPECT_GT(successes, 1000);
    Renamable outside("x", "y");
    TypeParam empty;
    EXPECT_TRUE(empty.rekeyNode(empty.nodeOfItem(&outside), &Renamable::turn, &outside));
    EXPECT_EQ(outside.turns, 1);
    EXPECT_EQ(empty.size, 0);
    constexpr bool namesMayBeShared = std::is_same_v<TypeParam, QORNamePtrLinkTree>;
    EXPECT_EQ(refusals == 0, namesMayBeShared);
}

TYPED_TEST(NameSortedTrees, PutAnElementBackWhereItWasWhenItsNewNameIsRefused) {
    if (std::is_same_v<TypeParam, QORNamePtrLinkTree>)
        return; // refuses no name
    Renamable a("a", "a");
    Renamable movedAway("b", "z");
    Renamable c("c", "a");
    Renamable d("d", "d");
    for (int cursor = -1; cursor < 4; ++cursor) {
        LinkTreeProbe<TypeParam> tree;
        for (Renamable* each : {&a, &movedAway, &c, &d})
            ASSERT_TRUE(tree.add(each, true, nullptr));
        movedAway.turn(); // "c" now stands behind "z"
        if (cursor >= 0) {
            ASSERT_NE(tree[cursor], nullptr);
        }
        EXPECT_FALSE(tree.rekeyNode(tree.nodeOfItem(&c), &Renamable::turn, &c));
        EXPECT_EQ(objectsOf(tree), (std::vector<QORObject*>{&a, &movedAway, &c, &d}));
        EXPECT_STREQ(c.getName().chars, "c");
        expectCursorHolds(tree);
        movedAway.turn();
    }
}

TYPED_TEST(NameSortedTrees, GoOnWalkingWhenAnElementOutOfOrderIsRemoved) {
    std::vector<std::unique_ptr<Renamable>> objects;
    LinkTreeProbe<TypeParam> tree;
    for (int i = 0; i < 30; ++i) {
        objects.push_back(std::make_unique<Renamable>('a' + std::to_string(i), 'z' + std::to_string(40 - i)));
        tree.add(objects.back().get(), true, nullptr);
    }
    std::vector<QORObject*> const expected = objectsOf(tree);
    for (std::size_t i = 0; i < 30; i += 2)
        objects[i]->turn();
    std::vector<QORObject*> walked;
    typename TypeParam::Iterator iterator(tree, true);
    for (void* item = iterator.get(); item; item = iterator.next(1)) {
        walked.push_back(static_cast<QORObject*>(item));
        EXPECT_TRUE(removeItem(tree, static_cast<QORObject*>(item)));
    }
    EXPECT_EQ(walked, expected);
    EXPECT_EQ(tree.size, 0);
}
