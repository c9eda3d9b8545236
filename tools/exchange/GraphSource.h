#pragma once

#include "kit/SourceKind.h"

namespace exchange {

/// A file that holds a graph in the exchange format.
kit::SourceKind graphSource();

/// The standard input, which holds one too and can be read only once.
kit::SourceKind standardInputSource();

/// Whether a source is the standard input.
bool isStandardInput(std::string const& source);

} // namespace exchange
