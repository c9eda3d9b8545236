#include "qor/Verbs.h"

#include "exchange/DotWriter.h"
#include "exchange/JsonWriter.h"
#include "exchange/MarkdownWriter.h"
#include "kit/OutputFile.h"
#include "qor/Session.h"

#include <CLI/CLI.hpp>
#include <map>
#include <memory>
#include <ostream>

namespace qorprogram {
namespace {

using Writer = void (*)(QORObject& root, std::ostream& out);

/// A further format is one more line.
std::map<std::string, Writer> const writers = {
    {"json", exchange::writeJson}, {"dot", exchange::writeDot}, {"markdown", exchange::writeMarkdown}};

struct ExportOptions {
    std::string source;
    std::string format;
    std::string output;
};

void exportGraph(ExportOptions const& options, Session& session) {
    kit::Graph const graph = loadSource(options.source);
    Writer const write = writers.at(options.format);
    kit::writeOutput(options.output, session.out, [&](std::ostream& out) { write(graph.root(), out); });
}

} // namespace

void addExportVerb(CLI::App& program, Session& session) {
    auto options = std::make_shared<ExportOptions>();
    CLI::App* const verb = program.add_subcommand("export", "Write a graph in another format");
    verb->group("Verbs");
    verb->add_option("FILE", options->source, "A graph in JSON, or a database; it is only read")->required();
    verb->add_option("--format", options->format,
                     "json, or dot for a drawing with Graphviz, or markdown for a page of tables")
        ->required()
        ->check([](std::string const& format) {
            return writers.count(format) ? std::string() : format + " is no format; see qor export --help";
        });
    verb->add_option("-o,--output", options->output, "Write to this file instead of the standard output");
    verb->add_flag("--quiet", session.quiet, "No remarks beside the result");
    verb->footer("\nExample:\n  qor export orchard.json --format dot -o orchard.dot\n  dot -Tsvg orchard.dot "
                 "> orchard.svg");
    verb->callback([options, &session] { exportGraph(*options, session); });
}

} // namespace qorprogram
