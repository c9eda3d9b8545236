#pragma once

#include "kit/Format.h"

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace qorprogram {

class Session;

/// All formats that a graph can be written in.
std::vector<kit::Format> const& formats();

/// The one of that name, or null.
kit::Format const* findFormat(std::string const& name);

/// The help text for the choice of a format: each with what it is for.
std::string formatHelp();

/// Adds the option -o to a verb, which takes the path of a file, or "-".
void addOutputOption(CLI::App& verb, std::string& path, char const* help);

/// The output of a verb's result in a format, which the verb determines before it reads anything. `path` is
/// what -o names; empty, or "-", it means the standard output. What the sources are made of, their companions
/// included, is never written. Throws kit::ToolError, also for an unsupported source.
kit::Output outputOf(Session& session, std::string const& path, std::string const& format,
                     std::vector<std::string> const& sources);

/// The same for a verb that writes only to the standard output.
kit::Output standardOutputOf(Session& session, std::vector<std::string> const& sources);

} // namespace qorprogram
