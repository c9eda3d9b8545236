#pragma once

#include <string>
#include <string_view>

namespace postgres {

/// SQL that the server has printed, so that it means to the server what it meant. Of
/// `(ARRAY['a'::varchar])::text[]` the server reads that each element is cast, and prints another text from
/// then on; with the array's own type before the cast it doesn't. Literals, names and comments stay as they
/// are, and so does an array whose type its elements don't say.
std::string keepArrayCasts(std::string_view sql);

} // namespace postgres
