#include <qor/QORElement.h>

#include <qor/QORDesignPackage.h>
#include <qor/QORElementNamePart.h>
#include <qor/QORElementNode.h>
#include <qor/QORNote.h>
#include <qor/QORNoteByPosition.h>
#include <qor/QORObject.h>
#include <qor/QORPropertyType.h>
#include <qor/QORPropertyValue.h>
#include <qor/QORPropertyValueByPosition.h>
#include <qor/QORSortedPropertyValuesLinkTree.h>
#include <qor/QORTraversalOperation.h>

#include "Graph.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

namespace {

QORNote* noteAt(short position, char const* name) {
    auto* const note = named<QORNote>(name);
    note->setPosition(position);
    return note;
}

QORPropertyValue* valueAt(short position) {
    auto* const value = new QORPropertyValue;
    value->setPosition(position);
    return value;
}

/// `count` notes, sorted by their addresses.
std::vector<QORNote*> notesByAddress(std::size_t count) {
    std::vector<QORNote*> notes(count);
    std::generate(notes.begin(), notes.end(), [] { return new QORNote; });
    std::sort(notes.begin(), notes.end(), std::less<>());
    return notes;
}

} // namespace

TEST(QORElement, OnlyDerivedClassesCanBeMade) {
    EXPECT_FALSE(std::is_default_constructible<QORElement>::value);
    EXPECT_FALSE(std::is_copy_constructible<QORElement>::value);
}

// ---- copying --------------------------------------------------------------------------------------------

TEST(QORElement, CopyLeavesTheNativeIdBehindAndCopiesTheNotes) {
    QORDesignPackage source;
    source.setName("n");
    source.setID(4);
    source.setDescription("d");
    source.setNativeId("A1");
    source.setNativeType("t");
    source.addNote(noteAt(3, "first"));
    source.getNote(0)->setValue("text");
    source.getNote(0)->setID(8);
    source.addPropertyValue(new QORPropertyValue);
    QORDesignPackage const copy(source);
    EXPECT_STREQ("n", copy.getName().chars);
    EXPECT_EQ(0, copy.getID());
    EXPECT_STREQ("d", copy.getDescription().chars);
    EXPECT_STREQ("", copy.getNativeId().chars);
    EXPECT_STREQ("t", copy.getNativeType().chars);
    EXPECT_EQ(0, copy.getPropertyValueCount());
    ASSERT_EQ(1, copy.getNoteCount());
    QORNote const* const note = copy.getNote(0);
    EXPECT_NE(source.getNote(0), note);
    EXPECT_STREQ("first", note->getName().chars);
    EXPECT_STREQ("text", note->getValue().chars);
    EXPECT_EQ(3, note->getPosition());
    EXPECT_EQ(0, note->getID());
    EXPECT_EQ(&copy, note->getElement());
    EXPECT_EQ(1, source.getNoteCount());
    EXPECT_STREQ("A1", source.getNativeId().chars);
    EXPECT_EQ(&source, source.getNote(0)->getElement());
}

TEST(QORElement, CopyHasAsManyNotesAsItsSource) {
    QORDesignPackage source;
    for (int i = 0; i < 20; ++i)
        source.addNote(noteAt(static_cast<short>(i), "same"));
    QORDesignPackage const copy(source);
    ASSERT_EQ(20, copy.getNoteCount());
    QORNoteByPosition view;
    copy.getNoteByPosition(view);
    ASSERT_EQ(20, view.size);
    for (int i = 0; i < 20; ++i)
        EXPECT_EQ(i, static_cast<QORNote*>(static_cast<QORObject*>(view[i]))->getPosition());
}

TEST(QORElement, AssignmentAccumulatesNotesAndClearsTheNativeId) {
    QORDesignPackage source;
    source.setDescription("d");
    source.setNativeType("t");
    source.setNativeId("source");
    source.addNote(noteAt(1, "of the source"));
    QORDesignPackage target;
    target.setID(5);
    target.setNativeId("target");
    auto* const own = noteAt(0, "own");
    target.addNote(own);
    target.addPropertyValue(valueAt(2));
    target = source;
    EXPECT_EQ(5, target.getID());
    EXPECT_STREQ("d", target.getDescription().chars);
    EXPECT_STREQ("t", target.getNativeType().chars);
    EXPECT_STREQ("", target.getNativeId().chars);
    EXPECT_EQ(1, target.getPropertyValueCount());
    QORNoteByPosition view;
    target.getNoteByPosition(view);
    EXPECT_EQ((Labels{"own", "of the source"}), namesOf(view));
    EXPECT_EQ(own, static_cast<QORObject*>(view[0]));
    EXPECT_EQ(1, source.getNoteCount());
    target = source;
    EXPECT_EQ(3, target.getNoteCount());
}

// ---- equality -------------------------------------------------------------------------------------------

TEST(QORElement, DescriptionAndNativeIdDoNotCount) {
    QORDesignPackage a;
    QORDesignPackage b;
    a.setDescription("d");
    a.setNativeId("i");
    a.addNote(new QORNote);
    a.addPropertyValue(new QORPropertyValue);
    EXPECT_TRUE(a == b);
    EXPECT_TRUE(a.QORElement::finalEquals(b));
}

TEST(QORElement, NativeTypeAndNameCount) {
    QORDesignPackage a;
    QORDesignPackage b;
    a.setNativeType("t");
    EXPECT_FALSE(a == b);
    EXPECT_FALSE(a.QORElement::finalEquals(b));
    b.setNativeType("u");
    EXPECT_FALSE(a == b);
    b.setNativeType("t");
    EXPECT_TRUE(a == b);
    b.setName("n");
    EXPECT_FALSE(a.QORElement::finalEquals(b));
}

TEST(QORElement, AnElementEqualsItself) {
    QORDesignPackage a;
    EXPECT_TRUE(a.QORElement::finalEquals(a));
    EXPECT_TRUE(a == a);
}

// ---- links ----------------------------------------------------------------------------------------------

TEST(QORElement, RecursiveDeleteEmptiesTheNotesEvenIfOneDeclines) {
    class Owned : public QORNote {
    public:
        bool recursiveDelete() override { return false; }
    } note;
    Plain<QORElement> element;
    element.addNote(&note);
    Graph graph;
    element.addNote(graph.mortal<QORNote>("other"));
    EXPECT_TRUE(element.recursiveDelete());
    EXPECT_EQ(0, element.getNoteCount());
    EXPECT_EQ(nullptr, note.getElement());
    EXPECT_EQ(Labels{"other"}, graph.deaths);
}

TEST(QORElement, DeletionDestroysWhatItOwnsAndUnreferencedExpressionParts) {
    Graph graph;
    auto* const element = new Plain<QORElement>;
    element->addElementNode(graph.mortal<QORElementNode>("node"));
    element->addReferencedByElementNamePart(graph.mortal<QORElementNamePart>("part"));
    element->addPropertyValue(graph.mortal<QORPropertyValue>("value"));
    element->addNote(graph.mortal<QORNote>("note"));
    QORElementNode kept;
    kept.addNote(new QORNote);
    element->addElementNode(&kept);
    Plain<QORElement> other;
    QORElementNamePart shared;
    shared.addReferencedElement(element);
    shared.addReferencedElement(&other);
    delete element;
    ASSERT_EQ(4U, graph.deaths.size());
    EXPECT_EQ((Labels{"note", "value", "part", "node"}), graph.deaths);
    EXPECT_EQ(nullptr, kept.getElement());
    EXPECT_EQ(1, shared.getReferencedElementCount());
    EXPECT_EQ(&other, shared.getReferencedElement(0));
    shared.removeReferencedElement(&other);
}

TEST(QORElement, IsolateWithDeletionEndsUnreferencedOnes) {
    Graph graph;
    Plain<QORElement> element;
    element.addElementNode(graph.mortal<QORElementNode>("node"));
    element.addReferencedByElementNamePart(graph.mortal<QORElementNamePart>("part"));
    element.addPropertyValue(graph.mortal<QORPropertyValue>("value"));
    element.addNote(graph.mortal<QORNote>("note"));
    EXPECT_EQ(&element, element.isolate(true));
    EXPECT_EQ((Labels{"note", "value", "part", "node"}), graph.deaths);
    EXPECT_FALSE(element.isReferenced());
}

// ---- sorted views ---------------------------------------------------------------------------------------

TEST(QORElement, AViewIsEmptiedFirstAlsoIfThereIsNothingToFillItWith) {
    QORDesignPackage full;
    full.addNote(noteAt(0, "a"));
    full.addPropertyValue(valueAt(0));
    QORDesignPackage bare;
    QORNoteByPosition notes;
    QORPropertyValueByPosition values;
    QORSortedPropertyValuesLinkTree sorted;
    for (int round = 0; round < 2; ++round) {
        full.getNoteByPosition(notes);
        full.getPropertyValueByPosition(values);
        full.getSortedPropertyValues(sorted);
        EXPECT_EQ(1, notes.size);
        EXPECT_EQ(1, values.size);
        EXPECT_EQ(1, sorted.size);
    }
    bare.getNoteByPosition(notes);
    bare.getPropertyValueByPosition(values);
    bare.getSortedPropertyValues(sorted);
    EXPECT_EQ(0, notes.size);
    EXPECT_EQ(0, values.size);
    EXPECT_EQ(0, sorted.size);
}

TEST(QORElement, AViewIsNotKeptUpToDateAndOwnsNothing) {
    QORDesignPackage element;
    element.addNote(noteAt(0, "a"));
    {
        QORNoteByPosition view;
        element.getNoteByPosition(view);
        element.addNote(noteAt(1, "b"));
        EXPECT_EQ(1, view.size);
    }
    EXPECT_EQ(2, element.getNoteCount());
}

TEST(QORElement, PropertyValuesByPositionIgnoreTheirTypes) {
    QORDesignPackage element;
    QORPropertyValue* const values[] = {valueAt(5), valueAt(-3), valueAt(0)};
    for (QORPropertyValue* const value : values)
        element.addPropertyValue(value);
    QORPropertyValueByPosition view;
    element.getPropertyValueByPosition(view);
    ASSERT_EQ(3, view.size);
    EXPECT_EQ(values[1], static_cast<QORObject*>(view[0]));
    EXPECT_EQ(values[2], static_cast<QORObject*>(view[1]));
    EXPECT_EQ(values[0], static_cast<QORObject*>(view[2]));
}

TEST(QORElement, SortedPropertyValuesGoByUsageGroupPositionAndNameOfTheirTypes) {
    struct {
        char const* usage;
        char const* group;
        short position;
        char const* name;
    } const types[] = {
        {"a", "a", 1, "a"}, {"a", "a", 1, "b"}, {"a", "a", 2, "a"}, {"a", "b", 0, "a"}, {"b", "a", 0, "a"},
    };
    std::vector<std::unique_ptr<QORPropertyType>> keepers;
    QORDesignPackage element;
    for (int i = 4; i >= 0; --i) {
        auto type = std::make_unique<QORPropertyType>();
        type->setUsage(types[i].usage);
        type->setGroup(types[i].group);
        type->setPosition(types[i].position);
        type->setName(types[i].name);
        type->addNote(new QORNote); // keeps it when its last value goes
        auto* const value = valueAt(static_cast<short>(-i));
        value->addPropertyType(type.get());
        element.addPropertyValue(value);
        keepers.push_back(std::move(type));
    }
    QORSortedPropertyValuesLinkTree view;
    element.getSortedPropertyValues(view);
    ASSERT_EQ(5, view.size);
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(-i, static_cast<QORPropertyValue*>(static_cast<QORObject*>(view[i]))->getPosition());
    element.removePropertyValues();
}

TEST(QORElement, SortedPropertyValuesWithoutATypeGoByPosition) {
    QORDesignPackage element;
    auto* const second = valueAt(2);
    auto* const first = valueAt(1);
    element.addPropertyValue(second);
    element.addPropertyValue(first);
    QORSortedPropertyValuesLinkTree view;
    element.getSortedPropertyValues(view);
    ASSERT_EQ(2, view.size);
    EXPECT_EQ(first, static_cast<QORObject*>(view[0]));
    EXPECT_EQ(second, static_cast<QORObject*>(view[1]));
}

// ---- walking and re-encoding ----------------------------------------------------------------------------

TEST(QORElement, WalksNotesAndThenPropertyValues) {
    class Order : public QORTraversalOperation {
    public:
        bool pre_process(QORObject* object, void*&) override {
            seen.push_back(object);
            return true;
        }
        Objects seen;
    } operation;
    Plain<QORElement> element;
    std::vector<QORNote*> const notes = notesByAddress(2);
    auto* const v1 = valueAt(7);
    auto* const v2 = valueAt(3);
    element.addPropertyValue(v1);
    element.addPropertyValue(v2);
    element.addNote(notes[1]);
    element.addNote(notes[0]);
    QORElementNode node;
    node.addNote(new QORNote);
    element.addElementNode(&node);
    element._depthTraversal(operation, nullptr);
    EXPECT_EQ((Objects{notes[0], notes[1], v1, v2}), operation.seen);
    element.removeElementNode(&node);
}

// ---- re-encoding ----------------------------------------------------------------------------------------

TEST(QORElementTranscode, ConvertsTheThreeTextsTheNameTheNotesAndTheValues) {
    Plain<QORElement> element;
    element.setName("\xE9");
    element.setDescription("\xE8");
    element.setNativeId("\xE7");
    element.setNativeType("\xE6");
    element.addNote(named<QORNote>("\xE5"));
    element.getNote(0)->setValue("\xE4");
    element.addPropertyValue(new QORPropertyValue);
    element.getPropertyValue(0)->setValue("\xE3");
    Recoding recode("ISO-8859-1", "UTF-8");
    recode(element);
    EXPECT_STREQ("\xC3\xA9", element.getName().chars);
    EXPECT_STREQ("\xC3\xA8", element.getDescription().chars);
    EXPECT_STREQ("\xC3\xA7", element.getNativeId().chars);
    EXPECT_STREQ("\xC3\xA6", element.getNativeType().chars);
    EXPECT_STREQ("\xC3\xA5", element.getNote(0)->getName().chars);
    EXPECT_STREQ("\xC3\xA4", element.getNote(0)->getValue().chars);
    EXPECT_STREQ("\xC3\xA3", element.getPropertyValue(0)->getValue().chars);
    EXPECT_EQ(7, recode.converted);
    EXPECT_EQ(0, recode.errors);
}

TEST(QORElementTranscode, EmptyTextsAreNotConverted) {
    Plain<QORElement> element;
    element.addNote(new QORNote);
    Recoding recode("ISO-8859-1", "UTF-8");
    recode(element);
    EXPECT_EQ(0, recode.converted);
    EXPECT_EQ(0, recode.errors);
}

TEST(QORElementTranscode, AFailureOnOneTextDoesNotHoldBackTheNext) {
    for (unsigned broken = 0; broken < 16; ++broken) {
        Plain<QORElement> element;
        auto const text = [broken](unsigned bit) { return broken >> bit & 1 ? "\xFF" : "\xC3\xA9"; };
        auto const expected = [broken](unsigned bit) { return broken >> bit & 1 ? "\xFF" : "\xE9"; };
        element.setDescription(text(0));
        element.setNativeId(text(1));
        element.setNativeType(text(2));
        element.setName(text(3));
        Recoding recode;
        recode.errors = 10;
        recode(element);
        EXPECT_STREQ(expected(0), element.getDescription().chars) << broken;
        EXPECT_STREQ(expected(1), element.getNativeId().chars) << broken;
        EXPECT_STREQ(expected(2), element.getNativeType().chars) << broken;
        EXPECT_STREQ(expected(3), element.getName().chars) << broken;
        EXPECT_EQ(14, recode.converted + recode.errors) << broken;
    }
}

TEST(QORElementTranscode, NotesGoByAddressBeforeTheValues) {
    class Noting : public QORNote {
    public:
        explicit Noting(Objects& names) : log(names) { name = "n"; }
        void setName(QORString const& wanted) override {
            log.push_back(this);
            QORNote::setName(wanted);
        }

    private:
        Objects& log;
    };
    Objects order;
    Plain<QORElement> element;
    std::vector<Noting*> notes(3);
    std::generate(notes.begin(), notes.end(), [&] { return new Noting(order); });
    std::sort(notes.begin(), notes.end(), std::less<>());
    for (std::size_t const i : {1U, 2U, 0U})
        element.addNote(notes[i]);
    Recoding recode("ISO-8859-1", "UTF-8");
    recode(element);
    EXPECT_EQ((Objects{notes[0], notes[1], notes[2]}), order);
}
