#include "qor/Formats.h"

#include "RunProgram.h"
#include "Sqlite.h"
#include "qor/Dialects.h"

#include <gmock/gmock.h>
#include <sstream>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Words = std::vector<std::string>;

/// The choices of all options of a format, one option at a time; one choice of none without any.
std::vector<Words> choicesOf(kit::Format const& format) {
    std::vector<Words> choices;
    for (kit::FormatOption const& option : format.options) {
        for (std::string const& value : option.values) {
            choices.push_back({"--" + option.name, value});
        }
    }
    return choices.empty() ? std::vector<Words>{{}} : choices;
}

/// What the program writes of a database, with the names of the formats.
std::vector<std::pair<std::string, std::string>> textsOf(std::string const& path) {
    std::vector<std::pair<std::string, std::string>> texts;
    for (kit::Format const& format : qorprogram::formats()) {
        for (Words const& choice : choicesOf(format)) {
            Words command{QOR_TOOL, "export", path, "--format", format.name};
            command.insert(command.end(), choice.begin(), choice.end());
            texts.emplace_back(format.name, runProgram(command).out);
        }
    }
    return texts;
}

/// So that what a verb has written can be written again, and over nothing else.
TEST(Formats, TextOfAFormatIsOfItsKindAlone) {
    TemporaryFolder const folder;
    for (char const* sql :
         {"CREATE TABLE t(a INTEGER PRIMARY KEY, b TEXT)", "VACUUM", "CREATE VIEW v AS SELECT 1"}) {
        std::string const path = folder.file("x.sqlite");
        std::filesystem::remove(path);
        for (auto const& [written, text] : textsOf(makeDatabase(path, sql))) {
            EXPECT_NE(text, "");
            for (kit::Format const& format : qorprogram::formats()) {
                std::istringstream in(text);
                EXPECT_EQ(format.kind.recognises(in), written == format.name) << format.name << ": " << text;
            }
        }
    }
}

TEST(Formats, AreFoundByName) {
    for (kit::Format const& format : qorprogram::formats()) {
        EXPECT_EQ(qorprogram::findFormat(format.name), &format);
    }
    EXPECT_EQ(qorprogram::findFormat("xml"), nullptr);
    EXPECT_EQ(qorprogram::findFormat(""), nullptr);
}

TEST(Formats, HelpNamesEachWithWhatItIsFor) {
    EXPECT_EQ(qorprogram::formatHelp(), "json: the graph itself\n"
                                        "dot: a drawing for Graphviz\n"
                                        "markdown: a page of tables\n"
                                        "sql: the statements that create the database");
}

TEST(Formats, OnlySqlHasOptionsAndTheseNameTheDialects) {
    for (kit::Format const& format : qorprogram::formats()) {
        if (format.name == "sql") {
            ASSERT_EQ(format.options.size(), 1u);
            EXPECT_EQ(format.options[0].name, "dialect");
            EXPECT_EQ(format.options[0].values, qorprogram::dialects().names());
        } else {
            EXPECT_THAT(format.options, IsEmpty()) << format.name;
        }
    }
    EXPECT_THAT(qorprogram::dialects().names(), ElementsAre("sqlite", "postgresql"));
}

} // namespace
