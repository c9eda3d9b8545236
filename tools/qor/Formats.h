#pragma once

#include "kit/OutputFile.h"

#include <string>
#include <vector>

namespace qorprogram {

class Session;

/// The kind of file that a format is: "json", "dot", "markdown", "sql".
kit::FileKind const& fileKindOf(std::string const& format);

/// Where a verb's result goes, which a verb says before it reads anything. `path` is what -o names, or empty.
/// What is made of the sources, their companions included, never gets their place. Throws kit::ToolError,
/// also for a source that can't be one.
kit::Output outputOf(Session& session, std::string const& path, std::string const& format,
                     std::vector<std::string> const& sources);

} // namespace qorprogram
