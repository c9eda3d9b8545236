#include <qor/QORNote.h>

#include <qor/QORDesignPackage.h>
#include <qor/QOREncodingConverter.h>
#include <qor/QORMetaClass.h>

#include "Mortal.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>

TEST(QORNote, NewNoteIsEmptyAndFree) {
    QORNote note;
    EXPECT_EQ(QORElementType::NOTE, note.getElementType());
    EXPECT_STREQ("", note.getValue().chars);
    EXPECT_EQ(0, note.getPosition());
    EXPECT_EQ(nullptr, note.getElement());
    EXPECT_EQ(nullptr, note.getParent());
    EXPECT_EQ(0, note.getParentCount());
    EXPECT_FALSE(note.isReferenced());
    EXPECT_TRUE(note.recursiveDelete());
    EXPECT_EQ(nullptr, note.removeAggregationAssembly());
}

TEST(QORNote, IsInstanceOfNoteAndObject) {
    QORNote const note;
    for (int type = 0; type <= 150; ++type)
        EXPECT_EQ(type == QORElementType::NOTE || type == QORElementType::OBJECT,
                  note.isInstanceOf(static_cast<QORElementType>(type)))
            << type;
}

TEST(QORNote, MetaClass) {
    QORMetaClass const* const meta = QORNote::getStaticMetaClass();
    EXPECT_STREQ("Note", meta->getDisplayName().chars);
    EXPECT_FALSE(meta->isAbstract());
    EXPECT_EQ(QORObject::getStaticMetaClass(), meta->getParent());
    QORNote const note;
    EXPECT_EQ(meta, note.getMetaClass());
}

TEST(QORNote, AttributesAreStored) {
    QORNote note;
    note.setValue("text");
    note.setPosition(std::numeric_limits<short>::min());
    EXPECT_STREQ("text", note.getValue().chars);
    EXPECT_EQ(std::numeric_limits<short>::min(), note.getPosition());
}

TEST(QORNote, CopyHasNameValueAndPositionButNoElement) {
    QORDesignPackage element;
    auto* const source = named<QORNote>("n");
    source->setValue("v");
    source->setPosition(3);
    source->setID(4);
    element.addNote(source);
    QORNote const copy(*source);
    EXPECT_STREQ("n", copy.getName().chars);
    EXPECT_STREQ("v", copy.getValue().chars);
    EXPECT_EQ(3, copy.getPosition());
    EXPECT_EQ(0, copy.getID());
    EXPECT_EQ(nullptr, copy.getElement());
    EXPECT_EQ(1, element.getNoteCount());
    EXPECT_EQ(QORElementType::NOTE, copy.getElementType());
}

TEST(QORNote, AssignmentAndSetFromLeaveTheElementUntouched) {
    QORDesignPackage element;
    auto* const target = new QORNote;
    element.addNote(target);
    QORNote source;
    source.setName("n");
    source.setValue("v");
    source.setPosition(3);
    *target = source;
    EXPECT_STREQ("n", target->getName().chars);
    EXPECT_STREQ("v", target->getValue().chars);
    EXPECT_EQ(3, target->getPosition());
    EXPECT_EQ(&element, target->getElement());
    source.setValue("w");
    EXPECT_EQ(target, &static_cast<QORObject*>(target)->setFrom(source));
    EXPECT_STREQ("w", target->getValue().chars);
    EXPECT_EQ(&element, target->getElement());
    EXPECT_EQ(nullptr, source.getElement());
}

TEST(QORNote, EqualityIsThatOfValuePositionAndName) {
    QORNote a;
    QORNote b;
    EXPECT_TRUE(a == b);
    EXPECT_TRUE(a.finalEquals(a));
    a.setValue("v");
    EXPECT_FALSE(a == b);
    b.setValue("w");
    EXPECT_FALSE(a == b);
    b.setValue("v");
    EXPECT_TRUE(a == b);
    b.setPosition(1);
    EXPECT_FALSE(a == b);
    b.setPosition(0);
    b.setName("n");
    EXPECT_FALSE(a == b);
    a.setName("n");
    QORDesignPackage element;
    auto* const linked = new QORNote(a);
    element.addNote(linked);
    EXPECT_TRUE(a == *linked);
}

TEST(QORNote, EqualsOnlyNotes) {
    QORNote note;
    QORObject object;
    EXPECT_FALSE(note.equals(object));
    EXPECT_TRUE(note.QORObject::finalEquals(object));
}

// ---- its element ----------------------------------------------------------------------------------------

TEST(QORNote, TheElementIsItsParent) {
    QORDesignPackage element;
    auto* const note = new QORNote;
    EXPECT_TRUE(note->addElement(&element));
    EXPECT_EQ(&element, note->getElement());
    EXPECT_EQ(&element, note->getParent());
    EXPECT_EQ(1, note->getParentCount());
    EXPECT_TRUE(note->isReferenced());
    EXPECT_EQ(1, element.getNoteCount());
    QORDesignPackage other;
    EXPECT_FALSE(note->addElement(&other));
    EXPECT_EQ(0, other.getNoteCount());
}

TEST(QORNote, RefusesDeletionWhileItIsOwned) {
    QORDesignPackage element;
    auto* const note = new QORNote;
    element.addNote(note);
    EXPECT_FALSE(note->recursiveDelete());
    EXPECT_EQ(&element, note->getElement());
    EXPECT_EQ(&element, note->removeAggregationAssembly());
    EXPECT_EQ(nullptr, note->getElement());
    EXPECT_EQ(0, element.getNoteCount());
    EXPECT_TRUE(note->recursiveDelete());
    delete note;
}

TEST(QORNote, RemoveElementDestroysAnElementThatNothingElseRefersTo) {
    EventLog deaths;
    QORNote note;
    note.addElement(mortal<QORDesignPackage>(deaths, "element"));
    EXPECT_TRUE(note.removeElement());
    EXPECT_EQ(EventLog{"element"}, deaths);
    EXPECT_EQ(nullptr, note.getElement());
    EXPECT_FALSE(note.removeElement());
}

TEST(QORNote, RemoveElementSparesAnElementWithAnotherNote) {
    EventLog deaths;
    std::unique_ptr<QORDesignPackage> const element(mortal<QORDesignPackage>(deaths, "element"));
    QORNote note;
    note.addElement(element.get());
    element->addNote(new QORNote);
    EXPECT_TRUE(note.removeElement());
    EXPECT_TRUE(deaths.empty());
    EXPECT_EQ(1, element->getNoteCount());
}

TEST(QORNote, RemoveElementWithTheElementNeverDestroys) {
    QORDesignPackage element;
    QORDesignPackage other;
    QORNote note;
    EXPECT_FALSE(note.removeElement(&element));
    note.addElement(&element);
    EXPECT_FALSE(note.removeElement(&other));
    EXPECT_EQ(&element, note.getElement());
    EXPECT_TRUE(note.removeElement(&element));
    EXPECT_EQ(nullptr, note.getElement());
    EXPECT_FALSE(element.isReferenced());
}

TEST(QORNote, IsolateWithDeletionDestroysTheUnreferencedElement) {
    EventLog deaths;
    QORNote note;
    note.addElement(mortal<QORDesignPackage>(deaths, "element"));
    EXPECT_EQ(&note, note.isolate(true));
    EXPECT_EQ(EventLog{"element"}, deaths);
    EXPECT_FALSE(note.isReferenced());
}

TEST(QORNote, IsolateWithoutDeletionLeavesTheElement) {
    QORDesignPackage element;
    QORNote note;
    note.addElement(&element);
    EXPECT_EQ(&note, note.isolate(false));
    EXPECT_FALSE(note.isReferenced());
    EXPECT_FALSE(element.isReferenced());
    EXPECT_EQ(&note, note.isolate(false));
}

TEST(QORNote, DeletingItTakesItOutOfItsElement) {
    QORDesignPackage element;
    auto* const note = new QORNote;
    element.addNote(note);
    delete note;
    EXPECT_EQ(0, element.getNoteCount());
}

TEST(QORNote, RenamingNeverCollidesAndKeepsItInItsElement) {
    QORDesignPackage element;
    auto* const a = named<QORNote>("a");
    auto* const b = named<QORNote>("b");
    element.addNote(a);
    element.addNote(b);
    EXPECT_NO_THROW(a->setName("b"));
    EXPECT_STREQ("b", a->getName().chars);
    EXPECT_EQ(&element, a->getElement());
    EXPECT_EQ(2, element.getNoteCount());
    QORNote free;
    free.setName("b");
    EXPECT_STREQ("b", free.getName().chars);
}

TEST(QORNote, TranscodeConvertsValueAndName) {
    std::unique_ptr<QOREncodingConverter> const latin(QOREncodingConverter::create("ISO-8859-1"));
    std::unique_ptr<QOREncodingConverter> const utf8(QOREncodingConverter::create("UTF-8"));
    int converted = 0;
    int failed = 0;
    QORNote note;
    note.setName("\xE9");
    note.setValue("\xE8");
    note.transcode(latin.get(), utf8.get(), converted, failed);
    EXPECT_STREQ("\xC3\xA9", note.getName().chars);
    EXPECT_STREQ("\xC3\xA8", note.getValue().chars);
    EXPECT_EQ(2, converted);
    note.setValue("\xFF");
    note.transcode(utf8.get(), latin.get(), converted, failed);
    EXPECT_STREQ("\xFF", note.getValue().chars);
    EXPECT_STREQ("\xE9", note.getName().chars);
    EXPECT_EQ(1, failed);
    note.setName("\xFF");
    note.setValue("\xC3\xA8");
    note.transcode(utf8.get(), latin.get(), converted, failed);
    EXPECT_STREQ("\xFF", note.getName().chars);
    EXPECT_STREQ("\xE8", note.getValue().chars);
}
