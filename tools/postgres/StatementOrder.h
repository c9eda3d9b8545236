#pragma once

#include "database/Omission.h"

#include <optional>
#include <string>
#include <vector>

namespace postgres {

/// A statement that creates an object of this name.
struct Creation {
    std::string schema;
    std::string name;
    std::string statement;
    /// The beginning of the statement that is looked at for names of other things: what the database itself
    /// looks at when it runs the statement.
    std::size_t lookedAt = std::string::npos;
    /// If true, it needs only the earlier ones among the objects of its own name. If false, it needs all
    /// those that its statement names after its own name.
    bool needsEarlierNamesakes = false;
    /// What it names may name it as well, and still comes first: the functions of a type.
    bool isLast = false;
    /// The statement that creates the object without what may be in a cycle, and the one that adds the rest,
    /// which is empty if there is none.
    std::string bare = {};
    std::string rest = {};
    /// The number of the created object, if it is a table or view.
    int table = -1;
    /// The report in place of a statement, if there is none.
    std::optional<database::Omission> omission = {};
};

/// The statements' indexes in an order in which each comes after those that make what it names; otherwise
/// they stay as they are. A cycle of statements that need each other is broken somewhere. `anySchema`
/// says that names have no schema, in any case.
std::vector<std::size_t> orderByNeeds(std::vector<Creation> const& creations, bool anySchema);

/// Splits a statement that is in a cycle and can be split into two; the second comes after all others.
void splitCircles(std::vector<Creation>& creations, bool anySchema);

} // namespace postgres
