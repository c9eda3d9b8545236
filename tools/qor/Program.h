#pragma once

#include <iosfwd>

namespace qorprogram {

/// The exit code of every error.
constexpr int failure = 2;

/// Runs the program `qor` with the arguments of `main` and returns its exit code. On an error, which is
/// `failure`, one line goes to `err` and nothing to `out`.
int run(int argc, char const* const* argv, std::ostream& out, std::ostream& err);

} // namespace qorprogram
