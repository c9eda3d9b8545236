#include "ModelTestSupport.h"

#include <qor/QORDatabaseSchema.h>
#include <qor/QORDesignPackage.h>
#include <qor/QOROlapSchema.h>
#include <qor/QORRecordFileSchema.h>
#include <qor/QORXmlSchema.h>

namespace {

/// The data packages that add nothing to their base.
template <class Class>
class QOREmptyDataPackages : public testing::Test {};

using Classes = testing::Types<QORDatabaseSchema, QOROlapSchema, QORXmlSchema, QORRecordFileSchema>;
TYPED_TEST_SUITE(QOREmptyDataPackages, Classes);

} // namespace

TEST(QOREmptyDataPackages, HaveTheirNumbersAndNames) {
    QORMetaClass* const base = QORDataPackage::getStaticMetaClass();
    graph::expectConcrete<QORDatabaseSchema>(QORElementType::DATABASE_SCHEMA, 72, "DatabaseSchema", base);
    graph::expectConcrete<QOROlapSchema>(QORElementType::OLAP_SCHEMA, 140, "OlapSchema", base);
    graph::expectConcrete<QORXmlSchema>(QORElementType::XML_SCHEMA, 142, "XmlSchema", base);
    graph::expectConcrete<QORRecordFileSchema>(QORElementType::RECORD_FILE_SCHEMA, 143, "RecordFileSchema",
                                               base);
}

TEST(QOREmptyDataPackages, AreEqualOnlyWithinTheirClass) {
    expectClassesUnequal<QORDatabaseSchema, QOROlapSchema>();
    expectClassesUnequal<QOROlapSchema, QORXmlSchema>();
    expectClassesUnequal<QORXmlSchema, QORRecordFileSchema>();
    expectClassesUnequal<QORRecordFileSchema, QORDatabaseSchema>();
}

TYPED_TEST(QOREmptyDataPackages, TakeOverTheDirection) {
    expectAttribute<TypeParam>(&TypeParam::getDirection, &TypeParam::setDirection,
                               QORDirectionType::SOURCE_DESTINATION, QORDirectionType::SOURCE);
}

TYPED_TEST(QOREmptyDataPackages, StandInAPackageTree) {
    Graph graph;
    auto* const parent = graph.make<QORDesignPackage>();
    auto* const package = graph.make<TypeParam>("A");
    ASSERT_TRUE(parent->addChildPackage(package));
    ASSERT_TRUE(parent->addChildPackage(graph.make<TypeParam>("B")));
    EXPECT_FALSE(parent->addChildPackage(graph.make<TypeParam>("B")));
    expectNameRefused(*package, "B", "Package", "Package");
    expectLeaves(*package, {parent});
}

TYPED_TEST(QOREmptyDataPackages, ReencodeTheirNameAndTheirPackages) {
    Graph graph;
    auto* const package = graph.make<TypeParam>(inUtf8);
    auto* const child = graph.make<TypeParam>(inUtf8);
    ASSERT_TRUE(package->addChildPackage(child));
    Recoding recode;
    recode(*package);
    EXPECT_EQ(package->getName(), inLatin1);
    EXPECT_EQ(child->getName(), inLatin1);
    EXPECT_EQ(recode.converted, 2);
}
