#pragma once

#include <set>
#include <string>
#include <string_view>

namespace sqlite {

/// The names that a piece of SQL uses from its surroundings, as spelt there.
struct Calls {
    std::set<std::string> functions;  ///< also those after FROM; REGEXP calls `regexp`
    std::set<std::string> aggregates; ///< those among them that are called as only an aggregate can be
    std::set<std::string> collations;
};

/// Finds the calls in an expression or in a statement other than CREATE TABLE.
Calls callsIn(std::string_view sql);

} // namespace sqlite
