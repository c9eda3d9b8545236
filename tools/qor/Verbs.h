#pragma once

#include <iosfwd>

namespace CLI {
class App;
}

namespace qorprogram {

/// Adds the verb `import`. Its run writes to `out` once all has gone well, and throws kit::ToolError before.
/// Each further verb is a source of its own with one such function, which `run` calls.
void addImportVerb(CLI::App& program, std::ostream& out);

} // namespace qorprogram
