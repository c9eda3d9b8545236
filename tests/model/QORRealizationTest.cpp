#include "Expectations.h"

#include <qor/QORClass.h>
#include <qor/QORRealization.h>

namespace {

void link(Graph& graph, QORRealization& object, Owners owners) {
    linkLayers(graph, object);
    linkOwner(graph, owners, "package", object, &QORModelElement::addDesignPackage);
    ASSERT_TRUE(object.addSpecificationClass(graph.mortal<QORClass>("specification")));
    ASSERT_TRUE(object.addRealizationClass(graph.mortal<QORClass>("realization")));
}

} // namespace

TEST(QORRealization, IsTakenApartInOrder) {
    expectTakenApart<QORRealization>(link,
                                     {"realization", "specification", "package", "base", "synonym", "note"},
                                     {"note", "synonym", "base", "realization", "specification"});
    expectChildrenReached<QORRealization>(link, {"note", "synonym"});
}

TEST(QORRealization, ShowsTheClassThatIsFulfilledFirst) {
    Graph graph;
    auto* const realization = graph.make<QORRealization>("realization");
    auto* const fulfilled = graph.make<QORClass>("S");
    EXPECT_EQ(realization->getDisplayName(), "_");
    ASSERT_TRUE(realization->addSpecificationClass(fulfilled));
    EXPECT_EQ(realization->getDisplayName(), "S_");
    ASSERT_TRUE(realization->addRealizationClass(graph.make<QORClass>("R")));
    EXPECT_EQ(realization->getDisplayName(), "S_R");
    ASSERT_TRUE(realization->removeSpecificationClass(fulfilled));
    EXPECT_EQ(realization->getDisplayName(), "_R");
}

TEST(QORRealization, IsReachedFromBothClasses) {
    Graph graph;
    auto* const realization = graph.make<QORRealization>();
    auto* const fulfilled = graph.make<QORClass>();
    auto* const fulfilling = graph.make<QORClass>();
    EXPECT_TRUE(fulfilling->addRealization(realization));
    EXPECT_TRUE(fulfilled->addSpecificationOfRealization(realization));
    EXPECT_FALSE(fulfilled->addRealization(realization));
    EXPECT_EQ(realization->getRealizationClass(), fulfilling);
    EXPECT_EQ(realization->getSpecificationClass(), fulfilled);
}
