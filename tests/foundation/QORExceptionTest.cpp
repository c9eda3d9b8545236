#include <qor/QORException.h>

#include "AllocationControl.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace {

static_assert(std::is_base_of<std::exception, QORException>::value, "a standard exception");
static_assert(std::is_nothrow_copy_constructible<QORException>::value, "copies never throw");
static_assert(std::is_nothrow_move_constructible<QORException>::value, "moves never throw");
static_assert(std::is_nothrow_copy_assignable<QORException>::value, "assignments never throw");

char const longMessage[] = "a message that is longer than any short text that a string keeps within itself";

} // namespace

TEST(QORException, GivesItsMessage) {
    QORException const exception{QORString(longMessage)};
    EXPECT_STREQ(exception.what(), longMessage);
    EXPECT_STREQ(exception.getMessage().chars, longMessage);
    EXPECT_EQ(exception.getMessage().length, static_cast<int>(sizeof longMessage - 1));
    EXPECT_STREQ(QORException(emptyString).what(), "");
}

TEST(QORException, KeepsItsMessageWhenTheSourceChanges) {
    QORString text("before");
    QORException const exception(text);
    text = "after";
    EXPECT_STREQ(exception.what(), "before");
}

TEST(QORException, CopiesShareTheMessageAndOutliveTheOriginal) {
    QORException outer{QORString("other")};
    {
        QORException const inner{QORString(longMessage)};
        long const before = madeAllocations();
        QORException const copy(inner);
        outer = copy;
        EXPECT_EQ(madeAllocations(), before);
        EXPECT_EQ(copy.what(), inner.what());
    }
    EXPECT_STREQ(outer.what(), longMessage);
    QORException const moved(std::move(outer));
    EXPECT_STREQ(moved.what(), longMessage);
    EXPECT_STREQ(outer.what(), longMessage); // NOLINT: a move copies
}

TEST(QORException, IsCaughtAsItselfAndAsStandardException) {
    try {
        throw QORException(QORString("thrown"));
    } catch (std::exception const& caught) {
        EXPECT_STREQ(caught.what(), "thrown");
    }
    try {
        throw QORException(QORString(longMessage));
    } catch (QORException const& caught) {
        EXPECT_STREQ(caught.getMessage().chars, longMessage);
    }
}

TEST(QORException, FailedConstructionLosesNoMemory) {
    QORString const text(longMessage);
    long const before = liveAllocations();
    int const failures = failEachAllocation([&] { QORException exception(text); },
                                            [&] { EXPECT_EQ(liveAllocations(), before); });
    EXPECT_GE(failures, 1);
    EXPECT_EQ(liveAllocations(), before);
}
