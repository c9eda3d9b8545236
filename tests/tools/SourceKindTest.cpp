#include "kit/SourceKind.h"

#include "TemporaryFolder.h"

#include <gtest/gtest.h>

namespace {

using kit::hintOf;

TEST(SourceKind, HintHasTheStartOfAFileWithoutBlanks) {
    TemporaryFolder const folder;
    EXPECT_EQ(hintOf(folder.write("a", " \n\t<Schema name=\"a b\"> ")).start, "<Schema name=\"a b\"> ");
    EXPECT_EQ(hintOf(folder.write("b", std::string(100000, ' ') + "{" + std::string(100000, 'x'))).start,
              "{" + std::string(65535, 'x'));
    EXPECT_EQ(hintOf(folder.write("c", " ")).start, "");
}

TEST(SourceKind, HintOfWhatIsNoFileHasNoStart) {
    for (char const* source : {"-", "", "/", "/dev/zero", "/none", "postgresql://h/x"}) {
        EXPECT_EQ(hintOf(source).name, source);
        EXPECT_EQ(hintOf(source).start, "") << source;
    }
}

} // namespace
