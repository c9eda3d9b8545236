#include "Expectations.h"

#include <qor/QORClassDiagram.h>
#include <qor/QORDesignPackage.h>
#include <qor/QORDrillPath.h>
#include <qor/QORDrillPathLevelAssociation.h>
#include <qor/QORDrillPathLevelAssociationByPosition.h>
#include <qor/QORLevel.h>
#include <qor/QORNote.h>

namespace {

using Path = QORDrillPath;
using Step = QORDrillPathLevelAssociation;

void linkEnds(Graph& graph, Path& path, Owners owners) {
    linkBase(graph, path);
    ASSERT_TRUE(path.addDiagram(graph.mortal<QORClassDiagram>("diagram")));
    ASSERT_TRUE(path.addDrillPathLevelAssociation(graph.mortal<Step>("step")));
    ASSERT_TRUE(path.addTopDrillPathLevelAssociation(graph.mortal<Step>("top")));
    ASSERT_TRUE(path.addBottomDrillPathLevelAssociation(graph.mortal<Step>("bottom")));
    linkOwner(graph, owners, "package", path, &Path::addDesignPackage);
}

Step* stepOf(Graph& graph, Path& path, char const* name, short position = 0) {
    auto* const step = graph.make<Step>(name);
    step->setPosition(position);
    EXPECT_TRUE(path.addDrillPathLevelAssociation(step));
    return step;
}

} // namespace

TEST(QORDrillPath, BelongsToADesignPackage) {
    expectNamedAndOwned<QORDesignPackage, Path>(&QORDesignPackage::addModelElement, "DesignPackage",
                                                "ModelElement");
}

TEST(QORDrillPath, HasAnyNumberOfTopsAndBottoms) {
    Graph graph;
    auto* const path = graph.make<Path>();
    auto* const first = graph.make<Step>();
    auto* const second = graph.make<Step>();
    EXPECT_TRUE(path->addTopDrillPathLevelAssociation(first));
    EXPECT_TRUE(second->addTopOfDrillPath(path));
    EXPECT_TRUE(path->addBottomDrillPathLevelAssociation(first));
    EXPECT_TRUE(second->addBottomOfDrillPath(path));
    EXPECT_EQ(path->getTopDrillPathLevelAssociationCount(), 2);
    EXPECT_EQ(path->getBottomDrillPathLevelAssociationCount(), 2);
    EXPECT_FALSE(graph.make<Path>()->addTopDrillPathLevelAssociation(first));
    EXPECT_EQ(path->getDrillPathLevelAssociationCount(), 0);
}

TEST(QORDrillPath, KeepsItsStepsInTheOrderOfAddingAndReadsThemByPosition) {
    Graph graph;
    auto* const path = graph.make<Path>();
    auto* const last = stepOf(graph, *path, "A", 3);
    auto* const second = stepOf(graph, *path, "C", 1);
    auto* const first = stepOf(graph, *path, "B", 1);
    EXPECT_EQ(listOf(3, [&](int i) { return path->getDrillPathLevelAssociation(i); }),
              (std::vector<Step*>{last, second, first}));
    QORDrillPathLevelAssociationByPosition view;
    ASSERT_TRUE(view.add(graph.make<Step>(), false, nullptr));
    path->getDrillPathLevelAssociationByPosition(view);
    EXPECT_EQ(listOf(view), (Objects{first, second, last}));
    Path().getDrillPathLevelAssociationByPosition(view);
    EXPECT_EQ(view.size, 0);
}

TEST(QORDrillPath, IsTakenApartInOrder) {
    expectTakenApart<Path>(linkEnds, {"step", "top", "bottom", "package", "diagram", "base"},
                           {"base", "diagram", "step", "top", "bottom"});
}

TEST(QORDrillPath, ReencodesNotesBeforeStepsAndEachStepOnce) {
    Graph graph;
    auto* const path = graph.make<Path>(inUtf8);
    ASSERT_TRUE(path->addDrillPathLevelAssociation(graph.mortal<Step>("first", inUtf8)) &&
                path->addDrillPathLevelAssociation(graph.mortal<Step>("second", inUtf8)) &&
                path->addTopDrillPathLevelAssociation(graph.mortal<Step>("top")) &&
                path->addNote(graph.mortal<QORNote>("note")));
    Recoding recode;
    recode(*path);
    EXPECT_EQ(graph.recodings, (Labels{"note", "first", "second"}));
    EXPECT_EQ(recode.converted, 4);
    EXPECT_EQ(path->getName(), inLatin1);
}

TEST(QORDrillPath, IsWalkedWithNotesBeforeStepsAndReachesNoLevel) {
    Graph graph;
    auto* const path = graph.make<Path>();
    auto* const first = stepOf(graph, *path, "B");
    auto* const second = stepOf(graph, *path, "A");
    auto* const note = graph.make<QORNote>();
    ASSERT_TRUE(path->addNote(note) && first->addLevel(graph.make<QORLevel>()) &&
                path->addTopDrillPathLevelAssociation(graph.make<Step>()));
    EXPECT_EQ(walkOf(*path), (Objects{path, note, first, second}));
}
