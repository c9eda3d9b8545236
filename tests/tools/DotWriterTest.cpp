#include "documents/DotWriter.h"

#include "CrossedKeys.h"
#include "NastyNames.h"
#include "RunProgram.h"
#include "database/ModelBuilder.h"

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
    documents::writeDot(*nasty.model, out);
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
    documents::writeDot(*outer, out);
    EXPECT_THAT(out.str(), HasSubstr("[label=\"{table|}\"];"));
    EXPECT_EQ(countOf(out.str(), "subgraph"), 2u);
}

// SQL writes such a key with the table that it refers to, too.
TEST(DotWriter, ForeignKeyIsAnArrowEvenIfItRefersToTheColumnsOfNoKey) {
    database::Structure structure = crossedKeys();
    auto const arrowsOf = [&structure] {
        auto const model = database::buildModel(structure);
        std::ostringstream out;
        documents::writeDot(*model, out);
        std::string const text = out.str();
        EXPECT_EQ(countOf(text, " -> "), 1u);
        std::size_t const box = text.find("[label=\"{u|");
        std::size_t const far = text.find("[label=\"{t|");
        auto const node = [&text](std::size_t place) {
            std::size_t const line = text.rfind('\n', place) + 1;
            return text.substr(line, place - line - 1);
        };
        return countOf(text, node(box) + " -> " + node(far) + " [label=\"crossed\", arrowhead=normal];\n");
    };
    EXPECT_EQ(arrowsOf(), 1u);
    structure.keys.erase(structure.keys.begin());
    EXPECT_EQ(arrowsOf(), 1u);
}

} // namespace
