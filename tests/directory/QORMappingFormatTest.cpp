#include "FormatSupport.h"

#include <qor/QORConfigurationFormat.h>
#include <qor/QORDataMovementFormat.h>
#include <qor/QORMappingFormat.h>
#include <qor/QORMappingModel.h>
#include <qor/QORModelFormat.h>
#include <qor/QORVersion.h>

using namespace graph;

TEST(QORMappingFormat, IsAMetadataFormat) {
    expectConcrete<QORMappingFormat>(QORElementType::MAPPING_FORMAT, 81, "MappingFormat",
                                     QORMetadataFormat::getStaticMetaClass());
}

TEST(QORMappingFormat, FixesItsFormatType) {
    expectFixedFormatType<QORMappingFormat>("application/x-tova-tzt", "Transformation Metadata");
}

TEST(QORMappingFormat, RefusesToBeAssignedAnotherType) {
    expectRefusedAssignment<QORMappingFormat>("application/x-tova-tzt");
    QORDataMovementFormat movement;
    movement.setAuthor("author");
    QORMappingFormat mapping;
    expectThrowsOne([&] { mapping.setFrom(movement); });
    EXPECT_STREQ(mapping.getName().chars, "ETL Metadata");
    EXPECT_STREQ(mapping.getAuthor().chars, "author");
    EXPECT_STREQ(mapping.getFormatType().chars, "application/x-tova-tzt");
}

TEST(QORMappingFormat, CopiesItsTextsButNoModel) {
    expectCopied<QORMappingFormat>("application/x-tova-tzt");
    expectNotCompared<QORMappingFormat>([](auto& format) { format.addMappingModel(new QORMappingModel); });
    QORMappingFormat source;
    source.addMappingModel(new QORMappingModel);
    EXPECT_EQ(QORMappingFormat(source).getMappingModel(), nullptr);
}

TEST(QORMappingFormat, IsReferencedThroughEachOfItsLinks) {
    using F = QORMappingFormat;
    expectReferencedThrough<F, QORMappingModel>(&F::addMappingModel, &F::removeMappingModel);
    expectReferencedThrough<F, QORModelFormat>(&F::addSourceModelFormat, &F::removeSourceModelFormat);
    expectReferencedThrough<F, QORModelFormat>(&F::addDestinationModelFormat,
                                               &F::removeDestinationModelFormat);
}

TEST(QORMappingFormat, CanMapAModelOntoItself) {
    Held<QORMappingFormat> mapping;
    Held<QORModelFormat> model;
    EXPECT_TRUE(mapping->addSourceModelFormat(model));
    EXPECT_TRUE(mapping->addDestinationModelFormat(model));
    EXPECT_EQ(model->getSourceOfMappingFormat(0), mapping.get());
    EXPECT_EQ(model->getDestinationOfMappingFormat(0), mapping.get());
}

TEST(QORMappingFormat, DeletesItsModelThenFreeSourcesThenFreeDestinations) {
    Journal journal;
    QORMappingFormat format;
    format.addDestinationModelFormat(watched<QORModelFormat>(journal, "destination"));
    format.addSourceModelFormat(watched<QORModelFormat>(journal, "source"));
    format.addMappingModel(watched<QORMappingModel>(journal, "model"));
    format.addConfigurationFormat(watched<QORConfigurationFormat>(journal, "configuration"));
    format.addOriginalOfVersion(watched<QORVersion>(journal, "original of"));
    EXPECT_TRUE(format.recursiveDelete());
    EXPECT_EQ(journal.deaths, (Labels{"original of", "configuration", "model", "source", "destination"}));
}

TEST(QORMappingFormat, IsolatesItsModelFirst) {
    Journal journal;
    QORMappingFormat format;
    format.addVersion(watched<QORVersion>(journal, "version"));
    format.addConfigurationFormat(watched<QORConfigurationFormat>(journal, "configuration"));
    format.addDestinationModelFormat(watched<QORModelFormat>(journal, "destination"));
    format.addSourceModelFormat(watched<QORModelFormat>(journal, "source"));
    format.addMappingModel(watched<QORMappingModel>(journal, "model"));
    format.isolate(true);
    EXPECT_EQ(journal.deaths, (Labels{"model", "source", "destination", "configuration", "version"}));
}

TEST(QORMappingFormat, ReencodesAndWalksItsModelOnly) {
    Journal journal;
    Held<QORMappingFormat> format;
    Held<Watched<QORMappingModel>> model(journal, "model");
    Held<Watched<QORModelFormat>> source(journal, "source");
    format->addMappingModel(model);
    format->addSourceModelFormat(source);
    EXPECT_EQ(walkOf(*format), (Objects{format, model}));
    Recoding recode;
    recode(*format);
    EXPECT_EQ(journal.recodings, Labels{"model"});
}
