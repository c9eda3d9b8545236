#include "qor/Verbs.h"

#include "database/ModelReader.h"
#include "database/Omission.h"
#include "database/SqlTokens.h"
#include "kit/ToolError.h"
#include "postgres/SqlWriter.h"
#include "qor/Formats.h"
#include "qor/Session.h"
#include "qor/Sources.h"
#include "sqlite/SqlWriter.h"

#include <qor/QORModel.h>

#include <CLI/CLI.hpp>
#include <map>
#include <memory>
#include <ostream>

namespace qorprogram {
namespace {

using SqlWriter = database::Omissions (*)(database::Structure const& structure, std::ostream& out);

std::map<std::string, SqlWriter> const sqlWriters = {{"sqlite", sqlite::writeSqliteSql},
                                                     {"postgresql", postgres::writePostgresSql}};

struct ExportOptions {
    std::string source;
    std::string format;
    std::string dialect;
    std::string output;
};

/// Without a dialect it is that of the system which the structure comes from.
SqlWriter sqlWriterFor(ExportOptions const& options, database::Structure const& structure) {
    std::string const dialect =
        options.dialect.empty() ? database::lowerCase(structure.origin.system) : options.dialect;
    auto const known = sqlWriters.find(dialect);
    if (known == sqlWriters.end()) {
        throw kit::ToolError(options.source, "comes from no known system, so --dialect must name one");
    }
    return known->second;
}

void exportSql(ExportOptions const& options, kit::Graph const& graph, kit::Output const& output,
               Session& session) {
    if (!graph.root().isInstanceOf(QORElementType::MODEL)) {
        throw kit::ToolError(options.source, "its root isn't a model, and only a model becomes SQL");
    }
    database::Structure const structure = database::readModel(static_cast<QORModel&>(graph.root()));
    SqlWriter const write = sqlWriterFor(options, structure);
    database::Omissions omissions;
    output.write([&](std::ostream& out) { omissions = write(structure, out); });
    for (database::Omission const& omission : omissions) {
        session.remark(database::textOf(omission));
    }
}

void exportGraph(ExportOptions const& options, Session& session) {
    if (!options.dialect.empty() && options.format != "sql") {
        throw kit::ToolError("--dialect", "is only for --format sql");
    }
    kit::Output const output = outputOf(session, options.output, options.format, {options.source});
    kit::Graph const graph = loadSource(options.source, session);
    if (options.format == "sql") {
        exportSql(options, graph, output, session);
        return;
    }
    auto const write = formats().at(options.format).write;
    output.write([&](std::ostream& out) { write(graph.root(), out); });
}

} // namespace

void addExportVerb(CLI::App& program, Session& session) {
    auto options = std::make_shared<ExportOptions>();
    CLI::App* const verb = program.add_subcommand("export", "Write a graph in another format");
    verb->group("Verbs");
    verb->add_option("FILE", options->source, sourceHelp())->required();
    verb->add_option("--format", options->format,
                     "json, dot for a drawing with Graphviz, markdown for a page of tables, or sql for the\n"
                     "statements that create the database")
        ->required()
        ->check([](std::string const& format) {
            return formats().count(format) ? std::string()
                                           : format + " isn't a format; see qor export --help";
        });
    verb->add_option("--dialect", options->dialect,
                     "The dialect of the SQL, sqlite or postgresql; the default is that of the database")
        ->check(CLI::IsMember({"sqlite", "postgresql"}));
    addOutputOption(*verb, options->output, "Write to this file instead of the standard output");
    verb->add_flag("--quiet", session.quiet, quietHelp);
    verb->footer("\nExample:\n  qor export orchard.json --format dot -o orchard.dot\n  dot -Tsvg orchard.dot "
                 "> orchard.svg");
    verb->callback([options, &session] { exportGraph(*options, session); });
}

} // namespace qorprogram
