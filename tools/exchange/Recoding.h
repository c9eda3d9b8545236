#pragma once

#include "kit/Graph.h"

#include <cstddef>
#include <string>

class QOREncodingConverter;
class QORObject;

namespace exchange {

/// A graph in another encoding, and the counts of its texts. They include the texts that JSON would hold:
/// an object's own whose values differ from those of a new object.
struct Recoded {
    kit::Graph graph;
    std::size_t converted = 0; ///< texts that have other bytes now
    std::size_t unchanged = 0; ///< texts that are the same in both encodings
    std::size_t failed = 0;    ///< texts that stay as they were, since they can't be converted
    std::size_t renamed = 0;   ///< names that are taken in the new encoding and have a number appended
    std::string firstFailed{}; ///< the path of an object with such a text, and the attribute
};

/// Makes a copy of an object and all that can be reached from it over links of any kind, with each text
/// converted once, however many owners its object has, and every end in the order that it keeps. Throws
/// kit::ToolError for a graph that can't be restored.
Recoded recode(QORObject& root, QOREncodingConverter& from, QOREncodingConverter& to);

} // namespace exchange
