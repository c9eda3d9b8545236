#include "FormatSupport.h"

#include <qor/QORDataMovementFormat.h>
#include <qor/QORMappingModel.h>
#include <qor/QORVersion.h>

TEST(QORDataMovementFormat, RefusesToBeAssignedAMappingFormat) {
    QORMappingFormat const mapping;
    QORDataMovementFormat movement;
    expectThrowsOne([&] { static_cast<QORMappingFormat&>(movement) = mapping; });
    EXPECT_STREQ(movement.getName().chars, "Transformation Metadata");
    EXPECT_STREQ(movement.getFormatType().chars, "application/x-tova-tze");
}

TEST(QORDataMovementFormat, OwnsItsMappingModel) {
    Graph graph;
    auto* const format = new QORDataMovementFormat;
    auto* const model = graph.mortal<QORMappingModel>("model");
    format->addMappingModel(model);
    EXPECT_EQ(model->getParent(), format);
    EXPECT_EQ(walkOf(*format), (Objects{format, model}));
    Recoding recode;
    recode(*format);
    EXPECT_EQ(graph.recodings, Labels{"model"});
    delete format;
    EXPECT_EQ(graph.deaths, Labels{"model"});
}

TEST(QORDataMovementFormat, SharesANameWithAMappingFormatInAVersion) {
    QORVersion version;
    EXPECT_TRUE(version.addFormat(named<QORMappingFormat>("same")));
    EXPECT_TRUE(version.addFormat(named<QORDataMovementFormat>("same")));
    EXPECT_EQ(version.getFormat(0)->getElementType(), QORElementType::DATA_MOVEMENT_FORMAT);
}
