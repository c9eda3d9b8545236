#include "qor/Verbs.h"

#include "kit/Numbering.h"
#include "kit/ObjectPaths.h"
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

struct ShowOptions {
    std::string source;
    std::string path;
    bool tree = false;
    bool statistics = false;
};

void show(ShowOptions const& options, Session& session) {
    kit::Output const output = standardOutputOf(session, {options.source});
    kit::Graph const graph = loadSource(options.source, session);
    QORObject& top = options.path.empty()
                         ? graph.root()
                         : kit::ObjectPaths(kit::Numbering(graph.root())).only(options.path, options.source);
    output.write([&](std::ostream& out) {
        if (options.statistics) {
            kit::printStatistics(kit::countObjects(top), out);
        } else {
            kit::printTree(top, out);
        }
    });
}

} // namespace

void addShowVerb(CLI::App& program, Session& session) {
    auto options = std::make_shared<ShowOptions>();
    CLI::App* const verb = program.add_subcommand("show", "Print a graph, or a part of it");
    verb->group("Verbs");
    verb->add_option("FILE", options->source, sourceHelp())->required();
    auto* const tree =
        verb->add_flag("--tree", options->tree, "Print each object below its owner (the default)");
    verb->add_flag("--stats", options->statistics, "Print the number of objects of each class instead")
        ->excludes(tree);
    verb->add_option(
        "--path", options->path,
        "Print only this object and what it owns: the names of its owners and its own, separated by\n"
        "slashes; the end of a path is enough if only one object's path ends like this");
    verb->add_flag("--quiet", session.quiet, quietHelp);
    verb->footer(
        "\nWhere siblings share a name, the class distinguishes them: DesignPackage:orchard/member.\n"
        "\nExample:\n  qor show orchard.json --stats\n  qor show orchard.json --path member");
    verb->callback([options, &session] { show(*options, session); });
}

} // namespace qorprogram
