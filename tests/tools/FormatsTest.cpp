#include "qor/Formats.h"

#include "RunProgram.h"
#include "Sqlite.h"

#include <gtest/gtest.h>
#include <sstream>

namespace {

using Words = std::vector<std::string>;

/// What the program writes of a database, with the names of the formats.
std::vector<std::pair<std::string, std::string>> textsOf(std::string const& path) {
    std::vector<std::pair<std::string, std::string>> texts;
    for (auto const& [name, format] : qorprogram::formats()) {
        std::vector<Words> const choices =
            name == "sql" ? std::vector<Words>{{"--dialect", "sqlite"}, {"--dialect", "postgresql"}}
                          : std::vector<Words>{{}};
        for (Words const& choice : choices) {
            Words command{QOR_TOOL, "export", path, "--format", name};
            command.insert(command.end(), choice.begin(), choice.end());
            texts.emplace_back(name, runProgram(command).out);
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
            for (auto const& [name, format] : qorprogram::formats()) {
                std::istringstream in(text);
                EXPECT_EQ(format.kind.recognises(in), written == name) << name << ": " << text;
            }
        }
    }
}

} // namespace
