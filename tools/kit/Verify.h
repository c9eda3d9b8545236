#pragma once

#include <string>
#include <vector>

class QORObject;

namespace kit {

/// Checks the links of a graph: of the object itself and all that can be reached over links of any kind,
/// owned or not. Returns a sentence for each finding, sorted; nothing for a consistent graph.
///
/// A finding is a link that only one of its two objects has (also between an owner and its child), an end
/// that holds an object twice, or an end whose count, positions in either direction and walk over the
/// children differ. Two ends that are wrong in opposite ways between the same two objects can pass for a link
/// of that kind. A pointer to a deleted object isn't recognised.
std::vector<std::string> verify(QORObject& root);

} // namespace kit
