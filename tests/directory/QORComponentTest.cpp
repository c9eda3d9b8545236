#include "GraphObservers.h"

#include <qor/QORComponent.h>
#include <qor/QORDirectory.h>
#include <qor/QORNote.h>
#include <qor/QORProduct.h>
#include <qor/QORVersion.h>

using namespace graph;

TEST(QORComponent, IsAnAbstractRepositoryObject) {
    expectAbstract<QORComponent>(QORElementType::COMPONENT, 29, "Component",
                                 QORRepositoryObject::getStaticMetaClass());
}

TEST(QORComponent, IsReferencedThroughEachOfItsLinks) {
    using C = QORComponent;
    using Near = Plain<QORComponent>;
    expectReferencedThrough<Near, QORProduct>(&C::addReferencedByComponent, &C::removeReferencedByComponent);
    expectReferencedThrough<Near, QORVersion>(&C::addReferencedComponent, &C::removeReferencedComponent);
}

TEST(QORComponent, RefersToAnyOtherComponentButNotToItself) {
    Held<QORProduct> product;
    Held<QORVersion> version;
    EXPECT_TRUE(product->addReferencedComponent(version));
    EXPECT_EQ(version->getReferencedByComponent(0), product.get());
    EXPECT_EQ(version->getReferencedComponentCount(), 0);
    EXPECT_FALSE(version->addReferencedByComponent(product));
    EXPECT_TRUE(version->addReferencedComponent(product));
    EXPECT_FALSE(product->addReferencedComponent(product));
    EXPECT_EQ(product->getReferencedComponentCount(), 1);
    EXPECT_EQ(product->getParentCount(), 0);
}

TEST(QORComponent, DeletesFreeReferrersThenFreeReferences) {
    Journal journal;
    Held<QORDirectory> directory;
    Held<QORProduct> kept;
    directory->addProduct(kept);
    Plain<QORComponent> component;
    component.addReferencedComponent(kept);
    component.addReferencedComponent(watched<QORProduct>(journal, "referenced"));
    component.addReferencedByComponent(watched<QORProduct>(journal, "referrer"));
    component.addNote(watched<QORNote>(journal, "note"));
    EXPECT_TRUE(component.recursiveDelete());
    EXPECT_EQ(journal.deaths, (Labels{"note", "referrer", "referenced"}));
    EXPECT_EQ(kept->getReferencedByComponentCount(), 0);
    EXPECT_EQ(kept->getDirectory(), directory.get());
}

TEST(QORComponent, IsolatesReferrersThenReferences) {
    Journal journal;
    Plain<QORComponent> component;
    component.addNote(watched<QORNote>(journal, "note"));
    component.addReferencedComponent(watched<QORProduct>(journal, "referenced"));
    component.addReferencedByComponent(watched<QORProduct>(journal, "referrer"));
    EXPECT_EQ(component.isolate(true), &component);
    EXPECT_EQ(journal.deaths, (Labels{"referrer", "referenced", "note"}));
}

TEST(QORComponent, ReencodesItsTextsAndWalksNoReference) {
    Held<Plain<QORComponent>> component;
    Held<QORProduct> referenced(rawText);
    component->addReferencedComponent(referenced);
    component->setAuthor(rawText);
    EXPECT_EQ(walkOf(*component), Objects{component});
    Recoding recode;
    recode(*component);
    EXPECT_STREQ(component->getAuthor().chars, recodedText);
    EXPECT_STREQ(referenced->getName().chars, rawText);
}
