#pragma once

namespace CLI {
class App;
}

namespace qorprogram {

class Session;

/// Each adds a verb, which is a source of its own. A verb's run writes its result once all has gone well, and
/// throws kit::ToolError before.
void addImportVerb(CLI::App& program, Session& session);
void addShowVerb(CLI::App& program, Session& session);
void addExportVerb(CLI::App& program, Session& session);
void addDiffVerb(CLI::App& program, Session& session);
void addRecodeVerb(CLI::App& program, Session& session);

} // namespace qorprogram
