#pragma once

#include <iosfwd>

namespace qorprogram {

/// The exit code of every error.
constexpr int failure = 2;

/// Runs the program `qor` with the arguments of `main`. An error gives one line on `err`, nothing on `out`,
/// and the exit code `failure`.
int run(int argc, char const* const* argv, std::ostream& out, std::ostream& err);

} // namespace qorprogram
