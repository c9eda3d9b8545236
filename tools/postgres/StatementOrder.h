#pragma once

#include "database/Omission.h"

#include <optional>
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
    /// Of things of its own name it needs those alone that stand before it. Otherwise all of them count that
    /// it names behind itself.
    bool needsEarlierNamesakes = false;
    /// What it names may name it as well, and comes first all the same: the functions of a type.
    bool isLast = false;
    /// What makes a part of the thing, without what may stand in a circle, and what adds the rest, which is
    /// empty if there is no such way.
    std::string bare = {};
    std::string rest = {};
    /// The number of what is made, if that is a table or view.
    int table = -1;
    /// What is said instead, where there is no statement.
    std::optional<database::Omission> omission = {};
};

/// The statements' indexes in an order in which each comes after those that make what it names; otherwise
/// they stay as they are. Statements that need each other in a circle are cut apart somewhere. `anySchema`
/// says that names stand without their schemas, in any case.
std::vector<std::size_t> orderByNeeds(std::vector<Creation> const& creations, bool anySchema);

/// Makes two statements of one that stands in a circle and can be split; the second comes behind all others.
void splitCircles(std::vector<Creation>& creations, bool anySchema);

} // namespace postgres
