#pragma once

#include <string>
#include <vector>

class QORObject;

namespace kit {

/// Checks the links of a graph: of the object itself and all that can be reached over links of any kind,
/// owned or not. Gives a sentence for each thing found, sorted; nothing for a sound graph.
///
/// Found is each link that only one of its two objects knows of (for an owner and its child too), each end
/// that holds an object twice, and each end of which the count, the positions in either direction and the
/// walk over the children tell different things. Two ends that are wrong in opposite ways between the same
/// two objects can pass for a link of that kind. A pointer to a deleted object can't be told from a good one.
std::vector<std::string> verify(QORObject& root);

} // namespace kit
