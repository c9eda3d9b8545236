#include "database/StructureGraph.h"

#include "EveryRecord.h"
#include "kit/ToolError.h"

#include <gmock/gmock.h>
#include <qor/QORModel.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class StructureGraph : public testing::Test {
protected:
    database::Structure structure = everyRecord();
    std::vector<std::string> told;
    kit::Loading const loading{[this](std::string const& line) { told.push_back(line); }, nullptr};
};

TEST_F(StructureGraph, HoldsTheModelAndTellsTheRemarks) {
    structure.remarks = {{"view v", "can't be read"}, {"table t", "is odd"}};
    kit::Graph const graph = database::graphOf(structure, loading);
    EXPECT_TRUE(graph.root().isInstanceOf(QORElementType::MODEL));
    EXPECT_THAT(told, ElementsAre("postgresql://host/shop: view v: can't be read",
                                  "postgresql://host/shop: table t: is odd"));
}

TEST_F(StructureGraph, StructureThatCannotBeBuiltHasNoRemarks) {
    structure.remarks = {{"table t", "is odd"}};
    structure.tables[0].schema = 99;
    EXPECT_THROW(database::graphOf(structure, loading), kit::ToolError);
    EXPECT_THAT(told, IsEmpty());
}

} // namespace
