#include <qor/QORLog.h>
#include <qor/QORMessageLiteral.h>
#include <qor/QORTextLiteralsCollection.h>

#include "AllocationControl.h"

#include <gtest/gtest.h>

namespace {

QORString filled(char const* text, char const* first, char const* second) {
    QORParameterizedTextLiteral const literal("id", text);
    void* const handle = literal.prapareForParameters();
    literal.setParameterValue(handle, 0, first);
    literal.setParameterValue(handle, 1, second);
    return literal.createParametrizedText(handle);
}

class Collection : public QORTextLiteralsCollection {
public:
    explicit Collection(QORMessageLiteral* const* list) : literals(list) {}
    QORString const& getDocumentId() const override { return document; }
    QORMessageLiteral* const* listAllLiterals() const override { return literals; }

private:
    QORMessageLiteral* const* literals;
    QORString document = "A document with a rather long name";
};

} // namespace

TEST(QORParameterizedTextLiteral, FillsPlaceholders) {
    EXPECT_STREQ(filled("{0} and {1}", "one", "two").chars, "one and two");
    EXPECT_STREQ(filled("{1}{0}{1}", "a", "b").chars, "bab");
    EXPECT_STREQ(filled("<{0}>", "", "").chars, "<>");
    EXPECT_STREQ(filled("no placeholder", "a", "b").chars, "no placeholder");
    EXPECT_STREQ(filled("", "a", "b").chars, "");
}

TEST(QORParameterizedTextLiteral, LeavesWhatIsNoFilledPlaceholder) {
    EXPECT_STREQ(filled("{2} {0}", "a", "b").chars, "{2} a");
    EXPECT_STREQ(filled("{ {} {x} {0 {-1} {0x} }{1", "a", "b").chars, "{ {} {x} {0 {-1} {0x} }{1");
    EXPECT_STREQ(filled("{{0}}", "a", "b").chars, "{a}");
    EXPECT_STREQ(filled("{4294967296}{99999999999999999999}{0}", "a", "b").chars,
                 "{4294967296}{99999999999999999999}a");
}

TEST(QORParameterizedTextLiteral, DoesNotSearchValuesForPlaceholders) {
    EXPECT_STREQ(filled("{0}-{1}", "{1}", "{0}").chars, "{1}-{0}");
    EXPECT_STREQ(filled("{0}1}", "{", "x").chars, "{1}");
}

TEST(QORParameterizedTextLiteral, LaterValueReplacesEarlier) {
    QORParameterizedTextLiteral const literal("id", "{0}");
    void* const handle = literal.prapareForParameters();
    literal.setParameterValue(handle, 0, "first");
    literal.setParameterValue(handle, 0, "second");
    literal.setParameterValue(handle, -1, "ignored");
    EXPECT_STREQ(literal.createParametrizedText(handle).chars, "second");
}

TEST(QORParameterizedTextLiteral, TwoSetsOfOneLiteralAreKeptApart) {
    QORParameterizedTextLiteral const literal("id", "{0}/{1}");
    void* const left = literal.prapareForParameters();
    void* const right = literal.prapareForParameters();
    literal.setParameterValue(left, 0, "l0");
    literal.setParameterValue(right, 0, "r0");
    literal.setParameterValue(right, 1, "r1");
    literal.setParameterValue(left, 1, "l1");
    EXPECT_STREQ(literal.createParametrizedText(left).chars, "l0/l1");
    EXPECT_STREQ(literal.createParametrizedText(right).chars, "r0/r1");
}

TEST(QORParameterizedTextLiteral, NullHandleGivesTheTextAsItStands) {
    QORParameterizedTextLiteral const literal("id", "{0}");
    literal.setParameterValue(nullptr, 0, "x");
    literal.discardParameters(nullptr);
    EXPECT_STREQ(literal.createParametrizedText(nullptr).chars, "{0}");
}

TEST(QORParameterizedTextLiteral, SetsAreClosedByMakingTheTextOrDiscarding) {
    QORParameterizedTextLiteral const literal("id", "a template with a placeholder: {0}");
    long const before = liveAllocations();
    void* const made = literal.prapareForParameters();
    literal.setParameterValue(made, 0, "a value that is longer than a short text may be");
    literal.createParametrizedText(made);
    EXPECT_EQ(liveAllocations(), before);
    void* const discarded = literal.prapareForParameters();
    literal.setParameterValue(discarded, 0, "a value that is longer than a short text may be");
    EXPECT_GT(liveAllocations(), before);
    literal.discardParameters(discarded);
    EXPECT_EQ(liveAllocations(), before);
}

TEST(QORParameterizedTextLiteral, FailedAllocationsLeaveTheSetAsItWas) {
    QORParameterizedTextLiteral const literal("id", "a template with a placeholder: {0}");
    QORString const value("a value that is longer than a short text may be");
    QORString const expected(
        "a template with a placeholder: a value that is longer than a short text may be");
    long const before = liveAllocations();
    auto const nothingLost = [&] { EXPECT_EQ(liveAllocations(), before); };
    void* handle = nullptr;
    EXPECT_GE(failEachAllocation([&] { handle = literal.prapareForParameters(); }, nothingLost), 1);
    long const open = liveAllocations();
    auto const setUnchanged = [&] { EXPECT_EQ(liveAllocations(), open); };
    EXPECT_GE(failEachAllocation([&] { literal.setParameterValue(handle, 0, value); }, setUnchanged), 2);
    EXPECT_STREQ(literal.createParametrizedText(handle).chars, expected.chars);
    nothingLost();
    for (int spared = 0, failed = 1; failed != 0; ++spared) {
        handle = literal.prapareForParameters();
        literal.setParameterValue(handle, 0, value);
        failed = 0;
        try {
            FailingAllocation const failing(spared);
            literal.createParametrizedText(handle);
        } catch (std::bad_alloc const&) {
            failed = 1;
        }
        nothingLost();
    }
}

TEST(QORParameterizedTextLiteral, UpdateReplacesTheTextButNotThatOfAnOpenSet) {
    QORParameterizedTextLiteral literal("id", "old {0}");
    void* const open = literal.prapareForParameters();
    literal.update("new {0}", nullptr);
    EXPECT_STREQ(literal.getText().chars, "new {0}");
    literal.setParameterValue(open, 0, "x");
    EXPECT_STREQ(literal.createParametrizedText(open).chars, "old x");
    void* const later = literal.prapareForParameters();
    literal.setParameterValue(later, 0, "x");
    EXPECT_STREQ(literal.createParametrizedText(later).chars, "new x");
}

TEST(QORMessageLiteral, HoldsItsFields) {
    QORMessageLiteral const literal("17", "some text", "FATAL");
    EXPECT_STREQ(literal.getId().chars, "17");
    EXPECT_STREQ(literal.getText().chars, "some text");
    EXPECT_EQ(literal.getSeverityLevel(), 4);
    EXPECT_STREQ(literal.getGlobalCode().chars, "");
    EXPECT_STREQ(literal.getDocumentId().chars, "");
}

TEST(QORMessageLiteral, SeverityLevelsRiseWithTheSeverity) {
    auto const level = [](char const* severity) {
        return QORMessageLiteral("", "", severity).getSeverityLevel();
    };
    EXPECT_EQ(level("INFORMATION"), 1);
    EXPECT_EQ(level("WARNING"), 2);
    EXPECT_EQ(level("ERROR"), 3);
    EXPECT_EQ(level("FATAL"), 4);
    EXPECT_EQ(level("FATALITY"), 0);
    EXPECT_EQ(level(""), 0);
}

TEST(QORTextLiteralsCollection, InitTiesAllLiteralsToTheDocument) {
    QORMessageLiteral first("1", "one", "ERROR");
    QORMessageLiteral second("2", "two", "ERROR");
    QORMessageLiteral outside("3", "three", "ERROR");
    QORMessageLiteral* const list[] = {&first, &second, nullptr, &outside};
    {
        Collection collection(list);
        collection.init();
    }
    EXPECT_STREQ(first.getDocumentId().chars, "A document with a rather long name");
    EXPECT_STREQ(second.getDocumentId().chars, "A document with a rather long name");
    EXPECT_STREQ(outside.getDocumentId().chars, "");
}

TEST(QORLogEvent, HoldsItsFields) {
    QORLogEvent const event("text", "code", 3, "detail");
    EXPECT_STREQ(event.getText().chars, "text");
    EXPECT_STREQ(event.getCode().chars, "code");
    EXPECT_EQ(event.getSeverity(), 3);
    EXPECT_STREQ(event.getDetail().chars, "detail");
}
