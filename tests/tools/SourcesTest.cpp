#include "qor/Sources.h"

#include "TemporaryFolder.h"
#include "kit/ToolError.h"
#include "qor/Session.h"

#include <gmock/gmock.h>
#include <sstream>

namespace {

using qorprogram::filesOfSource;
using qorprogram::shownAddress;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(Sources, ConsistOfTheirFile) {
    TemporaryFolder const folder;
    EXPECT_THAT(filesOfSource("x.json"), ElementsAre("x.json"));
    std::string const graph = folder.write("graph", " {");
    EXPECT_THAT(filesOfSource(graph), ElementsAre(graph));
    EXPECT_THAT(filesOfSource("x.sqlite"), Contains("x.sqlite"));
    EXPECT_THAT(filesOfSource("x.sqlite"), Contains("x.sqlite-wal"));
    EXPECT_THAT(filesOfSource("postgresql://h/x.json"), IsEmpty());
    EXPECT_THAT(filesOfSource("-"), ElementsAre("/dev/stdin"));
    EXPECT_THAT(filesOfSource("./-"), Contains("./-"));
}

TEST(Sources, AddressOfAnotherSchemeIsNone) {
    std::ostringstream text;
    qorprogram::Session session(0, nullptr, text, text);
    for (char const* address : {"mysql://h/x", "mysql://h/x.json", "postgresql+x://h", "file:///x.sqlite"}) {
        EXPECT_THROW(filesOfSource(address), kit::ToolError) << address;
        EXPECT_THROW(qorprogram::loadSource(address, session), kit::ToolError) << address;
    }
}

TEST(Sources, AddressIsShownWithoutWhatIsNotKnownToBeHarmless) {
    EXPECT_EQ(shownAddress("postgres://u:secret@h/x"), "postgresql://h/x");
    EXPECT_EQ(shownAddress("mysql://u:secret@h/x"), "mysql://***");
    EXPECT_EQ(shownAddress("mysql%3A%2F%2Fsecret"), "mysql://***");
}

TEST(Sources, HelpNamesEachKindWithWhatItIsKnownBy) {
    EXPECT_EQ(qorprogram::sourceHelp(), "One of these sources, which is never written:\n"
                                        "PostgreSQL database: a URL such as postgresql://user@host/name\n"
                                        "graph in JSON on the standard input: -\n"
                                        "graph in JSON: the suffix .json, or { as the first character\n"
                                        "SQLite database: any other file");
}

} // namespace
