#include "exchange/FileKinds.h"

#include <gtest/gtest.h>
#include <sstream>

namespace {

bool isGraph(std::string const& text) {
    std::istringstream in(text);
    return exchange::isGraphText(in);
}

TEST(FileKinds, GraphIsKnownByItsFormatWhereverItStands) {
    EXPECT_TRUE(isGraph("{\"format\": \"qor-graph\""));
    EXPECT_TRUE(isGraph("\n {\"links\":[{\"x\":[1]}],\"format\":\"qor-graph\"}"));
    for (char const* other :
         {"", "x", "[]", "\"qor-graph\"", "{}", "{\"format\": \"qor\"}", "{\"form\": \"qor-graph\"}",
          "{\"a\": {\"format\": \"qor-graph\"}}", "[{\"format\": \"qor-graph\"}]",
          "{\"format\": [\"qor-graph\"]}", "{\"x\": y, \"format\": \"qor-graph\"}",
          "{\"format\": 1, \"x\": \"qor-graph\"}"}) {
        EXPECT_FALSE(isGraph(other)) << other;
    }
    EXPECT_FALSE(isGraph(std::string(1000000, '[')));
}

} // namespace
