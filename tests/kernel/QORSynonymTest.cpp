#include <qor/QORSynonym.h>

#include <qor/QORClass.h>
#include <qor/QORDesignPackage.h>
#include <qor/QOREncodingConverter.h>
#include <qor/QORException.h>
#include <qor/QORMetaClass.h>
#include <qor/QORNote.h>

#include "Mortal.h"

#include <gtest/gtest.h>

#include <memory>

TEST(QORSynonym, NewSynonymIsFree) {
    QORSynonym synonym;
    EXPECT_EQ(QORElementType::SYNONYM, synonym.getElementType());
    EXPECT_EQ(nullptr, synonym.getModelObject());
    EXPECT_EQ(nullptr, synonym.getParent());
    EXPECT_EQ(0, synonym.getParentCount());
    EXPECT_FALSE(synonym.isReferenced());
    EXPECT_EQ(nullptr, synonym.removeAggregationAssembly());
    EXPECT_TRUE(synonym.recursiveDelete());
}

TEST(QORSynonym, MetaClassAndBases) {
    QORMetaClass const* const meta = QORSynonym::getStaticMetaClass();
    EXPECT_STREQ("Synonym", meta->getDisplayName().chars);
    EXPECT_FALSE(meta->isAbstract());
    EXPECT_EQ(QORModelObject::getStaticMetaClass(), meta->getParent());
    QORSynonym const synonym;
    EXPECT_EQ(meta, synonym.getMetaClass());
    for (int type = 0; type <= 150; ++type)
        EXPECT_EQ(type == QORElementType::SYNONYM || type == QORElementType::MODEL_OBJECT ||
                      type == QORElementType::ELEMENT || type == QORElementType::OBJECT,
                  synonym.isInstanceOf(static_cast<QORElementType>(type)))
            << type;
}

TEST(QORSynonym, TheModelObjectIsItsParent) {
    QORDesignPackage object;
    auto* const synonym = named<QORSynonym>("s");
    EXPECT_TRUE(synonym->addModelObject(&object));
    EXPECT_EQ(&object, synonym->getParent());
    EXPECT_EQ(1, synonym->getParentCount());
    EXPECT_TRUE(synonym->isReferenced());
    EXPECT_FALSE(synonym->QORModelObject::isReferenced());
    EXPECT_FALSE(synonym->recursiveDelete());
    EXPECT_EQ(&object, synonym->removeAggregationAssembly());
    EXPECT_EQ(0, object.getSynonymCount());
    EXPECT_TRUE(synonym->recursiveDelete());
    delete synonym;
}

TEST(QORSynonym, ASynonymMayHaveSynonyms) {
    EventLog deaths;
    auto* const object = new QORDesignPackage;
    auto* const synonym = mortal<QORSynonym>(deaths, "s");
    object->addSynonym(synonym);
    synonym->addSynonym(mortal<QORSynonym>(deaths, "t"));
    EXPECT_FALSE(synonym->recursiveDelete());
    EXPECT_EQ(1, synonym->getSynonymCount());
    delete object;
    EXPECT_EQ((EventLog{"t", "s"}), deaths);
}

TEST(QORSynonym, CopyAndAssignmentLeaveTheModelObjectAlone) {
    QORDesignPackage object;
    auto* const source = named<QORSynonym>("s");
    source->setComment("c");
    object.addSynonym(source);
    QORSynonym copy(*source);
    EXPECT_EQ(nullptr, copy.getModelObject());
    EXPECT_STREQ("c", copy.getComment().chars);
    EXPECT_EQ(QORElementType::SYNONYM, copy.getElementType());
    copy.setComment("d");
    EXPECT_EQ(source, &static_cast<QORObject*>(source)->setFrom(copy));
    EXPECT_STREQ("d", source->getComment().chars);
    EXPECT_EQ(&object, source->getModelObject());
}

TEST(QORSynonym, EqualityIsThatOfTheModelObjectLayerAmongSynonyms) {
    QORSynonym a;
    QORSynonym b;
    EXPECT_TRUE(a == b);
    a.setComment("c");
    EXPECT_TRUE(a == b);
    a.setStereotype("s");
    EXPECT_FALSE(a == b);
    QORDesignPackage package;
    EXPECT_FALSE(b.equals(package));
    EXPECT_TRUE(b.QORModelObject::finalEquals(package));
}

TEST(QORSynonym, IsolateWithDeletionDestroysTheUnreferencedModelObject) {
    EventLog deaths;
    QORSynonym synonym;
    synonym.addModelObject(mortal<QORDesignPackage>(deaths, "object"));
    EXPECT_EQ(&synonym, synonym.isolate(true));
    EXPECT_EQ(EventLog{"object"}, deaths);
    EXPECT_FALSE(synonym.isReferenced());
}

TEST(QORSynonym, IsolateWithoutDeletionOnlyUnlinks) {
    QORDesignPackage object;
    QORSynonym synonym;
    synonym.addModelObject(&object);
    EXPECT_EQ(&synonym, synonym.isolate(false));
    EXPECT_FALSE(synonym.isReferenced());
    EXPECT_FALSE(object.isReferenced());
}

TEST(QORSynonym, ATakenNameIsRefusedAndItStaysUnderItsOldOne) {
    QORDesignPackage object;
    auto* const a = named<QORSynonym>("a");
    auto* const b = named<QORSynonym>("b");
    object.addSynonym(a);
    object.addSynonym(b);
    try {
        a->setName("b");
        FAIL() << "accepted";
    } catch (QORException const& refusal) {
        EXPECT_STREQ(
            "[QORSDK_F0001] Illegal Argument: The ModelObject already contains a Synonym with this name\n",
            refusal.what());
    }
    EXPECT_STREQ("a", a->getName().chars);
    EXPECT_EQ(&object, a->getModelObject());
    EXPECT_EQ(a, object.getSynonym(0));
    a->setName("c");
    EXPECT_EQ(b, object.getSynonym(0));
    EXPECT_EQ(a, object.getSynonym(1));
    b->removeAggregationAssembly();
    a->setName("b");
    EXPECT_STREQ("b", a->getName().chars);
    delete b;
}

TEST(QORSynonym, TranscodeMakesACollidingNameUnique) {
    std::unique_ptr<QOREncodingConverter> const utf7(QOREncodingConverter::create("UTF-7"));
    std::unique_ptr<QOREncodingConverter> const utf8(QOREncodingConverter::create("UTF-8"));
    int converted = 0;
    int failed = 0;
    QORDesignPackage object;
    object.addSynonym(named<QORSynonym>("+AEE-"));
    object.addSynonym(named<QORSynonym>("A"));
    object.transcode(utf7.get(), utf8.get(), converted, failed);
    EXPECT_STREQ("A", object.getSynonym(0)->getName().chars);
    EXPECT_STREQ("A/1", object.getSynonym(1)->getName().chars);
    EXPECT_EQ(2, converted);
}
