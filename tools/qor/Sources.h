#pragma once

#include "kit/Graph.h"

#include <string>
#include <vector>

namespace qorprogram {

class Session;

/// The help text for a verb's source: all kinds, and what each is recognised by.
std::string sourceHelp();

/// Reads what a verb works on, a source of any kind. The reader's remarks on objects go to `session`. Throws
/// kit::ToolError.
kit::Graph loadSource(std::string const& source, Session& session);

/// Whether the source is the standard input, which can be read only once.
bool isStandardInput(std::string const& source);

/// The files that a source consists of or may consist of, whether they are there or not. Throws
/// kit::ToolError for an address that isn't that of a source.
std::vector<std::string> filesOfSource(std::string const& source);

/// An address of any scheme without its secrets, whether it is that of a source or not.
std::string shownAddress(std::string const& address);

} // namespace qorprogram
