#include "exchange/FileKinds.h"

#include "EveryKind.h"
#include "database/SqlText.h"
#include "exchange/DotWriter.h"
#include "exchange/JsonWriter.h"
#include "exchange/MarkdownWriter.h"

#include <gtest/gtest.h>
#include <sstream>

namespace {

using Recogniser = bool (*)(std::istream& in);

bool isKind(Recogniser recognises, std::string const& text) {
    std::istringstream in(text);
    return recognises(in);
}

TEST(FileKinds, WhatAWriterWritesIsOfItsKindAlone) {
    EveryKind const every;
    every.graph.root().setName("every");
    std::string text[3];
    for (auto const& [write, written] :
         {std::pair(exchange::writeJson, &text[0]), std::pair(exchange::writeDot, &text[1]),
          std::pair(exchange::writeMarkdown, &text[2])}) {
        std::ostringstream out;
        write(every.graph.root(), out);
        *written = out.str();
    }
    Recogniser const recognisers[] = {exchange::isGraphText, exchange::isDotText, exchange::isMarkdownText};
    for (std::size_t kind = 0; kind < 3; ++kind) {
        for (std::size_t written = 0; written < 3; ++written) {
            EXPECT_EQ(isKind(recognisers[kind], text[written]), kind == written) << kind << " " << written;
        }
        EXPECT_FALSE(isKind(database::isSqlText, text[kind])) << kind;
    }
}

TEST(FileKinds, GraphIsKnownByItsFormatWhereverItStands) {
    EXPECT_TRUE(isKind(exchange::isGraphText, "{\"format\": \"qor-graph\""));
    EXPECT_TRUE(isKind(exchange::isGraphText, "\n {\"links\":[{\"x\":[1]}],\"format\":\"qor-graph\"}"));
    for (char const* other :
         {"", "x", "[]", "\"qor-graph\"", "{}", "{\"format\": \"qor\"}", "{\"form\": \"qor-graph\"}",
          "{\"a\": {\"format\": \"qor-graph\"}}", "[{\"format\": \"qor-graph\"}]",
          "{\"format\": [\"qor-graph\"]}", "{\"x\": y, \"format\": \"qor-graph\"}",
          "{\"format\": 1, \"x\": \"qor-graph\"}"}) {
        EXPECT_FALSE(isKind(exchange::isGraphText, other)) << other;
    }
    EXPECT_FALSE(isKind(exchange::isGraphText, std::string(1000000, '[')));
}

TEST(FileKinds, DrawingIsKnownByItsFirstWords) {
    for (char const* drawing :
         {"digraph {", "graph x {\n}", "strict graph\n\"a b\" {", "/* c */ // d\n# e\nDiGraph G_1.0 {}",
          "digraph {\na -> b\n}\n", "digraph/**/x/**/{"}) {
        EXPECT_TRUE(isKind(exchange::isDotText, drawing)) << drawing;
    }
    for (char const* other : {"", "x", "graph", "graph of all {", "digraphs {", "the graph {", "// graph {",
                              "strict {", "{\"format\": \"qor-graph\"}"}) {
        EXPECT_FALSE(isKind(exchange::isDotText, other)) << other;
    }
}

TEST(FileKinds, MarkdownHasAHeadingAndBeginsLikeNothingElse) {
    for (char const* page : {"# x\n", "text\n\n## x\n\nmore", "\n###### x", "---\ntitle: x\n---\n# x"}) {
        EXPECT_TRUE(isKind(exchange::isMarkdownText, page)) << page;
    }
    for (char const* other : {"", "text\n", "#hash\n", "####### seven\n", "#!/bin/sh\n# x\n", "{\n# x\n}",
                              "<?xml?>\n# x\n", "%PDF-1.4\n# x\n", "a,b\n1,2\n", "root:x:0:0:root\n"}) {
        EXPECT_FALSE(isKind(exchange::isMarkdownText, other)) << other;
    }
}

} // namespace
