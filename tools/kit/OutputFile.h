#pragma once

#include <functional>
#include <iosfwd>
#include <string>

namespace kit {

/// Writes a file whole or not at all: to a new file beside it, which then takes its place. Something that
/// isn't an ordinary file, such as a device, is written where it is. Throws kit::ToolError.
void writeFile(std::string const& path, std::function<void(std::ostream&)> const& write);

/// The same; an empty path, or "-", means `out`, to which nothing goes before all has been written.
void writeOutput(std::string const& path, std::ostream& out, std::function<void(std::ostream&)> const& write);

} // namespace kit
