#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace postgres {

/// A name as SQL needs it: in quotation marks unless it is plain, in small letters and no keyword.
std::string quoteName(std::string_view name);

/// A text as an SQL literal.
std::string quoteText(std::string_view text);

/// Calls `take` with each name in a piece of SQL, part by part and without quotation marks: {"harbour",
/// "ship"} for `harbour."ship"`, {"harbour", "<="} for `harbour.<=`. What stands in literals and comments
/// counts as well.
void forEachName(std::string_view sql, std::function<void(std::vector<std::string> const&)> const& take);

} // namespace postgres
