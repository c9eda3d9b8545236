#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace database {

/// The clauses of a SELECT, apart from its columns and tables. A missing clause is empty.
struct SelectClauses {
    std::string quantifier; ///< "ALL", "DISTINCT" or nothing
    std::string where;
    std::string groupBy;
    std::string having;
    std::string orderBy;
};

/// Finds the clauses of a statement, without their keywords; nothing if that isn't one plain SELECT, but one
/// that begins with WITH or VALUES, or several with UNION or the like between.
std::optional<SelectClauses> splitSelect(std::string_view statement);

} // namespace database
