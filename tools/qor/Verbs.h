#pragma once

namespace CLI {
class App;
}

namespace qorprogram {

class Session;

/// Each adds a verb, which is a source file of its own. A verb writes its result after all else has
/// succeeded, and throws kit::ToolError before.
void addImportVerb(CLI::App& program, Session& session);
void addShowVerb(CLI::App& program, Session& session);
void addExportVerb(CLI::App& program, Session& session);
void addDiffVerb(CLI::App& program, Session& session);
void addRecodeVerb(CLI::App& program, Session& session);

} // namespace qorprogram
