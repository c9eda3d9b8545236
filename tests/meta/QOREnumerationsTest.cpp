#include <qor/QORAggregationOperatorType.h>
#include <qor/QORApprovalStatusType.h>
#include <qor/QORArgumentType.h>
#include <qor/QORAssociationType.h>
#include <qor/QORAttributeType.h>
#include <qor/QORAttributeUsageType.h>
#include <qor/QORAxisRoleType.h>
#include <qor/QORBusinessRuleType.h>
#include <qor/QORClassCategoryType.h>
#include <qor/QORCommitType.h>
#include <qor/QORConcurrencyType.h>
#include <qor/QORContainmentType.h>
#include <qor/QORDesignLevelType.h>
#include <qor/QORDimensionType.h>
#include <qor/QORDimensionalRoleType.h>
#include <qor/QORDimensionalType.h>
#include <qor/QORDirectionType.h>
#include <qor/QORElementType.h>
#include <qor/QORGroupingType.h>
#include <qor/QORHierarchyType.h>
#include <qor/QORJoinType.h>
#include <qor/QORMappingType.h>
#include <qor/QORMovementType.h>
#include <qor/QORPhysicalObjectType.h>
#include <qor/QORPhysicalTargetType.h>
#include <qor/QORProductType.h>
#include <qor/QORReferentialActionType.h>
#include <qor/QORSortOrderType.h>
#include <qor/QORStatementNodeType.h>
#include <qor/QORStepPrecedenceType.h>
#include <qor/QORTransformationType.h>
#include <qor/QORTriggerType.h>
#include <qor/QORVersionStateType.h>
#include <qor/QORViewSelectType.h>
#include <qor/QORViewStatementType.h>
#include <qor/QORViewType.h>
#include <qor/QORVisibilityType.h>

#include <gtest/gtest.h>

#include <cctype>
#include <functional>
#include <ostream>
#include <string>
#include <type_traits>
#include <vector>

namespace {

/// One enumeration behind ints, with what is known of its table.
struct Vocabulary {
    char const* label;
    char const* const* texts;
    int count;     ///< of the texts, without the null at their end
    int published; ///< of the texts in the first version, whose places callers store
    char const* first;
    char const* last; ///< of those published
    std::function<char const*(int)> nameOf;
    std::function<int(char const*)> byName;
};

std::ostream& operator<<(std::ostream& out, Vocabulary const& vocabulary) {
    return out << vocabulary.label;
}

template <class Enumeration, std::size_t places>
Vocabulary vocabulary(char const* label, char const* const (&texts)[places],
                      char const* (*nameOf)(Enumeration), Enumeration (*byName)(char const*), int published,
                      char const* first, char const* last) {
    static_assert(std::is_same_v<std::underlying_type_t<Enumeration>, int>);
    static_assert(std::is_convertible_v<Enumeration, int>);
    return {label,
            texts,
            static_cast<int>(places) - 1,
            published,
            first,
            last,
            [nameOf](int value) { return nameOf(static_cast<Enumeration>(value)); },
            [byName](char const* name) { return static_cast<int>(byName(name)); }};
}

#define VOCABULARY(X, published, first, last)                                                                \
    vocabulary(#X, Qor##X##StringArray, get##X##Name, get##X##ByName, published, first, last)

std::vector<Vocabulary> vocabularies() {
    return {
        VOCABULARY(AggregationOperatorType, 8, "SUM", "UNKNOWN"),
        VOCABULARY(ApprovalStatusType, 3, "APPROVED", "DEVELOPMENTAL"),
        VOCABULARY(ArgumentType, 5, "UNSPECIFIED_MODE", "RETURN_MODE"),
        VOCABULARY(AssociationType, 375, "AGGREGATION_RULE__MEASURE", "CONDITION__REPORT_ITEM"),
        VOCABULARY(AttributeType, 227, "AGGREGATION_RULE__RULE", "REPOSITORY_OBJECT__MODIFIER"),
        VOCABULARY(AttributeUsageType, 3, "DEFAULT", "IDENTIFIER"),
        VOCABULARY(AxisRoleType, 4, "GENERIC", "CONTENT"),
        VOCABULARY(BusinessRuleType, 5, "MIN_MAX", "TEXT_LOGICAL"),
        VOCABULARY(ClassCategoryType, 11, "ENTITY", "TYPE_CLASS"),
        VOCABULARY(CommitType, 4, "NONE", "PERIODIC"),
        VOCABULARY(ConcurrencyType, 4, "SEQUENTIAL", "SYNCHRONOUS"),
        VOCABULARY(ContainmentType, 3, "BY_VALUE", "UNSPECIFIED"),
        VOCABULARY(DesignLevelType, 3, "LOGICAL_PHYSICAL", "PHYSICAL_ONLY"),
        VOCABULARY(DimensionType, 3, "FACT", "REGULAR"),
        VOCABULARY(DimensionalRoleType, 6, "UNDEFINED", "HIERARCHY_NAVIGATION"),
        VOCABULARY(DimensionalType, 4, "FIXED", "TYPE_3"),
        VOCABULARY(DirectionType, 3, "SOURCE_DESTINATION", "DESTINATION"),
        VOCABULARY(ElementType, 151, "ELEMENT", "CONFIGURATION_FORMAT"),
        VOCABULARY(GroupingType, 4, "OR", "ALL"),
        VOCABULARY(HierarchyType, 3, "LEVELED", "MIXED"),
        VOCABULARY(JoinType, 4, "INNER", "RIGHT_OUTER"),
        VOCABULARY(MappingType, 6, "LINEAGE", "STITCHING"),
        VOCABULARY(MovementType, 6, "INSERT", "INSERT_UPDATE"),
        VOCABULARY(PhysicalObjectType, 9, "UNDEFINED", "ALL_CONSTRAINT"),
        VOCABULARY(PhysicalTargetType, 4, "UNDEFINED", "NCR"),
        VOCABULARY(ProductType, 41, "MODEL_PRODUCT", "CONFIGURATION"),
        VOCABULARY(ReferentialActionType, 6, "UNSPECIFIED", "SET_DEFAULT"),
        VOCABULARY(SortOrderType, 3, "DEFAULT", "DESCENDING"),
        VOCABULARY(StatementNodeType, 7, "FORMULA", "UNION"),
        VOCABULARY(StepPrecedenceType, 1, "UNKNOWN", "UNKNOWN"),
        VOCABULARY(TransformationType, 10, "UNKNOWN", "CUSTOM"),
        VOCABULARY(TriggerType, 3, "BEFORE", "INSTEAD_OF"),
        VOCABULARY(VersionStateType, 3, "CHECKED_IN", "LOCKED"),
        VOCABULARY(ViewSelectType, 5, "UNSPECIFIED", "UNIQUE"),
        VOCABULARY(ViewStatementType, 3, "USER_DEFINED", "CREATE"),
        VOCABULARY(ViewType, 4, "VIEW", "MATERIALIZED_QUERY_TABLE"),
        VOCABULARY(VisibilityType, 4, "PUBLIC", "IMPLEMENTATION"),
    };
}

#undef VOCABULARY

int scan(Vocabulary const& vocabulary, std::string const& text) {
    for (int value = 0; value < vocabulary.count; ++value) {
        if (text == vocabulary.texts[value])
            return value;
    }
    return -1;
}

std::string lowerCase(std::string text) {
    for (char& c : text)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

bool hasLetter(std::string const& text) {
    return lowerCase(text) != text;
}

class QOREnumerations : public testing::TestWithParam<Vocabulary> {};

} // namespace

TEST_P(QOREnumerations, TableHasThePublishedTextsInTheirPlacesAndEndsWithNull) {
    Vocabulary const& v = GetParam();
    ASSERT_GE(v.count, v.published);
    for (int value = 0; value < v.count; ++value)
        ASSERT_NE(v.texts[value], nullptr) << value;
    EXPECT_EQ(v.texts[v.count], nullptr);
    EXPECT_STREQ(v.texts[0], v.first);
    EXPECT_STREQ(v.texts[v.published - 1], v.last);
}

TEST_P(QOREnumerations, ValueGivesTheEntryOfTheTable) {
    Vocabulary const& v = GetParam();
    for (int value = 0; value < v.count; ++value)
        EXPECT_EQ(v.nameOf(value), v.texts[value]) << value;
}

TEST_P(QOREnumerations, TextGivesItsFirstValue) {
    Vocabulary const& v = GetParam();
    for (int value = 0; value < v.count; ++value) {
        std::string const copy = v.texts[value];
        EXPECT_EQ(v.byName(copy.c_str()), scan(v, copy)) << copy;
        EXPECT_TRUE(copy.empty() || scan(v, copy) == value) << copy << " stands twice";
    }
}

TEST_P(QOREnumerations, NeighboursOfATextAreUnknown) {
    Vocabulary const& v = GetParam();
    for (int value = 0; value < v.count; ++value) {
        std::string const text = v.texts[value];
        if (text.empty())
            continue;
        ASSERT_TRUE(hasLetter(text)) << text;
        EXPECT_EQ(v.byName(lowerCase(text).c_str()), -1) << text;
        EXPECT_EQ(v.byName((text + " ").c_str()), -1) << text;
        EXPECT_EQ(v.byName((" " + text).c_str()), -1) << text;
        EXPECT_EQ(v.byName((text + "~").c_str()), -1) << text;
        std::string const shorter = text.substr(0, text.size() - 1);
        EXPECT_EQ(v.byName(shorter.c_str()), scan(v, shorter)) << shorter;
    }
}

TEST_P(QOREnumerations, UnknownTextAndNullGiveMinusOne) {
    Vocabulary const& v = GetParam();
    for (char const* text : {"nonsense", "!", "~", "ZZZ", "\xff", "0", "-1"})
        EXPECT_EQ(v.byName(text), -1) << text;
    EXPECT_EQ(v.byName(nullptr), -1);
}

TEST_P(QOREnumerations, EmptyTextGivesTheFirstRetiredValue) {
    Vocabulary const& v = GetParam();
    EXPECT_EQ(v.byName(""), scan(v, ""));
}

INSTANTIATE_TEST_SUITE_P(Each, QOREnumerations, testing::ValuesIn(vocabularies()),
                         [](auto const& each) { return std::string(each.param.label); });

namespace {

std::vector<int> retired(char const* const* texts) {
    std::vector<int> values;
    for (int value = 0; texts[value]; ++value) {
        if (!*texts[value])
            values.push_back(value);
    }
    return values;
}

} // namespace

TEST(QORRetiredValues, KeepTheirPlacesInTheLongTables) {
    EXPECT_EQ(retired(QorElementTypeStringArray), (std::vector<int>{8, 38, 39, 45, 55, 64, 73, 82, 139}));
    EXPECT_EQ(retired(QorAttributeTypeStringArray),
              (std::vector<int>{33, 49, 71, 88, 105, 124, 125, 150, 153, 164, 169, 171, 176}));
    EXPECT_EQ(
        retired(QorAssociationTypeStringArray),
        (std::vector<int>{20,  21,  25,  26,  29,  30,  36,  37,  53,  55,  56,  57,  58,  61,  100, 101, 104,
                          105, 108, 111, 172, 176, 179, 200, 231, 237, 238, 260, 275, 276, 277, 316, 318}));
}

TEST(QORRetiredValues, EmptyTextFindsTheLowestAndIsUnknownElsewhere) {
    EXPECT_EQ(getElementTypeByName(""), 8);
    EXPECT_EQ(getAttributeTypeByName(""), 33);
    EXPECT_EQ(getAssociationTypeByName(""), 20);
    EXPECT_EQ(getMovementTypeByName(""), -1);
    EXPECT_EQ(getProductTypeByName(""), -1);
}

TEST(QOREnumerationNumbers, EnumeratorsCarryTheTextsAsNames) {
    static_assert(QORElementType::ELEMENT == 0 && QORElementType::CLASS == 13 &&
                  QORElementType::OBJECT == 33);
    static_assert(QORElementType::CONFIGURATION_FORMAT == 150);
    static_assert(QORAttributeType::CLASS__CPP_SPACE == 40 && QORAttributeType::OBJECT__ID == 173);
    static_assert(QORAttributeType::OBJECT__NAME == 174 && QORAttributeType::ELEMENT__DESCRIPTION == 65);
    static_assert(QORAssociationType::CLASS__OPERATION == 38);
    static_assert(QORAssociationType::CLASS__SUPERTYPE_OF__GENERALIZATION == 40);
    static_assert(QORMovementType::INSERT == 0 && QORMovementType::NULL_ == 3 &&
                  QORMovementType::INSERT_UPDATE == 5);
    static_assert(QORProductType::DATA_PIPE == 6 && QORProductType::FILLER_07 == 7 &&
                  QORProductType::GUIDE == 35);
    EXPECT_STREQ(getMovementTypeName(QORMovementType::NULL_), "NULL");
    EXPECT_STREQ(getElementTypeName(QORElementType::GROUPING), "GROUPING");
    EXPECT_STREQ(getAggregationOperatorTypeName(QORAggregationOperatorType::MIN), "MIN");
}

TEST(QOREnumerationNumbers, PickedTextsHaveTheirNumbers) {
    EXPECT_EQ(getMovementTypeByName("NULL"), QORMovementType::NULL_);
    EXPECT_EQ(getMovementTypeByName("insert"), -1);
    EXPECT_EQ(getMappingTypeByName("TOVA_ETL"), 1);
    EXPECT_EQ(getBusinessRuleTypeByName("TEXT_PHYSICAL"), 3);
    EXPECT_EQ(getClassCategoryTypeByName("INTERFACE_CLASS"), 9);
    EXPECT_EQ(getContainmentTypeByName("UNSPECIFIED"), 2);
    EXPECT_EQ(getReferentialActionTypeByName("UNSPECIFIED"), 0);
    EXPECT_EQ(getTransformationTypeByName("TRANSFORMATION_TASK_CALL"), 8);
    EXPECT_EQ(getAttributeTypeByName("CLASS_MAP__VOLUMETRICS"), 47);
    EXPECT_EQ(getAssociationTypeByName("COMPONENT__REFERENCED__COMPONENT"), 73);
    EXPECT_EQ(getElementTypeByName("LEVEL_ASSOCIATION"), 138);
}

TEST(QOREnumerationNumbers, ProductTypesHaveFillersBetweenTheirGroups) {
    struct Product {
        int value;
        char const* text;
    };
    Product const products[] = {{0, "MODEL_PRODUCT"},     {1, "DATA_MODEL"},     {2, "OBJECT_MODEL"},
                                {3, "ACTIVITY_MODEL"},    {4, "PROCESS_MODEL"},  {5, "GENERIC"},
                                {6, "DATA_PIPE"},         {10, "MODEL_MAPPING"}, {20, "SOFTWARE_COMPONENT"},
                                {21, "DATA_BRIDGE"},      {30, "DOCUMENTATION"}, {31, "SPECIFICATION"},
                                {32, "DESIGN"},           {35, "GUIDE"},         {36, "USER_GUIDE"},
                                {37, "PROGRAMMER_GUIDE"}, {40, "CONFIGURATION"}};
    Product const* next = products;
    for (int value = 0; value <= 40; ++value) {
        std::string expected = std::string("FILLER_") + (value < 10 ? "0" : "") + std::to_string(value);
        if (value == next->value)
            expected = next++->text;
        EXPECT_EQ(QorProductTypeStringArray[value], expected);
        EXPECT_EQ(getProductTypeByName(expected.c_str()), value);
    }
}

TEST(QOREnumerationNumbers, UnknownTextIsAValueOfTheEnumeration) {
    QORSortOrderType const unknown = getSortOrderTypeByName("SIDEWAYS");
    EXPECT_EQ(static_cast<int>(unknown), -1);
    EXPECT_LT(unknown, QORSortOrderType::DEFAULT);
}
