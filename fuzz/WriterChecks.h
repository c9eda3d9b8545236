#pragma once

#include <string>
#include <vector>

class QORModel;

/// The model as SQL, for "sqlite" or "postgresql".
std::string sqlOf(QORModel& model, char const* dialect);

/// Gives a model to all that reads or writes one. The answer is what doesn't hold: SQL that SQLite doesn't
/// take, a difference from itself, an exception other than kit::ToolError.
std::vector<std::string> writerFaults(QORModel& model);
