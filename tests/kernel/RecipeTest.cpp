#include <qor/QORAggregationRule.h>
#include <qor/QORArgument.h>
#include <qor/QORAssociation.h>
#include <qor/QORAssociationRole.h>
#include <qor/QORAttribute.h>
#include <qor/QORBusinessRule.h>
#include <qor/QORCandidateKey.h>
#include <qor/QORClass.h>
#include <qor/QORClassDiagram.h>
#include <qor/QORClassMap.h>
#include <qor/QORClassType.h>
#include <qor/QORCondition.h>
#include <qor/QORCubeDimensionAssociation.h>
#include <qor/QORDatabaseSchema.h>
#include <qor/QORDependency.h>
#include <qor/QORDesignPackage.h>
#include <qor/QORElementNamePart.h>
#include <qor/QORElementNode.h>
#include <qor/QOREncodingConverter.h>
#include <qor/QORException.h>
#include <qor/QORGeneralization.h>
#include <qor/QORGrouping.h>
#include <qor/QORIndex.h>
#include <qor/QORJoinRole.h>
#include <qor/QORKeyMap.h>
#include <qor/QORMappingModel.h>
#include <qor/QORMeasure.h>
#include <qor/QORMetadataOrigin.h>
#include <qor/QORModel.h>
#include <qor/QORNote.h>
#include <qor/QOROperation.h>
#include <qor/QORPhysicalObject.h>
#include <qor/QORProjection.h>
#include <qor/QORPropertyValue.h>
#include <qor/QORRBTree.h>
#include <qor/QORRealization.h>
#include <qor/QORReport.h>
#include <qor/QORReportText.h>
#include <qor/QORSQLViewAssociation.h>
#include <qor/QORSQLViewEntity.h>
#include <qor/QORStoredProcedure.h>
#include <qor/QORSynonym.h>

#include "AllocationControl.h"
#include "Graph.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace {

Labels featuresOf(QORClassifier const& classifier) {
    return namesOf(listOf(classifier.getFeatureCount(), [&](int i) { return classifier.getFeature(i); }));
}

Labels argumentsOf(QOROperation const& operation) {
    return namesOf(listOf(operation.getArgumentCount(), [&](int i) { return operation.getArgument(i); }));
}

Labels rolesOf(QORAssociation const& association) {
    return namesOf(listOf(association.getAssociationRoleCount(),
                          [&](int i) { return association.getAssociationRole(i); }));
}

/// The message that naming the object gives, or "" if it is accepted.
std::string refusalOf(QORObject& object, char const* name) {
    try {
        object.setName(name);
    } catch (QORException const& refusal) {
        return refusal.what();
    }
    return "";
}

std::string alreadyContains(char const* owner, char const* child) {
    return std::string("[QORSDK_F0001] Illegal Argument: The ") + owner + " already contains a " + child +
           " with this name\n";
}

} // namespace

// ---- making links ---------------------------------------------------------------------------------------

TEST(RecipeLink, NaryWithUnaryFromEitherSide) {
    QORMeasure measure;
    QORAggregationRule a;
    QORAggregationRule b;
    EXPECT_TRUE(measure.addAggregationRule(&a));
    EXPECT_TRUE(b.addMeasure(&measure));
    EXPECT_EQ(&measure, a.getMeasure());
    EXPECT_EQ(&measure, b.getMeasure());
    EXPECT_EQ(2, measure.getAggregationRuleCount());
    measure.removeAggregationRule(&a);
    measure.removeAggregationRule(&b);
}

TEST(RecipeLink, ATakenUnaryEndRefusesFromEitherSide) {
    QORMeasure first;
    QORMeasure second;
    QORAggregationRule rule;
    ASSERT_TRUE(first.addAggregationRule(&rule));
    EXPECT_FALSE(second.addAggregationRule(&rule));
    EXPECT_FALSE(rule.addMeasure(&second));
    EXPECT_FALSE(rule.addMeasure(&first));
    EXPECT_EQ(&first, rule.getMeasure());
    EXPECT_EQ(0, second.getAggregationRuleCount());
    EXPECT_EQ(1, first.getAggregationRuleCount());
    EXPECT_FALSE(second.isReferenced());
}

TEST(RecipeLink, AKeyedEndRefusesANamesakeFromEitherSide) {
    QORClass owner;
    auto* const x = named<QORAttribute>("x");
    ASSERT_TRUE(owner.addFeature(x));
    QORAttribute namesake;
    namesake.setName("x");
    EXPECT_FALSE(owner.addFeature(&namesake));
    EXPECT_FALSE(namesake.addClassifier(&owner));
    EXPECT_EQ(nullptr, namesake.getClassifier());
    EXPECT_FALSE(namesake.isReferenced());
    EXPECT_EQ(1, owner.getFeatureCount());
    EXPECT_EQ(x, owner.getFeature(0));
}

TEST(RecipeLink, UnaryWithUnary) {
    QORClass owner;
    QORClass other;
    QORCandidateKey key;
    QORCandidateKey secondKey;
    EXPECT_TRUE(owner.addPrimaryCandidateKey(&key));
    EXPECT_EQ(&owner, key.getPrimaryOfClass());
    EXPECT_FALSE(owner.addPrimaryCandidateKey(&secondKey));
    EXPECT_FALSE(key.addPrimaryOfClass(&other));
    EXPECT_EQ(&key, owner.getPrimaryCandidateKey());
    EXPECT_EQ(nullptr, secondKey.getPrimaryOfClass());
    EXPECT_EQ(nullptr, other.getPrimaryCandidateKey());
    EXPECT_TRUE(owner.removePrimaryCandidateKey(&key));
}

TEST(RecipeLink, NaryWithNary) {
    QORClass a;
    QORClass b;
    QORGeneralization generalization;
    EXPECT_TRUE(a.addSupertypeOfGeneralization(&generalization));
    EXPECT_TRUE(generalization.addSupertypeClass(&b));
    EXPECT_FALSE(a.addSupertypeOfGeneralization(&generalization));
    EXPECT_FALSE(generalization.addSupertypeClass(&a));
    EXPECT_EQ(2, generalization.getSupertypeClassCount());
    EXPECT_EQ(&a, generalization.getSupertypeClass(0));
    EXPECT_EQ(&b, generalization.getSupertypeClass(1));
    EXPECT_EQ(&generalization, a.getSupertypeOfGeneralization(0));
    EXPECT_EQ(&generalization, b.getSupertypeOfGeneralization(0));
    generalization.removeSupertypeClass(&a);
    generalization.removeSupertypeClass(&b);
}

TEST(RecipeLink, NullIsRefused) {
    QORMeasure measure;
    QORAggregationRule rule;
    QORClass classifier;
    EXPECT_FALSE(measure.removeAggregationRule(nullptr));
    EXPECT_FALSE(rule.removeMeasure(nullptr));
    EXPECT_FALSE(classifier.removePrimaryCandidateKey(nullptr));
    EXPECT_FALSE(classifier.removeSupertypeOfGeneralization(nullptr));
}

// ---- unlinking ------------------------------------------------------------------------------------------

TEST(RecipeUnlink, NaryWithUnaryDeletesNothing) {
    Graph graph;
    auto const measure = std::unique_ptr<QORMeasure>(graph.mortal<QORMeasure>("m"));
    auto const rule = std::unique_ptr<QORAggregationRule>(graph.mortal<QORAggregationRule>("r"));
    measure->addAggregationRule(rule.get());
    EXPECT_TRUE(measure->removeAggregationRule(rule.get()));
    EXPECT_EQ(nullptr, rule->getMeasure());
    EXPECT_EQ(0, measure->getAggregationRuleCount());
    EXPECT_FALSE(measure->removeAggregationRule(rule.get()));
    EXPECT_FALSE(measure->isReferenced());
    EXPECT_FALSE(rule->isReferenced());
    EXPECT_TRUE(graph.deaths.empty());
}

TEST(RecipeUnlink, UnaryWithNaryDeletesNothing) {
    Graph graph;
    auto const measure = std::unique_ptr<QORMeasure>(graph.mortal<QORMeasure>("m"));
    auto const rule = std::unique_ptr<QORAggregationRule>(graph.mortal<QORAggregationRule>("r"));
    EXPECT_FALSE(rule->removeMeasure(measure.get()));
    measure->addAggregationRule(rule.get());
    QORMeasure other;
    EXPECT_FALSE(rule->removeMeasure(&other));
    EXPECT_EQ(measure.get(), rule->getMeasure());
    EXPECT_TRUE(rule->removeMeasure(measure.get()));
    EXPECT_EQ(nullptr, rule->getMeasure());
    EXPECT_EQ(0, measure->getAggregationRuleCount());
    EXPECT_TRUE(graph.deaths.empty());
}

TEST(RecipeUnlink, UnaryWithUnaryDeletesNothing) {
    QORClass owner;
    QORCandidateKey key;
    QORCandidateKey other;
    owner.addPrimaryCandidateKey(&key);
    EXPECT_FALSE(owner.removePrimaryCandidateKey(&other));
    EXPECT_TRUE(owner.removePrimaryCandidateKey(&key));
    EXPECT_EQ(nullptr, owner.getPrimaryCandidateKey());
    EXPECT_EQ(nullptr, key.getPrimaryOfClass());
    EXPECT_FALSE(owner.removePrimaryCandidateKey(&key));
    EXPECT_FALSE(owner.isReferenced());
    EXPECT_FALSE(key.isReferenced());
}

TEST(RecipeUnlink, NaryWithNaryDeletesNothing) {
    QORClass a;
    QORClass b;
    QORGeneralization generalization;
    a.addSupertypeOfGeneralization(&generalization);
    b.addSupertypeOfGeneralization(&generalization);
    EXPECT_TRUE(generalization.removeSupertypeClass(&a));
    EXPECT_FALSE(generalization.removeSupertypeClass(&a));
    EXPECT_FALSE(a.removeSupertypeOfGeneralization(&generalization));
    EXPECT_EQ(0, a.getSupertypeOfGeneralizationCount());
    EXPECT_EQ(1, b.getSupertypeOfGeneralizationCount());
    EXPECT_TRUE(b.removeSupertypeOfGeneralization(&generalization));
    EXPECT_FALSE(generalization.isReferenced());
}

TEST(RecipeUnlink, ANamesakeIsNeitherTakenOutNorCleared) {
    QORClass owner;
    QORClass other;
    auto* const inside = named<QORAttribute>("x");
    auto* const elsewhere = named<QORAttribute>("x");
    owner.addFeature(inside);
    other.addFeature(elsewhere);
    EXPECT_FALSE(owner.removeFeature(elsewhere));
    EXPECT_EQ(&other, elsewhere->getClassifier());
    EXPECT_EQ(&owner, inside->getClassifier());
    EXPECT_EQ(1, owner.getFeatureCount());
    EXPECT_EQ(1, other.getFeatureCount());
}

// ---- deleting forms of unary ends -----------------------------------------------------------------------

TEST(RecipeRemove, AChildsRemoveDeletesAnOwnerThatIsLeftUnreferenced) {
    Graph graph;
    auto* const measure = graph.mortal<QORMeasure>("m");
    QORAggregationRule rule;
    measure->addAggregationRule(&rule);
    EXPECT_TRUE(rule.removeMeasure());
    EXPECT_EQ(Labels{"m"}, graph.deaths);
    EXPECT_EQ(nullptr, rule.getMeasure());
    EXPECT_FALSE(rule.isReferenced());
    EXPECT_FALSE(rule.removeMeasure());
}

TEST(RecipeRemove, AnOwnerThatAnythingElseRefersToSurvives) {
    Graph graph;
    auto const measure = std::unique_ptr<QORMeasure>(graph.mortal<QORMeasure>("m"));
    measure->addNote(new QORNote);
    QORAggregationRule rule;
    measure->addAggregationRule(&rule);
    EXPECT_TRUE(rule.removeMeasure());
    EXPECT_TRUE(graph.deaths.empty());
    EXPECT_EQ(nullptr, rule.getMeasure());
    EXPECT_EQ(0, measure->getAggregationRuleCount());
}

TEST(RecipeRemove, UnaryWithUnaryDeletesTheUnreferencedFarObject) {
    Graph graph;
    QORModel model;
    model.addMetadataOrigin(graph.mortal<QORMetadataOrigin>("origin"));
    EXPECT_TRUE(model.removeMetadataOrigin());
    EXPECT_EQ(Labels{"origin"}, graph.deaths);
    EXPECT_EQ(nullptr, model.getMetadataOrigin());
    EXPECT_FALSE(model.removeMetadataOrigin());
}

TEST(RecipeRemove, UnaryWithUnaryLeavesAReferencedFarObject) {
    Graph graph;
    QORModel model;
    QORMappingModel mapping;
    auto* const origin = graph.mortal<QORMetadataOrigin>("origin");
    model.addMetadataOrigin(origin);
    mapping.addMetadataOrigin(origin);
    EXPECT_TRUE(model.removeMetadataOrigin());
    EXPECT_TRUE(graph.deaths.empty());
    EXPECT_EQ(nullptr, origin->getModel());
    EXPECT_EQ(&mapping, origin->getMappingModel());
}

namespace {

/// Notes what the rule's field holds while the measure dies.
class WatchedMeasure : public QORMeasure {
public:
    WatchedMeasure(QORAggregationRule& watched, QORMeasure*& found) : rule(watched), seen(found) {}
    ~WatchedMeasure() override {
        seen = rule.getMeasure();
        count = getAggregationRuleCount();
        EXPECT_EQ(0, count);
    }

private:
    QORAggregationRule& rule;
    QORMeasure*& seen;
    int count = -1;
};

} // namespace

TEST(RecipeRemove, TheOwnFieldIsClearedAfterTheFarObjectHasGone) {
    QORAggregationRule rule;
    QORMeasure* seen = nullptr;
    auto* const measure = new WatchedMeasure(rule, seen);
    rule.addMeasure(measure);
    rule.removeMeasure();
    EXPECT_EQ(measure, seen);
    EXPECT_EQ(nullptr, rule.getMeasure());
}

TEST(RecipeRemove, TheFarObjectIsAskedVirtuallyWhetherItIsReferenced) {
    class Pinned : public QORMeasure {
    public:
        bool isReferenced() const override { return true; }
    } measure;
    QORAggregationRule rule;
    rule.addMeasure(&measure);
    EXPECT_TRUE(rule.removeMeasure()); // on the stack: deleting it would be fatal
    EXPECT_EQ(0, measure.getAggregationRuleCount());
}

// ---- deleting forms of nary ends ------------------------------------------------------------------------

TEST(RecipeRemove, ByPositionDeletesTheUnreferencedElement) {
    Graph graph;
    QORAssociation association;
    for (char const* name : {"a", "b", "c"})
        association.addAssociationRole(graph.mortal<QORAssociationRole>(name));
    EXPECT_FALSE(association.removeAssociationRole(3));
    EXPECT_TRUE(association.removeAssociationRole(1));
    EXPECT_EQ(Labels{"b"}, graph.deaths);
    EXPECT_EQ((Labels{"a", "c"}), rolesOf(association));
    EXPECT_TRUE(association.removeAssociationRole(0));
    EXPECT_TRUE(association.removeAssociationRole(0));
    EXPECT_FALSE(association.removeAssociationRole(0));
    EXPECT_EQ((Labels{"b", "a", "c"}), graph.deaths);
}

TEST(RecipeRemove, ByPositionInATree) {
    Graph graph;
    QORClass owner;
    for (char const* name : {"c", "a", "b"})
        owner.addFeature(graph.mortal<QORAttribute>(name));
    EXPECT_FALSE(owner.removeFeature(3));
    EXPECT_TRUE(owner.removeFeature(1));
    EXPECT_EQ(Labels{"b"}, graph.deaths);
    EXPECT_EQ((Labels{"a", "c"}), featuresOf(owner));
}

TEST(RecipeRemove, ByPositionLeavesAReferencedElementWithoutItsOwner) {
    QORAssociation association;
    QORClass target;
    target.addNote(new QORNote);
    auto* const role = named<QORAssociationRole>("r");
    association.addAssociationRole(role);
    target.addAssociationRole(role);
    EXPECT_TRUE(association.removeAssociationRole(0));
    EXPECT_EQ(nullptr, role->getAssociation());
    EXPECT_EQ(&target, role->getAssociatedClass());
    delete role;
    EXPECT_EQ(0, target.getAssociationRoleCount());
}

TEST(RecipeRemove, ByPositionOfNaryWithNaryTakesThisOutOfTheFarEnd) {
    Graph graph;
    QORClass a;
    QORClass b;
    auto* const generalization = graph.mortal<QORGeneralization>("g");
    a.addSupertypeOfGeneralization(generalization);
    b.addSupertypeOfGeneralization(generalization);
    EXPECT_TRUE(a.removeSupertypeOfGeneralization(0));
    EXPECT_TRUE(graph.deaths.empty());
    EXPECT_EQ(1, generalization->getSupertypeClassCount());
    EXPECT_EQ(&b, generalization->getSupertypeClass(0));
    EXPECT_TRUE(b.removeSupertypeOfGeneralization(0));
    EXPECT_EQ(Labels{"g"}, graph.deaths);
    EXPECT_FALSE(b.isReferenced());
}

TEST(RecipeRemove, ByNameWithoutACursorTakesTheFirstMatch) {
    Graph graph;
    QORClass owner;
    for (char const* name : {"a", "b", "c"})
        owner.addFeature(graph.mortal<QORAttribute>(name));
    EXPECT_FALSE(owner.removeFeature("x", nullptr));
    EXPECT_TRUE(owner.removeFeature("b", nullptr));
    EXPECT_EQ(Labels{"b"}, graph.deaths);
    EXPECT_FALSE(owner.removeFeature("b", nullptr));
    EXPECT_EQ((Labels{"a", "c"}), featuresOf(owner));
}

TEST(RecipeRemove, ByNameWithoutACursorInAVectorTakesTheEarliestMatch) {
    QORAssociation association;
    auto* const first = named<QORAssociationRole>("x");
    auto* const second = named<QORAssociationRole>("x");
    QORClass keeper;
    keeper.addNote(new QORNote);
    keeper.addAssociationRole(first);
    association.addAssociationRole(first);
    association.addAssociationRole(second);
    EXPECT_TRUE(association.removeAssociationRole("x", nullptr));
    EXPECT_EQ(1, association.getAssociationRoleCount());
    EXPECT_EQ(second, association.getAssociationRole(0));
    EXPECT_EQ(nullptr, first->getAssociation());
    delete first;
}

TEST(RecipeRemove, ByNameWithACursorRepeatedTakesAllMatchesInAVector) {
    for (unsigned pattern = 0; pattern < 64; ++pattern) {
        QORAssociation association;
        Labels kept;
        for (unsigned i = 0; i < 6; ++i) {
            bool const match = pattern >> i & 1;
            std::string const other = "n" + std::to_string(i);
            association.addAssociationRole(named<QORAssociationRole>(match ? "x" : other.c_str()));
            if (!match)
                kept.push_back(other);
        }
        int cursor = 0;
        std::size_t removed = 0;
        while (association.removeAssociationRole("x", &cursor))
            ++removed;
        EXPECT_EQ(6 - kept.size(), removed) << pattern;
        EXPECT_EQ(kept, rolesOf(association)) << pattern;
    }
}

TEST(RecipeRemove, ByNameWithACursorRepeatedTakesAllMatchesInATreeOrderedByAddress) {
    for (unsigned pattern = 0; pattern < 256; ++pattern) {
        QORDesignPackage owner;
        std::vector<QORNote*> notes(8);
        std::generate(notes.begin(), notes.end(), [] { return new QORNote; });
        std::sort(notes.begin(), notes.end(), std::less<>());
        std::vector<QORNote*> kept;
        for (unsigned i = 0; i < 8; ++i) {
            bool const match = pattern >> i & 1;
            notes[i]->setName(match ? "x" : "other");
            owner.addNote(notes[i]);
            if (!match)
                kept.push_back(notes[i]);
        }
        int cursor = 0;
        std::size_t removed = 0;
        while (owner.removeNote("x", &cursor))
            ++removed;
        EXPECT_EQ(8 - kept.size(), removed) << pattern;
        ASSERT_EQ(static_cast<int>(kept.size()), owner.getNoteCount()) << pattern;
        for (QORNote* const note : kept) {
            EXPECT_EQ(&owner, note->getElement());
            EXPECT_STREQ("other", note->getName().chars);
        }
    }
}

TEST(RecipeRemove, ByNameWithACursorBeginsAtTheCursor) {
    QORAssociation association;
    for (char const* name : {"x", "y", "x", "x"})
        association.addAssociationRole(named<QORAssociationRole>(name));
    int cursor = 1;
    EXPECT_TRUE(association.removeAssociationRole("x", &cursor));
    EXPECT_EQ(2, cursor);
    EXPECT_EQ((Labels{"x", "y", "x"}), rolesOf(association));
    EXPECT_FALSE(association.removeAssociationRole("z", &cursor));
    EXPECT_EQ(2, cursor);
}

TEST(RecipeRemove, ByNameTakesRelationshipsOfOneNameInTurn) {
    QORDesignPackage package;
    for (int i = 0; i < 3; ++i)
        ASSERT_TRUE(package.addModelElement(named<QORAssociation>("x")));
    package.addModelElement(named<QORClass>("x"));
    package.addModelElement(named<QORClass>("a"));
    int cursor = 0;
    int removed = 0;
    while (package.removeModelElement("x", &cursor))
        ++removed;
    EXPECT_EQ(4, removed);
    EXPECT_EQ(1, package.getModelElementCount());
}

namespace {

/// Notes at its death how many siblings its owner counts, and whether it still knows its owner.
class CountingRule : public QORAggregationRule {
public:
    CountingRule(QORMeasure& counted, std::vector<int>& seen) : owner(counted), counts(seen) {}
    ~CountingRule() override {
        counts.push_back(owner.getAggregationRuleCount());
        EXPECT_EQ(nullptr, getMeasure());
        EXPECT_TRUE(owner.isReferenced());
    }

private:
    QORMeasure& owner;
    std::vector<int>& counts;
};

class CountingRole : public QORAssociationRole {
public:
    CountingRole(QORAssociation& counted, std::vector<int>& seen) : owner(counted), counts(seen) {}
    ~CountingRole() override {
        counts.push_back(owner.getAssociationRoleCount());
        EXPECT_TRUE(owner.isReferenced());
    }

private:
    QORAssociation& owner;
    std::vector<int>& counts;
};

} // namespace

TEST(RecipeRemoveAll, TheTreeKeepsCountingUntilTheEnd) {
    QORMeasure measure;
    std::vector<int> counts;
    for (int i = 0; i < 3; ++i)
        measure.addAggregationRule(new CountingRule(measure, counts));
    measure.removeAggregationRules();
    EXPECT_EQ((std::vector<int>{3, 3, 3}), counts);
    EXPECT_EQ(0, measure.getAggregationRuleCount());
    EXPECT_FALSE(measure.isReferenced());
}

TEST(RecipeRemoveAll, TheVectorKeepsCountingUntilTheEnd) {
    QORAssociation association;
    std::vector<int> counts;
    for (int i = 0; i < 3; ++i)
        association.addAssociationRole(new CountingRole(association, counts));
    association.removeAssociationRoles();
    EXPECT_EQ((std::vector<int>{3, 3, 3}), counts);
    EXPECT_EQ(0, association.getAssociationRoleCount());
}

TEST(RecipeRemoveAll, ElementsGoInTheOrderOfTheEnd) {
    Graph graph;
    QORClass owner;
    QORAssociation association;
    for (char const* name : {"c", "a", "b"}) {
        owner.addFeature(graph.mortal<QORAttribute>(name));
        association.addAssociationRole(graph.mortal<QORAssociationRole>(name));
    }
    owner.removeFeatures();
    EXPECT_EQ((Labels{"a", "b", "c"}), graph.deaths);
    graph.deaths.clear();
    association.removeAssociationRoles();
    EXPECT_EQ((Labels{"c", "a", "b"}), graph.deaths);
}

TEST(RecipeRemoveAll, ReferencedElementsAreOnlyUnlinked) {
    Graph graph;
    QORMeasure measure;
    QORCubeDimensionAssociation keeper;
    auto* const kept = graph.mortal<QORAggregationRule>("kept");
    auto* const lost = graph.mortal<QORAggregationRule>("lost");
    keeper.addAggregationRule(kept);
    measure.addAggregationRule(kept);
    measure.addAggregationRule(lost);
    measure.removeAggregationRules();
    EXPECT_EQ(Labels{"lost"}, graph.deaths);
    EXPECT_EQ(nullptr, kept->getMeasure());
    EXPECT_EQ(&keeper, kept->getCubeDimensionAssociation());
}

TEST(RecipeRemoveAll, NaryWithNaryClearsTheFarEnds) {
    Graph graph;
    QORDesignPackage importer;
    QORDesignPackage second;
    auto* const shared = graph.mortal<QORClass>("shared");
    auto* const alone = graph.mortal<QORClass>("alone");
    importer.addImportedModelObject(shared);
    importer.addImportedModelObject(alone);
    second.addImportedModelObject(shared);
    importer.removeImportedModelObjects();
    EXPECT_EQ(Labels{"alone"}, graph.deaths);
    EXPECT_EQ(1, shared->getImportedByDesignPackageCount());
    EXPECT_EQ(0, importer.getImportedModelObjectCount());
    second.removeImportedModelObjects();
    EXPECT_EQ((Labels{"alone", "shared"}), graph.deaths);
}

TEST(RecipeRemoveAll, AnEmptyEndIsLeftAlone) {
    QORMeasure measure;
    QORAssociation association;
    measure.removeAggregationRules();
    association.removeAssociationRoles();
    EXPECT_FALSE(measure.isReferenced());
    EXPECT_FALSE(association.isReferenced());
}

TEST(RecipeRemoveAll, AnEndCanBeFilledAgain) {
    QORClass owner;
    owner.addFeature(named<QORAttribute>("a"));
    owner.addFeature(named<QORAttribute>("b"));
    owner.removeFeatures();
    owner.addFeature(named<QORAttribute>("d"));
    owner.addFeature(named<QORAttribute>("c"));
    EXPECT_EQ((Labels{"c", "d"}), featuresOf(owner));
}

// ---- isReferenced ---------------------------------------------------------------------------------------

TEST(RecipeIsReferenced, TrueForEachKindOfEndOnBothSides) {
    QORMeasure measure;
    QORAggregationRule rule;
    EXPECT_FALSE(measure.isReferenced());
    EXPECT_FALSE(rule.isReferenced());
    measure.addAggregationRule(&rule);
    EXPECT_TRUE(measure.isReferenced());
    EXPECT_TRUE(rule.isReferenced());
    measure.removeAggregationRule(&rule);
    EXPECT_FALSE(measure.isReferenced());
    EXPECT_FALSE(rule.isReferenced());

    QORClass classifier;
    QORCandidateKey key;
    key.addPrimaryOfClass(&classifier);
    EXPECT_TRUE(classifier.isReferenced());
    EXPECT_TRUE(key.isReferenced());
    key.removePrimaryOfClass(&classifier);
    EXPECT_FALSE(classifier.isReferenced());

    QORGeneralization generalization;
    generalization.addSubtypeClass(&classifier);
    EXPECT_TRUE(classifier.isReferenced());
    EXPECT_TRUE(generalization.isReferenced());
    classifier.removeSubtypeOfGeneralization(&generalization);
    EXPECT_FALSE(classifier.isReferenced());
    EXPECT_FALSE(generalization.isReferenced());
}

TEST(RecipeIsReferenced, CountsEndsOfTheBaseClasses) {
    QORAggregationRule rule;
    QORNote note;
    rule.addNote(&note);
    EXPECT_TRUE(rule.isReferenced());
    EXPECT_TRUE(rule.QORElement::isReferenced());
    rule.removeNote(&note);
    EXPECT_FALSE(rule.isReferenced());
}

// ---- owners ---------------------------------------------------------------------------------------------

namespace {

/// An argument under an operation and a class at once.
struct SharedArgument : public ::testing::Test {
    SharedArgument() {
        operation.setName("operation");
        parameterized.setName("class");
        argument = named<QORArgument>("argument");
    }
    ~SharedArgument() override {
        if (argument)
            delete argument;
    }
    SharedArgument(SharedArgument const&) = delete;
    SharedArgument& operator=(SharedArgument const&) = delete;

    QOROperation operation;
    QORClass parameterized;
    QORArgument* argument;
};

using RecipeOwners = SharedArgument;

} // namespace

TEST_F(RecipeOwners, TheFirstSetOwnerIsTheParent) {
    EXPECT_EQ(nullptr, argument->getParent());
    EXPECT_EQ(0, argument->getParentCount());
    argument->addParameterizedClass(&parameterized);
    EXPECT_EQ(&parameterized, argument->getParent());
    EXPECT_EQ(1, argument->getParentCount());
    argument->addOperation(&operation);
    EXPECT_EQ(&operation, argument->getParent());
    EXPECT_EQ(2, argument->getParentCount());
}

TEST_F(RecipeOwners, RemoveAggregationAssemblyUndoesOneOwnerOnly) {
    argument->addParameterizedClass(&parameterized);
    argument->addOperation(&operation);
    EXPECT_EQ(&operation, argument->removeAggregationAssembly());
    EXPECT_EQ(nullptr, argument->getOperation());
    EXPECT_EQ(0, operation.getArgumentCount());
    EXPECT_EQ(&parameterized, argument->getParameterizedClass());
    EXPECT_EQ(&parameterized, argument->removeAggregationAssembly());
    EXPECT_EQ(nullptr, argument->removeAggregationAssembly());
    EXPECT_FALSE(argument->isReferenced());
}

TEST_F(RecipeOwners, RecursiveDeleteRefusesWhileAnyOwnerIsSetAndChangesNothing) {
    argument->addNote(new QORNote);
    argument->addSynonym(new QORSynonym);
    argument->addParameterizedClass(&parameterized);
    EXPECT_FALSE(argument->recursiveDelete());
    EXPECT_EQ(1, argument->getNoteCount());
    EXPECT_EQ(1, argument->getSynonymCount());
    EXPECT_EQ(1, parameterized.getArgumentCount());
    argument->addOperation(&operation);
    EXPECT_FALSE(argument->recursiveDelete());
    EXPECT_EQ(1, argument->getNoteCount());
    argument->removeAggregationAssembly();
    argument->removeAggregationAssembly();
    EXPECT_TRUE(argument->recursiveDelete());
    EXPECT_FALSE(argument->isReferenced());
}

TEST_F(RecipeOwners, AnOwnersDeathLeavesAChildThatAnotherOwns) {
    argument->addParameterizedClass(&parameterized);
    auto* const dying = new QOROperation;
    argument->addOperation(dying);
    argument->addNote(named<QORNote>("n"));
    delete dying;
    EXPECT_EQ(nullptr, argument->getOperation());
    EXPECT_EQ(&parameterized, argument->getParent());
    EXPECT_EQ(1, argument->getNoteCount());
    EXPECT_EQ(1, parameterized.getArgumentCount());
}

TEST_F(RecipeOwners, DeletingAChildTakesItOutOfBothOwners) {
    argument->addParameterizedClass(&parameterized);
    argument->addOperation(&operation);
    delete argument;
    argument = nullptr;
    EXPECT_EQ(0, operation.getArgumentCount());
    EXPECT_EQ(0, parameterized.getArgumentCount());
    EXPECT_FALSE(operation.isReferenced());
    EXPECT_FALSE(parameterized.isReferenced());
}

TEST_F(RecipeOwners, OwnersOfTheBaseClassesAreAskedAfterTheOwnOnes) {
    QORAttribute attribute;
    QORAssociationRole role;
    parameterized.addFeature(&attribute);
    EXPECT_EQ(&parameterized, attribute.getParent());
    role.addQualifierAttribute(&attribute);
    EXPECT_EQ(&role, attribute.getParent());
    EXPECT_EQ(2, attribute.getParentCount());
    EXPECT_FALSE(attribute.recursiveDelete());
    EXPECT_EQ(&role, attribute.removeAggregationAssembly());
    EXPECT_FALSE(attribute.recursiveDelete());
    EXPECT_EQ(&parameterized, attribute.getParent());
    EXPECT_EQ(&parameterized, attribute.removeAggregationAssembly());
    EXPECT_EQ(0, attribute.getParentCount());
}

// ---- recursiveDelete, destructor, isolate: orders -------------------------------------------------------

namespace {

/// A class with a far object on each kind of end of every class level, each of them linked to it only.
QORClass* fullClass(Graph& graph) {
    auto* const object = graph.mortal<QORClass>("class");
    // The element level.
    object->addElementNode(graph.mortal<QORElementNode>("elementNode"));
    object->addReferencedByElementNamePart(graph.mortal<QORElementNamePart>("elementNamePart"));
    object->addPropertyValue(graph.mortal<QORPropertyValue>("propertyValue"));
    object->addNote(graph.mortal<QORNote>("note"));
    // The model object level.
    object->addImportedByDesignPackage(graph.mortal<QORDesignPackage>("importer"));
    object->addSynonym(graph.mortal<QORSynonym>("synonym2"));
    object->addSynonym(graph.mortal<QORSynonym>("synonym1"));
    object->addAssociatedBusinessRule(graph.mortal<QORBusinessRule>("businessRule"));
    object->addAssociatedPhysicalObject(graph.mortal<QORPhysicalObject>("physicalObject"));
    object->addPresentationPresentationElement(graph.mortal<QORProjection>("projection"));
    object->addSourceOfKeyMap(graph.mortal<QORKeyMap>("keyMap"));
    object->addDataPackage(graph.mortal<QORDatabaseSchema>("dataPackage"));
    // The model element level.
    object->addDiagram(graph.mortal<QORClassDiagram>("diagram"));
    // The classifier level.
    object->addAssociatedJoinRole(graph.mortal<QORJoinRole>("joinRole"));
    object->addSourceOfSQLViewAssociation(graph.mortal<QORSQLViewAssociation>("viewAssociation"));
    object->addFeature(graph.mortal<QORAttribute>("feature2"));
    object->addFeature(graph.mortal<QORAttribute>("feature1"));
    object->addDestinationOfClassifierMap(graph.mortal<QORClassMap>("destinationMap"));
    object->addSourceOfClassifierMap(graph.mortal<QORClassMap>("sourceMap"));
    // The class level.
    object->addKey(graph.mortal<QORCandidateKey>("key"));
    object->addIndex(graph.mortal<QORIndex>("index"));
    object->addSpecificationOfRealization(graph.mortal<QORRealization>("specification"));
    object->addSupplierOfDependency(graph.mortal<QORDependency>("supplied"));
    object->addDependency(graph.mortal<QORDependency>("dependency"));
    object->addRealization(graph.mortal<QORRealization>("realization"));
    object->addAssociationRole(graph.mortal<QORAssociationRole>("role"));
    object->addSubtypeOfGeneralization(graph.mortal<QORGeneralization>("subtypeOf"));
    object->addSupertypeOfGeneralization(graph.mortal<QORGeneralization>("supertypeOf"));
    object->addArgument(graph.mortal<QORArgument>("argument"));
    object->addOperation(graph.mortal<QOROperation>("operation"));
    object->addClassType(graph.mortal<QORClassType>("classType"));
    object->addAssociation(graph.mortal<QORAssociation>("association"));
    object->addGrouping(graph.mortal<QORGrouping>("grouping"));
    object->addPrimaryCandidateKey(graph.mortal<QORCandidateKey>("primaryKey"));
    return object;
}

Labels const takenApart = {
    "note",           "propertyValue", "elementNamePart", "elementNode", //
    "synonym1",       "synonym2",      "dataPackage",     "keyMap",         "projection",
    "physicalObject",             //
    "businessRule",   "importer", //
    "diagram",                    //
    "feature1",       "feature2",      "sourceMap",       "destinationMap", "viewAssociation",
    "joinRole", //
    "grouping",       "operation",     "argument",        "index",          "key",
    "primaryKey",     "association", //
    "classType",      "supertypeOf",   "subtypeOf",       "role",           "realization",
    "dependency",     "supplied", //
    "specification",
};

} // namespace

TEST(RecipeRecursiveDelete, GoesFromTheRootClassDownChildrenFirst) {
    Graph graph;
    std::unique_ptr<QORClass> const object(fullClass(graph));
    EXPECT_TRUE(object->recursiveDelete());
    EXPECT_EQ(takenApart, graph.deaths);
    EXPECT_FALSE(object->isReferenced());
}

TEST(RecipeRecursiveDelete, TheDestructorTakesApartInTheSameOrder) {
    Graph graph;
    delete fullClass(graph);
    Labels expected = takenApart;
    expected.insert(expected.begin(), "class");
    EXPECT_EQ(expected, graph.deaths);
}

TEST(RecipeRecursiveDelete, AnObjectOfALibraryClassGoesInTheSameOrderUnderAnOwner) {
    Graph graph;
    auto package = std::make_unique<QORDesignPackage>();
    auto* const object = named<QORClass>("class");
    package->addModelElement(object);
    object->addKey(graph.mortal<QORCandidateKey>("key"));
    object->addOperation(graph.mortal<QOROperation>("operation"));
    object->addGrouping(graph.mortal<QORGrouping>("grouping"));
    object->addRealization(graph.mortal<QORRealization>("realization"));
    object->addFeature(graph.mortal<QORAttribute>("feature"));
    object->addDiagram(graph.mortal<QORClassDiagram>("diagram"));
    object->addSynonym(graph.mortal<QORSynonym>("synonym"));
    object->addNote(graph.mortal<QORNote>("note"));
    package->addNote(graph.mortal<QORNote>("note of the package"));
    package->addStoredProcedure(graph.mortal<QORStoredProcedure>("procedure"));
    package.reset();
    EXPECT_EQ((Labels{"note of the package", "note", "synonym", "diagram", "feature", "grouping", "operation",
                      "key", "realization", "procedure"}),
              graph.deaths);
}

TEST(RecipeRecursiveDelete, AChildsBelongingsGoBeforeTheChild) {
    Graph graph;
    auto* const root = graph.mortal<QORDesignPackage>("root");
    auto* const child = graph.mortal<QORDesignPackage>("child");
    root->addChildPackage(child);
    child->addChildPackage(graph.mortal<QORDesignPackage>("grandchild"));
    child->addNote(graph.mortal<QORNote>("note"));
    child->addModelElement(graph.mortal<QORClass>("class"));
    root->addModelElement(graph.mortal<QORClass>("class of the root"));
    delete root;
    EXPECT_EQ((Labels{"root", "note", "grandchild", "class", "child", "class of the root"}), graph.deaths);
}

TEST(RecipeRecursiveDelete, ReferencedChildrenGoAndTheReferencesToThemAreCleared) {
    Graph graph;
    QORDesignPackage outside;
    auto* const package = new QORDesignPackage;
    auto* const object = graph.mortal<QORClass>("class");
    package->addModelElement(object);
    outside.addImportedModelObject(object);
    outside.addNote(new QORNote);
    delete package;
    EXPECT_EQ(Labels{"class"}, graph.deaths);
    EXPECT_EQ(0, outside.getImportedModelObjectCount());
}

TEST(RecipeRecursiveDelete, AChildsOwnDecisionIsAskedVirtually) {
    class Stubborn : public QORNote {
    public:
        bool recursiveDelete() override {
            ++asked;
            return false;
        }
        int asked = 0;
    } note;
    auto* const package = new QORDesignPackage;
    package->addNote(&note);
    delete package;
    EXPECT_EQ(1, note.asked);
    EXPECT_EQ(nullptr, note.getElement());
}

TEST(RecipeRecursiveDelete, AUnaryChildIsUnlinkedBeforeItIsAsked) {
    class Watching : public QORMetadataOrigin {
    public:
        bool recursiveDelete() override {
            EXPECT_EQ(nullptr, getModel());
            EXPECT_EQ(nullptr, model->getMetadataOrigin());
            return false;
        }
        QORModel* model = nullptr;
    } origin;
    auto* const model = new QORModel;
    origin.model = model;
    model->addMetadataOrigin(&origin);
    delete model;
    EXPECT_EQ(nullptr, origin.getModel());
}

namespace {

/// An owner whose end is looked at while its children go.
class WatchedChild : public QORDesignPackage {
public:
    WatchedChild(QORPackage& watched, std::vector<int>& seen) : owner(watched), counts(seen) {}
    bool recursiveDelete() override {
        counts.push_back(owner.getChildPackageCount());
        EXPECT_EQ(nullptr, getParentPackage());
        EXPECT_TRUE(owner.isReferenced());
        return QORDesignPackage::recursiveDelete();
    }

private:
    QORPackage& owner;
    std::vector<int>& counts;
};

} // namespace

TEST(RecipeRecursiveDelete, TheEndKeepsCountingItsChildrenUntilAllAreGone) {
    std::vector<int> counts;
    QORDesignPackage package;
    for (char const* name : {"a", "b", "c"}) {
        auto* const child = new WatchedChild(package, counts);
        child->setName(name);
        package.addChildPackage(child);
    }
    EXPECT_TRUE(package.recursiveDelete());
    EXPECT_EQ((std::vector<int>{3, 3, 3}), counts);
    EXPECT_EQ(0, package.getChildPackageCount());
}

TEST(RecipeRecursiveDelete, IsRefusedWhileTheObjectIsBeingTakenApart) {
    class Asking : public QORNote {
    public:
        Asking(QORClass& asked, std::vector<bool>& answered) : owner(asked), answers(answered) {}
        ~Asking() override { answers.push_back(owner.recursiveDelete()); }

    private:
        QORClass& owner;
        std::vector<bool>& answers;
    };
    Graph graph;
    std::vector<bool> answers;
    QORClass owner;
    owner.addNote(new Asking(owner, answers));
    owner.addOperation(graph.mortal<QOROperation>("operation"));
    EXPECT_TRUE(owner.recursiveDelete());
    EXPECT_EQ(std::vector<bool>{false}, answers);
    EXPECT_EQ(Labels{"operation"}, graph.deaths);
    EXPECT_FALSE(owner.isReferenced());
}

TEST(RecipeRecursiveDelete, OnTheStackLeavesAnEmptyObjectThatCanBeUsedAgain) {
    QORClass object;
    object.setName("class");
    object.addFeature(named<QORAttribute>("a"));
    EXPECT_TRUE(object.recursiveDelete());
    EXPECT_STREQ("class", object.getName().chars);
    EXPECT_TRUE(object.addFeature(named<QORAttribute>("b")));
    EXPECT_EQ(Labels{"b"}, featuresOf(object));
}

// ---- the destructor -------------------------------------------------------------------------------------

TEST(RecipeDestructor, DeletingAChildLeavesTheOwnerAlive) {
    QORClass owner;
    auto* const a = named<QORAttribute>("a");
    owner.addFeature(a);
    owner.addFeature(named<QORAttribute>("b"));
    delete a;
    EXPECT_EQ(Labels{"b"}, featuresOf(owner));
}

TEST(RecipeDestructor, ASecondOwnerOfTheSameLevelSparesTheChildrenAndWhatIsReferredTo) {
    Graph graph;
    QORClass owner;
    QORGrouping parent;
    auto* const grouping = graph.mortal<QORGrouping>("grouping");
    auto* const child = graph.mortal<QORGrouping>("child");
    auto* const attribute = graph.mortal<QORAttribute>("attribute");
    owner.addGrouping(grouping);
    parent.addChildGrouping(grouping);
    grouping->addChildGrouping(child);
    grouping->addLeafAttribute(attribute);
    grouping->addNote(graph.mortal<QORNote>("note"));
    grouping->addSynonym(graph.mortal<QORSynonym>("synonym"));
    delete grouping;
    EXPECT_EQ((Labels{"grouping", "note", "synonym"}), graph.deaths);
    EXPECT_EQ(nullptr, owner.getGrouping());
    EXPECT_EQ(0, parent.getChildGroupingCount());
    EXPECT_EQ(nullptr, child->getParentGrouping());
    EXPECT_EQ(0, attribute->getGroupingCount());
    delete child;
    delete attribute;
}

TEST(RecipeDestructor, OneOwnerOfTheSameLevelTakesEverythingAlong) {
    Graph graph;
    QORGrouping parent;
    auto* const grouping = graph.mortal<QORGrouping>("grouping");
    parent.addChildGrouping(grouping);
    grouping->addChildGrouping(graph.mortal<QORGrouping>("child"));
    grouping->addLeafAttribute(graph.mortal<QORAttribute>("attribute"));
    delete grouping;
    EXPECT_EQ((Labels{"grouping", "child", "attribute"}), graph.deaths);
    EXPECT_EQ(0, parent.getChildGroupingCount());
}

TEST(RecipeDestructor, AnOwnerOfABaseLevelSparesOnlyTheUpperLevelsChildren) {
    Graph graph;
    QORReport report;
    QORDesignPackage package;
    auto* const object = graph.mortal<QORClass>("class");
    auto* const operation = graph.mortal<QOROperation>("operation");
    report.addClassifier(object);
    package.addModelElement(object);
    object->addOperation(operation);
    object->addFeature(graph.mortal<QORAttribute>("feature"));
    object->addNote(graph.mortal<QORNote>("note"));
    delete object;
    // The class level takes the object out of the report and finds the package: its operation is let go. The
    // classifier level takes it out of the package and finds no owner any more.
    EXPECT_EQ((Labels{"class", "note", "feature"}), graph.deaths);
    EXPECT_EQ(0, report.getClassifierCount());
    EXPECT_EQ(0, package.getModelElementCount());
    EXPECT_EQ(nullptr, operation->getAssociatedClass());
    delete operation;
}

TEST(RecipeDestructor, ThreeOwnersAreAllLeft) {
    QORMappingModel mapping;
    QORReport report;
    QORDesignPackage package;
    auto* const object = named<QORClass>("class");
    ASSERT_TRUE(mapping.addVariableClass(object));
    ASSERT_TRUE(report.addClassifier(object));
    ASSERT_TRUE(package.addModelElement(object));
    EXPECT_EQ(3, object->getParentCount());
    delete object;
    EXPECT_EQ(nullptr, mapping.getVariableClass());
    EXPECT_EQ(0, report.getClassifierCount());
    EXPECT_EQ(0, package.getModelElementCount());
}

TEST(RecipeDestructor, ACallersOverridesAreNotReached) {
    class Careless : public QORClass {
    public:
        QORObject* removeAggregationAssembly() override {
            ADD_FAILURE() << "called from a destructor";
            return nullptr;
        }
        bool recursiveDelete() override {
            ADD_FAILURE() << "called from a destructor";
            return false;
        }
    };
    QORDesignPackage package;
    auto* const object = new Careless;
    package.addModelElement(object);
    object->addFeature(new QORAttribute);
    delete object;
    EXPECT_EQ(0, package.getModelElementCount());
}

// ---- isolate --------------------------------------------------------------------------------------------

TEST(RecipeIsolate, WithDeletionGoesFromTheClassUpUnaryEndsFirst) {
    Graph graph;
    std::unique_ptr<QORClass> const object(fullClass(graph));
    object->addReport(graph.mortal<QORReport>("report"));
    object->addDesignPackage(graph.mortal<QORDesignPackage>("package"));
    object->addMappingModel(graph.mortal<QORMappingModel>("mappingModel"));
    EXPECT_EQ(object.get(), object->isolate(true));
    EXPECT_EQ((Labels{
                  "primaryKey",   "grouping",        "association",     "classType",
                  "mappingModel", //
                  "operation",    "argument",        "supertypeOf",     "subtypeOf",
                  "role",         "realization",     "dependency",             //
                  "supplied",     "specification",   "index",           "key", //
                  "report",       "sourceMap",       "destinationMap",  "feature1",
                  "feature2",     "viewAssociation", //
                  "joinRole",                        //
                  "package",      "diagram",         //
                  "dataPackage",  "keyMap",          "projection",      "physicalObject",
                  "businessRule", "synonym1", //
                  "synonym2",     "importer", //
                  "note",         "propertyValue",   "elementNamePart", "elementNode",
              }),
              graph.deaths);
    EXPECT_FALSE(object->isReferenced());
}

TEST(RecipeIsolate, WithDeletionSparesWhatIsStillReferenced) {
    Graph graph;
    QORClass object;
    QORDesignPackage package;
    package.addNote(new QORNote);
    package.addModelElement(&object);
    auto* const feature = graph.mortal<QORAttribute>("feature");
    feature->addNote(new QORNote);
    object.addFeature(feature);
    object.isolate(true);
    EXPECT_TRUE(graph.deaths.empty());
    EXPECT_EQ(nullptr, feature->getClassifier());
    EXPECT_EQ(0, package.getModelElementCount());
    delete feature;
}

TEST(RecipeIsolate, WithoutDeletionLeavesAllFarObjectsAlive) {
    Graph graph;
    QORClass object;
    QORDesignPackage package;
    package.addModelElement(&object);
    std::unique_ptr<QORObject> const far[] = {
        std::unique_ptr<QORObject>(graph.mortal<QORGrouping>("grouping")),
        std::unique_ptr<QORObject>(graph.mortal<QORAttribute>("a")),
        std::unique_ptr<QORObject>(graph.mortal<QORAttribute>("b")),
        std::unique_ptr<QORObject>(graph.mortal<QORGeneralization>("generalization")),
        std::unique_ptr<QORObject>(graph.mortal<QORNote>("note")),
        std::unique_ptr<QORObject>(graph.mortal<QORCandidateKey>("key")),
    };
    object.addGrouping(static_cast<QORGrouping*>(far[0].get()));
    object.addFeature(static_cast<QORAttribute*>(far[1].get()));
    object.addFeature(static_cast<QORAttribute*>(far[2].get()));
    object.addSubtypeOfGeneralization(static_cast<QORGeneralization*>(far[3].get()));
    object.addNote(static_cast<QORNote*>(far[4].get()));
    object.addPrimaryCandidateKey(static_cast<QORCandidateKey*>(far[5].get()));
    EXPECT_EQ(&object, object.isolate(false));
    EXPECT_TRUE(graph.deaths.empty());
    EXPECT_FALSE(object.isReferenced());
    EXPECT_FALSE(package.isReferenced());
    for (auto const& each : far)
        EXPECT_FALSE(each->isReferenced()) << each->getName().chars;
}

TEST(RecipeIsolate, OfAFreeObjectDoesNothing) {
    QORClass object;
    EXPECT_EQ(&object, object.isolate(true));
    EXPECT_EQ(&object, object.isolate(false));
    EXPECT_FALSE(object.isReferenced());
}

// ---- setName --------------------------------------------------------------------------------------------

TEST(RecipeSetName, WithoutAnOwnerJustNames) {
    QORAggregationRule rule;
    rule.setName("r");
    EXPECT_STREQ("r", rule.getName().chars);
}

TEST(RecipeSetName, AFreeNameMovesTheChildInItsOwnersOrder) {
    QORClass owner;
    auto* const a = named<QORAttribute>("a");
    owner.addFeature(a);
    owner.addFeature(named<QORAttribute>("b"));
    owner.addFeature(named<QORAttribute>("c"));
    a->setName("bb");
    EXPECT_EQ((Labels{"b", "bb", "c"}), featuresOf(owner));
    EXPECT_EQ(a, owner.getFeature(1));
    EXPECT_EQ(&owner, a->getClassifier());
    EXPECT_EQ(a, owner.getAttribute("bb", nullptr));
    EXPECT_EQ(nullptr, owner.getAttribute("a", nullptr));
    a->setName("bb"); // its own name is free for it
    EXPECT_EQ((Labels{"b", "bb", "c"}), featuresOf(owner));
    a->setName("");
    EXPECT_EQ((Labels{"", "b", "c"}), featuresOf(owner));
}

TEST(RecipeSetName, ATakenNameIsRefusedAndEverythingIsAsItWas) {
    QORClass owner;
    for (char const* name : {"a", "b", "c"})
        owner.addFeature(named<QORAttribute>(name));
    QORFeature* const b = owner.getFeature(1);
    EXPECT_EQ(alreadyContains("Classifier", "Feature"), refusalOf(*b, "c"));
    EXPECT_STREQ("b", b->getName().chars);
    EXPECT_EQ(&owner, b->getClassifier());
    EXPECT_EQ((Labels{"a", "b", "c"}), featuresOf(owner));
    EXPECT_EQ(b, owner.getFeature(1));
    EXPECT_TRUE(owner.removeFeature("b", nullptr));
}

TEST(RecipeSetName, TheMessagesNameTheClassesOfBothEnds) {
    QOROperation operation;
    operation.addArgument(named<QORArgument>("a"));
    operation.addArgument(named<QORArgument>("b"));
    EXPECT_EQ(alreadyContains("Operation", "Argument"), refusalOf(*operation.getArgument(0), "b"));

    QORClass parameterized;
    parameterized.addArgument(named<QORArgument>("a"));
    parameterized.addArgument(named<QORArgument>("b"));
    EXPECT_EQ(alreadyContains("Class", "Argument"), refusalOf(*parameterized.getArgument(0), "b"));

    QORAssociationRole role;
    role.addQualifierAttribute(named<QORAttribute>("a"));
    role.addQualifierAttribute(named<QORAttribute>("b"));
    EXPECT_EQ(alreadyContains("AssociationRole", "Attribute"),
              refusalOf(*role.getQualifierAttribute(0), "b"));

    QORDesignPackage package;
    package.addModelElement(named<QORClass>("a"));
    package.addModelElement(named<QORClass>("b"));
    EXPECT_EQ(alreadyContains("DesignPackage", "ModelElement"), refusalOf(*package.getModelElement(0), "b"));
    package.addChildPackage(named<QORDesignPackage>("a"));
    package.addChildPackage(named<QORDesignPackage>("b"));
    EXPECT_EQ(alreadyContains("Package", "Package"), refusalOf(*package.getChildPackage(0), "b"));
}

TEST(RecipeSetName, ACollisionIsWhatTheOwnersOrderSays) {
    QORDesignPackage package;
    auto* const a = named<QORAssociation>("a");
    package.addModelElement(a);
    package.addModelElement(named<QORAssociation>("b"));
    package.addModelElement(named<QORClass>("c"));
    package.addModelElement(named<QORSQLViewEntity>("v"));
    a->setName("b"); // relationships may share a name
    a->setName("c"); // and differ from classes by their type
    EXPECT_EQ(alreadyContains("DesignPackage", "ModelElement"), refusalOf(*package.getModelElement(3), "c"));

    QOROperation operation;
    operation.addArgument(named<QORArgument>("x"));
    operation.addArgument(named<QORArgument>("y"));
    operation.getArgument(1)->setName("");
    operation.getArgument(1)->setName(""); // any number may be unnamed
    EXPECT_EQ((Labels{"", ""}), argumentsOf(operation));
}

TEST(RecipeSetName, EveryPositionStaysRightAfterARenameWhereverTheCursorStood) {
    char const* const start[] = {"b", "d", "f", "h", "j"};
    char const* const targets[] = {"a", "c", "e", "g", "i", "k", "b", "d", "f", "h", "j"};
    for (int cursor = -1; cursor < 5; ++cursor) {
        for (int which = 0; which < 5; ++which) {
            for (char const* const target : targets) {
                QORClass owner;
                std::vector<std::string> expected(start, start + 5);
                for (char const* name : start)
                    owner.addFeature(named<QORAttribute>(name));
                QORFeature* const renamed = owner.getFeature(which);
                if (cursor >= 0)
                    owner.getFeature(cursor);
                bool const taken = std::find(expected.begin(), expected.end(), target) != expected.end() &&
                                   expected[static_cast<std::size_t>(which)] != target;
                EXPECT_EQ(taken, !refusalOf(*renamed, target).empty());
                if (!taken) {
                    expected[static_cast<std::size_t>(which)] = target;
                    std::sort(expected.begin(), expected.end());
                }
                for (int i = 4; i >= 0; --i)
                    EXPECT_EQ(expected[static_cast<std::size_t>(i)], owner.getFeature(i)->getName().chars)
                        << cursor << which << target;
                EXPECT_EQ(expected, featuresOf(owner)) << cursor << which << target;
            }
        }
    }
}

TEST(RecipeSetName, AnElementUnderTheCursorOfARefusedRenameIsStillRead) {
    QORClass owner;
    for (char const* name : {"a", "b", "c"})
        owner.addFeature(named<QORAttribute>(name));
    QORFeature* const b = owner.getFeature(1);
    EXPECT_NE("", refusalOf(*b, "a"));
    EXPECT_EQ(b, owner.getFeature(1));
    EXPECT_STREQ("c", owner.getFeature(2)->getName().chars);
    EXPECT_EQ(b, owner.getFeature(1));
}

TEST(RecipeSetName, ARenamedElementOfAVectorGoesToTheEnd) {
    QORAssociation association;
    for (char const* name : {"a", "b", "c"})
        association.addAssociationRole(named<QORAssociationRole>(name));
    association.getAssociationRole(0)->setName("x");
    EXPECT_EQ((Labels{"b", "c", "x"}), rolesOf(association));
    association.getAssociationRole(1)->setName("c");
    EXPECT_EQ((Labels{"b", "x", "c"}), rolesOf(association));
    association.getAssociationRole(2)->setName("b"); // a vector refuses no name
    EXPECT_EQ((Labels{"b", "x", "b"}), rolesOf(association));
}

TEST(RecipeSetName, AUnaryOwnerKeepsTheRenamedChild) {
    QORModel model;
    auto* const origin = named<QORMetadataOrigin>("o");
    model.addMetadataOrigin(origin);
    origin->setName("p");
    EXPECT_EQ(origin, model.getMetadataOrigin());
    EXPECT_EQ(&model, origin->getModel());
    EXPECT_STREQ("p", origin->getName().chars);
}

TEST_F(RecipeOwners, RenamingUpdatesTheFirstOwnerOnly) {
    operation.addArgument(named<QORArgument>("m"));
    parameterized.addArgument(named<QORArgument>("m"));
    parameterized.addArgument(named<QORArgument>("z"));
    argument->addOperation(&operation);
    argument->addParameterizedClass(&parameterized);
    argument->setName("z"); // taken in the class, which isn't asked
    EXPECT_EQ((Labels{"m", "z"}), argumentsOf(operation));
    EXPECT_EQ(3, parameterized.getArgumentCount());
    EXPECT_EQ(argument, parameterized.getArgument(0)); // where it stood as "argument"
    EXPECT_EQ(alreadyContains("Operation", "Argument"), refusalOf(*argument, "m"));
    EXPECT_STREQ("z", argument->getName().chars);
    EXPECT_EQ(2, argument->getParentCount());
}

TEST_F(RecipeOwners, RenamingUnderTheSecondOwnerUpdatesThatOne) {
    parameterized.addArgument(named<QORArgument>("m"));
    argument->addParameterizedClass(&parameterized);
    argument->setName("z");
    EXPECT_EQ(argument, parameterized.getArgument(1));
    EXPECT_EQ(alreadyContains("Class", "Argument"), refusalOf(*argument, "m"));
}

TEST(RecipeSetName, WithoutAnOwnOwnerTheBaseClassesFormIsUsed) {
    QORClass owner;
    auto* const attribute = named<QORAttribute>("a");
    owner.addFeature(attribute);
    owner.addFeature(named<QORAttribute>("b"));
    EXPECT_EQ(alreadyContains("Classifier", "Feature"), refusalOf(*attribute, "b"));
    QORAssociationRole role;
    role.addQualifierAttribute(attribute);
    attribute->setName("b"); // the role comes first, and it has no such child
    EXPECT_STREQ("b", attribute->getName().chars);
    EXPECT_EQ(attribute, owner.getFeature(0));
}

TEST(RecipeSetName, ReferringContainersAreNotReordered) {
    QORDesignPackage first;
    QORDesignPackage importer;
    auto* const a = named<QORClass>("a");
    auto* const b = named<QORClass>("b");
    first.addModelElement(a);
    first.addModelElement(b);
    importer.addImportedModelObject(a);
    importer.addImportedModelObject(b);
    a->setName("z");
    EXPECT_EQ(a, importer.getImportedModelObject(0));
    EXPECT_EQ(b, importer.getImportedModelObject(1));
    EXPECT_EQ(a, first.getModelElement(1));
}

// ---- transcode ------------------------------------------------------------------------------------------

namespace {

/// Notes each name that it is given.
template <class Base>
class NamedInLog : public Base {
public:
    NamedInLog(Labels& names, char const* title) : log(&names) { this->name = title; }
    NamedInLog(NamedInLog const&) = delete;
    NamedInLog& operator=(NamedInLog const&) = delete;
    void setName(QORString const& wanted) override {
        log->push_back(wanted.chars);
        Base::setName(wanted);
    }

private:
    Labels* log;
};

class RecipeTranscode : public ::testing::Test {
protected:
    void transcode(QORObject& object, char const* from, char const* to) {
        std::unique_ptr<QOREncodingConverter> const source(QOREncodingConverter::create(from));
        std::unique_ptr<QOREncodingConverter> const target(QOREncodingConverter::create(to));
        ASSERT_NE(nullptr, source);
        ASSERT_NE(nullptr, target);
        object.transcode(source.get(), target.get(), converted, failed);
    }

    int converted = 0;
    int failed = 0;
};

} // namespace

TEST_F(RecipeTranscode, GoesFromTheRootClassDownUnaryChildrenFirst) {
    Labels names;
    NamedInLog<QORClass> root(names, "class");
    root.addKey(new NamedInLog<QORCandidateKey>(names, "key"));
    root.addIndex(new NamedInLog<QORIndex>(names, "index"));
    root.addArgument(new NamedInLog<QORArgument>(names, "argument"));
    root.addOperation(new NamedInLog<QOROperation>(names, "operation"));
    root.addGrouping(new NamedInLog<QORGrouping>(names, "grouping"));
    root.addFeature(new NamedInLog<QORAttribute>(names, "feature2"));
    root.addFeature(new NamedInLog<QORAttribute>(names, "feature1"));
    root.addSynonym(new NamedInLog<QORSynonym>(names, "synonym"));
    root.addNote(new NamedInLog<QORNote>(names, "note"));
    transcode(root, "ISO-8859-1", "UTF-8");
    EXPECT_EQ((Labels{"class", "note", "synonym", "feature1", "feature2", "grouping", "operation", "argument",
                      "index", "key"}),
              names);
    EXPECT_EQ(12, converted); // and the multiplicities of the class and of the grouping
}

TEST_F(RecipeTranscode, ObjectsOfLibraryClassesPassOnInTheSameOrder) {
    Labels names;
    QORDesignPackage root;
    auto* const a = named<QORDesignPackage>("a");
    auto* const b = named<QORDesignPackage>("b");
    root.addChildPackage(a);
    root.addChildPackage(b);
    a->addModelElement(new NamedInLog<QORAssociation>(names, "association of a"));
    a->addChildPackage(new NamedInLog<QORDesignPackage>(names, "package of a"));
    a->addNote(new NamedInLog<QORNote>(names, "note of a"));
    b->addNote(new NamedInLog<QORNote>(names, "note of b"));
    root.addModelElement(new NamedInLog<QORAssociation>(names, "association"));
    root.addNote(new NamedInLog<QORNote>(names, "note"));
    transcode(root, "ISO-8859-1", "UTF-8");
    EXPECT_EQ((Labels{"note", "note of a", "package of a", "association of a", "note of b", "association"}),
              names);
}

TEST_F(RecipeTranscode, OwnStringsComeBeforeTheBasesAndTheName) {
    class Watching : public QORClass {
    public:
        void setName(QORString const& wanted) override {
            EXPECT_STREQ("\xC3\xA9", getCppMultiplicity().chars);
            EXPECT_STREQ("\xC3\xA9", getComment().chars);
            EXPECT_STREQ("\xC3\xA9", getDescription().chars);
            EXPECT_EQ(0, getSynonymCount() ? std::string(getSynonym(0)->getName().chars).compare("\xE9") : 1);
            ++named;
            QORClass::setName(wanted);
        }
        int named = 0;
    } object;
    object.setCppMultiplicity("\xE9");
    object.setComment("\xE9");
    object.setDescription("\xE9");
    object.addSynonym(::named<QORSynonym>("\xE9"));
    object.QORObject::setName("\xE9");
    transcode(object, "ISO-8859-1", "UTF-8");
    EXPECT_EQ(1, object.named);
    EXPECT_STREQ("\xC3\xA9", object.getSynonym(0)->getName().chars);
    EXPECT_EQ(5, converted);
}

TEST_F(RecipeTranscode, ReferencesAreNotFollowed) {
    QORDesignPackage package;
    QORClass imported;
    imported.setName("\xE9");
    package.addImportedModelObject(&imported);
    transcode(package, "ISO-8859-1", "UTF-8");
    EXPECT_STREQ("\xE9", imported.getName().chars);
    EXPECT_EQ(0, converted);
    package.removeImportedModelObject(&imported);
}

TEST_F(RecipeTranscode, EachChildIsConvertedOnceThoughItsNewNameMovesIt) {
    QORClass owner;
    // In this encoding "+AHo-" stands for z and "+AHk-" for y: the order is turned round.
    for (char const* name : {"+AHo-", "+AHk-", "b", "c"})
        owner.addFeature(named<QORAttribute>(name));
    owner.setCppMultiplicity("");
    transcode(owner, "UTF-7", "UTF-8");
    EXPECT_EQ((Labels{"b", "c", "y", "z"}), featuresOf(owner));
    EXPECT_EQ(4, converted);
    EXPECT_EQ(0, failed);
}

TEST_F(RecipeTranscode, ACollisionAddsASlashAndTheFirstFreeNumber) {
    QORClass owner;
    for (char const* name : {"+AEE-", "A", "A/1"})
        owner.addFeature(named<QORAttribute>(name));
    QORFeature* const colliding = owner.getFeature(0);
    transcode(owner, "UTF-7", "UTF-8");
    EXPECT_EQ((Labels{"A", "A/1", "A/2"}), featuresOf(owner));
    EXPECT_EQ(colliding, owner.getFeature(2));
    EXPECT_EQ(&owner, colliding->getClassifier());
}

TEST_F(RecipeTranscode, TwoNamesThatBecomeEqualAreToldApart) {
    QORDesignPackage package;
    package.addChildPackage(named<QORDesignPackage>("+AEE-"));
    package.addChildPackage(named<QORDesignPackage>("A"));
    transcode(package, "UTF-7", "UTF-8");
    EXPECT_STREQ("A", package.getChildPackage(0)->getName().chars);
    EXPECT_STREQ("A/1", package.getChildPackage(1)->getName().chars);
}

TEST_F(RecipeTranscode, TwoObjectsMayShareAConvertedNameWhereTheOwnerAllowsIt) {
    QORAssociation association;
    association.addAssociationRole(named<QORAssociationRole>("+AEE-"));
    association.addAssociationRole(named<QORAssociationRole>("A"));
    transcode(association, "UTF-7", "UTF-8");
    EXPECT_EQ((Labels{"A", "A"}), rolesOf(association));
}

TEST_F(RecipeTranscode, AFailureHoldsNothingElseBack) {
    QORDesignPackage package;
    package.setName("\xC3\xA9");
    package.setComment("\xFF");
    package.setStereotype("\xC3\xA9");
    package.setDescription("\xFF");
    package.setNativeType("\xC3\xA9");
    package.addChildPackage(named<QORDesignPackage>("\xFF"));
    package.addChildPackage(named<QORDesignPackage>("\xC3\xA9"));
    transcode(package, "UTF-8", "ISO-8859-1");
    EXPECT_STREQ("\xE9", package.getName().chars);
    EXPECT_STREQ("\xFF", package.getComment().chars);
    EXPECT_STREQ("\xE9", package.getStereotype().chars);
    EXPECT_STREQ("\xFF", package.getDescription().chars);
    EXPECT_STREQ("\xE9", package.getNativeType().chars);
    EXPECT_STREQ("\xE9", package.getChildPackage(0)->getName().chars);
    EXPECT_STREQ("\xFF", package.getChildPackage(1)->getName().chars);
    EXPECT_EQ(4, converted);
    EXPECT_EQ(3, failed);
}

TEST_F(RecipeTranscode, CountersAddUpOverCalls) {
    QORDesignPackage package;
    package.setName("a");
    transcode(package, "UTF-8", "ISO-8859-1");
    transcode(package, "UTF-8", "ISO-8859-1");
    EXPECT_EQ(2, converted);
}

// ---- copying and equality -------------------------------------------------------------------------------

TEST(RecipeCopy, StandsAlone) {
    QORMeasure source;
    source.setName("m");
    source.setID(7);
    source.setHide(true);
    source.addAggregationRule(new QORAggregationRule);
    QORClass owner;
    owner.addFeature(&source);
    QORMeasure const copy(source);
    EXPECT_EQ(0, copy.getID());
    EXPECT_STREQ("m", copy.getName().chars);
    EXPECT_TRUE(copy.getHide());
    EXPECT_EQ(0, copy.getAggregationRuleCount());
    EXPECT_EQ(nullptr, copy.getParent());
    EXPECT_FALSE(copy.isReferenced());
    EXPECT_EQ(QORElementType::MEASURE, copy.getElementType());
    EXPECT_EQ(1, source.getAggregationRuleCount());
    source.removeClassifier(&owner);
}

TEST(RecipeCopy, AssignmentKeepsTheLinksOfBothSidesAndTheId) {
    QORMeasure source;
    source.setHide(true);
    source.setID(7);
    auto* const rule = new QORAggregationRule;
    source.addAggregationRule(rule);
    QORMeasure target;
    target.setID(9);
    auto* const own = new QORAggregationRule;
    target.addAggregationRule(own);
    EXPECT_EQ(&target, &(target = source));
    EXPECT_TRUE(target.getHide());
    EXPECT_EQ(9, target.getID());
    EXPECT_EQ(1, target.getAggregationRuleCount());
    EXPECT_EQ(own, target.getAggregationRule(0));
    EXPECT_EQ(&source, rule->getMeasure());
}

TEST(RecipeCopy, SetFromIsTheAssignment) {
    QORMeasure source;
    source.setName("m");
    source.setHide(true);
    QORMeasure target;
    QORObject& asObject = target;
    EXPECT_EQ(&target, &asObject.setFrom(source));
    EXPECT_TRUE(target.getHide());
    EXPECT_STREQ("m", target.getName().chars);
}

TEST(RecipeEquality, OnlyObjectsOfExactlyTheSameClassAreEqual) {
    QOROperation operation;
    QORStoredProcedure procedure;
    operation.setName("x");
    procedure.setName("x");
    EXPECT_FALSE(operation.equals(procedure));
    EXPECT_FALSE(procedure.equals(operation));
    EXPECT_TRUE(operation != procedure);
}

TEST(RecipeEquality, AttributesCountAndLinksDoNot) {
    QORMeasure a;
    QORMeasure b;
    EXPECT_TRUE(a == b);
    a.addAggregationRule(new QORAggregationRule);
    a.addNote(new QORNote);
    a.setID(3);
    EXPECT_TRUE(a == b);
    a.setHide(!a.getHide());
    EXPECT_FALSE(a == b);
    b.setHide(a.getHide());
    EXPECT_TRUE(a == b);
    a.setName("n");
    EXPECT_TRUE(a != b);
}

TEST(RecipeEquality, DatesDoNotCount) {
    QORModel a;
    QORModel b;
    QORDate date;
    QORString text("12:30:00 2001-02-03");
    date.setDate(text);
    a.setCreationTime(date);
    EXPECT_TRUE(a == b);
}

// ---- class-qualified calls ------------------------------------------------------------------------------

namespace {

/// A class in a report and a design package, with something on each level.
struct Levels : public ::testing::Test {
    Levels() {
        object = named<QORClass>("class");
        report.addClassifier(object);
        package.addModelElement(object);
    }
    ~Levels() override { delete object; }
    Levels(Levels const&) = delete;
    Levels& operator=(Levels const&) = delete;

    QORReport report;
    QORDesignPackage package;
    QORClass* object;
};

using RecipeLevels = Levels;

} // namespace

TEST_F(RecipeLevels, IsReferenced) {
    EXPECT_TRUE(object->QORClass::isReferenced());
    EXPECT_TRUE(object->QORClassifier::isReferenced());
    EXPECT_TRUE(object->QORModelElement::isReferenced());
    EXPECT_FALSE(object->QORModelObject::isReferenced());
    object->addSynonym(new QORSynonym);
    EXPECT_TRUE(object->QORModelObject::isReferenced());
    EXPECT_FALSE(object->QORElement::isReferenced());
    object->addNote(new QORNote);
    EXPECT_TRUE(object->QORElement::isReferenced());
    EXPECT_FALSE(object->QORObject::isReferenced());
    report.removeClassifier(object);
    object->removeSynonyms();
    object->removeNotes();
    package.removeModelElement(object);
    object->addOperation(new QOROperation);
    EXPECT_TRUE(object->QORClass::isReferenced());
    EXPECT_FALSE(object->QORClassifier::isReferenced());
}

TEST_F(RecipeLevels, GetParentAndGetParentCount) {
    QORMappingModel mapping;
    mapping.addVariableClass(object);
    EXPECT_EQ(&mapping, object->QORClass::getParent());
    EXPECT_EQ(&report, object->QORClassifier::getParent());
    EXPECT_EQ(&package, object->QORModelElement::getParent());
    EXPECT_EQ(nullptr, object->QORModelObject::getParent());
    EXPECT_EQ(3, object->QORClass::getParentCount());
    EXPECT_EQ(2, object->QORClassifier::getParentCount());
    EXPECT_EQ(1, object->QORModelElement::getParentCount());
    EXPECT_EQ(0, object->QORModelObject::getParentCount());
    mapping.removeVariableClass(object);
}

TEST_F(RecipeLevels, RemoveAggregationAssembly) {
    EXPECT_EQ(nullptr, object->QORModelObject::removeAggregationAssembly());
    EXPECT_EQ(2, object->getParentCount());
    EXPECT_EQ(&package, object->QORModelElement::removeAggregationAssembly());
    EXPECT_EQ(&report, object->getParent());
    EXPECT_EQ(0, package.getModelElementCount());
}

TEST_F(RecipeLevels, RecursiveDelete) {
    object->addOperation(new QOROperation);
    object->addFeature(new QORAttribute);
    object->addSynonym(new QORSynonym);
    object->addNote(new QORNote);
    EXPECT_FALSE(object->QORClass::recursiveDelete());
    EXPECT_FALSE(object->QORModelElement::recursiveDelete());
    EXPECT_EQ(1, object->getNoteCount());
    EXPECT_TRUE(object->QORElement::recursiveDelete()); // no owner is known at this level
    EXPECT_EQ(0, object->getNoteCount());
    EXPECT_EQ(1, object->getSynonymCount());
    EXPECT_TRUE(object->QORModelObject::recursiveDelete());
    EXPECT_EQ(0, object->getSynonymCount());
    EXPECT_EQ(1, object->getFeatureCount());
    report.removeClassifier(object);
    package.removeModelElement(object);
    EXPECT_TRUE(object->QORClassifier::recursiveDelete());
    EXPECT_EQ(0, object->getFeatureCount());
    EXPECT_EQ(1, object->getOperationCount());
    EXPECT_TRUE(object->QORObject::recursiveDelete());
    EXPECT_EQ(1, object->getOperationCount());
}

TEST_F(RecipeLevels, Isolate) {
    object->addSynonym(new QORSynonym);
    object->addNote(new QORNote);
    EXPECT_EQ(object, object->QORElement::isolate(true));
    EXPECT_EQ(0, object->getNoteCount());
    EXPECT_EQ(1, object->getSynonymCount());
    EXPECT_EQ(object, object->QORModelObject::isolate(true));
    EXPECT_EQ(0, object->getSynonymCount());
    EXPECT_EQ(2, object->getParentCount());
    EXPECT_EQ(object, object->QORModelElement::isolate(false));
    EXPECT_EQ(&report, object->getParent());
    EXPECT_EQ(1, object->getParentCount());
    EXPECT_EQ(object, object->QORObject::isolate(true));
    EXPECT_EQ(1, object->getParentCount());
}

TEST_F(RecipeLevels, SetName) {
    auto* const other = named<QORClass>("other");
    package.addModelElement(other);
    object->QORModelElement::setName("zzz");
    EXPECT_EQ(object, package.getModelElement(1));
    EXPECT_STREQ("zzz", object->getName().chars);
    EXPECT_THROW(object->QORModelElement::setName("other"), QORException);
    object->QORClass::setName("other"); // re-keys in the report, where the name is free
    EXPECT_STREQ("other", object->getName().chars);
    object->QORObject::setName("aaa");
    EXPECT_EQ(object, package.getModelElement(1)); // a plain assignment
}

TEST_F(RecipeLevels, IsInstanceOf) {
    EXPECT_TRUE(object->isInstanceOf(QORElementType::CLASS));
    EXPECT_FALSE(object->QORClassifier::isInstanceOf(QORElementType::CLASS));
    EXPECT_TRUE(object->QORClassifier::isInstanceOf(QORElementType::CLASSIFIER));
    EXPECT_TRUE(object->QORClassifier::isInstanceOf(QORElementType::OBJECT));
    EXPECT_FALSE(object->QORElement::isInstanceOf(QORElementType::MODEL_OBJECT));
}

TEST_F(RecipeLevels, Transcode) {
    std::unique_ptr<QOREncodingConverter> const latin(QOREncodingConverter::create("ISO-8859-1"));
    std::unique_ptr<QOREncodingConverter> const utf8(QOREncodingConverter::create("UTF-8"));
    object->setDescription("\xE9");
    object->setComment("\xE9");
    object->setCppMultiplicity("\xE9");
    object->addNote(named<QORNote>("\xE9"));
    object->addSynonym(named<QORSynonym>("\xE9"));
    object->addFeature(named<QORAttribute>("\xE9"));
    int converted = 0;
    int failed = 0;
    object->QORElement::transcode(latin.get(), utf8.get(), converted, failed);
    EXPECT_EQ(3, converted); // description, name and note
    EXPECT_STREQ("\xE9", object->getComment().chars);
    EXPECT_STREQ("\xC3\xA9", object->getDescription().chars);
    EXPECT_STREQ("\xE9", object->getSynonym(0)->getName().chars);
    EXPECT_STREQ("\xE9", object->getFeature(0)->getName().chars);
    EXPECT_STREQ("\xE9", object->getCppMultiplicity().chars);
}

TEST_F(RecipeLevels, FinalEquals) {
    QORClass other;
    other.setName("class");
    other.setStereotype("s");
    EXPECT_FALSE(object->QORModelObject::finalEquals(other));
    EXPECT_TRUE(object->QORElement::finalEquals(other));
    other.setNativeType("t");
    EXPECT_FALSE(object->QORElement::finalEquals(other));
    EXPECT_TRUE(object->QORObject::finalEquals(other));
}

TEST_F(RecipeLevels, Assignment) {
    QORClass other;
    other.setName("class");
    other.setStereotype("s");
    other.setDescription("d");
    other.setCppSpace(5);
    object->QORElement::operator=(other);
    EXPECT_STREQ("d", object->getDescription().chars);
    EXPECT_STREQ("", object->getStereotype().chars);
    object->QORModelObject::operator=(other);
    EXPECT_STREQ("s", object->getStereotype().chars);
    EXPECT_EQ(0, object->getCppSpace());
}

// ---- links that a caller's classes make themselves ------------------------------------------------------

namespace {

/// A note whose end a caller's class sets.
class OpenNote : public QORNote {
public:
    explicit OpenNote(int& deathCount) : deaths(deathCount) {}
    OpenNote(OpenNote const&) = delete;
    OpenNote& operator=(OpenNote const&) = delete;
    ~OpenNote() override { ++deaths; }

    QORObject** end() { return &element_.far; }

private:
    int& deaths;
};

class SelfLinkingClass : public QORClass {
public:
    bool adopt(OpenNote& note) { return _addnu(&note_, note.end(), &note); }
    bool disown(OpenNote& note) {
        *note.end() = nullptr;
        return _removen(&note_, &note);
    }
    bool disown(QORString const& title) {
        int cursor = 0;
        auto* const note = static_cast<OpenNote*>(_removen(&note_, title, &cursor));
        if (note)
            *note->end() = nullptr;
        return note;
    }
    /// Takes the note out and in again, so that another node of the tree holds it.
    bool hangAnew(OpenNote& note) {
        QORRBTree::Iterator const keepsTheNode(note_, true);
        return _removen(&note_, &note) && note_->add(&note, true, nullptr);
    }
};

class SelfLinkingAssociation : public QORAssociation {
public:
    /// Links a role to this object alone, in a vector, and takes the link apart again.
    bool holdForAMoment(QORAssociationRole& role) {
        QORObject* far = nullptr;
        return _addnu(&associationRole_, &far, &role) && _removen(&associationRole_, &role);
    }
};

} // namespace

TEST(Recipe, SeesTheLinksThatACallersClassMade) {
    int deaths = 0;
    {
        SelfLinkingClass owner;
        owner.setName("owner");
        EXPECT_FALSE(owner.isReferenced());
        for (int i = 0; i < 3; ++i)
            ASSERT_TRUE(owner.adopt(*new OpenNote(deaths)));
        EXPECT_TRUE(owner.isReferenced());
        QORNote* const note = owner.getNote(0);
        EXPECT_TRUE(note->isReferenced());
        EXPECT_EQ(note->getParent(), &owner);
        EXPECT_TRUE(owner.removeNote(note));
        EXPECT_FALSE(note->isReferenced());
        EXPECT_EQ(note->getParent(), nullptr);
        note->setName("alone");
        EXPECT_STREQ(note->getName().chars, "alone");
        EXPECT_EQ(deaths, 0);
        delete note;
        EXPECT_EQ(deaths, 1);
        EXPECT_EQ(owner.getNoteCount(), 2);
    }
    EXPECT_EQ(deaths, 3);
}

TEST(Recipe, SeesThatACallersClassHasTakenALinkApart) {
    int deaths = 0;
    OpenNote first(deaths);
    OpenNote second(deaths);
    second.setName("second");
    SelfLinkingClass owner;
    ASSERT_TRUE(owner.addNote(&first));
    EXPECT_TRUE(owner.disown(first));
    EXPECT_FALSE(owner.isReferenced());

    SelfLinkingClass other;
    ASSERT_TRUE(other.addNote(&second));
    EXPECT_TRUE(other.disown("second"));
    EXPECT_FALSE(other.isReferenced());
    EXPECT_EQ(deaths, 0);
}

TEST(Recipe, DeletesAnObjectOfWhichACallersClassHasClearedAUnaryEnd) {
    class Forgetting : public QORClass {
    public:
        void forgetGrouping() { grouping_ = nullptr; }
    };
    int deaths = 0;
    QORGrouping grouping;
    auto owner = std::make_unique<Forgetting>();
    ASSERT_TRUE(owner->addNote(new OpenNote(deaths)));
    ASSERT_TRUE(owner->addGrouping(&grouping));
    owner->forgetGrouping();
    ASSERT_TRUE(grouping.removeAssociatedClass(owner.get()));
    owner.reset();
    EXPECT_EQ(deaths, 1);
}

TEST(Recipe, FreesTheMemoryOfAnEndThatACallersClassHasEmptied) {
    QORAssociationRole role;
    long const before = liveAllocations();
    {
        SelfLinkingAssociation association;
        ASSERT_TRUE(association.holdForAMoment(role));
        EXPECT_FALSE(association.isReferenced());
    }
    EXPECT_EQ(liveAllocations(), before);
}

TEST(Recipe, FindsAnElementThatACallersClassHasHungAnew) {
    int deaths = 0;
    SelfLinkingClass owner;
    OpenNote note(deaths);
    ASSERT_TRUE(owner.addNote(&note));
    ASSERT_TRUE(owner.hangAnew(note));
    EXPECT_TRUE(owner.removeNote(&note));
    EXPECT_EQ(owner.getNoteCount(), 0);
    EXPECT_EQ(note.getParent(), nullptr);
}
