#include "GraphObservers.h"

#include <qor/QORMappingObject.h>

using namespace graph;

TEST(QORMappingObject, IsAnAbstractElement) {
    expectAbstract<QORMappingObject>(QORElementType::MAPPING_OBJECT, 60, "MappingObject",
                                     QORElement::getStaticMetaClass());
}

TEST(QORMappingObject, HasNoOwnerAndIsNotReferencedByItself) {
    Plain<QORMappingObject> object;
    EXPECT_EQ(object.getParent(), nullptr);
    EXPECT_EQ(object.getParentCount(), 0);
    EXPECT_FALSE(object.isReferenced());
    EXPECT_EQ(object.removeAggregationAssembly(), nullptr);
    EXPECT_TRUE(object.recursiveDelete());
}

TEST(QORMappingObject, ReencodesTheTextsOfAnElement) {
    Plain<QORMappingObject> object;
    object.setName(rawText);
    object.setDescription(rawText);
    object.setNativeType(stubbornText);
    Recoding recode;
    recode(object);
    EXPECT_STREQ(object.getName().chars, recodedText);
    EXPECT_STREQ(object.getDescription().chars, recodedText);
    EXPECT_STREQ(object.getNativeType().chars, stubbornText);
    EXPECT_EQ(recode.errors, 1);
}
