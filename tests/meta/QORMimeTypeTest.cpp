#include <qor/QORMimeType.h>

#include <gtest/gtest.h>

#include <string>

TEST(QORMimeType, TablesAreParallelAndClosedByNull) {
    for (int i = 0; i < 7; ++i) {
        ASSERT_NE(QorMimeTypes[i], nullptr) << i;
        ASSERT_NE(QorMimeTypeNames[i], nullptr) << i;
    }
    EXPECT_EQ(QorMimeTypes[7], nullptr);
    EXPECT_EQ(QorMimeTypeNames[7], nullptr);
}

TEST(QORMimeType, EachTypeHasItsName) {
    char const* const expected[][2] = {
        {"application/vnd.ms-excel", "Microsoft Excel"},
        {"application/vnd.ms-powerpoint", "Microsoft Powerpoint"},
        {"application/vnd.msword", "Microsoft Word"},
        {"application/x-tova-tzm", "Model Metadata"},
        {"application/x-tova-tze", "ETL Metadata"},
        {"application/x-tova-tzt", "Transformation Metadata"},
        {"application/x-tova-tzc", "Configuration Metadata"},
    };
    for (auto const& [mimeType, name] : expected) {
        EXPECT_STREQ(getMimeTypeName(mimeType), name);
        EXPECT_STREQ(getMimeTypeByName(name), mimeType);
    }
}

TEST(QORMimeType, KnownTextGivesTheEntryOfTheTable) {
    EXPECT_EQ(getMimeTypeName(std::string(QorMimeTypes[3]).c_str()), QorMimeTypeNames[3]);
    EXPECT_EQ(getMimeTypeByName(std::string(QorMimeTypeNames[6]).c_str()), QorMimeTypes[6]);
}

TEST(QORMimeType, UnknownTextComesBackAsTheSamePointer) {
    for (char const* text :
         {"", "text/plain", "Application/vnd.ms-excel", "application/vnd.ms-excel ", "Microsoft Word"})
        EXPECT_EQ(getMimeTypeName(text), text);
    for (char const* text : {"", "Plain Text", "model metadata", "Model Metadata ", "application/vnd.msword"})
        EXPECT_EQ(getMimeTypeByName(text), text);
}

TEST(QORMimeType, NullComesBackAsNull) {
    EXPECT_EQ(getMimeTypeName(nullptr), nullptr);
    EXPECT_EQ(getMimeTypeByName(nullptr), nullptr);
}
