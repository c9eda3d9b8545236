#include "FormatSupport.h"

#include <qor/QORDataMovementFormat.h>
#include <qor/QORMappingModel.h>
#include <qor/QORVersion.h>

using namespace graph;

TEST(QORDataMovementFormat, IsAMappingFormat) {
    expectConcrete<QORDataMovementFormat>(QORElementType::DATA_MOVEMENT_FORMAT, 37, "DataMovementFormat",
                                          QORMappingFormat::getStaticMetaClass());
}

TEST(QORDataMovementFormat, FixesItsOwnFormatTypeAndNotThatOfAMappingFormat) {
    expectFixedFormatType<QORDataMovementFormat>("application/x-tova-tze", "ETL Metadata");
    QORDataMovementFormat format;
    expectThrowsOne([&] { format.setFormatType("application/x-tova-tzt"); });
}

TEST(QORDataMovementFormat, RefusesToBeAssignedAnotherType) {
    expectRefusedAssignment<QORDataMovementFormat>("application/x-tova-tze");
    QORMappingFormat const mapping;
    QORDataMovementFormat movement;
    expectThrowsOne([&] { static_cast<QORMappingFormat&>(movement) = mapping; });
    EXPECT_STREQ(movement.getName().chars, "Transformation Metadata");
    EXPECT_STREQ(movement.getFormatType().chars, "application/x-tova-tze");
}

TEST(QORDataMovementFormat, CopiesItsTextsButNoModel) {
    expectCopied<QORDataMovementFormat>("application/x-tova-tze");
    QORDataMovementFormat source;
    source.addMappingModel(new QORMappingModel);
    EXPECT_EQ(QORDataMovementFormat(source).getMappingModel(), nullptr);
}

TEST(QORDataMovementFormat, EqualsNoMappingFormat) {
    QORDataMovementFormat const movement;
    QORMappingFormat const mapping;
    EXPECT_FALSE(movement.equals(mapping));
    EXPECT_FALSE(mapping.equals(movement));
}

TEST(QORDataMovementFormat, OwnsItsMappingModel) {
    Journal journal;
    auto* const format = new QORDataMovementFormat;
    auto* const model = watched<QORMappingModel>(journal, "model");
    format->addMappingModel(model);
    EXPECT_EQ(model->getParent(), format);
    EXPECT_EQ(walkOf(*format), (Objects{format, model}));
    Recoding recode;
    recode(*format);
    EXPECT_EQ(journal.recodings, Labels{"model"});
    delete format;
    EXPECT_EQ(journal.deaths, Labels{"model"});
}

TEST(QORDataMovementFormat, SharesANameWithAMappingFormatInAVersion) {
    QORVersion version;
    EXPECT_TRUE(version.addFormat(named<QORMappingFormat>("same")));
    EXPECT_TRUE(version.addFormat(named<QORDataMovementFormat>("same")));
    EXPECT_EQ(version.getFormat(0)->getElementType(), QORElementType::DATA_MOVEMENT_FORMAT);
}
