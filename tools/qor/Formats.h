#pragma once

#include "kit/OutputFile.h"

#include <iosfwd>
#include <map>
#include <string>
#include <vector>

class QORObject;

namespace CLI {
class App;
}

namespace qorprogram {

class Session;

/// A format that a graph can be written in.
struct Format {
    kit::FileKind kind;
    void (*write)(QORObject& root, std::ostream& out); ///< null where more than the format says how
};

/// All formats by their names.
std::map<std::string, Format> const& formats();

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
