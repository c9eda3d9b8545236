#include "documents/DocumentKinds.h"

#include "EveryKind.h"
#include "database/SqlText.h"
#include "documents/DotWriter.h"
#include "documents/MarkdownWriter.h"
#include "exchange/FileKinds.h"
#include "exchange/JsonWriter.h"

#include <gtest/gtest.h>
#include <sstream>

namespace {

using Recogniser = bool (*)(std::istream& in);

bool isKind(Recogniser recognises, std::string const& text) {
    std::istringstream in(text);
    return recognises(in);
}

TEST(DocumentKinds, WhatAWriterWritesIsOfItsKindAlone) {
    EveryKind const every;
    every.graph.root().setName("every");
    std::string text[3];
    for (auto const& [write, written] :
         {std::pair(exchange::writeJson, &text[0]), std::pair(documents::writeDot, &text[1]),
          std::pair(documents::writeMarkdown, &text[2])}) {
        std::ostringstream out;
        write(every.graph.root(), out);
        *written = out.str();
    }
    Recogniser const recognisers[] = {exchange::isGraphText, documents::isDotText, documents::isMarkdownText};
    for (std::size_t kind = 0; kind < 3; ++kind) {
        for (std::size_t written = 0; written < 3; ++written) {
            EXPECT_EQ(isKind(recognisers[kind], text[written]), kind == written) << kind << " " << written;
        }
        EXPECT_FALSE(isKind(database::isSqlText, text[kind])) << kind;
    }
}

TEST(DocumentKinds, DrawingIsKnownByItsFirstWords) {
    for (char const* drawing :
         {"digraph {", "graph x {\n}", "strict graph\n\"a b\" {", "/* c */ // d\n# e\nDiGraph G_1.0 {}",
          "digraph {\na -> b\n}\n", "digraph/**/x/**/{"}) {
        EXPECT_TRUE(isKind(documents::isDotText, drawing)) << drawing;
    }
    for (char const* other : {"", "x", "graph", "graph of all {", "digraphs {", "the graph {", "// graph {",
                              "strict {", "{\"format\": \"qor-graph\"}"}) {
        EXPECT_FALSE(isKind(documents::isDotText, other)) << other;
    }
}

TEST(DocumentKinds, MarkdownHasAHeadingAndBeginsLikeNothingElse) {
    for (char const* page : {"# x\n", "text\n\n## x\n\nmore", "\n###### x", "---\ntitle: x\n---\n# x"}) {
        EXPECT_TRUE(isKind(documents::isMarkdownText, page)) << page;
    }
    for (char const* other : {"", "text\n", "#hash\n", "####### seven\n", "#!/bin/sh\n# x\n", "{\n# x\n}",
                              "<?xml?>\n# x\n", "%PDF-1.4\n# x\n", "a,b\n1,2\n", "root:x:0:0:root\n"}) {
        EXPECT_FALSE(isKind(documents::isMarkdownText, other)) << other;
    }
}

} // namespace
