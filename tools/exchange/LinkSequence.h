#pragma once

#include <cstddef>
#include <vector>

class QORMetaLink;
class QORObject;

namespace kit {
class Numbering;
}

namespace exchange {

/// A link, recorded at the end of the owner or of the referring object.
struct Link {
    QORObject* from;
    QORMetaLink const* role;
    QORObject* to;
};

/// All links of a graph, each once, in a sequence that restores them so that each end that keeps the order of
/// its objects has the same order again. Throws kit::ToolError if there is none.
std::vector<Link> linkSequence(kit::Numbering const& numbering);

} // namespace exchange
