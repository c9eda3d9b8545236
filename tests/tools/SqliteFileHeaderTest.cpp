#include "kit/ToolError.h"
#include "sqlite/FileHeader.h"

#include "Sqlite.h"

#include <TemporaryFolder.h>

#include <gtest/gtest.h>

namespace {

using sqlite::FileHeader;
using sqlite::readFileHeader;

class SqliteFileHeader : public testing::Test {
protected:
    /// The header of a file, or what is wrong with it.
    std::string problemOf(std::string const& content) const {
        try {
            readFileHeader(folder.write("x.sqlite", content), "x.sqlite");
        } catch (kit::ToolError const& error) {
            return error.what();
        }
        return "";
    }

    /// A header that gives a page size in its two bytes.
    static std::string headerOf(int pageSize) {
        std::string header(100, '\0');
        header.replace(0, 16, std::string("SQLite format 3\0", 16));
        header[16] = static_cast<char>(pageSize >> 8);
        header[17] = static_cast<char>(pageSize & 0xff);
        return header;
    }

    TemporaryFolder folder;
};

TEST_F(SqliteFileHeader, OfAFileThatSqliteWroteHasItsSizes) {
    for (unsigned const size : {512u, 4096u, 65536u}) {
        std::string const path =
            makeDatabase(folder.file(std::to_string(size)),
                         "PRAGMA page_size = " + std::to_string(size) + "; CREATE TABLE t(a);");
        FileHeader const header = readFileHeader(path, path);
        EXPECT_EQ(header.pageSize, size);
        EXPECT_EQ(header.fileSize, 2 * size);
        EXPECT_EQ(header.neededSize, 2 * size);
        EXPECT_EQ(header.writerVersion, static_cast<unsigned>(sqlite3_libversion_number()));
    }
}

TEST_F(SqliteFileHeader, OnlyPowersOfTwoFrom512OnArePageSizes) {
    for (int const size : {512, 1024, 32768, 1}) {
        EXPECT_EQ(problemOf(headerOf(size)), "") << size;
    }
    for (int const size : {0, 2, 256, 511, 513, 768, 1536, 65535}) {
        EXPECT_EQ(problemOf(headerOf(size)), "x.sqlite: is damaged: its header has no valid page size")
            << size;
    }
}

TEST_F(SqliteFileHeader, OfAnotherFileIsRefused) {
    EXPECT_EQ(problemOf(""), "");
    EXPECT_EQ(problemOf("text"), "x.sqlite: is not an SQLite database, or is an encrypted one");
    EXPECT_EQ(problemOf(headerOf(512).substr(0, 99)), "x.sqlite: is truncated within its header");
}

} // namespace
