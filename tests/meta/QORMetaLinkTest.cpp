#include <qor/QORMetaClass.h>
#include <qor/QORMetaLink.h>
#include <qor/QORMetaRepository.h>
#include <qor/QORObject.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <vector>

/// What the record of an end says of the link, compared with what linking objects shows.
namespace {

struct Disposal {
    void operator()(QORObject* object) const {
        object->isolate(false);
        delete object;
    }
};
using Specimen = std::unique_ptr<QORObject, Disposal>;

/// An object of the class or, if that is abstract, of one below it.
Specimen specimenOf(QORMetaClass const& metaClass) {
    if (QORObject* const object = metaClass.newInstance())
        return Specimen(object);
    for (int i = 0; i < metaClass.getSubclasses().size; ++i) {
        if (Specimen object = specimenOf(*static_cast<QORMetaClass*>(metaClass.getSubclasses()[i])))
            return object;
    }
    return nullptr;
}

/// The text of an end's number is its class, its role and the far class:
/// "CLASS__SUPERTYPE_OF__GENERALIZATION".
QORElementType farClassByText(QORMetaLink const& link) {
    std::string const text = link.getName().chars;
    return getElementTypeByName(text.c_str() + text.rfind("__") + 2);
}

Specimen nearSpecimen(QORMetaLink const& link) {
    return specimenOf(*link.getMetaClass());
}

Specimen farSpecimen(QORMetaLink const& link) {
    return specimenOf(*QORMetaRepository::getMetaRepository()->getMetaClassByID(farClassByText(link)));
}

/// The ends of a linked object that hold the other one.
std::vector<QORMetaLink const*> endsHolding(QORObject& object, QORObject const& other) {
    std::vector<QORMetaLink const*> ends;
    QORVector const& links = object.getMetaClass()->getMetaLinks();
    for (int i = 0; i < links.size; ++i) {
        auto const* const end = static_cast<QORMetaLink const*>(links[i]);
        if (end->getLink(&object, 0) == &other)
            ends.push_back(end);
    }
    return ends;
}

/// Not every object can be named; then its address alone could be what it is sorted by.
void tryToName(QORObject& object, char const* name) {
    try {
        object.setName(name);
    } catch (int) {
    }
}

/// Adds objects in an order that is neither that of their addresses nor that of their names.
bool keepsOrder(QORMetaLink const& link) {
    Specimen const near = nearSpecimen(link);
    Specimen specimens[] = {farSpecimen(link), farSpecimen(link), farSpecimen(link)};
    std::sort(std::begin(specimens), std::end(specimens),
              [](Specimen const& a, Specimen const& b) { return std::less<>()(a.get(), b.get()); });
    char const* const names[] = {"a", "b", "c"};
    std::vector<QORObject*> added;
    for (int const i : {1, 2, 0}) {
        tryToName(*specimens[i], names[i]);
        added.push_back(specimens[i].get());
        if (!link.addLink(near.get(), specimens[i].get()))
            return false;
    }
    std::vector<QORObject*> held;
    for (int i = 0; i < link.getLinkCount(near.get()); ++i)
        held.push_back(link.getLink(near.get(), i));
    return held == added;
}

std::vector<QORMetaLink const*> allLinks() {
    std::vector<QORMetaLink const*> links;
    for (int id = 0; QorAssociationTypeStringArray[id]; ++id) {
        if (QORMetaLink const* const link =
                QORMetaRepository::getMetaRepository()->getMetaLinkByID(static_cast<QORAssociationType>(id)))
            links.push_back(link);
    }
    return links;
}

QORMetaLink const& end(QORAssociationType id) {
    return *QORMetaRepository::getMetaRepository()->getMetaLinkByID(id);
}

} // namespace

TEST(QORMetaLink, FarClassIsTheOneThatTheTextOfTheNumberEndsWith) {
    std::vector<QORMetaLink const*> const links = allLinks();
    EXPECT_EQ(links.size(), 342u);
    for (QORMetaLink const* link : links) {
        ASSERT_NE(link->getFarMetaClass(), nullptr) << link->getName().chars;
        EXPECT_EQ(link->getFarMetaClass()->getId(), farClassByText(*link)) << link->getName().chars;
    }
}

TEST(QORMetaLink, FarEndIsTheOneThatLinkingSets) {
    for (QORMetaLink const* link : allLinks()) {
        Specimen const near = nearSpecimen(*link);
        Specimen const far = farSpecimen(*link);
        ASSERT_TRUE(link->addLink(near.get(), far.get())) << link->getName().chars;
        EXPECT_EQ(endsHolding(*far, *near), std::vector<QORMetaLink const*>{link->getFarMetaLink()})
            << link->getName().chars;
        EXPECT_EQ(link->getFarMetaLink()->getFarMetaLink(), link) << link->getName().chars;
    }
}

TEST(QORMetaLink, FarEndIsTheRightOneWhereTwoEndsLeadToTheSameClass) {
    EXPECT_EQ(end(QORAssociationType::CLASS__SUPERTYPE_OF__GENERALIZATION).getFarMetaLink(),
              &end(QORAssociationType::GENERALIZATION__SUPERTYPE__CLASS));
    EXPECT_EQ(end(QORAssociationType::CLASS__SUBTYPE_OF__GENERALIZATION).getFarMetaLink(),
              &end(QORAssociationType::GENERALIZATION__SUBTYPE__CLASS));
    EXPECT_EQ(end(QORAssociationType::PACKAGE__CHILD__PACKAGE).getFarMetaLink(),
              &end(QORAssociationType::PACKAGE__PARENT__PACKAGE));
}

TEST(QORMetaLink, IsOrderedWhereObjectsStandAsTheyWereAdded) {
    for (QORMetaLink const* link : allLinks())
        EXPECT_EQ(link->isOrdered(), !link->isUnary() && keepsOrder(*link)) << link->getName().chars;
}

TEST(QORMetaLink, IsNotOrderedWhereObjectsAreSortedNorWhereOneObjectIsHeld) {
    EXPECT_TRUE(end(QORAssociationType::CLASS__SUPERTYPE_OF__GENERALIZATION).isOrdered());
    EXPECT_TRUE(end(QORAssociationType::ELEMENT__PROPERTY_VALUE).isOrdered());
    EXPECT_FALSE(end(QORAssociationType::CLASS__OPERATION).isOrdered());        // by address
    EXPECT_FALSE(end(QORAssociationType::PACKAGE__CHILD__PACKAGE).isOrdered()); // by name
    EXPECT_FALSE(end(QORAssociationType::DERIVED_TYPE__TYPE_VALUE).isOrdered());
    EXPECT_FALSE(end(QORAssociationType::MODEL__METADATA_ORIGIN).isOrdered()); // of one object
}
