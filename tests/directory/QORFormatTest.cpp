#include "FormatSupport.h"

#include <qor/QORModelFormat.h>
#include <qor/QORNote.h>
#include <qor/QORVersion.h>

using namespace graph;

TEST(QORFormat, IsAnAbstractRepositoryObject) {
    expectAbstract<QORFormat>(QORElementType::FORMAT, 32, "Format",
                              QORRepositoryObject::getStaticMetaClass());
}

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

TEST(QORFormat, IsReferencedThroughEachOfItsLinks) {
    using F = QORFormat;
    using Near = Plain<QORFormat>;
    expectReferencedThrough<Near, QORVersion>(&F::addVersion, &F::removeVersion);
    expectReferencedThrough<Near, QORVersion>(&F::addDefaultOfVersion, &F::removeDefaultOfVersion);
    expectReferencedThrough<Near, QORVersion>(&F::addOriginalOfVersion, &F::removeOriginalOfVersion);
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

TEST(QORFormat, BelongsToItsVersionOnly) {
    Held<QORVersion> version;
    Held<QORVersion> other;
    Held<QORFileFormat> format;
    other->addDefaultFormat(format);
    other->addOriginalFormat(format);
    EXPECT_EQ(format->getParentCount(), 0);
    EXPECT_EQ(format->removeAggregationAssembly(), nullptr);
    version->addFormat(format);
    EXPECT_EQ(format->getParent(), version.get());
    EXPECT_EQ(format->getParentCount(), 1);
    expectDeletionRefused(*format);
    EXPECT_EQ(other->getDefaultFormat(), format.get());
    EXPECT_EQ(format->removeAggregationAssembly(), version.get());
    EXPECT_EQ(version->getFormatCount(), 0);
    EXPECT_EQ(other->getOriginalFormat(), format.get());
}

TEST(QORFormat, DeletesFreeVersionsThatUseIt) {
    Journal journal;
    Plain<QORFormat> format;
    format.addOriginalOfVersion(watched<QORVersion>(journal, "original of"));
    format.addDefaultOfVersion(watched<QORVersion>(journal, "default of"));
    format.addNote(watched<QORNote>(journal, "note"));
    EXPECT_TRUE(format.recursiveDelete());
    EXPECT_EQ(journal.deaths, (Labels{"note", "default of", "original of"}));
}

TEST(QORFormat, IsolatesInItsOwnOrder) {
    Journal journal;
    Plain<QORFormat> format;
    format.addNote(watched<QORNote>(journal, "note"));
    format.addOriginalOfVersion(watched<QORVersion>(journal, "original of"));
    format.addDefaultOfVersion(watched<QORVersion>(journal, "default of"));
    format.addVersion(watched<QORVersion>(journal, "version"));
    EXPECT_EQ(format.isolate(true), &format);
    EXPECT_EQ(journal.deaths, (Labels{"version", "default of", "original of", "note"}));
}

TEST(QORFormat, ReencodesItsTypeBeforeItsName) {
    Journal journal;
    Watched<QORFormat> format(journal, "format");
    format.QORFormat::setName(rawText);
    format.setFormatType(rawText);
    format.setAuthor(stubbornText);
    format.onSetName = [&] { EXPECT_STREQ(format.getFormatType().chars, recodedText); };
    Recoding recode;
    recode(format);
    EXPECT_EQ(journal.namings, Labels{"format"});
    EXPECT_STREQ(format.getName().chars, recodedText);
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
