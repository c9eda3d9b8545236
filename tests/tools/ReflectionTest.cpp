#include "kit/Reflection.h"

#include "kit/Numbering.h"

#include <qor/QORClass.h>
#include <qor/QORMetaRepository.h>
#include <qor/QORMetadataOrigin.h>
#include <qor/QORModel.h>

#include <gtest/gtest.h>

TEST(Reflection, EachLinkIsRecordedAtOneOfItsEnds) {
    int links = 0;
    for (int id = 0; QorAssociationTypeStringArray[id]; ++id) {
        QORMetaLink const* const link =
            QORMetaRepository::getMetaRepository()->getMetaLinkByID(static_cast<QORAssociationType>(id));
        if (!link) {
            continue;
        }
        EXPECT_NE(kit::isNearEnd(*link), kit::isNearEnd(*link->getFarMetaLink())) << link->getName().chars;
        ++links;
    }
    EXPECT_GT(links, 0);
}

TEST(Reflection, LinkIsRecordedAtTheOwnerAndAtWhatRefers) {
    QORMetaClass const& record = *QORClass::getStaticMetaClass();
    EXPECT_TRUE(kit::isNearEnd(*record.getMetaLinkByRoleName("operation")));
    EXPECT_FALSE(kit::isNearEnd(*record.getMetaLinkByRoleName("designPackage")));
    EXPECT_TRUE(kit::isNearEnd(*record.getMetaLinkByRoleName("supertypeOfGeneralization")));
    EXPECT_FALSE(kit::isNearEnd(*record.getMetaLinkByRoleName("primaryCandidateKey")));
}

TEST(Reflection, RecordsAreReadInTheirTrueType) {
    QORClass object;
    EXPECT_EQ(kit::linksOf(object).size(),
              static_cast<std::size_t>(object.getMetaClass()->getMetaLinks().size));
    EXPECT_EQ(kit::attributesOf(object).front(), object.getMetaClass()->getMetaAttributes()[0]);
    object.setName("name");
    EXPECT_EQ(kit::view(object.getName()), "name");
}

TEST(Reflection, UnaryEndHasOneElementOrNone) {
    QORModel model;
    QORMetaLink const& link = *model.getMetaClass()->getMetaLinkByRoleName("metadataOrigin");
    EXPECT_TRUE(kit::elementsOf(model, link).empty());
    auto* const origin = new QORMetadataOrigin;
    model.addMetadataOrigin(origin);
    EXPECT_EQ(kit::elementsOf(model, link), std::vector<QORObject*>{origin});
    EXPECT_EQ(kit::OwnedOrder().elements(model, link), std::vector<QORObject*>{origin});
}
