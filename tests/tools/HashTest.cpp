#include "kit/Hash.h"

#include <gtest/gtest.h>

#include <set>

namespace {

// The order of a graph depends on these, and so do files that users compare.
TEST(Hash, IsTheSameInEveryProcess) {
    EXPECT_EQ(kit::hashOf(""), 0xcbf29ce484222325u);
    EXPECT_EQ(kit::hashOf("a"), 0xaf63dc4c8601ec8cu);
    EXPECT_EQ(kit::hashOf("foobar"), 0x85944171f73967e8u);
    EXPECT_EQ(kit::hashOf("bar", kit::hashOf("foo")), kit::hashOf("foobar"));
}

TEST(Hash, OrderAndLengthMatter) {
    using namespace std::string_view_literals;
    EXPECT_NE(kit::mixed(1, 2), kit::mixed(2, 1));
    EXPECT_NE(kit::mixed(kit::mixed(0, "ab"), "c"), kit::mixed(kit::mixed(0, "a"), "bc"));
    EXPECT_NE(kit::mixed(0, ""), kit::mixed(0, "\0"sv));
}

TEST(Hash, PairsOfSmallNumbersHaveDifferentHashes) {
    std::set<kit::Hash> hashes;
    for (kit::Hash i = 0; i < 100; ++i) {
        for (kit::Hash j = 0; j < 100; ++j) {
            hashes.insert(kit::mixed(kit::mixed(0, i), j));
        }
    }
    EXPECT_EQ(hashes.size(), 10000u);
}

} // namespace
