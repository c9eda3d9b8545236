#include "AllocationControl.h"
#include "Expectations.h"

#include <qor/QORDirectory.h>
#include <qor/QORMappingModel.h>
#include <qor/QORModel.h>
#include <qor/QORPropertyElementTypeScope.h>
#include <qor/QORPropertyType.h>
#include <qor/QORPropertyTypeByPosition.h>
#include <qor/QORPropertyValue.h>

namespace {

using Scope = QORPropertyElementTypeScope;

void linkEnds(Graph& graph, Scope& scope, Owners owners) {
    ASSERT_TRUE(scope.addPropertyType(graph.mortal<QORPropertyType>("type")));
    linkOwner(graph, owners, "model", scope, &Scope::addModel);
    linkFurtherOwner(graph, owners, "mappingModel", scope, &Scope::addMappingModel);
    linkFurtherOwner(graph, owners, "directory", scope, &Scope::addDirectory);
}

Scope* scopeOf(Graph& graph, QORElementType type) {
    auto* const scope = graph.make<Scope>();
    scope->setScope(type);
    return scope;
}

/// A caller's scope that notes the names that it is given.
class Named : public Scope {
public:
    Labels names;
    void setName(QORString const& newName) override {
        names.push_back(newName.chars);
        Scope::setName(newName);
    }
};

} // namespace

TEST(QORPropertyElementTypeScope, StartsForElementsAndUnnamed) {
    Scope const scope;
    EXPECT_EQ(scope.getScope(), QORElementType::ELEMENT);
    EXPECT_EQ(static_cast<int>(scope.getScope()), 0);
    EXPECT_EQ(scope.getName(), "");
    EXPECT_EQ(scope.getDisplayName(), "");
}

TEST(QORPropertyElementTypeScope, TakesTheNameOfTheElementType) {
    Scope scope;
    scope.setScope(QORElementType::ATTRIBUTE);
    EXPECT_EQ(scope.getScope(), QORElementType::ATTRIBUTE);
    EXPECT_EQ(scope.getName(), getElementTypeName(QORElementType::ATTRIBUTE));
    EXPECT_EQ(scope.getName(), "ATTRIBUTE");
    EXPECT_EQ(scope.getDisplayName(), "ATTRIBUTE");
    scope.setScope(QORElementType::ELEMENT);
    EXPECT_EQ(scope.getName(), "ELEMENT");
}

TEST(QORPropertyElementTypeScope, ANewScopeMovesItInItsModel) {
    Graph graph;
    auto* const model = graph.make<QORModel>();
    auto* const scope = scopeOf(graph, QORElementType::CLASS);
    auto* const other = scopeOf(graph, QORElementType::NOTE);
    ASSERT_TRUE(model->addPropertyElementTypeScope(scope) && model->addPropertyElementTypeScope(other));
    EXPECT_EQ(model->getPropertyElementTypeScope(0), scope);
    scope->setScope(QORElementType::SYNONYM);
    EXPECT_EQ(model->getPropertyElementTypeScope(0), other);
    EXPECT_EQ(model->getPropertyElementTypeScope(1), scope);
    EXPECT_EQ(scope->getModel(), model);
}

TEST(QORPropertyElementTypeScope, AnOwnerHoldsOneScopeForEachElementType) {
    Graph graph;
    auto* const first = scopeOf(graph, QORElementType::CLASS);
    auto* const second = scopeOf(graph, QORElementType::CLASS);
    auto* const model = graph.make<QORModel>();
    auto* const mappingModel = graph.make<QORMappingModel>();
    auto* const directory = graph.make<QORDirectory>();
    EXPECT_TRUE(model->addPropertyElementTypeScope(first));
    EXPECT_FALSE(model->addPropertyElementTypeScope(second));
    EXPECT_TRUE(mappingModel->addPropertyElementTypeScope(first));
    EXPECT_FALSE(second->addMappingModel(mappingModel));
    EXPECT_TRUE(first->addDirectory(directory));
    EXPECT_FALSE(directory->addPropertyElementTypeScope(second));
    EXPECT_EQ(first->getParentCount(), 3);
    EXPECT_EQ(second->getParentCount(), 0);
}

TEST(QORPropertyElementTypeScope, ARefusedScopeIsKeptWithTheOldName) {
    Graph graph;
    auto* const model = graph.make<QORModel>();
    auto* const scope = scopeOf(graph, QORElementType::CLASS);
    ASSERT_TRUE(model->addPropertyElementTypeScope(scope) &&
                model->addPropertyElementTypeScope(scopeOf(graph, QORElementType::NOTE)));
    expectRefused([&] { scope->setScope(QORElementType::NOTE); }, "Model", "PropertyElementTypeScope");
    EXPECT_EQ(scope->getScope(), QORElementType::NOTE);
    EXPECT_EQ(scope->getName(), "CLASS");
    EXPECT_EQ(scope->getModel(), model);
    EXPECT_EQ(model->getPropertyElementTypeScopeCount(), 2);
    EXPECT_EQ(model->getPropertyElementTypeScope(0), scope);
}

TEST(QORPropertyElementTypeScope, EachOwnerRefusesATakenName) {
    Graph graph;
    auto* const inMapping = scopeOf(graph, QORElementType::CLASS);
    auto* const mappingModel = graph.make<QORMappingModel>();
    ASSERT_TRUE(mappingModel->addPropertyElementTypeScope(inMapping) &&
                mappingModel->addPropertyElementTypeScope(scopeOf(graph, QORElementType::NOTE)));
    expectNameRefused(*inMapping, "NOTE", "MappingModel", "PropertyElementTypeScope");
    auto* const inDirectory = scopeOf(graph, QORElementType::CLASS);
    auto* const directory = graph.make<QORDirectory>();
    ASSERT_TRUE(directory->addPropertyElementTypeScope(inDirectory) &&
                directory->addPropertyElementTypeScope(scopeOf(graph, QORElementType::NOTE)));
    expectNameRefused(*inDirectory, "NOTE", "Directory", "PropertyElementTypeScope");
}

TEST(QORPropertyElementTypeScope, OnlyTheFirstOwnerIsAskedForTheName) {
    Graph graph;
    auto* const scope = scopeOf(graph, QORElementType::CLASS);
    auto* const mappingModel = graph.make<QORMappingModel>();
    auto* const directory = graph.make<QORDirectory>();
    ASSERT_TRUE(mappingModel->addPropertyElementTypeScope(scopeOf(graph, QORElementType::NOTE)) &&
                directory->addPropertyElementTypeScope(scopeOf(graph, QORElementType::TYPE)) &&
                scope->addMappingModel(mappingModel) && scope->addDirectory(directory));
    expectNameRefused(*scope, "NOTE", "MappingModel", "PropertyElementTypeScope");
    scope->setName("TYPE");
    EXPECT_EQ(scope->getName(), "TYPE");
    auto* const model = graph.make<QORModel>();
    ASSERT_TRUE(scope->addModel(model));
    scope->setName("NOTE");
    EXPECT_EQ(scope->getName(), "NOTE");
    EXPECT_EQ(scope->getParentCount(), 3);
    ASSERT_TRUE(model->addPropertyElementTypeScope(scopeOf(graph, QORElementType::CLASS)));
    expectNameRefused(*scope, "CLASS", "Model", "PropertyElementTypeScope");
}

TEST(QORPropertyElementTypeScope, OwnersAreTakenInOrder) {
    Graph graph;
    auto* const scope = graph.make<Scope>();
    auto* const model = graph.make<QORModel>();
    auto* const mappingModel = graph.make<QORMappingModel>();
    auto* const directory = graph.make<QORDirectory>();
    ASSERT_TRUE(scope->addDirectory(directory));
    EXPECT_EQ(scope->getParent(), directory);
    ASSERT_TRUE(scope->addMappingModel(mappingModel));
    EXPECT_EQ(scope->getParent(), mappingModel);
    ASSERT_TRUE(scope->addModel(model));
    EXPECT_EQ(scope->getParent(), model);
    EXPECT_EQ(scope->getParentCount(), 3);
    EXPECT_EQ(scope->removeAggregationAssembly(), model);
    EXPECT_EQ(scope->removeAggregationAssembly(), mappingModel);
    EXPECT_EQ(scope->removeAggregationAssembly(), directory);
    EXPECT_EQ(scope->removeAggregationAssembly(), nullptr);
    EXPECT_EQ(scope->getParentCount(), 0);
}

TEST(QORPropertyElementTypeScope, AssignmentNamesItAfterTheScope) {
    Graph graph;
    auto* const source = scopeOf(graph, QORElementType::CLASS);
    source->setName("Other");
    Scope const copy(*source);
    EXPECT_EQ(copy.getScope(), QORElementType::CLASS);
    EXPECT_EQ(copy.getName(), "Other");
    Scope target;
    EXPECT_EQ(&target.setFrom(*source), &target);
    EXPECT_EQ(target.getScope(), QORElementType::CLASS);
    EXPECT_EQ(target.getName(), "CLASS");
    Scope const unnamed;
    target = unnamed;
    EXPECT_EQ(target.getName(), "ELEMENT");
}

TEST(QORPropertyElementTypeScope, AssignmentMovesItInItsModel) {
    Graph graph;
    auto* const model = graph.make<QORModel>();
    auto* const scope = scopeOf(graph, QORElementType::CLASS);
    auto* const other = scopeOf(graph, QORElementType::NOTE);
    ASSERT_TRUE(model->addPropertyElementTypeScope(scope) && model->addPropertyElementTypeScope(other));
    *scope = *scopeOf(graph, QORElementType::SYNONYM);
    EXPECT_EQ(model->getPropertyElementTypeScope(0), other);
    EXPECT_EQ(model->getPropertyElementTypeScope(1), scope);
}

TEST(QORPropertyElementTypeScope, NamesItselfThroughTheVirtualOperation) {
    Named scope;
    scope.setScope(QORElementType::CLASS);
    Scope source;
    source.setScope(QORElementType::NOTE);
    static_cast<Scope&>(scope) = source;
    EXPECT_EQ(scope.names, (Labels{"CLASS", "NOTE"}));
}

TEST(QORPropertyElementTypeScope, TypesOfOneScopeMayShareANameAndAreReadByPosition) {
    Graph graph;
    auto* const scope = graph.make<Scope>();
    auto* const first = graph.make<QORPropertyType>("B");
    auto* const second = graph.make<QORPropertyType>("A");
    auto* const third = graph.make<QORPropertyType>("A");
    first->setPosition(1);
    second->setPosition(2);
    third->setPosition(3);
    EXPECT_TRUE(scope->addPropertyType(third) && scope->addPropertyType(second) &&
                scope->addPropertyType(first));
    EXPECT_EQ(scope->getPropertyType(2), first);
    QORPropertyTypeByPosition view;
    ASSERT_TRUE(view.add(graph.make<QORPropertyType>(), false, nullptr));
    scope->getPropertyTypeByPosition(view);
    EXPECT_EQ(listOf(view), (Objects{first, second, third}));
    Scope().getPropertyTypeByPosition(view);
    EXPECT_EQ(view.size, 0);
}

TEST(QORPropertyElementTypeScope, IsTakenApartInOrder) {
    expectTakenApart<Scope>(linkEnds, {"model", "mappingModel", "directory", "type"}, {"type"});
}

TEST(QORPropertyElementTypeScope, AnyOneOwnerKeepsItFromRecursiveDelete) {
    Graph graph;
    auto* const scope = graph.make<Scope>();
    auto* const type = graph.make<QORPropertyType>();
    ASSERT_TRUE(scope->addPropertyType(type));
    ASSERT_TRUE(scope->addDirectory(graph.make<QORDirectory>()));
    EXPECT_FALSE(scope->recursiveDelete());
    ASSERT_TRUE(scope->removeDirectory(scope->getDirectory()) &&
                scope->addMappingModel(graph.make<QORMappingModel>()));
    EXPECT_FALSE(scope->recursiveDelete());
    EXPECT_EQ(type->getPropertyElementTypeScope(), scope);
}

TEST(QORPropertyElementTypeScope, DeletesTypesInUseButNotThoseOfAModel) {
    Graph graph;
    auto* const scope = new Scope;
    auto* const value = graph.make<QORPropertyValue>();
    auto* const inUse = graph.mortal<QORPropertyType>("inUse", "A");
    auto* const ofModel = graph.make<QORPropertyType>("B");
    auto* const last = graph.mortal<QORPropertyType>("last", "C");
    ASSERT_TRUE(scope->addPropertyType(last) && scope->addPropertyType(ofModel) &&
                scope->addPropertyType(inUse) && ofModel->addModel(graph.make<QORModel>()));
    ASSERT_TRUE(value->addPropertyType(inUse) && value->addElement(graph.make<QORModel>()));
    delete scope;
    EXPECT_EQ(graph.deaths, (Labels{"inUse", "last"}));
    EXPECT_EQ(value->getPropertyType(), nullptr);
    EXPECT_EQ(ofModel->getPropertyElementTypeScope(), nullptr);
    EXPECT_EQ(ofModel->getParentCount(), 1);
}

TEST(QORPropertyElementTypeScope, ComparesScopeAndName) {
    Scope scope;
    scope.setScope(QORElementType::CLASS);
    Scope other(scope);
    EXPECT_EQ(scope, other);
    other.setScope(QORElementType::NOTE);
    other.setName("CLASS");
    EXPECT_NE(scope, other);
    other = scope;
    other.setName("N");
    EXPECT_NE(scope, other);
}

TEST(QORPropertyElementTypeScope, ReencodesItsNameAndThenEachTypeOnce) {
    Graph graph;
    auto* const scope = graph.make<Scope>(inUtf8);
    ASSERT_TRUE(scope->addPropertyType(graph.mortal<QORPropertyType>("first", inUtf8)) &&
                scope->addPropertyType(graph.mortal<QORPropertyType>("second", "\xC4")));
    Recoding recode;
    recode(*scope);
    EXPECT_EQ(graph.recodings, (Labels{"first", "second"}));
    EXPECT_EQ(scope->getName(), inLatin1);
    EXPECT_EQ(scope->getPropertyType(1)->getName(), inLatin1);
}

TEST(QORPropertyElementTypeScope, IsWalkedInTheOrderOfTheNames) {
    Graph graph;
    auto* const scope = graph.make<Scope>();
    auto* const b = graph.make<QORPropertyType>("B");
    auto* const a = graph.make<QORPropertyType>("A");
    ASSERT_TRUE(scope->addPropertyType(b) && scope->addPropertyType(a));
    EXPECT_EQ(walkOf(*scope), (Objects{scope, a, b}));
}

TEST(QORPropertyElementTypeScope, KeepsItsScopeWhereMemoryEndsForTheName) {
    Scope scope;
    scope.setScope(QORElementType::CLASS);
    QORString const name = scope.getName();
    int const failures =
        failEachAllocation([&] { scope.setScope(QORElementType::CUBE_DIMENSION_ASSOCIATION); },
                           [&] {
                               EXPECT_EQ(scope.getScope(), QORElementType::CLASS);
                               EXPECT_EQ(scope.getName(), name);
                           });
    EXPECT_GT(failures, 1);
    EXPECT_EQ(scope.getScope(), QORElementType::CUBE_DIMENSION_ASSOCIATION);
}
