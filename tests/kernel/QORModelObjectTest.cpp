#include <qor/QORModelObject.h>

#include <qor/QORBusinessRule.h>
#include <qor/QORClass.h>
#include <qor/QORDatabaseSchema.h>
#include <qor/QORDesignPackage.h>
#include <qor/QOREncodingConverter.h>
#include <qor/QORKeyMap.h>
#include <qor/QORMetaClass.h>
#include <qor/QORNote.h>
#include <qor/QORPhysicalObject.h>
#include <qor/QORProjection.h>
#include <qor/QORSynonym.h>
#include <qor/QORTraversalOperation.h>

#include "Mortal.h"

#include <gtest/gtest.h>

#include <memory>
#include <type_traits>

namespace {

/// The plainest class of a caller on the model object layer.
class Plain : public QORModelObject {
public:
    Plain() = default;
    Plain(Plain const&) = default;
    Plain& operator=(Plain const&) = default;
};

} // namespace

TEST(QORModelObject, NewObjectHasTheDefaultsOfItsLayer) {
    Plain object;
    EXPECT_STREQ("", object.getPhysicalName().chars);
    EXPECT_STREQ("", object.getComment().chars);
    EXPECT_STREQ("", object.getStereotype().chars);
    EXPECT_EQ(QORApprovalStatusType::DEVELOPMENTAL, object.getStatus());
    EXPECT_EQ(QORDesignLevelType::LOGICAL_PHYSICAL, object.getDesignLevel());
    EXPECT_EQ(nullptr, object.getDataPackage());
    EXPECT_EQ(0, object.getSourceOfKeyMapCount());
    EXPECT_EQ(0, object.getPresentationPresentationElementCount());
    EXPECT_EQ(0, object.getAssociatedPhysicalObjectCount());
    EXPECT_EQ(0, object.getAssociatedBusinessRuleCount());
    EXPECT_EQ(0, object.getSynonymCount());
    EXPECT_EQ(0, object.getImportedByDesignPackageCount());
    EXPECT_FALSE(object.isReferenced());
    EXPECT_EQ(nullptr, object.getParent());
    EXPECT_EQ(0, object.getParentCount());
}

TEST(QORModelObject, IsAbstract) {
    EXPECT_FALSE(std::is_default_constructible<QORModelObject>::value);
    QORMetaClass const* const meta = QORModelObject::getStaticMetaClass();
    EXPECT_TRUE(meta->isAbstract());
    EXPECT_EQ(QORElementType::MODEL_OBJECT, meta->getId());
    EXPECT_STREQ("ModelObject", meta->getDisplayName().chars);
    EXPECT_EQ(QORElement::getStaticMetaClass(), meta->getParent());
    EXPECT_EQ(10, meta->getMetaAttributes().size); // half of them inherited
    EXPECT_EQ(11, meta->getMetaLinks().size);
    Plain const object;
    EXPECT_EQ(meta, object.getMetaClass());
}

TEST(QORModelObject, IsInstanceOfItsBases) {
    Plain const object;
    for (int type = 0; type <= 150; ++type)
        EXPECT_EQ(type == QORElementType::MODEL_OBJECT || type == QORElementType::ELEMENT ||
                      type == QORElementType::OBJECT,
                  object.isInstanceOf(static_cast<QORElementType>(type)))
            << type;
}

TEST(QORModelObject, CopyHasTheAttributesAndNotesButNoSynonymsNorOtherLinks) {
    Plain source;
    source.setPhysicalName("p");
    source.setComment("c");
    source.setStereotype("s");
    source.setStatus(QORApprovalStatusType::APPROVED);
    source.setDesignLevel(QORDesignLevelType::LOGICAL_ONLY);
    source.addSynonym(named<QORSynonym>("x"));
    source.addNote(new QORNote);
    QORDesignPackage importer;
    importer.addNote(new QORNote);
    importer.addImportedModelObject(&source);
    QORDatabaseSchema package;
    package.addNote(new QORNote);
    package.addModelObject(&source);
    Plain const copy(source);
    EXPECT_STREQ("p", copy.getPhysicalName().chars);
    EXPECT_STREQ("c", copy.getComment().chars);
    EXPECT_STREQ("s", copy.getStereotype().chars);
    EXPECT_EQ(QORApprovalStatusType::APPROVED, copy.getStatus());
    EXPECT_EQ(QORDesignLevelType::LOGICAL_ONLY, copy.getDesignLevel());
    EXPECT_EQ(0, copy.getSynonymCount());
    EXPECT_EQ(0, copy.getImportedByDesignPackageCount());
    EXPECT_EQ(nullptr, copy.getDataPackage());
    EXPECT_EQ(1, copy.getNoteCount());
    EXPECT_EQ(1, source.getSynonymCount());
    EXPECT_EQ(&package, source.getDataPackage());
    package.removeModelObject(&source);
    importer.removeImportedModelObject(&source);
}

TEST(QORModelObject, AssignmentLeavesTheTargetsLinks) {
    QORDesignPackage source;
    source.setComment("c");
    source.setPhysicalName("p");
    source.addSynonym(named<QORSynonym>("x"));
    QORDesignPackage target;
    auto* const synonym = named<QORSynonym>("y");
    target.addSynonym(synonym);
    target.QORModelObject::operator=(source);
    EXPECT_STREQ("c", target.getComment().chars);
    EXPECT_STREQ("p", target.getPhysicalName().chars);
    EXPECT_EQ(1, target.getSynonymCount());
    EXPECT_EQ(synonym, target.getSynonym(0));
    EXPECT_EQ(1, source.getSynonymCount());
}

TEST(QORModelObject, CommentDoesNotCountInEqualityAndTheOtherAttributesDo) {
    QORDesignPackage a;
    QORDesignPackage b;
    a.setComment("c");
    a.addSynonym(new QORSynonym);
    EXPECT_TRUE(a == b);
    a.setPhysicalName("p");
    EXPECT_FALSE(a == b);
    a.setPhysicalName("");
    a.setStatus(QORApprovalStatusType::APPROVED);
    EXPECT_FALSE(a == b);
    a.setStatus(b.getStatus());
    a.setDesignLevel(QORDesignLevelType::PHYSICAL_ONLY);
    EXPECT_FALSE(a == b);
    a.setDesignLevel(b.getDesignLevel());
    a.setStereotype("s");
    EXPECT_FALSE(a == b);
    b.setStereotype("s");
    EXPECT_TRUE(a == b);
    EXPECT_TRUE(a.QORModelObject::finalEquals(a));
}

TEST(QORModelObject, IsReferencedByEachOfItsLinks) {
    Plain object;
    auto const once = [&object](auto& far, auto add, auto remove) {
        EXPECT_FALSE(object.isReferenced());
        EXPECT_TRUE((object.*add)(&far));
        EXPECT_TRUE(object.isReferenced());
        EXPECT_TRUE(object.QORModelObject::isReferenced());
        EXPECT_FALSE(object.QORElement::isReferenced());
        EXPECT_TRUE((object.*remove)(&far));
        EXPECT_FALSE(object.isReferenced());
        EXPECT_FALSE(far.isReferenced());
    };
    QORDatabaseSchema package;
    once(package, &QORModelObject::addDataPackage,
         static_cast<bool (QORModelObject::*)(QORDataPackage*)>(&QORModelObject::removeDataPackage));
    QORKeyMap keyMap;
    once(keyMap, &QORModelObject::addSourceOfKeyMap,
         static_cast<bool (QORModelObject::*)(QORKeyMap*)>(&QORModelObject::removeSourceOfKeyMap));
    QORProjection projection;
    once(projection, &QORModelObject::addPresentationPresentationElement,
         static_cast<bool (QORModelObject::*)(QORPresentationElement*)>(
             &QORModelObject::removePresentationPresentationElement));
    QORPhysicalObject physical;
    once(physical, &QORModelObject::addAssociatedPhysicalObject,
         static_cast<bool (QORModelObject::*)(QORPhysicalObject*)>(
             &QORModelObject::removeAssociatedPhysicalObject));
    QORBusinessRule rule;
    once(rule, &QORModelObject::addAssociatedBusinessRule,
         static_cast<bool (QORModelObject::*)(QORBusinessRule*)>(
             &QORModelObject::removeAssociatedBusinessRule));
    QORSynonym synonym;
    once(synonym, &QORModelObject::addSynonym,
         static_cast<bool (QORModelObject::*)(QORSynonym*)>(&QORModelObject::removeSynonym));
    QORDesignPackage importer;
    once(importer, &QORModelObject::addImportedByDesignPackage,
         static_cast<bool (QORModelObject::*)(QORDesignPackage*)>(
             &QORModelObject::removeImportedByDesignPackage));
}

namespace {

void linkAll(QORModelObject& object, EventLog& deaths) {
    object.addImportedByDesignPackage(mortal<QORDesignPackage>(deaths, "importer"));
    object.addSynonym(mortal<QORSynonym>(deaths, "synonym"));
    object.addAssociatedBusinessRule(mortal<QORBusinessRule>(deaths, "rule"));
    object.addAssociatedPhysicalObject(mortal<QORPhysicalObject>(deaths, "physical"));
    object.addPresentationPresentationElement(mortal<QORProjection>(deaths, "projection"));
    object.addSourceOfKeyMap(mortal<QORKeyMap>(deaths, "keyMap"));
    object.addDataPackage(mortal<QORDatabaseSchema>(deaths, "package"));
    object.addNote(mortal<QORNote>(deaths, "note"));
}

} // namespace

TEST(QORModelObject, RecursiveDeleteTakesSynonymsBeforeTheOtherLinks) {
    EventLog deaths;
    Plain object;
    linkAll(object, deaths);
    EXPECT_TRUE(object.recursiveDelete());
    EXPECT_EQ(
        (EventLog{"note", "synonym", "package", "keyMap", "projection", "physical", "rule", "importer"}),
        deaths);
    EXPECT_FALSE(object.isReferenced());
}

TEST(QORModelObject, IsolateWithDeletionTakesSynonymsInTheirTurn) {
    EventLog deaths;
    Plain object;
    linkAll(object, deaths);
    EXPECT_EQ(&object, object.isolate(true));
    EXPECT_EQ(
        (EventLog{"package", "keyMap", "projection", "physical", "rule", "synonym", "importer", "note"}),
        deaths);
    EXPECT_FALSE(object.isReferenced());
}

TEST(QORModelObject, IsolateWithoutDeletionDeletesNothing) {
    QORDatabaseSchema package;
    QORKeyMap keyMap;
    QORProjection projection;
    QORPhysicalObject physical;
    QORBusinessRule rule;
    QORSynonym synonyms[2];
    QORDesignPackage importer;
    Plain object;
    synonyms[1].setName("x");
    object.addDataPackage(&package);
    object.addSourceOfKeyMap(&keyMap);
    object.addPresentationPresentationElement(&projection);
    object.addAssociatedPhysicalObject(&physical);
    object.addAssociatedBusinessRule(&rule);
    object.addSynonym(&synonyms[0]);
    object.addSynonym(&synonyms[1]);
    object.addImportedByDesignPackage(&importer);
    EXPECT_EQ(&object, object.isolate(false));
    EXPECT_FALSE(object.isReferenced());
    for (QORObject const* const far : std::initializer_list<QORObject const*>{
             &package, &keyMap, &projection, &physical, &rule, &synonyms[0], &synonyms[1], &importer})
        EXPECT_FALSE(far->isReferenced());
}

TEST(QORModelObject, RemoveDataPackageDestroysAnUnreferencedPackage) {
    EventLog deaths;
    Plain object;
    object.addDataPackage(mortal<QORDatabaseSchema>(deaths, "package"));
    EXPECT_TRUE(object.removeDataPackage());
    EXPECT_EQ(EventLog{"package"}, deaths);
    EXPECT_EQ(nullptr, object.getDataPackage());
    EXPECT_FALSE(object.removeDataPackage());
}

TEST(QORModelObject, RemoveDataPackageWithThePackageNeverDestroys) {
    EventLog deaths;
    std::unique_ptr<QORDatabaseSchema> const package(mortal<QORDatabaseSchema>(deaths, "package"));
    Plain object;
    object.addDataPackage(package.get());
    EXPECT_TRUE(object.removeDataPackage(package.get()));
    EXPECT_TRUE(deaths.empty());
    EXPECT_EQ(0, package->getModelObjectCount());
    EXPECT_FALSE(object.removeDataPackage(package.get()));
}

TEST(QORModelObject, SynonymsOfOneObjectDifferInTheirNames) {
    QORDesignPackage object;
    QORDesignPackage other;
    EXPECT_TRUE(object.addSynonym(named<QORSynonym>("x")));
    std::unique_ptr<QORSynonym> second(named<QORSynonym>("x"));
    EXPECT_FALSE(object.addSynonym(second.get()));
    EXPECT_TRUE(other.addSynonym(second.release()));
}

TEST(QORModelObject, TranscodeConvertsItsTextsThenTheElementsThenSynonyms) {
    std::unique_ptr<QOREncodingConverter> const latin(QOREncodingConverter::create("ISO-8859-1"));
    std::unique_ptr<QOREncodingConverter> const utf8(QOREncodingConverter::create("UTF-8"));
    int converted = 0;
    int failed = 0;
    Plain object;
    object.setPhysicalName("\xE9");
    object.setComment("\xE8");
    object.setStereotype("\xE7");
    object.setDescription("\xE6");
    object.addSynonym(named<QORSynonym>("\xE5"));
    object.addNote(named<QORNote>("\xE4"));
    object.transcode(latin.get(), utf8.get(), converted, failed);
    EXPECT_STREQ("\xC3\xA9", object.getPhysicalName().chars);
    EXPECT_STREQ("\xC3\xA8", object.getComment().chars);
    EXPECT_STREQ("\xC3\xA7", object.getStereotype().chars);
    EXPECT_STREQ("\xC3\xA6", object.getDescription().chars);
    EXPECT_STREQ("\xC3\xA5", object.getSynonym(0)->getName().chars);
    EXPECT_STREQ("\xC3\xA4", object.getNote(0)->getName().chars);
    EXPECT_EQ(6, converted);
    object.setComment("\xFF");
    object.transcode(utf8.get(), latin.get(), converted, failed);
    EXPECT_STREQ("\xE9", object.getPhysicalName().chars);
    EXPECT_STREQ("\xFF", object.getComment().chars);
    EXPECT_STREQ("\xE7", object.getStereotype().chars);
    EXPECT_EQ(1, failed);
}

TEST(QORModelObject, WalksSynonymsByNameBehindTheElementsChildren) {
    class Order : public QORTraversalOperation {
    public:
        bool pre_process(QORObject* object, void*&) override {
            seen.push_back(object->getName().chars);
            return true;
        }
        EventLog seen;
    } operation;
    Plain object;
    object.addSynonym(named<QORSynonym>("b"));
    object.addSynonym(named<QORSynonym>("a"));
    object.addNote(named<QORNote>("note"));
    object._depthTraversal(operation, nullptr);
    EXPECT_EQ((EventLog{"note", "a", "b"}), operation.seen);
}
