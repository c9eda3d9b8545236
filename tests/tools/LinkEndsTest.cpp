#include "kit/LinkEnds.h"

#include "EveryKind.h"
#include "kit/Numbering.h"

#include <qor/QORMetadataOrigin.h>
#include <qor/QORModel.h>

#include <gtest/gtest.h>

namespace {

QORMetaLink const& end(QORAssociationType id) {
    return *QORMetaRepository::getMetaRepository()->getMetaLinkByID(id);
}

TEST(LinkEnds, EachEndOfEachClassHasOneThatAnswersItFromTheFarClass) {
    int ends = 0;
    for (QORMetaClass const* metaClass : concreteClasses()) {
        for (QORMetaLink const* link : kit::recordsOf<QORMetaLink>(metaClass->getMetaLinks())) {
            QORMetaLink const& reverse = *kit::linkEnd(*link).reverse;
            EXPECT_EQ(kit::linkEnd(reverse).reverse, link) << link->getName().chars;
            EXPECT_EQ(reverse.getMetaClass()->getId(), kit::farClassOf(*link)) << link->getName().chars;
            EXPECT_NE(kit::isNearEnd(reverse), kit::isNearEnd(*link)) << link->getName().chars;
            ++ends;
        }
    }
    EXPECT_GT(ends, 1000);
}

TEST(LinkEnds, ReverseIsFoundWhereTwoEndsLeadToTheSameClass) {
    EXPECT_EQ(kit::linkEnd(end(QORAssociationType::CLASS__SUPERTYPE_OF__GENERALIZATION)).reverse,
              &end(QORAssociationType::GENERALIZATION__SUPERTYPE__CLASS));
    EXPECT_EQ(kit::linkEnd(end(QORAssociationType::CLASS__SUBTYPE_OF__GENERALIZATION)).reverse,
              &end(QORAssociationType::GENERALIZATION__SUBTYPE__CLASS));
    EXPECT_EQ(kit::linkEnd(end(QORAssociationType::PACKAGE__CHILD__PACKAGE)).reverse,
              &end(QORAssociationType::PACKAGE__PARENT__PACKAGE));
}

TEST(LinkEnds, OnlyEndsThatAreNeitherSortedNorOfOneObjectKeepAnOrder) {
    EXPECT_TRUE(kit::linkEnd(end(QORAssociationType::CLASS__SUPERTYPE_OF__GENERALIZATION)).keepsOrder);
    EXPECT_TRUE(kit::linkEnd(end(QORAssociationType::ELEMENT__PROPERTY_VALUE)).keepsOrder);
    EXPECT_FALSE(kit::linkEnd(end(QORAssociationType::CLASS__OPERATION)).keepsOrder);        // by address
    EXPECT_FALSE(kit::linkEnd(end(QORAssociationType::PACKAGE__CHILD__PACKAGE)).keepsOrder); // by name
    EXPECT_FALSE(kit::linkEnd(end(QORAssociationType::DERIVED_TYPE__TYPE_VALUE)).keepsOrder);
    EXPECT_FALSE(kit::linkEnd(end(QORAssociationType::MODEL__METADATA_ORIGIN)).keepsOrder); // of one object
}

TEST(LinkEnds, UnaryEndHasOneElementOrNone) {
    QORModel model;
    QORMetaLink const& link = end(QORAssociationType::MODEL__METADATA_ORIGIN);
    EXPECT_TRUE(kit::elementsOf(model, link).empty());
    auto* const origin = new QORMetadataOrigin;
    model.addMetadataOrigin(origin);
    EXPECT_EQ(kit::elementsOf(model, link), std::vector<QORObject*>{origin});
    EXPECT_EQ(kit::OwnedOrder().elements(model, link), std::vector<QORObject*>{origin});
}

} // namespace
