#include <qor/QORLibraryVersion.h>

#include <gtest/gtest.h>

// The macros starting with QOR_PROJECT come from CMake.
TEST(QORLibraryVersion, IsThatOfTheProject) {
    EXPECT_EQ(QOR_VERSION_MAJOR, QOR_PROJECT_MAJOR);
    EXPECT_EQ(QOR_VERSION_MINOR, QOR_PROJECT_MINOR);
    EXPECT_EQ(QOR_VERSION_PATCH, QOR_PROJECT_PATCH);
    EXPECT_STREQ(QOR_VERSION_STRING, QOR_PROJECT_VERSION);
}

TEST(QORLibraryVersion, NumberGrowsWithTheVersion) {
#if QOR_VERSION < 50200
    FAIL() << "older than the first version that has this number";
#endif
    EXPECT_EQ(QOR_VERSION, QOR_PROJECT_MAJOR * 10000 + QOR_PROJECT_MINOR * 100 + QOR_PROJECT_PATCH);
}
