#include <qor/QORTraversalDelete.h>
#include <qor/QORTraversalOperation.h>

#include <qor/QORArgument.h>
#include <qor/QORAssociation.h>
#include <qor/QORAssociationRole.h>
#include <qor/QORAttribute.h>
#include <qor/QORCandidateKey.h>
#include <qor/QORClass.h>
#include <qor/QORClassDiagram.h>
#include <qor/QORDatabaseSchema.h>
#include <qor/QORDerivedType.h>
#include <qor/QORDesignPackage.h>
#include <qor/QORGrouping.h>
#include <qor/QORIndex.h>
#include <qor/QORIndexMember.h>
#include <qor/QORMetadataOrigin.h>
#include <qor/QORModel.h>
#include <qor/QORNote.h>
#include <qor/QOROperation.h>
#include <qor/QORPropertyValue.h>
#include <qor/QORSetGeneralPointerOperation.h>
#include <qor/QORStoredProcedure.h>
#include <qor/QORSynonym.h>
#include <qor/QORTransformationActivity.h>
#include <qor/QORTransformationTask.h>

#include "AllocationControl.h"
#include "Graph.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

std::string titleOf(QORObject const* object) {
    return object->getName().chars;
}

/// Notes "+name" before and "-name" after an object's children.
class Logging : public QORTraversalOperation {
public:
    bool pre_process(QORObject* object, void*&) override {
        log.push_back("+" + titleOf(object));
        return true;
    }
    void post_process(QORObject* object, void*) override { log.push_back("-" + titleOf(object)); }

    Labels log;
};

/// The order in which a walk enters objects.
Labels entered(QORObject& root) {
    return namesOf(walkOf(root));
}

/// Two notes with the lower address first, whatever order the heap gives.
void addNotesInOrder(QORElement& element, char const* first, char const* second) {
    auto* low = new QORNote;
    auto* high = new QORNote;
    if (std::less<>()(high, low))
        std::swap(low, high);
    low->setName(first);
    high->setName(second);
    element.addNote(high);
    element.addNote(low);
}

} // namespace

TEST(QORTraversalOperation, DefaultsGoOnAndDoNothing) {
    QORTraversalOperation operation;
    QORObject object;
    int anything = 0;
    void* data = &anything;
    EXPECT_TRUE(operation.pre_process(&object, data));
    EXPECT_EQ(&anything, data);
    operation.post_process(&object, data);
    QORDesignPackage package;
    package.addNote(new QORNote);
    EXPECT_TRUE(package.depthTraversal(operation, nullptr));
    EXPECT_EQ(1, package.getNoteCount());
}

TEST(QORTraversal, TheRootHasNothingToFollow) {
    QORObject object;
    object.setName("o");
    Logging operation;
    EXPECT_TRUE(object.depthTraversal(operation, nullptr));
    EXPECT_EQ((Labels{"+o", "-o"}), operation.log);
    operation.log.clear();
    object._depthTraversal(operation, nullptr);
    EXPECT_TRUE(operation.log.empty());
}

TEST(QORTraversal, ChildrenAreProcessedBeforeTheirOwner) {
    QORDesignPackage root;
    root.setName("root");
    auto* const a = named<QORDesignPackage>("a");
    auto* const aa = named<QORDesignPackage>("aa");
    auto* const b = named<QORDesignPackage>("b");
    ASSERT_TRUE(root.addChildPackage(b));
    ASSERT_TRUE(root.addChildPackage(a));
    ASSERT_TRUE(a->addChildPackage(aa));
    Logging operation;
    EXPECT_TRUE(root.depthTraversal(operation, nullptr));
    EXPECT_EQ((Labels{"+root", "+a", "+aa", "-aa", "-a", "+b", "-b", "-root"}), operation.log);
}

TEST(QORTraversal, EndsAreFollowedFromTheRootClassDownInFieldOrder) {
    QORDesignPackage root;
    root.setName("root");
    root.addTransformationActivity(named<QORTransformationActivity>("activity"));
    root.addTransformationTask(named<QORTransformationTask>("task"));
    root.addStoredProcedure(named<QORStoredProcedure>("procedure"));
    root.addModelElement(named<QORClass>("class2"));
    root.addModelElement(named<QORClass>("class1"));
    root.addDiagram(named<QORClassDiagram>("diagram"));
    root.addChildPackage(named<QORDatabaseSchema>("schema"));
    root.addChildPackage(named<QORDesignPackage>("package"));
    root.addSynonym(named<QORSynonym>("synonym2"));
    root.addSynonym(named<QORSynonym>("synonym1"));
    root.addPropertyValue(new QORPropertyValue);
    root.addNote(named<QORNote>("note"));
    EXPECT_EQ((Labels{"root", "note", "", "synonym1", "synonym2", "package", "schema", "diagram", "class1",
                      "class2", "procedure", "task", "activity"}),
              entered(root));
}

TEST(QORTraversal, UnaryChildrenComeBeforeTheNaryOnesOfTheSameClass) {
    QORClass root;
    root.setName("class");
    root.addKey(named<QORCandidateKey>("key"));
    auto* const index = named<QORIndex>("index");
    root.addIndex(index);
    index->addIndexMember(named<QORIndexMember>("member"));
    root.addArgument(named<QORArgument>("argument"));
    auto* const operation = named<QOROperation>("operation");
    root.addOperation(operation);
    operation->addArgument(named<QORArgument>("b"));
    operation->addArgument(named<QORArgument>("a"));
    auto* const grouping = named<QORGrouping>("grouping");
    root.addGrouping(grouping);
    grouping->addChildGrouping(named<QORGrouping>("z"));
    grouping->addChildGrouping(named<QORGrouping>("y"));
    root.addFeature(named<QORAttribute>("feature2"));
    root.addFeature(named<QORAttribute>("feature1"));
    root.addSynonym(named<QORSynonym>("synonym"));
    root.addNote(named<QORNote>("note"));
    EXPECT_EQ((Labels{"class", "note", "synonym", "feature1", "feature2", "grouping", "z", "y", "operation",
                      "a", "b", "argument", "index", "member", "key"}),
              entered(root));
}

TEST(QORTraversal, ModelWalksItsPackagesBeforeItsOrigin) {
    QORModel model;
    model.setName("model");
    model.addType(named<QORDerivedType>("type"));
    model.addMetadataOrigin(named<QORMetadataOrigin>("origin"));
    model.addChildPackage(named<QORDesignPackage>("package"));
    EXPECT_EQ((Labels{"model", "package", "origin", "type"}), entered(model));
}

TEST(QORTraversal, NotesGoByTheirAddress) {
    QORDesignPackage root;
    root.setName("root");
    addNotesInOrder(root, "z", "a");
    EXPECT_EQ((Labels{"root", "z", "a"}), entered(root));
}

TEST(QORTraversal, OnlyOwnedObjectsAreFollowed) {
    QORDesignPackage root;
    root.setName("root");
    QORClass referred;
    referred.setName("referred");
    root.addImportedModelObject(&referred);
    QORClassDiagram diagram;
    root.addDefaultDiagram(&diagram);
    EXPECT_EQ(Labels{"root"}, entered(root));
    EXPECT_EQ(Labels{"referred"}, entered(referred));
    root.isolate(false);
}

TEST(QORTraversal, AClassQualifiedWalkGoesNoDeeperThanItsLevel) {
    QORDesignPackage root;
    root.setName("root");
    root.addNote(named<QORNote>("note"));
    root.addSynonym(named<QORSynonym>("synonym"));
    root.addChildPackage(named<QORDesignPackage>("package"));
    root.addModelElement(named<QORClass>("class"));
    Logging element;
    root.QORElement::_depthTraversal(element, nullptr);
    EXPECT_EQ((Labels{"+note", "-note"}), element.log);
    Logging modelObject;
    root.QORModelObject::_depthTraversal(modelObject, nullptr);
    EXPECT_EQ((Labels{"+note", "-note", "+synonym", "-synonym"}), modelObject.log);
    Logging package;
    root.QORPackage::_depthTraversal(package, nullptr);
    EXPECT_EQ((Labels{"+note", "-note", "+synonym", "-synonym", "+package", "-package"}), package.log);
    Logging nothing;
    root.QORObject::_depthTraversal(nothing, nullptr);
    EXPECT_TRUE(nothing.log.empty());
}

// ---- the data of a walk ---------------------------------------------------------------------------------

namespace {

/// Replaces the data by one more than it was; notes the value before and after the children.
class Depth : public QORTraversalOperation {
public:
    bool pre_process(QORObject* object, void*& data) override {
        data = reinterpret_cast<void*>(reinterpret_cast<std::intptr_t>(data) + 1);
        note('+', object, data);
        return true;
    }
    void post_process(QORObject* object, void* data) override { note('-', object, data); }

    Labels log;

private:
    void note(char sign, QORObject const* object, void* data) {
        log.push_back(sign + titleOf(object) + std::to_string(reinterpret_cast<std::intptr_t>(data)));
    }
};

} // namespace

TEST(QORTraversal, DataReplacedInPreProcessReachesThatSubtreeOnly) {
    QORDesignPackage root;
    root.setName("r");
    auto* const a = named<QORDesignPackage>("a");
    root.addChildPackage(a);
    root.addChildPackage(named<QORDesignPackage>("b"));
    a->addChildPackage(named<QORDesignPackage>("c"));
    a->addNote(named<QORNote>("n"));
    Depth operation;
    root.depthTraversal(operation, nullptr);
    EXPECT_EQ((Labels{"+r1", "+a2", "+n3", "-n3", "+c3", "-c3", "-a2", "+b2", "-b2", "-r1"}), operation.log);
}

TEST(QORTraversal, TheCallersDataStaysAsItWas) {
    QORDesignPackage root;
    Depth operation;
    void* data = nullptr;
    root.depthTraversal(operation, data);
    EXPECT_EQ(nullptr, data);
}

// ---- cutting off ----------------------------------------------------------------------------------------

namespace {

class CuttingOff : public Logging {
public:
    explicit CuttingOff(char const* at) : title(at) {}
    bool pre_process(QORObject* object, void*& data) override {
        Logging::pre_process(object, data);
        return titleOf(object) != title;
    }

private:
    std::string title;
};

} // namespace

TEST(QORTraversal, FalseCutsOffTheSubtreeAndTheObjectsOwnPostProcess) {
    QORDesignPackage root;
    root.setName("root");
    auto* const a = named<QORDesignPackage>("a");
    root.addChildPackage(a);
    a->addChildPackage(named<QORDesignPackage>("below"));
    root.addChildPackage(named<QORDesignPackage>("b"));
    CuttingOff operation("a");
    EXPECT_TRUE(root.depthTraversal(operation, nullptr));
    EXPECT_EQ((Labels{"+root", "+a", "+b", "-b", "-root"}), operation.log);
}

TEST(QORTraversal, FalseAtTheTopEndsTheWalkWithFalse) {
    QORDesignPackage root;
    root.setName("root");
    root.addChildPackage(named<QORDesignPackage>("a"));
    CuttingOff operation("root");
    EXPECT_FALSE(root.depthTraversal(operation, nullptr));
    EXPECT_EQ(Labels{"+root"}, operation.log);
}

TEST(QORTraversal, FalseAtALeafSkipsItsPostProcess) {
    QORClass root;
    root.setName("root");
    root.addFeature(named<QORAttribute>("a"));
    root.addFeature(named<QORAttribute>("b"));
    CuttingOff operation("a");
    root.depthTraversal(operation, nullptr);
    EXPECT_EQ((Labels{"+root", "+a", "+b", "-b", "-root"}), operation.log);
}

// ---- exceptions -----------------------------------------------------------------------------------------

namespace {

class Throwing : public QORTraversalOperation {
public:
    explicit Throwing(int spared) : left(spared) {}
    bool pre_process(QORObject*, void*&) override {
        step();
        return true;
    }
    void post_process(QORObject*, void*) override { step(); }

private:
    void step() {
        if (left-- == 0)
            throw std::string("from the operation");
    }
    int left;
};

std::unique_ptr<QORDesignPackage> smallGraph() {
    std::unique_ptr<QORDesignPackage> root(named<QORDesignPackage>("root"));
    auto* const a = named<QORDesignPackage>("a");
    root->addChildPackage(a);
    a->addNote(named<QORNote>("n"));
    a->addModelElement(named<QORClass>("class"));
    auto* const association = named<QORAssociation>("association");
    a->addModelElement(association);
    association->addAssociationRole(named<QORAssociationRole>("r1"));
    association->addAssociationRole(named<QORAssociationRole>("r2"));
    root->addChildPackage(named<QORDesignPackage>("b"));
    return root;
}

} // namespace

TEST(QORTraversal, AnExceptionAtAnyStepArrivesAndLeavesEverythingUsable) {
    auto const root = smallGraph();
    Labels const whole = entered(*root);
    ASSERT_EQ(8U, whole.size());
    int const steps = 16;
    for (int spared = 0; spared < steps; ++spared) {
        long const before = liveAllocations();
        try {
            Throwing operation(spared);
            root->depthTraversal(operation, nullptr);
            FAIL() << spared;
        } catch (std::string const& thrown) {
            EXPECT_EQ("from the operation", thrown);
        }
        EXPECT_EQ(before, liveAllocations()) << spared;
        EXPECT_EQ(whole, entered(*root)) << spared;
    }
    Throwing enough(steps);
    EXPECT_TRUE(root->depthTraversal(enough, nullptr));
}

TEST(QORTraversal, ContainersThatAWalkLeftByAnExceptionCanStillBeChanged) {
    auto const root = smallGraph();
    Throwing operation(5);
    EXPECT_THROW(root->depthTraversal(operation, nullptr), std::string);
    delete root->getChildPackage(0);
    EXPECT_EQ((Labels{"root", "b"}), entered(*root));
    EXPECT_TRUE(root->removeChildPackage("b", nullptr));
    EXPECT_EQ(Labels{"root"}, entered(*root));
}

// ---- deleting while walking -----------------------------------------------------------------------------

namespace {

/// Calls a function on each object, before or after its children.
class Calling : public Logging {
public:
    using Function = std::function<void(QORObject*)>;
    Calling(Function before, Function after) : pre(std::move(before)), post(std::move(after)) {}
    bool pre_process(QORObject* object, void*& data) override {
        Logging::pre_process(object, data);
        if (pre)
            pre(object);
        return true;
    }
    void post_process(QORObject* object, void* data) override {
        Logging::post_process(object, data);
        if (post)
            post(object);
    }

private:
    Function pre;
    Function post;
};

/// The three shapes of end that children hang on: a tree by name, a tree by address, a vector.
class EndWalk : public ::testing::TestWithParam<char const*> {
protected:
    void SetUp() override {
        std::string const shape = GetParam();
        children.clear();
        if (shape == "treeByName") {
            auto* const package = new QORDesignPackage;
            for (char const* title : {"a", "b", "c", "d"}) {
                children.push_back(named<QORDesignPackage>(title));
                package->addChildPackage(static_cast<QORDesignPackage*>(children.back()));
            }
            owner.reset(package);
        } else if (shape == "treeByAddress") {
            auto* const note = new QORDesignPackage;
            for (int i = 0; i < 4; ++i)
                children.push_back(new QORNote);
            std::sort(children.begin(), children.end(), std::less<>());
            char const* const titles[] = {"a", "b", "c", "d"};
            for (std::size_t i = 0; i < 4; ++i) {
                children[i]->setName(titles[i]);
                note->addNote(static_cast<QORNote*>(children[i]));
            }
            owner.reset(note);
        } else {
            auto* const grouping = new QORGrouping;
            for (char const* title : {"a", "b", "c", "d"}) {
                children.push_back(named<QORGrouping>(title));
                grouping->addChildGrouping(static_cast<QORGrouping*>(children.back()));
            }
            owner.reset(grouping);
        }
        owner->setName("owner");
    }

    void kill(std::size_t which) {
        delete children[which];
        children[which] = nullptr;
    }

    std::unique_ptr<QORObject> owner;
    std::vector<QORObject*> children;
};

} // namespace

TEST_P(EndWalk, GoesOnWhenTheCurrentElementIsDeletedAfterwards) {
    for (std::size_t victim = 0; victim < 4; ++victim) {
        SetUp();
        Calling operation(nullptr, [&](QORObject* object) {
            if (object == children[victim])
                kill(victim);
        });
        owner->depthTraversal(operation, nullptr);
        EXPECT_EQ((Labels{"+owner", "+a", "-a", "+b", "-b", "+c", "-c", "+d", "-d", "-owner"}), operation.log)
            << victim;
        EXPECT_EQ(4U, entered(*owner).size());
    }
}

TEST_P(EndWalk, GoesOnWhenEachElementIsDeletedAfterwards) {
    Calling operation(nullptr, [&](QORObject* object) {
        if (object != owner.get())
            delete object;
    });
    owner->depthTraversal(operation, nullptr);
    EXPECT_EQ((Labels{"+owner", "+a", "-a", "+b", "-b", "+c", "-c", "+d", "-d", "-owner"}), operation.log);
    EXPECT_EQ(Labels{"owner"}, entered(*owner));
    EXPECT_FALSE(owner->isReferenced());
}

TEST_P(EndWalk, ADeletedNextSiblingIsNotVisited) {
    for (bool const before : {true, false}) {
        SetUp();
        auto const act = [&](QORObject* object) {
            if (object == children[1])
                kill(2);
        };
        Calling operation(before ? Calling::Function(act) : nullptr,
                          before ? nullptr : Calling::Function(act));
        owner->depthTraversal(operation, nullptr);
        EXPECT_EQ((Labels{"+owner", "+a", "-a", "+b", "-b", "+d", "-d", "-owner"}), operation.log);
    }
}

TEST_P(EndWalk, DeletedPreviousSiblingsDoNotDisturbTheWalk) {
    Calling operation(
        [&](QORObject* object) {
            if (object == children[2]) {
                kill(0);
                kill(1);
            }
        },
        nullptr);
    owner->depthTraversal(operation, nullptr);
    EXPECT_EQ((Labels{"+owner", "+a", "-a", "+b", "-b", "+c", "-c", "+d", "-d", "-owner"}), operation.log);
}

TEST_P(EndWalk, AllSiblingsMayGoWhileOneIsWalked) {
    Calling operation(
        [&](QORObject* object) {
            if (object == children[1]) {
                kill(0);
                kill(3);
                kill(2);
            }
        },
        nullptr);
    owner->depthTraversal(operation, nullptr);
    EXPECT_EQ((Labels{"+owner", "+a", "-a", "+b", "-b", "-owner"}), operation.log);
    EXPECT_EQ((Labels{"owner", "b"}), entered(*owner));
}

TEST_P(EndWalk, TheCurrentAndAllFollowingMayGo) {
    Calling operation(nullptr, [&](QORObject* object) {
        if (object == children[1])
            for (std::size_t const which : {3U, 2U, 1U})
                kill(which);
    });
    owner->depthTraversal(operation, nullptr);
    EXPECT_EQ((Labels{"+owner", "+a", "-a", "+b", "-b", "-owner"}), operation.log);
    EXPECT_EQ((Labels{"owner", "a"}), entered(*owner));
}

TEST_P(EndWalk, TheCurrentAndItsNextSiblingMayGoTogether) {
    Calling operation(nullptr, [&](QORObject* object) {
        if (object == children[1]) {
            kill(1);
            kill(2);
        }
    });
    owner->depthTraversal(operation, nullptr);
    EXPECT_EQ((Labels{"+owner", "+a", "-a", "+b", "-b", "+d", "-d", "-owner"}), operation.log);
}

// ---- renaming while walking: the walk goes on behind the object's new place ----

namespace {

/// The order in which objects are entered, by their names at first, while `act` runs before or after each
/// visit.
Labels enteredWhile(QORObject& owner, Calling::Function const& act, bool before) {
    Calling operation(before ? act : nullptr, before ? nullptr : act);
    owner.depthTraversal(operation, nullptr);
    Labels names;
    for (std::string const& event : operation.log)
        if (event[0] == '+')
            names.push_back(event.substr(1));
    return names;
}

} // namespace

TEST_P(EndWalk, AVisitedObjectThatIsRenamedToALaterPlaceTakesTheWalkThere) {
    for (bool const before : {true, false}) {
        SetUp();
        auto const rename = [&](QORObject* object) {
            if (object == children[1] && titleOf(object) == "b")
                object->setName("c1");
        };
        Labels const expected = GetParam() == std::string("treeByName") ? Labels{"owner", "a", "b", "d"}
                                : GetParam() == std::string("vector")
                                    ? Labels{"owner", "a", "b", "c", "d", "c1"}
                                    : Labels{"owner", "a", "b", "c", "d"};
        EXPECT_EQ(expected, enteredWhile(*owner, rename, before));
    }
}

TEST_P(EndWalk, AVisitedObjectThatIsRenamedToAnEarlierPlaceTakesTheWalkBack) {
    for (bool const before : {true, false}) {
        SetUp();
        auto const rename = [&](QORObject* object) {
            if (object == children[2] && titleOf(object) == "c")
                object->setName("a1");
        };
        Labels const expected =
            GetParam() == std::string("treeByName") ? Labels{"owner", "a", "b", "c", "b", "d"}
            : GetParam() == std::string("vector")   ? Labels{"owner", "a", "b", "c", "d", "a1"}
                                                    : Labels{"owner", "a", "b", "c", "d"};
        EXPECT_EQ(expected, enteredWhile(*owner, rename, before));
    }
}

TEST_P(EndWalk, ASiblingThatIsRenamedIsVisitedAtItsNewPlaceIfThatLiesAhead) {
    auto const rename = [&](QORObject* object) {
        if (object != children[1] || titleOf(children[0]) != "a")
            return;
        children[0]->setName("e"); // visited before, and now ahead
        children[3]->setName("0"); // not yet visited, and now behind
    };
    Labels const expected = GetParam() == std::string("treeByName") ? Labels{"owner", "a", "b", "c", "e"}
                            : GetParam() == std::string("vector")   ? Labels{"owner", "a", "b", "c", "e", "0"}
                                                                    : Labels{"owner", "a", "b", "c", "0"};
    EXPECT_EQ(expected, enteredWhile(*owner, rename, true));
}

INSTANTIATE_TEST_SUITE_P(Ends, EndWalk, ::testing::Values("treeByName", "treeByAddress", "vector"),
                         [](auto const& each) { return std::string(each.param); });

TEST(QORTraversal, ObjectsAddedBehindTheCurrentOneAreVisited) {
    QORDesignPackage root;
    root.setName("root");
    root.addChildPackage(named<QORDesignPackage>("a"));
    Calling operation(
        [&](QORObject* object) {
            if (titleOf(object) == "a")
                root.addChildPackage(named<QORDesignPackage>("b"));
        },
        nullptr);
    root.depthTraversal(operation, nullptr);
    EXPECT_EQ((Labels{"+root", "+a", "-a", "+b", "-b", "-root"}), operation.log);
}

TEST(QORTraversal, ChildrenAddedInPreProcessAreVisited) {
    QORDesignPackage root;
    root.setName("root");
    root.addChildPackage(named<QORDesignPackage>("a"));
    Calling operation(
        [&](QORObject* object) {
            if (titleOf(object) == "a")
                static_cast<QORDesignPackage*>(object)->addNote(named<QORNote>("n"));
        },
        nullptr);
    root.depthTraversal(operation, nullptr);
    EXPECT_EQ((Labels{"+root", "+a", "+n", "-n", "-a", "-root"}), operation.log);
}

TEST(QORTraversal, AUnaryChildMayDeleteItselfWhileWalked) {
    QORClass root;
    root.setName("class");
    root.addGrouping(named<QORGrouping>("grouping"));
    root.addOperation(named<QOROperation>("operation"));
    Calling operation(nullptr, [&](QORObject* object) {
        if (titleOf(object) == "grouping")
            delete object;
    });
    root.depthTraversal(operation, nullptr);
    EXPECT_EQ((Labels{"+class", "+grouping", "-grouping", "+operation", "-operation", "-class"}),
              operation.log);
    EXPECT_EQ(nullptr, root.getGrouping());
}

// ---- walks within walks ---------------------------------------------------------------------------------

TEST(QORTraversal, AnOperationMayWalkTheSameGraphItself) {
    auto const root = smallGraph();
    std::size_t visited = 0;
    Calling operation(nullptr, [&](QORObject*) { visited += entered(*root).size(); });
    root->depthTraversal(operation, nullptr);
    EXPECT_EQ(64U, visited);
}

// ---- QORTraversalDelete ---------------------------------------------------------------------------------

TEST(QORTraversalDelete, DeletesEverythingBelowTheRootPassedAsData) {
    Graph graph;
    QORDesignPackage root;
    auto* const a = graph.mortal<QORDesignPackage>("a");
    root.addChildPackage(a);
    a->addChildPackage(graph.mortal<QORDesignPackage>("aa"));
    a->addNote(graph.mortal<QORNote>("n"));
    root.addChildPackage(graph.mortal<QORDesignPackage>("b"));
    QORTraversalDelete operation;
    root.depthTraversal(operation, &root);
    EXPECT_EQ((Labels{"n", "aa", "a", "b"}), graph.deaths);
    EXPECT_FALSE(root.isReferenced());
}

TEST(QORTraversalDelete, WithOtherDataDeletesTheRootAsWell) {
    Graph graph;
    auto* const root = graph.mortal<QORDesignPackage>("root");
    root->addChildPackage(graph.mortal<QORDesignPackage>("a"));
    QORTraversalDelete operation;
    root->depthTraversal(operation, nullptr);
    EXPECT_EQ((Labels{"a", "root"}), graph.deaths);
}

TEST(QORTraversalDelete, NullObjectIsLeftAlone) {
    QORTraversalDelete operation;
    operation.post_process(nullptr, nullptr);
    int other = 0;
    operation.post_process(nullptr, &other);
    QORObject object;
    operation.post_process(&object, &object);
    EXPECT_EQ(0, object.getID());
}

TEST(QORTraversalDelete, DeletesWholeGraphsOfLibraryClasses) {
    auto const root = smallGraph();
    QORTraversalDelete operation;
    root->depthTraversal(operation, root.get());
    EXPECT_EQ(0, root->getChildPackageCount());
    EXPECT_FALSE(root->isReferenced());
}

TEST(QORTraversalDelete, ClearsReferencesIntoTheDeletedPart) {
    auto const root = smallGraph();
    auto* const package = static_cast<QORDesignPackage*>(root->getChildPackage(0));
    QORDesignPackage outside;
    outside.addNote(new QORNote);
    ASSERT_TRUE(outside.addImportedModelObject(package->getModelElement(0)));
    QORTraversalDelete operation;
    root->depthTraversal(operation, root.get());
    EXPECT_EQ(0, outside.getImportedModelObjectCount());
}

// ---- QORSetGeneralPointerOperation ----------------------------------------------------------------------

TEST(QORSetGeneralPointerOperation, SetsThePointerOfTheWholeOwnedGraphWhateverTheData) {
    auto const root = smallGraph();
    QORClass outside;
    root->addImportedModelObject(&outside);
    int target = 0;
    QORSetGeneralPointerOperation operation(&target);
    root->depthTraversal(operation, root.get());
    int seen = 0;
    Calling check(nullptr, [&](QORObject* object) {
        ++seen;
        EXPECT_EQ(&target, object->generalPointer) << titleOf(object);
    });
    root->depthTraversal(check, nullptr);
    EXPECT_EQ(8, seen);
    EXPECT_EQ(nullptr, outside.generalPointer);
    QORSetGeneralPointerOperation clear(nullptr);
    root->depthTraversal(clear, nullptr);
    EXPECT_EQ(nullptr, root->generalPointer);
}

// ---- classes of a caller --------------------------------------------------------------------------------

namespace {

/// Hides what it owns from walks.
class Opaque : public QORDesignPackage {
public:
    void _depthTraversal(QORTraversalOperation&, void*) override {}
};

/// Shows an object that it doesn't own first.
class Showing : public QORDesignPackage {
public:
    explicit Showing(QORObject& guest) : shown(guest) {}
    void _depthTraversal(QORTraversalOperation& operation, void* data) override {
        shown.depthTraversal(operation, data);
        QORDesignPackage::_depthTraversal(operation, data);
    }

private:
    QORObject& shown;
};

/// Answers walks in its own way.
class Twice : public QORDesignPackage {
public:
    bool depthTraversal(QORTraversalOperation& operation, void* data) override {
        QORDesignPackage::depthTraversal(operation, data);
        return QORDesignPackage::depthTraversal(operation, data);
    }
};

} // namespace

TEST(QORTraversal, ACallersClassMayHideWhatItOwns) {
    QORDesignPackage root;
    root.setName("root");
    auto* const opaque = new Opaque;
    opaque->setName("opaque");
    opaque->addChildPackage(named<QORDesignPackage>("hidden"));
    root.addChildPackage(opaque);
    EXPECT_EQ((Labels{"root", "opaque"}), entered(root));
    EXPECT_EQ(Labels{"opaque"}, entered(*opaque));
}

TEST(QORTraversal, ACallersClassMayShowMore) {
    QORDesignPackage guest;
    guest.setName("guest");
    QORDesignPackage root;
    root.setName("root");
    auto* const showing = new Showing(guest);
    showing->setName("showing");
    showing->addChildPackage(named<QORDesignPackage>("own"));
    root.addChildPackage(showing);
    Depth operation;
    root.depthTraversal(operation, nullptr);
    EXPECT_EQ((Labels{"+root1", "+showing2", "+guest3", "-guest3", "+own3", "-own3", "-showing2", "-root1"}),
              operation.log);
}

TEST(QORTraversal, ACallersDepthTraversalIsCalledByItsOwnersWalk) {
    QORDesignPackage root;
    root.setName("root");
    auto* const twice = new Twice;
    twice->setName("t");
    twice->addChildPackage(named<QORDesignPackage>("c"));
    root.addChildPackage(twice);
    root.addChildPackage(named<QORDesignPackage>("u"));
    EXPECT_EQ((Labels{"root", "t", "c", "t", "c", "u"}), entered(root));
}

TEST(QORTraversal, ExceptionsPassThroughCallersClasses) {
    QORDesignPackage root;
    auto* const twice = new Twice;
    twice->addChildPackage(named<QORDesignPackage>("c"));
    root.addChildPackage(twice);
    Throwing operation(5);
    EXPECT_THROW(root.depthTraversal(operation, nullptr), std::string);
    Throwing enough(10);
    EXPECT_TRUE(root.depthTraversal(enough, nullptr));
}
