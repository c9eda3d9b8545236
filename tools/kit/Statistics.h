#pragma once

#include <iosfwd>
#include <map>
#include <string>

class QORObject;

namespace kit {

/// The number of objects of each class in a graph.
struct Statistics {
    std::map<std::string, int> objectsByClass; ///< by the display name of the class; none is 0
    int objects = 0;                           ///< of all classes
};

/// Counts an object and all that it owns, each once.
Statistics countObjects(QORObject& root);

/// Writes a line for each class, number and name, in the order of the names, and one for all of them.
void printStatistics(Statistics const& statistics, std::ostream& out);

} // namespace kit
