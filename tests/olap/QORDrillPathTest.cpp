#include "Expectations.h"

#include <qor/QORClassDiagram.h>
#include <qor/QORDesignPackage.h>
#include <qor/QORDrillPath.h>
#include <qor/QORDrillPathLevelAssociation.h>

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

} // namespace

TEST(QORDrillPath, BelongsToADesignPackage) {
    expectNamedAndOwned<QORDesignPackage, Path>(&QORDesignPackage::addModelElement, "DesignPackage",
                                                "ModelElement");
}

TEST(QORDrillPath, IsTakenApartInOrder) {
    expectTakenApart<Path>(linkEnds, {"step", "top", "bottom", "package", "diagram", "base"},
                           {"base", "diagram", "step", "top", "bottom"});
}
