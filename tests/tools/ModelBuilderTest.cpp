#include "database/ModelBuilder.h"

#include "EveryRecord.h"
#include "exchange/JsonReader.h"
#include "exchange/JsonWriter.h"
#include "kit/ToolError.h"
#include "kit/Verify.h"

#include <qor/QORAssociation.h>
#include <qor/QORAssociationRole.h>
#include <qor/QORAssociationRoleNameMap.h>
#include <qor/QORAttribute.h>
#include <qor/QORBusinessRule.h>
#include <qor/QORCandidateKey.h>
#include <qor/QORClass.h>
#include <qor/QORDatabaseCatalog.h>
#include <qor/QORDatabaseSchema.h>
#include <qor/QORDerivedType.h>
#include <qor/QORDesignPackage.h>
#include <qor/QORForeignKey.h>
#include <qor/QORGeneralization.h>
#include <qor/QORIndex.h>
#include <qor/QORIndexMember.h>
#include <qor/QORModel.h>
#include <qor/QORPropertyType.h>
#include <qor/QORPropertyValue.h>
#include <qor/QORSQLViewEntity.h>
#include <qor/QORStoredProcedure.h>
#include <qor/QORTrigger.h>

#include <gmock/gmock.h>
#include <sstream>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

QORDesignPackage* packageOf(QORModel const& model, std::string const& name) {
    for (int i = 0; i < model.getChildPackageCount(); ++i) {
        auto* const package = dynamic_cast<QORDesignPackage*>(model.getChildPackage(i));
        if (package && name == package->getName().chars) {
            return package;
        }
    }
    return nullptr;
}

template <class Element>
Element* elementOf(QORDesignPackage const& package, std::string const& name) {
    for (int i = 0; i < package.getModelElementCount(); ++i) {
        auto* const element = dynamic_cast<Element*>(package.getModelElement(i));
        if (element && name == element->getName().chars) {
            return element;
        }
    }
    return nullptr;
}

template <class KeyClass>
KeyClass* keyOf(QORClass const& table, std::string const& name) {
    for (int i = 0; i < table.getKeyCount(); ++i) {
        auto* const key = dynamic_cast<KeyClass*>(table.getKey(i));
        if (key && name == key->getName().chars) {
            return key;
        }
    }
    return nullptr;
}

std::string propertyOf(QORElement const& element, std::string const& name) {
    for (int i = 0; i < element.getPropertyValueCount(); ++i) {
        if (name == element.getPropertyValue(i)->getName().chars) {
            return element.getPropertyValue(i)->getValue().chars;
        }
    }
    return "(none)";
}

class ModelBuilder : public testing::Test {
protected:
    std::unique_ptr<QORModel> model = database::buildModel(everyRecord());
    QORDesignPackage& sales = *packageOf(*model, "sales");
    QORClass& customer = *elementOf<QORClass>(sales, "customer");
    QORClass& special = *elementOf<QORClass>(sales, "special");
};

TEST_F(ModelBuilder, GraphIsSoundAndPassesThroughJson) {
    EXPECT_THAT(kit::verify(*model), IsEmpty());
    std::stringstream first;
    exchange::writeJson(*model, first);
    kit::Graph const graph = exchange::readJson(first, "test");
    std::stringstream second;
    exchange::writeJson(graph.root(), second);
    EXPECT_EQ(first.str(), second.str());
    EXPECT_THAT(kit::verify(graph.root()), IsEmpty());
}

TEST_F(ModelBuilder, SeveralSchemasGiveADesignPackageEach) {
    ASSERT_TRUE(packageOf(*model, "stock"));
    QORClass* const other = elementOf<QORClass>(*packageOf(*model, "stock"), "customer");
    ASSERT_TRUE(other);
    EXPECT_NE(other, &customer);
    EXPECT_STREQ(other->getDataPackage()->getName().chars, "stock");
    EXPECT_STREQ(customer.getDataPackage()->getName().chars, "sales");
    EXPECT_STREQ(customer.getComment().chars, "those who buy");
}

TEST_F(ModelBuilder, PrimaryKeyIsThatOfTheClassAndUniqueOnesAreDeclaredSo) {
    QORCandidateKey const* primary = customer.getPrimaryCandidateKey();
    ASSERT_TRUE(primary);
    EXPECT_STREQ(primary->getName().chars, "customer_key");
    EXPECT_FALSE(primary->getUniqueKey());
    ASSERT_EQ(primary->getAttributeCount(), 1);
    EXPECT_STREQ(primary->getAttribute(0)->getName().chars, "id");
    EXPECT_TRUE(keyOf<QORCandidateKey>(customer, "")->getUniqueKey());
}

TEST_F(ModelBuilder, IndexOfAKeyTellsTheOrderOfItsColumns) {
    QORClass const& other = *elementOf<QORClass>(*packageOf(*model, "stock"), "customer");
    QORIndex const* index = other.getPrimaryCandidateKey()->getIndex();
    ASSERT_TRUE(index);
    EXPECT_FALSE(index->getGenerate());
    std::vector<std::string> names(2);
    for (int i = 0; i < index->getIndexMemberCount(); ++i) {
        QORIndexMember const* member = index->getIndexMember(i);
        names.at(static_cast<std::size_t>(member->getPosition() - 1)) =
            member->getAttribute()->getName().chars;
    }
    EXPECT_THAT(names, ElementsAre("a", "b"));
    EXPECT_FALSE(customer.getPrimaryCandidateKey()->getIndex());
}

TEST_F(ModelBuilder, ForeignKeyRefersToTheKeyOfTheColumnsAndPairsThem) {
    auto const* key = keyOf<QORForeignKey>(special, "special_other");
    ASSERT_TRUE(key);
    QORClass const& other = *elementOf<QORClass>(*packageOf(*model, "stock"), "customer");
    EXPECT_EQ(key->getCandidateKey(), other.getPrimaryCandidateKey());
    std::vector<std::string> pairs;
    for (int i = 0; i < key->getAssociationRoleNameMapCount(); ++i) {
        pairs.emplace_back(key->getAssociationRoleNameMap(i)->getDisplayName().chars);
    }
    EXPECT_THAT(pairs, UnorderedElementsAre("y_to_b", "id_to_a"));
    EXPECT_EQ(propertyOf(*key, "match"), "FULL");
}

TEST_F(ModelBuilder, AssociationStartsAtTheTableOfTheForeignKey) {
    auto const* key = keyOf<QORForeignKey>(special, "special_other");
    QORAssociationRole const* end = key->getAssociationRole();
    ASSERT_TRUE(end);
    EXPECT_EQ(end->getAssociatedClass(), elementOf<QORClass>(*packageOf(*model, "stock"), "customer"));
    EXPECT_EQ(end->getOnDelete(), QORReferentialActionType::CASCADE);
    EXPECT_EQ(end->getOnUpdate(), QORReferentialActionType::SET_NULL);
    EXPECT_TRUE(end->getNavigable());
    EXPECT_FALSE(end->getSource());
    EXPECT_STREQ(end->getMultiplicity().chars, "0..1");
    QORAssociation const* association = end->getAssociation();
    EXPECT_STREQ(association->getDisplayName().chars, "special_customer");
    EXPECT_FALSE(association->getUserDefined());
    ASSERT_EQ(association->getAssociationRoleCount(), 2);
    QORAssociationRole const* start = association->getAssociationRole(0);
    EXPECT_TRUE(start->getSource());
    EXPECT_FALSE(start->getNavigable());
    EXPECT_EQ(start->getAssociatedClass(), &special);
    EXPECT_STREQ(start->getMultiplicity().chars, "0..*");
}

TEST_F(ModelBuilder, MultiplicityFollowsFromUniqueAndMandatoryColumns) {
    QORAssociationRole const* self = keyOf<QORForeignKey>(customer, "")->getAssociationRole();
    EXPECT_STREQ(self->getMultiplicity().chars, "1");
    EXPECT_STREQ(self->getAssociation()->getAssociationRole(0)->getMultiplicity().chars, "0..1");
}

TEST_F(ModelBuilder, ForeignKeyToWhatIsNotThereKeepsTheTextOfTheReference) {
    auto const* gone = keyOf<QORForeignKey>(special, "gone");
    EXPECT_FALSE(gone->getCandidateKey());
    EXPECT_FALSE(gone->getAssociationRole()->getAssociatedClass());
    EXPECT_EQ(propertyOf(*gone, "references"), "nowhere(id)");
    auto const* half = keyOf<QORForeignKey>(special, "half");
    EXPECT_EQ(half->getAssociationRole()->getAssociatedClass(), &customer);
    EXPECT_EQ(propertyOf(*half, "references"), "customer(no, name)");
}

TEST_F(ModelBuilder, SubtypeHasAllItsSupertypesInOrder) {
    ASSERT_EQ(special.getSubtypeOfGeneralizationCount(), 1);
    QORGeneralization const* link = special.getSubtypeOfGeneralization(0);
    ASSERT_EQ(link->getSupertypeClassCount(), 2);
    EXPECT_STREQ(link->getSupertypeClass(0)->getDataPackage()->getName().chars, "stock");
    EXPECT_EQ(link->getSupertypeClass(1), &customer);
}

TEST_F(ModelBuilder, DomainIsDerivedFromItsBaseAndHasItsRule) {
    QORAttribute const* mail = customer.getAttribute("mail", nullptr);
    auto const* domain = dynamic_cast<QORDerivedType*>(mail->getType());
    ASSERT_TRUE(domain);
    EXPECT_STREQ(domain->getName().chars, "email");
    EXPECT_STREQ(domain->getNativeType().chars, "DOMAIN");
    EXPECT_STREQ(domain->getInitialValue().chars, "'nobody'");
    EXPECT_TRUE(domain->getUserDefined());
    EXPECT_EQ(domain->getDerivedFromConcreteType(), customer.getAttribute("name", nullptr)->getType());
    ASSERT_EQ(domain->getAssociatedBusinessRuleCount(), 1);
    EXPECT_STREQ(domain->getAssociatedBusinessRule(0)->getValue().chars, "VALUE LIKE '%@%'");
    EXPECT_EQ(propertyOf(*domain, "not null"), "true");
    EXPECT_STREQ(domain->getDataPackage()->getName().chars, "stock");
}

TEST_F(ModelBuilder, EnumerationHasItsValuesByPosition) {
    auto* const type = customer.getAttribute("mark", nullptr)->getType();
    ASSERT_EQ(type->getTypeValueCount(), 3);
    EXPECT_EQ(type->getTypeValue("average", nullptr)->getPosition(), 3);
    EXPECT_EQ(type->getTypeValue("good", nullptr)->getPosition(), 1);
}

TEST_F(ModelBuilder, ChecksAreRulesOfTheirTable) {
    EXPECT_EQ(customer.getAssociatedBusinessRuleCount(), 3);
    EXPECT_EQ(model->getBusinessRuleCount(), 4);
}

TEST_F(ModelBuilder, IndexHasMembersWithAttributesOrExpressions) {
    QORIndex const* index = nullptr;
    for (int i = 0; i < customer.getIndexCount(); ++i) {
        index = customer.getIndex(i)->getKey() ? index : customer.getIndex(i);
    }
    ASSERT_TRUE(index);
    EXPECT_STREQ(index->getName().chars, "by_name");
    EXPECT_TRUE(index->getUnique());
    EXPECT_TRUE(index->getClustered());
    EXPECT_TRUE(index->getGenerate());
    EXPECT_EQ(propertyOf(*index, "where"), "id > 5");
    ASSERT_EQ(index->getIndexMemberCount(), 3);
    for (int i = 0; i < 3; ++i) {
        QORIndexMember const* member = index->getIndexMember(i);
        bool const first = member->getPosition() == 1;
        EXPECT_EQ(member->getSortOrder(), first ? QORSortOrderType::DESCENDING : QORSortOrderType::ASCENDING);
        EXPECT_EQ(propertyOf(*member, "expression"), member->getPosition() == 2 ? "lower(name)" : "(none)");
        EXPECT_EQ(propertyOf(*member, "nulls"), first ? "FIRST" : "(none)");
        EXPECT_EQ(member->getAttribute() == nullptr, member->getPosition() == 2);
    }
}

TEST_F(ModelBuilder, ViewHasTheClausesOfItsStatement) {
    auto const* view = elementOf<QORSQLViewEntity>(sales, "v");
    ASSERT_TRUE(view);
    EXPECT_EQ(view->getViewType(), QORViewType::VIEW);
    EXPECT_EQ(view->getViewStatementType(), QORViewStatementType::SELECT);
    EXPECT_EQ(view->getSelectType(), QORViewSelectType::DISTINCT);
    EXPECT_STREQ(view->getWhereClause().chars, "id > 1");
    EXPECT_STREQ(view->getGroupByClause().chars, "id");
    EXPECT_STREQ(view->getHavingClause().chars, "count(*) > 1");
    EXPECT_STREQ(view->getOrderByClause().chars, "name DESC");
    EXPECT_EQ(view->getFeatureCount(), 2);
    ASSERT_EQ(view->getOperationCount(), 1);
    auto const* trigger = dynamic_cast<QORTrigger*>(view->getOperation(0));
    ASSERT_TRUE(trigger);
    EXPECT_EQ(trigger->getTriggerType(), QORTriggerType::INSTEAD_OF);
    EXPECT_TRUE(trigger->getFireOnInsert());
    EXPECT_STREQ(trigger->getSemantics().chars, "CREATE TRIGGER a");
}

TEST_F(ModelBuilder, OverloadsAreToldApartByTheTypesOfTheirArguments) {
    std::vector<std::string> names;
    for (int i = 0; i < sales.getStoredProcedureCount(); ++i) {
        names.emplace_back(sales.getStoredProcedure(i)->getName().chars);
    }
    EXPECT_THAT(names, UnorderedElementsAre("f(integer, integer)", "f(character varying(40))", "g"));
    EXPECT_STREQ(packageOf(*model, "stock")->getStoredProcedure(0)->getName().chars, "f");
}

TEST_F(ModelBuilder, ExtrasArePropertiesOfTheModel) {
    EXPECT_EQ(propertyOf(*customer.getAttribute("name", nullptr), "storage"), "extended");
    QORPropertyValue const* value = customer.getAttribute("name", nullptr)->getPropertyValue(0);
    EXPECT_STREQ(value->getPropertyType()->getGroup().chars, database::extrasGroup);
    EXPECT_EQ(value->getPropertyType()->getParent()->getParent(), model.get());
}

TEST_F(ModelBuilder, NameThatIsThereAlreadyIsRefused) {
    database::Structure twice = everyRecord();
    twice.origin.source = "twice.db";
    twice.tables.push_back(twice.tables[0]);
    try {
        database::buildModel(twice);
        FAIL();
    } catch (kit::ToolError const& error) {
        EXPECT_STREQ(error.what(), "twice.db: is damaged: more than one customer");
    }
}

TEST_F(ModelBuilder, IndexesThatLeadNowhereAreRefused) {
    database::Structure wrong = everyRecord();
    wrong.keys[0].columns = {17};
    EXPECT_THROW(database::buildModel(wrong), kit::ToolError);
    wrong = everyRecord();
    wrong.keys[0].table = 99;
    EXPECT_THROW(database::buildModel(wrong), kit::ToolError);
    wrong = everyRecord();
    wrong.tables[0].columns[0].type = 99;
    EXPECT_THROW(database::buildModel(wrong), kit::ToolError);
    wrong = everyRecord();
    wrong.keys.push_back(wrong.keys[0]);
    EXPECT_THROW(database::buildModel(wrong), kit::ToolError);
}

} // namespace
