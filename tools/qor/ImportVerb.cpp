#include "qor/Verbs.h"

#include "exchange/JsonWriter.h"
#include "kit/Statistics.h"
#include "kit/TreePrinter.h"
#include "qor/Formats.h"
#include "qor/Session.h"
#include "qor/Sources.h"

#include <CLI/CLI.hpp>
#include <memory>
#include <ostream>

namespace qorprogram {
namespace {

struct ImportOptions {
    std::string source;
    std::string output;
    bool statistics = false;
};

void import(ImportOptions const& options, Session& session) {
    kit::Output const output = outputOf(session, options.output, "json", {options.source});
    kit::Graph const graph = loadSource(options.source, session);
    output.write([&](std::ostream& out) {
        if (!options.output.empty()) {
            exchange::writeJson(graph.root(), out);
        } else if (options.statistics) {
            kit::printStatistics(kit::countObjects(graph.root()), out);
        } else {
            kit::printTree(graph.root(), out);
        }
    });
}

} // namespace

void addImportVerb(CLI::App& program, Session& session) {
    auto options = std::make_shared<ImportOptions>();
    CLI::App* const verb =
        program.add_subcommand("import", "Read the schema of a database and print it, or write it as JSON");
    verb->group("Verbs");
    verb->add_option("SOURCE", options->source, sourceHelp())->required();
    addOutputOption(*verb, options->output, "Write JSON to this file instead; - is the standard output");
    verb->add_flag("--stats", options->statistics, "Print the number of objects of each class instead")
        ->excludes("--output");
    verb->add_flag("--quiet", session.quiet, quietHelp);
    verb->footer(
        "\nPrints a model as a tree: each line is an object, below its owner. Each table is a Class with an\n"
        "Attribute for each column. The model also has the keys, indexes, triggers, checks, and the types\n"
        "of the columns.\n"
        "\nExample:\n  qor import orchard.sqlite\n  qor import --stats postgresql://clerk@localhost/harbour\n"
        "  qor import orchard.sqlite -o orchard.json");
    verb->callback([options, &session] { import(*options, session); });
}

} // namespace qorprogram
