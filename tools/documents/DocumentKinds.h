#pragma once

#include <iosfwd>

namespace documents {

/// Whether a text is a drawing for Graphviz: a graph begins after its comments.
bool isDotText(std::istream& in);

/// Whether a text is Markdown: it has a heading, and begins like no script, no markup and no other kind of
/// data.
bool isMarkdownText(std::istream& in);

} // namespace documents
