#include "exchange/DotWriter.h"

#include "NastyNames.h"
#include "RunProgram.h"

#include <gmock/gmock.h>
#include <sstream>

namespace {

using testing::HasSubstr;

std::size_t countOf(std::string const& text, std::string const& part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
        ++count;
    }
    return count;
}

TEST(DotWriter, GraphvizDrawsWhateverTheNames) {
    Nasty const nasty;
    std::ostringstream out;
    exchange::writeDot(*nasty.model, out);
    TemporaryFolder const folder;
    std::string const path = folder.write("x.dot", out.str());
    if (runProgram({"/usr/bin/env", "bash", "-c", "command -v dot"}).exitCode != 0) {
        GTEST_SKIP() << "graphviz is missing";
    }
    ProgramResult const drawn = runProgram({"/usr/bin/env", "dot", "-Tsvg", path});
    EXPECT_EQ(drawn.exitCode, 0);
    EXPECT_EQ(drawn.err, "");
    auto const count = static_cast<std::size_t>(nasty.model->getChildPackageCount());
    EXPECT_EQ(count, nastyNames.size());
    EXPECT_EQ(countOf(drawn.out, "class=\"node\""), count);
    EXPECT_EQ(countOf(drawn.out, "class=\"edge\""), count);
    EXPECT_EQ(countOf(drawn.out, "class=\"cluster\""), count + 1);
    // As they stand in the drawing, in which XML escapes them once more.
    for (char const* shown :
         {">&quot;<", ">\\<", ">{<", ">}<", ">|<", ">&lt;b&gt;<", ">&amp;<", ">a b<", ">\xc3\xa9<"}) {
        EXPECT_THAT(drawn.out, HasSubstr(shown));
    }
}

TEST(DotWriter, RingOfOwnersIsDrawn) {
    kit::Graph graph;
    auto* const outer = new QORDesignPackage;
    auto* const inner = new QORDesignPackage;
    auto* const table = new QORClass;
    for (QORObject* object : std::initializer_list<QORObject*>{table, outer, inner}) {
        graph.adopt(object);
    }
    table->setName("table");
    inner->addModelElement(table);
    inner->addChildPackage(outer);
    outer->addChildPackage(inner);
    std::ostringstream out;
    exchange::writeDot(*outer, out);
    EXPECT_THAT(out.str(), HasSubstr("[label=\"{table|}\"];"));
    EXPECT_EQ(countOf(out.str(), "subgraph"), 2u);
}

} // namespace
