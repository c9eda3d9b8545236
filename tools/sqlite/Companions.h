#pragma once

#include <string>
#include <vector>

namespace sqlite {

/// A database file and the files that SQLite keeps beside it while it is in use, whether they exist or
/// not.
std::vector<std::string> filesOf(std::string const& path);

} // namespace sqlite
