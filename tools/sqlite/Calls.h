#pragma once

#include <set>
#include <string>
#include <string_view>

namespace sqlite {

/// What a piece of SQL takes from its surroundings, as it is spelt there.
struct Calls {
    std::set<std::string> functions;  ///< also those that stand after FROM; REGEXP calls `regexp`
    std::set<std::string> aggregates; ///< those among them that are called as only an aggregate can be
    std::set<std::string> collations;
};

/// Finds the calls in an expression or in a statement that is no CREATE TABLE.
Calls callsIn(std::string_view sql);

} // namespace sqlite
