#pragma once

#include <string>
#include <vector>

namespace postgres {

/// A statement that makes a thing of this name.
struct Creation {
    std::string schema;
    std::string name;
    std::string statement;
    /// The beginning of the statement that is looked at for names of other things: what the database itself
    /// looks at when it runs the statement.
    std::size_t lookedAt = std::string::npos;
    int table = -1; ///< the number of what is made, if that is a table or view
};

/// The statements' indexes in an order in which each comes after those that make what it names; otherwise
/// they stay as they are. Statements that need each other in a circle are cut apart somewhere. `anySchema`
/// says that names stand without their schemas, in any case.
std::vector<std::size_t> orderByNeeds(std::vector<Creation> const& creations, bool anySchema);

} // namespace postgres
