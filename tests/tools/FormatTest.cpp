#include "kit/Format.h"

#include <gmock/gmock.h>
#include <qor/QORModel.h>
#include <sstream>

namespace {

void writeName(QORObject& root, std::ostream& out) {
    out << static_cast<QORElement&>(root).getName().chars;
}

TEST(Format, OfEveryGraphWritesOnlyWhenItIsAskedTo) {
    QORModel model;
    model.setName("before");
    kit::Writing const write = kit::everyGraph(writeName)({model, "a.json", {}});
    model.setName("after");
    std::ostringstream out;
    EXPECT_THAT(write(out), testing::IsEmpty());
    EXPECT_EQ(out.str(), "after");
}

} // namespace
