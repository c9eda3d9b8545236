#include "ModelTestSupport.h"

#include <qor/QORDataAttribute.h>
#include <qor/QORStructuralFeature.h>

// A structural feature is abstract: a data attribute shows what it does.

TEST(QORStructuralFeature, IsAbstractAndAFeature) {
    graph::expectAbstract<QORStructuralFeature>(QORElementType::STRUCTURAL_FEATURE, 99, "StructuralFeature",
                                                QORFeature::getStaticMetaClass());
}

TEST(QORStructuralFeature, InitialValueAndOptionalCountForEquality) {
    expectAttribute<QORDataAttribute>(&QORDataAttribute::getInitialValue, &QORDataAttribute::setInitialValue,
                                      "", "1");
    expectAttribute<QORDataAttribute>(&QORDataAttribute::getOptional, &QORDataAttribute::setOptional, false,
                                      true);
    expectAttribute<QORDataAttribute>(&QORDataAttribute::getPosition, &QORDataAttribute::setPosition,
                                      short{0}, short{1});
}

TEST(QORStructuralFeature, TheInitialValueIsReencoded) {
    expectTextsRecoded<QORDataAttribute>(
        {{&QORDataAttribute::getInitialValue, &QORDataAttribute::setInitialValue},
         {&QORDataAttribute::getPhysicalName, &QORDataAttribute::setPhysicalName}});
}
