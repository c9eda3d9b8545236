#include "Graph.h"

#include <qor/QORMappingObject.h>

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
    object.setName(inUtf8);
    object.setDescription(inUtf8);
    object.setNativeType(notInLatin1);
    Recoding recode;
    recode(object);
    EXPECT_STREQ(object.getName().chars, inLatin1);
    EXPECT_STREQ(object.getDescription().chars, inLatin1);
    EXPECT_STREQ(object.getNativeType().chars, notInLatin1);
    EXPECT_EQ(recode.errors, 1);
}
