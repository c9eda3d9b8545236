#include "FormatSupport.h"

#include <qor/QORModelFormat.h>
#include <qor/QORNote.h>
#include <qor/QORVersion.h>

TEST(QORFormat, TakesAnyFormatType) {
    Plain<QORFormat> format;
    EXPECT_STREQ(format.getFormatType().chars, "");
    EXPECT_STREQ(format.getName().chars, "");
    format.setFormatType("text/plain");
    EXPECT_STREQ(format.getFormatType().chars, "text/plain");
    format.setFormatType("");
    EXPECT_STREQ(format.getFormatType().chars, "");
}

TEST(QORFormat, AssignsItsTypeThroughTheOverriddenSetter) {
    struct Counting : QORFormat {
        int calls = 0;
        void setFormatType(QORString const& value) override {
            ++calls;
            QORFormat::setFormatType(value + "!");
        }
    };
    QORFileFormat file;
    file.setFormatType("text/plain");
    Counting counting;
    static_cast<QORFormat&>(counting) = file;
    EXPECT_EQ(counting.calls, 1);
    EXPECT_STREQ(counting.getFormatType().chars, "text/plain!");
    QORString text("t");
    QORFormat::getStaticMetaClass()
        ->getMetaAttributeByID(QORAttributeType::FORMAT__FORMAT_TYPE)
        ->setValue(&counting, text);
    EXPECT_EQ(counting.calls, 2);
    EXPECT_STREQ(counting.getFormatType().chars, "t!");
}

TEST(QORFormat, AssignmentFromAFixedTypeIsPlain) {
    QORModelFormat const model;
    QORFileFormat file;
    static_cast<QORFormat&>(file) = model;
    EXPECT_STREQ(file.getFormatType().chars, "application/x-tova-tzm");
    EXPECT_STREQ(file.getName().chars, "Model Metadata");
    EXPECT_EQ(file.getElementType(), QORElementType::FILE_FORMAT);
}

TEST(QORFormat, RefusesATakenNameOfItsClassInItsVersion) {
    QORVersion version;
    auto* const format = named<QORFileFormat>("format");
    version.addFormat(format);
    version.addFormat(named<QORFileFormat>("taken"));
    version.addFormat(named<QORModelFormat>("of another class"));
    expectNameRefused(*format, "taken", "Version", "Format");
    EXPECT_EQ(version.getFormat(0), format);
    format->setName("of another class");
    EXPECT_EQ(version.getFormatCount(), 3);
    format->setName("zebra");
    EXPECT_EQ(version.getFormat(1), format);
}

TEST(QORFormat, DeletesFreeVersionsThatUseIt) {
    Graph graph;
    Plain<QORFormat> format;
    format.addOriginalOfVersion(graph.mortal<QORVersion>("original of"));
    format.addDefaultOfVersion(graph.mortal<QORVersion>("default of"));
    format.addNote(graph.mortal<QORNote>("note"));
    EXPECT_TRUE(format.recursiveDelete());
    EXPECT_EQ(graph.deaths, (Labels{"note", "default of", "original of"}));
}

TEST(QORFormat, IsolatesInItsOwnOrder) {
    Graph graph;
    Plain<QORFormat> format;
    format.addNote(graph.mortal<QORNote>("note"));
    format.addOriginalOfVersion(graph.mortal<QORVersion>("original of"));
    format.addDefaultOfVersion(graph.mortal<QORVersion>("default of"));
    format.addVersion(graph.mortal<QORVersion>("version"));
    EXPECT_EQ(format.isolate(true), &format);
    EXPECT_EQ(graph.deaths, (Labels{"version", "default of", "original of", "note"}));
}

TEST(QORFormat, ReencodesItsTypeBeforeItsName) {
    Graph graph;
    Mortal<QORFormat> format(graph, "format");
    format.QORFormat::setName(inUtf8);
    format.setFormatType(inUtf8);
    format.setAuthor(notInLatin1);
    format.onSetName = [&] { EXPECT_STREQ(format.getFormatType().chars, inLatin1); };
    Recoding recode;
    recode(format);
    EXPECT_EQ(graph.namings, Labels{"format"});
    EXPECT_STREQ(format.getName().chars, inLatin1);
    EXPECT_EQ(recode.errors, 1);
}

TEST(QORFormat, SelfAssignmentChangesNothing) {
    QORFileFormat format;
    fillStrange(format);
    format.setNativeId("id");
    format.addNote(new QORNote);
    QORFormat& self = format;
    self = format;
    EXPECT_STREQ(format.getNativeId().chars, "id");
    EXPECT_EQ(format.getNoteCount(), 1);
}
