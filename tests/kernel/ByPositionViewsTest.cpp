#include <qor/QORArgument.h>
#include <qor/QORArgumentByPosition.h>
#include <qor/QORAssociationRole.h>
#include <qor/QORAssociationRoleByPosition.h>
#include <qor/QORAttributeByPosition.h>
#include <qor/QORClassMap.h>
#include <qor/QORClassMapByPosition.h>
#include <qor/QORDrillPathLevelAssociation.h>
#include <qor/QORDrillPathLevelAssociationByPosition.h>
#include <qor/QORElementNamePart.h>
#include <qor/QORElementNamePartByPosition.h>
#include <qor/QORExpressionNode.h>
#include <qor/QORExpressionNodeByPosition.h>
#include <qor/QORFeature.h>
#include <qor/QORFeatureByPosition.h>
#include <qor/QORFeatureMap.h>
#include <qor/QORFeatureMapByPosition.h>
#include <qor/QORGrouping.h>
#include <qor/QORGroupingByPosition.h>
#include <qor/QORHierarchyLevelAssociation.h>
#include <qor/QORHierarchyLevelAssociationByPosition.h>
#include <qor/QORIndexMember.h>
#include <qor/QORIndexMemberByPosition.h>
#include <qor/QORNote.h>
#include <qor/QORNoteByPosition.h>
#include <qor/QOROperation.h>
#include <qor/QOROperationByPosition.h>
#include <qor/QORPredicate.h>
#include <qor/QORPredicateByPosition.h>
#include <qor/QORPropertyType.h>
#include <qor/QORPropertyTypeByPosition.h>
#include <qor/QORPropertyValue.h>
#include <qor/QORPropertyValueByPosition.h>
#include <qor/QORReportItem.h>
#include <qor/QORReportItemByPosition.h>
#include <qor/QORSQLViewAttributeByPosition.h>
#include <qor/QORTypeValue.h>
#include <qor/QORTypeValueByPosition.h>

#include <LinkTreeModel.h>

#include <gtest/gtest.h>

#include <climits>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

namespace {

/// An element of a class, which may be an abstract one, with a name of its own. Its id repeats its position.
template <class Class>
class Element : public Class {
public:
    Element(char const* itsName, int position) : shown(itsName) {
        this->setPosition(static_cast<short>(position));
        this->setID(position);
    }
    QORString const& getName() const override { return shown; }

private:
    QORString const shown;
};

/// A view and what it sorts.
struct Kind {
    char const* name;
    std::unique_ptr<LinkTreeAccess> (*makeView)();
    std::unique_ptr<QORObject> (*makeElement)(char const* name, int position);
    std::size_t viewSize;
};

template <class View, class Class>
Kind kindOf(char const* name) {
    return {name,
            []() -> std::unique_ptr<LinkTreeAccess> { return std::make_unique<LinkTreeAccessTo<View>>(); },
            [](char const* itsName, int position) -> std::unique_ptr<QORObject> {
                return std::make_unique<Element<Class>>(itsName, position);
            },
            sizeof(View)};
}

Kind const kinds[] = {
    kindOf<QORArgumentByPosition, QORArgument>("Argument"),
    kindOf<QORAssociationRoleByPosition, QORAssociationRole>("AssociationRole"),
    kindOf<QORClassMapByPosition, QORClassMap>("ClassMap"),
    kindOf<QORDrillPathLevelAssociationByPosition, QORDrillPathLevelAssociation>("DrillPathLevelAssociation"),
    kindOf<QORElementNamePartByPosition, QORElementNamePart>("ElementNamePart"),
    kindOf<QORExpressionNodeByPosition, QORExpressionNode>("ExpressionNode"),
    kindOf<QORFeatureByPosition, QORFeature>("Feature"),
    kindOf<QORFeatureMapByPosition, QORFeatureMap>("FeatureMap"),
    kindOf<QORGroupingByPosition, QORGrouping>("Grouping"),
    kindOf<QORHierarchyLevelAssociationByPosition, QORHierarchyLevelAssociation>("HierarchyLevelAssociation"),
    kindOf<QORIndexMemberByPosition, QORIndexMember>("IndexMember"),
    kindOf<QORNoteByPosition, QORNote>("Note"),
    kindOf<QOROperationByPosition, QOROperation>("Operation"),
    kindOf<QORPredicateByPosition, QORPredicate>("Predicate"),
    kindOf<QORPropertyTypeByPosition, QORPropertyType>("PropertyType"),
    kindOf<QORPropertyValueByPosition, QORPropertyValue>("PropertyValue"),
    kindOf<QORReportItemByPosition, QORReportItem>("ReportItem"),
    kindOf<QORTypeValueByPosition, QORTypeValue>("TypeValue")};

class ByPositionViews : public testing::TestWithParam<Kind> {
protected:
    QORObject* make(char const* name, int position) {
        items.push_back(GetParam().makeElement(name, position));
        return items.back().get();
    }
    static void const* key(int position) {
        return reinterpret_cast<void const*>(static_cast<std::intptr_t>(position));
    }

    std::vector<std::unique_ptr<QORObject>> items;
    std::unique_ptr<LinkTreeAccess> const access = GetParam().makeView();
    QORLinkTree& view = access->tree();
};

INSTANTIATE_TEST_SUITE_P(All, ByPositionViews, testing::ValuesIn(kinds),
                         [](auto const& kind) { return std::string(kind.param.name); });

} // namespace

TEST(ByPositionAliases, SeeAttributesAsFeatures) {
    EXPECT_TRUE((std::is_same_v<QORAttributeByPosition, QORFeatureByPosition>));
    EXPECT_TRUE((std::is_same_v<QORSQLViewAttributeByPosition, QORFeatureByPosition>));
}

TEST_P(ByPositionViews, AreSmallAndStartEmpty) {
    EXPECT_LE(GetParam().viewSize, sizeof(void*) == 8 ? 64U : 32U);
    EXPECT_EQ(view.size, 0);
    EXPECT_EQ(view[0], nullptr);
}

TEST_P(ByPositionViews, SortByPositionThenNameThenAddress) {
    QORObject* const first = make("z", SHRT_MIN);
    QORObject* const second = make("z", -1);
    QORObject* const third = make("a", 5);
    QORObject* const fourth = make("b", 5);
    QORObject* const equal = make("b", 5);
    QORObject* const last = make("a", SHRT_MAX);
    QORObject* const lower = std::less<>()(fourth, equal) ? fourth : equal;
    QORObject* const upper = lower == fourth ? equal : fourth;
    QORObject* const expected[] = {first, second, third, lower, upper, last};
    for (int i : {4, 2, 5, 0, 3, 1})
        EXPECT_TRUE(view.add(expected[i], true, nullptr));
    EXPECT_FALSE(view.add(fourth, true, nullptr));
    ASSERT_EQ(view.size, 6);
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(view[i], expected[i]);
        EXPECT_EQ(view.containsElement(expected[i]), i);
        for (int j = 0; j < 6; ++j) {
            int const order = view.compare2Object(expected[i], expected[j]);
            EXPECT_EQ(order < 0, i < j);
            EXPECT_EQ(order > 0, i > j);
        }
    }
    EXPECT_EQ(view.compare2Object(last, first), SHRT_MAX - SHRT_MIN);
    EXPECT_EQ(view.compare2Object(second, third), -6);
}

TEST_P(ByPositionViews, TakeThePositionItselfAsAKey) {
    QORObject* const negative = make("n", -3);
    QORObject* const a = make("a", 7);
    QORObject* const b = make("b", 7);
    QORObject* const zero = make("z", 0);
    for (QORObject* each : {negative, a, b, zero})
        view.add(each, true, nullptr);
    EXPECT_EQ(view.findFirstElement(key(7)), 2);
    EXPECT_EQ(view.findNextElement(key(7), 2), 3);
    EXPECT_EQ(view.findNextElement(key(7), 3), -1);
    EXPECT_EQ(view.findLastElement(key(7)), 3);
    EXPECT_EQ(view.findFirst(key(-3), nullptr), negative);
    EXPECT_EQ(view.findFirst(nullptr, nullptr), zero); // position 0
    EXPECT_EQ(view.findFirst(key(8), nullptr), nullptr);
    EXPECT_EQ(view.compare2Key(a, key(7)), 0);
    EXPECT_EQ(view.compare2Key(a, key(9)), -2);
    EXPECT_EQ(view.compare2Key(negative, key(-10)), 7);
}

TEST_P(ByPositionViews, BehaveLikeASortedVectorOverManyRandomOperations) {
    LinkTreeRules rules{[](QORObject const* a, QORObject const* b) {
                            if (a->getID() != b->getID())
                                return a->getID() < b->getID() ? -1 : 1;
                            int const order = nameOrder(a, b);
                            return order ? order : addressOrder(a, b);
                        },
                        [](QORObject const* item, void const* wanted) {
                            return item->getID() == reinterpret_cast<std::intptr_t>(wanted);
                        },
                        false,
                        {},
                        {}};
    for (int i = 0; i < 60; ++i)
        rules.items.push_back(make(std::to_string(i * 7 % 5).c_str(), i * 5 % 19 - 3));
    for (int position = -4; position < 20; ++position)
        rules.keys.push_back(key(position));
    SCOPED_TRACE("seed 1201");
    LinkTreeModel(rules, GetParam().makeView(), 1201).run(4000);
}
