#pragma once

#include <cstddef>
#include <vector>

class QORMetaLink;
class QORObject;

namespace kit {
class Numbering;
}

namespace exchange {

/// A link, told from the end of the owner or of the one that refers.
struct Link {
    QORObject* from;
    QORMetaLink const* role;
    QORObject* to;
};

/// All links of a graph, each once, in a sequence in which they can be made anew so that each end that keeps
/// the order of its objects has them in the same order again. Throws kit::ToolError if there is none.
std::vector<Link> linkSequence(kit::Numbering const& numbering);

} // namespace exchange
