#include "database/SqlFormat.h"

#include "kit/ToolError.h"
#include "qor/Dialects.h"

#include <gmock/gmock.h>
#include <qor/QORClass.h>
#include <qor/QORModel.h>
#include <sstream>

namespace {

TEST(SqlFormat, OnlyAModelBecomesSql) {
    kit::Format const format = database::sqlFormat(qorprogram::dialects());
    QORClass table;
    EXPECT_THROW(format.prepare({table, "a.json", {{"dialect", "sqlite"}}}), kit::ToolError);
    QORModel model;
    std::ostringstream out;
    EXPECT_THAT(format.prepare({model, "a.json", {{"dialect", "sqlite"}}})(out), testing::IsEmpty());
    EXPECT_EQ(out.str(), "BEGIN;\nCOMMIT;\n");
}

} // namespace
