#include "kit/LinkEnds.h"

#include <qor/QORClass.h>
#include <qor/QORMetaClass.h>
#include <qor/QORMetaLink.h>
#include <qor/QORMetaRepository.h>

#include <gtest/gtest.h>

TEST(LinkEnds, EachLinkIsRecordedAtOneOfItsEnds) {
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
    EXPECT_EQ(links, 342);
}

TEST(LinkEnds, LinkIsRecordedAtTheOwnerAndAtWhatRefers) {
    QORMetaClass const& record = *QORClass::getStaticMetaClass();
    EXPECT_TRUE(kit::isNearEnd(*record.getMetaLinkByRoleName("operation")));
    EXPECT_FALSE(kit::isNearEnd(*record.getMetaLinkByRoleName("designPackage")));
    EXPECT_TRUE(kit::isNearEnd(*record.getMetaLinkByRoleName("supertypeOfGeneralization")));
    EXPECT_FALSE(kit::isNearEnd(*record.getMetaLinkByRoleName("primaryCandidateKey")));
}
