#include "exchange/GraphSource.h"

#include "TemporaryFolder.h"
#include "kit/ToolError.h"

#include <gmock/gmock.h>
#include <qor/QORObject.h>

namespace {

using testing::ElementsAre;

constexpr char const* graph = "{\"format\": \"qor-graph\", \"version\": 1, \"objects\": "
                              "[{\"number\": 1, \"class\": \"Model\"}], \"links\": []}";

TEST(GraphSource, IsKnownByItsSuffixOrItsFirstCharacter) {
    kit::SourceKind const kind = exchange::graphSource();
    EXPECT_TRUE(kind.recognises({"a.json", ""}));
    EXPECT_TRUE(kind.recognises({"a", "{"}));
    EXPECT_FALSE(kind.recognises({"a", ""}));
    EXPECT_FALSE(kind.recognises({"a", "[{"}));
    EXPECT_FALSE(kind.recognises({"a.json.sqlite", ""}));
}

TEST(GraphSource, StandardInputIsADash) {
    kit::SourceKind const kind = exchange::standardInputSource();
    EXPECT_TRUE(kind.recognises({"-", ""}));
    EXPECT_FALSE(kind.recognises({"./-", "{"}));
    EXPECT_THAT(kind.filesOf("-"), ElementsAre("/dev/stdin"));
}

TEST(GraphSource, IsReadFromItsFile) {
    TemporaryFolder const folder;
    kit::SourceKind const kind = exchange::graphSource();
    std::string const path = folder.write("a", graph);
    EXPECT_THAT(kind.filesOf(path), ElementsAre(path));
    EXPECT_TRUE(kind.load(path, {}).root().isInstanceOf(QORElementType::MODEL));
    EXPECT_THROW(kind.load(folder.file("none"), {}), kit::ToolError);
}

} // namespace
