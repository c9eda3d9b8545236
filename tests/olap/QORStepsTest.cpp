#include "Graph.h"

#include <qor/QORDrillPath.h>
#include <qor/QORDrillPathLevelAssociation.h>
#include <qor/QORHierarchy.h>
#include <qor/QORHierarchyLevelAssociation.h>
#include <qor/QORLevel.h>
#include <qor/QORNote.h>

namespace {

struct OfHierarchies {
    using Owner = QORHierarchy;
    using Step = QORHierarchyLevelAssociation;
    static constexpr auto add = &Owner::addHierarchyLevelAssociation;
    static constexpr auto addTop = &Owner::addTopHierarchyLevelAssociation;
    static constexpr auto addBottom = &Owner::addBottomHierarchyLevelAssociation;
    static constexpr bool (Owner::*unlink)(Step*) = &Owner::removeHierarchyLevelAssociation;
};
struct OfDrillPaths {
    using Owner = QORDrillPath;
    using Step = QORDrillPathLevelAssociation;
    static constexpr auto add = &Owner::addDrillPathLevelAssociation;
    static constexpr auto addTop = &Owner::addTopDrillPathLevelAssociation;
    static constexpr auto addBottom = &Owner::addBottomDrillPathLevelAssociation;
    static constexpr bool (Owner::*unlink)(Step*) = &Owner::removeDrillPathLevelAssociation;
};

/// The steps of hierarchies and of drill paths.
template <class Ends>
class QORSteps : public testing::Test, protected Ends {
protected:
    using Step = typename Ends::Step;

    Graph graph;
    typename Ends::Owner* const owner = graph.make<typename Ends::Owner>("O");

    bool add(Step* step) { return (owner->*Ends::add)(step); }
    bool addTop(Step* step) { return (owner->*Ends::addTop)(step); }
    bool addBottom(Step* step) { return (owner->*Ends::addBottom)(step); }
    bool unlink(Step* step) { return (owner->*Ends::unlink)(step); }
    Step* made(char const* name = "") { return graph.make<Step>(name); }
    Step* mortal(char const* label, char const* name) { return graph.mortal<Step>(label, name); }
};
using Kinds = testing::Types<OfHierarchies, OfDrillPaths>;
TYPED_TEST_SUITE(QORSteps, Kinds);

} // namespace

TYPED_TEST(QORSteps, ShowTheirOwnerAndLevelAndNotTheirName) {
    auto* const step = this->made("X");
    EXPECT_EQ(step->getDisplayName(), "");
    ASSERT_TRUE(this->add(step));
    EXPECT_EQ(step->getDisplayName(), "O_");
    ASSERT_TRUE(step->addLevel(this->graph.template make<QORLevel>("L")));
    EXPECT_EQ(step->getDisplayName(), "O_L");
    ASSERT_TRUE(this->unlink(step));
    EXPECT_EQ(step->getDisplayName(), "L");
    ASSERT_TRUE(this->addTop(step) && this->addBottom(step));
    EXPECT_EQ(step->getDisplayName(), "L");
}

TYPED_TEST(QORSteps, AreReencodedOnceBehindTheNotesOfTheirOwner) {
    ASSERT_TRUE(this->add(this->mortal("first", inUtf8)) && this->add(this->mortal("second", inUtf8)) &&
                this->addTop(this->mortal("top", "")) &&
                this->owner->addNote(this->graph.template mortal<QORNote>("note")));
    this->owner->setName(inUtf8);
    Recoding recode;
    recode(*this->owner);
    EXPECT_EQ(this->graph.recodings, (Labels{"note", "first", "second"}));
    EXPECT_EQ(recode.converted, 4);
    EXPECT_EQ(this->owner->getName(), inLatin1);
}

TYPED_TEST(QORSteps, AreWalkedBehindTheNotesOfTheirOwnerAndReachNoLevel) {
    auto* const first = this->made("B");
    auto* const second = this->made("A");
    auto* const note = this->graph.template make<QORNote>();
    ASSERT_TRUE(this->add(first) && this->add(second) && this->owner->addNote(note) &&
                first->addLevel(this->graph.template make<QORLevel>()) && this->addTop(this->made()));
    EXPECT_EQ(walkOf(*this->owner), (Objects{this->owner, note, first, second}));
}
