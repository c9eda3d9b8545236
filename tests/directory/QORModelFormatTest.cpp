#include "FormatSupport.h"

#include <qor/QORConfigurationFormat.h>
#include <qor/QORMappingFormat.h>
#include <qor/QORModel.h>
#include <qor/QORModelFormat.h>
#include <qor/QORVersion.h>

using namespace graph;

TEST(QORModelFormat, IsAMetadataFormat) {
    expectConcrete<QORModelFormat>(QORElementType::MODEL_FORMAT, 36, "ModelFormat",
                                   QORMetadataFormat::getStaticMetaClass());
}

TEST(QORModelFormat, FixesItsFormatType) {
    expectFixedFormatType<QORModelFormat>("application/x-tova-tzm", "Model Metadata");
}

TEST(QORModelFormat, RefusesToBeAssignedAnotherType) {
    expectRefusedAssignment<QORModelFormat>("application/x-tova-tzm");
}

TEST(QORModelFormat, CopiesItsTextsButNoModel) {
    expectCopied<QORModelFormat>("application/x-tova-tzm");
    QORModelFormat source;
    source.addModel(new QORModel);
    QORModelFormat const copy(source);
    EXPECT_EQ(copy.getModel(), nullptr);
    EXPECT_STREQ(copy.getFormatType().chars, "application/x-tova-tzm");
    expectNotCompared<QORModelFormat>([](auto& format) { format.addModel(new QORModel); });
}

TEST(QORModelFormat, ACopyKeepsItsOwnName) {
    QORModelFormat source;
    source.setName("renamed");
    EXPECT_STREQ(QORModelFormat(source).getName().chars, "renamed");
    QORModelFormat target;
    target = source;
    EXPECT_STREQ(target.getName().chars, "renamed");
}

TEST(QORModelFormat, IsReferencedThroughEachOfItsLinks) {
    using F = QORModelFormat;
    expectReferencedThrough<F, QORModel>(&F::addModel, &F::removeModel);
    expectReferencedThrough<F, QORMappingFormat>(&F::addSourceOfMappingFormat,
                                                 &F::removeSourceOfMappingFormat);
    expectReferencedThrough<F, QORMappingFormat>(&F::addDestinationOfMappingFormat,
                                                 &F::removeDestinationOfMappingFormat);
    expectReferencedThrough<F, QORConfigurationFormat>(&QORMetadataFormat::addConfigurationFormat,
                                                       &QORMetadataFormat::removeConfigurationFormat);
}

TEST(QORModelFormat, DeletesItsModelAfterWhatAMetadataFormatHas) {
    Journal journal;
    QORModelFormat format;
    format.addDestinationOfMappingFormat(watched<QORMappingFormat>(journal, "destination of"));
    format.addSourceOfMappingFormat(watched<QORMappingFormat>(journal, "source of"));
    format.addModel(watched<QORModel>(journal, "model"));
    format.addConfigurationFormat(watched<QORConfigurationFormat>(journal, "configuration"));
    format.addDefaultOfVersion(watched<QORVersion>(journal, "default of"));
    EXPECT_TRUE(format.recursiveDelete());
    EXPECT_EQ(journal.deaths,
              (Labels{"default of", "configuration", "model", "source of", "destination of"}));
}

TEST(QORModelFormat, IsolatesItsModelFirst) {
    Journal journal;
    QORModelFormat format;
    format.addVersion(watched<QORVersion>(journal, "version"));
    format.addConfigurationFormat(watched<QORConfigurationFormat>(journal, "configuration"));
    format.addDestinationOfMappingFormat(watched<QORMappingFormat>(journal, "destination of"));
    format.addSourceOfMappingFormat(watched<QORMappingFormat>(journal, "source of"));
    format.addModel(watched<QORModel>(journal, "model"));
    format.isolate(true);
    EXPECT_EQ(journal.deaths, (Labels{"model", "source of", "destination of", "configuration", "version"}));
}

TEST(QORModelFormat, ReencodesAndWalksItsModelOnly) {
    Journal journal;
    Held<QORModelFormat> format(rawText);
    Held<Watched<QORModel>> model(journal, "model");
    Held<Watched<QORMappingFormat>> mapping(journal, "mapping");
    format->addModel(model);
    format->addSourceOfMappingFormat(mapping);
    EXPECT_EQ(walkOf(*format), (Objects{format, model}));
    Recoding recode;
    recode(*format);
    EXPECT_EQ(journal.recodings, Labels{"model"});
    EXPECT_STREQ(format->getName().chars, recodedText);
    EXPECT_STREQ(format->getFormatType().chars, "application/x-tova-tzm");
}
