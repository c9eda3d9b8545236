#include <qor/QORException.h>
#include <qor/QORSDK.h>

#include "AllocationControl.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

char const filledText[] = "Illegal Argument: The Measure already contains a AggregationRule with this name\n";
char const filledMessage[] =
    "[QORSDK_F0001] Illegal Argument: The Measure already contains a AggregationRule with this name\n";

class Recorder : public QORLog {
public:
    void log(QORLogEvent const& event) override { events.push_back(event); }

    std::vector<QORLogEvent> events;
};

} // namespace

TEST(QORSDK, HoldsItsConstants) {
    EXPECT_STREQ(QORSDK::DOCUMENT_ID.chars, "QORSDK");
    EXPECT_STREQ(QORSDK::PREFIX.chars, "QORSDK");
    EXPECT_STREQ(BLANK_GLOBAL_CODE.chars, "0000");
    EXPECT_STREQ(QORSDK::ILLEGAL_ARGUMENT.getText().chars,
                 "Illegal Argument: The {0} already contains a {1} with this name\n");
    EXPECT_STREQ(QORSDK::ILLEGAL_FORMAT_TYPE.getText().chars,
                 "The formatType property of a MetadataFormat object cannot be changed");
}

TEST(QORSDK, GlobalCodesPadTheIdToFourCharacters) {
    EXPECT_STREQ(QORSDK::ILLEGAL_ARGUMENT.getGlobalCode().chars, "QORSDK_F0001");
    EXPECT_EQ(QORSDK::ILLEGAL_ARGUMENT.getGlobalCode().length, 12);
    EXPECT_STREQ(QORSDK::ILLEGAL_FORMAT_TYPE.getGlobalCode().chars, "QORSDK_F0002");
    auto const code = [](char const* id, char const* severity) {
        return QORString(QORSDK::MessageInstance(id, "text", severity).getGlobalCode());
    };
    EXPECT_STREQ(code("123", "ERROR").chars, "QORSDK_E0123");
    EXPECT_STREQ(code("1234", "WARNING").chars, "QORSDK_W1234");
    EXPECT_STREQ(code("12345", "FATAL").chars, "QORSDK_F12345");
    EXPECT_STREQ(code("", "FATAL").chars, "QORSDK_F0000");
    EXPECT_STREQ(code("7", "").chars, "QORSDK_0007");
    EXPECT_STREQ(QORSDK::MessageInstance_String_String("42", "", "ERROR").getGlobalCode().chars,
                 "QORSDK_E0042");
}

TEST(QORSDK, MessageWithoutPlaceholders) {
    QORSDK::MessageInstance const& message = QORSDK::ILLEGAL_FORMAT_TYPE;
    EXPECT_STREQ(message.toString().chars,
                 "The formatType property of a MetadataFormat object cannot be changed");
    EXPECT_STREQ(message.getMessage().chars,
                 "[QORSDK_F0002] The formatType property of a MetadataFormat object cannot be changed");
    bool caught = false;
    try {
        message.throwException();
    } catch (QORException const& exception) {
        caught = true;
        EXPECT_STREQ(exception.what(), message.getMessage().chars);
    }
    EXPECT_TRUE(caught);
}

TEST(QORSDK, MessageWithTwoPlaceholders) {
    EXPECT_STREQ(QORSDK::ILLEGAL_ARGUMENT.toString("Measure", "AggregationRule").chars, filledText);
    EXPECT_STREQ(QORSDK::ILLEGAL_ARGUMENT.getMessage("Measure", "AggregationRule").chars, filledMessage);
    bool caught = false;
    try {
        QORSDK::ILLEGAL_ARGUMENT.throwException("Measure", "AggregationRule");
    } catch (QORException const& exception) {
        caught = true;
        EXPECT_STREQ(exception.getMessage().chars, filledMessage);
    }
    EXPECT_TRUE(caught);
    EXPECT_STREQ(QORSDK::ILLEGAL_ARGUMENT.getText().chars,
                 "Illegal Argument: The {0} already contains a {1} with this name\n");
}

TEST(QORSDK, LogReceivesTextCodeAndSeverity) {
    Recorder recorder;
    QORSDK::ILLEGAL_ARGUMENT.log(recorder, "Measure", "AggregationRule");
    QORSDK::ILLEGAL_FORMAT_TYPE.log(recorder);
    ASSERT_EQ(recorder.events.size(), 2U);
    EXPECT_STREQ(recorder.events[0].getText().chars, filledText);
    EXPECT_STREQ(recorder.events[0].getCode().chars, "QORSDK_F0001");
    EXPECT_EQ(recorder.events[0].getSeverity(), QORSDK::ILLEGAL_ARGUMENT.getSeverityLevel());
    EXPECT_STREQ(recorder.events[0].getDetail().chars, "");
    EXPECT_STREQ(recorder.events[1].getText().chars, QORSDK::ILLEGAL_FORMAT_TYPE.getText().chars);
    EXPECT_STREQ(recorder.events[1].getCode().chars, "QORSDK_F0002");
    EXPECT_EQ(recorder.events[1].getSeverity(), 4);
}

TEST(QORSDK, ListsBothLiterals) {
    QORSDK const sdk;
    EXPECT_EQ(&sdk.getDocumentId(), &QORSDK::DOCUMENT_ID);
    EXPECT_EQ(sdk.listAllLiterals(), QORSDK::getAllLiterals());
    EXPECT_EQ(QORSDK::textLiterals, QORSDK::getAllLiterals());
    QORMessageLiteral* const* const all = QORSDK::getAllLiterals();
    EXPECT_EQ(all[0], &QORSDK::ILLEGAL_ARGUMENT);
    EXPECT_EQ(all[1], &QORSDK::ILLEGAL_FORMAT_TYPE);
    EXPECT_EQ(all[2], nullptr);
}

TEST(QORSDK, FindsLiteralsById) {
    EXPECT_EQ(QORSDK::findTextLiteral("1"), &QORSDK::ILLEGAL_ARGUMENT);
    EXPECT_EQ(QORSDK::findTextLiteral("2"), &QORSDK::ILLEGAL_FORMAT_TYPE);
    EXPECT_EQ(QORSDK::findTextLiteral("3"), nullptr);
    EXPECT_EQ(QORSDK::findTextLiteral(""), nullptr);
    EXPECT_EQ(QORSDK::findTextLiteral("11"), nullptr);
}

TEST(QORSDK, LiteralsWereTiedToTheDocumentAtLoad) {
    EXPECT_STREQ(QORSDK::ILLEGAL_ARGUMENT.getDocumentId().chars, "QORSDK");
    EXPECT_STREQ(QORSDK::ILLEGAL_FORMAT_TYPE.getDocumentId().chars, "QORSDK");
}

TEST(QORSDK, ConstructorRestoresTheDocumentId) {
    QORSDK::DOCUMENT_ID = "changed";
    QORSDK const sdk;
    EXPECT_STREQ(sdk.getDocumentId().chars, "QORSDK");
}

TEST(QORSDK, FailedAllocationsLoseNoMemory) {
    QORString const owner("a class name that is longer than a short text");
    long const before = liveAllocations();
    auto const nothingLost = [&] { EXPECT_EQ(liveAllocations(), before); };
    int const text =
        failEachAllocation([&] { QORSDK::ILLEGAL_ARGUMENT.toString(owner, owner); }, nothingLost);
    EXPECT_GE(text, 5);
    nothingLost();
    auto const thrown = [&] {
        try {
            QORSDK::ILLEGAL_ARGUMENT.throwException(owner, owner);
        } catch (QORException const& exception) {
            FailingAllocation const end(-1);
            EXPECT_NE(std::strstr(exception.what(), owner.chars), nullptr);
        }
    };
    EXPECT_GT(failEachAllocation(thrown, nothingLost), text);
    nothingLost();
}
